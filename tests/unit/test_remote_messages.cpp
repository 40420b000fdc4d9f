#include "messages.h"
#include "remoteoperands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plcremote {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* id = "0123456789abcdef";

ValuesMessage SomeValues()
{
    ValuesMessage message;
    message.session = id;
    message.sequence = 17;
    message.running = milliseconds(123456);
    message.isWhole = true;
    message.values = {
        {Operand("MW20"), 0xFFFF, ""},
        {Operand("E0.3"), 1, ""},
        {Operand("DB1.DBW0"), std::nullopt, "illegal data address"}};
    message.ages = {{Operand("MW20"), milliseconds(2300)}};
    return message;
}

/// A text of the message with a part of it replaced.
std::string Changed(std::string text, const std::string& part, const std::string& by)
{
    const std::size_t place = text.find(part);
    EXPECT_NE(place, std::string::npos) << text;
    return text.replace(place, part.size(), by);
}

TEST(ValuesMessage, IsOneJsonObjectOfDocumentedFields)
{
    EXPECT_EQ(
        Text(SomeValues()),
        R"({"ages":{"MW20":2300},"format":1,"refused":{"DB1.DBW0":"illegal data address"},)"
        R"("running":123456,"sequence":17,"session":"0123456789abcdef",)"
        R"("values":{"E0.3":1,"MW20":65535},"whole":true})");
}

TEST(ValuesMessage, ComesBackAsItWas)
{
    const auto read = ReadValues(Text(SomeValues()));

    ASSERT_TRUE(read) << read.Message();
    EXPECT_EQ(Text(*read), Text(SomeValues()));
}

TEST(StateMessage, ComesBackAsItWas)
{
    StateMessage message;
    message.session = id;
    message.link = {plclink::LinkStatus::Lost, "no answer within 500 ms"};
    message.version = "plcwatch 1.14.0";
    message.turn = milliseconds(100);
    message.hasListing = true;
    message.writable = {"service MW0-MW20"};

    const auto read = ReadState(Text(message));

    ASSERT_TRUE(read) << read.Message();
    EXPECT_EQ(Text(*read), Text(message));
    EXPECT_EQ(read->link, message.link);
}

TEST(WatchMessage, ComesBackAsItWas)
{
    const auto read = ReadWatch(Text(WatchMessage{{Operand("MW20"), Operand("T5")}}));

    ASSERT_TRUE(read) << read.Message();
    EXPECT_EQ(Text(*read), R"({"format":1,"operands":["MW20","T5"]})");
}

TEST(StepsMessage, NamesARangeOrNone)
{
    const auto range = ReadSteps(Text(StepsMessage{plc::StepRange{3, 100}}));
    const auto none = ReadSteps(Text(StepsMessage{}));

    ASSERT_TRUE(range && range->range && none);
    EXPECT_EQ(range->range->first, 3);
    EXPECT_EQ(range->range->last, 100);
    EXPECT_FALSE(none->range);
}

TEST(WriteMessage, ComesBackAsItWas)
{
    const WriteMessage message{
        id, "fedcba9876543210", Operand("MD24"), 0xFFFFFFFF, milliseconds(9)};

    const auto read = ReadWrite(Text(message));

    ASSERT_TRUE(read) << read.Message();
    EXPECT_EQ(Text(*read), Text(message));
}

TEST(AnswerMessage, OfEachKindComesBackAsItWas)
{
    const AnswerMessage messages[] = {
        WrittenMessage{id, 3, 4, ""},
        WrittenMessage{id, std::nullopt, std::nullopt, "the list does not allow it"},
        StepStatesMessage{{1, 3}, {{true, -17}, {false, std::nullopt}, {true, 2147483647}}},
        RefusalMessage{RefusalMessage::Of::Steps, "another has them"}};
    for (const AnswerMessage& message : messages) {
        const auto read = ReadAnswer(Text(message));

        ASSERT_TRUE(read) << Text(message) << ": " << read.Message();
        EXPECT_EQ(Text(*read), Text(message));
        EXPECT_EQ(read->index(), message.index());
    }
}

TEST(Message, OfSeveralLinesOrOfBrokenTextIsSentAsOneCleanLine)
{
    const std::string text = Text(RefusalMessage{
        RefusalMessage::Of::Watch, "one\ntwo\x1b[31m \xff" + std::string(10000, 'x')});

    const auto read = ReadAnswer(text);

    ASSERT_TRUE(read) << read.Message();
    EXPECT_THAT(std::get<RefusalMessage>(*read).reason, HasSubstr("one two [31m "));
    EXPECT_LT(text.size(), 600U);
}

TEST(Message, IsSentWithoutWhatATerminalWouldObeyAndWithItsLetters)
{
    const auto read = ReadAnswer(Text(RefusalMessage{
        RefusalMessage::Of::Watch,
        "\xC2\x9B"
        "31m\u2028\u2029Öffnen \u00a0€"}));

    ASSERT_TRUE(read) << read.Message();
    EXPECT_EQ(std::get<RefusalMessage>(*read).reason, " 31m  Öffnen \u00a0€");
}

struct WrongText
{
    const char* part;
    const char* by;
    const char* reason;
};

struct WrongValues : testing::TestWithParam<WrongText>
{
};

