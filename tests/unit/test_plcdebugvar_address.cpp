#include "plcdebugvar.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace {

PlcDebugVar Operand(eVarArea area, eVarSize size, const wxString& address = "", int dbNumber = -1)
{
    PlcDebugVar var;
    var.area = area;
    var.size = size;
    var.address = address;
    var.dbNumber = dbNumber;
    return var;
}

PlcDebugVar DbOperand(int dbNumber, eVarSize size, const wxString& address = "")
{
    return Operand(eAreaDb, size, address, dbNumber);
}

constexpr std::optional<TextId> noMessage = std::nullopt;

/// What an address text gives.
struct AddressCase
{
    const char* name;
    PlcDebugVar var;
    wxString address;
    bool valid;
    std::optional<TextId> message;
    long bound = 0; ///< Looked at for TextId::AddressRange.
};

AddressCase Valid(const char* name, const PlcDebugVar& var, const wxString& address)
{
    return {name, var, address, true, noMessage};
}

AddressCase Refused(
    const char* name,
    const PlcDebugVar& var,
    const wxString& address,
    std::optional<TextId> message)
{
    return {name, var, address, false, message};
}

AddressCase
OutOfRange(const char* name, const PlcDebugVar& var, const wxString& address, long bound)
{
    return {name, var, address, false, TextId::AddressRange, bound};
}

class AddressText : public testing::TestWithParam<AddressCase>
{
};

const auto nameOfCase = [](const auto& info) { return std::string(info.param.name); };

} // namespace

TEST_P(AddressText, IsJudged)
{
    const AddressCase& given = GetParam();

    const AddressVerdict verdict = JudgeAddress(given.var, given.address);

    EXPECT_EQ(verdict.valid, given.valid);
    EXPECT_EQ(verdict.message, given.message);
    if (given.message == TextId::AddressRange) {
        EXPECT_EQ(verdict.bound, given.bound);
    }
}

namespace {

const PlcDebugVar inputBit = Operand(eAreaInput, eSizeBit);
const PlcDebugVar inputByte = Operand(eAreaInput, eSizeByte);
const PlcDebugVar inputWord = Operand(eAreaInput, eSizeWord);
const PlcDebugVar inputDouble = Operand(eAreaInput, eSizeDouble);

} // namespace

