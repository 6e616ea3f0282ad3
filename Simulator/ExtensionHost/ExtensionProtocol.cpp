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

/// A request that can't be carried out, by the sentence that answers it.
class RequestError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Reading a request.

/// The member `key` of `object`.
template <typename Member>
Member member(const json& object, const std::string& key) {
    const auto found = object.find(key);
    if (found == object.end()) {
        throw RequestError("\"" + key + "\" is missing");
    }
    try {
        return found->get<Member>();
    } catch (const json::exception& exception) {
        const std::string_view reason = exception.what();
        throw RequestError(("\"" + key + "\": ").append(reason.substr(reason.find("] ") + 2)));
    }
}

/// The same, absent when there is none.
template <typename Member>
std::optional<Member> optionalMember(const json& object, const std::string& key) {
    return object.contains(key) ? std::optional(member<Member>(object, key)) : std::nullopt;
}

/// The same, where null is as good as none.
template <typename Member>
std::optional<Member> nullableMember(const json& object, const std::string& key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? std::nullopt
                                                     : std::optional(member<Member>(object, key));
}

const json& requireObject(const json& value, const std::string& what) {
    if (!value.is_object()) {
        throw RequestError(what + " is not a JSON object");
    }
    return value;
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

FinderState finderState(const json& request) {
    FinderState state;
    state.selectedPaths = optionalMember<std::vector<std::string>>(request, "selectedPaths");
    state.targetedPath = nullableMember<std::string>(request, "targetedPath");
    for (const std::string& path : state.selectedPaths.value_or(std::vector<std::string>())) {
        checkPath(path);
    }
    if (state.targetedPath) {
        checkPath(*state.targetedPath);
    }
    return state;
}

std::vector<std::size_t> indexPath(const json& request) {
    const auto positions = member<json>(request, "indexPath");
    if (!positions.is_array() || positions.empty() ||
        !std::ranges::all_of(positions, &json::is_number_unsigned)) {
        throw RequestError("\"indexPath\" must be an array of at least one position, from 0");
    }
    return positions.get<std::vector<std::size_t>>();
}

std::shared_ptr<const quorva::FinderActionContext> context(const json& source) {
    const auto action = finderFeatureActionWithText(member<std::string>(source, "action"));
    if (!action) {
        throw RequestError("\"action\" must be an action, written like copyPath(fullPath)");
    }
    const FinderState state = finderState(source);
    std::vector<quorva::FileURL> selectedURLs;
    for (const std::string& path : state.selectedPaths.value_or(std::vector<std::string>())) {
        selectedURLs.push_back(quorva::FileURL::file(path));
    }
    return std::make_shared<const quorva::FinderActionContext>(
        member<std::string>(source, "actionID"),
        optionalMember<std::string>(source, "title").value_or(""), *action, std::move(selectedURLs),
        state.targetedPath.transform(quorva::FileURL::directory),
        optionalMember<std::string>(source, "destinationPath").value_or(""),
        optionalMember<std::string>(source, "presetID").value_or(""));
}

RepresentedObject representedObject(json source) {
    const auto type = member<std::string>(source, "type");
    if (type == "FinderActionContext") {
        return context(source);
    }
    if (type == "dictionary") {
        source.erase("type");
        return source;
    }
    if (type == "other") {
        return member<std::string>(source, "value");
    }
    throw RequestError(R"("type" must be "FinderActionContext", "dictionary" or "other")");
}

SentItem sentItem(const json& request) {
    const json source = requireObject(member<json>(request, "item"), "\"item\"");
    SentItem item;
    item.title = member<std::string>(source, "title");
    item.identifier = nullableMember<std::string>(source, "identifier");
    if (const auto tag = optionalMember<json>(source, "tag")) {
        if (!tag->is_number_integer() ||
            (tag->is_number_unsigned() && tag->get<std::uint64_t>() > INT64_MAX)) {
            throw RequestError("\"tag\" must be an integer of 64 bits");
        }
        item.tag = tag->get<std::int64_t>();
    }
    if (const auto object = nullableMember<json>(source, "representedObject")) {
        item.representedObject = representedObject(requireObject(*object, "\"representedObject\""));
    }
    return item;
}

// Carrying a request out: each operation returns its own members of the answer.

ordered_json answerMenu(const json& request) {
    const auto kind =
        oneOf<unsigned long>({{"items", 0}, {"container", 1}, {"sidebar", 2}, {"toolbar", 3}},
                             member<std::string>(request, "kind"), "kind");
    return {{"menu", requestMenu(kind, finderState(request))}};
}

ordered_json answerClick(const json& request) {
    const auto delivery = oneOf<Delivery>(
        {{"intact", Delivery::intact}, {"finder", Delivery::finder}},
        optionalMember<std::string>(request, "delivery").value_or("intact"), "delivery");
    if (const auto clicked = clickItem(indexPath(request), delivery, finderState(request));
        !clicked) {
        throw RequestError(clicked.error());
    }
    return ordered_json::object();
}

ordered_json answerSend(const json& request) {
    sendItem(sentItem(request), finderState(request));
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
            request = parseJSON(line);
        } catch (const json::out_of_range&) {
            isInRange = false;
            request = parseJSON(withoutNumbersOutOfRange(std::string(line)));
        }
    } catch (const json::exception&) {
        throw RequestError("the line is not JSON");
    }
    const auto id = member<json>(requireObject(request, "the line"), "id");
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
