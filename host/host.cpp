#include "host.h"

#include "exit_status.h"

#include <glibmm/main.h>
#include <gtkmm/main.h>

#include <iostream>
#include <memory>
#include <utility>

namespace plchost {

namespace {

constexpr unsigned refreshMs = 40;
constexpr unsigned pollMs = 200;
constexpr unsigned startButtonMs = 500;
constexpr unsigned insistMs = 500;
constexpr unsigned quitMs = 20;

/// The lowest screen on which the debugger may be as tall as it likes.
constexpr int tallScreen = 800;

void Tell(const std::string& message)
{
    std::cerr << "plchost: " << message << std::endl;
}

bool IsTallScreen()
{
    return Gdk::Screen::get_default()->get_height() >= tallScreen;
}

/// Whether this program shows any other window than the host's own; that is the debugger then.
bool ShowsOtherWindow(const Gtk::Window& own)
{
    const std::unique_ptr<GList, decltype(&g_list_free)> windows(
        gtk_window_list_toplevels(), &g_list_free);
    for (const GList* item = windows.get(); item != nullptr; item = item->next) {
        auto* const window = static_cast<GtkWindow*>(item->data);
        if (window != own.gobj() && gtk_window_get_window_type(window) == GTK_WINDOW_TOPLEVEL &&
            gtk_widget_get_visible(GTK_WIDGET(window)) != FALSE)
            return true;
    }
    return false;
}

} // namespace

Host::Host(const Options& options, Ground ground)
    : m_options(options), m_ground(std::move(ground)), m_trace(std::cout),
      m_answers(m_ground.plugin), m_tracedAnswers(m_answers, m_trace),
      m_misbehave(
          options.trace ? static_cast<AnswerSink&>(m_tracedAnswers) : m_answers, options.fault),
      m_bridge(m_misbehave, Tell), m_tracedRequests(m_bridge, m_trace),
      m_threads(std::this_thread::get_id()),
      m_port(
          options.trace ? static_cast<RequestHandler&>(m_tracedRequests) : m_bridge,
          m_threads,
          IsTallScreen()),
      m_plant(MakePlant()),
      m_window(
          *m_plant,
          m_ground.language,
          {[this] { OpenOrClose(); },
           [this](const std::string& language) { m_ground.language = language; }}),
      m_session(
          m_ground.plugin,
          m_answers,
          [this] { return ShowsOtherWindow(m_window); },
          [this] {
              m_window.ShowDebugger(m_session.IsOpen());
              if (!m_session.IsOpen())
                  m_bridge.Forget();
          })
{
}

std::unique_ptr<Plant> Host::MakePlant()
{
    const auto afterCycle =
        [this](plc::Image& image, plc::CyclicProgram& program, std::uint64_t n) {
            m_bridge.AfterCycle(image, program, n, Bridge::Clock::now());
            m_misbehave.Tick();
        };
    if (m_options.program.empty())
        return Plant::Bottling(std::move(m_ground.program), afterCycle, m_options.cycle);
    return Plant::Bare(std::move(m_ground.program), afterCycle, m_options.cycle);
}

int Host::Run()
{
    m_window.signal_delete_event().connect([this](GdkEventAny*) {
        Quit();
        return true;
    });
    m_window.show();
    m_plant->Start();
    if (m_options.program.empty())
        PressStart();

    Glib::signal_timeout().connect([this] { return m_window.Refresh(), true; }, refreshMs);
    Glib::signal_timeout().connect(
        [this] { return CheckThreads(), m_session.Poll(), true; }, pollMs);
    Glib::signal_idle().connect_once([this] { Begin(); });
    Gtk::Main::run();

    CheckThreads();
    return m_status;
}

/// Starts the line as the operator would, so that it needs nobody.
void Host::PressStart()
{
    m_plant->SetSwitch(0, true);
    Glib::signal_timeout().connect_once([this] { m_plant->SetSwitch(0, false); }, startButtonMs);
}

void Host::OpenOrClose()
{
    if (m_session.IsOpen())
        m_session.Close();
    else
        OpenDebugger();
}

bool Host::OpenDebugger()
{
    std::string problem = DebugFileProblem(m_ground.files.debugFile);
    if (problem.empty())
        problem = WriteSettings(
            m_ground.files.settings, {m_ground.dataFolder + "/languages", m_ground.language});
    if (problem.empty())
        problem = m_session.Open(m_port.InitRecord(m_ground.files.prefix));
    if (problem.empty())
        return true;
    Tell(problem);
    m_window.ShowProblem(problem);
    return false;
}

/// Once the main loop runs. The time of --run counts from here: however slow the machine is, the
/// debugger has been opened by then.
void Host::Begin()
{
    if (m_options.run)
        Glib::signal_timeout().connect_once(
            [this] { EndRun(); }, static_cast<unsigned>(m_options.run->count()));
    if (!m_options.debugger || OpenDebugger())
        return;
    m_status = exitFailed;
    if (m_options.run)
        Quit();
}

void Host::CheckThreads()
{
    const std::string violation = m_threads.Violation();
    if (violation.empty() || std::exchange(m_violationTold, true))
        return;
    Tell(violation);
    m_window.ShowProblem(violation);
    m_status = exitThreadRule;
}

void Host::EndRun()
{
    if (!m_options.screenshot.empty() && !m_window.SavePicture(m_options.screenshot)) {
        Tell("cannot write the picture \"" + m_options.screenshot + "\" (is the folder there?)");
        m_status = exitFailed;
    }
    // Nobody is there to answer whether to save a list.
    Glib::signal_timeout().connect(
        [this] {
            if (m_session.IsBusy())
                m_session.Close();
            return true;
        },
        insistMs);
    Quit();
}

void Host::Quit()
{
    m_session.Close();
    // A dialog of the debugger runs a main loop inside ours and must have left it first.
    Glib::signal_timeout().connect(
        [this] {
            if (m_session.IsBusy() || Gtk::Main::level() > 1)
                return true;
            Gtk::Main::quit();
            return false;
        },
        quitMs);
}

} // namespace plchost
