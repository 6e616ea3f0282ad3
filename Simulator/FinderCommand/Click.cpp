#include "Simulator/FinderCommand/Click.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <thread>

#include "Simulator/Escaping.hpp"
#include "Simulator/FileDescriptor.hpp"
#include "Simulator/FinderCommand/Terminal.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;
using std::filesystem::path;

/// Where records go when the home folder has no room for a queue.
constexpr const char* fallbackQueue = "/tmp/quorva-action-queue";

/// The records in `queue` by name, each as a JSON value, or as a string where it is none.
std::map<std::string, nlohmann::json> records(const path& queue) {
    std::map<std::string, nlohmann::json> records;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(queue, error)) {
        std::ifstream stream(entry.path(), std::ios::binary);
        if (entry.path().extension() == ".json" && entry.is_regular_file(error) && stream) {
            const std::string text(std::istreambuf_iterator<char>(stream), {});
            const auto record = nlohmann::json::parse(text, nullptr, false);
            records[entry.path().filename()] = record.is_discarded() ? nlohmann::json(text) : record;
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

std::string indented(std::string text) {
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 17) {
        text.insert(at + 1, 16, ' ');
    }
    return text;
}

}  // namespace

path quorvaFolder() {
    return path(std::getenv("HOME")) / "Library/Application Support/Quorva";
}

ordered_json click(ExtensionProcess& extension, const MenuEntry& entry, ordered_json request,
                   bool launches) {
    const path queue = quorvaFolder() / "ActionQueue";
    if (launches) {
        // There to be locked, so that the record can be shown before it is performed.
        std::error_code error;
        std::filesystem::create_directories(queue, error);
    }
    request["indexPath"] = entry.indexPath;
    const std::size_t performedBefore = performedLines().size();
    ordered_json result;
    std::set<std::string> expectedLines;
    {
        const FileDescriptor lock = lockQueue(queue);
        const auto queued = records(queue);
        const auto queuedElsewhere = records(fallbackQueue);
        result = extension.ask(std::move(request));
        result["titles"] = entry.titles;
        result["performed"] = ordered_json::array();
        result["records"] = ordered_json::object();
        for (const auto& [name, record] : records(queue)) {
            if (!queued.contains(name)) {
                result["records"][name] = record;
                expectedLines.insert(record.dump());
            }
        }
        for (const auto& [name, record] : records(fallbackQueue)) {
            if (expectedLines.empty() && !queuedElsewhere.contains(name)) {
                result["records"][path(fallbackQueue) / name] = record;
            }
        }
    }
    // An application that was not asked for runs already.
    const bool isOpened = std::ranges::any_of(result.at("events"), [](const ordered_json& event) {
        return event.at("event") == "openApplication";
    });
    for (int wait = 0; wait < 200 && (launches || !isOpened) && !expectedLines.empty(); ++wait) {
        const std::vector<std::string> lines = performedLines();
        for (std::size_t index = performedBefore; index < lines.size(); ++index) {
            if (expectedLines.erase(lines[index]) == 1) {
                result["performed"].push_back(ordered_json::parse(lines[index]));
            }
        }
        if (!expectedLines.empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
    return result;
}

std::string clickText(const ordered_json& result) {
    std::string text = line("Clicked", styled(breadcrumbs(result["titles"]), Style::bold));
    for (const auto& [name, record] : result["records"].items()) {
        text += line("Record", styled(escaped(name), Style::dim) + indented("\n" + jsonText(record)));
    }
    if (result["records"].empty()) {
        text += line("Record", styled("none reached the queue", Style::bad));
    }
    for (const ordered_json& event : result.at("events")) {
        if (event.at("event") == "notification") {
            const ordered_json& userInfo = event.at("userInfo");
            text += line("Notification", escaped(event.at("name").get<std::string>()) +
                                             (userInfo.is_null() ? "" : " " + jsonText(userInfo)));
        } else {
            text += line("Launch", escaped(event.at("path").get<std::string>()) +
                                       styled(event.at("activates").get<bool>()
                                                  ? "  (to the front)"
                                                  : "  (in the background)",
                                              Style::dim));
        }
    }
    if (!result["performed"].empty()) {
        text += line("Performed", styled("Quorva wrote the record down in Performed.jsonl and "
                                         "deleted it",
                                         Style::good));
    }
    return text;
}

}  // namespace simulator
