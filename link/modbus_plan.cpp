#include "modbus_plan.h"

#include <algorithm>
#include <string>
#include <tuple>

namespace plclink {

namespace {

ModbusSpan Joined(const ModbusSpan& a, const ModbusSpan& b)
{
    return {std::min(a.begin, b.begin), std::max(a.end, b.end)};
}

bool Holds(const ModbusSpan& whole, const ModbusSpan& part)
{
    return whole.begin <= part.begin && part.end <= whole.end;
}

bool IsBefore(const ModbusItem& a, const ModbusItem& b)
{
    return std::tie(a.span.begin, a.span.end) < std::tie(b.span.begin, b.span.end);
}

/// A block of neighbours.
template <typename Iterator> ModbusBlock BlockOf(std::size_t range, Iterator begin, Iterator end)
{
    ModbusBlock block{range, begin->span, {begin, end}};
    for (const ModbusItem& item : block.items) {
        block.span = Joined(block.span, item.span);
    }
    return block;
}

std::uint32_t Limit(const ModbusMap& map, const ModbusRange& range)
{
    return HasRegisters(range.table) ? map.device.registers : map.device.bits;
}

} // namespace

base::Result<std::size_t> RangeOf(const ModbusMap& map, const plc::Operand& operand)
{
    for (std::size_t i = 0; i < map.ranges.size(); ++i) {
        const ModbusRange& range = map.ranges[i];
        const auto span = FindSpan(range, operand);
        if (!span) {
            continue;
        }
        const std::uint32_t limit = Limit(map, range);
        if (span->Count() > limit) {
            return base::Failure{
                plc::OperandName(operand) + " takes " + std::to_string(span->Count()) +
                (HasRegisters(range.table) ? " registers" : " bits") +
                " in one request, the map allows " + std::to_string(limit)};
        }
        return i;
    }
    return base::Failure{"the map has no range with " + plc::OperandName(operand)};
}

void ModbusPlan::Watch(const WatchList& list)
{
    m_items.assign(m_map.ranges.size(), {});
    for (std::size_t place = 0; place < list.size(); ++place) {
        if (const auto range = RangeOf(m_map, list[place])) {
            const auto span = FindSpan(m_map.ranges[*range], list[place]);
            m_items[*range].push_back({place, list[place], *span});
        }
    }
    for (std::vector<ModbusItem>& items : m_items) {
        std::stable_sort(items.begin(), items.end(), IsBefore);
    }
    // A refusal is known for as long as its operand is watched.
    const auto isGone = [&list](const Refusal& refusal) {
        return std::find(list.begin(), list.end(), refusal.item.operand) == list.end();
    };
    m_refusals.erase(
        std::remove_if(m_refusals.begin(), m_refusals.end(), isGone), m_refusals.end());
    for (Refusal& refusal : m_refusals) {
        const auto found = std::find(list.begin(), list.end(), refusal.item.operand);
        refusal.item.place = static_cast<std::size_t>(found - list.begin());
    }
    m_halvings.clear();
}

bool ModbusPlan::IsRefused(const plc::Operand& operand) const
{
    return std::any_of(m_refusals.begin(), m_refusals.end(), [&](const Refusal& refusal) {
        return refusal.item.operand == operand;
    });
}

bool ModbusPlan::IsBarred(std::size_t range, const ModbusSpan& span) const
{
    const auto isBarred = [&](std::size_t where, const ModbusSpan& part) {
        return where == range && Holds(span, part);
    };
    return std::any_of(
               m_barriers.begin(),
               m_barriers.end(),
               [&](const Barrier& barrier) { return isBarred(barrier.range, barrier.span); }) ||
           std::any_of(m_refusals.begin(), m_refusals.end(), [&](const Refusal& refusal) {
               return isBarred(refusal.range, refusal.item.span);
           });
}

bool ModbusPlan::Fits(std::size_t range, const ModbusSpan& span) const
{
    return span.Count() <= Limit(m_map, m_map.ranges[range]) && !IsBarred(range, span);
}

void ModbusPlan::AddBlocks(std::size_t range, std::vector<ModbusBlock>& blocks) const
{
    const ModbusBlock* open = nullptr;
    for (const ModbusItem& item : m_items[range]) {
        if (IsRefused(item.operand)) {
            continue;
        }
        if (open == nullptr || !Fits(range, Joined(open->span, item.span))) {
            blocks.push_back({range, item.span, {}});
        }
        ModbusBlock& block = blocks.back();
        block.span = Joined(block.span, item.span);
        block.items.push_back(item);
        open = &block;
    }
}

std::vector<ModbusBlock> ModbusPlan::Blocks(Clock::time_point now) const
{
    std::vector<ModbusBlock> blocks;
    for (std::size_t range = 0; range < m_items.size(); ++range) {
        AddBlocks(range, blocks);
    }
    for (const Refusal& refusal : m_refusals) {
        if (now - refusal.when >= retryTime) {
            blocks.push_back({refusal.range, refusal.item.span, {refusal.item}});
        }
    }
    return blocks;
}

void ModbusPlan::Accept(const ModbusBlock& block)
{
    const auto isRead = [&block](const Refusal& refusal) {
        return std::any_of(block.items.begin(), block.items.end(), [&](const ModbusItem& item) {
            return item.operand == refusal.item.operand;
        });
    };
    m_refusals.erase(
        std::remove_if(m_refusals.begin(), m_refusals.end(), isRead), m_refusals.end());
}

std::vector<ModbusBlock> ModbusPlan::Refuse(const ModbusBlock& block, Clock::time_point now)
{
    if (block.items.size() > 1) {
        const auto middle =
            block.items.begin() + static_cast<std::ptrdiff_t>(block.items.size() / 2);
        const ModbusBlock first = BlockOf(block.range, block.items.begin(), middle);
        const ModbusBlock second = BlockOf(block.range, middle, block.items.end());
        m_halvings.push_back({block.range, first.span, second.span});
        return {first, second};
    }
    Accept(block); // takes an older refusal away
    m_refusals.push_back({block.range, block.items.front(), now});
    return {};
}

void ModbusPlan::EndTurn()
{
    // The smallest first: what explains it explains the block that it was a half of.
    for (auto halving = m_halvings.rbegin(); halving != m_halvings.rend(); ++halving) {
        const ModbusSpan whole = Joined(halving->first, halving->second);
        const bool isContradiction = whole == halving->first || whole == halving->second;
        if (isContradiction || IsBarred(halving->range, whole)) {
            continue;
        }
        // Both halves can be read: what cannot is the step from one to the other.
        const bool isStep = halving->first.end <= halving->second.begin;
        m_barriers.push_back(
            {halving->range,
             isStep ? ModbusSpan{halving->first.end - 1, halving->second.begin + 1} : whole});
    }
    m_halvings.clear();
}

} // namespace plclink
