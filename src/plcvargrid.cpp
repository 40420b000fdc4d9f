#include "plcvargrid.h"

#include "plclist.h"
#include "plclist_editor.h"
#include "plclist_head.h"
#include "plclist_measure.h"
#include "plcvarpanel.h"

#include <gtk/gtk.h>
#include <wx/settings.h>

#include <algorithm>

namespace {

constexpr int keyEnter = 13; // the keypad's Enter has a code of its own and moves the cursor
constexpr int menuPollMs = 50;
const char* const unknownValue = "?";

bool IsModifierKey(int key)
{
    return key == WXK_SHIFT || key == WXK_CONTROL || key == WXK_ALT || key == WXK_WINDOWS_LEFT ||
           key == WXK_WINDOWS_RIGHT || key == WXK_CAPITAL || key == WXK_NUMLOCK;
}

/// Those that move the cursor up and down by rows or pages.
bool IsRowKey(int key)
{
    switch (key) {
    case WXK_UP:
    case WXK_DOWN:
    case WXK_PAGEUP:
    case WXK_PAGEDOWN:
    case WXK_NUMPAD_UP:
    case WXK_NUMPAD_DOWN:
    case WXK_NUMPAD_PAGEUP:
    case WXK_NUMPAD_PAGEDOWN:
        return true;
    default:
        return false;
    }
}

bool IsCursorKey(int key)
{
    switch (key) {
    case WXK_LEFT:
    case WXK_RIGHT:
    case WXK_HOME:
    case WXK_END:
    case WXK_NUMPAD_LEFT:
    case WXK_NUMPAD_RIGHT:
    case WXK_NUMPAD_HOME:
    case WXK_NUMPAD_END:
    case WXK_TAB:
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
        return true;
    default:
        return IsRowKey(key);
    }
}

bool IsMenuOpen()
{
    return GTK_IS_MENU_SHELL(gtk_grab_get_current());
}

} // namespace

wxBEGIN_EVENT_TABLE(PlcVarGrid, wxGrid)
    EVT_SIZE(PlcVarGrid::OnSize)
    EVT_GRID_CELL_CHANGED(PlcVarGrid::OnChangeValue)
    EVT_GRID_CELL_LEFT_CLICK(PlcVarGrid::OnLeftClick)
    EVT_GRID_CELL_LEFT_DCLICK(PlcVarGrid::OnLeftDoubleClick)
    EVT_GRID_EDITOR_HIDDEN(PlcVarGrid::OnEditorHidden)
    EVT_GRID_SELECT_CELL(PlcVarGrid::OnSelectCell)
    EVT_KEY_DOWN(PlcVarGrid::OnKeyPressed)
    EVT_CHAR_HOOK(PlcVarGrid::OnKeyAnywhere)
    EVT_SCROLLWIN(PlcVarGrid::OnScroll)
    EVT_TIMER(wxID_ANY, PlcVarGrid::OnSlowClick)
wxEND_EVENT_TABLE()

PlcVarGrid::PlcVarGrid(PlcVarPanel* panel, std::vector<PlcDebugVar>& vars)
    : wxGrid(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS), m_pPanel(panel),
      m_vars(vars), m_pTable(new PlcVarTable), m_slowClickTimer(this)
{
    m_pTable->SetAttrProvider(new ListAttrProvider);
    AssignTable(m_pTable, wxGridSelectCells);
    SetColAttr(varColumnOperand, NewMeasuringAttr(m_pTable->Shown(varColumnOperand)));
    wxGridCellAttr* valueAttr = NewMeasuringAttr(m_pTable->Shown(varColumnValue));
    // Where the keyboard has gone is known later.
    m_pEditor = new ValueEditor([this] { CallAfter(&PlcVarGrid::EndEditThatWasLeft); });
    valueAttr->SetEditor(m_pEditor);
    SetColAttr(varColumnValue, valueAttr);
    EnableEditing(true);
    SetUpList(*this);
    GetGridWindow()->Bind(wxEVT_MOUSEWHEEL, &PlcVarGrid::OnWheel, this);
    GetGridColLabelWindow()->Bind(wxEVT_LEFT_DOWN, &PlcVarGrid::OnPressOnLabels, this);
    m_menuTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { EndEditThatWasLeft(); });
}

