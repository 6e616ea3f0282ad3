#include "Simulator/ExtensionHost/ExtensionProtocol.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Simulator/EventRecorder.hpp"
#include "Simulator/ExtensionHost/Extension.hpp"
#include "Simulator/ExtensionHost/FinderFeatureActionText.hpp"
#include "Simulator/ExtensionHost/RecordedEvents.hpp"
#include "Simulator/JSONText.hpp"

namespace simulator {
namespace {

using nlohmann::json;

/// How long a launch may take before the answer no longer waits for it.
constexpr double launchPatience = 20;

/// A request that can't be carried out, by the sentence that answers it.
class RequestError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Reading a request.

/// The member `key` of `object`, or null (the pointer) when there is none.
const json* member(const json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
}

const json& requiredMember(const json& object, const char* key) {
    const json* const value = member(object, key);
    if (value == nullptr) {
        throw RequestError(std::string("\"") + key + "\" is missing");
    }
    return *value;
}

std::string text(const json& value, const char* key) {
    if (!value.is_string()) {
        throw RequestError(std::string("\"") + key + "\" must be a string");
    }
    return value.get<std::string>();
}

std::string optionalText(const json& object, const char* key) {
    const json* const value = member(object, key);
    return value == nullptr ? std::string() : text(*value, key);
}

std::int64_t integer(const json& value, const char* key) {
    const bool fits = value.is_number_unsigned()
                          ? value.get<std::uint64_t>() <=
                                static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())
                          : value.is_number_integer();
    if (!fits) {
        throw RequestError(std::string("\"") + key + "\" must be an integer of 64 bits");
    }
    return value.get<std::int64_t>();
}

std::string path(const json& value, const char* key) {
    std::string result = text(value, key);
    if (!result.starts_with('/') || result.find('\0') != std::string::npos) {
        throw RequestError(std::string("\"") + key + "\" must hold absolute paths without a NUL");
    }
    return result;
}

std::vector<std::string> paths(const json& value, const char* key) {
    if (!value.is_array() ||
        !std::ranges::all_of(value, [](const json& element) { return element.is_string(); })) {
        throw RequestError(std::string("\"") + key + "\" must be an array of strings");
    }
    std::vector<std::string> result;
    result.reserve(value.size());
    for (const json& element : value) {
        result.push_back(path(element, key));
    }
    return result;
}

std::optional<std::string> targetedPath(const json& object) {
    const json* const value = member(object, "targetedPath");
    if (value == nullptr || value->is_null()) {
        return std::nullopt;
    }
    if (!value->is_string()) {
        throw RequestError("\"targetedPath\" must be a string or null");
    }
    return path(*value, "targetedPath");
}

FinderState finderState(const json& request) {
    FinderState state;
    if (const json* const selectedPaths = member(request, "selectedPaths")) {
        state.selectedPaths = paths(*selectedPaths, "selectedPaths");
    }
    state.targetedPath = targetedPath(request);
    return state;
}

unsigned long menuKind(const json& request) {
    constexpr auto kinds =
        std::to_array<std::string_view>({"items", "container", "sidebar", "toolbar"});
    const auto* const found =
        std::ranges::find(kinds, text(requiredMember(request, "kind"), "kind"));
    if (found == kinds.end()) {
        throw RequestError(
            R"("kind" must be one of "items", "container", "sidebar" and "toolbar")");
    }
    return static_cast<unsigned long>(found - kinds.begin());
}

Delivery delivery(const json& request) {
    const json* const value = member(request, "delivery");
    const std::string name = value == nullptr ? "intact" : text(*value, "delivery");
    if (name == "intact") {
        return Delivery::intact;
    }
    if (name == "finder") {
        return Delivery::finder;
    }
    throw RequestError(R"("delivery" must be "intact" or "finder")");
}

std::vector<std::size_t> indexPath(const json& request) {
    const json& value = requiredMember(request, "indexPath");
    if (!value.is_array() || value.empty()) {
        throw RequestError("\"indexPath\" must be an array of at least one position");
    }
    std::vector<std::size_t> result;
    for (const json& element : value) {
        if (element.is_number_unsigned()) {
            result.push_back(element.get<std::size_t>());
        } else if (element.is_number_integer()) {
            throw RequestError("the index path leads to no item of the last menu");
        } else {
            throw RequestError("\"indexPath\" must hold integers");
        }
    }
    return result;
}

Value value(const json& source) {
    switch (source.type()) {
        case json::value_t::boolean:
            return {source.get<bool>()};
        case json::value_t::number_integer:
            return {source.get<std::int64_t>()};
        case json::value_t::number_unsigned: {
            const auto number = source.get<std::uint64_t>();
            if (number <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
                return {static_cast<std::int64_t>(number)};
            }
            return {number};
        }
        case json::value_t::number_float:
            return {source.get<double>()};
        case json::value_t::string:
            return {source.get<std::string>()};
        case json::value_t::array: {
            Value::Array elements;
            elements.reserve(source.size());
            for (const json& element : source) {
                elements.push_back(value(element));
            }
            return {std::move(elements)};
        }
        case json::value_t::object: {
            Value::Dictionary entries;
            for (const auto& [key, element] : source.items()) {
                entries.emplace(key, value(element));
            }
            return {std::move(entries)};
        }
        case json::value_t::null:
        case json::value_t::binary:
        case json::value_t::discarded:
            break;
    }
    return {};
}

std::shared_ptr<const quorva::FinderActionContext> context(const json& source) {
    const auto action =
        finderFeatureActionWithText(text(requiredMember(source, "action"), "action"));
    if (!action) {
        throw RequestError("\"action\" must be an action, written like copyPath(fullPath)");
    }
    std::vector<quorva::FileURL> selectedURLs;
    if (const json* const selectedPaths = member(source, "selectedPaths")) {
        for (const std::string& selectedPath : paths(*selectedPaths, "selectedPaths")) {
            selectedURLs.push_back(quorva::FileURL::file(selectedPath));
        }
    }
    std::optional<quorva::FileURL> targetedURL;
    if (const auto target = targetedPath(source)) {
        targetedURL = quorva::FileURL::directory(*target);
    }
    return std::make_shared<const quorva::FinderActionContext>(
        text(requiredMember(source, "actionID"), "actionID"), optionalText(source, "title"),
        *action, std::move(selectedURLs), std::move(targetedURL),
        optionalText(source, "destinationPath"), optionalText(source, "presetID"));
}

RepresentedObject representedObject(const json& source) {
    if (source.is_null()) {
        return {};
    }
    if (!source.is_object()) {
        throw RequestError("\"representedObject\" must be an object or null");
    }
    const std::string type = text(requiredMember(source, "type"), "type");
    if (type == "FinderActionContext") {
        return context(source);
    }
    if (type == "dictionary") {
        Value::Dictionary entries = std::get<Value::Dictionary>(value(source).content);
        entries.erase("type");
        return entries;
    }
    if (type == "other") {
        return OtherObject{text(requiredMember(source, "value"), "value")};
    }
    throw RequestError(R"("type" must be "FinderActionContext", "dictionary" or "other")");
}

SentItem sentItem(const json& request) {
    const json& source = requiredMember(request, "item");
    if (!source.is_object()) {
        throw RequestError("\"item\" must be an object");
    }
    SentItem item;
    item.title = text(requiredMember(source, "title"), "title");
    if (const json* const identifier = member(source, "identifier");
        identifier != nullptr && !identifier->is_null()) {
        item.identifier = text(*identifier, "identifier");
    }
    if (const json* const tag = member(source, "tag")) {
        item.tag = integer(*tag, "tag");
    }
    if (const json* const object = member(source, "representedObject")) {
        item.representedObject = representedObject(*object);
    }
    return item;
}

// Writing an answer. Written as it goes and not through a document: each of a hundred entries shows
// the whole selection, which may be of ten thousand paths.

class AnswerWriter {
 public:
    /// Begins the value of a further member.
    AnswerWriter& key(std::string_view name) {
        if (!text_.ends_with('{')) {
            text_ += ',';
        }
        text_.append(1, '"').append(name).append("\":");
        return *this;
    }

