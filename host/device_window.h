#pragma once

#include "window.h"

#include <gtkmm/label.h>

#include <string>

// The window of a controller outside of this program. GUI thread.

namespace plchost {

class DeviceWindow : public HostWindow
{
public:
    /// @param remark what the window says of a device of this kind.
    /// @param monitor outlives the window.
    DeviceWindow(
        const std::string& name,
        const char* HostTexts::*remark,
        LinkMonitor& monitor,
        const std::string& language,
        WindowActions actions);

    void Refresh() override {}

private:
    void SetTexts(const HostTexts& texts, const std::string& language) override;

    const char* HostTexts::*const m_remark;
    Gtk::Label m_remarkText;
};

} // namespace plchost
