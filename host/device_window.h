#pragma once

#include "window.h"

#include <gtkmm/label.h>

#include <string>

// The window of a controller outside of this program. GUI thread.

namespace plchost {

class DeviceWindow : public HostWindow
{
public:
    /// @param name of the device.
    /// @param monitor outlives the window.
    DeviceWindow(
        const std::string& name,
        LinkMonitor& monitor,
        const std::string& language,
        WindowActions actions);

    void Refresh() override {}

private:
    void SetTexts(const HostTexts& texts, const std::string& language) override;

    Gtk::Label m_noStates;
};

} // namespace plchost
