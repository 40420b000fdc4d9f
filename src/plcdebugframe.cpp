#include "plcdebugframe.h"

#include "plcdebug.h"
#include "plcdebugframe_texts.h"
#include "plcinfodlg.h"
#include "plcmodal.h"
#include "plcnotebook.h"
#include "plcprgpanel.h"
#include "plcprgpanel_file.h"
#include "plcvarpanel.h"

#include <gtk/gtk.h>
#include <wx/filedlg.h>
#include <wx/sizer.h>

#include <algorithm>
#include <chrono>

namespace {

constexpr int tickMs = 100;
constexpr std::chrono::milliseconds mostOfATick(100); ///< For the delivery of answers.
constexpr int tallFrameHeight = 1942;
constexpr int lowFrameHeight = 514;
constexpr int frameWidth = 600;
constexpr int frameHeight = 480;

const char* const configurationFile = "plcdebug.ini";
const char* const configurationSection = "Settings";
const char* const keyLanguagePath = "LanguagePath";
const char* const keyLanguage = "Language";
const char* const keyLastFile = "PLCLastFile";
const char* const listFileWildcard = " (*.plc)|*.plc";

struct MenuItem
{
    int id;
    TextId label;
    TextId acceleratorLetter;
    TextId help;
};

constexpr MenuItem fileItems[] = {
    {wxID_NEW, TextId::MenuNew, TextId::MenuNewKey, TextId::MenuNewHelp},
    {wxID_OPEN, TextId::MenuOpen, TextId::MenuOpenKey, TextId::MenuOpenHelp},
    {wxID_CLOSE, TextId::MenuClose, TextId::MenuCloseKey, TextId::MenuCloseHelp},
    {wxID_SAVE, TextId::MenuSave, TextId::MenuSaveKey, TextId::MenuSaveHelp},
    {wxID_SAVEAS, TextId::MenuSaveAs, TextId::MenuSaveAsKey, TextId::MenuSaveAsHelp},
    {wxID_EXIT, TextId::MenuExit, TextId::MenuExitKey, TextId::MenuExitHelp},
};

constexpr MenuItem helpItems[] = {
    {wxID_HELP, TextId::MenuInfo, TextId::MenuInfoKey, TextId::MenuInfo},
};

template <std::size_t count> wxMenu* CreateMenu(const MenuItem (&items)[count])
{
    auto* menu = new wxMenu;
    for (const MenuItem& item : items) {
        const wxString label =
            ItemLabel(LanguageText(item.label), LanguageText(item.acceleratorLetter));
        // Under a standard id the toolkit adds a key and a help text of its own for missing ones.
        wxMenuItem* appended = menu->Append(wxID_HIGHEST + 1, label, LanguageText(item.help));
        appended->SetId(item.id);
    }
    return menu;
}

/// @return what the window manager's borders enclose.
wxSize SizeInsideBorders(const wxFrame& frame)
{
    wxSize size;
    frame.GTKDoGetSize(&size.x, &size.y);
    return size;
}

/// Gives a window its size before it is shown. GTK would lay it out in 2 by 1 pixels first and
/// complain of it, which ends a host with G_DEBUG=fatal-criticals.
void AllocateBeforeShow(GtkWidget& window, const wxSize& size)
{
    GtkAllocation place = {0, 0, size.x, size.y};
    gtk_widget_size_allocate(&window, &place);
}

bool IsTallFrameAllowed(const PLC_DBG_INIT& init)
{
    const PlcCallOut callOut;
    return init.pfnTallFrame != nullptr && init.pfnTallFrame() != 0;
}

/// Releases the variables of the last list file when the frame cannot be built: its destructor does
/// not run then.
class ReleaseOnFailure
{
public:
    explicit ReleaseOnFailure(PlcVarPanel& panel) : m_panel(&panel) {}

    ~ReleaseOnFailure()
    {
        if (m_panel != nullptr) {
            m_panel->FinishVarRequest();
        }
    }

