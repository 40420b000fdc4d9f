#include "write_list.h"

#include "file.h"
#include "mqtt_address.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace plcremote {

namespace {

constexpr std::string_view blanks = " \t\r";

/// The next word, which is taken away.
std::string_view TakeWord(std::string_view& line)
{
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(blanks));
    line.remove_prefix(word.size());
    return word;
}

/// Where an operand begins and ends in its area, in bits; timers and counters each count as one.
struct Extent
{
    std::uint32_t begin;
    std::uint32_t end;
};

Extent ExtentOf(const plc::Operand& operand)
{
    constexpr std::uint32_t bitsOfByte = 8;
    if (operand.area == plc::Area::Timer || operand.area == plc::Area::Counter) {
        return {operand.address, operand.address + 1U};
    }
    const std::uint32_t begin = operand.address * bitsOfByte + operand.bit;
    const std::uint32_t bits =
        operand.width == plc::Width::Bit ? 1 : plc::ByteCount(operand.width) * bitsOfByte;
    return {begin, begin + bits};
}

bool AreTogether(const plc::Operand& a, const plc::Operand& b)
{
    return a.area == b.area && a.block == b.block;
}

std::optional<plc::Operand> OperandOf(std::string_view name)
{
    const auto operand = plc::ParseOperand(name);
    return operand && plc::Exists(*operand) ? operand : std::nullopt;
}

/// @param text "MW0" or "MW0-MW20".
/// @return both ends, or what is wrong with them.
base::Result<std::pair<plc::Operand, plc::Operand>> ReadRange(std::string_view text)
{
    const std::size_t dash = text.find('-');
    const auto first = OperandOf(text.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : OperandOf(text.substr(dash + 1));
    if (!first || !last) {
        return base::Failure{"there is no such operand"};
    }
    if (!AreTogether(*first, *last) || first->width != last->width) {
        return base::Failure{"both ends of a range are of one kind, and of one data block"};
    }
    if (ExtentOf(*first).begin > ExtentOf(*last).begin) {
        return base::Failure{"the range is upside down"};
    }
    return std::pair(*first, *last);
}

} // namespace

bool WriteList::Allows(std::string_view user, const plc::Operand& operand) const
{
    const Extent wanted = ExtentOf(operand);
    return std::any_of(
        m_permissions.begin(), m_permissions.end(), [&](const Permission& permission) {
            return permission.user == user && AreTogether(permission.first, operand) &&
                   ExtentOf(permission.first).begin <= wanted.begin &&
                   wanted.end <= ExtentOf(permission.last).end;
        });
}

std::vector<std::string> WriteList::Lines() const
{
    std::vector<std::string> lines;
    for (const Permission& permission : m_permissions) {
        std::string line = permission.user + ' ' + plc::OperandName(permission.first);
        if (!(permission.first == permission.last)) {
            line += '-' + plc::OperandName(permission.last);
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

base::Result<WriteList> ParseWriteList(std::string_view text, std::string_view file)
{
    WriteList list;
    std::string faults;
    std::size_t number = 0;
    while (!text.empty()) {
        ++number;
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line = line.substr(0, line.find('#'));
        const std::string_view user = TakeWord(line);
        const std::string_view operands = TakeWord(line);
        if (user.empty()) {
            continue;
        }
        const auto range = ReadRange(operands);
        std::string wrong;
        if (!plclink::IsMqttName(user)) {
            wrong = "this is no name of a user";
        } else if (!TakeWord(line).empty() || operands.empty()) {
            wrong = "a line is a user, then an operand or a range, as in: service MW0-MW20";
        } else if (!range) {
            wrong = range.Message();
        }
        if (wrong.empty()) {
            list.m_permissions.push_back({std::string(user), range->first, range->second});
        } else {
            faults += (faults.empty() ? "" : "\n") + std::string(file) + ':' +
                      std::to_string(number) + ": " + wrong;
        }
    }
    if (list.m_permissions.size() > mostPermissions) {
        faults += (faults.empty() ? "" : "\n") + std::string(file) + ": more than " +
                  std::to_string(mostPermissions) + " lines allow something";
    }
    if (!faults.empty()) {
        return base::Failure{faults};
    }
    return list;
}

base::Result<WriteList> ReadWriteListFile(const std::string& file)
{
    const auto text = base::ReadFile(file);
    return text ? ParseWriteList(*text, file) : base::Failure{text.Message()};
}

} // namespace plcremote
