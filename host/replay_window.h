#pragma once

#include "player.h"
#include "window.h"

#include <gtkmm/button.h>
#include <gtkmm/progressbar.h>

#include <string>

// The window of a recording. GUI thread.

namespace plchost {

class ReplayWindow : public HostWindow
{
public:
    /// @param player and monitor outlive the window.
    ReplayWindow(
        Player& player, LinkMonitor& monitor, const std::string& language, WindowActions actions);

    /// Shows how far the recording has been played.
    void Refresh() override;

private:
    void SetTexts(const HostTexts& texts, const std::string& language) override;

    Player& m_player;
    Gtk::Button m_rewind;
    Gtk::ProgressBar m_progress;
};

} // namespace plchost
