#include "instructions.h"

#include <algorithm>

namespace plc {

namespace {

constexpr unsigned takesAnyBit = takesBit | takesTimer | takesCounter;
constexpr unsigned takesAnyNumber = takesNumber | takesTimer | takesCounter | takesConstant;

} // namespace

const std::vector<Instruction>& Instructions()
{
    static const std::vector<Instruction> instructions{
        {"U", Op::And, takesAnyBit, false},
        {"UN", Op::AndNot, takesAnyBit, false},
        {"O", Op::Or, takesAnyBit, false},
        {"ON", Op::OrNot, takesAnyBit, false},
        {"U(", Op::AndOpen, takesNothing, false},
        {"UN(", Op::AndNotOpen, takesNothing, false},
        {"O(", Op::OrOpen, takesNothing, false},
        {"ON(", Op::OrNotOpen, takesNothing, false},
        {")", Op::Close, takesNothing, false},
        {"=", Op::Assign, takesBit, false},
        {"S", Op::Set, takesBit | takesCounter, false},
        {"R", Op::Reset, takesBit | takesTimer | takesCounter, false},
        {"FP", Op::RisingEdge, takesBit, false},
        {"FN", Op::FallingEdge, takesBit, false},
        {"L", Op::Load, takesAnyNumber, true},
        {"T", Op::Transfer, takesNumber, true},
        {"TAK", Op::Swap, takesNothing, true},
        {"ITD", Op::Extend, takesNothing, true},
        {"+I", Op::Add16, takesNothing, true},
        {"-I", Op::Subtract16, takesNothing, true},
        {"*I", Op::Multiply16, takesNothing, true},
        {"/I", Op::Divide16, takesNothing, true},
        {"+D", Op::Add32, takesNothing, true},
        {"-D", Op::Subtract32, takesNothing, true},
        {"*D", Op::Multiply32, takesNothing, true},
        {"/D", Op::Divide32, takesNothing, true},
        {"==I", Op::Equal16, takesNothing, true},
        {"<>I", Op::Unequal16, takesNothing, true},
        {">I", Op::Greater16, takesNothing, true},
        {">=I", Op::GreaterEqual16, takesNothing, true},
        {"<I", Op::Less16, takesNothing, true},
        {"<=I", Op::LessEqual16, takesNothing, true},
        {"==D", Op::Equal32, takesNothing, true},
        {"<>D", Op::Unequal32, takesNothing, true},
        {">D", Op::Greater32, takesNothing, true},
        {">=D", Op::GreaterEqual32, takesNothing, true},
        {"<D", Op::Less32, takesNothing, true},
        {"<=D", Op::LessEqual32, takesNothing, true},
        {"SI", Op::PulseTimer, takesTimer, true},
        {"SE", Op::OnDelayTimer, takesTimer, true},
        {"SA", Op::OffDelayTimer, takesTimer, true},
        {"ZV", Op::CountUp, takesCounter, false},
        {"ZR", Op::CountDown, takesCounter, false},
        {"SPA", Op::Jump, takesLabel, false},
        {"SPB", Op::JumpIf, takesLabel, false},
        {"SPBN", Op::JumpIfNot, takesLabel, false},
        {"SPO", Op::JumpIfOverflow, takesLabel, false},
        {"BA", Op::Call, takesBlock, false},
        {"BAB", Op::CallIf, takesBlock, false},
        {"BEB", Op::EndIf, takesNothing, false},
        {"BEA", Op::EndAlways, takesNothing, false},
        {"BE", Op::BlockEnd, takesNothing, false},
        {"NOP", Op::Remark, takesText, false},
        {"BLD", Op::Remark, takesText, false},
        {"NETWORK", Op::Remark, takesText, false},
        {"TITLE", Op::Remark, takesText, false}};
    return instructions;
}

const Instruction* FindInstruction(std::string_view mnemonic)
{
    const auto& all = Instructions();
    const auto found = std::find_if(all.begin(), all.end(), [mnemonic](const auto& instruction) {
        return instruction.mnemonic == mnemonic;
    });
    return found == all.end() ? nullptr : &*found;
}

bool TransfersControl(Op op)
{
    return op >= Op::Jump && op <= Op::BlockEnd;
}

} // namespace plc
