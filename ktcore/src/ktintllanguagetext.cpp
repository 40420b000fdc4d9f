#include "englishtexts.h"
#include "inifile.h"

#include <ktcore/ktintllanguagetext.h>

#include <wx/mstream.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <utility>

template class KtSingleton<KtIntlLanguageTextImp>;

namespace {

/// Entries in a section of full text numbers.
constexpr std::int64_t sectionSize = 100000;

constexpr int builtInSection = 48;

/// @return the number that the whole name is; nothing for any other name.
std::optional<int> NumberOf(const wxString& name)
{
    const std::string digits = name.utf8_string();
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    return whole ? std::optional(number) : std::nullopt;
}

using Texts = std::map<std::pair<int, int>, std::wstring>;

void ReadSection(wxFileConfig& content, const wxString& name, int section, Texts& texts)
{
    content.SetPath('/' + name);
    wxString entryName;
    long position = 0;
    for (bool found = content.GetFirstEntry(entryName, position); found;
         found = content.GetNextEntry(entryName, position)) {
        if (const std::optional<int> entry = NumberOf(entryName)) {
            texts[{section, *entry}] = content.Read(entryName, wxString()).ToStdWstring();
        }
    }
}

Texts TextsIn(wxFileConfig& content)
{
    Texts texts;
    wxString name;
    long position = 0;
    for (bool found = content.GetFirstGroup(name, position); found;
         found = content.GetNextGroup(name, position)) {
        if (const std::optional<int> section = NumberOf(name)) {
            ReadSection(content, name, *section, texts);
            content.SetPath("/");
        }
    }
    return texts;
}

/// @return nothing when the file cannot be read or has no text of the section that the built-in
///         texts have: it is no language file then, but perhaps one of another program, or one that
///         a power failure has emptied.
std::optional<Texts> TextsOfFile(const wxString& path)
{
    IniFile file(path);
    Texts texts = TextsIn(file.Content());
    const bool isLanguageFile = std::any_of(texts.begin(), texts.end(), [](const auto& text) {
        return text.first.first == builtInSection;
    });
    return isLanguageFile ? std::optional(std::move(texts)) : std::nullopt;
}

Texts BuiltInTexts()
{
    wxMemoryInputStream text(englishTexts.data(), englishTexts.size());
    return TextsIn(IniFile(text).Content());
}

} // namespace

const wchar_t* KtIntlLanguageText::GetText(int id)
{
    // 64 bits, because the smallest int has no absolute value.
    const std::int64_t section = std::abs(std::int64_t{id}) / sectionSize;
    const std::int64_t entry = id % sectionSize; // the remainder keeps the sign
    return GetText(static_cast<int>(section), static_cast<int>(entry));
}

const wchar_t* KtIntlLanguageTextImp::GetText(int section, int entry)
{
    if (!m_loaded) {
        Load();
    }
    const auto text = m_texts.find({section, entry});
    return text != m_texts.end() ? text->second.c_str() : nullptr;
}

void KtIntlLanguageTextImp::SetFilePath(const wchar_t* path)
{
    const wxString given(path);
    m_path = given.empty() ? given : AbsolutePath(given);
    m_loaded = false;
}

void KtIntlLanguageTextImp::SetLanguage(const wchar_t* language)
{
    m_language = language;
    m_loaded = false;
}

void KtIntlLanguageTextImp::Load()
{
    std::optional<Texts> texts;
    if (!m_path.empty() && !m_language.empty()) {
        texts = TextsOfFile(m_path + '/' + m_language + ".lng");
    }
    m_texts = texts ? std::move(*texts) : BuiltInTexts();
    m_loaded = true;
}
