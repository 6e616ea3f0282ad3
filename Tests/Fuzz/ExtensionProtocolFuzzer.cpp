// Whatever a line of standard input holds, one line of JSON answers it, and what reaches the
// extension has been checked.
#include "Simulator/ExtensionHost/ExtensionProtocol.hpp"

#include <limits.h>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "Simulator/EventRecorder.hpp"
#include "Simulator/ExtensionHost/Extension.hpp"
#include "Tests/Fuzz/FuzzedMachine.hpp"

using nlohmann::json;
using nlohmann::ordered_json;
using quorva::require;

namespace {

void checkPath(const json& path) {
    require(path.is_string(), "a path is a string");
    const auto& text = path.get_ref<const std::string&>();
    require(text.starts_with('/') && !text.contains('\0') && text.size() < PATH_MAX,
            "a path is absolute, short enough and without a NUL");
}

void checkState(const json& state) {
    const json paths = state.value("selectedPaths", json::array());
    require(paths.is_array(), "a selection is an array");
    std::ranges::for_each(paths, checkPath);
    if (const json target = state.value("targetedPath", json()); !target.is_null()) {
        checkPath(target);
    }
}

}  // namespace

// The extension, seen from the protocol.
namespace simulator {

ordered_json requestMenu(unsigned long kind, const json& state) {
    require(kind <= 3, "a kind is one of Finder's");
    checkState(state);
    return {{"title", "Quorva"}, {"items", ordered_json::array()}};
}

std::expected<void, std::string> clickItem(const std::vector<std::size_t>& indexPath, bool,
                                           const json& state) {
    require(!indexPath.empty(), "an index path has a position");
    checkState(state);
    if (indexPath.front() > 0) {
        return std::unexpected("the index path leads to no item");
    }
    recordEvent({{"event", "clicked"}});
    return {};
}

std::expected<std::string, std::string> drawMenu(const std::vector<std::size_t>& indexPath,
                                                 unsigned scale) {
    require(scale >= 1 && scale <= 4, "a picture is of at most four times the size");
    if (!indexPath.empty()) {
        return std::unexpected("the index path leads to no item");
    }
    return "iVBORw0KGgo=";
}

void sendItem(const json& item, const quorva::FinderActionContextPointer& context,
              const json& state) {
    require(item.at("title").is_string(), "an item has a title");
    const json identifier = item.value("identifier", json());
    require(identifier.is_null() || identifier.is_string(), "an identifier is a string");
    const json tag = item.value("tag", json(0));
    require(tag.is_number_integer() &&
                (!tag.is_number_unsigned() || tag.get<std::uint64_t>() <= INT64_MAX),
            "a tag is an integer of 64 bits");
    const json represented = item.value("representedObject", json());
    require(represented.is_null() || represented.at("type").is_string(),
            "a represented object has a type");
    require((context != nullptr) ==
                (!represented.is_null() && represented.at("type") == "FinderActionContext"),
            "a context is passed as such");
    checkState(state);
}

std::vector<std::string> monitoredPaths() {
    return {"/b", "/a"};
}

ordered_json toolbarItem() {
    return {{"name", "Quorva"}};
}

void runRunLoop(double seconds) {
    require(seconds >= 0 && seconds <= 60, "a wait is not longer than a minute");
}

}  // namespace simulator

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string line(reinterpret_cast<const char*>(data), size);
    const std::string text = simulator::answer(line);
    require(!text.contains('\n'), "an answer is one line");
    const ordered_json answer = ordered_json::parse(text);
    require(answer.is_object() && answer.contains("id") && answer.at("events").is_array() &&
                answer.at("unifiedLog").is_array(),
            "an answer has its members");
    const bool isError = answer.contains("error");
    require(!isError || !answer.at("error").get_ref<const std::string&>().empty(),
            "an error is a sentence");
    require(isError || answer.at("id").is_string() || answer.at("id").is_number_integer(),
            "what was carried out is answered under its id");
    require(simulator::takeRecordedEvents().events.empty(), "an answer holds every event");
    const json request = json::parse(line, nullptr, /*allow_exceptions=*/false);
    require(request.is_object() || isError, "what is not an object is answered with an error");
    return 0;
}
