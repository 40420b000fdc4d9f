#include "debuggertest.h"

#include "debugfile.h"
#include "descendants.h"
#include "numberedtexts.h"
#include "widgets.h"

#include <gmock/gmock.h>
#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/menu.h>
#include <wx/textctrl.h>

#include <X11/keysym.h>
#include <memory>
#include <thread>

namespace {

plchost::Plugin LoadPlugin()
{
    const auto loaded = plchost::LoadPlugin(PLCDEBUG_LIBRARY);
    if (!loaded) {
        throw std::runtime_error(loaded.Message());
    }
    return *loaded;
}

/// @return whether the frame is on the screen with its final size.
bool IsSettled(Operator& hands)
{
    if (Frame() == nullptr || !IsOnScreen(Frame()->GetHandle())) {
        return false;
    }
    // The size is asked for again once the window manager has told how wide its borders are.
    const wxSize size = Frame()->GetSize();
    return hands.OuterSize(TopLevelWindowOf(Frame()->GetHandle())) == std::pair(size.x, size.y);
}

/// Counts how often the debugger's frame is drawn without anything moving in it. GUI thread.
class StillFrames
{
public:
    StillFrames()
        : m_clock(gtk_widget_get_frame_clock(Frame()->GetHandle())),
          m_handler(g_signal_connect(m_clock, "after-paint", G_CALLBACK(OnDrawn), this))
    {
        RequestNext();
    }

    ~StillFrames() { g_signal_handler_disconnect(m_clock, m_handler); }

    StillFrames(const StillFrames&) = delete;
    StillFrames(StillFrames&&) = delete;
    StillFrames& operator=(const StillFrames&) = delete;
    StillFrames& operator=(StillFrames&&) = delete;

    int Count() const { return m_count; }

private:
    static void OnDrawn(GdkFrameClock* /*clock*/, StillFrames* self)
    {
        const Spot now = MiddleOf(TabOf(Notebook(), programPage));
        const bool still = now.x == self->m_last.x && now.y == self->m_last.y && now.x > 0;
        self->m_count = still ? self->m_count + 1 : 0;
        self->m_last = now;
        self->RequestNext();
    }

    void RequestNext() { gdk_frame_clock_request_phase(m_clock, GDK_FRAME_CLOCK_PHASE_PAINT); }

    GdkFrameClock* m_clock;
    gulong m_handler;
    Spot m_last{};
    int m_count = 0;
};

Spot CellSpot(int row, int column)
{
    wxGrid& grid = GridOn(watchPage);
    const wxPoint middle = MiddleOfCell(grid, row, column);
    return PlaceIn(grid.GetGridWindow()->GetHandle(), middle.x, middle.y);
}

} // namespace

std::string ProgramDebugFile(const std::vector<Words>& blocks)
{
    std::vector<DebugFileBlock> named;
    std::size_t step = 0;
    for (const Words& lines : blocks) {
        named.push_back(
            {"OB" + std::to_string(named.size() + 1), static_cast<std::uint16_t>(step), lines});
        step += lines.size();
    }
    return DebugFile(named);
}

DebuggerTest::DebuggerTest() : host(files.File("machine")), plugin(LoadPlugin())
{
    WriteNumberedTexts(files.Path().string());
    Configure("LanguagePath", files.Path().string());
    Configure("Language", numberedLanguage);
    UseProgram({{"U E 0.0", "= A 0.0"}});
}

void DebuggerTest::TearDown()
{
    OnGui([this] { watch.CancelAll(); });
    Destroy();
    EXPECT_TRUE(FrameGoes());
    TakeRequests();
    if (!HostOwnsTheToolkit()) {
        EXPECT_TRUE(Await("the toolkit ended", [] { return wxTheApp == nullptr; }));
    }
    EXPECT_THAT(OnGui([this] { return watch.Troubles(); }), testing::IsEmpty());
    EXPECT_FALSE(HostLoopHasEnded()) << "the host's main loop has ended";
}

void DebuggerTest::Configure(const std::string& key, const std::string& value)
{
    m_settings[key] = value;
    std::string text = "[Settings]\n";
    for (const auto& [name, setting] : m_settings) {
        text.append(name).append("=").append(setting).append("\n");
    }
    files.Write("plcdebug.ini", text);
}

void DebuggerTest::UseLetters()
{
    WriteNumberedTexts(
        files.Path().string(),
        {{51, "N"}, {54, "O"}, {57, "W"}, {60, "S"}, {63, "A"}, {103, "Q"}, {66, "I"}});
}

std::string DebuggerTest::UseList(const Words& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    std::string path = files.Write("list.plc", text);
    Configure("PLCLastFile", path);
    return path;
}

void DebuggerTest::UseProgram(const std::vector<Words>& blocks)
{
    files.Write("machine_plcdbgi.dat", ProgramDebugFile(blocks));
}

int DebuggerTest::Create()
{
    return OnGui([this] { return plugin.create(&host.init); });
}

void DebuggerTest::Destroy()
{
    OnGui([this] { plugin.destroy(); });
}

testing::AssertionResult DebuggerTest::Open()
{
    if (Create() != 1) {
        return testing::AssertionFailure() << "the debugger is not created";
    }
    return WindowOpens();
}

void DebuggerTest::OpenBehindMessages()
{
    PostToGui([this] { plugin.create(&host.init); });
}

testing::AssertionResult DebuggerTest::WindowOpens()
{
    testing::AssertionResult shown =
        Await("the frame on the screen", [this] { return IsSettled(hands); });
    if (shown) {
        shown = AwaitStill();
    }
    return shown ? FrameGetsKeyboard() : shown;
}

