#pragma once

#include "link_monitor.h"
#include "link_panel.h"
#include "texts.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/infobar.h>
#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>

// What every window of the host has: the debugger's button, the language, problems. GUI thread.

namespace plchost {

/// What the window leaves to others.
struct WindowActions
{
    std::function<void()> openOrClose; ///< The debugger.
    std::function<void(const std::string& language)> chooseLanguage;
};

class HostWindow : public Gtk::Window
{
public:
    /// To be called some times each second.
    virtual void Refresh() = 0;
    /// To be called some times each second, less often.
    /// @param stepsUser who has the program states from far away; empty: nobody.
    void RefreshLink(const std::string& stepsUser = {});
    void ShowDebugger(bool open);
    /// Shows a message until the operator closes it.
    void ShowProblem(const std::string& message);
    /// Writes the window as a PNG file.
    /// @return false when the file cannot be written.
    bool SavePicture(const std::string& file);

protected:
    /// @param monitor outlives the window.
    HostWindow(LinkMonitor& monitor, WindowActions actions);

    /// The last step of a derived window's constructor.
    void ShowAll(const std::string& language);

    /// The row above the problems, for controls at its left.
    Gtk::Box& Head() { return m_head; }

    /// The room below the problems.
    Gtk::Box& Body() { return m_body; }

    /// The row below that room.
    LinkPanel& Link() { return m_link; }

    /// Writes a derived window's own words.
    virtual void SetTexts(const HostTexts& texts, const std::string& language) = 0;

private:
    void BuildHead();
    void BuildProblem();
    void SetLanguage(const std::string& language);

    LinkMonitor& m_monitor;
    const WindowActions m_actions;
    const HostTexts* m_texts = nullptr; ///< Lives as long as the program.
    bool m_debuggerOpen = false;

    Gtk::Box m_all;
    Gtk::InfoBar m_problem;
    Gtk::Label m_problemText;
    Gtk::Box m_head;
    Gtk::Label m_languageName;
    Gtk::ComboBoxText m_languages;
    Gtk::Button m_debugger;
    Gtk::Box m_body;
    LinkPanel m_link;
};

} // namespace plchost
