#pragma once

#include "literal_listing.h"

#include <wx/grid.h>
#include <wx/panel.h>

#include <string>
#include <vector>

// The program status page taken literally: every cell kept as a text of its own and measured at
// every size event, every row looked at from the first one on. GUI thread.

namespace literal {

class PrgPage;

/// The listing of the block on show.
class PrgGrid : public wxGrid
{
public:
    PrgGrid(PrgPage* page, const std::vector<DB_BAUSTEIN>& lines);

    void InitShowBS();
    void UpdateShowBS();
    void DoPrgStateRequest();
    Rows FindVisibleRows() const;

    void ClearIdxRequestRows() { m_requested = {}; }

    /// Sizes the columns and requests what is visible, as a size event does.
    void SizeColumns();

    bool scrollPending = false;

private:
    bool IsRowVisible(int row) const;

    const std::vector<DB_BAUSTEIN>& m_lines; // not owned
    PrgPage* m_page;                         // not owned, the parent
    Rows m_requested;
};

/// The page without its block selector.
class PrgPage : public wxPanel
{
public:
    PrgPage(wxWindow* parent, const PLC_DBG_INIT& init);

    void LoadBS(int index);
    void ChooseBlock(int index);
    void SendPrgStateRequest(int first, int last);
    void FinishPrgStateRequest();
    void OnScrollSendRequest();
    void AnswerPrgState(const CMD_DATA& answer);

    PrgGrid* Grid() const { return m_grid; }

    /// @return the steps that the host answers for; noStep to noStep for none.
    Rows SubscribedSteps() const { return {m_firstStep, m_lastStep}; }

private:
    PLC_DBG_INIT m_init;
    std::string m_fileName;
    std::vector<DBG_BAUSTEIN_ENTRY> m_blocks;
    std::vector<DB_BAUSTEIN> m_lines;
    int m_firstStep = noStep;
    int m_lastStep = noStep;
    PrgGrid* m_grid; // owned by the window tree
};

} // namespace literal