testing::AssertionResult DebuggerTest::FrameGetsKeyboard()
{
    return hands.Activate(OnGui([] { return Frame()->GetHandle(); }));
}

testing::AssertionResult DebuggerTest::AwaitStill()
{
    constexpr int enough = 3;
    auto frames = OnGui([] { return std::make_unique<StillFrames>(); });
    const testing::AssertionResult still =
        Await("the layout done", [&] { return frames->Count() >= enough; });
    OnGui([&] { frames.reset(); });
    return still;
}

int DebuggerTest::Answer(std::uint16_t key, std::int32_t value) const
{
    return Answer(PlcMakeReadAnswer(key, value));
}

int DebuggerTest::Answer(CMD_DATA answer) const
{
    return plugin.answerReadVar(reinterpret_cast<unsigned char*>(&answer));
}

Words DebuggerTest::TakeRequests()
{
    return OnGui([this] {
        for (const RecordedRequest& request : host.requests) {
            EXPECT_EQ(request.thread, std::this_thread::get_id())
                << request.InWords() << " did not come on the GUI thread";
        }
        return host.TakeInWords();
    });
}

testing::AssertionResult
DebuggerTest::Await(const std::string& what, const std::function<bool()>& condition)
{
    if (HoldsOnGui(condition)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "waited in vain for: " << what
           << "; troubles: " << testing::PrintToString(OnGui([this] { return watch.Troubles(); }));
}

testing::AssertionResult DebuggerTest::Requests(const Words& expected)
{
    HoldsOnGui([&] { return host.requests.size() >= expected.size(); });
    const Words sent = TakeRequests();
    if (sent == expected) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "requests sent: " << testing::PrintToString(sent)
                                       << ", expected: " << testing::PrintToString(expected);
}

testing::AssertionResult DebuggerTest::SendsNothing()
{
    AwaitThreeTicks();
    const Words sent = TakeRequests();
    if (sent.empty()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "requests sent: " << testing::PrintToString(sent);
}

void DebuggerTest::AwaitThreeTicks()
{
    // Two timers of one period take turns: between two of our ticks lies one of the debugger's.
    constexpr guint tickMs = 100;
    constexpr int enough = 4;
    const auto ticks = std::make_unique<int>(0);
    const auto count = [](gpointer counter) -> gboolean {
        ++*static_cast<int*>(counter);
        return G_SOURCE_CONTINUE;
    };
    const guint timer = g_timeout_add(tickMs, count, ticks.get());
    EXPECT_TRUE(HoldsOnGui([&] { return *ticks >= enough; }));
    OnGui([timer] { g_source_remove(timer); });
}

testing::AssertionResult DebuggerTest::Shows(const Words& rows)
{
    if (HoldsOnGui([&] { return WatchList() == rows; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "the list reads: " << testing::PrintToString(OnGui(WatchList))
           << ", expected: " << testing::PrintToString(rows);
}

testing::AssertionResult DebuggerTest::Selects(const std::vector<int>& rows)
{
    if (HoldsOnGui([&] { return SelectedRows() == rows; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "rows selected: " << testing::PrintToString(OnGui(SelectedRows))
           << ", expected: " << testing::PrintToString(rows);
}

testing::AssertionResult DebuggerTest::FrameGoes()
{
    return Await("the frame gone", [] { return Frame() == nullptr; });
}

void DebuggerTest::Click(ControlId button)
{
    hands.Click(OnGui(
        [button] { return MiddleOf(wxWindow::FindWindowById(button, Frame())->GetHandle()); }));
}

void DebuggerTest::ClickCell(int row, int column, XKey held)
{
    hands.Click(OnGui([=] { return CellSpot(row, column); }), held);
}

void DebuggerTest::ClickTab(Page page)
{
    hands.Click(OnGui([page] { return MiddleOf(TabOf(Notebook(), page)); }));
}

testing::AssertionResult DebuggerTest::ShowPage(Page page)
{
    ClickTab(page);
    return Await("the page selected", [page] { return Notebook().GetSelection() == page; });
}

void DebuggerTest::ChooseMenu(int id)
{
    GtkWidget* title = nullptr;
    GtkWidget* entry = nullptr;
    OnGui([&] {
        wxMenu* menu = nullptr;
        entry = Frame()->GetMenuBar()->FindItem(id, &menu)->GetMenuItem();
        title = menu->m_owner;
    });
    hands.Click(OnGui([title] { return MiddleOf(title); }));
    ASSERT_TRUE(Await("the menu open", [entry] { return IsOnScreen(entry); }));
    hands.Click(OnGui([entry] { return MiddleOf(entry); }));
}

void DebuggerTest::CloseFrame()
{
    hands.CloseThroughManager(OnGui([] { return TopLevelWindowOf(Frame()->GetHandle()); }));
}

void DebuggerTest::Define(const std::string& address)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens("dialog [T9]"));
    TypeAddress(address);
    ClickInDialog(wxID_OK);
}

testing::AssertionResult DebuggerTest::ChooseValue(int row)
{
    ClickCell(row, 1);
    return Await("the cell chosen", [row] {
        return GridOn(watchPage).GetGridCursorCoords() == wxGridCellCoords(row, 1);
    });
}

std::string DebuggerTest::Typed()
{
    const auto* text = FirstOf<wxTextCtrl>(GridOn(watchPage));
    return text != nullptr && text->IsShown() ? text->GetValue().utf8_string() : "(closed)";
}

void DebuggerTest::EnterValue(int row, const std::string& value)
{
    ASSERT_TRUE(FrameGetsKeyboard());
    ASSERT_TRUE(ChooseValue(row));
    hands.Type(value);
    ASSERT_TRUE(Await("the value typed", [&value] { return Typed() == value; }));
    hands.Press(XK_Return);
}
