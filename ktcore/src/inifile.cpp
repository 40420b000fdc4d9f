#include "inifile.h"

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/mstream.h>
#include <wx/textfile.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// As many symbolic links in a row as the system itself follows.
constexpr int maxLinks = 40;

bool CanBeRead(const wxString& path)
{
    // Only a regular file: opening a pipe would wait for its writer.
    return wxFileName::FileExists(path) && wxTextFile().Open(path);
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

bool WriteNewFile(const fs::path& file, const std::string& text)
{
    std::FILE* stream = std::fopen(file.c_str(), "wxe");
    if (stream == nullptr) {
        return false;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
                         std::fflush(stream) == 0 && ::fsync(::fileno(stream)) == 0;
    return std::fclose(stream) == 0 && written;
}

// The toolkit's own way removes the old file before it renames the new one: a crash in between
// would lose both.
bool ReplaceFile(const fs::path& file, const std::string& text)
{
    const fs::path fresh = file.native() + '.' + std::to_string(::getpid()) + ".new";
    std::error_code error;
    fs::remove(fresh, error); // left behind by a crash
    bool replaced = WriteNewFile(fresh, text);
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

IniFile::IniFile(const wxString& path)
    : m_path(path), m_loaded(CanBeRead(path)),
      m_content(wxString(), wxString(), path, wxString(), wxCONFIG_USE_LOCAL_FILE)
{
    m_content.DisableAutoSave();
    m_content.SetExpandEnvVars(false);
}

IniFile::IniFile(wxInputStream& text) : m_loaded(true), m_content(text)
{
    m_content.DisableAutoSave();
    m_content.SetExpandEnvVars(false);
}

bool IniFile::Save()
{
    const auto name = m_path.fn_str();
    if (name.data() == nullptr) {
        return false; // not a file name in this locale
    }
    const fs::path file = LinkTarget(name.data());
    std::error_code error;
    const bool isNew = fs::status(file, error).type() == fs::file_type::not_found;
    if (!isNew && (!m_loaded || ::access(file.c_str(), W_OK) != 0)) {
        return false;
    }
    wxMemoryOutputStream stream;
    if (!m_content.Save(stream, wxConvUTF8)) {
        return false;
    }
    std::string text(stream.GetSize(), '\0');
    stream.CopyTo(text.data(), text.size());
    return ReplaceFile(file, text);
}

wxString AbsolutePath(const wxString& path)
{
    if (path.StartsWith("/")) {
        return path;
    }
    const ToolkitSilence silence;
    const wxString directory = wxGetCwd();
    // A process may stand in a directory that is gone; no file lies below the device.
    return (directory.empty() ? wxString("/dev/null") : directory) + '/' + path;
}
