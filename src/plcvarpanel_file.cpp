#include "plcvarpanel_file.h"

#include <ktcore/ktreplacefile.h>

#include <wx/log.h>
#include <wx/regex.h>
#include <wx/textfile.h>

#include <cwchar>

namespace {

// The positions in these texts are the enumerations' values.
const wxString areaLetters = "AEM?TZ"; // a data block line begins with "DB" instead
const wxString sizeLetters = "XBWD";
const wxString formatLetters = "DHBG";

bool Matches(const wxRegEx& pattern, const wxString& line)
{
    const wxLogNull noLog; // a damaged character is an error dialog of the toolkit's own otherwise
    return pattern.Matches(line);
}

/// Takes the operand letters from the front of the line and fills area and block.
/// @return false when the line is no operand line.
bool TakeArea(wxString& line, PlcDebugVar& var)
{
    static const wxRegEx plainPattern(
        R"([AEMTZ]([BWD]?)\d{1,4}((\.[0-7])?)(/[BHDG]))", wxRE_EXTENDED);
    static const wxRegEx dbPattern(
        R"(DB(1|20|2|3|4|10|15|21|25|26|50|51|52|6\d|7\d|95|100)\.DB([BWDX]?)\d{1,4}((\.[0-7])?)(/[BHDG]))",
        wxRE_EXTENDED);
    constexpr std::size_t dbLetters = 2;

    if (Matches(plainPattern, line)) {
        // The pattern may have matched further behind; the line still has to begin with the area.
        const std::size_t area = areaLetters.find(line[0]);
        if (area == wxString::npos || area == eAreaDb) {
            return false;
        }
        var.area = static_cast<std::int32_t>(area);
        line.Remove(0, 1);
        return true;
    }
    if (!Matches(dbPattern, line)) {
        return false;
    }
    const wxString number = line.BeforeFirst('.').Mid(dbLetters);
    var.area = eAreaDb;
    var.dbNumber = static_cast<std::int32_t>(std::wcstol(number.wc_str(), nullptr, 10));
    line = line.AfterFirst('.').Mid(dbLetters);
    return true;
}

bool IsTimerOrCounter(const PlcDebugVar& var)
{
    return var.area == eAreaTimer || var.area == eAreaCounter;
}

/// Takes the size letter from the front of the line, if there is one.
/// @return false when the letter is wrong for the area.
bool TakeSize(wxString& line, PlcDebugVar& var)
{
    const std::size_t letter = line.empty() ? wxString::npos : sizeLetters.find(line[0]);
    if (letter == wxString::npos) {
        var.size = IsTimerOrCounter(var) ? eSizeWord : eSizeBit;
        return true;
    }
    if (letter == eSizeBit && var.area != eAreaDb) {
        return false;
    }
    var.size = static_cast<std::int32_t>(letter);
    line.Remove(0, 1);
    return true;
}

/// Reads the format letter at the end of the line.
/// @return false when there is none and the area has no format of its own.
bool ReadFormat(const wxString& line, PlcDebugVar& var)
{
    const std::size_t letter = line.empty() ? wxString::npos : formatLetters.find(line.Last());
    if (letter == wxString::npos) {
        var.format = eFormatDecimal;
        return IsTimerOrCounter(var);
    }
    var.format = static_cast<std::int32_t>(letter);
    return true;
}

} // namespace

std::optional<ListLine> ParseListLine(wxString line)
{
    ListLine parsed;
    line.Replace(" ", "");
    if (!TakeArea(line, parsed.var)) {
        return std::nullopt;
    }
    const bool sizeValid = TakeSize(line, parsed.var);
    const bool formatValid = ReadFormat(line, parsed.var);
    parsed.valid = sizeValid && formatValid;
    parsed.address = line.BeforeFirst('/');
    return parsed;
}

std::optional<wxArrayString> ReadListFile(const wxString& path)
{
    const wxLogNull noLog; // the caller shows its own message
    wxTextFile file;
    if (path.empty() || !file.Open(path)) {
        return std::nullopt;
    }
    wxArrayString lines;
    for (std::size_t i = 0; i < file.GetLineCount(); ++i) {
        lines.Add(file.GetLine(i));
    }
    return lines;
}

wxString ListFileText(const std::vector<PlcDebugVar>& vars)
{
    wxString text;
    for (const PlcDebugVar& var : vars) {
        const wxString name = var.GetVarName(false);
        if (name.empty()) {
            break;
        }
        text += name;
        if (var.format >= 0 && static_cast<std::size_t>(var.format) < formatLetters.length()) {
            text += '/';
            text += formatLetters[static_cast<std::size_t>(var.format)];
        }
        text += '\n';
    }
    return text;
}

bool WriteListFile(const wxString& path, const wxString& text)
{
    return KtReplaceFile(path, text.utf8_string());
}
