#pragma once

#include <wx/grid.h>

#include <string>

/// @return what stands in the open cell editor; empty when none is open. GUI thread.
inline std::string TextInEditor(const wxGrid& grid)
{
    if (!grid.IsCellEditControlShown()) {
        return "";
    }
    const wxObjectDataPtr<wxGridCellEditor> editor(
        grid.GetCellEditor(grid.GetGridCursorRow(), grid.GetGridCursorCol()));
    return editor->GetValue().ToStdString();
}
