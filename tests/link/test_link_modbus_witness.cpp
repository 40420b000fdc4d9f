#include "devicelink.h"
#include "mbpoll.h"
#include "modbusserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

// The link beside another client: both see the same in every table, whatever the order and width.

namespace {

using testing::HasSubstr;
using testing::SizeIs;

struct Order
{
    const char* bytes;
    const char* words;

    bool SwapsBytes() const { return std::string(bytes) == "low-first"; }

    bool SwapsWords() const { return std::string(words) == "low-first"; }

    std::string Lines() const
    {
        return std::string("bytes = ") + bytes + "\nwords = " + words + "\n";
    }
};

const std::vector<Order> orders{
    {"high-first", "high-first"},
    {"high-first", "low-first"},
    {"low-first", "high-first"},
    {"low-first", "low-first"}};

/// The bytes of a range, as the PLC counts them.
class Bytes
{
public:
    static Bytes OfRegisters(const std::vector<std::uint16_t>& registers, const Order& order)
    {
        Bytes bytes;
        bytes.m_swapsWords = order.SwapsWords();
        for (const std::uint16_t one : registers) {
            const auto high = static_cast<std::uint8_t>(one >> 8);
            const auto low = static_cast<std::uint8_t>(one & 0xFF);
            bytes.m_bytes.push_back(order.SwapsBytes() ? low : high);
            bytes.m_bytes.push_back(order.SwapsBytes() ? high : low);
        }
        return bytes;
    }

    static Bytes OfBits(const std::vector<std::uint16_t>& bits)
    {
        Bytes bytes;
        bytes.m_bytes.resize(bits.size() / 8);
        for (std::size_t i = 0; i < 8 * bytes.m_bytes.size(); ++i) {
            bytes.SetBit(i / 8, i % 8, bits[i]);
        }
        return bytes;
    }

    std::uint32_t Bit(std::size_t byte, std::size_t bit) const { return Byte(byte) >> bit & 1U; }

    std::uint32_t Byte(std::size_t byte) const { return m_bytes.at(byte); }

    std::uint32_t Word(std::size_t byte) const { return Byte(byte) << 8 | Byte(byte + 1); }

    std::uint32_t DoubleWord(std::size_t byte) const
    {
        const std::uint32_t first = Word(byte);
        const std::uint32_t second = Word(byte + 2);
        return m_swapsWords ? second << 16 | first : first << 16 | second;
    }

    void SetBit(std::size_t byte, std::size_t bit, std::uint32_t value)
    {
        const std::uint32_t others = Byte(byte) & ~(1U << bit);
        m_bytes.at(byte) = static_cast<std::uint8_t>(others | value << bit);
    }

    void SetByte(std::size_t byte, std::uint32_t value)
    {
        m_bytes.at(byte) = static_cast<std::uint8_t>(value & 0xFF);
    }

    void SetWord(std::size_t byte, std::uint32_t value)
    {
        SetByte(byte, value >> 8);
        SetByte(byte + 1, value);
    }

    void SetDoubleWord(std::size_t byte, std::uint32_t value)
    {
        SetWord(m_swapsWords ? byte + 2 : byte, value >> 16);
        SetWord(m_swapsWords ? byte : byte + 2, value);
    }

    const std::vector<std::uint8_t>& All() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
    bool m_swapsWords = false;
};

/// What stands before the address in the names of an area's operands.
struct Area
{
    const char* range; ///< In the name of a byte.
    const char* bit;
    const char* word;
    const char* doubleWord;
};

const std::vector<Area> areas{
    {"MB", "M", "MW", "MD"},
    {"EB", "E", "EW", "ED"},
    {"AB", "A", "AW", "AD"},
    {"DB10.DBB", "DB10.DBX", "DB10.DBW", "DB10.DBD"}};

/// Of each range.
constexpr int registerCount = 10;
constexpr std::size_t byteCount = 2 * std::size_t{registerCount};
constexpr int bitCount = 16 * registerCount;

std::string BitName(const Area& area, std::size_t byte, std::size_t bit)
{
    return area.bit + std::to_string(byte) + "." + std::to_string(bit);
}

std::string RangeOfBytes(const Area& area, const char* table, int start, const std::string& more)
{
    const std::string last = std::to_string(byteCount - 1);
    return RangeOf(std::string(area.range) + "0.." + area.range + last, table, start, more);
}

/// Every operand of the area whose bytes these are.
std::map<std::string, std::uint32_t> Operands(const Area& area, const Bytes& bytes)
{
    std::map<std::string, std::uint32_t> values;
    for (std::size_t byte = 0; byte < byteCount; ++byte) {
        const std::string address = std::to_string(byte);
        for (std::size_t bit = 0; bit < 8; ++bit) {
            values[BitName(area, byte, bit)] = bytes.Bit(byte, bit);
        }
        values[area.range + address] = bytes.Byte(byte);
        if (byte + 2 <= byteCount) {
            values[area.word + address] = bytes.Word(byte);
        }
        if (byte + 4 <= byteCount) {
            values[area.doubleWord + address] = bytes.DoubleWord(byte);
        }
    }
    return values;
}

TEST(ModbusWitness, ReadsInRegistersWhatEveryOperandOfEveryOrderIs)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    const std::pair<const char*, const char*> tables[] = {{"holding", holding}, {"input", inputs}};
    constexpr int start = 100;

