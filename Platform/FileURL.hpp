#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace quorva {

/// A file URL as a plain value: an absolute path and whether it names a directory.
///
/// Two file URLs are equal when both parts are: `file:///Users/ada` and `file:///Users/ada/` are
/// different URLs of the same place, and a set holds both. The path is UTF-8, is kept byte for byte
/// but for trailing slashes, and may name something that does not exist.
class FileURL {
 public:
    /// Names a file: `path` without its trailing slashes. A path that had one names a directory,
    /// because that is what the slash says.
    [[nodiscard]] static FileURL file(std::string_view path);

    /// Names a directory, with or without a trailing slash in `path`.
    [[nodiscard]] static FileURL directory(std::string_view path);

    /// The path, without a trailing slash unless it is the root's.
    [[nodiscard]] const std::string& path() const { return path_; }

    [[nodiscard]] bool hasDirectoryPath() const { return hasDirectoryPath_; }

    /// This URL with `component` behind it, naming a file. `component` may itself hold slashes.
    [[nodiscard]] FileURL appendingFile(std::string_view component) const;

    /// This URL with `component` behind it, naming a directory.
    [[nodiscard]] FileURL appendingDirectory(std::string_view component) const;

    /// The directory that holds what this URL names; the root's is the root.
    [[nodiscard]] FileURL deletingLastPathComponent() const;

    friend auto operator<=>(const FileURL&, const FileURL&) = default;

 private:
    FileURL(std::string path, bool hasDirectoryPath)
        : path_(std::move(path)), hasDirectoryPath_(hasDirectoryPath) {}

    static std::string_view withoutTrailingSlashes(std::string_view path);

    std::string path_;
    bool hasDirectoryPath_;
};

inline std::string_view FileURL::withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

inline FileURL FileURL::file(std::string_view path) {
    return {std::string(withoutTrailingSlashes(path)), path.ends_with('/')};
}

inline FileURL FileURL::directory(std::string_view path) {
    return {std::string(withoutTrailingSlashes(path)), true};
}

inline FileURL FileURL::appendingFile(std::string_view component) const {
    std::string path = path_;
    if (!path.ends_with('/')) {
        path += '/';
    }
    return file(path.append(component));
}

inline FileURL FileURL::appendingDirectory(std::string_view component) const {
    return directory(appendingFile(component).path());
}

inline FileURL FileURL::deletingLastPathComponent() const {
    const std::size_t slash = path_.rfind('/');
    if (slash == std::string::npos) {
        return *this;
    }
    return directory(std::string_view(path_).substr(0, slash == 0 ? 1 : slash));
}

}  // namespace quorva

namespace quorva::platform {

/// `url` in the platform's standard form: no `.` and no `..`, no doubled slashes. On macOS a path
/// below `/private` loses that prefix where the shorter path names the same thing. Whether it names
/// a directory is kept.
[[nodiscard]] FileURL standardizedFileURL(const FileURL& url);

/// `path` with every symbolic link in it followed. What does not exist is left as it is. On macOS a
/// result below `/private` loses that prefix where the shorter path names the same thing.
[[nodiscard]] std::string pathByResolvingSymbolicLinks(const std::string& path);

}  // namespace quorva::platform
