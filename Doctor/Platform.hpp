#pragma once

#include <string>

namespace quorva::doctor {

struct Homes {
    /// The home that the extension sees.
    std::string home;
    /// The home of the user's account.
    std::string accountHome;
};

/// Sets the homes that the platform names from now on.
void setHomes(Homes homes);

/// The name of the user that this process runs for. Empty when there is none.
[[nodiscard]] std::string accountName();

}  // namespace quorva::doctor
