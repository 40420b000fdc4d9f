#include "modbus_map.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using plclink::ModbusTable;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// "3: reason" for each fault.
std::vector<std::string> Faults(const std::string& text)
{
    const plclink::MapReading reading = plclink::ReadModbusMap(text);
    EXPECT_EQ(reading.map.has_value(), reading.faults.empty());
    std::vector<std::string> faults;
    for (const plclink::MapFault& fault : reading.faults) {
        faults.push_back(std::to_string(fault.line) + ": " + fault.reason);
    }
    return faults;
}

/// A range of holding registers from 0, whose operands stand on line 2, with more lines from 5 on.
std::string Range(const std::string& operands, const std::string& more = "")
{
    return "[range a]\noperands = " + operands + "\ntable = holding\nstart = 0\n" + more;
}

plclink::ModbusMap MapOf(const std::string& text)
{
    plclink::MapReading reading = plclink::ReadModbusMap(text);
    EXPECT_TRUE(reading.map) << testing::PrintToString(Faults(text));
    return reading.map.value_or(plclink::ModbusMap{});
}

TEST(ReadModbusMap, TakesEveryKeyWithCommentsAnywhere)
{
    const plclink::ModbusMap map = MapOf("; the oven\n"
                                         "[device]       ; how to ask it\r\n"
                                         "poll = 200     ; ms\r\n"
                                         "timeout = 300;ms\n"
                                         "apart=5\n"
                                         "  registers = 60\n"
                                         "bits = 500\n"
                                         "\n"
                                         "[range  oven 1 ]\n"
                                         "operands = DB10.DBW 0 .. DB10.DBW1022\n"
                                         "table = holding\n"
                                         "start = 100\n"
                                         "bytes = low-first\n"
                                         "words = low-first\n"
                                         "write = yes\n"
                                         "bits-by = read-modify-write");

    EXPECT_EQ(map.device.poll.count(), 200);
    EXPECT_EQ(map.device.timeout.count(), 300);
    EXPECT_EQ(map.device.apart.count(), 5);
    EXPECT_EQ(map.device.registers, 60);
    EXPECT_EQ(map.device.bits, 500);
    ASSERT_EQ(map.ranges.size(), 1U);
    const plclink::ModbusRange& range = map.ranges[0];
    EXPECT_EQ(range.name, "oven 1");
    EXPECT_EQ(range.first, plc::ParseOperand("DB10.DBW0"));
    EXPECT_EQ(range.last, plc::ParseOperand("DB10.DBW1022"));
    EXPECT_EQ(range.table, ModbusTable::Holding);
    EXPECT_EQ(range.start, 100);
    EXPECT_TRUE(range.isLowByteFirst);
    EXPECT_TRUE(range.isLowWordFirst);
    EXPECT_TRUE(range.isWritable);
    EXPECT_TRUE(range.isRewritten);
}

TEST(ReadModbusMap, TakesWhatIsUsualForWhatIsNotSaid)
{
    const plclink::ModbusMap map = MapOf(Range("MW0..MW98"));

    EXPECT_EQ(map.device.poll.count(), 100);
    EXPECT_EQ(map.device.timeout.count(), 500);
    EXPECT_EQ(map.device.apart.count(), 0);
    EXPECT_EQ(map.device.registers, 125);
    EXPECT_EQ(map.device.bits, 2000);
    ASSERT_EQ(map.ranges.size(), 1U);
    EXPECT_FALSE(map.ranges[0].isLowByteFirst);
    EXPECT_FALSE(map.ranges[0].isLowWordFirst);
    EXPECT_FALSE(map.ranges[0].isWritable);
    EXPECT_FALSE(map.ranges[0].isRewritten);
}

TEST(ReadModbusMap, TakesEveryTableAndKindOfOperand)
{
    const plclink::ModbusMap map =
        MapOf("[range 1]\noperands = E0.0..E9.7\ntable = discrete\nstart = 0\n"
              "[range 2]\noperands = AB0..AB7\ntable = coil\nstart = 0\nwrite = yes\n"
              "[range 3]\noperands = T0..T63\ntable = input\nstart = 0\n"
              "[range 4]\noperands = Z0..Z62\ntable = holding\nstart = 0\nwrite = yes\n"
              "[range 5]\noperands = MD0..MD96\ntable = input\nstart = 0\nwords = low-first\n");

    ASSERT_EQ(map.ranges.size(), 5U);
    EXPECT_EQ(map.ranges[0].table, ModbusTable::Discrete);
    EXPECT_EQ(map.ranges[1].table, ModbusTable::Coil);
    EXPECT_EQ(map.ranges[2].table, ModbusTable::Input);
    EXPECT_EQ(map.ranges[3].table, ModbusTable::Holding);
    EXPECT_TRUE(map.ranges[4].isLowWordFirst);
}

