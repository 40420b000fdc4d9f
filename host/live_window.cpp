#include "live_window.h"

#include "looks.h"

#include <array>
#include <cstdio>
#include <utility>

namespace plchost {

namespace {

constexpr std::size_t timeTextSize = 32;

std::string Milliseconds(std::chrono::microseconds time)
{
    const std::chrono::duration<double, std::milli> exact = time;
    std::array<char, timeTextSize> text{};
    std::snprintf(text.data(), text.size(), "%.2f ms", exact.count());
    return text.data();
}

} // namespace

LiveWindow::LiveWindow(
    plclink::Plant& plant, LinkMonitor& monitor, const std::string& language, WindowActions actions)
    : HostWindow(monitor, std::move(actions)), m_plant(plant), m_panel(plant)
{
    m_start.signal_clicked().connect([this] { m_plant.Start(); });
    m_stop.signal_clicked().connect([this] { m_plant.Stop(); });
    for (Gtk::Widget* widget :
         {static_cast<Gtk::Widget*>(&m_state),
          static_cast<Gtk::Widget*>(&m_start),
          static_cast<Gtk::Widget*>(&m_stop),
          static_cast<Gtk::Widget*>(&m_cycle)}) {
        Head().pack_start(*widget, Gtk::PACK_SHRINK);
    }
    m_panel.set_hexpand(false); // its rows would take room from the picture
    Body().pack_start(m_picture, Gtk::PACK_EXPAND_WIDGET);
    Body().pack_start(m_panel, Gtk::PACK_SHRINK);
    ShowAll(language);
}

void LiveWindow::SetTexts(const HostTexts& texts, const std::string& language)
{
    m_texts = &texts;
    set_title(m_plant.Line() ? texts.title : texts.otherTitle);
    m_start.set_label(texts.start);
    m_stop.set_label(texts.stop);
    m_picture.SetTexts(texts);
    m_panel.SetLanguage(language);
}

void LiveWindow::Refresh()
{
    RefreshState();
    m_panel.Refresh();
    m_picture.Show(m_plant.Line());
}

void LiveWindow::RefreshState()
{
    const plc::ControllerStatus status = m_plant.Status();
    m_state.set_markup(
        status.running ? Badge(m_texts->running, goodColour) : Badge(m_texts->standing, badColour));
    m_start.set_sensitive(!status.running);
    m_stop.set_sensitive(status.running);
    if (status.stopped) {
        m_cycle.set_text(plc::StopText(*status.stopped));
    } else {
        m_cycle.set_text(
            std::string(m_texts->cycleTime) + ' ' + std::to_string(status.period.count()) +
            " ms, " + m_texts->work + ' ' + Milliseconds(status.last) + ", " + m_texts->longest +
            ' ' + Milliseconds(status.max));
    }
}

} // namespace plchost
