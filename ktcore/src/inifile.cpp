#include "inifile.h"

#include <ktcore/ktreplacefile.h>

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/mstream.h>
#include <wx/textfile.h>

#include <string>

namespace {

/// @return whether the toolkit loses nothing of a file when it writes it anew: lines with a zero
///         character in them it joins, and a key of the host's would be lost.
bool CanBeReplaced(const wxString& path)
{
    // Only a regular file: opening a pipe would wait for its writer.
    wxTextFile file;
    if (!wxFileName::FileExists(path) || !file.Open(path)) {
        return false;
    }
    std::size_t line = 0;
    while (line < file.GetLineCount() && file[line].find(L'\0') == wxString::npos) {
        ++line;
    }
    return line == file.GetLineCount();
}

} // namespace

IniFile::IniFile(const wxString& path)
    : m_path(path), m_replaceable(CanBeReplaced(path)),
      m_content(wxString(), wxString(), path, wxString(), wxCONFIG_USE_LOCAL_FILE)
{
    m_content.DisableAutoSave();
    m_content.SetExpandEnvVars(false);
}

IniFile::IniFile(wxInputStream& text) : m_replaceable(true), m_content(text)
{
    m_content.DisableAutoSave();
    m_content.SetExpandEnvVars(false);
}

bool IniFile::SaveWith(const wxString& name, const wxString& value)
{
    wxString had;
    if (m_content.Read(name, &had) && had == value) {
        return true;
    }
    if (!m_replaceable && wxFileName::FileExists(m_path)) {
        return false;
    }
    wxMemoryOutputStream stream;
    if (!m_content.Write(name, value) || !m_content.Save(stream, wxConvUTF8)) {
        return false;
    }
    std::string text(stream.GetSize(), '\0');
    stream.CopyTo(text.data(), text.size());

    // The toolkit reports success also for a key that the file marks as fixed ("!Key=").
    wxMemoryInputStream again(text.data(), text.size());
    wxString taken;
    return IniFile(again).Content().Read(name, &taken) && taken == value &&
           KtReplaceFile(m_path, text);
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
