#include "assembler.h"
#include "debug_file.h"
#include "operand.h"
#include "plcdebugvar.h"
#include "plcprgpanel_file.h"
#include "projectfile.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// The plug-in and the soft PLC write the same facts down, each on its own side. These tests see
// both sides and hold them together.

namespace {

PlcDebugVar Var(std::int32_t area, std::int32_t size, std::int32_t dbNumber, long address)
{
    PlcDebugVar var;
    var.area = area;
    var.size = size;
    var.dbNumber = dbNumber;
    var.address = wxString::Format(size == eSizeBit ? "%ld.7" : "%ld", address);
    return var;
}

std::uint32_t BytesOnThePlc(std::int32_t area, std::int32_t dbNumber)
{
    return plc::AreaSize(static_cast<plc::Area>(area), static_cast<std::uint16_t>(dbNumber));
}

bool ExistsOnThePlc(const PlcDebugVar& var)
{
    const auto operand = plc::ParseOperand(var.GetVarName(false).utf8_string());
    return operand && plc::Exists(*operand);
}

/// Every area, and every data block.
std::vector<std::pair<std::int32_t, std::int32_t>> AreasAndBlocks()
{
    std::vector<std::pair<std::int32_t, std::int32_t>> all{
        {eAreaOutput, -1}, {eAreaInput, -1}, {eAreaFlag, -1}, {eAreaTimer, -1}, {eAreaCounter, -1}};
    for (const DataBlock& block : varDBs) {
        all.emplace_back(eAreaDb, block.number);
    }
    return all;
}

} // namespace

TEST(PlugInAndPlc, HaveTheSameDataBlocks)
{
    std::map<long, long> watched;
    for (const DataBlock& block : varDBs) {
        watched[block.number] = block.limit;
    }
    std::map<long, long> present;
    for (const plc::DataBlockSize& block : plc::DataBlocks()) {
        present[block.number] = block.bytes;
    }

    EXPECT_EQ(watched, present);
}

TEST(PlugInAndPlc, HaveAreasOfTheSameSize)
{
    for (const auto& [area, dbNumber] : AreasAndBlocks()) {
        const AddressVerdict verdict = JudgeAddress(Var(area, eSizeByte, dbNumber, 0), "0");

        EXPECT_EQ(verdict.bound, static_cast<long>(BytesOnThePlc(area, dbNumber)))
            << "area " << area << " block " << dbNumber;
    }
}

TEST(PlugInAndPlc, AgreeOnTheLastOperandOfEveryAreaAndWidth)
{
    for (const auto& [area, dbNumber] : AreasAndBlocks()) {
        if (area == eAreaTimer || area == eAreaCounter) {
            continue; // words without a width letter, and the plug-in refuses the last one
        }
        for (const eVarSize size : {eSizeBit, eSizeByte, eSizeWord, eSizeDouble}) {
            const PlcDebugVar first = Var(area, size, dbNumber, 0);
            const long bound = JudgeAddress(first, first.address).bound;
            const PlcDebugVar last = Var(area, size, dbNumber, bound - 1);

            EXPECT_TRUE(ExistsOnThePlc(last)) << last.GetVarName(false);
            EXPECT_TRUE(Var(area, size, dbNumber, bound).GetVarName(false).empty());
            std::optional<plc::Operand> behind =
                plc::ParseOperand(last.GetVarName(false).utf8_string());
            ASSERT_TRUE(behind);
            ++behind->address;
            EXPECT_FALSE(plc::Exists(*behind)) << plc::OperandName(*behind);
        }
    }
}

TEST(PlugInAndPlc, NameTimersAndCountersAlike)
{
    EXPECT_TRUE(ExistsOnThePlc(Var(eAreaTimer, eSizeWord, -1, 126)));
    EXPECT_TRUE(ExistsOnThePlc(Var(eAreaCounter, eSizeWord, -1, 62)));
}

/// The listing of a machine to try.
class PlugInAndPlcListing : public testing::TestWithParam<const char*>
{
};

TEST_P(PlugInAndPlcListing, GivesEveryLineTheSameStep)
{
    const std::string name = GetParam();
    const plc::Assembly assembly =
        plc::AssembleFile(ProjectFile("samples/" + name + "/" + name + ".il"));
    ASSERT_TRUE(assembly.program);
    const TempDir dir;
    ASSERT_TRUE(plc::WriteDebugFile(*assembly.program, dir.File("prog")));

    const PrgFile file = OpenPrgFile(dir.File("prog" + std::string(plc::debugFileSuffix)));
    const std::vector<DBG_BAUSTEIN_ENTRY> blocks = ReadBlockIndex(file.get());

    ASSERT_EQ(blocks.size(), assembly.program->blocks.size());
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        const std::vector<plc::Line>& written = assembly.program->blocks[b].lines;
        const std::vector<DB_BAUSTEIN> read = ReadBlockLines(file.get(), blocks[b]);
        ASSERT_EQ(read.size(), written.size());
        for (std::size_t i = 0; i < read.size(); ++i) {
            EXPECT_EQ(read[i].text, FromLocalText(written[i].text.c_str(), written[i].text.size()));
            EXPECT_EQ(read[i].step, written[i].step) << written[i].text;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Samples,
    PlugInAndPlcListing,
    testing::Values("bottling", "instructions", "crossing", "lift", "mixer"),
    [](const auto& name) { return std::string(name.param); });
