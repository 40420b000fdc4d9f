#include "host.h"

#include "device_machine.h"
#include "exit_status.h"
#include "file.h"
#include "live_machine.h"
#include "open_machine.h"
#include "remote_machine.h"
#include "replay_machine.h"
#include "tell.h"

#include <gtkmm/main.h>

#include <iostream>
#include <memory>
#include <utility>

namespace plchost {

namespace {

constexpr unsigned refreshMs = 40;
constexpr unsigned pollMs = 200;
constexpr unsigned insistMs = 500;
constexpr unsigned quitMs = 20;
constexpr unsigned readyMs = 20;

/// The lowest screen on which the debugger may be as tall as it likes.
constexpr int tallScreen = 800;

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
            gtk_widget_get_visible(GTK_WIDGET(window)) != FALSE) {
            return true;
        }
    }
    return false;
}

} // namespace

Host::Host(const Options& options, Ground ground)
    : m_options(options), m_ground(std::move(ground)), m_trace(std::cout),
      m_answers(m_ground.plugin), m_tracedAnswers(m_answers, m_trace), m_recorder(MakeRecorder()),
      m_recordedAnswers(
          options.trace ? static_cast<AnswerSink&>(m_tracedAnswers) : m_answers, m_recorder.get()),
      m_faults(m_recordedAnswers, options.fault), m_machine(MakeMachine()),
      m_tracedRequests(m_machine->Requests(), m_trace),
      m_recordedRequests(
          options.trace ? m_tracedRequests : m_machine->Requests(), m_recorder.get()),
      m_threads(std::this_thread::get_id()), m_port(m_recordedRequests, m_threads, IsTallScreen()),
      m_window(m_machine->MakeWindow(
          m_ground.language,
          {[this] { OpenOrClose(); },
           [this](const std::string& language) { m_ground.language = language; }})),
      m_session(
          m_ground.plugin,
          m_answers,
          [this] { return ShowsOtherWindow(*m_window); },
          [this] {
              m_window->ShowDebugger(m_session.IsOpen());
              m_machine->OnDebugger(m_session.IsOpen());
          })
{
}

std::unique_ptr<Recorder> Host::MakeRecorder() const
{
    if (m_options.record.empty()) {
        return nullptr;
    }
    const auto listing = base::ReadFile(m_ground.files.debugFile);
    return std::make_unique<Recorder>(m_options.record, listing ? *listing : "");
}

MachineLog Host::MakeLog()
{
    return {Tell, [this](const std::string& warning) {
                Tell(warning);
                m_warning.Put(warning);
            }};
}

/// Before the machine starts, so that nothing is missed.
void Host::Publish()
{
    const auto listing = base::ReadFile(m_ground.files.debugFile);
    auto order =
        MakePublishOrder(m_options.publish, m_options.access, listing ? *listing : "", "plchost");
    if (!order) {
        throw StartError{order.Message()};
    }
    const MachineLog log = MakeLog();
    m_publisher.emplace(m_machine->Link(), *std::move(order), log.tell, log.warn);
    m_publisher->Start();
}

std::unique_ptr<Machine> Host::MakeMachine()
{
    const auto tick = [this] { m_faults.Tick(); };
    const MachineLog log = MakeLog();
    if (m_ground.recording) {
        auto player = std::make_unique<Player>(std::move(*m_ground.recording), m_options.speed);
        return std::make_unique<ReplayMachine>(std::move(player), m_faults, tick, log);
    }
    if (m_options.device) {
        auto device = OpenDevice(*m_options.device, *std::move(m_ground.map));
        return std::make_unique<DeviceMachine>(
            std::move(device), m_options.deviceName, &HostTexts::noStates, m_faults, tick, log);
    }
    if (m_options.farMachine) {
        auto machine = OpenFarMachine(*m_options.farMachine, m_options.access, log.warn);
        if (!machine) {
            throw StartError{machine.Message()};
        }
        plcremote::MqttSource& source = **machine;
        return std::make_unique<RemoteMachine>(
            source, *std::move(machine), m_options.deviceName, m_ground.files, m_faults, tick, log);
    }
    auto plc = std::make_unique<plclink::SoftPlc>(
        std::move(m_ground.program),
        m_options.program.empty() ? samples::FindSampleMachine(m_options.sample) : nullptr,
        m_options.cycle,
        tick);
    return std::make_unique<LiveMachine>(std::move(plc), m_faults, log);
}

