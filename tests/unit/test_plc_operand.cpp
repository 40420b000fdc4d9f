#include "operand.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace plc {

void PrintTo(const Operand& operand, std::ostream* out)
{
    *out << OperandName(operand);
}

} // namespace plc

namespace {

using plc::Area;
using plc::Operand;
using plc::ParseOperand;
using plc::Width;

bool ExistsByName(const std::string& name)
{
    const auto operand = ParseOperand(name);
    EXPECT_TRUE(operand) << name;
    return operand && plc::Exists(*operand);
}

TEST(ParseOperand, ReadsEveryAreaAndWidth)
{
    EXPECT_EQ(ParseOperand("EB10"), (Operand{Area::Input, Width::Byte, 0, 10, 0}));
    EXPECT_EQ(ParseOperand("A3.5"), (Operand{Area::Output, Width::Bit, 0, 3, 5}));
    EXPECT_EQ(ParseOperand("M100.0"), (Operand{Area::Flag, Width::Bit, 0, 100, 0}));
    EXPECT_EQ(ParseOperand("MW20"), (Operand{Area::Flag, Width::Word, 0, 20, 0}));
    EXPECT_EQ(ParseOperand("MD4"), (Operand{Area::Flag, Width::DoubleWord, 0, 4, 0}));
    EXPECT_EQ(ParseOperand("DB1.DBX10.3"), (Operand{Area::DataBlock, Width::Bit, 1, 10, 3}));
    EXPECT_EQ(ParseOperand("DB64.DBB3"), (Operand{Area::DataBlock, Width::Byte, 64, 3, 0}));
    EXPECT_EQ(ParseOperand("DB10.DBW4"), (Operand{Area::DataBlock, Width::Word, 10, 4, 0}));
    EXPECT_EQ(
        ParseOperand("DB10.DBD100"), (Operand{Area::DataBlock, Width::DoubleWord, 10, 100, 0}));
    EXPECT_EQ(ParseOperand("T5"), (Operand{Area::Timer, Width::Word, 0, 5, 0}));
    EXPECT_EQ(ParseOperand("Z12"), (Operand{Area::Counter, Width::Word, 0, 12, 0}));
}

TEST(ParseOperand, TakesLeadingZerosAsAnOperatorMayTypeThem)
{
    EXPECT_EQ(ParseOperand("MB00005"), ParseOperand("MB5"));
}

TEST(ParseOperand, RefusesWhatIsNoName)
{
    for (const char* text :
         {"",      "E",       "X1.0",   "E1",        "E1.",         "E1.8",     "E1.17",
          "EB1.0", "EW",      "eb1",    "EB 1",      "EB-1",        "EB+1",     "EB1x",
          "DB10",  "DB10.",   "DB10.4", "DB10.DB4",  "DB.DBW4",     "DB10.DW4", "TB5",
          "T5.0",  "MW70000", "A1.x5",  "DB10.DBX4", "DB10.DBW4.0", "ZW1",      "EX1.0"}) {
        EXPECT_FALSE(ParseOperand(text)) << text;
    }
}

TEST(OperandName, IsWhatTheParserReads)
{
    for (const char* name :
         {"EB10", "A3.5", "M100.0", "MW20", "MD4", "DB1.DBX10.3", "DB64.DBB3", "T5", "Z12"}) {
        EXPECT_EQ(plc::OperandName(ParseOperand(name).value()), name);
    }
}

TEST(Exists, TheWholeOperandLiesInItsArea)
{
    EXPECT_TRUE(ExistsByName("EB63"));
    EXPECT_FALSE(ExistsByName("EB64"));
    EXPECT_TRUE(ExistsByName("A63.7"));
    EXPECT_FALSE(ExistsByName("A64.0"));
    EXPECT_TRUE(ExistsByName("EW62"));
    EXPECT_FALSE(ExistsByName("EW63"));
    EXPECT_TRUE(ExistsByName("MD508"));
    EXPECT_FALSE(ExistsByName("MD509"));
    EXPECT_FALSE(ExistsByName("MD65535"));
    EXPECT_TRUE(ExistsByName("DB4.DBB16"));
    EXPECT_FALSE(ExistsByName("DB4.DBB17"));
}

TEST(Exists, TimersAndCountersAreCountedByNumber)
{
    EXPECT_TRUE(ExistsByName("T127"));
    EXPECT_FALSE(ExistsByName("T128"));
    EXPECT_TRUE(ExistsByName("Z63"));
    EXPECT_FALSE(ExistsByName("Z64"));
}

TEST(Exists, OnlyTheKnownDataBlocks)
{
    EXPECT_FALSE(ExistsByName("DB5.DBW0"));
    EXPECT_FALSE(ExistsByName("DB0.DBB0"));
    EXPECT_FALSE(ExistsByName("DB101.DBB0"));
    EXPECT_EQ(plc::DataBlocks().size(), 35U);
    for (const auto& block : plc::DataBlocks()) {
        const std::string start = "DB" + std::to_string(block.number) + ".DBB";
        EXPECT_TRUE(ExistsByName(start + std::to_string(block.bytes - 1)));
        EXPECT_FALSE(ExistsByName(start + std::to_string(block.bytes)));
    }
}

} // namespace
