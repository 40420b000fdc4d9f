#include "plcdebugvar.h"
#include "records.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <clocale>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

PlcDebugVar Operand(eVarArea area, eVarSize size, const wxString& address)
{
    PlcDebugVar var;
    var.area = area;
    var.size = size;
    var.address = address;
    return var;
}

int ByteAt(const CMD_DATA& record, std::size_t offset)
{
    return record.payload[offset - PLC_CMD_HEADER_SIZE];
}

bool ZeroFrom(const CMD_DATA& record, std::size_t offset)
{
    const auto* end = record.payload + PLC_CMD_PAYLOAD_SIZE;
    return std::all_of(
        record.payload + (offset - PLC_CMD_HEADER_SIZE), end, [](int byte) { return byte == 0; });
}

} // namespace

TEST(ReadRequest, CarriesIdAndName)
{
    PlcDebugVar var = Operand(eAreaInput, eSizeByte, "10");
    var.requestId = 5;
    var.value = 99;

    const CMD_DATA request = var.GetVarCMD(eReadVar, -1);

    EXPECT_THAT(
        BytesOf(request), ElementsAre(0x0D, 0x60, 0x0B, 0, 5, 0, 0x45, 0x42, 0x31, 0x30, 0));
    EXPECT_TRUE(ZeroFrom(request, request.length));
}

TEST(ReadRequest, OfAnInvalidRecordCarriesAnEmptyName)
{
    PlcDebugVar var = Operand(eAreaInput, eSizeByte, "x");
    var.requestId = 0xFFFF;

    const CMD_DATA request = var.GetVarCMD(eReadVar, -1);

    EXPECT_THAT(BytesOf(request), ElementsAre(0x0D, 0x60, 7, 0, 0xFF, 0xFF, 0));
}

TEST(ReadRequest, NamesABitOfADataBlockInFull)
{
    PlcDebugVar var = Operand(eAreaDb, eSizeBit, "10.3");
    var.dbNumber = 1;

    const CMD_DATA request = var.GetVarCMD(eReadVar, -1);

    EXPECT_STREQ(reinterpret_cast<const char*>(request.payload), "DB1.DBX10.3");
    EXPECT_EQ(request.length, 11 + 7);
}

TEST(WriteRequest, CarriesTheValueAndNoId)
{
    PlcDebugVar var = Operand(eAreaFlag, eSizeByte, "3");
    var.requestId = 12;
    var.value = -1;

    const CMD_DATA request = var.GetVarCMD(eWriteVar, -1);

    EXPECT_THAT(
        BytesOf(request),
        ElementsAre(0x0E, 0x60, 0x0E, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0x4D, 0x42, 0x33, 0));
    EXPECT_TRUE(ZeroFrom(request, request.length));
}

TEST(WriteRequest, CarriesTheValueLittleEndian)
{
    PlcDebugVar var = Operand(eAreaFlag, eSizeDouble, "4");
    var.value = 0x12345678;

    const CMD_DATA request = var.GetVarCMD(eWriteVar, -1);

    EXPECT_THAT(
        BytesOf(request),
        ElementsAre(0x0E, 0x60, 0x0E, 0, 0, 0, 0x78, 0x56, 0x34, 0x12, 0x4D, 0x44, 0x34, 0));
}

TEST(DeleteRequest, CarriesIdAndArgument)
{
    PlcDebugVar var = Operand(eAreaFlag, eSizeByte, "3");
    var.requestId = 7;

    EXPECT_THAT(
        BytesOf(var.GetVarCMD(eDeleteVar, -1)), ElementsAre(0x0F, 0x60, 8, 0, 7, 0, 0xFF, 0xFF));
    EXPECT_THAT(BytesOf(var.GetVarCMD(eDeleteVar, 1)), ElementsAre(0x0F, 0x60, 8, 0, 7, 0, 1, 0));
}

