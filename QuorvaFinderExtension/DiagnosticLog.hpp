#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/FileURL.hpp"

namespace quorva {

/// The first of the two diagnostic log files. Not writable from inside the App Sandbox, where it is
/// silently absent.
inline constexpr std::string_view temporaryDiagnosticLogPath = "/tmp/quorva-finder-extension.log";

/// The name of the second, in the "Quorva" folder of Application Support.
inline constexpr std::string_view diagnosticLogFileName = "FinderExtension.log";

/// Writes `message` to the console and, as one line with the date before it, to the end of both
/// diagnostic log files. The message is written as it is, line feeds included.
///
/// Never fails: a file that can't be written goes without the line, and the other still gets it. A
/// file that exists but can't be opened for writing, or is not a regular file, is replaced by one
/// that holds just this line.
///
/// May be called from any thread, and several processes write to the same files: each line is one
/// write in the system's append mode, so lines stay whole and stand in the order of the writes.
/// Where two processes both find no file, or both replace one, the last to do so wins, and a line
/// of the other is lost. After a line that a full disk tore, the next begins on a line of its own;
/// one that was only being written at that moment is taken for torn as well, which leaves an empty
/// line behind it.
void appendDiagnosticLog(std::string_view message) noexcept;

/// Appends that `operation` failed and why.
void appendFailureToDiagnosticLog(std::string_view operation,
                                  std::string_view description) noexcept;

/// `["a", "b"]`: the form in which messages show lists. Nothing is escaped.
[[nodiscard]] std::string bracketedList(const std::vector<std::string>& strings);

/// The paths of `urls` in that form.
[[nodiscard]] std::string bracketedPaths(const std::vector<FileURL>& urls);

}  // namespace quorva