void PlcVarGrid::InitShowVars()
{
    BeginBatch();
    ClearGrid();
    DeleteAllRows();
    for (std::size_t row = 0; row < m_vars.size(); ++row) {
        AppendRows(1);
        ShowRow(row);
        if (!m_vars[row].GetVarName(true).empty()) {
            ShowUnknownValue(row);
        }
    }
    SetSelectionMode(wxGridSelectRows);
    EndBatch();
    FitColumns();
}

void PlcVarGrid::UpdateShowVars(const PlcDebugVar& var)
{
    const auto element = std::find(m_vars.begin(), m_vars.end(), var);
    if (element == m_vars.end()) {
        return;
    }
    const auto row = static_cast<std::size_t>(element - m_vars.begin());
    if (row >= static_cast<std::size_t>(GetNumberRows())) {
        AppendRows(1);
    }
    if (!IsEditedRow(row)) {
        ShowRow(row);
    }
    CountEditorIn();
}

void PlcVarGrid::CountEditorIn()
{
    // At the end of a batch the toolkit makes room for an editor that overhangs the columns, or
    // takes it back. Without an editor the batch would only repaint the whole grid.
    const bool shown = IsCellEditControlShown();
    if (shown || m_editorCounted) {
        const wxGridUpdateLocker batch(this);
    }
    m_editorCounted = shown;
}

void PlcVarGrid::ShowRow(std::size_t row)
{
    const PlcDebugVar& var = m_vars[row];
    const int gridRow = static_cast<int>(row);
    if (!m_pTable->Shows(row, var)) {
        const wxString name = var.GetVarName(true);
        if (name.empty()) {
            return;
        }
        ShowCell(gridRow, varColumnOperand, name);
        ShowCell(gridRow, varColumnValue, var.GetVarValueShow());
    }
    ShowCell(gridRow, varColumnFormat, var.GetVarFormatShow());
    m_pTable->NoteShown(row, var);
}

void PlcVarGrid::ShowCell(int row, int column, const wxString& text)
{
    if (GetCellValue(row, column) != text) // an unchanged cell needs no painting
    {
        m_pTable->SetValue(row, column, text);
        RefreshBlock(row, column, row, column); // SetCellValue() would repaint the whole row
    }
    SetReadOnly(row, column, column != varColumnValue);
}

void PlcVarGrid::ShowUnknownValue(std::size_t row)
{
    SetCellValue(static_cast<int>(row), varColumnValue, unknownValue);
}

bool PlcVarGrid::IsEditedRow(std::size_t row) const
{
    return IsCellEditControlShown() && static_cast<int>(row) == GetGridCursorRow();
}

void PlcVarGrid::FitColumns()
{
    m_fitPending = IsCellEditControlShown();
    if (m_fitPending) {
        return;
    }
    const int virtualWidth = FitListColumns(*this);
    AdjustScrollbars();
    m_fit = CurrentFit();
    m_fit.virtualWidth = virtualWidth;
}

void PlcVarGrid::FitColumnsToAnswer()
{
    // Fitting again would change nothing when all that it depends on is as it was left.
    if (IsCellEditControlShown() || !(m_fit == CurrentFit())) {
        FitColumns();
    }
}

ColumnsFit PlcVarGrid::CurrentFit()
{
    return FitOf(*this, {WidestText(varColumnOperand), WidestText(varColumnValue)});
}

int PlcVarGrid::WidestText(int column)
{
    if (const wxFont font = GetDefaultCellFont(); font != m_numbers.Font()) {
        m_numbers.Learn(MeasuringDc(), font);
    }
    return m_pTable->Shown(column).MaxWidth([this](const std::wstring& text) {
        const std::optional<int> width = m_numbers.Width(text);
        return width ? *width : MeasuringDc().GetMultiLineTextExtent(text).x;
    });
}

wxDC& PlcVarGrid::MeasuringDc()
{
    if (!m_measuringDc) {
        m_measuringDc.emplace(GetGridWindow());
        CallAfter([this] { m_measuringDc.reset(); });
    }
    if (const wxFont font = GetDefaultCellFont(); font != m_measuringDc->GetFont()) {
        m_measuringDc->SetFont(font);
    }
    return *m_measuringDc;
}

void PlcVarGrid::DiscardEdit()
{
    if (IsCellEditControlEnabled()) {
        m_pEditor->Reset();
        DisableCellEditControl();
    }
}

void PlcVarGrid::CommitEdit()
{
    DisableCellEditControl();
}

// Only some ways to leave the editor send what was typed, and they do so themselves: Return, Tab, a
// click on another cell, the buttons for defining and modifying. In every other case it goes, so
// that a bar code cut in two by a host's alarm is not glued to a number that nobody has scanned.

