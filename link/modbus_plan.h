#pragma once

#include "modbus_place.h"
#include "reading.h"
#include "source.h"

#include <chrono>
#include <cstddef>
#include <vector>

// Which addresses of a Modbus device are asked for together. No device, no sockets. One thread.

namespace plclink {

/// An operand that the device does not let be read is tried again after this time.
constexpr std::chrono::minutes retryTime{1};

/// A watched operand and its addresses.
struct ModbusItem
{
    std::size_t place = 0; ///< In the list that is watched.
    plc::Operand operand{};
    ModbusSpan span{0, 0};
};

/// What one request reads: operands of one range and what lies between them.
struct ModbusBlock
{
    std::size_t range = 0; ///< In the map.
    ModbusSpan span{0, 0};
    std::vector<ModbusItem> items{}; ///< By address; at least one.
};

/// @return the range of the map in which the operand lies, or why it cannot be read.
base::Result<std::size_t> RangeOf(const ModbusMap& map, const plc::Operand& operand);

/// Plans as few requests as the map's limits and the device allow. Operands are never torn, nothing
/// between two ranges is read. What the device has refused is not asked for again as it was.
class ModbusPlan
{
public:
    /// @param map outlives the plan.
    explicit ModbusPlan(const ModbusMap& map) : m_map(map) {}

    /// @param list operands with a range.
    void Watch(const WatchList& list);

    /// @return the requests of a turn that begins now: all that is watched, but of operands that
    ///         the device has refused only those that are due again, each alone.
    std::vector<ModbusBlock> Blocks(Clock::time_point now) const;

    /// The device has let a block be read.
    void Accept(const ModbusBlock& block);

    /// The device has refused a block.
    /// @return its halves, to be asked for instead; none when it was a single operand's, which is
    ///         refused from now on.
    std::vector<ModbusBlock> Refuse(const ModbusBlock& block, Clock::time_point now);

    /// Whether the device has refused this operand.
    bool IsRefused(const plc::Operand& operand) const;

    /// All blocks of a turn have been accepted or refused to the end: learns why halves can be read
    /// and the whole cannot.
    void EndTurn();

private:
    struct Refusal
    {
        std::size_t range;
        ModbusItem item;
        Clock::time_point when;
    };

    /// Addresses that cannot be read in one request.
    struct Barrier
    {
        std::size_t range;
        ModbusSpan span;
    };

    /// A block that was refused in this turn, and its halves.
    struct Halving
    {
        std::size_t range;
        ModbusSpan first;
        ModbusSpan second;
    };

    bool IsBarred(std::size_t range, const ModbusSpan& span) const;
    bool Fits(std::size_t range, const ModbusSpan& span) const;
    void AddBlocks(std::size_t range, std::vector<ModbusBlock>& blocks) const;

    const ModbusMap& m_map;
    std::vector<std::vector<ModbusItem>> m_items; ///< Of each range, by address.
    std::vector<Refusal> m_refusals;
    std::vector<Barrier> m_barriers;
    std::vector<Halving> m_halvings;
};

} // namespace plclink
