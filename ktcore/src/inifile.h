#pragma once

#include <wx/debug.h>
#include <wx/fileconf.h>
#include <wx/log.h>
#include <wx/stream.h>
#include <wx/string.h>

// INI text in UTF-8 as the toolkit reads and writes it, read as far as it goes. GUI thread.

/// Keeps the toolkit's log and its asserts from the operator for as long as it lives: about a
/// damaged file both would open a dialog of their own.
class ToolkitSilence
{
public:
    ToolkitSilence() : m_handler(wxSetAssertHandler(nullptr)) {}

    ToolkitSilence(const ToolkitSilence&) = delete;
    ToolkitSilence(ToolkitSilence&&) = delete;
    ToolkitSilence& operator=(const ToolkitSilence&) = delete;
    ToolkitSilence& operator=(ToolkitSilence&&) = delete;

    ~ToolkitSilence() { wxSetAssertHandler(m_handler); }

private:
    wxLogNull m_noLog;
    wxAssertHandler_t m_handler;
};

/// The text of one file. The toolkit is silent while the object lives: keep it in a small block.
class IniFile
{
public:
    /// Reads a file. @param path absolute.
    explicit IniFile(const wxString& path);

    /// Reads text that is no file; SaveWith() is not for it.
    explicit IniFile(wxInputStream& text);

    wxFileConfig& Content() { return m_content; }

    /// Gives a key a value and replaces the file atomically, as KtReplaceFile() does, unless the
    /// key has that value already. A file that exists but was not read whole, or that is
    /// write-protected, is never replaced, nor by a text in which the key would have another value.
    /// @return false when the key does not have the value; the file is as it was then.
    bool SaveWith(const wxString& name, const wxString& value);

private:
    ToolkitSilence m_silence; // first, so that it outlives the content
    wxString m_path;
    bool m_replaceable; ///< There was a regular file, and all of it has been read and is kept.
    wxFileConfig m_content;
};

/// @return @p path, a relative one taken against the current directory.
wxString AbsolutePath(const wxString& path);
