#include "window.h"

#include "texts.h"

#include <glibmm/fileutils.h>
#include <glibmm/markup.h>

#include <array>
#include <cstdio>
#include <exception>
#include <gdkmm/pixbuf.h>
#include <utility>

namespace plchost {

namespace {

constexpr int gap = 8;
constexpr std::size_t timeTextSize = 32;

Glib::ustring Badge(const char* text, bool running)
{
    return Glib::ustring("<span foreground='white' weight='bold' background='") +
           (running ? "#29ad61" : "#c0392b") + "'>  " + text + "  </span>";
}

std::string Milliseconds(std::chrono::microseconds time)
{
    const std::chrono::duration<double, std::milli> exact = time;
    std::array<char, timeTextSize> text{};
    std::snprintf(text.data(), text.size(), "%.2f ms", exact.count());
    return text.data();
}

} // namespace

HostWindow::HostWindow(Plant& plant, const std::string& language, WindowActions actions)
    : m_plant(plant), m_actions(std::move(actions)), m_texts(&TextsIn(language)),
      m_all(Gtk::ORIENTATION_VERTICAL), m_head(Gtk::ORIENTATION_HORIZONTAL, gap),
      m_body(Gtk::ORIENTATION_HORIZONTAL, gap), m_panel(plant)
{
    BuildProblem();
    BuildHead();
    m_panel.set_hexpand(false); // its rows would take room from the picture
    m_body.property_margin() = gap;
    m_body.pack_start(m_picture, Gtk::PACK_EXPAND_WIDGET);
    m_body.pack_start(m_panel, Gtk::PACK_SHRINK);
    m_all.pack_start(m_head, Gtk::PACK_SHRINK);
    m_all.pack_start(m_problem, Gtk::PACK_SHRINK);
    m_all.pack_start(m_body, Gtk::PACK_EXPAND_WIDGET);
    add(m_all);

    m_languages.set_active_id(language);
    SetLanguage(language);
    m_languages.signal_changed().connect([this] {
        SetLanguage(m_languages.get_active_id());
        m_actions.chooseLanguage(m_languages.get_active_id());
    });
    Refresh();
    show_all_children();
    m_problem.hide();
}

void HostWindow::BuildHead()
{
    m_start.signal_clicked().connect([this] { m_plant.Start(); });
    m_stop.signal_clicked().connect([this] { m_plant.Stop(); });
    m_debugger.signal_clicked().connect([this] { m_actions.openOrClose(); });
    m_debugger.get_style_context()->add_class("suggested-action");
    m_languages.append("de", "Deutsch");
    m_languages.append("en", "English");

    m_head.property_margin() = gap;
    for (Gtk::Widget* widget :
         {static_cast<Gtk::Widget*>(&m_state),
          static_cast<Gtk::Widget*>(&m_start),
          static_cast<Gtk::Widget*>(&m_stop),
          static_cast<Gtk::Widget*>(&m_cycle)})
        m_head.pack_start(*widget, Gtk::PACK_SHRINK);
    m_head.pack_end(m_debugger, Gtk::PACK_SHRINK);
    m_head.pack_end(m_languages, Gtk::PACK_SHRINK);
    m_head.pack_end(m_languageName, Gtk::PACK_SHRINK);
}

void HostWindow::BuildProblem()
{
    m_problemText.set_line_wrap(true);
    m_problemText.set_xalign(0);
    m_problem.set_message_type(Gtk::MESSAGE_ERROR);
    m_problem.set_show_close_button(true);
    m_problem.signal_response().connect([this](int) { m_problem.hide(); });
    if (auto* const area = dynamic_cast<Gtk::Container*>(m_problem.get_content_area()))
        area->add(m_problemText);
}

void HostWindow::SetLanguage(const std::string& language)
{
    m_texts = &TextsIn(language);
    set_title(m_plant.Line() ? m_texts->title : m_texts->otherTitle);
    m_start.set_label(m_texts->start);
    m_stop.set_label(m_texts->stop);
    m_languageName.set_text(m_texts->language);
    m_languages.set_tooltip_text(m_texts->languageHint);
    m_picture.SetTexts(*m_texts);
    m_panel.SetLanguage(language);
    ShowDebugger(m_debuggerOpen);
}

void HostWindow::ShowDebugger(bool open)
{
    m_debuggerOpen = open;
    m_debugger.set_label(open ? m_texts->closeDebugger : m_texts->openDebugger);
}

void HostWindow::ShowProblem(const std::string& message)
{
    m_problemText.set_text(message);
    m_problem.show();
}

void HostWindow::Refresh()
{
    RefreshState();
    m_panel.Refresh();
    m_picture.Show(m_plant.Line());
}

void HostWindow::RefreshState()
{
    const plc::ControllerStatus status = m_plant.Status();
    m_state.set_markup(
        Badge(status.running ? m_texts->running : m_texts->standing, status.running));
    m_start.set_sensitive(!status.running);
    m_stop.set_sensitive(status.running);
    if (status.stopped)
        m_cycle.set_text(plc::StopText(*status.stopped));
    else
        m_cycle.set_text(
            std::string(m_texts->cycleTime) + ' ' + std::to_string(status.period.count()) +
            " ms, " + m_texts->work + ' ' + Milliseconds(status.last) + ", " + m_texts->longest +
            ' ' + Milliseconds(status.max));
}

bool HostWindow::SavePicture(const std::string& file)
{
    // Drawn anew and not read from the screen, where other windows may cover it.
    const auto surface = Cairo::ImageSurface::create(
        Cairo::FORMAT_RGB24, get_allocated_width(), get_allocated_height());
    draw(Cairo::Context::create(surface));
    try {
        surface->write_to_png(file);
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

} // namespace plchost