    void raw(std::string_view value) { text_ += value; }
    void write(const std::string& value) { text_ += jsonString(value); }
    void write(const char* value) { write(std::string(value)); }
    void write(bool value) { text_ += value ? "true" : "false"; }

    template <typename Element>
    void write(const std::optional<Element>& value) {
        if (value) {
            write(*value);
        } else {
            text_ += "null";
        }
    }

    void write(const ShownMenu& menu) {
        text_ += '{';
        key("title").write(menu.title);
        key("items").writeElements(menu.items);
        text_ += '}';
    }

    void write(const ShownItem& item) {
        text_ += '{';
        if (item.isSeparator) {
            key("separator").write(true);
        } else {
            key("title").write(item.title);
            key("enabled").write(item.enabled);
            key("action").write(item.action);
            key("target").write(item.target);
            key("keyEquivalent").write(item.keyEquivalent);
            key("identifier").write(item.identifier);
            key("tag").raw(std::to_string(item.tag));
            key("representedObject").write(item.representedObject);
            if (item.submenu) {
                key("submenu").write(*item.submenu);
            }
        }
        text_ += '}';
    }

    template <typename Element>
    void writeElements(const std::vector<Element>& elements) {
        text_ += '[';
        for (const Element& element : elements) {
            if (!text_.ends_with('[')) {
                text_ += ',';
            }
            write(element);
        }
        text_ += ']';
    }

