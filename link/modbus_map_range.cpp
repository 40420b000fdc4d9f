#include "modbus_map_range.h"

#include "arguments.h"
#include "instructions.h"
#include "modbus_place.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace plclink {

namespace {

constexpr long highestAddress = 65535;

using Faults = std::vector<MapFault>;

/// Reads one of two words or more.
/// @return its place among them.
base::Result<std::size_t> WordIn(const std::string& text, const std::vector<std::string>& words)
{
    const auto found = std::find(words.begin(), words.end(), text);
    if (found != words.end()) {
        return static_cast<std::size_t>(found - words.begin());
    }
    std::string expected = words.front();
    for (std::size_t i = 1; i < words.size(); ++i) {
        expected += (i + 1 < words.size() ? ", " : " or ") + words[i];
    }
    return base::Failure{"expected " + expected + ", " + plc::Found(text)};
}

constexpr std::string_view rangeKeys[] = {
    "operands", "table", "start", "bytes", "words", "write", "bits-by"};

/// Reads the section of one range.
class RangeReader
{
public:
    RangeReader(const Section& section, Faults& faults);

    RangeReading Reading() const;

private:
    const Entry* Find(std::string_view key) const;
    std::size_t LineOf(std::string_view key) const;
    void AddFault(std::string_view key, const std::string& reason);
    void CheckKeys();
    /// @return the place of the key's value among words, 0 when there is none.
    std::size_t Choice(std::string_view key, const std::vector<std::string>& words);
    void ReadOperands(const std::string& text);
    void CheckBounds();
    void ReadStart(const std::string& text);
    void CheckTable();
    void CheckOrders();
    void CheckWrite();