INSTANTIATE_TEST_SUITE_P(
    Text,
    AddressText,
    testing::ValuesIn(std::vector<AddressCase>{
        Refused("emptyForAByte", inputByte, "", TextId::AddressInvalid),
        Refused("lettersForAByte", inputByte, "x", TextId::AddressInvalid),
        Refused("negative", inputByte, "-1", TextId::AddressInvalid),
        Refused("negativeForABitBeforeItsPointIsMissed", inputBit, "-1", TextId::AddressInvalid),
        Refused("leftOver", inputByte, "12a", TextId::AddressInvalid),
        Refused("zeroCharacter", inputByte, wxString(L"12\0", 3), TextId::AddressInvalid),
        Refused("zeroCharacterForABit", inputBit, wxString(L"1.0\0", 4), TextId::AddressInvalid),
        Refused("trailingBlank", inputByte, "12 ", TextId::AddressInvalid),
        Refused("negativeBehindBlanks", inputByte, "  -3", TextId::AddressInvalid),
        Refused("beyond32Bits", inputByte, "4294967296", TextId::AddressInvalid),
        Refused("beyond64Bits", inputByte, "99999999999999999999", TextId::AddressInvalid),
        Refused("justBeyond32BitsSigned", inputByte, "2147483648", TextId::AddressInvalid),
        OutOfRange("largestLong", inputByte, "2147483647", 64),
        Refused("bitForAByte", inputByte, "5.3", TextId::AddressHasBit),
        Refused("bitForAWord", inputWord, "5.3", TextId::AddressHasBit),
        Refused("bitForADoubleWord", inputDouble, "5.3", TextId::AddressHasBit),
        Refused("pointAloneForAByte", inputByte, ".", TextId::AddressHasBit),
        Valid("leadingBlank", inputByte, " 5"),
        Valid("plusSign", inputByte, "+5"),
        Valid("leadingZeros", inputByte, "00005"),
        Refused("noPointForABit", inputBit, "5", TextId::AddressNeedsBit),
        Refused("emptyForABit", inputBit, "", TextId::AddressNeedsBit),
        Refused("bit8", inputBit, "5.8", TextId::AddressBitRange),
        Refused("bit9", inputBit, "5.9", TextId::AddressBitRange),
        Refused("noBit", inputBit, "5.", TextId::AddressBitRange),
        Refused("noByte", inputBit, ".3", TextId::AddressInvalid),
        Refused("lettersForTheByte", inputBit, "x.3", TextId::AddressInvalid),
        Valid("bit0", inputBit, "5.0"),
        Valid("bit7", inputBit, "63.7"),
        Valid("bit17IsTakenAsItStands", inputBit, "5.17"),
        Valid("bitBehindALetter", inputBit, "5.x5"),
        Valid("bitBehindASecondPoint", inputBit, "5.9.3"),
        OutOfRange("bitOfByte64", inputBit, "64.0", 64),
    }),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    Bound,
    AddressText,
    testing::ValuesIn(std::vector<AddressCase>{
        Valid("inputByte63", inputByte, "63"),
        OutOfRange("inputByte64", inputByte, "64", 64),
        Valid("inputWord62", inputWord, "62"),
        OutOfRange("inputWord63", inputWord, "63", 63),
        Valid("inputDouble60", inputDouble, "60"),
        OutOfRange("inputDouble61", inputDouble, "61", 61),
        Valid("outputByte63", Operand(eAreaOutput, eSizeByte), "63"),
        OutOfRange("outputByte64", Operand(eAreaOutput, eSizeByte), "64", 64),
        Valid("flagByte511", Operand(eAreaFlag, eSizeByte), "511"),
        OutOfRange("flagByte512", Operand(eAreaFlag, eSizeByte), "512", 512),
        Valid("flagDouble508", Operand(eAreaFlag, eSizeDouble), "508"),
        OutOfRange("flagDouble509", Operand(eAreaFlag, eSizeDouble), "509", 509),
        Valid("timer126", Operand(eAreaTimer, eSizeWord), "126"),
        OutOfRange("timer127IsBeyondItsWord", Operand(eAreaTimer, eSizeWord), "127", 127),
        Valid("timerOfSizeByte127", Operand(eAreaTimer, eSizeByte), "127"),
        Refused(
            "timerOfSizeBitNeedsABit", Operand(eAreaTimer, eSizeBit), "5", TextId::AddressNeedsBit),
        Valid("counter62", Operand(eAreaCounter, eSizeWord), "62"),
        OutOfRange("counter63IsBeyondItsWord", Operand(eAreaCounter, eSizeWord), "63", 63),
    }),
    nameOfCase);

INSTANTIATE_TEST_SUITE_P(
    Block,
    AddressText,
    testing::ValuesIn(std::vector<AddressCase>{
        Valid("db4Byte16", DbOperand(4, eSizeByte), "16"),
        OutOfRange("db4Byte17", DbOperand(4, eSizeByte), "17", 17),
        Refused("db5IsUnknown", DbOperand(5, eSizeByte), "1", noMessage),
        Refused("db99IsUnknown", DbOperand(99, eSizeByte), "1", noMessage),
        Refused("db101IsUnknown", DbOperand(101, eSizeByte), "1", noMessage),
        Refused("db0IsUnknown", DbOperand(0, eSizeByte), "1", noMessage),
        Refused("noBlock", DbOperand(-1, eSizeByte), "1", noMessage),
        Refused("unknownBlockIsSilentAboutRubbish", DbOperand(5, eSizeByte), "x", noMessage),
        Refused(
            "negativeComesBeforeTheBlock", DbOperand(5, eSizeByte), "-1", TextId::AddressInvalid),
        Refused("unknownBlockIsSilentAboutTheBit", DbOperand(5, eSizeBit), "1", noMessage),
    }),
    nameOfCase);

TEST(JudgeAddress, OfAnAreaThatDoesNotExistIsRefusedWithoutAMessage)
{
    for (const int area : {6, 100, -1, -2147483647}) {
        PlcDebugVar var = inputByte;
        var.area = area;

        const AddressVerdict verdict = JudgeAddress(var, "1");

        EXPECT_FALSE(verdict.valid) << area;
        EXPECT_EQ(verdict.message, noMessage) << area;
        EXPECT_EQ(JudgeAddress(var, "-1").message, TextId::AddressInvalid) << area;
    }
}

