#pragma once

#include "plcdebug_host.h"
#include "plcdebugframe_drain.h"

#include <ktcore/ktconfiguration.h>

#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/recguard.h>
#include <wx/timer.h>

#include <memory>

class PlcNoteBook;
class PlcPrgPanel;
class PlcVarPanel;

/// The debugger's one window: menu, pages, timer and orderly exit. GUI thread, except for the two
/// Process functions.
class PlcDebugFrame : public wxFrame
{
public:
    /// Builds and shows the frame and starts its timer.
    /// @param init copied.
    /// @throws std::out_of_range when the program debug file holds no block.
    PlcDebugFrame(wxWindow* parent, const PLC_DBG_INIT& init);
    ~PlcDebugFrame() override;
    PlcDebugFrame(const PlcDebugFrame&) = delete;
    PlcDebugFrame(PlcDebugFrame&&) = delete;
    PlcDebugFrame& operator=(const PlcDebugFrame&) = delete;
    PlcDebugFrame& operator=(PlcDebugFrame&&) = delete;

    /// Queues a copy of a read answer. Any thread.
    /// @param answer not null; see ExportAnswerReadVar().
    /// @return 1
    int ProcessAnswerReadVar(const unsigned char* answer);

    /// Queues a copy of a program-state answer. Any thread.
    /// @param answer not null; see ExportAnswerProgState().
    /// @return 1
    int ProcessAnswerPrgState(const unsigned char* answer);

    /// Hides the frame and runs the exit work, if it has not run yet. Also called directly by
    /// ExportDestroyPlcDebugger().
    void OnClose(wxCloseEvent& event);

private:
    void ReadConfiguration();
    void CreateMenus();
    void CreatePages();
    void SetSizes();
    void GiveKeyboardToList();

    void DeliverAnswers();

    void DoSaveActiveFile();
    void DoExit();
    void HideAndExit();

    void OnMenuNewClose(wxCommandEvent& event);
    void OnMenuOpen(wxCommandEvent& event);
    void OnMenuSave(wxCommandEvent& event);
    void OnMenuSaveAs(wxCommandEvent& event);
    void OnMenuInfo(wxCommandEvent& event);
    void OnMenuQuit(wxCommandEvent& event);
    void OnTimer(wxTimerEvent& event);
    void OnSize(wxSizeEvent& event);
    void KeepRoomForPages();
    void OnHostWindowDestroyed(wxWindowDestroyEvent& event);

    PLC_DBG_INIT m_init;
    PlcNoteBook* m_pNoteBook = nullptr;
    wxMenu* m_pFileMenu = nullptr;
    PlcVarPanel* m_pVarPanel = nullptr;
    PlcPrgPanel* m_pPrgPanel = nullptr;
    std::unique_ptr<KtConfiguration> m_config;
    wxString m_fileDir;    ///< Where the file dialogs open; fixed at construction.
    wxString m_fileName;   ///< The current list file; empty for none.
    wxSize m_openedInside; ///< Size inside the borders, until they or the operator change it.
    wxTimer m_timer;
    AnswerQueue m_readVarAnswers{VariableOf};
    AnswerQueue m_prgStateAnswers{StepsOf};
    bool m_keyboardGiven = false; ///< To the list, after opening.
    bool m_bExited = false;       ///< DoExit() has done its work.
    wxRecursionGuardFlag m_exiting = 0;
    wxRecursionGuardFlag m_draining = 0;

    wxDECLARE_EVENT_TABLE();
};
