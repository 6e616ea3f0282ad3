#pragma once

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace simulator {

/// Writes all of `bytes`, waiting where `descriptor` does not. Returns 0 or the error's number.
[[nodiscard]] inline int writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            pollfd writable = {descriptor, POLLOUT, 0};
            poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

}  // namespace simulator