TEST(DeleteRequest, OfAnInvalidRecordIsNoDifferent)
{
    PlcDebugVar var = Operand(eAreaFlag, eSizeByte, "x");
    var.requestId = 0x1234;

    const CMD_DATA request = var.GetVarCMD(eDeleteVar, 1);

    EXPECT_THAT(BytesOf(request), ElementsAre(0x0F, 0x60, 8, 0, 0x34, 0x12, 1, 0));
    EXPECT_TRUE(ZeroFrom(request, request.length));
}

TEST(RequestArgument, IsOnlyForDeleteRequests)
{
    const PlcDebugVar var = Operand(eAreaFlag, eSizeByte, "3");

    EXPECT_EQ(BytesOf(var.GetVarCMD(eReadVar, 1)), BytesOf(var.GetVarCMD(eReadVar, -1)));
    EXPECT_EQ(BytesOf(var.GetVarCMD(eWriteVar, 1)), BytesOf(var.GetVarCMD(eWriteVar, -1)));
}

// ---- Names longer than the record, and names that are no ASCII

TEST(ReadRequest, CutsANameThatIsTooLong)
{
    const PlcDebugVar var = Operand(eAreaFlag, eSizeBit, "5." + wxString('7', 600));
    ASSERT_FALSE(var.GetVarName(false).empty());

    const CMD_DATA request = var.GetVarCMD(eReadVar, -1);

    EXPECT_EQ(request.length, 506);
    EXPECT_EQ(ByteAt(request, 6), 'M');
    EXPECT_EQ(ByteAt(request, 504), '7');
    EXPECT_EQ(ByteAt(request, 505), 0);
}

TEST(WriteRequest, CutsANameThatIsTooLong)
{
    PlcDebugVar var = Operand(eAreaFlag, eSizeByte, wxString('0', 600) + "5");
    var.value = 3;
    ASSERT_FALSE(var.GetVarName(false).empty());

    const CMD_DATA request = var.GetVarCMD(eWriteVar, -1);

    EXPECT_EQ(request.length, 506);
    EXPECT_EQ(ByteAt(request, 6), 3);
    EXPECT_EQ(ByteAt(request, 10), 'M');
    EXPECT_EQ(ByteAt(request, 504), '0');
    EXPECT_EQ(ByteAt(request, 505), 0);
}

TEST(ReadRequest, TakesANameThatJustFits)
{
    // "M" and 498 characters, then the zero byte, end at byte 506.
    const PlcDebugVar var = Operand(eAreaFlag, eSizeBit, "5." + wxString('7', 496));

    const CMD_DATA request = var.GetVarCMD(eReadVar, -1);

    EXPECT_EQ(request.length, 499 + 7);
    EXPECT_EQ(ByteAt(request, 504), '7');
    EXPECT_EQ(ByteAt(request, 505), 0);
}

TEST(ReadRequest, OfANameThatTheLocaleCannotWriteStillEndsWithAZeroByte)
{
    std::setlocale(LC_ALL, "C");
    const wxString address = wxString::FromUTF8("5.ä7");
    const PlcDebugVar var = Operand(eAreaFlag, eSizeBit, address);
    ASSERT_EQ(var.GetVarName(false), "M" + address);

    const CMD_DATA request = var.GetVarCMD(eReadVar, -1);

    EXPECT_EQ(request.length, 5 + 7);
    EXPECT_EQ(ByteAt(request, 11), 0);
    EXPECT_TRUE(ZeroFrom(request, request.length));
}

TEST(ReadRequest, CountsTheCharactersOfANameWithLongerLetters)
{
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr) << "no locale C.UTF-8";
    const PlcDebugVar var = Operand(eAreaFlag, eSizeBit, wxString::FromUTF8("5.ä7"));

    const CMD_DATA request = var.GetVarCMD(eReadVar, -1);
    std::setlocale(LC_ALL, "C");

    EXPECT_EQ(request.length, 5 + 7);
    EXPECT_STREQ(reinterpret_cast<const char*>(request.payload), "M5.\xC3\xA4\x37");
}
