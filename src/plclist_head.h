#pragma once

#include <wx/grid.h>

/// The look of a list's cells and column heads, to be handed to the list's table. A head that does
/// not fit its column begins at the left and ends in an ellipsis; the toolkit would cut it on both
/// sides. GUI thread.
class ListAttrProvider : public wxGridCellAttrProvider
{
public:
    const wxGridColumnHeaderRenderer& GetColumnHeaderRenderer(int column) override;
};
