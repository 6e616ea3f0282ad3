#include "Cocoa/AccountDatabase.hpp"

#include <pwd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

std::optional<std::string> quorva::homeDirectoryInAccountDatabase(const std::string& name) {
    constexpr std::size_t sizeLimit = std::size_t{1} << 20;
    if (name.contains('\0')) {
        return std::nullopt;
    }
    std::vector<char> buffer(1024);
    passwd account = {};
    passwd* found = nullptr;
    int error = 0;
    while ((error = getpwnam_r(name.c_str(), &account, buffer.data(), buffer.size(), &found)) ==
               EINTR ||
           (error == ERANGE && buffer.size() < sizeLimit)) {
        if (error == ERANGE) {
            buffer.resize(buffer.size() * 2);
        }
    }
    return error == 0 && found != nullptr && found->pw_dir != nullptr
               ? std::optional(std::string(found->pw_dir))
               : std::nullopt;
}
