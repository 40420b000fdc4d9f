// The smallest host of the PLC debugger that is a wxWidgets program: 64 flag bytes, MB0 to MB63,
// that an operator can watch and write. MB0 counts, so that something moves.
//
//     wx_host LIBRARY PREFIX
//
// The debugger joins the application object of this program, so both link the same wxWidgets. Its
// frame becomes a child of the top window: that one comes first and goes last.
#include "plcdebug_loader.h"

#include <wx/wx.h>

#include <array>
#include <cstdio>
#include <map>

namespace {

PLC_DEBUGGER debugger{};
PLC_DBG_INIT init{};
std::array<std::uint8_t, 64> memory{};
std::map<std::uint16_t, std::uint8_t*> watched; // by key

/// The byte that a request names; null for one that this machine does not have.
std::uint8_t* Operand(const CMD_DATA* request)
{
    char name[PLC_OPERAND_SIZE];
    unsigned number = 0;
    PlcOperandOf(request, name);
    const bool found = std::sscanf(name, "MB%u", &number) == 1 && number < memory.size();
    return found ? &memory.at(number) : nullptr;
}

std::int32_t OnReadVar(const CMD_DATA* request)
{
    if (std::uint8_t* const byte = Operand(request)) {
        watched[request->key] = byte;
    }
    return 1;
}

std::int32_t OnWriteVar(const CMD_DATA* request)
{
    if (std::uint8_t* const byte = Operand(request)) {
        *byte = static_cast<std::uint8_t>(PlcWrittenValue(request));
    }
    return 1;
}

std::int32_t OnDeleteVar(const CMD_DATA* request)
{
    if (PlcArgumentOfDelete(request) == PLC_DELETE_ARG_RELEASE) {
        watched.erase(request->key);
    }
    return 1;
}

/// Loads the library, and writes the program debug file without which the debugger cannot open.
bool Prepare(const wxString& library, const wxString& prefix, char* why)
{
    unsigned char listing[PLC_EMPTY_DEBUG_FILE_SIZE];
    char path[PLC_DEBUG_FILE_PATH_SIZE];
    prefix.ToStdString().copy(init.szPath, sizeof init.szPath - 1);
    init.pfnReadVarRequest = OnReadVar;
    init.pfnWriteVarRequest = OnWriteVar;
    init.pfnDeleteVarRequest = OnDeleteVar;
    PlcMakeEmptyDebugFile("P", listing);
    PlcDebugFilePath(init.szPath, path);
    return PlcLoad(library.fn_str(), &debugger, why) != 0 &&
           PlcWriteDebugFile(path, listing, sizeof listing, why) != 0;
}

} // namespace

class Machine : public wxFrame
{
public:
    Machine() : wxFrame(nullptr, wxID_ANY, "Machine"), m_timer(this)
    {
        auto* open = new wxButton(new wxPanel(this), wxID_ANY, "Open the debugger");
        open->Bind(wxEVT_BUTTON, [](wxCommandEvent&) { OpenDebugger(); });
        Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Answer(); });
        Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) {
            debugger.destroy(); // also under a dialog of the debugger, which ends as cancelled
            event.Skip();
        });
        m_timer.Start(100);
    }

    /// Destroy is harmless without a window, and due after the operator has closed it himself.
    static void OpenDebugger()
    {
        debugger.destroy();
        debugger.create(&init);
    }

private:
    void Answer()
    {
        ++memory[0];
        for (const auto& [key, byte] : watched) {
            CMD_DATA answer = PlcMakeReadAnswer(key, *byte);
            m_taken += debugger.answerReadVar(reinterpret_cast<unsigned char*>(&answer));
        }
        SetTitle(wxString::Format("Machine, %d answers taken", m_taken));
    }

    wxTimer m_timer;
    int m_taken = 0;
};

class Program : public wxApp
{
public:
    bool OnInit() override
    {
        char why[PLC_WHY_SIZE] = "usage: wx_host LIBRARY PREFIX";
        if (argc != 3 || !Prepare(argv[1], argv[2], why)) {
            std::fprintf(stderr, "wx_host: %s\n", why);
            return false;
        }
        auto* machine = new Machine;
        machine->Show();
        Machine::OpenDebugger();
        return true;
    }
};

wxIMPLEMENT_APP(Program);
