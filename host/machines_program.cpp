#include "machines_program.h"

#include "exit_status.h"
#include "tell.h"

#include <gtkmm/main.h>

#include <algorithm>
#include <csignal>
#include <utility>
#include <vector>

namespace plchost {

namespace {

constexpr unsigned refreshMs = 200;

} // namespace

MachinesProgram::MachinesProgram(const Options& options, std::string program)
    : m_options(options), m_program(std::move(program)),
      m_language(options.language.empty() ? EnvironmentLanguage() : options.language),
      m_texts(TextsIn(m_language)), m_list(*options.plant, options.access, Tell),
      m_window(m_texts, options.plant->plant, [this](const std::string& machine) { Open(machine); })
{
}

int MachinesProgram::Run()
{
    m_window.signal_delete_event().connect([this](GdkEventAny*) {
        Close();
        return true;
    });
    m_list.Start();
    Refresh();
    m_window.show();
    m_timers.Every(refreshMs, [this] { Refresh(); });
    if (m_options.run) {
        m_timers.Once(static_cast<unsigned>(m_options.run->count()), [this] {
            for (const auto& entry : m_open) {
                g_subprocess_send_signal(entry.second.get(), SIGTERM);
            }
            Close();
        });
    }
    if (!m_options.openMachine.empty()) {
        Open(m_options.openMachine);
    }
    Gtk::Main::run();
    return exitGood;
}

void MachinesProgram::Refresh()
{
    const auto listed = m_list.Machines();
    std::vector<ShownMachine> shown;
    shown.reserve(listed.size());
    for (const plcremote::ListedMachine& machine : listed) {
        shown.push_back(Shown(m_texts, machine, m_options.plant->user));
    }
    m_window.Show(PlantSentence(m_texts, m_list.Broker(), shown.size()), shown);
}

/// In a program of its own: what goes wrong in one leaves the others alone. Twice the same would
/// share one list of variables.
void MachinesProgram::Open(const std::string& machine)
{
    if (m_open.count(machine) != 0) {
        m_window.ShowProblem(machine + ' ' + m_texts.isOpen);
        return;
    }
    const auto command = OpeningCommand(m_program, m_options, machine, m_language);
    std::vector<const char*> words(command.size() + 1); // the last one is null
    std::transform(command.begin(), command.end(), words.begin(), [](const std::string& word) {
        return word.c_str();
    });
    GError* error = nullptr;
    Process process(
        g_subprocess_newv(words.data(), G_SUBPROCESS_FLAGS_NONE, &error), &g_object_unref);
    if (!process) {
        m_window.ShowProblem(error->message);
        Tell(error->message);
        g_error_free(error);
        return;
    }
    g_subprocess_wait_check_async(process.get(), nullptr, &OnEnd, this);
    m_open.emplace(machine, std::move(process));
}

void MachinesProgram::OnEnd(GObject* process, GAsyncResult* result, void* program)
{
    auto& self = *static_cast<MachinesProgram*>(program);
    const bool good =
        g_subprocess_wait_check_finish(G_SUBPROCESS(process), result, nullptr) != FALSE;
    const auto ended = std::find_if(self.m_open.begin(), self.m_open.end(), [&](const auto& entry) {
        return G_OBJECT(entry.second.get()) == process;
    });
    if (!good) {
        self.m_window.ShowProblem(ended->first + ' ' + self.m_texts.endedWrong);
    }
    self.m_open.erase(ended);
    if (self.m_isClosed && self.m_open.empty()) {
        Gtk::Main::quit();
    }
}

/// The windows of single machines stay until the operator closes them.
void MachinesProgram::Close()
{
    m_isClosed = true;
    m_window.hide();
    if (m_open.empty()) {
        Gtk::Main::quit();
    }
}

} // namespace plchost
