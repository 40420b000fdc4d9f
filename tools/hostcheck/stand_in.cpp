#include "stand_in.h"

#include "debug_file.h"
#include "file.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace hostcheck {

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned tickMs = 100;
constexpr int ticksBetweenTexts = 5;

/// How long a destroy takes: as under a question to the operator, the main loop runs meanwhile.
constexpr int ticksOfDestroy = 3;

/// The window stands while a callback runs; nobody overlooks this.
constexpr std::chrono::seconds slowCallback{2};

void Print(const std::string& line)
{
    std::fputs(("plcdebug-hostcheck: " + line + "\n").c_str(), stderr);
}

std::string PrefixOf(const PLC_DBG_INIT& init)
{
    return {init.szPath, strnlen(init.szPath, PLC_PATH_SIZE)};
}

PlcRequestCallback CallbackFor(const PLC_DBG_INIT& host, const CMD_DATA& request)
{
    switch (request.command) {
    case PLC_CMD_READ_VAR:
        return host.pfnReadVarRequest;
    case PLC_CMD_DELETE_VAR:
        return host.pfnDeleteVarRequest;
    case PLC_CMD_PRG_STATE:
        return host.pfnPrgStateRequest;
    default:
        return nullptr;
    }
}

/// What a host's answer holds, read no further than a right one reaches.
CMD_DATA CopyOf(const unsigned char* answer, bool ofSteps)
{
    CMD_DATA copy{};
    std::memcpy(&copy, answer, PLC_CMD_HEADER_SIZE);
    const std::size_t stated =
        std::clamp<std::size_t>(copy.length, std::size_t{PLC_CMD_HEADER_SIZE}, sizeof copy);
    std::size_t right = PLC_READ_ANSWER_SIZE;
    if (ofSteps) {
        std::memcpy(&copy, answer, std::min(stated, std::size_t{PLC_STATES_AT}));
        const auto count = std::clamp<std::int64_t>(
            PlcStepCount(PlcFirstStep(&copy), PlcLastStep(&copy)), 0, PLC_MAX_STEPS);
        right = PLC_STATES_AT + PLC_STEP_SIZE * static_cast<std::size_t>(count);
    }
    std::memcpy(&copy, answer, std::min(stated, right));
    return copy;
}

} // namespace

StandIn& StandIn::Get()
{
    // Threads of the host may answer until the very end.
    static auto* const only = new StandIn;
    return *only;
}

StandIn::StandIn() : m_report(Print), m_judge(m_report) {}

void StandIn::Find(Finding finding, const std::string& words)
{
    const std::lock_guard lock(m_mutex);
    m_report.Find(finding, words);
}

/// Whether the calling thread is the one of the main loop, as far as that can be told: before the
/// loop runs, any thread may be.
bool StandIn::IsOnGuiThread()
{
    if (g_main_context_acquire(nullptr) == FALSE) {
        return false;
    }
    g_main_context_release(nullptr);
    return true;
}

int StandIn::Create(const PLC_DBG_INIT& init)
{
    if (gdk_display_get_default() == nullptr) {
        Find(
            Finding::ToolkitNotSetUp, "creates the debugger before gtk_init(), or without display");
        return 0;
    }
    if (!IsOnGuiThread()) {
        Find(
            Finding::CreateOnOtherThread,
            "creates the debugger on another thread than that of the GTK main loop");
        return 0;
    }
    if (!Begin(init)) {
        return 0;
    }
    if (!std::exchange(m_isTimed, true)) {
        g_timeout_add(tickMs, OnTick, this);
    }
    m_window = std::make_unique<Window>([this] { Close(); });
    AskTallFrame();
    Requests requests;
    {
        const std::lock_guard lock(m_mutex);
        requests = m_script.Open();
    }
    Send(requests);
    const std::lock_guard lock(m_mutex);
    m_judge.EndCreate();
    return m_judge.IsOpen() ? 1 : 0;
}

bool StandIn::Begin(const PLC_DBG_INIT& init)
{
    const std::string prefix = PrefixOf(init);
    const auto debugFile = base::ReadFile(prefix + std::string(plc::debugFileSuffix));
    const auto steps = debugFile ? StepsOf(*debugFile) : std::vector<Steps>();

    const std::lock_guard lock(m_mutex);
    if (!m_judge.BeginCreate()) {
        return false;
    }
    if (!debugFile) {
        m_report.Say(debugFile.Message() + "; two message boxes of the debugger would say so");
    } else if (!steps) {
        m_report.Find(
            Finding::NoBlock,
            "the program debug file has no block; the debugger would end the program by "
            "std::out_of_range");
    }
    const auto operands = OperandsFor(prefix);
    m_report.Say(
        "watches " + std::to_string(operands.size()) + " operands and steps of " +
        std::to_string(steps ? steps->size() : 0) + " blocks; it writes nothing to the machine");
    m_host = init;
    m_guiThread = std::this_thread::get_id();
    m_script = Script(operands, steps.value_or(std::vector<Steps>()));
    ++m_life;
    return true;
}

void StandIn::AskTallFrame()
{
    if (m_host.pfnTallFrame != nullptr) {
        CallHost([callback = m_host.pfnTallFrame] { callback(); });
    }
}

