#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "QuorvaFinderExtension/FinderFeature.hpp"

namespace simulator {

/// `action` as the protocol writes it: its case, with the payload in parentheses where there is
/// one, as in `copyPath(fullPath)` and `moveToFolder`.
std::string finderFeatureActionText(const quorva::FinderFeatureAction& action);

/// The action that `text` writes. Absent when it writes none.
std::optional<quorva::FinderFeatureAction> finderFeatureActionWithText(std::string_view text);

}  // namespace simulator
