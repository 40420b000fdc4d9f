#include "plcintlang.h"

#include <ktcore/ktsingleton.h>

#include <vector>

namespace {

enum class Kind
{
    Percent, ///< "%%"
    Number,
    String,
    Other
};

/// A conversion in a format text.
struct Conversion
{
    std::size_t start;
    std::size_t end;
    wxString flagsAndWidth;
    Kind kind;
};

/// A width beyond three digits fills the memory, not the screen.
constexpr std::size_t maxFlagsAndWidth = 4;

Kind KindOf(const wxString& letters)
{
    if (letters == "d" || letters == "i" || letters == "u" || letters == "ld" || letters == "li" ||
        letters == "lu") {
        return Kind::Number;
    }
    return letters == "s" || letters == "ls" || letters == "S" ? Kind::String : Kind::Other;
}

/// The conversion whose percent sign stands at @p start.
Conversion ConversionAt(const wxString& format, std::size_t start)
{
    if (format.Mid(start, 2) == "%%") {
        return {start, start + 2, "", Kind::Percent};
    }
    const std::size_t letters =
        std::min(format.find_first_not_of("-+ 0123456789", start + 1), format.length());
    const std::size_t count = format.Mid(letters, 1) == "l" ? 2 : 1;
    const wxString flagsAndWidth = format.substr(start + 1, letters - start - 1);
    const Kind kind = flagsAndWidth.length() > maxFlagsAndWidth
                          ? Kind::Other
                          : KindOf(format.Mid(letters, count));
    return {start, std::min(letters + count, format.length()), flagsAndWidth, kind};
}

std::vector<Conversion> ConversionsIn(const wxString& format)
{
    std::vector<Conversion> conversions;
    std::size_t position = format.find('%');
    while (position != wxString::npos) {
        conversions.push_back(ConversionAt(format, position));
        position = format.find('%', conversions.back().end);
    }
    return conversions;
}

/// @p print turns the flags and width of the placeholder into the printed argument.
template <typename Print>
wxString Fill(const wxString& format, Kind wanted, const wxString& plainArgument, Print print)
{
    wxString result;
    std::size_t copied = 0;
    int placeholders = 0;
    for (const Conversion& conversion : ConversionsIn(format)) {
        result += format.substr(copied, conversion.start - copied);
        copied = conversion.end;
        if (conversion.kind == Kind::Percent) {
            result += '%';
            continue;
        }
        ++placeholders;
        if (conversion.kind != wanted || placeholders > 1) {
            return format + ' ' + plainArgument;
        }
        result += print(conversion.flagsAndWidth);
    }
    return result + format.substr(copied);
}

} // namespace

KtIntlLanguageText& IntlLang()
{
    return IntlLangImp();
}

KtIntlLanguageTextImp& IntlLangImp()
{
    return KtSingleton<KtIntlLanguageTextImp>::Instance();
}

wxString LanguageText(TextId id)
{
    const wchar_t* text = IntlLang().GetText(static_cast<int>(id));
    return text != nullptr ? wxString(text) : wxString();
}

wxString LanguageText(TextId id, int argument)
{
    return FillPlaceholder(LanguageText(id), argument);
}

wxString LanguageText(TextId id, const wxString& argument)
{
    return FillPlaceholder(LanguageText(id), argument);
}

// A language file may hold anything, so no text of it ever becomes a format of the toolkit: only
// the flags and the width, checked above, do.

wxString FillPlaceholder(const wxString& format, int argument)
{
    return Fill(
        format, Kind::Number, wxString::Format("%d", argument), [&](const wxString& flagsAndWidth) {
            return wxString::Format('%' + flagsAndWidth + 'd', argument);
        });
}

wxString FillPlaceholder(const wxString& format, const wxString& argument)
{
    return Fill(format, Kind::String, argument, [&](const wxString& flagsAndWidth) {
        return wxString::Format('%' + flagsAndWidth + 's', argument);
    });
}