void StandIn::Destroy()
{
    Requests requests;
    int until = 0;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_judge.BeginDestroy()) {
            return;
        }
        ++m_life;
        requests = m_script.Close();
        until = m_ticks + ticksOfDestroy;
        if (std::this_thread::get_id() != m_guiThread) {
            m_report.Find(
                Finding::DestroyOnOtherThread,
                "destroys the debugger on another thread than that of the GTK main loop");
            m_judge.EndDestroy();
            g_idle_add(OnLateTeardown, this);
            return;
        }
    }
    Send(requests);
    while (m_ticks < until) {
        g_main_context_iteration(nullptr, TRUE);
    }
    m_window.reset();
    const std::lock_guard lock(m_mutex);
    m_judge.EndDestroy();
}

gboolean StandIn::OnLateTeardown(gpointer self)
{
    static_cast<StandIn*>(self)->m_window.reset();
    return G_SOURCE_REMOVE;
}

/// The operator's close box.
void StandIn::Close()
{
    Requests requests;
    {
        const std::lock_guard lock(m_mutex);
        m_judge.Close();
        requests = m_script.Close();
    }
    Send(requests);
}

void StandIn::Send(const Requests& requests)
{
    const int life = m_life;
    for (const CMD_DATA& request : requests) {
        if (m_life == life) {
            Send(request);
        }
    }
}

void StandIn::Send(const CMD_DATA& request)
{
    const PlcRequestCallback callback = CallbackFor(m_host, request);
    if (callback == nullptr) {
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_judge.Asked(request);
    }
    const CMD_DATA* const handed = m_memory.Open(request);
    CallHost([&] { callback(handed); });
    m_memory.Shut(handed);
}

template <typename Call> void StandIn::CallHost(const Call& call)
{
    {
        const std::lock_guard lock(m_mutex);
        m_judge.BeginCallback();
    }
    const auto start = Clock::now();
    bool throws = false;
    try {
        call();
    } catch (...) {
        throws = true;
    }
    const std::lock_guard lock(m_mutex);
    m_judge.EndCallback();
    if (throws) {
        m_report.Find(
            Finding::CallbackThrows, "a callback throws an exception; the program would end");
    }
    if (Clock::now() - start > slowCallback) {
        m_report.Find(
            Finding::CallbackSlow, "a callback takes longer than 2 s; the window stands meanwhile");
    }
}

/// The lock is held.
void StandIn::LookAtMemory()
{
    if (RequestMemory::WasKept()) {
        m_report.Find(
            Finding::RequestKept, "reads a request after its callback has returned; copy it");
    }
    if (RequestMemory::WasOverread()) {
        m_report.Find(Finding::RequestOverread, "reads beyond the 506 bytes of a request");
    }
}

gboolean StandIn::OnTick(gpointer self)
{
    static_cast<StandIn*>(self)->Tick();
    return G_SOURCE_CONTINUE;
}

void StandIn::Tick()
{
    Requests requests;
    {
        const std::lock_guard lock(m_mutex);
        if (m_guiThread != std::this_thread::get_id()) {
            m_guiThread = std::this_thread::get_id();
            m_report.Find(
                Finding::CreateOnOtherThread,
                "creates the debugger on another thread than that of the GTK main loop");
        }
        ++m_ticks;
        m_judge.Tick();
        LookAtMemory();
        if (m_judge.IsAsking()) {
            const bool wasThrough = m_script.IsThrough();
            requests = m_script.Next();
            if (m_script.IsThrough() && !wasThrough) {
                m_report.Say("everything has been asked for once: " + m_report.Summary());
            }
        }
    }
    Send(requests);
    if (m_window && m_ticks % ticksBetweenTexts == 0) {
        m_window->Show(Text());
    }
}

std::string StandIn::Text()
{
    const std::lock_guard lock(m_mutex);
    std::string text = m_report.Summary() + "\n";
    for (const auto& lines : {m_report.Lines(), m_judge.Rows()}) {
        text += "\n";
        for (const std::string& line : lines) {
            text += line + "\n";
        }
    }
    return text;
}

int StandIn::AnswerReadVar(const unsigned char* answer)
{
    const CMD_DATA copy = answer == nullptr ? CMD_DATA{} : CopyOf(answer, false);
    const std::lock_guard lock(m_mutex);
    return m_judge.AnswerReadVar(answer == nullptr ? nullptr : &copy);
}

int StandIn::AnswerProgState(const unsigned char* answer)
{
    const CMD_DATA copy = answer == nullptr ? CMD_DATA{} : CopyOf(answer, true);
    const std::lock_guard lock(m_mutex);
    return m_judge.AnswerProgState(answer == nullptr ? nullptr : &copy);
}

bool StandIn::End()
{
    const std::lock_guard lock(m_mutex);
    LookAtMemory();
    m_judge.End();
    if (m_judge.IsUsed()) {
        for (const std::string& line : m_judge.Figures()) {
            m_report.Say(line);
        }
        if (!m_script.IsThrough()) {
            m_report.Say("it ended before everything had been asked for once");
        }
        m_report.Say(m_report.Summary());
    }
    return m_report.IsClean();
}

} // namespace hostcheck
