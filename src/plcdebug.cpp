#include "plcdebug.h"

#include "plcdebug_host.h"
#include "plcdebugframe.h"
#include "plcmodal.h"

#include <wx/init.h>
#include <wx/recguard.h>

#include <algorithm>
#include <cstdio>
#include <thread>
#include <vector>

#define PLCDEBUG_EXPORT extern "C" __attribute__((visibility("default")))

wxIMPLEMENT_APP_NO_MAIN(CPlcDebugApp);

std::atomic<PlcDebugFrame*> m_pDebugFrame{nullptr};
bool m_bOwnsTheApp = false;

namespace {

std::atomic<int> answersUnderWay{0};

/// Marks an answer export that may be using the frame, also when it fails.
class AnswerMark
{
public:
    AnswerMark() { ++answersUnderWay; }

    ~AnswerMark() { --answersUnderWay; }

    AnswerMark(const AnswerMark&) = delete;
    AnswerMark(AnswerMark&&) = delete;
    AnswerMark& operator=(const AnswerMark&) = delete;
    AnswerMark& operator=(AnswerMark&&) = delete;
};

/// Frames that wait for the plug-in's code to leave the stack. A host that destroys and creates
/// again at once may leave several.
std::vector<PlcDebugFrame*>& LeavingFrames()
{
    static std::vector<PlcDebugFrame*> frames;
    return frames;
}

bool appEndsWithThem = false;

bool isCreating = false;
bool destroyWhenCreated = false;
wxRecursionGuardFlag isDestroying = 0;

/// Marks the time in which ExportCreatePlcDebugger() builds the frame, also when that fails.
class CreationMark
{
public:
    CreationMark()
    {
        isCreating = true;
        destroyWhenCreated = false;
    }

    ~CreationMark() { isCreating = false; }

    CreationMark(const CreationMark&) = delete;
    CreationMark(CreationMark&&) = delete;
    CreationMark& operator=(const CreationMark&) = delete;
    CreationMark& operator=(CreationMark&&) = delete;
};

#ifndef NDEBUG
std::thread::id guiThread;

void RememberGuiThread()
{
    guiThread = std::this_thread::get_id();
}

void CheckGuiThread(const char* exportName)
{
    if (guiThread != std::thread::id() && guiThread != std::this_thread::get_id()) {
        std::fprintf(
            stderr,
            "libplcdebug: %s called on another thread than ExportCreatePlcDebugger; both belong on "
            "the thread that runs the GTK main loop\n",
            exportName);
    }
}
#else
void RememberGuiThread() {}

void CheckGuiThread(const char* /*exportName*/) {}
#endif

bool StartApp()
{
    int argc = 0;
    wxEntryStart(argc, static_cast<wxChar**>(nullptr));
    if (wxTheApp == nullptr || !wxTheApp->CallOnInit()) {
        return false;
    }
    wxTheApp->SetAppName("PLCDebugger");
    wxTheApp->SetVendorName("Quorvane GmbH");
    m_bOwnsTheApp = true;
    return true;
}

void EndOwnApp()
{
    appEndsWithThem = false;
    if (m_bOwnsTheApp) {
        wxTheApp->OnExit();
        wxEntryCleanup();
        m_bOwnsTheApp = false;
    }
}

void DeleteLeavingFrames()
{
    while (!LeavingFrames().empty()) {
        delete LeavingFrames().back(); // its destructor takes it out of the list
    }
    if (appEndsWithThem) {
        EndOwnApp();
    }
}

/// The parent for a new frame: the top window of a wxWidgets host, none in any other.
wxWindow* ParentWindow()
{
    return m_bOwnsTheApp ? nullptr : wxTheApp->GetTopWindow();
}

int QueueAnswer(unsigned char* answer, int (PlcDebugFrame::*process)(const unsigned char*))
{
    // Threads that answer without end must not keep the closing window waiting: who finds none is
    // not counted.
    if (m_pDebugFrame == nullptr || answer == nullptr) {
        return 0;
    }
    const AnswerMark mark; // before the pointer is read: ForgetFrame() looks the other way round
    PlcDebugFrame* frame = m_pDebugFrame;
    return frame != nullptr ? (frame->*process)(answer) : 0;
}

} // namespace

void ForgetFrame(PlcDebugFrame* frame)
{
    PlcDebugFrame* expected = frame;
    m_pDebugFrame.compare_exchange_strong(expected, nullptr);
    while (answersUnderWay != 0) {
        std::this_thread::yield();
    }
    std::vector<PlcDebugFrame*>& leaving = LeavingFrames();
    leaving.erase(std::remove(leaving.begin(), leaving.end(), frame), leaving.end());
}

void DeleteFrameLater(PlcDebugFrame* frame)
{
    std::vector<PlcDebugFrame*>& leaving = LeavingFrames();
    if (std::find(leaving.begin(), leaving.end(), frame) == leaving.end()) {
        leaving.push_back(frame);
    }
    PlcCallOut::RunWhenNoneActive(DeleteLeavingFrames);
}

PLCDEBUG_EXPORT int ExportCreatePlcDebugger(PLC_DBG_INIT* init)
{
    RememberGuiThread();
    if (isDestroying != 0 || init == nullptr || (wxTheApp == nullptr && !StartApp())) {
        return 0;
    }
    appEndsWithThem = false; // the new frame goes on with the application of one that is leaving
    {
        const CreationMark creationMark;
        m_pDebugFrame = new PlcDebugFrame(ParentWindow(), *init);
    }
    if (destroyWhenCreated) {
        ExportDestroyPlcDebugger();
        return 0;
    }
    return 1;
}

PLCDEBUG_EXPORT void ExportDestroyPlcDebugger()
{
    CheckGuiThread("ExportDestroyPlcDebugger");
    if (isCreating) {
        destroyWhenCreated = true;
        return;
    }
    const wxRecursionGuard destroying(isDestroying);
    // Called from inside a callback or a dialog, the frame cannot go yet: functions of it are on
    // the stack.
    const bool insideOurCode = PlcCallOut::Active();
    if (PlcDebugFrame* frame = m_pDebugFrame) {
        if (insideOurCode) {
            m_pDebugFrame = nullptr;
            EndOpenDialogs();
        }
        wxCloseEvent close;
        frame->OnClose(close);
        if (!insideOurCode) {
            delete frame;
        }
    }
    m_pDebugFrame = nullptr;
    if (insideOurCode) {
        appEndsWithThem = true;
        PlcCallOut::RunWhenNoneActive(DeleteLeavingFrames);
    } else {
        EndOwnApp();
    }
}

PLCDEBUG_EXPORT int ExportAnswerReadVar(unsigned char* answer)
{
    return QueueAnswer(answer, &PlcDebugFrame::ProcessAnswerReadVar);
}

PLCDEBUG_EXPORT int ExportAnswerProgState(unsigned char* answer)
{
    return QueueAnswer(answer, &PlcDebugFrame::ProcessAnswerPrgState);
}
