#include "plcdebug_host.h"
#include "projectfile.h"
#include "record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

// The layouts that the integrators' page states are those of the header and of the reference host.

namespace {

using plchost::OperandOf;
using testing::ContainerEq;

/// Offsets on 32 and on 64 bits by field.
using Layout = std::map<std::string, std::pair<std::size_t, std::size_t>>;

/// The rows of the table that stands below "`PLC_DBG_INIT`:".
Layout DocumentedLayout()
{
    std::ifstream in(ProjectFile("docs/integration.md"));
    Layout layout;
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
        inside = line == "`PLC_DBG_INIT`:" || (inside && (line.empty() || line[0] == '|'));
        const auto name = line.find_first_not_of("| `");
        if (!inside || line.empty() || line.find_first_of("0123456789") == std::string::npos ||
            line.find("bits") != std::string::npos) {
            continue;
        }
        const auto narrow = line.find('|', name);
        const auto wide = line.find('|', narrow + 1);
        layout[line.substr(name, line.find_first_of("` ", name) - name)] = {
            std::stoul(line.substr(narrow + 1)), std::stoul(line.substr(wide + 1))};
    }
    return layout;
}

/// @param number of pointers that stand before.
std::pair<std::size_t, std::size_t> Behind(std::size_t pointers)
{
    return {PLC_PATH_SIZE + 4 * pointers, PLC_PATH_SIZE + 8 * pointers};
}

/// What the page's tables say of one kind of record: the entry for each offset, as written there.
std::map<std::string, std::string> DocumentedRecord(const std::string& kind)
{
    std::ifstream in(ProjectFile("docs/integration.md"));
    std::map<std::string, std::string> entries;
    std::size_t column = 0; // 0: the table does not tell of this kind
    for (std::string line; std::getline(in, line);) {
        std::vector<std::string> cells;
        std::istringstream row(line);
        for (std::string cell; line[0] == '|' && std::getline(row, cell, '|');) {
            const auto begin = cell.find_first_not_of(' ');
            const auto end = cell.find_last_not_of(' ');
            cells.push_back(begin == std::string::npos ? "" : cell.substr(begin, end - begin + 1));
        }
        if (const auto head = std::find(cells.begin(), cells.end(), kind); head != cells.end()) {
            column = static_cast<std::size_t>(head - cells.begin());
        } else if (column == 0 || cells.size() <= column) {
            column = 0;
        } else if (!cells[column].empty() && cells[column][0] != '-') {
            entries[cells[1]] = cells[column];
        }
    }
    return entries;
}

/// @return a record that has bytes 1, 2, 3... behind its header.
CMD_DATA NumberedRecord(std::uint16_t command)
{
    CMD_DATA record{command, 0, 0, {}};
    for (std::size_t i = 0; i < sizeof record.payload; ++i) {
        record.payload[i] = static_cast<unsigned char>(i + 1);
    }
    return record;
}

/// @param offset in the whole record.
template <typename Number> Number At(const CMD_DATA& record, std::size_t offset)
{
    Number number;
    std::memcpy(&number, reinterpret_cast<const unsigned char*>(&record) + offset, sizeof number);
    return number;
}

TEST(IntegrationPage, StatesTheLayoutOfTheRecordOnBothArchitectures)
{
    EXPECT_THAT(
        DocumentedLayout(),
        ContainerEq(Layout{
            {"szPath", {0, 0}},
            {"pfnTallFrame", Behind(0)},
            {"pfnReadVarRequest", Behind(1)},
            {"pfnWriteVarRequest", Behind(2)},
            {"pfnPrgStateRequest", Behind(3)},
            {"pfnDeleteVarRequest", Behind(4)},
            {"reserved", Behind(5)},
            {"size", Behind(6)}}));
}

TEST(IntegrationPage, StatesTheLayoutThatTheCompilerMakes)
{
    Layout layout = DocumentedLayout();
    const auto stated = [&layout](const std::string& field) {
        return sizeof(void*) == 4 ? layout[field].first : layout[field].second;
    };

    EXPECT_EQ(stated("szPath"), offsetof(PLC_DBG_INIT, szPath));
    EXPECT_EQ(stated("pfnTallFrame"), offsetof(PLC_DBG_INIT, pfnTallFrame));
    EXPECT_EQ(stated("pfnReadVarRequest"), offsetof(PLC_DBG_INIT, pfnReadVarRequest));
    EXPECT_EQ(stated("pfnWriteVarRequest"), offsetof(PLC_DBG_INIT, pfnWriteVarRequest));
    EXPECT_EQ(stated("pfnPrgStateRequest"), offsetof(PLC_DBG_INIT, pfnPrgStateRequest));
    EXPECT_EQ(stated("pfnDeleteVarRequest"), offsetof(PLC_DBG_INIT, pfnDeleteVarRequest));
    EXPECT_EQ(stated("reserved"), offsetof(PLC_DBG_INIT, reserved));
    EXPECT_EQ(stated("size"), sizeof(PLC_DBG_INIT));
}

