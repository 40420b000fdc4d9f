#pragma once

#include "plcdebug_host.h"
#include "plcprgpanel_file.h"
#include "plcprgpanel_state.h"

#include <wx/combobox.h>
#include <wx/panel.h>

#include <string>
#include <vector>

class PlcPrgGrid;

/// The program status page: a block selector, and the listing of the chosen block with the live
/// state of the lines on screen. It keeps the host subscribed to exactly those. GUI thread.
class PlcPrgPanel : public wxPanel
{
public:
    /// Reads the program debug file; a file that cannot be opened is reported to the operator.
    /// @throws std::out_of_range when the file holds no block.
    PlcPrgPanel(wxWindow* parent, const PLC_DBG_INIT& init);

    /// Reads the block index into the block table. Called once.
    void LoadPrg();

    /// Reads the lines of a block from the file as it is now, and shows them. When the file cannot
    /// be opened, everything stays as it was.
    /// @param index position in the block table.
    /// @throws std::out_of_range when there is no such block; everything stays as it was then, too.
    void LoadBS(int index);

    /// Has the host answer for the steps first to last from now on, or for none (noStep, noStep).
    /// Does nothing when that is what was asked for last.
    void SendPrgStateRequest(int first, int last);

    /// Stops an active subscription.
    void FinishPrgStateRequest();

    /// Turns a pending change of the visible lines into a new subscription. Called at every tick
    /// while the page is shown.
    void OnScrollSendRequest();

    /// Takes one program-state answer. One for other steps than those subscribed is dropped.
    void AnswerPrgState(const CMD_DATA& answer);

    /// From now on nothing leaves the page for the host any more.
    void Disconnect();

private:
    void OnComboPrgBSs(wxCommandEvent& event);
    void OnShowPrgPanel(wxShowEvent& event);

    void CreateControls();
    void ReportUnreadableFile() const;

    wxComboBox* m_pComboPrgBSs = nullptr; // owned by the window tree
    PlcPrgGrid* m_pGrid = nullptr;        // owned by the window tree
    PLC_DBG_INIT m_init;
    std::string m_fileName; ///< Program debug file, in the locale's encoding.
    std::vector<DBG_BAUSTEIN_ENTRY> m_blocks;
    std::vector<DB_BAUSTEIN> m_lines; ///< Of the block on show.
    StepIndex m_stepIndex;            ///< Of m_lines.
    int reqFirstStep = noStep;
    int reqLastStep = noStep;
    unsigned m_requestsSent = 0;

    wxDECLARE_EVENT_TABLE();
};
