#pragma once

#include <wx/button.h>
#include <wx/dialog.h>

/// The small dialog of the Info item: product, version, maker. GUI thread.
class PlcInfoDlg : public wxDialog
{
public:
    explicit PlcInfoDlg(wxWindow* parent);

private:
    wxButton* m_pBtnOk;
};
