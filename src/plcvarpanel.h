#pragma once

#include "plcdebug_host.h"
#include "plcdebugvar.h"

#include <wx/frame.h>
#include <wx/panel.h>

#include <cstdint>
#include <vector>

class PlcVarGrid;

/// Variables that can be defined by hand. A file brings one more, see LoadFile().
constexpr int MAX_WATCH_VARS = 20;

/// The variable watch page: the operator's list of watched operands, their registration with the
/// host, the answers. GUI thread.
class PlcVarPanel : public wxPanel
{
public:
    /// @param frame whose status bar shows the page's messages; not owned, outlives the page.
    PlcVarPanel(wxWindow* parent, const PLC_DBG_INIT& init, wxFrame* frame);

    /// Releases every variable at the host and empties the list. The counter of request ids goes
    /// on, so that a late answer never meets a new variable.
    void Reset();

    /// Replaces the list by that of a file and registers its variables. Lines that are not valid
    /// are skipped; the 22nd valid one ends the reading with a message.
    /// @return false when the file could not be opened; a message has said so and nothing changed.
    bool LoadFile(const wxString& path);

    /// Writes the list to a file. A failure is not reported and leaves an existing file as it was.
    void SaveFile(const wxString& path);

    /// @return true while LoadFile() runs, whose message boxes let the timer tick while list and
    ///         grid do not agree.
    bool IsLoading() const { return m_loading; }

    /// @return true when the list differs from the file last loaded or saved.
    bool IsModified() const { return m_modified; }

    /// Stores a read answer in the variable that it is for, if there is one, and shows it.
    void AnswerReadVarRequest(const CMD_DATA& answer);

    /// Releases every variable at the host; the list stays.
    void FinishVarRequest();

    /// Hands the value stored in @p var to the host to be written.
    void SendWriteVarRequest(const PlcDebugVar& var) const;

    /// Throws away what the operator is typing into the grid.
    void DiscardEdit();

    /// @return true for the controls that send what is being typed when they are clicked.
    static bool IsCommitting(const wxWindow* control);

    /// From now on nothing leaves the page for the host any more.
    void Disconnect();

    /// Shows @p text in the frame's status line; an empty one clears it.
    void WriteErrorInStatus(const wxString& text);

    void OnButtonDefine(wxCommandEvent& event);
    void OnButtonModify(wxCommandEvent& event);
    void OnButtonDelete(wxCommandEvent& event);

private:
    using Vars = std::vector<PlcDebugVar>;

    void CreateGrid();
    wxSizer* CreateButtons();
    PlcDebugVar TemplateVar() const;
    Vars::iterator FindVar(std::uint16_t requestId);
    void LoadLine(const wxString& line, bool& listFull);
    void AddVar(PlcDebugVar& var);
    void ReplaceVar(const PlcDebugVar& var);
    void DeleteVars(const std::vector<std::uint16_t>& requestIds);

    /// Registers a variable: a read request and a start request, always together.
    void SendReadVarRequest(const PlcDebugVar& var) const;
    void ReleaseAndForgetVars();
    /// Releases a range of the list, in list order.
    void SendDeleteVarRequest(Vars::const_iterator first, Vars::const_iterator last) const;

    PLC_DBG_INIT m_init;
    Vars m_vars; ///< Row i of the grid shows element i.
    bool m_modified = false;
    bool m_loading = false;
    std::uint16_t m_nextVarId = 0;
    PlcVarGrid* m_pGrid = nullptr;
    wxFrame* m_pFrame; // not owned, outlives the page

    wxDECLARE_EVENT_TABLE();
};
