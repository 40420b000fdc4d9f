#include "replay_window.h"

#include <utility>

namespace plchost {

namespace {

constexpr int progressWidth = 400;

std::string Tenths(std::chrono::microseconds time)
{
    using Tenth = std::chrono::duration<std::int64_t, std::deci>;
    const auto tenths = std::chrono::duration_cast<Tenth>(time).count();
    return std::to_string(tenths / Tenth::period::den) + '.' +
           std::to_string(tenths % Tenth::period::den) + " s";
}

double Fraction(std::chrono::microseconds part, std::chrono::microseconds whole)
{
    return whole.count() == 0
               ? 1
               : static_cast<double>(part.count()) / static_cast<double>(whole.count());
}

} // namespace

ReplayWindow::ReplayWindow(
    Player& player, LinkMonitor& monitor, const std::string& language, WindowActions actions)
    : HostWindow(monitor, std::move(actions)), m_player(player)
{
    m_rewind.signal_clicked().connect([this] { m_player.Rewind(); });
    Head().pack_start(m_rewind, Gtk::PACK_SHRINK);
    m_progress.set_show_text(true);
    m_progress.set_size_request(progressWidth);
    Body().pack_start(m_progress, Gtk::PACK_EXPAND_WIDGET);
    Link().OpenTable();
    ShowAll(language);
}

void ReplayWindow::SetTexts(const HostTexts& texts, const std::string&)
{
    set_title(texts.recording);
    m_rewind.set_label(texts.fromStart);
}

void ReplayWindow::Refresh()
{
    m_progress.set_fraction(Fraction(m_player.Position(), m_player.Length()));
    m_progress.set_text(Tenths(m_player.Position()) + " / " + Tenths(m_player.Length()));
}

} // namespace plchost
