#pragma once

#include "machine_list.h"
#include "machines_window.h"
#include "options.h"
#include "timers.h"

#include <gio/gio.h>
#include <map>
#include <memory>
#include <string>

// The window of a plant, and the programs that it has started: one for each machine that was
// opened. GUI thread.

namespace plchost {

class MachinesProgram
{
public:
    /// @param program its own path, which is started for each machine.
    MachinesProgram(const Options& options, std::string program);
    MachinesProgram(const MachinesProgram&) = delete;
    MachinesProgram(MachinesProgram&&) = delete;
    MachinesProgram& operator=(const MachinesProgram&) = delete;
    MachinesProgram& operator=(MachinesProgram&&) = delete;
    ~MachinesProgram() = default;

    /// Runs the main loop until the window is closed and the last machine's window as well, or the
    /// option --run ends all of them.
    /// @return the program's exit status.
    int Run();

private:
    using Process = std::unique_ptr<GSubprocess, decltype(&g_object_unref)>;

    void Refresh();
    void Open(const std::string& machine);
    static void OnEnd(GObject* process, GAsyncResult* result, void* program);
    void Close();

    const Options m_options;
    const std::string m_program;
    const std::string m_language;
    const HostTexts& m_texts;
    plcremote::MachineList m_list;
    std::map<std::string, Process> m_open; ///< By machine.
    bool m_isClosed = false;
    MachinesWindow m_window;
    Timers m_timers;
};

} // namespace plchost
