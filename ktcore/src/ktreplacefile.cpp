#include <ktcore/ktreplacefile.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// As many symbolic links in a row as the system itself follows.
constexpr int maxLinks = 40;

/// Follows symbolic links by hand, because the file that the last one names need not exist yet.
fs::path LinkTarget(fs::path path)
{
    std::error_code error;
    for (int links = 0; links < maxLinks && fs::is_symlink(path, error); ++links) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

bool WriteNewFile(const fs::path& file, const std::string& bytes)
{
    std::FILE* stream = std::fopen(file.c_str(), "wxe");
    if (stream == nullptr) {
        return false;
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() &&
                         std::fflush(stream) == 0 && ::fsync(::fileno(stream)) == 0;
    return std::fclose(stream) == 0 && written;
}

bool MayBeReplaced(const fs::path& file)
{
    std::error_code error;
    const fs::file_type type = fs::status(file, error).type();
    return type == fs::file_type::not_found ||
           (type == fs::file_type::regular && ::access(file.c_str(), W_OK) == 0);
}

// The toolkit's own way removes the old file before it renames the new one: a crash in between
// would lose both.
bool Replace(const fs::path& file, const std::string& bytes)
{
    const fs::path fresh = file.native() + '.' + std::to_string(::getpid()) + ".new";
    std::error_code error;
    fs::remove(fresh, error); // left behind by a crash
    bool replaced = WriteNewFile(fresh, bytes);
    if (replaced) {
        const fs::file_status old = fs::status(file, error);
        if (fs::exists(old)) {
            fs::permissions(fresh, old.permissions(), error);
        }
        fs::rename(fresh, file, error);
        replaced = !error;
    }
    if (!replaced) {
        fs::remove(fresh, error);
    }
    return replaced;
}

} // namespace

bool KtReplaceFile(const wxString& path, const std::string& bytes)
{
    const auto name = path.fn_str();
    if (name.data() == nullptr || path.empty()) {
        return false;
    }
    const fs::path file = LinkTarget(name.data());
    return MayBeReplaced(file) && Replace(file, bytes);
}
