#include "device_window.h"

#include <utility>

namespace plchost {

DeviceWindow::DeviceWindow(
    const std::string& name,
    const char* HostTexts::*remark,
    LinkMonitor& monitor,
    const std::string& language,
    WindowActions actions)
    : HostWindow(monitor, std::move(actions)), m_remark(remark)
{
    set_title(name);
    m_remarkText.set_line_wrap(true);
    m_remarkText.set_xalign(0);
    Body().pack_start(m_remarkText, Gtk::PACK_EXPAND_WIDGET);
    Link().OpenTable();
    ShowAll(language);
}

void DeviceWindow::SetTexts(const HostTexts& texts, const std::string&)
{
    m_remarkText.set_text(texts.*m_remark);
}

} // namespace plchost