TEST(ReadModbusMap, TellsAllFaultsAtOnceInTheirOrder)
{
    EXPECT_THAT(
        Faults("poll = 100\n"
               "[oven]\n"
               "key = of no section that is known\n"
               "[device]\n"
               "poll = 10\n"
               "polls = 100\n"
               "no key\n"
               "[range a]\n"
               "operands = MW98..MW0\n"
               "table = register\n"
               "write = perhaps\n"
               "[range]\n"),
        ElementsAre(
            "1: 'poll' stands before the first section",
            "2: there is no section 'oven', only 'device' and 'range NAME'",
            "5: expected a number from 20 to 60000, found '10'",
            "6: there is no key 'polls', only poll, timeout, apart, registers and bits",
            "7: expected KEY = VALUE, found 'no key'",
            "8: the range 'a' has no 'start'",
            "9: the range is upside down: MW0 is before MW98",
            "10: expected coil, discrete, input or holding, found 'register'",
            "11: expected no or yes, found 'perhaps'",
            "12: a range needs a name: [range flags]"));
}

TEST(ReadModbusMap, RefusesHeadlinesThatAreNone)
{
    EXPECT_THAT(
        Faults("[device\n[device] x\n[]\n[ranges]\n" + Range("MW0..MW2")),
        ElementsAre(
            "1: expected [device] or [range NAME], found '[device'",
            "2: expected [device] or [range NAME], found '[device] x'",
            "3: there is no section '', only 'device' and 'range NAME'",
            "4: there is no section 'ranges', only 'device' and 'range NAME'"));
}

TEST(ReadModbusMap, RefusesControlCharactersAndTellsThemToNoTerminal)
{
    EXPECT_THAT(
        Faults(Range("MW0..MW2") + "\x1b[2J = \x07\n"),
        ElementsAre("5: a control character cannot stand in a line"));
}

TEST(ReadModbusMap, RefusesWhatStandsThereTwice)
{
    EXPECT_THAT(
        Faults(
            "[device]\npoll = 100\npoll = 200\n[device]\n" + Range("MW0..MW2") + Range("T0..T1")),
        ElementsAre(
            "3: there is a value of 'poll' already, on line 2",
            "4: there is a section 'device' already, on line 1",
            "9: there is a range 'a' already, on line 5"));
}

TEST(ReadModbusMap, RefusesAMapWithoutRanges)
{
    EXPECT_THAT(Faults(""), ElementsAre("1: there is no range: [range NAME]"));
    EXPECT_THAT(Faults("[device]\n"), ElementsAre("1: there is no range: [range NAME]"));
}

TEST(ReadModbusMap, HoldsEachNumberToItsLimits)
{
    const struct
    {
        std::string key;
        long lowest;
        long highest;
    } keys[] = {
        {"poll", 20, 60000},
        {"timeout", 10, 10000},
        {"apart", 0, 10000},
        {"registers", 1, 125},
        {"bits", 1, 2000}};

    for (const auto& [key, lowest, highest] : keys) {
        const auto faults = [&key = key](const std::string& value) {
            return Faults("[device]\n" + key + " = " + value + "\n" + Range("MW0..MW2"));
        };
        EXPECT_THAT(faults(std::to_string(lowest)), ElementsAre()) << key;
        EXPECT_THAT(faults(std::to_string(highest)), ElementsAre()) << key;
        for (const std::string& wrong :
             {std::to_string(lowest - 1),
              std::to_string(highest + 1),
              std::string("1 0"),
              std::string("100ms"),
              std::string("+100"),
              std::string("99999999999999999999"),
              std::string()}) {
            EXPECT_THAT(faults(wrong), ElementsAre(StartsWith("2: expected a number from ")))
                << key << " = " << wrong;
        }
    }
}

TEST(ReadModbusMap, RefusesOperandsThatDoNotExistOrFit)
{
    EXPECT_THAT(
        Faults(Range("MW0..MW511")), ElementsAre(AllOf(StartsWith("2: "), HasSubstr("MW511"))));
    EXPECT_THAT(
        Faults(Range("DB11.DBW0..DB11.DBW2")), ElementsAre(HasSubstr("DB11"), HasSubstr("DB11")));
    EXPECT_THAT(Faults(Range("DB4.DBW0..DB4.DBW16")), ElementsAre(HasSubstr("DB4.DBW16")));
    EXPECT_THAT(Faults(Range("MW0..MX2")), ElementsAre(HasSubstr("found 'MX2'")));
    EXPECT_THAT(Faults(Range("MW0..")), ElementsAre(HasSubstr("found the end of the line")));
    EXPECT_THAT(
        Faults(Range("MW0")),
        ElementsAre("2: expected two operands such as MW0..MW98, found 'MW0'"));
    EXPECT_THAT(Faults(Range("MW0..MB7")), ElementsAre("2: MW0 and MB7 are of different kinds"));
    EXPECT_THAT(
        Faults(Range("DB1.DBW0..DB2.DBW2")),
        ElementsAre("2: DB1.DBW0 and DB2.DBW2 are of different kinds"));
    EXPECT_THAT(
        Faults(Range("MW0..MW3")),
        ElementsAre("2: MW3 begins inside another operand of the range, counted from MW0"));
    EXPECT_THAT(
        Faults("[range a]\noperands = E1.0..E0.7\ntable = coil\nstart = 0\n"),
        ElementsAre("2: the range is upside down: E0.7 is before E1.0"));
}

