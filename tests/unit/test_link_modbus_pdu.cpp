#include "modbus_pdu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using plclink::AnswerTo;
using plclink::ModbusPdu;
using plclink::ModbusTable;
using plclink::ReadRequest;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = plclink::ModbusAnswer::Kind;

// The examples are those of the protocol's description.

TEST(ReadRequest, NamesTableAddressAndCount)
{
    EXPECT_THAT(ReadRequest(ModbusTable::Coil, {0x13, 0x26}), ElementsAre(1, 0, 0x13, 0, 0x13));
    EXPECT_THAT(ReadRequest(ModbusTable::Discrete, {0xC4, 0xDA}), ElementsAre(2, 0, 0xC4, 0, 0x16));
    EXPECT_THAT(ReadRequest(ModbusTable::Holding, {0x6B, 0x6E}), ElementsAre(3, 0, 0x6B, 0, 3));
    EXPECT_THAT(
        ReadRequest(ModbusTable::Input, {0xFFFF, 0x10000}), ElementsAre(4, 0xFF, 0xFF, 0, 1));
}

TEST(ReplaceRequest, WritesOneOrSeveral)
{
    using plclink::ReplaceRequest;
    EXPECT_THAT(
        ReplaceRequest(ModbusTable::Coil, {0xAC, 0xAD}, {1}), ElementsAre(5, 0, 0xAC, 0xFF, 0));
    EXPECT_THAT(
        ReplaceRequest(ModbusTable::Coil, {0xAC, 0xAD}, {0}), ElementsAre(5, 0, 0xAC, 0, 0));
    EXPECT_THAT(ReplaceRequest(ModbusTable::Holding, {1, 2}, {0x0203}), ElementsAre(6, 0, 1, 2, 3));
    EXPECT_THAT(
        ReplaceRequest(ModbusTable::Coil, {0x13, 0x1D}, {1, 0, 1, 1, 0, 0, 1, 1, 1, 0}),
        ElementsAre(15, 0, 0x13, 0, 10, 2, 0xCD, 1));
    EXPECT_THAT(
        ReplaceRequest(ModbusTable::Holding, {1, 3}, {0x000A, 0x0102}),
        ElementsAre(16, 0, 1, 0, 2, 4, 0, 10, 1, 2));
}

TEST(MaskRequest, KeepsTheBitsOutsideTheMask)
{
    EXPECT_THAT(
        plclink::MaskRequest(4, 0xFF0D, 0xFFF5), ElementsAre(22, 0, 4, 0, 0xF2, 0xFF, 0x05));
}

TEST(AnswerTo, TakesRegistersAndBits)
{
    const auto registers =
        AnswerTo(ReadRequest(ModbusTable::Holding, {0, 2}), {3, 4, 0x12, 0x34, 0xFF, 0xFE});
    EXPECT_EQ(registers.kind, Kind::Done);
    EXPECT_THAT(registers.content, ElementsAre(0x1234, 0xFFFE));

    const auto bits = AnswerTo(ReadRequest(ModbusTable::Discrete, {0, 10}), {2, 2, 0xCD, 0x01});
    EXPECT_EQ(bits.kind, Kind::Done);
    EXPECT_THAT(bits.content, ElementsAre(1, 0, 1, 1, 0, 0, 1, 1, 1, 0));
}

TEST(AnswerTo, TakesTheEchoOfAWrite)
{
    const ModbusPdu one{6, 0, 1, 2, 3};
    EXPECT_EQ(AnswerTo(one, one).kind, Kind::Done);
    const ModbusPdu mask{22, 0, 4, 0, 0xF2, 0, 0x25};
    EXPECT_EQ(AnswerTo(mask, mask).kind, Kind::Done);
    EXPECT_EQ(AnswerTo({16, 0, 1, 0, 1, 2, 0, 10}, {16, 0, 1, 0, 1}).kind, Kind::Done);
    EXPECT_EQ(AnswerTo(one, {6, 0, 1, 2, 4}).kind, Kind::Failed);
    EXPECT_EQ(AnswerTo(one, {6, 0, 1, 2}).kind, Kind::Failed);
    EXPECT_EQ(AnswerTo(mask, {22, 0, 4, 0, 0xF2}).kind, Kind::Failed);
}

TEST(AnswerTo, NamesTheException)
{
    const ModbusPdu request = ReadRequest(ModbusTable::Holding, {0, 2});
    const auto answer = AnswerTo(request, {0x83, 2});
    EXPECT_EQ(answer.kind, Kind::Exception);
    EXPECT_EQ(answer.exception, 2);
    EXPECT_EQ(answer.reason, "the device answers with exception 2 (illegal data address)");
    EXPECT_EQ(AnswerTo(request, {0x83, 99}).reason, "the device answers with exception 99");
    EXPECT_EQ(AnswerTo(request, {0x84, 2}).kind, Kind::Failed);
    EXPECT_EQ(AnswerTo(request, {0x83, 0}).kind, Kind::Failed);
    EXPECT_EQ(AnswerTo(request, {0x83, 2, 0}).kind, Kind::Failed);
}

TEST(AnswerTo, FailsWithAnythingElse)
{
    const ModbusPdu request = ReadRequest(ModbusTable::Holding, {0, 2});
    for (const ModbusPdu& answer :
         {ModbusPdu{},
          ModbusPdu{3},
          ModbusPdu{3, 4},
          ModbusPdu{3, 4, 0, 0, 0},
          ModbusPdu{3, 4, 0, 0, 0, 0, 0},
          ModbusPdu{3, 5, 0, 0, 0, 0},
          ModbusPdu{3, 2, 0, 0},
          ModbusPdu{4, 4, 0, 0, 0, 0}}) {
        EXPECT_EQ(AnswerTo(request, answer).kind, Kind::Failed) << testing::PrintToString(answer);
    }
}

TEST(InTcpFrame, TakesOnlyTheAnswerToItsRequest)
{
    const ModbusPdu answer{3, 2, 0, 17};
    const std::vector<std::uint8_t> frame{0x12, 0x34, 0, 0, 0, 5, 9, 3, 2, 0, 17};
    EXPECT_EQ(plclink::TcpFrame(0x1234, 9, answer), frame);
    EXPECT_EQ(plclink::InTcpFrame(0x1234, 9, frame), answer);
    for (std::size_t i = 0; i < 7; ++i) {
        std::vector<std::uint8_t> other = frame;
        other[i] ^= 1;
        EXPECT_THAT(plclink::InTcpFrame(0x1234, 9, other), IsEmpty()) << i;
    }
    EXPECT_THAT(plclink::InTcpFrame(0x1234, 9, {0x12, 0x34, 0, 0, 0, 0}), IsEmpty());
}

} // namespace