TEST(JudgeAddress, OfEveryBlockStopsAtTheBlocksLimit)
{
    std::vector<std::pair<int, long>> limits = {
        {1, 2302},
        {2, 32},
        {3, 32},
        {4, 17},
        {10, 1024},
        {15, 1024},
        {20, 1200},
        {25, 1200},
        {21, 738},
        {26, 738},
        {50, 128},
        {51, 128},
        {52, 128},
        {60, 128},
        {61, 128},
        {62, 128},
        {63, 128},
        {95, 208},
        {100, 1000}};
    for (int block = 64; block <= 79; ++block) {
        limits.emplace_back(block, 82);
    }

    for (const auto& [block, limit] : limits) {
        const PlcDebugVar var = DbOperand(block, eSizeByte);
        EXPECT_TRUE(JudgeAddress(var, std::to_string(limit - 1)).valid) << "DB" << block;
        const AddressVerdict beyond = JudgeAddress(var, std::to_string(limit));
        EXPECT_EQ(beyond.message, TextId::AddressRange) << "DB" << block;
        EXPECT_EQ(beyond.bound, limit) << "DB" << block;
    }
    EXPECT_EQ(limits.size(), varDBs.size());
}

TEST(JudgeAddress, TakesTheRecordsOwnAddressForNothing)
{
    PlcDebugVar var = inputByte;
    var.address = "rubbish";

    EXPECT_TRUE(JudgeAddress(var, "5").valid);
}

// ---- Names

namespace {

struct NameCase
{
    PlcDebugVar var;
    const char* name;
    const char* shown;
};

} // namespace

TEST(GetVarName, PutsAreaSizeAndAddressTogether)
{
    const std::vector<NameCase> cases = {
        {Operand(eAreaInput, eSizeByte, "10"), "EB10", "EB 10"},
        {Operand(eAreaOutput, eSizeBit, "3.5"), "A3.5", "A 3.5"},
        {Operand(eAreaFlag, eSizeBit, "100.0"), "M100.0", "M 100.0"},
        {Operand(eAreaFlag, eSizeWord, "20"), "MW20", "MW 20"},
        {Operand(eAreaOutput, eSizeDouble, "4"), "AD4", "AD 4"},
        {DbOperand(1, eSizeBit, "10.3"), "DB1.DBX10.3", "DB1.DBX 10.3"},
        {DbOperand(10, eSizeDouble, "100"), "DB10.DBD100", "DB10.DBD 100"},
        {DbOperand(1, eSizeWord, "4"), "DB1.DBW4", "DB1.DBW 4"},
        {DbOperand(64, eSizeByte, "81"), "DB64.DBB81", "DB64.DBB 81"},
        {Operand(eAreaTimer, eSizeWord, "5"), "T5", "T 5"},
        {Operand(eAreaCounter, eSizeWord, "12"), "Z12", "Z 12"},
    };
    for (const NameCase& given : cases) {
        EXPECT_EQ(given.var.GetVarName(false), given.name);
        EXPECT_EQ(given.var.GetVarName(true), given.shown);
    }
}

TEST(GetVarName, OfATimerNeverHasASizeLetter)
{
    EXPECT_EQ(Operand(eAreaTimer, eSizeByte, "5").GetVarName(false), "T5");
    EXPECT_EQ(Operand(eAreaCounter, eSizeDouble, "5").GetVarName(false), "Z5");
}

TEST(GetVarName, KeepsTheAddressAsTyped)
{
    EXPECT_EQ(Operand(eAreaFlag, eSizeBit, "5.17").GetVarName(false), "M5.17");
    EXPECT_EQ(Operand(eAreaFlag, eSizeByte, "+5").GetVarName(false), "MB+5");
    EXPECT_EQ(Operand(eAreaFlag, eSizeByte, "00005").GetVarName(true), "MB 00005");
}

