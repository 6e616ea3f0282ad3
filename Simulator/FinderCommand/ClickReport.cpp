#include "Simulator/FinderCommand/ClickReport.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string_view>
#include <thread>

#include "Simulator/FinderCommand/ContainingApplication.hpp"
#include "Simulator/FinderCommand/Terminal.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;

/// The value of `text`, or the text itself.
ordered_json parsed(const std::string& text) {
    const ordered_json value = ordered_json::parse(text, nullptr, false);
    return value.is_discarded() ? ordered_json(text) : value;
}

/// Whether `left` and `right` say the same, in whatever order.
bool isSame(const ordered_json& left, const ordered_json& right) {
    return nlohmann::json(left) == nlohmann::json(right);
}

/// The lines of `folder` from the `first` on that perform `records`. Waits for each as long as a
/// containing application runs that would write it.
ordered_json performedLines(const QuorvaFolder& folder, std::size_t first,
                            const ordered_json& records, const std::filesystem::path& home) {
    // A process that has just begun can't be told by its environment yet.
    const char* const launches = std::getenv("SIMULATOR_LAUNCH");
    const int patience = launches != nullptr && std::string_view(launches) == "1" ? 20 : 0;
    ordered_json found = ordered_json::array();
    for (int attempt = 0; attempt < 200; ++attempt) {
        found = ordered_json::array();
        const std::vector<std::string> lines = folder.performed();
        for (std::size_t index = first; index < lines.size(); ++index) {
            const ordered_json line = parsed(lines[index]);
            if (std::ranges::any_of(records,
                                    [&](const auto& record) { return isSame(record, line); })) {
                found.push_back(line);
            }
        }
        if (found.size() >= records.size() ||
            (attempt >= patience && containingApplications(home).empty())) {
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return found;
}

std::string label(const std::string& name) {
    return "  " + styled(name + std::string(14 - name.size(), ' '), Style::heading);
}

std::string indented(const std::string& text) {
    std::string result;
    for (const char character : text) {
        result += character;
        if (character == '\n') {
            result += std::string(16, ' ');
        }
    }
    return result;
}

}  // namespace

ordered_json click(ExtensionProcess& extension, const MenuEntry& entry, ordered_json request,
                   const std::filesystem::path& home) {
    const QuorvaFolder folder(home);
    request["request"] = "click";
    request["indexPath"] = entry.indexPath;

    const std::size_t performedBefore = folder.performed().size();
    ordered_json result;
    ordered_json records = ordered_json::object();
    {
        const QueueHold hold(folder.queue());
        const auto before = folder.records();
        result = extension.ask(std::move(request));
        for (const auto& [name, text] : folder.records()) {
            if (!before.contains(name)) {
                records[name] = parsed(text);
            }
        }
    }
    result["titles"] = entry.titles;
    result["performed"] = performedLines(folder, performedBefore, records, home);
    result["records"] = std::move(records);
    return result;
}

std::string clickText(const ordered_json& result) {
    std::string text = label("Clicked") + styled(breadcrumbs(result["titles"]), Style::bold) + "\n";
    for (const auto& [name, record] : result["records"].items()) {
        text += label("Record") + styled(name, Style::dim) + "\n" + std::string(16, ' ') +
                indented(record.dump(2)) + "\n";
    }
    if (result["records"].empty()) {
        text += label("Record") + styled("none reached the queue", Style::bad) + "\n";
    }
    for (const ordered_json& event : result["events"]) {
        if (event["event"] == "notification") {
            text += label("Notification") + event["name"].get<std::string>() +
                    (event["userInfo"].is_null() ? "" : " " + event["userInfo"].dump()) + "\n";
        } else {
            text += label("Launch") + event["path"].get<std::string>() +
                    styled(event["activates"] ? "  (to the front)" : "  (in the background)",
                           Style::dim) +
                    "\n";
        }
    }
    if (!result["performed"].empty()) {
        text +=
            label("Performed") +
            styled("Quorva wrote the record down in Performed.jsonl and deleted it", Style::good) +
            "\n";
    }
    return text;
}

}  // namespace simulator
