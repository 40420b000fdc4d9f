#include "plant.h"

#include "interpreter.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace plclink {

namespace {

// A program alone gets the first byte of inputs as switches and of outputs as lamps.
constexpr std::array<samples::PanelSwitch, 8> bareSwitches{{
    {"E0.0", "", "", false, false},
    {"E0.1", "", "", false, false},
    {"E0.2", "", "", false, false},
    {"E0.3", "", "", false, false},
    {"E0.4", "", "", false, false},
    {"E0.5", "", "", false, false},
    {"E0.6", "", "", false, false},
    {"E0.7", "", "", false, false},
}};

constexpr std::array<samples::PanelLamp, 8> bareLamps{{
    {"A0.0", "", ""},
    {"A0.1", "", ""},
    {"A0.2", "", ""},
    {"A0.3", "", ""},
    {"A0.4", "", ""},
    {"A0.5", "", ""},
    {"A0.6", "", ""},
    {"A0.7", "", ""},
}};

template <typename Item, std::size_t count>
std::vector<Item> ListOf(const std::array<Item, count>& items)
{
    return {items.begin(), items.end()};
}

template <typename Items> std::vector<plc::Cell> CellsOf(const Items& items)
{
    std::vector<plc::Cell> cells;
    std::transform(items.begin(), items.end(), std::back_inserter(cells), [](const auto& item) {
        return plc::Image::CellOf(item.operand);
    });
    return cells;
}

std::vector<bool> BitsOf(const std::vector<plc::Cell>& cells, const plc::Image& image)
{
    std::vector<bool> bits;
    bits.reserve(cells.size());
    for (const plc::Cell& cell : cells) {
        bits.push_back(image.IsOn(cell));
    }
    return bits;
}

} // namespace

Plant::Plant(
    plc::Program program,
    std::unique_ptr<plc::Process> process,
    plc::Controller::AfterCycle afterCycle,
    std::chrono::milliseconds period)
    : m_line(dynamic_cast<const samples::BottlingLine*>(process.get())),
      m_switches(m_line != nullptr ? ListOf(samples::bottlingSwitches) : ListOf(bareSwitches)),
      m_lamps(m_line != nullptr ? ListOf(samples::bottlingLamps) : ListOf(bareLamps)),
      m_switchCells(CellsOf(m_switches)),
      m_lampCells(CellsOf(m_lamps)), m_panel{
                                         std::vector<bool>(m_switches.size()),
                                         std::vector<bool>(m_lamps.size())}
{
    auto hook = [this, afterCycle = std::move(afterCycle)](
                    plc::Image& image, plc::CyclicProgram& running, std::uint64_t cycle) {
        ReadPanel(image);
        afterCycle(image, running, cycle);
    };
    m_controller = std::make_unique<plc::Controller>(
        plc::MakeInterpreter(std::move(program)), std::move(process), std::move(hook), period);
}

void Plant::ReadPanel(const plc::Image& image)
{
    PanelState panel{BitsOf(m_switchCells, image), BitsOf(m_lampCells, image)};
    const std::lock_guard lock(m_mutex);
    m_panel = std::move(panel);
}

void Plant::SetSwitch(std::size_t place, bool on)
{
    Post(
        [cell = m_switchCells.at(place), on](plc::Image& image) { image.Write(cell, on ? 1 : 0); });
}

PanelState Plant::Panel() const
{
    const std::lock_guard lock(m_mutex);
    return m_panel;
}

std::optional<samples::BottlingView> Plant::Line() const
{
    if (m_line == nullptr) {
        return std::nullopt;
    }
    return m_line->View();
}

} // namespace plclink