    ReleaseOnFailure(const ReleaseOnFailure&) = delete;
    ReleaseOnFailure(ReleaseOnFailure&&) = delete;
    ReleaseOnFailure& operator=(const ReleaseOnFailure&) = delete;
    ReleaseOnFailure& operator=(ReleaseOnFailure&&) = delete;

    void Built() { m_panel = nullptr; }

private:
    PlcVarPanel* m_panel;
};

} // namespace

wxBEGIN_EVENT_TABLE(PlcDebugFrame, wxFrame)
    EVT_MENU(wxID_NEW, PlcDebugFrame::OnMenuNewClose)
    EVT_MENU(wxID_OPEN, PlcDebugFrame::OnMenuOpen)
    EVT_MENU(wxID_CLOSE, PlcDebugFrame::OnMenuNewClose)
    EVT_MENU(wxID_SAVE, PlcDebugFrame::OnMenuSave)
    EVT_MENU(wxID_SAVEAS, PlcDebugFrame::OnMenuSaveAs)
    EVT_MENU(wxID_HELP, PlcDebugFrame::OnMenuInfo)
    EVT_MENU(wxID_EXIT, PlcDebugFrame::OnMenuQuit)
    EVT_TIMER(wxID_ANY, PlcDebugFrame::OnTimer)
    EVT_SIZE(PlcDebugFrame::OnSize)
    EVT_CLOSE(PlcDebugFrame::OnClose)
wxEND_EVENT_TABLE()

PlcDebugFrame::PlcDebugFrame(wxWindow* parent, const PLC_DBG_INIT& init)
    : wxFrame(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxDEFAULT_FRAME_STYLE),
      m_init(init)
{
    // A menu command of ours is none of a wxWidgets host's: its Exit would end the host.
    SetExtraStyle(GetExtraStyle() | wxWS_EX_BLOCK_EVENTS);
    if (parent != nullptr) {
        parent->Bind(wxEVT_DESTROY, &PlcDebugFrame::OnHostWindowDestroyed, this);
    }
    ReadConfiguration();
    SetTitle(LanguageText(TextId::FrameTitle));
    SetWindowStyle(wxDEFAULT_FRAME_STYLE);
    CreateStatusBar(1);
    CreateMenus();
    CreatePages();
    SetSizes();
    Show();
    m_timer.SetOwner(this, NewControlId());
    m_timer.Start(tickMs);
}

PlcDebugFrame::~PlcDebugFrame()
{
    ForgetFrame(this); // from here on no thread hands over an answer any more
    DoExit();
}

void PlcDebugFrame::ReadConfiguration()
{
    const wxString directory = StartDirectory(FromLocalPath(m_init.szPath, sizeof m_init.szPath));
    m_config = std::make_unique<KtConfiguration>(
        configurationSection, "", directory + "/" + configurationFile);

    wxString languagePath;
    m_config->Get(keyLanguagePath, languagePath);
    IntlLangImp().SetFilePath(languagePath.wc_str());
    wxString language;
    m_config->Get(keyLanguage, language);
    IntlLangImp().SetLanguage(language.wc_str());

    m_config->Get(keyLastFile, m_fileName);
    m_fileDir = m_fileName.empty() ? directory : m_fileName.BeforeLast('/');
}

void PlcDebugFrame::CreateMenus()
{
    m_pFileMenu = CreateMenu(fileItems);
    auto* menuBar = new wxMenuBar;
    menuBar->Append(m_pFileMenu, MenuLabel(LanguageText(TextId::MenuFile)));
    menuBar->Append(CreateMenu(helpItems), MenuLabel(LanguageText(TextId::MenuHelp)));
    SetMenuBar(menuBar);
}

