#include "Simulator/ExtensionHost/ExtensionProtocol.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <climits>
#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Simulator/EventRecorder.hpp"
#include "Simulator/ExtensionHost/Extension.hpp"
#include "Simulator/ExtensionHost/FinderFeatureActionText.hpp"
#include "Simulator/JSONText.hpp"

namespace simulator {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

/// How long a launch may take before the answer no longer waits for it.
constexpr double launchPatience = 20;

/// How long a request may wait.
constexpr double longestWait = 60;

/// How many pixels a point of a picture may take.
constexpr unsigned largestScale = 4;

/// A request that can't be carried out, by the sentence that answers it.
class RequestError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Reading a request.

/// The member `key` of `object`, or else `fallback`.
template <typename Member>
Member member(const json& object, const std::string& key,
              std::optional<Member> fallback = std::nullopt) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return fallback ? *fallback : throw RequestError("\"" + key + "\" is missing");
    }
    try {
        return found->get<Member>();
    } catch (const json::exception& exception) {
        const std::string_view reason = exception.what();
        throw RequestError(("\"" + key + "\": ").append(reason.substr(reason.find("] ") + 2)));
    }
}

/// The string `key` of `object`, absent when it is missing or null.
std::optional<std::string> nullableString(const json& object, const std::string& key) {
    return member<json>(object, key, json()).is_null()
               ? std::nullopt
               : std::optional(member<std::string>(object, key));
}

template <typename Member>
Member oneOf(std::initializer_list<std::pair<std::string_view, Member>> choices,
             const std::string& name, const std::string& key) {
    std::string names;
    for (const auto& [choice, value] : choices) {
        if (name == choice) {
            return value;
        }
        names.append(names.empty() ? "" : ", ").append(choice);
    }
    throw RequestError("\"" + key + "\" must be one of " + names);
}

void checkPath(const std::string& path) {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) {
        throw RequestError("a path must be absolute and without a NUL");
    }
    if (path.size() >= PATH_MAX) {
        throw RequestError("a path must be shorter than " + std::to_string(PATH_MAX) + " bytes");
    }
}

using Paths = std::vector<std::string>;

void checkState(const json& request) {
    std::ranges::for_each(member<Paths>(request, "selectedPaths", Paths()), checkPath);
    checkPath(nullableString(request, "targetedPath").value_or("/"));
}

quorva::FinderActionContextPointer context(const json& source) {
    const auto action = finderFeatureActionWithText(member<std::string>(source, "action"));
    if (!action) {
        throw RequestError("\"action\" must be an action, written like copyPath(fullPath)");
    }
    checkState(source);
    std::vector<quorva::FileURL> selectedURLs;
    for (const auto& path : member<Paths>(source, "selectedPaths", Paths())) {
        selectedURLs.push_back(quorva::FileURL::file(path));
    }
    return std::make_shared<const quorva::FinderActionContext>(
        member<std::string>(source, "actionID"), member<std::string>(source, "title", ""), *action,
        std::move(selectedURLs),
        nullableString(source, "targetedPath").transform(quorva::FileURL::directory),
        member<std::string>(source, "destinationPath", ""),
        member<std::string>(source, "presetID", ""));
}

// Carrying a request out: each operation returns its own members of the answer.

ordered_json answerMenu(const json& request) {
    const auto kind =
        oneOf<unsigned long>({{"items", 0}, {"container", 1}, {"sidebar", 2}, {"toolbar", 3}},
                             member<std::string>(request, "kind"), "kind");
    checkState(request);
    return {{"menu", requestMenu(kind, request)}};
}

json indexPath(const json& request) {
    const auto positions = member<json>(request, "indexPath");
    if (!positions.is_array() || !std::ranges::all_of(positions, &json::is_number_unsigned)) {
        throw RequestError("\"indexPath\" must be an array of positions, from 0");
    }
    return positions;
}

ordered_json answerClick(const json& request) {
    const bool isRebuilt =
        oneOf<bool>({{"intact", false}, {"finder", true}},
                    member<std::string>(request, "delivery", "intact"), "delivery");
    const json positions = indexPath(request);
    if (positions.empty()) {
        throw RequestError("\"indexPath\" must have at least one position");
    }
    checkState(request);
    if (const auto clicked = clickItem(positions, isRebuilt, request); !clicked) {
        throw RequestError(clicked.error());
    }
    return ordered_json::object();
}

