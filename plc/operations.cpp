#include "processor.h"

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

void CombineAnd(Processor& processor, bool value)
{
    processor.logicResult = processor.inLogic ? processor.logicResult && value : value;
    processor.inLogic = true;
}

void CombineOr(Processor& processor, bool value)
{
    processor.logicResult = processor.inLogic ? processor.logicResult || value : value;
    processor.inLogic = true;
}

void And(Processor& processor, const Code& code)
{
    CombineAnd(processor, processor.image.IsOn(code.cell));
}

void AndNot(Processor& processor, const Code& code)
{
    CombineAnd(processor, !processor.image.IsOn(code.cell));
}

void Or(Processor& processor, const Code& code)
{
    CombineOr(processor, processor.image.IsOn(code.cell));
}

void OrNot(Processor& processor, const Code& code)
{
    CombineOr(processor, !processor.image.IsOn(code.cell));
}

template <bool isOr, bool negates> void Open(Processor& processor, const Code&)
{
    // The assembler has counted the brackets; the remainder keeps any other program in the array.
    processor.brackets[processor.openBrackets++ % maxOpenBrackets] = {
        processor.logicResult, processor.inLogic, isOr, negates};
    processor.inLogic = false;
}

void Close(Processor& processor, const Code&)
{
    const Bracket bracket = processor.brackets[--processor.openBrackets % maxOpenBrackets];
    const bool value = processor.logicResult != bracket.negates;
    processor.logicResult = bracket.logicResult;
    processor.inLogic = bracket.inLogic;
    if (bracket.isOr) {
        CombineOr(processor, value);
    } else {
        CombineAnd(processor, value);
    }
}

void Assign(Processor& processor, const Code& code)
{
    processor.image.Write(code.cell, processor.logicResult ? 1 : 0);
    processor.inLogic = false;
}

void Set(Processor& processor, const Code& code)
{
    if (code.cell.kind == Cell::Kind::Counter) {
        processor.image.CounterAt(code.cell.index)
            .Set(processor.logicResult, LowWord(processor.accumulator1));
    } else if (processor.logicResult) {
        processor.image.Write(code.cell, 1);
    }
    processor.inLogic = false;
}

void Reset(Processor& processor, const Code& code)
{
    processor.inLogic = false;
    if (!processor.logicResult) {
        return;
    }
    if (code.cell.kind == Cell::Kind::Timer) {
        processor.image.TimerAt(code.cell.index).Reset();
    } else {
        processor.image.Write(code.cell, 0);
    }
}

/// Keeps the logic result in a bit until the next cycle, and compares it with the last one there.
template <bool rising> void Edge(Processor& processor, const Code& code)
{
    const bool before = processor.image.IsOn(code.cell);
    const bool now = processor.logicResult;
    processor.image.Write(code.cell, now ? 1 : 0);
    processor.logicResult = now != before && now == rising;
    processor.inLogic = true;
}

// Loads and transfers

void LoadValue(Processor& processor, std::uint32_t value)
{
    processor.accumulator2 = processor.accumulator1;
    processor.accumulator1 = value;
}

void Load(Processor& processor, const Code& code)
{
    LoadValue(processor, processor.image.Read(code.cell));
}

void LoadConstant(Processor& processor, const Code& code)
{
    LoadValue(processor, code.number);
}

void Transfer(Processor& processor, const Code& code)
{
    processor.image.Write(code.cell, processor.accumulator1);
}

void Swap(Processor& processor, const Code&)
{
    std::swap(processor.accumulator1, processor.accumulator2);
}

void Extend(Processor& processor, const Code&)
{
    processor.accumulator1 =
        static_cast<std::uint32_t>(std::int32_t{LowWord(processor.accumulator1)});
}

// Arithmetic and comparison

/// Keeps the lowest 16 or 32 bits of a result; overflow tells that it needs more.
void StoreResult16(Processor& processor, std::int32_t result)
{
    processor.accumulator1 = static_cast<std::uint16_t>(result);
    processor.overflow = result != LowWord(processor.accumulator1);
}