void PlcVarGrid::EndEditThatWasLeft()
{
    if (!IsCellEditControlShown()) {
        return;
    }
    GtkWidget* entry = m_pEditor->GetWindow()->GetHandle();
    const bool hasKeyboard = gtk_widget_has_focus(entry) != FALSE;
    if (hasKeyboard || PlcVarPanel::IsCommitting(FindFocus())) {
        return;
    }
    // A menu is not another window: the keyboard comes back when it closes, a little later.
    const bool waits = IsMenuOpen() || m_menuSeen;
    m_menuSeen = IsMenuOpen();
    if (waits) {
        m_menuTimer.StartOnce(menuPollMs);
        return;
    }
    const bool toAnotherWindow = gtk_widget_is_focus(entry) != FALSE;
    DiscardEdit();
    if (toAnotherWindow) {
        // For when the window comes back. The toolkit's SetFocus() would bring it back at once.
        gtk_widget_grab_focus(GetGridWindow()->m_wxwindow);
    }
}

/// Every way of scrolling the list comes by here. GTK complains of a hidden control in a window
/// that scrolls; the toolkit takes the editor back into the list when it opens it again.
void PlcVarGrid::ScrollWindow(int dx, int dy, const wxRect* rect)
{
    if (m_pEditor->IsCreated() && !m_pEditor->GetWindow()->IsShown()) {
        m_pEditor->GetWindow()->Reparent(this);
    }
    wxGrid::ScrollWindow(dx, dy, rect);
}

// While rows go, the toolkit moves the cursor and reports it. Selecting the cursor's row then would
// select a row that nobody has chosen, or one that is no longer there.

void PlcVarGrid::DeleteRow(std::size_t row)
{
    if (row < static_cast<std::size_t>(GetNumberRows())) {
        m_deletingRows = true;
        DeleteRows(static_cast<int>(row), 1);
        m_deletingRows = false;
    }
}

void PlcVarGrid::DeleteAllRows()
{
    if (const int rows = GetNumberRows(); rows > 0) {
        m_deletingRows = true;
        DeleteRows(0, rows);
        m_deletingRows = false;
    }
}

std::vector<RowBlock> PlcVarGrid::SelectedRows() const
{
    std::vector<RowBlock> rows;
    for (const wxGridBlockCoords& block : GetSelectedBlocks()) {
        rows.push_back(
            {static_cast<std::size_t>(block.GetTopRow()),
             static_cast<std::size_t>(block.GetBottomRow())});
    }
    return rows;
}

void PlcVarGrid::SelectRows(const std::vector<RowBlock>& rows)
{
    ClearSelection();
    for (const RowBlock& range : rows) {
        SelectBlock(
            static_cast<int>(range.first),
            0,
            static_cast<int>(range.last),
            GetNumberCols() - 1,
            true);
    }
}

void PlcVarGrid::OnSize(wxSizeEvent& event)
{
    m_numbers = {}; // the font may have another scale now
    FitColumns();
    event.Skip();
}

void PlcVarGrid::OnChangeValue(wxGridEvent& event)
{
    const auto row = static_cast<std::size_t>(event.GetRow());
    if (event.GetCol() != varColumnValue || row >= m_vars.size()) {
        return;
    }
    PlcDebugVar written = m_vars[row];
    wxString error;
    if (written.SetVarValue(GetCellValue(event.GetRow(), varColumnValue), error)) {
        m_pPanel->SendWriteVarRequest(written);
    } else {
        m_pPanel->WriteErrorInStatus(error);
        m_keepStatus = true; // the key or click that has ended the edit goes on to move the cursor
    }
    // The cell returns to the value last read: what was written shows when the PLC reports it.
    if (row < m_vars.size()) {
        ShowRow(row);
    }
}

void PlcVarGrid::OnKeyAnywhere(wxKeyEvent& event)
{
    const int key = event.GetKeyCode();
    const bool isEditing = IsCellEditControlShown();
    if (isEditing && key == WXK_ESCAPE) {
        DiscardEdit();
    } else if (!isEditing || !IsRowKey(key) || event.ControlDown()) {
        event.Skip();
    }
}

void PlcVarGrid::OnWheel(wxMouseEvent& event)
{
    event.Skip(!IsCellEditControlShown()); // the list would scroll away under the editor
}

void PlcVarGrid::OnScroll(wxScrollWinEvent& event)
{
    DiscardEdit();
    event.Skip();
}

