#include "file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace base {

namespace {

namespace fs = std::filesystem;

/// As many symbolic links in a row as the system itself follows.
constexpr int maxLinks = 40;

std::error_code LastError()
{
    return {errno, std::generic_category()};
}

/// Follows symbolic links by hand, because the file that the last one names need not exist yet.
fs::path LinkTarget(fs::path path)
{
    std::error_code error;
    for (int links = 0; links < maxLinks && fs::is_symlink(path, error); ++links) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

/// @return why a file may not be replaced, if so.
std::error_code Hindrance(const fs::path& file)
{
    std::error_code error;
    const fs::file_type type = fs::status(file, error).type();
    if (type == fs::file_type::not_found) {
        return file.empty() ? std::make_error_code(std::errc::no_such_file_or_directory)
                            : std::error_code();
    }
    if (type == fs::file_type::regular) {
        return ::access(file.c_str(), W_OK) == 0 ? std::error_code() : LastError();
    }
    return error ? error : std::make_error_code(std::errc::invalid_argument);
}

std::error_code WriteNewFile(const fs::path& file, std::string_view bytes)
{
    std::FILE* const stream = std::fopen(file.c_str(), "wxe");
    if (stream == nullptr) {
        return LastError();
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() &&
                         std::fflush(stream) == 0 && ::fsync(::fileno(stream)) == 0;
    const std::error_code error = written ? std::error_code() : LastError();
    return std::fclose(stream) == 0 || error ? error : LastError();
}

std::error_code Replace(const fs::path& file, std::string_view bytes)
{
    const fs::path fresh = file.native() + '.' + std::to_string(::getpid()) + ".new";
    std::error_code error;
    fs::remove(fresh, error); // left behind by a crash
    error = WriteNewFile(fresh, bytes);
    if (!error) {
        std::error_code ignored;
        const fs::file_status old = fs::status(file, ignored);
        if (fs::exists(old)) {
            fs::permissions(fresh, old.permissions(), ignored);
        }
        fs::rename(fresh, file, error);
    }
    if (error) {
        std::error_code ignored;
        fs::remove(fresh, ignored);
    }
    return error;
}

} // namespace

Result<std::string> ReadFile(const std::string& path)
{
    std::string bytes;
    std::error_code error;
    std::FILE* const stream = std::fopen(path.c_str(), "re");
    if (stream == nullptr) {
        error = LastError();
    } else {
        std::array<char, 65536> piece;
        while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), stream)) {
            bytes.append(piece.data(), size);
        }
        error = std::ferror(stream) != 0 ? LastError() : std::error_code();
        std::fclose(stream);
    }
    if (error) {
        return Failure{"cannot read \"" + path + "\": " + error.message()};
    }
    return bytes;
}

Result<void> ReplaceFile(const std::string& path, std::string_view bytes)
{
    const fs::path file = LinkTarget(path);
    std::error_code error = Hindrance(file);
    if (!error) {
        error = Replace(file, bytes);
    }
    if (error) {
        return Failure{"cannot write \"" + path + "\": " + error.message()};
    }
    return {};
}

} // namespace base