void StoreResult32(Processor& processor, std::int64_t result)
{
    processor.accumulator1 = static_cast<std::uint32_t>(result);
    processor.overflow = result != Whole(processor.accumulator1);
}

template <typename Function> void Calculate16(Processor& processor, const Code&)
{
    StoreResult16(
        processor,
        Function()(
            std::int32_t{LowWord(processor.accumulator2)},
            std::int32_t{LowWord(processor.accumulator1)}));
}

template <typename Function> void Calculate32(Processor& processor, const Code&)
{
    StoreResult32(
        processor,
        Function()(
            std::int64_t{Whole(processor.accumulator2)},
            std::int64_t{Whole(processor.accumulator1)}));
}

void Divide16(Processor& processor, const Code& code)
{
    if (LowWord(processor.accumulator1) == 0) {
        processor.Stop(StopCause::DivisionByZero);
    } else {
        Calculate16<std::divides<>>(processor, code);
    }
}

void Divide32(Processor& processor, const Code& code)
{
    if (processor.accumulator1 == 0) {
        processor.Stop(StopCause::DivisionByZero);
    } else {
        Calculate32<std::divides<>>(processor, code);
    }
}

template <typename Function> void Compare16(Processor& processor, const Code&)
{
    processor.logicResult =
        Function()(LowWord(processor.accumulator2), LowWord(processor.accumulator1));
    processor.inLogic = true;
}

template <typename Function> void Compare32(Processor& processor, const Code&)
{
    processor.logicResult =
        Function()(Whole(processor.accumulator2), Whole(processor.accumulator1));
    processor.inLogic = true;
}

// Timers and counters

template <TimerKind kind> void DriveTimer(Processor& processor, const Code& code)
{
    processor.image.TimerAt(code.cell.index)
        .Drive(kind, processor.logicResult, LowWord(processor.accumulator1));
    processor.inLogic = false;
}

void CountUp(Processor& processor, const Code& code)
{
    processor.image.CounterAt(code.cell.index).Up(processor.logicResult);
    processor.inLogic = false;
}

void CountDown(Processor& processor, const Code& code)
{
    processor.image.CounterAt(code.cell.index).Down(processor.logicResult);
    processor.inLogic = false;
}

// Jumps, calls and ends

void JumpWhen(Processor& processor, const Code& code, bool condition)
{
    processor.inLogic = false;
    if (condition) {
        processor.JumpTo(code.number);
    }
}

void Jump(Processor& processor, const Code& code)
{
    JumpWhen(processor, code, true);
}

void JumpIf(Processor& processor, const Code& code)
{
    JumpWhen(processor, code, processor.logicResult);
}

void JumpIfNot(Processor& processor, const Code& code)
{
    JumpWhen(processor, code, !processor.logicResult);
}

void JumpIfOverflow(Processor& processor, const Code& code)
{
    JumpWhen(processor, code, processor.overflow);
}

void Call(Processor& processor, const Code& code)
{
    processor.inLogic = false;
    processor.Call(code.number);
}

void CallIf(Processor& processor, const Code& code)
{
    processor.inLogic = false;
    if (processor.logicResult) {
        processor.Call(code.number);
    }
}

void EndAlways(Processor& processor, const Code&)
{
    processor.inLogic = false;
    processor.EndBlock();
}

void EndIf(Processor& processor, const Code&)
{
    processor.inLogic = false;
    if (processor.logicResult) {
        processor.EndBlock();
    }
}

} // namespace

void RecordResult(Processor& processor, const Code& code)
{
    processor.states[code.number] = {processor.logicResult, std::nullopt};
}

void RecordResultAndAccumulator(Processor& processor, const Code& code)
{
    processor.states[code.number] = {processor.logicResult, Whole(processor.accumulator1)};
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
