#include "literal_listing.h"

#include <wx/string.h>

#include <algorithm>
#include <array>

namespace literal {

namespace {

constexpr std::size_t bufferSize = 256;

wxString FromBuffer(const char* buffer)
{
    const wxString text(buffer, wxConvLibc);
    return text.empty() ? wxString::From8BitData(buffer) : text;
}

bool IsExecutableText(const wxString& text)
{
    const std::size_t colon = text.find(':');
    const wxString part = colon == wxString::npos ? text : text.Mid(colon + 1);
    return !part.Contains("NOP") && !part.Contains("BLD") && !part.Contains("NETWORK") &&
           !part.Contains("TITLE");
}

const DB_BAUSTEIN& LineOf(const std::vector<DB_BAUSTEIN>& lines, int row)
{
    return lines.at(static_cast<std::size_t>(row));
}

} // namespace

std::vector<DB_BAUSTEIN> ReadLines(std::FILE* file, const DBG_BAUSTEIN_ENTRY& block)
{
    std::vector<DB_BAUSTEIN> lines;
    std::fseek(file, static_cast<long>(block.fileOffset), SEEK_SET);
    std::array<char, bufferSize> buffer{};
    std::int32_t step = block.firstStep;
    for (int i = 0; i < block.lineCount; ++i) {
        [[maybe_unused]] const char* read = std::fgets(buffer.data(), buffer.size(), file);
        wxString text = FromBuffer(buffer.data());
        text.Replace("\n", "");
        text.Replace("\r", "");
        const bool executable = IsExecutableText(text);
        lines.push_back(
            {executable ? L"?" : L"-", L"-", text.ToStdWstring(), executable ? step++ : noStep});
    }
    return lines;
}

Rows VisibleRows(const std::vector<DB_BAUSTEIN>& lines, const std::function<bool(int)>& isVisible)
{
    Rows rows;
    const int count = static_cast<int>(lines.size());
    int row = 0;
    while (row < count && (LineOf(lines, row).step == noStep || !isVisible(row))) {
        ++row;
    }
    if (row == count) {
        return rows;
    }
    rows = {row, row};
    for (; row < count; ++row) {
        if (LineOf(lines, row).step != noStep) {
            if (!isVisible(row)) {
                break;
            }
            rows.last = row;
        }
    }
    const int end = LineOf(lines, rows.first).step + PLC_MAX_STEPS;
    while (rows.last > rows.first &&
           (LineOf(lines, rows.last).step == noStep || LineOf(lines, rows.last).step >= end)) {
        --rows.last;
    }
    return rows;
}

void ApplyAnswer(const CMD_DATA& answer, std::vector<DB_BAUSTEIN>& lines)
{
    const std::int32_t first = PlcFirstStep(&answer);
    const int count = PlcLastStep(&answer) + 1 - first;
    for (int i = 0; i < count; ++i) {
        const auto line = std::find_if(lines.begin(), lines.end(), [&](const DB_BAUSTEIN& record) {
            return record.step == first + i;
        });
        if (line != lines.end()) {
            line->state = PlcStepState(&answer, i) == 1 ? L"1" : L"0";
            const std::int32_t value = PlcStepValue(&answer, i);
            line->value = value == PLC_NO_VALUE || value == -1
                              ? std::wstring(L"-")
                              : wxString::Format("%d", value).ToStdWstring();
        }
    }
}

} // namespace literal
