#pragma once

#include "line_view.h"
#include "panel.h"
#include "plant.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/infobar.h>
#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>

// The window of the machine. GUI thread.

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
    /// @param plant outlives the window.
    HostWindow(Plant& plant, const std::string& language, WindowActions actions);

    /// Shows the plant as it is now. To be called some times each second.
    void Refresh();
    void ShowDebugger(bool open);
    /// Shows a message until the operator closes it.
    void ShowProblem(const std::string& message);
    /// Writes the window as a PNG file.
    /// @return false when the file cannot be written.
    bool SavePicture(const std::string& file);

private:
    void BuildHead();
    void BuildProblem();
    void SetLanguage(const std::string& language);
    void RefreshState();

    Plant& m_plant;
    const WindowActions m_actions;
    const HostTexts* m_texts; ///< Lives as long as the program.
    bool m_debuggerOpen = false;

    Gtk::Box m_all;
    Gtk::InfoBar m_problem;
    Gtk::Label m_problemText;
    Gtk::Box m_head;
    Gtk::Label m_state;
    Gtk::Button m_start;
    Gtk::Button m_stop;
    Gtk::Label m_cycle;
    Gtk::Label m_languageName;
    Gtk::ComboBoxText m_languages;
    Gtk::Button m_debugger;
    Gtk::Box m_body;
    LineView m_picture;
    OperatorPanel m_panel;
};

} // namespace plchost