TEST_P(WrongValues, AreRefusedWithAReason)
{
    const std::string text = Changed(Text(SomeValues()), GetParam().part, GetParam().by);

    const auto read = ReadValues(text);

    ASSERT_FALSE(read) << text;
    EXPECT_THAT(read.Message(), HasSubstr(GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(
    Each,
    WrongValues,
    testing::Values(
        WrongText{R"("format":1)", R"("format":2)", "another format version"},
        WrongText{R"("format":1,)", "", "lacks \"format\""},
        WrongText{R"("whole":true)", R"("whole":1)", "neither true nor false"},
        WrongText{"65535", "65536", "too large"},
        WrongText{R"("E0.3":1)", R"("E0.3":2)", "too large"},
        WrongText{R"("E0.3":1)", R"("E0.3":-1)", "a number is none"},
        WrongText{R"("E0.3":1)", R"("E0.3":1.0)", "a number is none"},
        WrongText{R"("E0.3":1)", R"("E0.3":1e99999)", "no JSON"},
        WrongText{R"("E0.3":1)", R"("E0.3":true)", "a number is none"},
        WrongText{R"("E0.3":1)", R"("E0.8":1)", "no such operand"},
        WrongText{R"("E0.3":1)", R"("MB512":1)", "no such operand"},
        WrongText{"2300", "1000000000001", "too large"},
        WrongText{"0123456789abcdef", "0123456789ABCDEF", "sixteen hexadecimal"},
        WrongText{"0123456789abcdef", "0123", "sixteen hexadecimal"},
        WrongText{"illegal", "ill\\nlegal", "several lines"},
        WrongText{"illegal", "ill\\u009b31m", "several lines"},
        WrongText{"illegal", "ill\\u2028legal", "several lines"},
        WrongText{R"({"MW20":2300})", "[1]", "no object"},
        WrongText{"true}", "true", "no JSON object"}));

TEST(Message, ThatIsTooLargeIsNotRead)
{
    EXPECT_THAT(
        ReadState(std::string(longestMessage + 1, ' ')).Message(), HasSubstr("larger than"));
}

TEST(Message, ThatIsNestedWithoutEndIsRefused)
{
    const std::string deep(longestMessage / 2, '[');

    EXPECT_FALSE(ReadWatch(deep));
    EXPECT_FALSE(ReadWatch(R"({"format":1,"operands":)" + deep));
    EXPECT_FALSE(ReadWatch(R"({"format":1,"operands":[[[["MW0"]]]]})"));
}

TEST(Message, ThatIsAnotherKindOfJsonIsRefused)
{
    for (const char* text : {"", "null", "1", "[]", "\"text\"", "{}", "{\"format\":\"1\"}"}) {
        EXPECT_FALSE(ReadState(text)) << text;
        EXPECT_FALSE(ReadValues(text)) << text;
        EXPECT_FALSE(ReadWatch(text)) << text;
        EXPECT_FALSE(ReadSteps(text)) << text;
        EXPECT_FALSE(ReadWrite(text)) << text;
        EXPECT_FALSE(ReadAnswer(text)) << text;
    }
}

TEST(ValuesMessage, OfMoreOperandsThanAMachineMayTellIsRefused)
{
    ValuesMessage message = SomeValues();
    message.values.clear();
    message.ages.clear();
    for (const plc::Operand& operand : FlagBytes(static_cast<int>(mostOperands))) {
        message.values.push_back({operand, 0, ""});
    }
    EXPECT_TRUE(ReadValues(Text(message)));

    message.values.push_back({Operand("E0.0"), 0, ""});

    EXPECT_FALSE(ReadValues(Text(message)));
}

TEST(StepsMessage, OfARangeThatIsUpsideDownOrEndlessIsRefused)
{
    EXPECT_FALSE(ReadSteps(R"({"format":1,"first":5,"last":4})"));
    EXPECT_FALSE(ReadSteps(R"({"format":1,"first":5})"));
    EXPECT_FALSE(ReadSteps(R"({"format":1,"first":-1,"last":4})"));
    EXPECT_FALSE(ReadSteps(R"({"format":1,"first":0,"last":1000})"));
    EXPECT_TRUE(ReadSteps(R"({"format":1,"first":0,"last":999})"));
}

TEST(StepStatesMessage, HasOneStateForEachStep)
{
    EXPECT_TRUE(
        ReadAnswer(R"({"format":1,"kind":"steps","first":1,"last":2,"states":[[1,0],[0,null]]})"));
    EXPECT_FALSE(ReadAnswer(R"({"format":1,"kind":"steps","first":1,"last":2,"states":[[1,0]]})"));
    EXPECT_FALSE(ReadAnswer(R"({"format":1,"kind":"steps","first":1,"last":1,"states":[[2,0]]})"));
    EXPECT_FALSE(ReadAnswer(R"({"format":1,"kind":"steps","first":1,"last":1,"states":[[1]]})"));
    EXPECT_FALSE(
        ReadAnswer(R"({"format":1,"kind":"steps","first":1,"last":1,"states":[[1,2147483648]]})"));
}

TEST(AnswerMessage, OfAnUnknownKindIsRefused)
{
    EXPECT_THAT(
        ReadAnswer(R"({"format":1,"kind":"hello"})").Message(), HasSubstr("of the kind \"hello\""));
}

} // namespace
} // namespace plcremote