    for (const auto& [table, mbpollTable] : tables) {
        const auto registers = MbpollRead(server.Port(), mbpollTable, start, registerCount);
        ASSERT_THAT(registers, SizeIs(registerCount));
        for (const Order& order : orders) {
            const Bytes bytes = Bytes::OfRegisters(registers, order);
            std::string map = deviceSection;
            std::map<std::string, std::uint32_t> values;
            for (const Area& area : areas) {
                map += RangeOfBytes(area, table, start, order.Lines());
                values.merge(Operands(area, bytes));
            }
            const std::string bytesOnly = std::string("bytes = ") + order.bytes + "\n";
            map += RangeOf("T0..T9", table, start, bytesOnly) +
                   RangeOf("Z0..Z9", table, start, bytesOnly);
            for (std::size_t i = 0; i < registers.size(); ++i) {
                values["T" + std::to_string(i)] = bytes.Word(2 * i);
                values["Z" + std::to_string(i)] = bytes.Word(2 * i);
            }

            DeviceLink link(TcpAddress(server.Port()), map);
            link.ExpectValues(values);
        }
    }
}

TEST(ModbusWitness, ReadsInBitsWhatEveryOperandIs)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    const std::pair<const char*, const char*> tables[] = {{"coil", coils}, {"discrete", discretes}};
    constexpr int start = 70;

    for (const auto& [table, mbpollTable] : tables) {
        const auto bits = MbpollRead(server.Port(), mbpollTable, start, bitCount);
        ASSERT_THAT(bits, SizeIs(bitCount));
        std::string map = deviceSection;
        std::map<std::string, std::uint32_t> values;
        for (const Area& area : areas) {
            map += RangeOfBytes(area, table, start, "");
            values.merge(Operands(area, Bytes::OfBits(bits)));
        }

        DeviceLink link(TcpAddress(server.Port()), map);
        link.ExpectValues(values);
    }
}

/// Writes an operand of each width, and notes in the bytes what is to be there now.
void WriteEveryWidth(DeviceLink& link, const Area& area, Bytes& bytes)
{
    const std::uint32_t bit = 1 - bytes.Bit(3, 5);
    EXPECT_EQ(link.Write(BitName(area, 3, 5), bit), "done");
    EXPECT_EQ(link.Write(area.range + std::string("4"), 0x9A), "done");
    EXPECT_EQ(link.Write(area.range + std::string("7"), 0xBC), "done");
    EXPECT_EQ(link.Write(area.word + std::string("10"), 0xDEF1), "done");
    EXPECT_EQ(link.Write(area.doubleWord + std::string("14"), 0x89ABCDEF), "done");
    bytes.SetBit(3, 5, bit);
    bytes.SetByte(4, 0x9A);
    bytes.SetByte(7, 0xBC);
    bytes.SetWord(10, 0xDEF1);
    bytes.SetDoubleWord(14, 0x89ABCDEF);
}

TEST(ModbusWitness, ReadsInRegistersWhatWasWrittenInEveryOrder)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    int start = 0;
    for (const Order& order : orders) {
        for (const Area& area : areas) {
            const auto read = [&] {
                return Bytes::OfRegisters(
                    MbpollRead(server.Port(), holding, start, registerCount), order);
            };
            Bytes bytes = read();
            ASSERT_THAT(bytes.All(), SizeIs(byteCount));
            DeviceLink link(
                TcpAddress(server.Port()),
                deviceSection +
                    RangeOfBytes(area, "holding", start, order.Lines() + "write = yes\n"));
            link.Watch({});
            WriteEveryWidth(link, area, bytes);
            EXPECT_EQ(read().All(), bytes.All()) << area.range << " " << order.Lines();
            start += registerCount;
        }
        for (const auto& [all, last] : {std::pair("T0..T9", "T9"), std::pair("Z0..Z9", "Z9")}) {
            DeviceLink link(
                TcpAddress(server.Port()),
                deviceSection + RangeOf(
                                    all,
                                    "holding",
                                    start,
                                    std::string("write = yes\nbytes = ") + order.bytes + "\n"));
            link.Watch({});
            EXPECT_EQ(link.Write(last, 0x1234), "done");
            const std::uint16_t written = order.SwapsBytes() ? 0x3412 : 0x1234;
            EXPECT_THAT(
                MbpollRead(server.Port(), holding, start + 9, 1), testing::ElementsAre(written));
            start += 10;
        }
    }
}

TEST(ModbusWitness, ReadsInCoilsWhatWasWritten)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    int start = 0;
    for (const Area& area : areas) {
        const auto read = [&] {
            return Bytes::OfBits(MbpollRead(server.Port(), coils, start, bitCount));
        };
        Bytes bytes = read();
        ASSERT_THAT(bytes.All(), SizeIs(byteCount));
        DeviceLink link(
            TcpAddress(server.Port()),
            deviceSection + RangeOfBytes(area, "coil", start, "write = yes\n"));
        link.Watch({});
        WriteEveryWidth(link, area, bytes);
        EXPECT_EQ(read().All(), bytes.All()) << area.range;
        start += bitCount;
    }
}

TEST(ModbusWitness, WritesWhatTheLinkTells)
{
    const ModbusServer server({"modbus_server.py", "tcp", "0"});
    DeviceLink link(
        TcpAddress(server.Port()),
        deviceSection + RangeOf("MW0..MW98", "holding", 0) + RangeOf("A0.0..A9.7", "coil", 0));
    link.ExpectValues({{"MW20", 0x1415}, {"AB0", 0x49}});

    EXPECT_THAT(MbpollWrite(server.Port(), holding, 10, 4711), HasSubstr("Written 1 references"));
    EXPECT_THAT(MbpollWrite(server.Port(), coils, 7, 1), HasSubstr("Written 1 references"));

    EXPECT_TRUE(link.Events().WaitForValue("MW20", 4711));
    EXPECT_TRUE(link.Events().WaitForValue("AB0", 0xC9));
}

} // namespace
