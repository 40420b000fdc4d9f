#include "window.h"

#include "looks.h"

#include <glibmm/fileutils.h>

#include <exception>
#include <gdkmm/pixbuf.h>
#include <utility>

namespace plchost {

HostWindow::HostWindow(LinkMonitor& monitor, WindowActions actions)
    : m_monitor(monitor), m_actions(std::move(actions)), m_all(Gtk::ORIENTATION_VERTICAL),
      m_head(Gtk::ORIENTATION_HORIZONTAL, gap), m_body(Gtk::ORIENTATION_HORIZONTAL, gap)
{
    BuildProblem();
    BuildHead();
    m_body.property_margin() = gap;
    m_all.pack_start(m_head, Gtk::PACK_SHRINK);
    m_all.pack_start(m_problem, Gtk::PACK_SHRINK);
    m_all.pack_start(m_body, Gtk::PACK_EXPAND_WIDGET);
    m_all.pack_start(m_link, Gtk::PACK_SHRINK);
    add(m_all);
}

void HostWindow::ShowAll(const std::string& language)
{
    m_languages.set_active_id(language);
    SetLanguage(language);
    m_languages.signal_changed().connect([this] {
        SetLanguage(m_languages.get_active_id());
        m_actions.chooseLanguage(m_languages.get_active_id());
    });
    Refresh();
    show_all_children();
    RefreshLink();
    m_problem.hide();
}

void HostWindow::BuildHead()
{
    m_debugger.signal_clicked().connect([this] { m_actions.openOrClose(); });
    m_debugger.get_style_context()->add_class("suggested-action");
    m_languages.append("de", "Deutsch");
    m_languages.append("en", "English");

    m_head.property_margin() = gap;
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
    if (auto* const area = dynamic_cast<Gtk::Container*>(m_problem.get_content_area())) {
        area->add(m_problemText);
    }
}

void HostWindow::SetLanguage(const std::string& language)
{
    m_texts = &TextsIn(language);
    m_languageName.set_text(m_texts->language);
    m_languages.set_tooltip_text(m_texts->languageHint);
    m_link.SetTexts(*m_texts);
    SetTexts(*m_texts, language);
    ShowDebugger(m_debuggerOpen);
}

void HostWindow::RefreshLink(const std::string& stepsUser)
{
    m_link.Show(m_monitor.Look(), stepsUser);
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
