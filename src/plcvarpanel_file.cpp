#include "plcvarpanel_file.h"

#include <ktcore/ktopenfile.h>
#include <ktcore/ktreplacefile.h>

#include <wx/log.h>
#include <wx/regex.h>
#include <wx/textfile.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <memory>
#include <sys/stat.h>

namespace {

constexpr off_t mostBytes = off_t{1024} * 1024;

/// @return false for what is no list file: it is no regular file, or so large that reading it would
///         hold the machine's program for minutes.
bool MayBeList(const wxString& path)
{
    const auto name = path.fn_str();
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
        name.data() != nullptr ? KtOpenFile(name.data()) : nullptr, std::fclose);
    struct stat status = {};
    return file && ::fstat(::fileno(file.get()), &status) == 0 && status.st_size <= mostBytes;
}

/// @return the row of a table with this letter, or null.
template <typename Row, std::size_t count>
const Row* RowWithLetter(const std::array<Row, count>& table, wxUniChar letter)
{
    const auto* row = std::find_if(
        table.begin(), table.end(), [&](const Row& known) { return letter == known.letter; });
    return row != table.end() ? row : nullptr;
}

/// The numbers of all data blocks, for a regular expression.
wxString DataBlockNumbers()
{
    wxString numbers;
    for (const DataBlock& block : varDBs) {
        numbers << (numbers.empty() ? "" : "|") << block.number;
    }
    return numbers;
}

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
        "DB(" + DataBlockNumbers() + R"()\.DB([BWDX]?)\d{1,4}((\.[0-7])?)(/[BHDG]))",
        wxRE_EXTENDED);
    constexpr std::size_t dbLetters = 2;

    if (Matches(plainPattern, line)) {
        // The pattern may have matched further behind; the line still has to begin with the area.
        const VarArea* area = RowWithLetter(varAreas, line[0]);
        if (area == nullptr || area->value == eAreaDb) {
            return false;
        }
        var.area = area->value;
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

/// Takes the size letter from the front of the line, if there is one.
/// @return false when the letter is wrong for the area.
bool TakeSize(wxString& line, PlcDebugVar& var)
{
    const VarSize* size = line.empty() ? nullptr : RowWithLetter(varSizes, line[0]);
    if (size == nullptr) {
        var.size = IsTimerOrCounter(var.area) ? eSizeWord : eSizeBit;
        return true;
    }
    if (size->value == eSizeBit && var.area != eAreaDb) {
        return false;
    }
    var.size = size->value;
    line.Remove(0, 1);
    return true;
}

/// Reads the format letter at the end of the line.
/// @return false when there is none and the area has no format of its own.
bool ReadFormat(const wxString& line, PlcDebugVar& var)
{
    const VarFormat* format = line.empty() ? nullptr : RowWithLetter(varFormats, line.Last());
    if (format == nullptr) {
        var.format = eFormatDecimal;
        return IsTimerOrCounter(var.area);
    }
    var.format = format->value;
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
    if (!MayBeList(path) || !file.Open(path)) {
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
        if (const VarFormat* format = RowOf(varFormats, var.format)) {
            text += '/';
            text += format->letter;
        }
        text += '\n';
    }
    return text;
}

bool WriteListFile(const wxString& path, const wxString& text)
{
    return KtReplaceFile(path, text.utf8_string());
}
