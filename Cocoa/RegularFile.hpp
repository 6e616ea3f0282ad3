#pragma once

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva {

/// The system's description of the error in `errno`.
[[nodiscard]] Error lastSystemError();

/// A descriptor of the regular file at `url`, through links, opened with the flags of `open(2)`.
/// The caller closes it. Fails for anything else that stands there, and never waits: a pipe or a
/// device would hold up whoever opens it, and with it Finder's menu.
[[nodiscard]] Result<int> openRegularFile(const FileURL& url, int flags);

}  // namespace quorva