TEST(IntegrationPage, StatesTheRequestsAsTheyAreTakenApart)
{
    using Record = std::map<std::string, std::string>;
    EXPECT_THAT(
        DocumentedRecord("Read request"),
        ContainerEq(Record{
            {"0", "`0x600D`"},
            {"2", "length: 7 + characters"},
            {"4", "key"},
            {"6", "operand, zero-terminated"}}));
    EXPECT_THAT(
        DocumentedRecord("Write request"),
        ContainerEq(Record{
            {"0", "`0x600E`"},
            {"2", "length: 11 + characters"},
            {"4", "0"},
            {"6", "value, int32"},
            {"10", "operand, zero-terminated"}}));
    EXPECT_THAT(
        DocumentedRecord("Delete request"),
        ContainerEq(
            Record{{"0", "`0x600F`"}, {"2", "length: 8"}, {"4", "key"}, {"6", "argument, int16"}}));
    EXPECT_THAT(
        DocumentedRecord("Program-state request"),
        ContainerEq(Record{
            {"0", "`0x6010`"},
            {"2", "length: 14"},
            {"4", "count of steps"},
            {"6", "first step, int32"},
            {"10", "last step, int32"}}));

    const CMD_DATA record = NumberedRecord(PLC_CMD_READ_VAR);
    const CMD_DATA write = NumberedRecord(PLC_CMD_WRITE_VAR);
    EXPECT_EQ(OperandOf(record)[0], At<char>(record, 6));
    EXPECT_EQ(PlcWrittenValue(&write), At<std::int32_t>(write, 6));
    EXPECT_EQ(OperandOf(write)[0], At<char>(write, 10));
    EXPECT_EQ(PlcArgumentOfDelete(&record), At<std::int16_t>(record, 6));
    EXPECT_EQ(PlcFirstStep(&record), At<std::int32_t>(record, 6));
    EXPECT_EQ(PlcLastStep(&record), At<std::int32_t>(record, 10));
    EXPECT_EQ(
        (std::vector<int>{
            PLC_CMD_READ_VAR, PLC_CMD_WRITE_VAR, PLC_CMD_DELETE_VAR, PLC_CMD_PRG_STATE}),
        (std::vector<int>{0x600D, 0x600E, 0x600F, 0x6010}));
    EXPECT_EQ(sizeof(CMD_DATA), 506U);
}

TEST(IntegrationPage, StatesTheAnswersAsTheyArePutTogether)
{
    using Record = std::map<std::string, std::string>;
    EXPECT_THAT(
        DocumentedRecord("Read answer"),
        ContainerEq(Record{
            {"0", "not looked at"},
            {"2", "length: 10"},
            {"4", "key of the request"},
            {"6", "value, int32"}}));
    EXPECT_THAT(
        DocumentedRecord("Program-state answer for n steps"),
        ContainerEq(Record{
            {"0", "not looked at"},
            {"2", "length: 14 + 5 n, at most 504"},
            {"4", "not looked at"},
            {"6", "first step, as requested"},
            {"10", "last step, as requested"},
            {"14", "n bytes: 1 where the logic result is set"},
            {"14 + n", "n int32: the accumulator; `0x7FFFFFFF` or -1 for none"}}));

    const CMD_DATA read = PlcMakeReadAnswer(0x1234, 0x56789ABC);
    EXPECT_EQ(At<std::uint16_t>(read, 2), 10);
    EXPECT_EQ(At<std::uint16_t>(read, 4), 0x1234);
    EXPECT_EQ(At<std::int32_t>(read, 6), 0x56789ABC);
    const std::array<std::uint8_t, 3> results{1, 0, 1};
    const std::array<std::int32_t, 3> values{11, 12, PLC_NO_VALUE};
    const CMD_DATA states = PlcMakePrgStateAnswer(70, 72, results.data(), values.data());
    EXPECT_EQ(At<std::uint16_t>(states, 2), 14 + 5 * 3);
    EXPECT_EQ(At<std::int32_t>(states, 6), 70);
    EXPECT_EQ(At<std::int32_t>(states, 10), 72);
    EXPECT_EQ(At<char>(states, 14), 1);
    EXPECT_EQ(At<char>(states, 15), 0);
    EXPECT_EQ(At<char>(states, 16), 1);
    EXPECT_EQ(At<std::int32_t>(states, 14 + 3), 11);
    EXPECT_EQ(At<std::int32_t>(states, 14 + 3 + 8), PLC_NO_VALUE);
    EXPECT_EQ(PLC_NO_VALUE, 0x7FFFFFFF);
    EXPECT_EQ(14 + 5 * PLC_MAX_STEPS, 504);
}

} // namespace