void PlcDebugFrame::CreatePages()
{
    auto sizer = std::make_unique<wxBoxSizer>(wxVERTICAL); // the program page may throw
    m_pNoteBook = new PlcNoteBook(this, this);
    m_pVarPanel = new PlcVarPanel(m_pNoteBook, m_init, this);
    ReleaseOnFailure releaseOnFailure(*m_pVarPanel);
    if (!m_fileName.empty()) {
        m_pVarPanel->LoadFile(m_fileName);
    }
    m_pNoteBook->AddPage(m_pVarPanel, LanguageText(TextId::VarPage), true);
    m_pPrgPanel = new PlcPrgPanel(m_pNoteBook, m_init);
    m_pNoteBook->AddPage(m_pPrgPanel, LanguageText(TextId::PrgPage), false);
    releaseOnFailure.Built();

    sizer->Add(m_pNoteBook, 1, wxEXPAND | wxALL, 0);
    SetSizer(sizer.release());
    Fit();
}

void PlcDebugFrame::SetSizes()
{
    const int maxHeight = IsTallFrameAllowed(m_init) ? tallFrameHeight : lowFrameHeight;
    SetMaxSize(wxSize(wxDefaultCoord, maxHeight));
    SetSize(frameWidth, frameHeight);
    m_openedInside = SizeInsideBorders(*this);
    AllocateBeforeShow(*GetHandle(), m_openedInside);
}

int PlcDebugFrame::ProcessAnswerReadVar(const unsigned char* answer)
{
    m_readVarAnswers.Push(CopyAnswer(answer));
    return 1;
}

int PlcDebugFrame::ProcessAnswerPrgState(const unsigned char* answer)
{
    m_prgStateAnswers.Push(CopyAnswer(answer));
    return 1;
}

void PlcDebugFrame::OnTimer(wxTimerEvent& /*event*/)
{
    EndUnseenMenu();
    // A host callback or a message box that runs a loop lets the timer tick inside the tick, or
    // while list and grid do not agree.
    const wxRecursionGuard draining(m_draining);
    if (draining.IsInside() || m_pVarPanel->IsLoading()) {
        return;
    }
    GiveKeyboardToList();
    DeliverAnswers();
    if (m_pPrgPanel->IsShown()) {
        m_pPrgPanel->OnScrollSendRequest();
    }
}

// The toolkit leaves the keyboard with the tabs when it shows the window.

void PlcDebugFrame::GiveKeyboardToList()
{
    if (m_keyboardGiven || !IsActive()) {
        return;
    }
    m_keyboardGiven = true;
    if (m_pNoteBook->HasFocus()) { // else the operator has been quicker
        m_pNoteBook->FocusList();
    }
}

// The toolkit opens a window in the borders that the last one of the process had, and adds what its
// own turn out to have more: a frame has wider ones than a dialog. It takes no other size while it
// tells of one.

void PlcDebugFrame::OnSize(wxSizeEvent& event)
{
    event.Skip();
    const wxSize opened(frameWidth, frameHeight);
    if (GetSize() != opened && SizeInsideBorders(*this) == m_openedInside) {
        CallAfter([this, opened] { SetSize(opened); });
    }
    KeepRoomForPages(); // what menu and status bar take is known by now
}

void PlcDebugFrame::KeepRoomForPages()
{
    // In less the toolkit complains of its own notebook and scroll bars, which ends some hosts.
    wxSize smallest = ClientToWindowSize(GetSizer()->CalcMin());
    smallest.y = std::min(smallest.y, GetMaxHeight());
    if (GetMinSize() != smallest) {
        SetMinSize(smallest);
    }
}

void PlcDebugFrame::DeliverAnswers()
{
    const auto end = std::chrono::steady_clock::now() + mostOfATick;
    const auto timeIsUp = [end] { return std::chrono::steady_clock::now() >= end; };
    m_readVarAnswers.DeliverNewest(
        [this](const CMD_DATA& answer) { m_pVarPanel->AnswerReadVarRequest(answer); }, timeIsUp);
    m_prgStateAnswers.DeliverAll(
        [this](const CMD_DATA& answer) { m_pPrgPanel->AnswerPrgState(answer); }, timeIsUp);
}

