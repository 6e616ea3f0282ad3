#include "QuorvaFinderExtension/L10n.hpp"

#include "Platform/Bundle.hpp"

namespace quorva::L10n {

std::string t(std::string_view key) {
    return platform::localizedString(key);
}

}  // namespace quorva::L10n
