#pragma once

#include "plcdebug_host.h"
#include "plcdebugvar.h"

#include <wx/frame.h>
#include <wx/grid.h>
#include <wx/panel.h>

#include <cstddef>
#include <cstdint>
#include <vector>

// The variable watch page taken literally: at every answer the whole row is written and two columns
// are measured cell by cell. GUI thread.

namespace literal {

class VarPage;

/// The watch list's table.
class VarGrid : public wxGrid
{
public:
    VarGrid(VarPage* page, std::vector<PlcDebugVar>& vars);

    void InitShowVars();
    void UpdateShowVars(const PlcDebugVar& var);

    /// Sizes the columns, as a size event does.
    void SizeColumns();
    void DeleteAllRows();
    void DeleteRow(int row);

    /// Takes back what is being typed.
    void DiscardEdit();

private:
    void RedisplayRow(int row);
    void ShowRow(int row, const wxString& value);

    VarPage* m_page;                  // not owned, the parent
    std::vector<PlcDebugVar>& m_vars; // not owned, the page's
    bool m_deletingRows = false;
    bool m_fitPending = false;
};

/// The page without its buttons.
class VarPage : public wxPanel
{
public:
    VarPage(wxWindow* parent, const PLC_DBG_INIT& init, wxFrame* frame);

    /// Replaces the list by these variables, which get new ids.
    void Load(const std::vector<PlcDebugVar>& vars);
    void Reset();
    void AnswerReadVarRequest(const CMD_DATA& answer);
    void SendWriteVarRequest(const PlcDebugVar& var) const;

    void WriteErrorInStatus(const wxString& text) { m_frame->SetStatusText(text, 0); }

    /// Releases and deletes one variable.
    void Delete(std::size_t row);

    VarGrid* Grid() const { return m_grid; }

    /// @return the ids of the list's variables.
    std::vector<std::uint16_t> RequestIds() const;

private:
    void Release(const PlcDebugVar& var) const;

    PLC_DBG_INIT m_init;
    std::vector<PlcDebugVar> m_vars;
    std::uint16_t m_nextVarId = 0;
    wxFrame* m_frame; // not owned
    VarGrid* m_grid;  // owned by the window tree
};

} // namespace literal
