#include "Simulator/FinderCommand/Click.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <thread>

#include "Simulator/FinderCommand/Terminal.hpp"
#include "Simulator/Text.hpp"

namespace simulator {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;
using std::filesystem::path;

/// Where records go when the home folder has no room for a queue.
const path fallbackQueue = "/tmp/quorva-action-queue";

ordered_json finderState(const Options& options) {
    ordered_json state = {{"selectedPaths", options.selectedPaths}, {"targetedPath", nullptr}};
    if (!options.targetedPath.empty()) {
        state["targetedPath"] = options.targetedPath;
    }
    return state;
}

/// The records in `queue` by name.
std::map<std::string, json> records(const path& queue) {
    std::map<std::string, json> records;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(queue, error)) {
        std::ifstream stream(entry.path(), std::ios::binary);
        if (entry.path().extension() == ".json" && entry.is_regular_file(error) && stream) {
            const std::string text(std::istreambuf_iterator<char>(stream), {});
            const json record = json::parse(text, nullptr, false);
            records[entry.path().filename()] = record.is_discarded() ? json(text) : record;
        }
    }
    return records;
}

std::vector<std::string> performedLines() {
    std::vector<std::string> lines;
    std::ifstream stream(quorvaFolder() / "Performed.jsonl", std::ios::binary);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// A line for people: what it is about, and what is to be said.
std::string line(const std::string& name, const std::string& text) {
    return "  " + styled(name + std::string(14 - name.size(), ' '), Style::heading) + text + "\n";
}

}  // namespace

path quorvaFolder() {
    return path(std::getenv("HOME")) / "Library/Application Support/Quorva";
}

ordered_json requestMenu(ExtensionProcess& extension, const Options& options) {
    ordered_json request = finderState(options);
    const std::string kind = options.selectedPaths.empty() ? "container" : "items";
    request["kind"] = options.kind.empty() ? kind : options.kind;
    return extension.ask("menu", request);
}

ordered_json click(ExtensionProcess& extension, const MenuEntry& entry, const Options& options) {
    const path queue = quorvaFolder() / "ActionQueue";
    if (options.launches) {
        // There to be locked, so that the record can be shown before it is performed.
        std::error_code error;
        std::filesystem::create_directories(queue, error);
    }
    ordered_json request = finderState(options);
    request["indexPath"] = entry.indexPath;
    request["delivery"] = options.delivery.empty() ? "intact" : options.delivery;

    FileDescriptor lock = lockQueue(queue);
    const std::size_t performedBefore = performedLines().size();
    const auto queued = records(queue);
    const auto queuedElsewhere = records(fallbackQueue);
    ordered_json result = extension.ask("click", request);
    result["titles"] = entry.titles;
    result["performed"] = ordered_json::array();
    ordered_json& added = result["records"] = ordered_json::object();
    std::set<std::string> expected;
    for (const auto& [name, record] : records(queue)) {
        if (!queued.contains(name)) {
            added[name] = record;
            expected.insert(record.dump(-1, ' ', false, json::error_handler_t::replace));
        }
    }
    for (const auto& [name, record] : records(fallbackQueue)) {
        if (expected.empty() && !queuedElsewhere.contains(name)) {
            added[fallbackQueue / name] = record;
        }
    }
    lock = FileDescriptor();

    // An application that the extension does not ask for runs already.
    const bool isAsked = std::ranges::any_of(result.at("events"), [](const ordered_json& event) {
        return event.at("event") == "openApplication";
    });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while ((options.launches || !isAsked) && !expected.empty() &&
           std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        const std::vector<std::string> lines = performedLines();
        for (std::size_t index = performedBefore; index < lines.size(); ++index) {
            if (expected.erase(lines[index]) == 1) {
                result["performed"].push_back(ordered_json::parse(lines[index]));
            }
        }
    }
    return result;
}

std::string clickText(const ordered_json& result) {
    std::string text = line("Clicked", styled(breadcrumbs(result["titles"]), Style::bold));
    for (const auto& [name, record] : result["records"].items()) {
        text += line("Record", styled(escaped(name), Style::dim));
        const std::string indentation(16, ' ');
        text.append(indentation)
            .append(std::regex_replace(jsonText(record), std::regex("\n"), "\n" + indentation))
            .append("\n");
    }
    if (result["records"].empty()) {
        text += line("Record", styled("none reached the queue", Style::bad));
    }
    for (const ordered_json& event : result.at("events")) {
        if (event.at("event") == "notification") {
            const ordered_json& userInfo = event.at("userInfo");
            text +=
                line("Notification", escaped(event.at("name").get<std::string>()) +
                                         (userInfo.is_null() ? "" : " " + jsonText(userInfo, -1)));
        } else {
            const bool activates = event.at("activates");
            const char* const place = activates ? "  (to the front)" : "  (in the background)";
            text += line("Launch",
                         escaped(event.at("path").get<std::string>()) + styled(place, Style::dim));
        }
    }
    if (!result["performed"].empty()) {
        const char* const end = "Quorva wrote the record down in Performed.jsonl and deleted it";
        text += line("Performed", styled(end, Style::good));
    }
    return text;
}

}  // namespace simulator
