#pragma once

#include "ktapi.h"

#include <wx/string.h>

/// One section of a configuration file: INI text in UTF-8, "[Section]", "Key=Value".
/// GUI thread.
class KTCORE_API KtConfiguration
{
public:
    /// @param section the section's name, for example "Settings".
    /// @param subsection a section inside it; empty for the section itself.
    /// @param file path of the file; a relative one is taken against the current directory at
    ///        this moment. The file need not exist.
    KtConfiguration(const wxString& section, const wxString& subsection, const wxString& file);

    /// Reads one key. A damaged file is read as far as it goes.
    /// @return false when file, section or key is missing; @p value is then unchanged.
    bool Get(const wxString& key, wxString& value) const;

    /// Writes one key through to the file at once and replaces the file atomically; everything
    /// else in it stays. A value that the key has already is not written. Shows no dialog.
    /// @return false when the file could not be written, or fixes the key ("!Key="); nothing in it
    ///         has changed then.
    bool Set(const wxString& key, const wxString& value);

private:
    wxString m_group;
    wxString m_file;
};