int Host::Run()
{
    m_window->signal_delete_event().connect([this](GdkEventAny*) {
        Quit();
        return true;
    });
    m_window->show();
    if (m_options.publish.address) {
        Publish();
    }
    m_machine->Start();

    m_timers.Every(refreshMs, [this] { m_window->Refresh(); });
    m_timers.Every(pollMs, [this] {
        CheckThreads();
        CheckRecorder();
        m_window->RefreshLink(m_publisher ? m_publisher->StepsUser() : "");
        if (const std::string warning = m_warning.Take(); !warning.empty()) {
            m_window->ShowProblem(warning);
        }
        m_session.Poll();
    });
    m_timers.WhenIdle([this] { Begin(); });
    Gtk::Main::run();

    CheckThreads();
    CheckRecorder();
    return m_status;
}

void Host::OpenOrClose()
{
    if (m_session.IsOpen()) {
        m_session.Close();
    } else {
        WhenReady([this] { OpenDebugger(); });
    }
}

/// Does it at once, or as soon as the machine has said what it is.
void Host::WhenReady(const std::function<void()>& open)
{
    if (std::exchange(m_isWaiting, true)) {
        return;
    }
    const auto waits = [this, open] {
        if (!m_machine->IsReady()) {
            return true;
        }
        m_isWaiting = false;
        open();
        return false;
    };
    if (waits()) {
        m_timers.While(readyMs, waits);
    }
}

bool Host::OpenDebugger()
{
    if (const auto opened = TryToOpen(); !opened) {
        Report(opened.Message());
        return false;
    }
    return true;
}

base::Result<void> Host::TryToOpen()
{
    if (const auto prepared = m_machine->PrepareDebugger(m_ground.language); !prepared) {
        Report(prepared.Message());
    }
    if (auto readable = CheckDebugFile(m_ground.files.debugFile); !readable) {
        return readable;
    }
    const DebuggerSettings settings{m_ground.dataFolder + "/languages", m_ground.language};
    if (auto written = WriteSettings(m_ground.files.settings, settings); !written) {
        return written;
    }
    return m_session.Open(m_port.InitRecord(m_ground.files.prefix));
}

void Host::Report(const std::string& problem)
{
    Tell(problem);
    m_window->ShowProblem(problem);
}

/// Once the main loop runs. The time of --run counts from here: however slow the machine is, the
/// debugger has been opened by then.
void Host::Begin()
{
    if (m_options.debugger) {
        WhenReady([this] { BeginWithDebugger(); });
    } else {
        BeginRun();
    }
}

void Host::BeginWithDebugger()
{
    BeginRun();
    if (OpenDebugger()) {
        return;
    }
    m_status = exitFailed;
    if (m_options.run) {
        Quit();
    }
}

void Host::BeginRun()
{
    if (m_options.run) {
        m_timers.Once(static_cast<unsigned>(m_options.run->count()), [this] { EndRun(); });
    }
}

void Host::CheckThreads()
{
    const auto kept = m_threads.Check();
    if (kept || std::exchange(m_violationTold, true)) {
        return;
    }
    Report(kept.Message());
    m_status = exitThreadRule;
}

void Host::CheckRecorder()
{
    const auto complete = m_recorder ? m_recorder->Check() : base::Result<void>();
    if (complete || std::exchange(m_recorderProblemTold, true)) {
        return;
    }
    Report(complete.Message());
}

void Host::EndRun()
{
    if (!m_options.screenshot.empty() && !m_window->SavePicture(m_options.screenshot)) {
        Tell("cannot write the picture \"" + m_options.screenshot + "\" (is the folder there?)");
        m_status = exitFailed;
    }
    // Nobody is there to answer whether to save a list.
    m_timers.Every(insistMs, [this] {
        if (m_session.IsBusy()) {
            m_session.Close();
        }
    });
    Quit();
}

void Host::Quit()
{
    m_session.Close();
    // A dialog of the debugger runs a main loop inside ours and must have left it first.
    m_timers.While(quitMs, [this] {
        if (m_session.IsBusy() || Gtk::Main::level() > 1) {
            return true;
        }
        Gtk::Main::quit();
        return false;
    });
}

} // namespace plchost