    /// Elements that are the texts of JSON values already.
    void writeTexts(const std::vector<std::string>& texts) {
        text_ += '[';
        for (const std::string& element : texts) {
            if (!text_.ends_with('[')) {
                text_ += ',';
            }
            text_ += element;
        }
        text_ += ']';
    }

    std::string take() { return std::move(text_); }

 private:
    void write(const RepresentedObject& object) {
        if (const auto* entries = std::get_if<Value::Dictionary>(&object)) {
            text_ += '{';
            key("type").write("dictionary");
            writeEntries(*entries);
            text_ += '}';
        } else if (const auto* context =
                       std::get_if<std::shared_ptr<const quorva::FinderActionContext>>(&object)) {
            write(**context);
        } else if (const auto* other = std::get_if<OtherObject>(&object)) {
            text_ += '{';
            key("type").write("other");
            key("value").write(other->text);
            text_ += '}';
        } else {
            text_ += "null";
        }
    }

    void write(std::monostate) { text_ += "null"; }
    void write(std::int64_t value) { text_ += std::to_string(value); }
    void write(std::uint64_t value) { text_ += std::to_string(value); }
    void write(double value) { text_ += json(value).dump(); }

    void write(const Value& value) {
        std::visit([this](const auto& content) { write(content); }, value.content);
    }

    void write(const Value::Array& array) { writeElements(array); }

    void write(const Value::Dictionary& dictionary) {
        text_ += '{';
        writeEntries(dictionary);
        text_ += '}';
    }

    void writeEntries(const Value::Dictionary& dictionary) {
        bool isFirst = text_.ends_with('{');
        for (const auto& [name, entry] : dictionary) {
            if (!std::exchange(isFirst, false)) {
                text_ += ',';
            }
            write(name);
            text_ += ':';
            write(entry);
        }
    }

    void write(const quorva::FinderActionContext& context) {
        text_ += '{';
        key("type").write("FinderActionContext");
        key("actionID").write(context.actionID());
        key("title").write(context.title());
        key("action").write(finderFeatureActionText(context.action()));
        key("selectedPaths").write(context.selectedURLs().urls());
        key("targetedPath").write(context.targetedURL().transform([](const auto& url) {
            return std::string(url.path());
        }));
        key("destinationPath").write(context.destinationPath());
        key("presetID").write(context.presetID());
        text_ += '}';
    }

    /// The text of a selection is kept, because the entries of one menu share theirs.
    void write(const std::vector<quorva::FileURL>& selection) {
        if (selection_ != &selection) {
            selection_ = &selection;
            std::vector<std::string> selectedPaths;
            selectedPaths.reserve(selection.size());
            for (const quorva::FileURL& url : selection) {
                selectedPaths.push_back(url.path());
            }
            AnswerWriter writer;
            writer.writeElements(selectedPaths);
            selectionText_ = writer.take();
        }
        text_ += selectionText_;
    }

