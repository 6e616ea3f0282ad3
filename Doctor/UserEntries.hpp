#pragma once

#include "Doctor/Report.hpp"
#include "QuorvaFinderExtension/SettingsReading.hpp"

namespace quorva::doctor {

/// Adds the entries that the settings files list to the report, which has its files and its menu,
/// and to each entry of the menu the one that it shows. `reading` is what the menu was made from.
void addUserEntries(Report& report, const SettingsReading& reading);

}  // namespace quorva::doctor