void PlcDebugFrame::DoSaveActiveFile()
{
    if (!m_pVarPanel->IsModified()) {
        return;
    }
    if (IsShown()) // raising a hidden frame shows it again
    {
        Raise();
    }
    if (AskYesNo(this, TextId::SaveQuestionCaption, TextId::SaveQuestion)) {
        wxCommandEvent save;
        OnMenuSave(save);
    }
}

void PlcDebugFrame::OnMenuNewClose(wxCommandEvent& /*event*/)
{
    m_pVarPanel->DiscardEdit();
    DoSaveActiveFile();
    m_pVarPanel->Reset();
}

void PlcDebugFrame::OnMenuOpen(wxCommandEvent& /*event*/)
{
    m_pVarPanel->DiscardEdit();
    DoSaveActiveFile();
    if (m_bExited) // the host has closed the debugger under the question
    {
        return;
    }
    m_pVarPanel->Reset();
    wxFileDialog dialog(
        this,
        LanguageText(TextId::OpenMessage),
        m_fileDir,
        "",
        LanguageText(TextId::ListFiles) + listFileWildcard,
        wxFD_OPEN);
    if (RunModal(dialog) == wxID_OK) {
        m_fileName = dialog.GetPath();
        m_pVarPanel->LoadFile(m_fileName);
    }
}

void PlcDebugFrame::OnMenuSave(wxCommandEvent& event)
{
    m_pVarPanel->DiscardEdit();
    if (!m_pVarPanel->IsModified()) {
        return;
    }
    if (m_fileName.empty()) {
        OnMenuSaveAs(event);
    } else {
        m_pVarPanel->SaveFile(m_fileName);
    }
}

void PlcDebugFrame::OnMenuSaveAs(wxCommandEvent& /*event*/)
{
    m_pVarPanel->DiscardEdit();
    wxFileDialog dialog(
        this,
        LanguageText(TextId::SaveAsMessage),
        m_fileDir,
        "",
        LanguageText(TextId::ListFiles) + listFileWildcard,
        wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (RunModal(dialog) == wxID_OK) {
        m_fileName = dialog.GetPath();
        m_pVarPanel->SaveFile(m_fileName);
    }
}

void PlcDebugFrame::OnMenuInfo(wxCommandEvent& /*event*/)
{
    PlcInfoDlg dialog(this);
    RunModal(dialog);
}

void PlcDebugFrame::OnMenuQuit(wxCommandEvent& event)
{
    HideAndExit();
    event.Skip();
}

void PlcDebugFrame::OnClose(wxCloseEvent& event)
{
    const bool insideOurCode = PlcCallOut::Active();
    HideAndExit();
    if (insideOurCode) {
        DeleteFrameLater(this); // some handler of ours has still to return
    } else {
        event.Skip(); // the toolkit deletes the frame
    }
}

void PlcDebugFrame::OnHostWindowDestroyed(wxWindowDestroyEvent& event)
{
    event.Skip();
    // It deletes its children, but this one has still to return from a dialog or a callback.
    if (event.GetEventObject() == GetParent() && PlcCallOut::Active()) {
        GetParent()->RemoveChild(this);
        if (m_pDebugFrame == this) {
            ExportDestroyPlcDebugger();
        }
    }
}

void PlcDebugFrame::HideAndExit()
{
    Show(false);
    DoExit();
}

void PlcDebugFrame::DoExit()
{
    const wxRecursionGuard exiting(m_exiting);
    if (m_bExited || exiting.IsInside()) {
        return;
    }
    const PlcCallOut callOut;
    m_timer.Stop();
    m_readVarAnswers.Close(); // nobody reads them any more
    m_prgStateAnswers.Close();
    m_pVarPanel->FinishVarRequest();
    if (m_pPrgPanel->IsShown()) {
        m_pPrgPanel->FinishPrgStateRequest();
    }
    m_pVarPanel->Disconnect();
    m_pPrgPanel->Disconnect();
    DoSaveActiveFile();
    if (!m_fileName.empty()) {
        m_config->Set(keyLastFile, m_fileName);
    }
    m_bExited = true;
}