    const Section& m_section;
    Faults& m_faults;
    const std::size_t m_faultsBefore;
    ModbusRange m_read;
    bool m_hasBounds = false;
    bool m_hasTable = false;
};

RangeReader::RangeReader(const Section& section, Faults& faults)
    : m_section(section), m_faults(faults), m_faultsBefore(faults.size())
{
    m_read.name = section.name;
    CheckKeys();
    if (const Entry* const operands = Find("operands")) {
        ReadOperands(operands->value);
    }
    if (Find("table") != nullptr) {
        const std::size_t before = m_faults.size();
        m_read.table =
            static_cast<ModbusTable>(Choice("table", {"coil", "discrete", "input", "holding"}));
        m_hasTable = m_faults.size() == before;
    }
    m_read.isLowByteFirst = Choice("bytes", {"high-first", "low-first"}) == 1;
    m_read.isLowWordFirst = Choice("words", {"high-first", "low-first"}) == 1;
    m_read.isWritable = Choice("write", {"no", "yes"}) == 1;
    m_read.isRewritten = Choice("bits-by", {"mask-write", "read-modify-write"}) == 1;
    if (m_hasTable) {
        CheckTable();
        CheckOrders();
        CheckWrite();
    }
    if (const Entry* const start = Find("start")) {
        ReadStart(start->value);
    }
}

RangeReading RangeReader::Reading() const
{
    const bool isRight = m_faults.size() == m_faultsBefore;
    return {isRight ? std::optional(m_read) : std::nullopt, LineOf("operands"), LineOf("start")};
}

const Entry* RangeReader::Find(std::string_view key) const
{
    const auto found = m_section.entries.find(key);
    return found == m_section.entries.end() ? nullptr : &found->second;
}

std::size_t RangeReader::LineOf(std::string_view key) const
{
    const Entry* const entry = Find(key);
    return entry != nullptr ? entry->line : m_section.line;
}

void RangeReader::AddFault(std::string_view key, const std::string& reason)
{
    m_faults.push_back({LineOf(key), reason});
}

void RangeReader::CheckKeys()
{
    for (const auto& [key, entry] : m_section.entries) {
        if (std::find(std::begin(rangeKeys), std::end(rangeKeys), key) == std::end(rangeKeys)) {
            AddFault(
                key,
                "there is no key " + plc::Quoted(key) +
                    ", only operands, table, start, bytes, words, write and bits-by");
        }
    }
    for (const std::string_view key : {"operands", "table", "start"}) {
        if (Find(key) == nullptr) {
            AddFault(
                key, "the range " + plc::Quoted(m_section.name) + " has no " + plc::Quoted(key));
        }
    }
}

std::size_t RangeReader::Choice(std::string_view key, const std::vector<std::string>& words)
{
    const Entry* const entry = Find(key);
    if (entry == nullptr) {
        return 0;
    }
    const auto choice = WordIn(entry->value, words);
    if (!choice) {
        AddFault(key, choice.Message());
        return 0;
    }
    return *choice;
}

void RangeReader::ReadOperands(const std::string& text)
{
    constexpr std::string_view between = "..";
    const std::size_t at = text.find(between);
    if (at == std::string::npos) {
        AddFault("operands", "expected two operands such as MW0..MW98, " + plc::Found(text));
        return;
    }
    constexpr unsigned anyOperand =
        plc::takesBit | plc::takesNumber | plc::takesTimer | plc::takesCounter;
    const auto read = [&](std::string_view name, plc::Operand& operand) {
        const auto argument = plc::ReadArgument(anyOperand, WithoutBlanks(name));
        if (!argument) {
            AddFault("operands", argument.Message());
            return false;
        }
        operand = std::get<plc::Operand>(*argument);
        return true;
    };
    const bool hasFirst = read(std::string_view(text).substr(0, at), m_read.first);
    const bool hasLast = read(std::string_view(text).substr(at + between.size()), m_read.last);
    if (hasFirst && hasLast) {
        CheckBounds();
    }
}

void RangeReader::CheckBounds()
{
    const plc::Operand& first = m_read.first;
    const plc::Operand& last = m_read.last;
    const std::string firstName = plc::OperandName(first);
    const std::string lastName = plc::OperandName(last);
    const auto place = [](const plc::Operand& operand) {
        return std::make_pair(operand.address, operand.bit);
    };
    if (std::tie(first.area, first.block, first.width) !=
        std::tie(last.area, last.block, last.width)) {
        AddFault("operands", firstName + " and " + lastName + " are of different kinds");
    } else if (place(last) < place(first)) {
        AddFault("operands", "the range is upside down: " + lastName + " is before " + firstName);
    } else if (
        !IsNumbered(first) && (last.address - first.address) % plc::ByteCount(first.width) != 0) {
        AddFault(
            "operands",
            lastName + " begins inside another operand of the range, counted from " + firstName);
    } else {
        m_hasBounds = true;
    }
}

void RangeReader::CheckTable()
{
    if (!m_hasBounds) {
        return;
    }
    if (HasRegisters(m_read.table) && m_read.first.width == plc::Width::Bit) {
        AddFault("operands", "bits cannot bound a range of registers; bytes or words can");
        m_hasBounds = false;
    } else if (!HasRegisters(m_read.table) && IsNumbered(m_read.first)) {
        AddFault("operands", "timers and counters lie in registers: input or holding");
        m_hasBounds = false;
    }
}

void RangeReader::CheckOrders()
{
    for (const std::string_view key : {"bytes", "words"}) {
        if (Find(key) != nullptr && !HasRegisters(m_read.table)) {
            AddFault(key, plc::Quoted(key) + " is of registers, this range is of single bits");
        } else if (
            key == "words" && Find(key) != nullptr && m_hasBounds && !HoldsDoubleWord(m_read)) {
            AddFault(key, "'words' is of double words, this range holds none");
        }
    }
}

void RangeReader::CheckWrite()
{
    const bool canWrite = m_read.table == ModbusTable::Coil || m_read.table == ModbusTable::Holding;
    if (m_read.isWritable && !canWrite) {
        AddFault("write", "only the tables coil and holding can be written");
    }
    if (Find("bits-by") != nullptr &&
        !(m_read.isWritable && m_read.table == ModbusTable::Holding)) {
        AddFault("bits-by", "'bits-by' is of a range of the table holding with write = yes");
    }
}

void RangeReader::ReadStart(const std::string& text)
{
    const auto start = NumberIn(text, 0, highestAddress);
    if (!start) {
        AddFault("start", start.Message());
        return;
    }
    m_read.start = static_cast<std::uint16_t>(*start);
    if (m_hasBounds && m_hasTable && SpanOf(m_read).end > highestAddress + 1) {
        AddFault(
            "start",
            "the range would end at address " + std::to_string(SpanOf(m_read).end - 1) +
                ", the last one is " + std::to_string(highestAddress));
    }
}

} // namespace

RangeReading ReadRange(const Section& section, std::vector<MapFault>& faults)
{
    return RangeReader(section, faults).Reading();
}

} // namespace plclink
