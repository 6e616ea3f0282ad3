#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "Cocoa/AccountDatabase.hpp"
#include "Doctor/Explanation.hpp"
#include "Doctor/Json.hpp"
#include "Doctor/Platform.hpp"
#include "Doctor/Report.hpp"
#include "Doctor/Text.hpp"
#include "Simulator/Text.hpp"

namespace quorva::doctor {

namespace {

constexpr std::string_view container = "/Library/Containers/";
constexpr std::string_view extensionContainer =
    "/Library/Containers/app.ferrolin.Quorva.FinderExtension/Data";

constexpr int nothingFound = 0;
constexpr int somethingFound = 1;
constexpr int canNotRun = 2;

struct Options {
    std::string home;
    std::string accountHome;
    bool isJSON = false;
    std::string explained;
    bool isExplanation = false;
};

std::string absolutePath(const std::string& path) {
    std::string absolute = std::filesystem::absolute(path).lexically_normal().string();
    while (absolute.size() > 1 && absolute.ends_with('/')) {
        absolute.pop_back();
    }
    return absolute;
}

/// Throws unless the settings of `home` can be looked for.
void checkHome(const std::string& home) {
    if (::access((home + "/.").c_str(), X_OK) != 0) {
        throw std::system_error(errno, std::generic_category(), home);
    }
}

/// The home of the account as the system has it. Empty when it has none.
std::string systemAccountHome() {
    return homeDirectoryInAccountDatabase(accountName()).value_or("");
}

std::string ownHome() {
    const char* const home = std::getenv("HOME");
    return home == nullptr || *home == '\0' ? systemAccountHome() : home;
}

/// The home of an account with this home, in which the extension may have a container.
std::string homeOfExtension(const std::string& accountHome) {
    const std::string inContainer = accountHome + std::string(extensionContainer);
    struct stat status{};
    // One that may not be looked at is there all the same, and is told.
    const bool isMissing =
        ::stat(inContainer.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
    return isMissing ? accountHome : inContainer;
}

Homes homes(const Options& options) {
    const std::string home =
        options.home.empty()
            ? homeOfExtension(options.accountHome.empty() ? ownHome()
                                                          : absolutePath(options.accountHome))
            : absolutePath(options.home);
    if (home.empty()) {
        throw std::runtime_error("there is no home: name one with --home");
    }
    checkHome(home);
    if (!options.accountHome.empty()) {
        return {home, absolutePath(options.accountHome)};
    }
    if (!options.home.empty()) {
        // That of an extension in its sandbox is a folder in that of the account.
        return {home, home.substr(0, home.find(container))};
    }
    const std::string accountHome = systemAccountHome();
    return {home, accountHome.empty() ? ownHome() : accountHome};
}

void write(std::string_view output) {
    if (std::fwrite(output.data(), 1, output.size(), stdout) != output.size() ||
        std::fflush(stdout) != 0) {
        throw std::system_error(errno, std::generic_category(), "the output could not be written");
    }
}

int run(const Options& options) {
    const Homes examined = homes(options);
    setHomes(examined);
    Report report;
    examine(report);
    const char* const noColor = std::getenv("NO_COLOR");
    const bool isColoured =
        (noColor == nullptr || *noColor == '\0') && ::isatty(STDOUT_FILENO) == 1;
    if (!options.isExplanation) {
        write(options.isJSON ? json(examined, report) : text(examined, report, isColoured));
        return report.count(Severity::finding) == 0 ? nothingFound : somethingFound;
    }
    const Explanations found = explanations(report, options.explained);
    write(options.isJSON ? json(report, options.explained, found)
                         : text(report, options.explained, found, isColoured));
    return found.isAnyShown ? nothingFound : somethingFound;
}

int failed(std::string_view reason) {
    std::fprintf(stderr, "quorva-doctor: %s\n", simulator::escaped(reason).c_str());
    return canNotRun;
}

int parseAndRun(int count, char** arguments) {
    CLI::App app(
        "Says what Quorva's Finder extension makes of its settings, and why: what of them "
        "is repaired or\ndropped, and the menu that results. It changes nothing.",
        "quorva-doctor");
    Options options;
    app.add_option("--home", options.home,
                   "The home that the extension sees. Without it the account's, or the extension's "
                   "container in it")
        ->type_name("DIR");
    app.add_option("--account-home", options.accountHome,
                   "The home of the account, where it is another")
        ->type_name("DIR");
    app.add_flag("--json", options.isJSON, "Print JSON, as Documentation/Doctor.md has it");
    const CLI::Option* const explain =
        app.add_option("--explain", options.explained,
                       "Say why a feature, a command or an entry is shown or not: its identifier "
                       "or its title")
            ->type_name("ID");
    app.set_version_flag("--version", "quorva-doctor " QUORVA_VERSION);
    app.footer(
        "Exit status: 0 when there is nothing to mend, or what is explained is shown; 1 with "
        "findings, or\nwhen it is not shown; 2 when it can't run.");
    try {
        app.parse(count, arguments);
        options.isExplanation = explain->count() > 0;
        return run(options);
    } catch (const CLI::Success& end) {
        return app.exit(end);
    } catch (const CLI::ParseError& error) {
        return failed(std::string(error.what()) + " (--help says more)");
    } catch (const std::exception& error) {
        return failed(error.what());
    }
}

}  // namespace

}  // namespace quorva::doctor

int main(int count, char** arguments) {
    return quorva::doctor::parseAndRun(count, arguments);
}
