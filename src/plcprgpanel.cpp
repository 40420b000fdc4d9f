#include "plcprgpanel.h"

#include "plcmodal.h"
#include "plcprggrid.h"
#include "plcprggrid_table.h"
#include "plcprgpanel_selector.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

#include <cstring>
#include <memory>

namespace {

constexpr int comboPrgBSsId = 10004;
constexpr int pageBorder = 10;

} // namespace

wxBEGIN_EVENT_TABLE(PlcPrgPanel, wxPanel)
    EVT_COMBOBOX(comboPrgBSsId, PlcPrgPanel::OnComboPrgBSs)
    EVT_SHOW(PlcPrgPanel::OnShowPrgPanel)
wxEND_EVENT_TABLE()

PlcPrgPanel::PlcPrgPanel(wxWindow* parent, const PLC_DBG_INIT& init)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxNO_BORDER),
      m_init(init),
      m_fileName(std::string(init.szPath, strnlen(init.szPath, PLC_PATH_SIZE)) + "_plcdbgi.dat")
{
    LoadPrg();
    CreateControls();
}

void PlcPrgPanel::LoadPrg()
{
    const PrgFile file = OpenPrgFile(m_fileName);
    if (!file) {
        ReportUnreadableFile();
        return;
    }
    m_blocks = ReadBlockIndex(file.get());
}

void PlcPrgPanel::LoadBS(int index)
{
    const PrgFile file = OpenPrgFile(m_fileName);
    if (!file) {
        ReportUnreadableFile();
        return;
    }
    m_lines = ReadBlockLines(file.get(), m_blocks.at(static_cast<std::size_t>(index)));
    m_stepIndex.Build(m_lines);
    m_pGrid->InitShowBS();
}

void PlcPrgPanel::SendPrgStateRequest(int first, int last)
{
    if (first == reqFirstStep && last == reqLastStep) {
        return;
    }
    const unsigned number = ++m_requestsSent;
    CallHost(m_init.pfnPrgStateRequest, PrgStateRequest(first, last));
    // The host may run a loop inside the request; one sent meanwhile is the one that counts.
    if (number == m_requestsSent) {
        reqFirstStep = first;
        reqLastStep = last;
    }
}

void PlcPrgPanel::FinishPrgStateRequest()
{
    if (reqFirstStep != noStep && reqLastStep != noStep) {
        m_pGrid->ClearIdxRequestRows();
        SendPrgStateRequest(noStep, noStep);
    }
}

void PlcPrgPanel::OnScrollSendRequest()
{
    if (m_pGrid->TakeScrollPending()) {
        m_pGrid->DoPrgStateRequest();
    }
}

void PlcPrgPanel::AnswerPrgState(const CMD_DATA& answer)
{
    // While nothing is subscribed the range is noStep, which no line carries.
    if (PlcFirstStep(&answer) == reqFirstStep && PlcLastStep(&answer) == reqLastStep) {
        ApplyAnswer(answer, m_stepIndex, m_lines);
        m_pGrid->UpdateShowBS();
    }
}

void PlcPrgPanel::Disconnect()
{
    m_init = {};
}

void PlcPrgPanel::OnComboPrgBSs(wxCommandEvent& /*event*/)
{
    LoadBS(m_pComboPrgBSs->GetSelection());
    m_pGrid->DoPrgStateRequest();
}

void PlcPrgPanel::OnShowPrgPanel(wxShowEvent& /*event*/)
{
    if (IsShown()) {
        // Nothing may be laid out yet: then the next tick requests.
        m_pGrid->SetScrollPending();
        m_pGrid->DoPrgStateRequest();
    } else {
        FinishPrgStateRequest();
    }
}

void PlcPrgPanel::CreateControls()
{
    auto sizer = std::make_unique<wxBoxSizer>(wxVERTICAL); // LoadBS() may throw
    auto* label = new wxStaticText(this, wxID_ANY, LanguageText(TextId::PrgBlock));
    sizer->Add(label, wxSizerFlags().Border(wxTOP | wxLEFT, pageBorder));

    wxArrayString names;
    for (const DBG_BAUSTEIN_ENTRY& block : m_blocks) {
        names.push_back(FromLocalText(block.name, blockNameSize));
    }
    m_pComboPrgBSs = new BlockSelector(this, comboPrgBSsId, names);
    if (!m_blocks.empty()) {
        m_pComboPrgBSs->SetSelection(0);
    }
    sizer->Add(m_pComboPrgBSs, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, pageBorder));

    m_pGrid = new PlcPrgGrid(this, m_lines);
    m_pGrid->SetColLabelValue(PrgColumnState, LanguageText(TextId::PrgColumnState));
    m_pGrid->SetColLabelValue(PrgColumnValue, LanguageText(TextId::PrgColumnValue));
    m_pGrid->SetColLabelValue(PrgColumnText, LanguageText(TextId::PrgColumnText));
    sizer->Add(m_pGrid, wxSizerFlags(1).Expand().Border(wxALL, pageBorder));

    LoadBS(0);

    SetAutoLayout(true);
    SetSizer(sizer.release());
    GetSizer()->Fit(this);
}

void PlcPrgPanel::ReportUnreadableFile() const
{
    const wxString path = FromLocalPath(m_fileName.c_str(), m_fileName.size());
    ShowMessage(TextId::ErrorCaption, LanguageText(TextId::FileUnreadable, path));
}
