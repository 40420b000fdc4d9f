#include "fuzz.h"
#include "write_list.h"

// The list of who may write what: all its faults, or lines that are read as the same list.

namespace {

std::string Joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto list = plcremote::ParseWriteList(Text(data, size), "list");
    if (!list) {
        Require(list.Message().rfind("list:", 0) == 0, "a fault has its place");
        return 0;
    }
    const auto again = plcremote::ParseWriteList(Joined(list->Lines()), "list");
    Require(again && again->Lines() == list->Lines(), "the lines are a list");
    for (const std::string& line : list->Lines()) {
        const std::string user = line.substr(0, line.find(' '));
        const std::string first =
            line.substr(user.size() + 1, line.find('-', user.size()) - user.size() - 1);
        const auto operand = plc::ParseOperand(first);
        Require(operand && plc::Exists(*operand), "a range begins with an operand that exists");
        Require(list->Allows(user, *operand), "what is named is allowed");
        Require(!list->Allows("", *operand), "nobody else may");
    }
    return 0;
}