TEST(GetVarName, OfARecordThatIsNotValidIsEmpty)
{
    PlcDebugVar badArea = Operand(eAreaFlag, eSizeByte, "5");
    badArea.area = 6;
    PlcDebugVar negativeArea = badArea;
    negativeArea.area = -1;
    PlcDebugVar badSize = Operand(eAreaFlag, eSizeByte, "5");
    badSize.size = 4;
    PlcDebugVar negativeSize = badSize;
    negativeSize.size = -1;

    for (const PlcDebugVar& var :
         {PlcDebugVar(),
          Operand(eAreaFlag, eSizeByte, "512"),
          Operand(eAreaFlag, eSizeBit, "5"),
          DbOperand(-1, eSizeByte, "5"),
          DbOperand(5, eSizeByte, "5"),
          badArea,
          negativeArea,
          badSize,
          negativeSize}) {
        EXPECT_EQ(var.GetVarName(false), "") << var.area << " " << var.address;
        EXPECT_EQ(var.GetVarName(true), "") << var.area << " " << var.address;
    }
}

// ---- The record

TEST(PlcDebugVar, StartsAsAnOutputBitInBinaryWithoutAddress)
{
    const PlcDebugVar var;

    EXPECT_EQ(var.area, eAreaOutput);
    EXPECT_EQ(var.format, eFormatBinary);
    EXPECT_EQ(var.size, eSizeBit);
    EXPECT_EQ(var.address, "");
    EXPECT_EQ(var.dbNumber, -1);
    EXPECT_EQ(var.value, 0);
    EXPECT_EQ(var.requestId, 0);
}

TEST(PlcDebugVar, EqualsItsCopyAndItself)
{
    PlcDebugVar var = DbOperand(10, eSizeWord, "12");
    var.value = 5;
    var.requestId = 3;
    const PlcDebugVar copy = var;

    EXPECT_TRUE(var == copy);
    EXPECT_TRUE(var == var);
}

TEST(PlcDebugVar, DiffersWhenAnyFieldDiffers)
{
    const PlcDebugVar var = DbOperand(10, eSizeWord, "1a");
    std::vector<PlcDebugVar> others(8, var);
    others[0].area = eAreaFlag;
    others[1].format = eFormatDecimal;
    others[2].size = eSizeByte;
    others[3].address = "1a2";
    others[4].address = "1A";
    others[5].dbNumber = 15;
    others[6].value = 1;
    others[7].requestId = 1;

    for (const PlcDebugVar& other : others) {
        EXPECT_FALSE(var == other) << &other - others.data();
        EXPECT_FALSE(other == var) << &other - others.data();
    }
}

TEST(DataBlocks, StandInTheOrderOfTheSettingsDialog)
{
    const std::vector<int> firstRows = {
        1, 20, 2, 3, 4, 10, 15, 21, 25, 26, 50, 51, 52, 60, 61, 62, 63};

    for (std::size_t row = 0; row < firstRows.size(); ++row) {
        EXPECT_EQ(varDBs[row].number, firstRows[row]);
    }
    for (int block = 64; block <= 79; ++block) {
        const std::size_t row = firstRows.size() + static_cast<std::size_t>(block) - 64;
        EXPECT_EQ(varDBs[row].number, block);
        EXPECT_EQ(varDBs[row].index, block - 64);
        EXPECT_EQ(varDBs[row].description, TextId::DbFamily64);
    }
    EXPECT_EQ(varDBs[33].number, 95);
    EXPECT_EQ(varDBs[33].description, TextId::Db95);
    EXPECT_EQ(varDBs[34].number, 100);
    EXPECT_EQ(varDBs[34].index, -1);
}

TEST(DataBlocks, OfAFamilyCountTheirMembers)
{
    for (int member = 0; member < 3; ++member) {
        EXPECT_EQ(varDBs[static_cast<std::size_t>(10 + member)].index, member);
        EXPECT_EQ(varDBs[static_cast<std::size_t>(10 + member)].description, TextId::DbFamily50);
    }
    for (int member = 0; member < 4; ++member) {
        EXPECT_EQ(varDBs[static_cast<std::size_t>(13 + member)].index, member);
        EXPECT_EQ(varDBs[static_cast<std::size_t>(13 + member)].description, TextId::DbFamily60);
    }
    for (std::size_t row = 0; row < 10; ++row) {
        EXPECT_EQ(varDBs[row].index, -1);
        EXPECT_EQ(static_cast<int>(varDBs[row].description), 4800018 + static_cast<int>(row));
    }
}