ordered_json answerPicture(const json& request) {
    const json positions = indexPath(request);
    const auto scale = member<json>(request, "scale", 1U);
    if (!scale.is_number_unsigned() || scale < 1 || scale > largestScale) {
        throw RequestError("\"scale\" must be an integer from 1 to 4");
    }
    const auto picture = drawMenu(positions, scale.get<unsigned>());
    if (!picture) {
        throw RequestError(picture.error());
    }
    return {{"png", *picture}};
}

ordered_json answerSend(const json& request) {
    const json item = member<json::object_t>(request, "item");
    static_cast<void>(member<std::string>(item, "title"));
    static_cast<void>(nullableString(item, "identifier"));
    if (const auto tag = member<json>(item, "tag", 0);
        !tag.is_number_integer() ||
        (tag.is_number_unsigned() && tag.get<std::uint64_t>() > INT64_MAX)) {
        throw RequestError("\"tag\" must be an integer of 64 bits");
    }
    quorva::FinderActionContextPointer represented;
    if (const auto object = member<json>(item, "representedObject", json()); !object.is_null()) {
        const auto type = member<std::string>(object, "type");
        if (type == "FinderActionContext") {
            represented = context(object);
        } else if (type == "other") {
            static_cast<void>(member<std::string>(object, "value"));
        } else if (type != "dictionary") {
            throw RequestError(R"("type" must be "FinderActionContext", "dictionary" or "other")");
        }
    }
    checkState(request);
    sendItem(item, represented, request);
    return ordered_json::object();
}

ordered_json answerDirectories(const json&) {
    std::vector<std::string> monitored = monitoredPaths();
    std::ranges::sort(monitored);
    return {{"directories", monitored}};
}

ordered_json answerToolbar(const json&) {
    return toolbarItem();
}

ordered_json answerWait(const json& request) {
    const auto seconds = member<json>(request, "seconds");
    if (!seconds.is_number() || seconds < 0 || seconds > longestWait) {
        throw RequestError("\"seconds\" must be a number from 0 to 60");
    }
    runRunLoop(seconds.get<double>());
    return ordered_json::object();
}

/// `line` with 0 in place of every number that is out of range.
std::string withoutNumbersOutOfRange(std::string line) {
    bool isInString = false;
    for (std::size_t position = 0; position < line.size(); ++position) {
        if (isInString && line[position] == '\\') {
            ++position;
        } else if (line[position] == '"') {
            isInString = !isInString;
        } else if (!isInString && std::isdigit(static_cast<unsigned char>(line[position])) != 0) {
            double number = 0;
            const char* const start = line.data() + position;
            const auto [end, error] = std::from_chars(start, line.data() + line.size(), number);
            const auto length = static_cast<std::size_t>(end - start);
            if (error != std::errc()) {
                line.replace(position, length, length, ' ');
                line[position] = '0';
            }
            position += length - 1;
        }
    }
    return line;
}

/// Carries out the request that `line` is, and adds to `answer` what answers it.
void carryOut(std::string_view line, ordered_json& answer) {
    bool isInRange = true;
    json request;
    try {
        // To the library a NUL is the end of the text.
        if (line.contains('\0')) {
            throw RequestError("the line is not JSON");
        }
        try {
            request = parseJSON<json>(line);
        } catch (const json::out_of_range&) {
            isInRange = false;
            request = parseJSON<json>(withoutNumbersOutOfRange(std::string(line)));
        }
    } catch (const json::exception&) {
        throw RequestError("the line is not JSON");
    }
    if (!request.is_object()) {
        throw RequestError("the line is not a JSON object");
    }
    const auto id = member<json>(request, "id");
    if (!id.is_string() && !id.is_number_integer()) {
        throw RequestError("\"id\" must be a string or an integer of 64 bits");
    }
    answer["id"] = id;
    if (!isInRange) {
        throw RequestError("the line holds a number that is out of range");
    }
    const auto operation =
        oneOf<ordered_json (*)(const json&)>({{"menu", answerMenu},
                                              {"click", answerClick},
                                              {"picture", answerPicture},
                                              {"send", answerSend},
                                              {"directories", answerDirectories},
                                              {"toolbar", answerToolbar},
                                              {"wait", answerWait}},
                                             member<std::string>(request, "request"), "request");
    answer.update(operation(request));
    waitForLaunches(launchPatience);
}

}  // namespace

std::string answer(std::string_view line) {
    ordered_json answer = {{"id", nullptr}};
    try {
        carryOut(line, answer);
    } catch (const std::exception& exception) {
        answer["error"] = exception.what();
    }
    RecordedEvents recorded = takeRecordedEvents();
    answer["events"] = std::move(recorded.events);
    answer["unifiedLog"] = std::move(recorded.unifiedLog);
    return answer.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace simulator
