#include "device_window.h"

#include <utility>

namespace plchost {

DeviceWindow::DeviceWindow(
    const std::string& name,
    LinkMonitor& monitor,
    const std::string& language,
    WindowActions actions)
    : HostWindow(monitor, std::move(actions))
{
    set_title(name);
    m_noStates.set_line_wrap(true);
    m_noStates.set_xalign(0);
    Body().pack_start(m_noStates, Gtk::PACK_EXPAND_WIDGET);
    Link().OpenTable();
    ShowAll(language);
}

void DeviceWindow::SetTexts(const HostTexts& texts, const std::string&)
{
    m_noStates.set_text(texts.noStates);
}

} // namespace plchost
