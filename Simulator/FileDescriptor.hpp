#pragma once

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

namespace simulator {

/// Owns a file descriptor, and closes it in the end. Negative where there is none.
class FileDescriptor {
 public:
    explicit FileDescriptor(int number = -1) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }

    [[nodiscard]] int number() const { return number_; }

 private:
    int number_;
};

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
