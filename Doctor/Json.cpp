#include "Doctor/Json.hpp"

#include <nlohmann/json.hpp>

#include "Doctor/Text.hpp"
#include "QuorvaFinderExtension/MonitoredFolders.hpp"

namespace quorva::doctor {

namespace {

using JSON = nlohmann::ordered_json;

/// Null for the empty string, which stands for nothing.
JSON orNull(std::string_view string) {
    return string.empty() ? JSON() : JSON(string);
}

std::string written(const JSON& document) {
    return escapedLines(document.dump(2, ' ', false, JSON::error_handler_t::replace)) + "\n";
}

JSON object(const Finding& finding) {
    return {
        {"severity", finding.kind.severity == Severity::finding ? "finding" : "note"},
        {"kind", finding.kind.name},
        {"path", finding.path},
        {"value", finding.value},
        {"suggestion", orNull(finding.suggestion)},
        {"message", finding.message},
    };
}

JSON object(const FileReport& file) {
    JSON findings = JSON::array();
    for (const Finding& finding : file.findings) {
        findings.push_back(object(finding));
    }
    JSON omitted = JSON::object();
    for (const auto& [kind, counted] : file.counts) {
        if (counted.count > findingLimit) {
            omitted[std::string(kind)] = counted.count - findingLimit;
        }
    }
    return {
        {"name", file.name},
        {"path", file.path},
        {"found", file.isFound},
        {"encoding", orNull(file.encoding)},
        {"usable", file.isUsable},
        {"findings", std::move(findings)},
        {"omitted", std::move(omitted)},
    };
}

JSON objects(const std::vector<MenuEntry>& entries) {
    JSON result = JSON::array();
    for (const MenuEntry& entry : entries) {
        if (entry.isSeparator) {
            result.push_back({{"separator", true}});
            continue;
        }
        JSON item = {{"title", entry.title}, {"id", orNull(entry.id)}};
        if (entry.submenu) {
            item["submenu"] = objects(*entry.submenu);
        } else {
            item["enabled"] = rawValue(entry.enabled);
            item["destinationPath"] = entry.destinationPath;
            item["source"] =
                entry.source == nullptr
                    ? JSON()
                    : JSON({{"file", entry.source->fileName}, {"path", entry.source->place}});
        }
        result.push_back(std::move(item));
    }
    return result;
}

}  // namespace

std::string json(const Homes& homes, const Report& report) {
    JSON files = JSON::array();
    for (const FileReport& file : report.files) {
        files.push_back(object(file));
    }
    return written({
        {"home", homes.home},
        {"accountHome", homes.accountHome},
        {"realHome", realUserHomeURL().path()},
        {"findings", report.count(Severity::finding)},
        {"notes", report.count(Severity::note)},
        {"files", std::move(files)},
        {"menu", objects(report.menu)},
    });
}

std::string json(const Report& report, std::string_view name, const Explanations& explanations) {
    JSON matches = JSON::array();
    for (const Explanation& explanation : explanations.matches) {
        const bool canBeClicked = explanation.what != "feature" && !explanation.locations.empty();
        matches.push_back({
            {"what", explanation.what},
            {"id", orNull(explanation.id)},
            {"title", explanation.title},
            {"place", orNull(explanation.place)},
            {"shown", explanation.isShown},
            {"locations", explanation.locations},
            {"enabled", canBeClicked ? JSON(rawValue(explanation.enabled)) : JSON()},
            {"reasons", explanation.reasons},
            {"remarks", explanation.remarks},
        });
    }
    return written({
        {"name", name},
        {"matches", std::move(matches)},
        {"omitted", explanations.omitted},
        {"suggestion",
         orNull(explanations.matches.empty() ? suggestion(report, name) : std::string())},
    });
}

}  // namespace quorva::doctor
