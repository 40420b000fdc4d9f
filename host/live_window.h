#pragma once

#include "line_view.h"
#include "panel.h"
#include "plant.h"
#include "window.h"

#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include <string>

// The window of the machine that runs. GUI thread.

namespace plchost {

class LiveWindow : public HostWindow
{
public:
    /// @param plant and monitor outlive the window.
    LiveWindow(
        plclink::Plant& plant,
        LinkMonitor& monitor,
        const std::string& language,
        WindowActions actions);

    /// Shows the plant as it is now.
    void Refresh() override;

private:
    void SetTexts(const HostTexts& texts, const std::string& language) override;
    void RefreshState();

    plclink::Plant& m_plant;
    const HostTexts* m_texts = nullptr; ///< Lives as long as the program.
    Gtk::Label m_state;
    Gtk::Button m_start;
    Gtk::Button m_stop;
    Gtk::Label m_cycle;
    LineView m_picture;
    OperatorPanel m_panel;
};

} // namespace plchost
