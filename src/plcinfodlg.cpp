#include "plcinfodlg.h"

#include "plcmodal_controls.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

namespace {

constexpr int lineBorder = 10;
constexpr int spacerSize = 20;
constexpr int spacerBorder = 5;
const char* const versionText = "   01.14"; // the blanks set it off from the label before it

} // namespace

PlcInfoDlg::PlcInfoDlg(wxWindow* parent)
    : wxDialog(
          parent,
          wxID_ANY,
          LanguageText(TextId::MenuInfo),
          wxDefaultPosition,
          wxDefaultSize,
          wxDEFAULT_DIALOG_STYLE),
      m_pBtnOk(NewDialogButton(this, wxID_OK, TextId::Ok))
{
    const auto line = [this](const wxString& text, long style) {
        return new wxStaticText(this, wxID_ANY, text, wxDefaultPosition, wxDefaultSize, style);
    };

    auto* lines = new wxBoxSizer(wxVERTICAL);
    lines->Add(spacerSize, spacerSize, 0, wxALIGN_CENTER | wxALL, spacerBorder);
    lines->Add(
        line(LanguageText(TextId::InfoProduct), 0),
        0,
        wxALIGN_CENTER | wxLEFT | wxRIGHT | wxTOP,
        lineBorder);
    lines->Add(line(LanguageText(TextId::InfoVersion) + versionText, 0), 0, wxALL, lineBorder);
    lines->Add(
        line(LanguageText(TextId::InfoMaker), wxALIGN_CENTRE),
        0,
        wxLEFT | wxRIGHT | wxBOTTOM,
        lineBorder);
    lines->Add(spacerSize, spacerSize, 0, wxALIGN_CENTER | wxALL, spacerBorder);

    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(lines, 0, wxALIGN_CENTER | wxALL, lineBorder);
    columns->Add(m_pBtnOk, 0, wxALIGN_CENTER | wxALL, lineBorder);
    SetSizerAndFit(columns);
}
