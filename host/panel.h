#pragma once

#include "plant.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/frame.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>
#include <gtkmm/switch.h>

#include <memory>
#include <string_view>
#include <vector>

// Switches and lamps of the machine. GUI thread.

namespace plchost {

class OperatorPanel : public Gtk::Box
{
public:
    /// @param plant outlives the panel.
    explicit OperatorPanel(plclink::Plant& plant);

    void SetLanguage(std::string_view language);
    void Refresh();

private:
    struct SwitchRow
    {
        Gtk::Label operand;
        Gtk::Label name;
        Gtk::Switch lever;  ///< One that latches,
        Gtk::Button button; ///< or one that springs back.
    };

    struct LampRow
    {
        Gtk::Label light;
        Gtk::Label operand;
        Gtk::Label name;
    };

    void BuildSwitch(std::size_t place);
    void BuildLamp(std::size_t place);

    plclink::Plant& m_plant;
    plclink::PanelState m_shown;
    Gtk::Frame m_switchFrame;
    Gtk::Grid m_switchGrid;
    Gtk::Frame m_lampFrame;
    Gtk::Grid m_lampGrid;
    std::vector<std::unique_ptr<SwitchRow>> m_switches;
    std::vector<std::unique_ptr<LampRow>> m_lamps;
};

} // namespace plchost
