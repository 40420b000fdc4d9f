#include "records.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>
#include <string>

// The functions of the boundary header against the bytes that the documentation states.

namespace {

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

std::string OperandIn(const CMD_DATA& request)
{
    std::array<char, PLC_OPERAND_SIZE> name{};
    const std::size_t length = PlcOperandOf(&request, name.data());
    EXPECT_EQ(length, std::string(name.data()).size());
    return name.data();
}

/// A record without a zero byte behind its header.
CMD_DATA FullRecord(std::uint16_t command)
{
    CMD_DATA record{command, PLC_CMD_SIZE, 0, {}};
    std::fill(std::begin(record.payload), std::end(record.payload), std::uint8_t{'M'});
    return record;
}

/// An answer for a range of steps, with a payload of ones behind it.
CMD_DATA OnesForSteps(std::int32_t first, std::int32_t last)
{
    CMD_DATA answer{};
    std::fill(std::begin(answer.payload), std::end(answer.payload), std::uint8_t{1});
    PlcPutSteps(&answer, first, last);
    return answer;
}

constexpr std::int32_t fourOnes = 0x01010101;

} // namespace

TEST(BuiltRecords, AreZeroBehindTheirLength)
{
    const std::uint8_t state = 1;
    const std::int32_t value = -1;

    for (const CMD_DATA& record :
         {PlcMakeReadRequest(0xFFFF, "EB10"),
          PlcMakeWriteRequest("MD4", -1),
          PlcMakeDeleteRequest(0xFFFF, -1),
          PlcMakePrgStateRequest(-2, -1),
          PlcMakeStopRequest(),
          PlcMakeReadAnswer(0xFFFF, -1),
          PlcMakePrgStateAnswer(-1, -1, &state, &value)}) {
        EXPECT_TRUE(std::all_of(
            record.payload + (record.length - PLC_CMD_HEADER_SIZE),
            std::end(record.payload),
            [](int byte) { return byte == 0; }))
            << record.command;
    }
}

// ---- Requests

TEST(PlcMakeReadRequest, HasKeyAndName)
{
    EXPECT_THAT(
        BytesOf(PlcMakeReadRequest(5, "EB10")),
        ElementsAre(0x0D, 0x60, 0x0B, 0, 5, 0, 'E', 'B', '1', '0', 0));
}

TEST(PlcMakeReadRequest, CutsANameThatLeavesNoRoomForItsZeroByte)
{
    const std::string longest(499, 'M');

    for (const std::string& name : {longest, longest + "X", longest + longest}) {
        const CMD_DATA request = PlcMakeReadRequest(5, name.c_str());

        EXPECT_EQ(request.length, 506);
        EXPECT_EQ(BytesOf(request)[505], 0);
        EXPECT_EQ(OperandIn(request), longest);
    }
}

TEST(PlcMakeWriteRequest, HasNoKeyAndTheValueBeforeTheName)
{
    EXPECT_THAT(
        BytesOf(PlcMakeWriteRequest("MD4", 0x12345678)),
        ElementsAre(0x0E, 0x60, 14, 0, 0, 0, 0x78, 0x56, 0x34, 0x12, 'M', 'D', '4', 0));
}

TEST(PlcMakeWriteRequest, CutsANameThatLeavesNoRoomForItsZeroByte)
{
    const CMD_DATA request = PlcMakeWriteRequest(std::string(600, 'M').c_str(), -2);

    EXPECT_EQ(request.length, 506);
    EXPECT_EQ(BytesOf(request)[505], 0);
    EXPECT_EQ(OperandIn(request), std::string(495, 'M'));
    EXPECT_EQ(PlcWrittenValue(&request), -2);
}

TEST(PlcMakeDeleteRequest, HasKeyAndArgument)
{
    EXPECT_THAT(
        BytesOf(PlcMakeDeleteRequest(0x1234, -1)),
        ElementsAre(0x0F, 0x60, 8, 0, 0x34, 0x12, 0xFF, 0xFF));
}

