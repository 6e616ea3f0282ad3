#include "QuorvaFinderExtension/DiagnosticLog.hpp"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "Platform/Console.hpp"
#include "Platform/Data.hpp"
#include "Platform/Date.hpp"
#include "Platform/FileHandle.hpp"
#include "Platform/FileManager.hpp"

namespace quorva {

namespace {

/// `timeInterval`, in seconds since 1970, as "2026-11-16 00:06:18 +0000".
std::string dateDescription(double timeInterval) {
    using namespace std::chrono;
    const sys_seconds time{seconds(static_cast<seconds::rep>(std::floor(timeInterval)))};
    const sys_days day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    std::array<char, 64> text{};
    const int length = std::snprintf(
        text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d +0000",
        static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
        static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

/// Appends `line` to the file at `url`. A file that is not there, or that can't be opened for
/// writing, is replaced by one that holds only `line`: better the last line than none.
void write(std::string line, const FileURL& url) {
    if (platform::fileExistsAtPath(url.path())) {
        if (const auto handle = platform::FileHandle::forAppendingToURL(url)) {
            // A full disk may have torn the line before; this one still begins on its own.
            if (handle->lastByte().value_or('\n') != '\n') {
                line.insert(0, "\n", 1);
            }
            static_cast<void>(handle->write(line));
            return;
        }
    }
    static_cast<void>(platform::writeDataAtomically(dataWithText(line), url));
}

void appendToFiles(std::string_view message) {
    const std::string line = "[" + dateDescription(platform::timeIntervalSince1970()) + "] " +
                             std::string(message) + "\n";
    platform::logToConsole(message);
    write(line, FileURL::file(temporaryDiagnosticLogPath));
    const Result<FileURL> applicationSupport = platform::urlForDirectoryInUserDomainCreating(
        platform::SearchPathDirectory::applicationSupport);
    if (!applicationSupport) {
        return;
    }
    const FileURL folder = applicationSupport->appendingDirectory("Quorva");
    static_cast<void>(platform::createDirectoryWithIntermediateDirectories(folder));
    write(line, folder.appendingFile(diagnosticLogFileName));
}

/// Appends what `makeMessage` returns.
template <typename MakeMessage>
void appendContained(MakeMessage makeMessage) noexcept {
    try {
        appendToFiles(makeMessage());
    } catch (...) {
        // Out of memory, most likely: the caller's work matters more than its line.
        return;
    }
}

}  // namespace

void appendDiagnosticLog(std::string_view message) noexcept {
    appendContained([message] { return message; });
}

void appendFailureToDiagnosticLog(std::string_view operation,
                                  std::string_view description) noexcept {
    appendContained([&] { return std::string(operation).append(" failed: ").append(description); });
}

std::string bracketedList(const std::vector<std::string>& strings) {
    std::string list = "[";
    for (const std::string& string : strings) {
        if (list.size() > 1) {
            list += ", ";
        }
        list += '"';
        list += string;
        list += '"';
    }
    list += ']';
    return list;
}

std::string bracketedPaths(const std::vector<FileURL>& urls) {
    std::vector<std::string> paths;
    paths.reserve(urls.size());
    for (const FileURL& url : urls) {
        paths.push_back(url.path());
    }
    return bracketedList(paths);
}

}  // namespace quorva
