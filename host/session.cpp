#include "session.h"

#include <utility>

namespace plchost {

namespace {

/// Between the debugger's frame and its question whether to save, no window stands for a moment.
constexpr int pollsWithoutWindowLimit = 4;

} // namespace

bool PluginAnswers::Answer(AnswerKind kind, const CMD_DATA* answer)
{
    const std::lock_guard lock(m_mutex);
    if (m_shut) {
        return false;
    }
    const PlcAnswerExport send =
        kind == AnswerKind::ReadVar ? m_plugin.answerReadVar : m_plugin.answerProgramState;
    if (answer == nullptr) {
        return send(nullptr) != 0;
    }
    CMD_DATA copy = *answer; // the export takes a pointer that it could write through
    return send(reinterpret_cast<unsigned char*>(&copy)) != 0;
}

bool PluginAnswers::AreTaken()
{
    const std::lock_guard lock(m_mutex);
    return !m_shut && PlcTakesAnswers(&m_plugin) != 0;
}

void PluginAnswers::Shut()
{
    const std::lock_guard lock(m_mutex);
    m_shut = true;
}

void PluginAnswers::Open()
{
    const std::lock_guard lock(m_mutex);
    m_shut = false;
}

DebuggerSession::DebuggerSession(
    const Plugin& plugin,
    PluginAnswers& answers,
    std::function<bool()> anyWindow,
    std::function<void()> onChange)
    : m_plugin(plugin), m_answers(answers), m_anyWindow(std::move(anyWindow)),
      m_onChange(std::move(onChange))
{
}

base::Result<void> DebuggerSession::Open(PLC_DBG_INIT init)
{
    if (m_open || IsBusy()) {
        return {};
    }
    m_open = true;
    m_pollsWithoutWindow = 0;
    ++m_calls;
    const bool created = m_plugin.create(&init) != 0;
    Leave();
    // Close() may have come from a dialog that was shown meanwhile.
    const bool failed = m_open && !created;
    m_open = created;
    m_onChange();
    if (!failed) {
        return {};
    }
    return base::Failure{
        "the debugger does not open: the library could not set up its toolkit (is it the one for "
        "this GTK version?)"};
}

void DebuggerSession::Close()
{
    if (!m_open && !IsBusy()) {
        return;
    }
    m_open = false;
    m_answers.Shut();
    ++m_calls;
    m_plugin.destroy();
    Leave();
    m_onChange();
}

/// Answers may go out again when no destroy is under way any more.
void DebuggerSession::Leave()
{
    if (--m_calls == 0) {
        m_answers.Open();
    }
}

void DebuggerSession::Poll()
{
    if (!m_open || IsBusy()) {
        return;
    }
    m_pollsWithoutWindow = m_anyWindow() ? 0 : m_pollsWithoutWindow + 1;
    // After the close box an answer is refused. After the menu's Exit the debugger is hidden and
    // still takes answers; only its windows tell.
    if (!m_answers.AreTaken() || m_pollsWithoutWindow >= pollsWithoutWindowLimit) {
        Close();
    }
}

} // namespace plchost
