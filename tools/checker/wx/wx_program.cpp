#include "wx_host.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/frame.h>
#include <wx/weakref.h>

namespace plccheck {

namespace {

class Program : public WxHost
{
public:
    explicit Program(const std::function<void(WxHost& host)>& inside) : m_inside(inside) {}

    /// @return whether the main loop ran until Leave().
    bool Run();

    void OpenWindow() override;
    void DestroyWindow() override;
    std::string Loss() const override;

    void RunInside();
    void Leave();
    void RunMainLoop(const std::function<void()>& loop);

private:
    const std::function<void(WxHost& host)>& m_inside;
    const wxAppConsole* m_app = nullptr;
    wxWeakRef<wxFrame> m_window;
    bool m_hasWindow = false;
    int m_commands = 0; ///< That have reached the window.
    bool m_leaves = false;
    bool m_loopLasted = false;
};

constexpr const char* appName = "machine";

/// Runs a function of the program from the main loop.
template <void (Program::*function)()> void Post(Program& program)
{
    const auto run = [](gpointer receiver) -> gboolean {
        (static_cast<Program*>(receiver)->*function)();
        return G_SOURCE_REMOVE;
    };
    g_idle_add(run, &program);
}

class App : public wxApp
{
public:
    explicit App(Program& program) : m_program(program)
    {
        SetAppName(appName);
        SetExitOnFrameDelete(false); // a check may destroy the window and go on
    }

    int OnRun() override
    {
        m_program.RunMainLoop([this] { wxApp::OnRun(); });
        return 0;
    }

private:
    Program& m_program;
};

bool Program::Run()
{
    auto* const app = new App(*this); // deleted by wxEntry()
    m_app = app;
    wxApp::SetInstance(app);
    std::string name = "plcdebug-check";
    char* arguments[] = {name.data(), nullptr};
    int count = 1;
    wxEntry(count, arguments);
    return m_loopLasted;
}

void Program::RunMainLoop(const std::function<void()>& loop)
{
    Post<&Program::RunInside>(*this);
    loop();
    m_loopLasted = m_leaves;
    while (!m_leaves) {
        loop();
    }
}

void Program::RunInside()
{
    OpenWindow();
    m_inside(*this);
    if (m_window) {
        DestroyWindow();
    }
    // Not from here: what ended the loop while the check ran would not be seen.
    Post<&Program::Leave>(*this);
}

void Program::Leave()
{
    m_leaves = true;
    wxTheApp->ExitMainLoop();
}

void Program::OpenWindow()
{
    auto* const window = new wxFrame(nullptr, wxID_ANY, "Machine");
    window->Bind(wxEVT_MENU, [this](wxCommandEvent&) { ++m_commands; });
    gtk_widget_set_name(window->GetHandle(), wxHostWindow);
    window->Show();
    m_window = window;
    m_hasWindow = true;
    // A window in front of one that is still being opened makes the toolkit complain.
    while (m_window && gtk_widget_get_mapped(window->GetHandle()) == FALSE) {
        g_main_context_iteration(nullptr, TRUE);
    }
}

void Program::DestroyWindow()
{
    m_hasWindow = false;
    m_window->Destroy();
}

std::string Program::Loss() const
{
    if (wxTheApp != m_app) {
        return "the host's wxWidgets application is gone";
    }
    if (wxTheApp->GetAppName() != appName) {
        return "the host's wxWidgets application has another name";
    }
    if (m_hasWindow && (!m_window || !m_window->IsShown())) {
        return "the host's own window is gone";
    }
    if (m_hasWindow && wxTheApp->GetTopWindow() != m_window.get()) {
        return "the host's own window is no longer the top window";
    }
    return m_commands == 0 ? "" : "a menu command of the debugger reaches the host's window";
}

} // namespace

} // namespace plccheck

extern "C" __attribute__((visibility("default"))) bool
PlcRunWxHost(const std::function<void(plccheck::WxHost& host)>& inside)
{
    return plccheck::Program(inside).Run();
}