TEST(PlcMakePrgStateRequest, HasTheRangeAndItsCount)
{
    EXPECT_THAT(
        BytesOf(PlcMakePrgStateRequest(40, 0x103)),
        ElementsAre(0x10, 0x60, 14, 0, 220, 0, 40, 0, 0, 0, 3, 1, 0, 0));
}

TEST(PlcMakePrgStateRequest, CountsInSixteenBits)
{
    EXPECT_EQ(PlcMakePrgStateRequest(0, 0x10001).key, 2);
    EXPECT_EQ(PlcMakePrgStateRequest(INT32_MIN, INT32_MAX).key, 0);
    EXPECT_EQ(PlcMakePrgStateRequest(4, 3).key, 0);
}

TEST(PlcMakeStopRequest, HasNeitherCountNorRange)
{
    EXPECT_THAT(
        BytesOf(PlcMakeStopRequest()),
        ElementsAre(0x10, 0x60, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(PlcOperandOf, IsTheTextFromByteSixOrInAWriteRequestFromByteTen)
{
    EXPECT_EQ(OperandIn(RecordOfBytes({0x0D, 0x60, 10, 0, 5, 0, 'E', 'B', '1', 0, 'X'})), "EB1");
    EXPECT_EQ(
        OperandIn(RecordOfBytes({0x0E, 0x60, 14, 0, 0, 0, 'X', 0, 0, 0, 'M', 'B', '3', 0})), "MB3");
}

TEST(PlcOperandOf, EndsWithTheRecordWhereTheZeroByteIsMissing)
{
    EXPECT_EQ(OperandIn(FullRecord(PLC_CMD_READ_VAR)), std::string(500, 'M'));
    EXPECT_EQ(OperandIn(FullRecord(PLC_CMD_WRITE_VAR)), std::string(496, 'M'));
}

TEST(PlcWrittenValue, IsSigned)
{
    const auto request =
        RecordOfBytes({0x0E, 0x60, 14, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 'M', 'B', '3', 0});

    EXPECT_EQ(PlcWrittenValue(&request), -2);
}

TEST(PlcArgumentOfDelete, IsSigned)
{
    const auto release = RecordOfBytes({0x0F, 0x60, 8, 0, 7, 0, 0xFF, 0xFF});
    const auto start = RecordOfBytes({0x0F, 0x60, 8, 0, 7, 0, 1, 0});

    EXPECT_EQ(PlcArgumentOfDelete(&release), PLC_DELETE_ARG_RELEASE);
    EXPECT_EQ(PlcArgumentOfDelete(&start), PLC_DELETE_ARG_START);
}

TEST(PlcFirstStep, AndTheLastOneAreSigned)
{
    const auto request =
        RecordOfBytes({0x10, 0x60, 14, 0, 9, 0, 0xFD, 0xFF, 0xFF, 0xFF, 4, 3, 2, 1});

    EXPECT_EQ(PlcFirstStep(&request), -3);
    EXPECT_EQ(PlcLastStep(&request), 0x01020304);
}

TEST(PlcIsStop, OnlyWhenCountAndRangeAreZero)
{
    const CMD_DATA stop = PlcMakeStopRequest();
    const CMD_DATA stepZero = PlcMakePrgStateRequest(0, 0);
    const CMD_DATA noneBeforeOne = PlcMakePrgStateRequest(1, 0);
    const CMD_DATA all = PlcMakePrgStateRequest(0, 0xFFFF);

    EXPECT_TRUE(PlcIsStop(&stop));
    EXPECT_FALSE(PlcIsStop(&stepZero));
    EXPECT_FALSE(PlcIsStop(&noneBeforeOne));
    EXPECT_FALSE(PlcIsStop(&all));
}

// ---- Answers

TEST(PlcMakeReadAnswer, HasKeyAndValue)
{
    const CMD_DATA answer = PlcMakeReadAnswer(5, -2);

    EXPECT_THAT(BytesOf(answer), ElementsAre(0x0D, 0x60, 10, 0, 5, 0, 0xFE, 0xFF, 0xFF, 0xFF));
    EXPECT_EQ(PlcAnsweredValue(&answer), -2);
}

TEST(PlcMakePrgStateAnswer, HasTheStatesBeforeTheValues)
{
    const std::array<std::uint8_t, 2> states{1, 0};
    const std::array<std::int32_t, 2> values{0x0123, PLC_NO_VALUE};

    EXPECT_THAT(
        BytesOf(PlcMakePrgStateAnswer(3, 4, states.data(), values.data())),
        testing::ElementsAreArray<int>({0x10, 0x60, 24, 0, 2,    0,    3,    0,
                                        0,    0,    4,  0, 0,    0,    1,    0,
                                        0x23, 0x01, 0,  0, 0xFF, 0xFF, 0xFF, 0x7F}));
}

TEST(PlcMakePrgStateAnswer, OfNinetyEightStepsIsTheLargest)
{
    const std::vector<std::uint8_t> states(200, 1);
    std::vector<std::int32_t> values(200);
    std::iota(values.begin(), values.end(), 0);

    for (const std::int32_t last : {97, 98, 199, INT32_MAX}) {
        const CMD_DATA answer = PlcMakePrgStateAnswer(0, last, states.data(), values.data());

        EXPECT_EQ(answer.length, 504);
        EXPECT_EQ(answer.key, 98);
        EXPECT_EQ(PlcLastStep(&answer), 97);
        EXPECT_EQ(PlcStepState(&answer, 97), 1);
        EXPECT_EQ(PlcStepValue(&answer, 97), 97);
    }
}

TEST(PlcMakePrgStateAnswer, OfARangeUpsideDownHasNoSteps)
{
    EXPECT_THAT(
        BytesOf(PlcMakePrgStateAnswer(1, 0, nullptr, nullptr)),
        ElementsAre(0x10, 0x60, 14, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(PlcMakePrgStateAnswer(INT32_MAX, INT32_MIN, nullptr, nullptr).length, 14);
}

TEST(PlcStepState, IsSetByAOneOnly)
{
    const CMD_DATA answer =
        RecordOfBytes({0x10, 0x60, 34, 0, 4, 0, 7, 0, 0, 0, 10, 0, 0, 0, 1, 0, 0xFF, 2});

    EXPECT_EQ(PlcStepState(&answer, 0), 1);
    EXPECT_EQ(PlcStepState(&answer, 1), 0);
    EXPECT_EQ(PlcStepState(&answer, 2), 0);
    EXPECT_EQ(PlcStepState(&answer, 3), 0);
}

TEST(PlcStepState, IsOfTheRecordAndTheRangeOrZero)
{
    const CMD_DATA many = OnesForSteps(0, INT32_MAX);
    const CMD_DATA two = OnesForSteps(5, 6);

    EXPECT_EQ(PlcStepState(&many, -1), 0);
    EXPECT_EQ(PlcStepState(&many, 491), 1);
    EXPECT_EQ(PlcStepState(&many, 492), 0);
    EXPECT_EQ(PlcStepState(&many, INT64_MAX), 0);
    EXPECT_EQ(PlcStepState(&two, 1), 1);
    EXPECT_EQ(PlcStepState(&two, 2), 0);
}

TEST(PlcStepValue, IsOfTheRecordAndTheRangeOrZero)
{
    const CMD_DATA hundred = OnesForSteps(0, 99); // places for 98 values, and 2 bytes
    const CMD_DATA wide = OnesForSteps(INT32_MIN, INT32_MAX);
    const CMD_DATA reversed = OnesForSteps(10, 0);

    EXPECT_EQ(PlcStepValue(&hundred, -1), 0);
    EXPECT_EQ(PlcStepValue(&hundred, 97), fourOnes);
    EXPECT_EQ(PlcStepValue(&hundred, 98), 0);
    EXPECT_EQ(PlcStepValue(&wide, 0), 0);
    EXPECT_EQ(PlcStepValue(&reversed, 0), 0);
    EXPECT_EQ(PlcStepValue(&reversed, INT64_MAX), 0);
}
