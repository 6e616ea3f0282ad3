#include "Doctor/Text.hpp"

#include <algorithm>
#include <cstddef>

#include "QuorvaFinderExtension/MonitoredFolders.hpp"
#include "Simulator/Text.hpp"

namespace quorva::doctor {

namespace {

using simulator::escaped;

/// Of the entries of one menu no more are shown.
constexpr std::size_t entryLimit = 100;

constexpr std::string_view bold = "1";
constexpr std::string_view dim = "2";
constexpr std::string_view red = "31";

std::string padded(std::string_view text, std::size_t width) {
    return std::string(text) + std::string(width > text.size() ? width - text.size() : 0, ' ');
}

class Writer {
 public:
    explicit Writer(bool isColoured) : isColoured_(isColoured) {}

    [[nodiscard]] std::string styled(std::string_view text, std::string_view style) const {
        return isColoured_ ? joined({"\x1b[", style, "m", text, "\x1b[0m"}) : std::string(text);
    }

    void line(std::initializer_list<std::string_view> parts) { result_ += joined(parts) + "\n"; }

    void heading(std::string_view title) { line({"\n", styled(title, bold)}); }

    void files(const Report& report) {
        std::size_t width = 0;
        for (const FileReport& file : report.files) {
            width = std::max(width, file.name.size());
        }
        for (const FileReport& file : report.files) {
            const std::string_view state = file.isUsable ? "read" : "ignored";
            const std::string counts = numbers(file);
            line({padded(file.name, width + 2), padded(file.isFound ? state : "not found", 11),
                  padded(file.encoding, counts.empty() ? 0 : 11), counts});
        }
    }

    void findings(const Report& report, Severity severity, std::string_view title,
                  std::string_view style) {
        if (report.count(severity) == 0) {
            return;
        }
        heading(title);
        for (const FileReport& file : report.files) {
            for (const Finding& finding : file.findings) {
                if (finding.kind.severity == severity) {
                    line({"  ", styled(file.name, style), ": ", escaped(finding.message)});
                }
            }
            for (const auto& [kind, counted] : file.counts) {
                if (counted.severity == severity && counted.count > findingLimit) {
                    line({"  ", styled(file.name, style), ": and ",
                          std::to_string(counted.count - findingLimit), " more of the kind ",
                          kind});
                }
            }
        }
    }

    void menu(const std::vector<MenuEntry>& entries, std::size_t depth) {
        const std::string indentation(2 + (4 * depth), ' ');
        for (std::size_t index = 0; index < std::min(entries.size(), entryLimit); ++index) {
            const MenuEntry& entry = entries[index];
            if (entry.isSeparator) {
                line({indentation, styled("────────", dim)});
                continue;
            }
            const std::string id = escaped(entry.id + (entry.destinationPath.empty() ? "" : " ") +
                                           entry.destinationPath);
            line({indentation, escaped(entry.title), entry.submenu ? " ▸" : "",
                  entry.submenu && entry.submenu->empty() ? " (empty)" : "", id.empty() ? "" : "  ",
                  styled(id, dim)});
            if (entry.submenu) {
                menu(*entry.submenu, depth + 1);
            }
        }
        if (entries.size() > entryLimit) {
            line({indentation, "and ", std::to_string(entries.size() - entryLimit), " more"});
        }
    }

    [[nodiscard]] std::string result() const { return result_; }

 private:
    [[nodiscard]] static std::string numbers(const FileReport& file) {
        std::string result;
        for (const auto& [severity, name] :
             {std::pair{Severity::finding, "finding"}, std::pair{Severity::note, "note"}}) {
            if (const std::size_t count = file.count(severity); count > 0) {
                result += joined({result.empty() ? "" : ", ", std::to_string(count), " ", name,
                                  count == 1 ? "" : "s"});
            }
        }
        return result;
    }

    bool isColoured_;
    std::string result_;
};

std::string breadcrumbs(const std::vector<std::string>& titles) {
    std::string result;
    for (const std::string& title : titles) {
        result += (result.empty() ? "" : " ▸ ") + escaped(title);
    }
    return result;
}

std::string_view condition(Enabled enabled) {
    switch (enabled) {
        case Enabled::always:
            return "can be clicked whatever is selected";
        case Enabled::withSelectionOrTarget:
            return "greyed while nothing is selected and Finder names no folder";
        case Enabled::withSelection:
            return "greyed while nothing is selected";
        case Enabled::never:
            return "always greyed";
    }
    std::unreachable();
}

}  // namespace

std::string text(const Homes& homes, const Report& report, bool isColoured) {
    Writer writer(isColoured);
    writer.line({"home          ", escaped(homes.home)});
    writer.line({"account home  ", escaped(homes.accountHome)});
    writer.line({"real home     ", escaped(realUserHomeURL().path()), "\n"});
    writer.files(report);
    if (report.count(Severity::finding) == 0) {
        writer.line({"\nNothing to mend."});
    }
    writer.findings(report, Severity::finding, "Findings", red);
    writer.findings(report, Severity::note, "Notes", dim);
    writer.heading("Menu");
    writer.menu(report.menu, 0);
    return writer.result();
}

std::string text(const Report& report, std::string_view name, const Explanations& explanations,
                 bool isColoured) {
    Writer writer(isColoured);
    if (explanations.matches.empty()) {
        const std::string meant = suggestion(report, name);
        writer.line({escaped(name), " is neither in the catalogue nor in the settings",
                     meant.empty() ? "" : ": did you mean ", escaped(meant),
                     meant.empty() ? "" : "?"});
    }
    for (const Explanation& explanation : explanations.matches) {
        writer.line({writer.styled(escaped(explanation.title), bold), "  ", explanation.what,
                     explanation.id.empty() ? "" : " ", escaped(explanation.id),
                     explanation.place.empty() ? "" : ", ", escaped(explanation.place)});
        writer.line({"  ", explanation.isShown ? "shown" : "not shown"});
        for (const std::vector<std::string>& titles : explanation.locations) {
            writer.line({"  at ", breadcrumbs(titles)});
        }
        if (explanation.what != "feature" && !explanation.locations.empty()) {
            writer.line({"  ", condition(explanation.enabled)});
        }
        for (const std::string& reason : explanation.reasons) {
            writer.line({"  because: ", escaped(reason)});
        }
        for (const std::string& remark : explanation.remarks) {
            writer.line({"  ", escaped(remark)});
        }
    }
    if (explanations.omitted > 0) {
        writer.line({"and ", std::to_string(explanations.omitted), " more"});
    }
    return writer.result();
}

std::string escapedLines(std::string_view text) {
    std::string result;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        result += escaped(text.substr(start, end - start));
        if (end < text.size()) {
            result += '\n';
        }
        start = end + 1;
    }
    return result;
}

}  // namespace quorva::doctor
