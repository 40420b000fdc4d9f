#include "machine.h"

#include <functional>
#include <map>
#include <utility>

// What each instruction does, a function each.

namespace plc {

namespace {

std::int16_t LowWord(std::uint32_t accumulator)
{
    return static_cast<std::int16_t>(accumulator);
}

std::int32_t Whole(std::uint32_t accumulator)
{
    return static_cast<std::int32_t>(accumulator);
}

// Bit logic

void CombineAnd(Machine& machine, bool value)
{
    machine.logicResult = machine.inLogic ? machine.logicResult && value : value;
    machine.inLogic = true;
}

void CombineOr(Machine& machine, bool value)
{
    machine.logicResult = machine.inLogic ? machine.logicResult || value : value;
    machine.inLogic = true;
}

void And(Machine& machine, const Code& code)
{
    CombineAnd(machine, machine.image.IsOn(code.cell));
}

void AndNot(Machine& machine, const Code& code)
{
    CombineAnd(machine, !machine.image.IsOn(code.cell));
}

void Or(Machine& machine, const Code& code)
{
    CombineOr(machine, machine.image.IsOn(code.cell));
}

void OrNot(Machine& machine, const Code& code)
{
    CombineOr(machine, !machine.image.IsOn(code.cell));
}

template <bool isOr, bool negates> void Open(Machine& machine, const Code&)
{
    // The assembler has counted the brackets; the remainder keeps any other program in the array.
    machine.brackets[machine.openBrackets++ % maxOpenBrackets] = {
        machine.logicResult, machine.inLogic, isOr, negates};
    machine.inLogic = false;
}

void Close(Machine& machine, const Code&)
{
    const Bracket bracket = machine.brackets[--machine.openBrackets % maxOpenBrackets];
    const bool value = machine.logicResult != bracket.negates;
    machine.logicResult = bracket.logicResult;
    machine.inLogic = bracket.inLogic;
    if (bracket.isOr) {
        CombineOr(machine, value);
    } else {
        CombineAnd(machine, value);
    }
}

void Assign(Machine& machine, const Code& code)
{
    machine.image.Write(code.cell, machine.logicResult ? 1 : 0);
    machine.inLogic = false;
}

void Set(Machine& machine, const Code& code)
{
    if (code.cell.kind == Cell::Kind::Counter) {
        machine.image.CounterAt(code.cell.index)
            .Set(machine.logicResult, LowWord(machine.accumulator1));
    } else if (machine.logicResult) {
        machine.image.Write(code.cell, 1);
    }
    machine.inLogic = false;
}

void Reset(Machine& machine, const Code& code)
{
    machine.inLogic = false;
    if (!machine.logicResult) {
        return;
    }
    if (code.cell.kind == Cell::Kind::Timer) {
        machine.image.TimerAt(code.cell.index).Reset();
    } else {
        machine.image.Write(code.cell, 0);
    }
}

/// Keeps the logic result in a bit until the next cycle, and compares it with the last one there.
template <bool rising> void Edge(Machine& machine, const Code& code)
{
    const bool before = machine.image.IsOn(code.cell);
    const bool now = machine.logicResult;
    machine.image.Write(code.cell, now ? 1 : 0);
    machine.logicResult = now != before && now == rising;
    machine.inLogic = true;
}

// Loads and transfers

void LoadValue(Machine& machine, std::uint32_t value)
{
    machine.accumulator2 = machine.accumulator1;
    machine.accumulator1 = value;
}

void Load(Machine& machine, const Code& code)
{
    LoadValue(machine, machine.image.Read(code.cell));
}

void LoadConstant(Machine& machine, const Code& code)
{
    LoadValue(machine, code.number);
}

void Transfer(Machine& machine, const Code& code)
{
    machine.image.Write(code.cell, machine.accumulator1);
}

void Swap(Machine& machine, const Code&)
{
    std::swap(machine.accumulator1, machine.accumulator2);
}

void Extend(Machine& machine, const Code&)
{
    machine.accumulator1 = static_cast<std::uint32_t>(std::int32_t{LowWord(machine.accumulator1)});
}

// Arithmetic and comparison

/// Keeps the lowest 16 or 32 bits of a result; overflow tells that it needs more.
void StoreResult16(Machine& machine, std::int32_t result)
{
    machine.accumulator1 = static_cast<std::uint16_t>(result);
    machine.overflow = result != LowWord(machine.accumulator1);
}

void StoreResult32(Machine& machine, std::int64_t result)
{
    machine.accumulator1 = static_cast<std::uint32_t>(result);
    machine.overflow = result != Whole(machine.accumulator1);
}

template <typename Function> void Calculate16(Machine& machine, const Code&)
{
    StoreResult16(
        machine,
        Function()(
            std::int32_t{LowWord(machine.accumulator2)},
            std::int32_t{LowWord(machine.accumulator1)}));
}

template <typename Function> void Calculate32(Machine& machine, const Code&)
{
    StoreResult32(
        machine,
        Function()(
            std::int64_t{Whole(machine.accumulator2)}, std::int64_t{Whole(machine.accumulator1)}));
}

void Divide16(Machine& machine, const Code& code)
{
    if (LowWord(machine.accumulator1) == 0) {
        machine.Stop(StopCause::DivisionByZero);
    } else {
        Calculate16<std::divides<>>(machine, code);
    }
}

void Divide32(Machine& machine, const Code& code)
{
    if (machine.accumulator1 == 0) {
        machine.Stop(StopCause::DivisionByZero);
    } else {
        Calculate32<std::divides<>>(machine, code);
    }
}

template <typename Function> void Compare16(Machine& machine, const Code&)
{
    machine.logicResult = Function()(LowWord(machine.accumulator2), LowWord(machine.accumulator1));
    machine.inLogic = true;
}

template <typename Function> void Compare32(Machine& machine, const Code&)
{
    machine.logicResult = Function()(Whole(machine.accumulator2), Whole(machine.accumulator1));
    machine.inLogic = true;
}

// Timers and counters

template <TimerKind kind> void DriveTimer(Machine& machine, const Code& code)
{
    machine.image.TimerAt(code.cell.index)
        .Drive(kind, machine.logicResult, LowWord(machine.accumulator1));
    machine.inLogic = false;
}

void CountUp(Machine& machine, const Code& code)
{
    machine.image.CounterAt(code.cell.index).Up(machine.logicResult);
    machine.inLogic = false;
}

void CountDown(Machine& machine, const Code& code)
{
    machine.image.CounterAt(code.cell.index).Down(machine.logicResult);
    machine.inLogic = false;
}

// Jumps, calls and ends

void JumpWhen(Machine& machine, const Code& code, bool condition)
{
    machine.inLogic = false;
    if (condition) {
        machine.JumpTo(code.number);
    }
}

void Jump(Machine& machine, const Code& code)
{
    JumpWhen(machine, code, true);
}

void JumpIf(Machine& machine, const Code& code)
{
    JumpWhen(machine, code, machine.logicResult);
}

void JumpIfNot(Machine& machine, const Code& code)
{
    JumpWhen(machine, code, !machine.logicResult);
}

void JumpIfOverflow(Machine& machine, const Code& code)
{
    JumpWhen(machine, code, machine.overflow);
}

void Call(Machine& machine, const Code& code)
{
    machine.inLogic = false;
    machine.Call(code.number);
}

void CallIf(Machine& machine, const Code& code)
{
    machine.inLogic = false;
    if (machine.logicResult) {
        machine.Call(code.number);
    }
}

void EndAlways(Machine& machine, const Code&)
{
    machine.inLogic = false;
    machine.EndBlock();
}

void EndIf(Machine& machine, const Code&)
{
    machine.inLogic = false;
    if (machine.logicResult) {
        machine.EndBlock();
    }
}

} // namespace

void RecordResult(Machine& machine, const Code& code)
{
    machine.states[code.number] = {machine.logicResult, std::nullopt};
}

void RecordResultAndAccumulator(Machine& machine, const Code& code)
{
    machine.states[code.number] = {machine.logicResult, Whole(machine.accumulator1)};
}

Operation OperationOf(Op op)
{
    static const std::map<Op, Operation> operations{
        {Op::And, And},
        {Op::AndNot, AndNot},
        {Op::Or, Or},
        {Op::OrNot, OrNot},
        {Op::AndOpen, Open<false, false>},
        {Op::AndNotOpen, Open<false, true>},
        {Op::OrOpen, Open<true, false>},
        {Op::OrNotOpen, Open<true, true>},
        {Op::Close, Close},
        {Op::Assign, Assign},
        {Op::Set, Set},
        {Op::Reset, Reset},
        {Op::RisingEdge, Edge<true>},
        {Op::FallingEdge, Edge<false>},
        {Op::Load, Load},
        {Op::LoadConstant, LoadConstant},
        {Op::Transfer, Transfer},
        {Op::Swap, Swap},
        {Op::Extend, Extend},
        {Op::Add16, Calculate16<std::plus<>>},
        {Op::Subtract16, Calculate16<std::minus<>>},
        {Op::Multiply16, Calculate16<std::multiplies<>>},
        {Op::Divide16, Divide16},
        {Op::Add32, Calculate32<std::plus<>>},
        {Op::Subtract32, Calculate32<std::minus<>>},
        {Op::Multiply32, Calculate32<std::multiplies<>>},
        {Op::Divide32, Divide32},
        {Op::Equal16, Compare16<std::equal_to<>>},
        {Op::Unequal16, Compare16<std::not_equal_to<>>},
        {Op::Greater16, Compare16<std::greater<>>},
        {Op::GreaterEqual16, Compare16<std::greater_equal<>>},
        {Op::Less16, Compare16<std::less<>>},
        {Op::LessEqual16, Compare16<std::less_equal<>>},
        {Op::Equal32, Compare32<std::equal_to<>>},
        {Op::Unequal32, Compare32<std::not_equal_to<>>},
        {Op::Greater32, Compare32<std::greater<>>},
        {Op::GreaterEqual32, Compare32<std::greater_equal<>>},
        {Op::Less32, Compare32<std::less<>>},
        {Op::LessEqual32, Compare32<std::less_equal<>>},
        {Op::PulseTimer, DriveTimer<TimerKind::Pulse>},
        {Op::OnDelayTimer, DriveTimer<TimerKind::OnDelay>},
        {Op::OffDelayTimer, DriveTimer<TimerKind::OffDelay>},
        {Op::CountUp, CountUp},
        {Op::CountDown, CountDown},
        {Op::Jump, Jump},
        {Op::JumpIf, JumpIf},
        {Op::JumpIfNot, JumpIfNot},
        {Op::JumpIfOverflow, JumpIfOverflow},
        {Op::Call, Call},
        {Op::CallIf, CallIf},
        {Op::EndIf, EndIf},
        {Op::EndAlways, EndAlways},
        {Op::BlockEnd, EndAlways}};
    const auto found = operations.find(op);
    return found == operations.end() ? nullptr : found->second;
}

} // namespace plc
