#include "file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
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

std::optional<struct stat> StatusOf(const fs::path& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// @return false for a link in a sticky folder that somebody else may have put there, to have this
///         process write where he may not.
bool IsTrusted(const fs::path& link)
{
    const auto folder = StatusOf(link.has_parent_path() ? link.parent_path() / "." : ".");
    const auto status = StatusOf(link);
    return folder && status &&
           ((folder->st_mode & S_ISVTX) == 0 || status->st_uid == ::geteuid() ||
            status->st_uid == folder->st_uid);
}

/// Follows symbolic links by hand, because the file that the last one names need not exist yet.
/// @return where they lead, or the first link that is not to be followed.
fs::path LinkTarget(fs::path path)
{
    std::error_code error;
    for (int links = 0; links < maxLinks && fs::is_symlink(path, error) && IsTrusted(path);
         ++links) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

/// @return why a file may not be replaced, if so.
std::error_code Hindrance(const fs::path& file)
{
    std::error_code error;
    if (fs::is_symlink(file, error)) {
        return std::make_error_code(std::errc::permission_denied);
    }
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

/// @return the mode for a file of another group, to whose members it says no more than to all.
mode_t ModeWithoutGroup(mode_t mode)
{
    constexpr int fromOthersToGroup = 3;
    return (mode & ~mode_t{S_IRWXG}) | (mode & (mode << fromOthersToGroup) & S_IRWXG);
}

/// Gives a new file, which only its owner may read yet, to whom the old one belongs. What this
/// process may not do stays as it is.
void GiveAway(int file, const struct stat& old)
{
    constexpr auto sameOwner = static_cast<uid_t>(-1);
    const bool groupKept =
        ::fchown(file, old.st_uid, old.st_gid) == 0 || ::fchown(file, sameOwner, old.st_gid) == 0;
    [[maybe_unused]] const int changed =
        ::fchmod(file, groupKept ? old.st_mode : ModeWithoutGroup(old.st_mode));
}

/// @param old the file that is to be replaced, if there is one.
std::error_code
WriteNewFile(const fs::path& file, std::string_view bytes, const std::optional<struct stat>& old)
{
    constexpr mode_t forAll = 0666; // less what the process masks out
    const int descriptor = ::open(
        file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, old ? S_IRUSR | S_IWUSR : forAll);
    if (descriptor == -1) {
        return LastError();
    }
    if (old) {
        GiveAway(descriptor, *old);
    }
    std::FILE* const stream = ::fdopen(descriptor, "w");
    if (stream == nullptr) {
        const std::error_code error = LastError();
        ::close(descriptor);
        return error;
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
    error = WriteNewFile(fresh, bytes, StatusOf(file));
    if (!error) {
        fs::rename(fresh, file, error);
    }
    if (error) {
        std::error_code ignored;
        fs::remove(fresh, ignored);
    }
    return error;
}

} // namespace

std::FILE* OpenFile(const char* path)
{
    const int descriptor = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor == -1) {
        return nullptr;
    }
    struct stat status = {};
    const bool known = ::fstat(descriptor, &status) == 0;
    if (known && S_ISREG(status.st_mode)) {
        return ::fdopen(descriptor, "r");
    }
    ::close(descriptor);
    errno = known && S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return nullptr;
}

Result<std::string> ReadFile(const std::string& path)
{
    std::string bytes;
    std::error_code error;
    std::FILE* const stream = OpenFile(path.c_str());
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
