#pragma once

#include "ktapi.h"
#include "ktsingleton.h"

#include <wx/string.h>

#include <map>
#include <string>
#include <utility>

/// Operator-visible texts by number. A full number is section * 100000 + entry.
class KTCORE_API KtIntlLanguageText
{
public:
    KtIntlLanguageText() = default;
    KtIntlLanguageText(const KtIntlLanguageText&) = delete;
    KtIntlLanguageText(KtIntlLanguageText&&) = delete;
    KtIntlLanguageText& operator=(const KtIntlLanguageText&) = delete;
    KtIntlLanguageText& operator=(KtIntlLanguageText&&) = delete;
    virtual ~KtIntlLanguageText() = default;

    /// @return the text, zero-terminated, owned by the service and valid until path or language are
    ///         set again; null when there is no such text.
    virtual const wchar_t* GetText(int section, int entry) = 0;

    /// Looks up a full number; the entry carries the number's sign.
    const wchar_t* GetText(int id);
};

/// Texts from the file <path>/<language>.lng: INI text in UTF-8, a section per text section
/// ("[48]"), a line per text ("49=PLC debugger"), "\n" and "\\" as escapes, double quotes around a
/// value that begins or ends with a blank. A text that the file lacks does not exist. When no file
/// can be loaded at all (none is named, it cannot be read, or it has no section), a built-in
/// English table serves: nobody shall face a window without labels.
/// GUI thread; the texts are read once, at the first lookup after path or language were set.
class KTCORE_API KtIntlLanguageTextImp : public KtIntlLanguageText
{
public:
    using KtIntlLanguageText::GetText;
    const wchar_t* GetText(int section, int entry) override;

    /// @param path directory of the language files, a relative one taken against the current
    ///        directory at this moment; empty or null for none.
    void SetFilePath(const wchar_t* path);

    /// @param language name of the language file without its ending, for example "de"; empty or
    ///        null for none.
    void SetLanguage(const wchar_t* language);

private:
    void Load();

    wxString m_path;
    wxString m_language;
    std::map<std::pair<int, int>, std::wstring> m_texts; ///< By section and entry.
    bool m_loaded = false;
};

// The one service of the process lives in this library, whichever libraries use it.
extern template class KTCORE_API KtSingleton<KtIntlLanguageTextImp>;