    std::string text_;
    const std::vector<quorva::FileURL>* selection_ = nullptr;
    std::string selectionText_;
};

// Carrying a request out: each operation adds its own members to the answer.

void answerMenu(const json& request, AnswerWriter& answer) {
    const unsigned long kind = menuKind(request);
    const FinderState state = finderState(request);
    const std::optional<ShownMenu> menu = requestMenu(kind, state);
    answer.key("menu").write(menu);
}

void answerClick(const json& request, AnswerWriter&) {
    const std::vector<std::size_t> path = indexPath(request);
    const Delivery how = delivery(request);
    const FinderState state = finderState(request);
    if (const auto clicked = clickItem(path, how, state); !clicked) {
        throw RequestError(clicked.error());
    }
}

void answerSend(const json& request, AnswerWriter&) {
    const SentItem item = sentItem(request);
    sendItem(item, finderState(request));
}

void answerDirectories(const json&, AnswerWriter& answer) {
    std::vector<std::string> monitored = monitoredPaths();
    std::ranges::sort(monitored);
    answer.key("directories").writeElements(monitored);
}

void answerToolbar(const json&, AnswerWriter& answer) {
    const ToolbarItem item = toolbarItem();
    answer.key("name").write(item.name);
    answer.key("toolTip").write(item.toolTip);
}

void answerWait(const json& request, AnswerWriter&) {
    const json& seconds = requiredMember(request, "seconds");
    if (!seconds.is_number() || seconds.get<double>() < 0) {
        throw RequestError("\"seconds\" must be a number that is not negative");
    }
    runRunLoop(seconds.get<double>());
}

struct Request {
    std::string_view name;
    void (*answer)(const json& request, AnswerWriter& answer);
};

constexpr auto requests = std::to_array<Request>({
    {"menu", answerMenu},
    {"click", answerClick},
    {"send", answerSend},
    {"directories", answerDirectories},
    {"toolbar", answerToolbar},
    {"wait", answerWait},
});

void carryOut(std::string_view line, std::string& id, AnswerWriter& answer) {
    // To the library a NUL is the end of the text.
    if (line.find('\0') != std::string_view::npos) {
        throw RequestError("the line is no JSON");
    }
    if (!isWithinJSONDepthLimit(line)) {
        throw RequestError("the line is nested too deeply");
    }
    json request;
    try {
        request = json::parse(line);
    } catch (const json::out_of_range&) {
        throw RequestError("the line holds a number that is out of range");
    } catch (const json::exception&) {
        throw RequestError("the line is no JSON");
    }
    if (!request.is_object()) {
        throw RequestError("the line is no JSON object");
    }
    id = memberText(line, "id").value_or("null");
    requiredMember(request, "id");
    const std::string name = text(requiredMember(request, "request"), "request");
    const auto* const found = std::ranges::find(requests, name, &Request::name);
    if (found == requests.end()) {
        throw RequestError("there is no such request");
    }
    found->answer(request, answer);
    waitForLaunches(launchPatience);
}

}  // namespace

std::string answer(std::string_view line) {
    std::string id = "null";
    AnswerWriter members;
    std::string error;
    try {
        members.raw("{");
        carryOut(line, id, members);
    } catch (const std::exception& exception) {
        error = exception.what();
    }

    AnswerWriter answer;
    answer.raw("{");
    answer.key("id").raw(id);
    if (error.empty()) {
        std::string text = members.take();
        text.erase(0, 1);
        if (!text.empty()) {
            answer.raw(",");
            answer.raw(text);
        }
    } else {
        answer.key("error").write(error);
    }
    const RecordedEvents recorded = takeRecordedEvents();
    answer.key("events").writeTexts(recorded.events);
    answer.key("unifiedLog").writeTexts(recorded.unifiedLog);
    answer.raw("}");
    return answer.take();
}

}  // namespace simulator