TEST(ReadModbusMap, RefusesOperandsThatTheTableCannotHold)
{
    EXPECT_THAT(
        Faults(Range("E0.0..E9.7")),
        ElementsAre("2: bits cannot bound a range of registers; bytes or words can"));
    EXPECT_THAT(
        Faults("[range a]\noperands = T0..T9\ntable = coil\nstart = 0\n"),
        ElementsAre("2: timers and counters lie in registers: input or holding"));
}

TEST(ReadModbusMap, RefusesAddressesBehindTheLast)
{
    const auto faults = [](const std::string& start) {
        return Faults("[range a]\noperands = MW0..MW98\ntable = input\nstart = " + start + "\n");
    };
    EXPECT_THAT(faults("65486"), ElementsAre());
    EXPECT_THAT(
        faults("65487"),
        ElementsAre("4: the range would end at address 65536, the last one is 65535"));
    EXPECT_THAT(
        faults("65536"), ElementsAre("4: expected a number from 0 to 65535, found '65536'"));
}

TEST(ReadModbusMap, RefusesOrdersThatMeanNothing)
{
    EXPECT_THAT(
        Faults(Range("T0..T9", "words = low-first\n")),
        ElementsAre("5: 'words' is of double words, this range holds none"));
    EXPECT_THAT(
        Faults(Range("MW0..MW0", "words = low-first\n")),
        ElementsAre("5: 'words' is of double words, this range holds none"));
    EXPECT_THAT(
        Faults("[range a]\noperands = MB0..MB9\ntable = coil\nstart = 0\n"
               "bytes = low-first\nwords = low-first\n"),
        ElementsAre(
            "5: 'bytes' is of registers, this range is of single bits",
            "6: 'words' is of registers, this range is of single bits"));
}

TEST(ReadModbusMap, RefusesToWriteWhatCanOnlyBeRead)
{
    for (const char* table : {"discrete", "input"}) {
        EXPECT_THAT(
            Faults(
                "[range a]\noperands = MB0..MB9\ntable = " + std::string(table) +
                "\nstart = 0\nwrite = yes\n"),
            ElementsAre("5: only the tables coil and holding can be written"));
    }
    EXPECT_THAT(
        Faults(Range("MB0..MB9", "bits-by = read-modify-write\n")),
        ElementsAre("5: 'bits-by' is of a range of the table holding with write = yes"));
    EXPECT_THAT(Faults(Range("MB0..MB9", "write = yes\nbits-by = mask-write\n")), ElementsAre());
}

TEST(ReadModbusMap, RefusesOperandsThatAreInTwoRanges)
{
    const auto faults = [](const std::string& operands) {
        return Faults(
            Range("MW0..MW98") + "[range b]\noperands = " + operands +
            "\ntable = input\nstart = 0\n");
    };
    EXPECT_THAT(
        faults("MB99..MB110"),
        ElementsAre("6: some of these operands are in the range 'a', too, on line 2"));
    EXPECT_THAT(faults("MB100..MB110"), ElementsAre());
    EXPECT_THAT(faults("EW0..EW2"), ElementsAre());
    EXPECT_THAT(faults("T0..T5"), ElementsAre());
}

TEST(ReadModbusMap, RefusesWritableAddressesThatAreInTwoRanges)
{
    const auto faults = [](const std::string& table, int start, const std::string& write) {
        return Faults(
            Range("MW0..MW98") + "[range b]\noperands = EW0..EW2\ntable = " + table +
            "\nstart = " + std::to_string(start) + "\nwrite = " + write + "\n");
    };
    EXPECT_THAT(
        faults("holding", 49, "yes"),
        ElementsAre(
            "8: some of these addresses can be written and are in the range 'a', too, on line 4"));
    EXPECT_THAT(faults("holding", 50, "yes"), ElementsAre());
    EXPECT_THAT(faults("holding", 49, "no"), ElementsAre());
    EXPECT_THAT(faults("input", 0, "no"), ElementsAre());
}

TEST(ReadModbusMapFile, NamesFileAndLineOfEachFault)
{
    const TempDir folder;
    const std::string path = folder.Write("oven.map", "[range a]\ntable = coil\nstart = x\n");

    const auto map = plclink::ReadModbusMapFile(path);

    ASSERT_FALSE(map);
    EXPECT_EQ(
        map.Message(),
        "the map has faults:\n" + path + ":1: the range 'a' has no 'operands'\n" + path +
            ":3: expected a number from 0 to 65535, found 'x'");
}

TEST(ReadModbusMapFile, SaysThatThereIsNoFile)
{
    const auto map = plclink::ReadModbusMapFile("/nowhere/oven.map");

    ASSERT_FALSE(map);
    EXPECT_THAT(map.Message(), HasSubstr("/nowhere/oven.map"));
}

} // namespace