void PlcVarGrid::OnPressOnLabels(wxMouseEvent& event)
{
    DiscardEdit(); // a column edge that is dragged would commit
    event.Skip();
}

// What is left to do when an edit ends has to wait until it has: the toolkit would show the editor
// again for a cell that is written now, and take the keyboard from the window that has it.

void PlcVarGrid::OnEditorHidden(wxGridEvent& event)
{
    const bool isUnchanged = m_pEditor->GetValue() == GetCellValue(event.GetRow(), event.GetCol());
    m_editorCounted = true; // since it was opened
    CallAfter([this, isUnchanged, row = static_cast<std::size_t>(event.GetRow())] {
        // Answers have passed by the edited row.
        if (isUnchanged && row < m_vars.size() && !IsEditedRow(row)) {
            ShowRow(row);
        }
        CountEditorIn();
        if (m_fitPending) {
            FitColumns();
        }
    });
    event.Skip();
}

void PlcVarGrid::OnSelectCell(wxGridEvent& event)
{
    if (m_deletingRows) {
        event.Skip();
        return;
    }
    if (event.GetRow() < GetNumberRows()) {
        SelectBlock(event.GetRow(), 0, event.GetRow(), GetNumberCols() - 1);
    }
    if (!m_keepStatus) {
        m_pPanel->WriteErrorInStatus("");
    }
    event.Skip();
}

// A Ctrl-click adds a row to the selection or takes it away. A click on the cursor's own cell,
// which the toolkit reports as no selection, selects its row like any other click; on a value it
// may go on to open the editor, but only once it cannot become a double click any more.

void PlcVarGrid::OnLeftClick(wxGridEvent& event)
{
    m_slowClickTimer.Stop();
    m_keepStatus = false;
    m_pPanel->WriteErrorInStatus("");
    CommitEdit();
    const int row = event.GetRow();
    const wxGridCellCoords cell(row, event.GetCol());
    if (event.ControlDown() && !event.ShiftDown()) {
        SelectRows(ToggledRows(SelectedRows(), static_cast<std::size_t>(row)));
    } else if (cell == GetGridCursorCoords() && !event.ShiftDown()) {
        SelectBlock(row, 0, row, GetNumberCols() - 1);
        m_slowClickTimer.StartOnce(wxSystemSettings::GetMetric(wxSYS_DCLICK_MSEC, this));
    } else {
        event.Skip();
    }
}

void PlcVarGrid::OnLeftDoubleClick(wxGridEvent& event)
{
    m_slowClickTimer.Stop();
    const auto row = static_cast<std::size_t>(event.GetRow());
    if (row < m_vars.size() && event.GetCol() == varColumnOperand) {
        wxCommandEvent modify;
        m_pPanel->OnButtonModify(modify);
    }
}

void PlcVarGrid::OnSlowClick(wxTimerEvent& /*event*/)
{
    if (GetGridWindow()->HasFocus() && GetGridCursorCol() == varColumnValue &&
        CanEnableCellControl()) {
        EnableCellEditControl();
    }
}

void PlcVarGrid::OnKeyPressed(wxKeyEvent& event)
{
    const int key = event.GetKeyCode();
    m_slowClickTimer.Stop();
    m_keepStatus = false;
    if (!IsCellEditControlEnabled() && !IsModifierKey(key)) {
        m_pPanel->WriteErrorInStatus("");
    }
    if (key == keyEnter && !IsCellEditControlEnabled()) {
        EnterPressed();
        return;
    }
    if (IsCursorKey(key)) {
        KeepSelection();
    }
    event.Skip();
}

// The toolkit empties the selection at a key that cannot move the cursor.

void PlcVarGrid::KeepSelection()
{
    CallAfter([this, before = SelectedRows(), rows = GetNumberRows()] {
        const int row = GetGridCursorRow();
        if (SelectedRows().empty() && row != wxNOT_FOUND && rows == GetNumberRows()) {
            const auto cursor = static_cast<std::size_t>(row);
            SelectRows(before.empty() ? std::vector<RowBlock>{{cursor, cursor}} : before);
        }
    });
}

void PlcVarGrid::EnterPressed()
{
    if (!OnlyRow(SelectedRows())) {
        return;
    }
    if (GetGridCursorCol() == varColumnOperand) {
        wxCommandEvent modify;
        m_pPanel->OnButtonModify(modify);
    } else if (GetGridCursorCol() == varColumnValue && CanEnableCellControl()) {
        EnableCellEditControl();
    }
}
