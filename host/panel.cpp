#include "panel.h"

#include "looks.h"
#include "texts.h"

#include <glibmm/markup.h>

namespace plchost {

namespace {

constexpr const char* lit = "<span foreground='#29ad61' size='x-large'>\u25CF</span>";
constexpr const char* dark = "<span foreground='#c4c9d0' size='x-large'>\u25CF</span>";

void SetOperand(Gtk::Label& label, std::string_view operand)
{
    label.set_markup(
        "<span foreground='#70767f'>" + Glib::Markup::escape_text(std::string(operand)) +
        "</span>");
    label.set_xalign(0);
}

template <typename Item> std::string NameOf(const Item& item, std::string_view language)
{
    return std::string(language == "de" ? item.german : item.english);
}

void Prepare(Gtk::Frame& frame, Gtk::Grid& grid)
{
    grid.set_column_spacing(gap);
    grid.set_row_spacing(rowGap);
    grid.property_margin() = gap;
    frame.add(grid);
}

} // namespace

OperatorPanel::OperatorPanel(plclink::Plant& plant)
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, gap),
      m_plant(plant), m_shown{
                          std::vector<bool>(plant.Switches().size()),
                          std::vector<bool>(plant.Lamps().size())}
{
    Prepare(m_switchFrame, m_switchGrid);
    Prepare(m_lampFrame, m_lampGrid);
    for (std::size_t place = 0; place < plant.Switches().size(); ++place) {
        BuildSwitch(place);
    }
    for (std::size_t place = 0; place < plant.Lamps().size(); ++place) {
        BuildLamp(place);
    }
    pack_start(m_switchFrame, Gtk::PACK_SHRINK);
    pack_start(m_lampFrame, Gtk::PACK_SHRINK);
}

void OperatorPanel::BuildSwitch(std::size_t place)
{
    const samples::PanelSwitch& item = m_plant.Switches().at(place);
    const int line = static_cast<int>(place);
    m_switches.push_back(std::make_unique<SwitchRow>());
    SwitchRow& row = *m_switches.back();
    SetOperand(row.operand, item.operand);
    m_switchGrid.attach(row.operand, 0, line);
    if (item.isButton) {
        row.button.signal_pressed().connect(
            [this, place, on = !item.initially] { m_plant.SetSwitch(place, on); });
        row.button.signal_released().connect(
            [this, place, on = item.initially] { m_plant.SetSwitch(place, on); });
        row.button.set_hexpand(true);
        m_switchGrid.attach(row.button, 1, line, 2);
        return;
    }
    row.lever.property_active().signal_changed().connect(
        [this, place, &row] { m_plant.SetSwitch(place, row.lever.get_active()); });
    row.name.set_xalign(0);
    row.name.set_hexpand(true);
    m_switchGrid.attach(row.name, 1, line);
    m_switchGrid.attach(row.lever, 2, line);
}

void OperatorPanel::BuildLamp(std::size_t place)
{
    const int line = static_cast<int>(place);
    m_lamps.push_back(std::make_unique<LampRow>());
    LampRow& row = *m_lamps.back();
    row.light.set_markup(dark);
    SetOperand(row.operand, m_plant.Lamps().at(place).operand);
    row.name.set_xalign(0);
    row.name.set_hexpand(true);
    m_lampGrid.attach(row.operand, 0, line);
    m_lampGrid.attach(row.name, 1, line);
    m_lampGrid.attach(row.light, 2, line);
}

void OperatorPanel::SetLanguage(std::string_view language)
{
    const HostTexts& texts = TextsIn(language);
    m_switchFrame.set_label(texts.switches);
    m_lampFrame.set_label(texts.lamps);
    for (std::size_t place = 0; place < m_switches.size(); ++place) {
        const std::string name = NameOf(m_plant.Switches().at(place), language);
        m_switches[place]->name.set_text(name);
        m_switches[place]->button.set_label(name);
    }
    for (std::size_t place = 0; place < m_lamps.size(); ++place) {
        m_lamps[place]->name.set_text(NameOf(m_plant.Lamps().at(place), language));
    }
}

void OperatorPanel::Refresh()
{
    plclink::PanelState now = m_plant.Panel();
    // Only what has changed in the PLC is shown anew: a switch that the operator has just moved
    // must not jump back before the next cycle.
    for (std::size_t place = 0; place < m_switches.size(); ++place) {
        if (now.switches[place] != m_shown.switches[place] && !m_plant.Switches()[place].isButton) {
            m_switches[place]->lever.set_active(now.switches[place]);
        }
    }
    for (std::size_t place = 0; place < m_lamps.size(); ++place) {
        if (now.lamps[place] != m_shown.lamps[place]) {
            m_lamps[place]->light.set_markup(now.lamps[place] ? lit : dark);
        }
    }
    m_shown = std::move(now);
}

} // namespace plchost
