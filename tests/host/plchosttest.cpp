#include "plchosttest.h"

#include "projectfile.h"
#include "waitfor.h"

#include <glibmm/main.h>
#include <gmock/gmock.h>
#include <gtkmm/main.h>
#include <gtkmm/progressbar.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace plchost {

namespace {

constexpr unsigned longestRunSeconds = 60;

FakeLibrary* library = nullptr;

int Create(PLC_DBG_INIT* init)
{
    library->calls.emplace_back("create");
    library->init = *init;
    library->duringCreate();
    if (library->created != 0) {
        library->window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        gtk_widget_show(library->window);
    }
    return library->created;
}

void Destroy()
{
    library->calls.emplace_back("destroy");
    if (GtkWidget* const window = std::exchange(library->window, nullptr)) {
        gtk_widget_destroy(window);
    }
}

int TakeValue(unsigned char* bytes)
{
    CMD_DATA answer{};
    std::memcpy(&answer, bytes, sizeof answer);
    const std::lock_guard lock(library->mutex);
    library->values.emplace_back(answer.key, PlcAnsweredValue(&answer));
    return library->takesAnswers ? 1 : 0;
}

int TakeProgramState(unsigned char*)
{
    const std::lock_guard lock(library->mutex);
    ++library->probes;
    return library->takesAnswers ? 1 : 0;
}

/// @return the texts of all labels that can be seen.
std::vector<std::string> Shown(Gtk::Widget& widget)
{
    std::vector<std::string> texts;
    for (const Gtk::Label* label : All<Gtk::Label>(widget)) {
        if (label->get_mapped()) {
            texts.push_back(label->get_text());
        }
    }
    return texts;
}

} // namespace

void FakeLibrary::Watch(int key, const char* operand) const
{
    const auto number = static_cast<std::uint16_t>(key);
    const CMD_DATA read = PlcMakeReadRequest(number, operand);
    const CMD_DATA start = PlcMakeDeleteRequest(number, PLC_DELETE_ARG_START);
    init.pfnReadVarRequest(&read);
    init.pfnDeleteVarRequest(&start);
}

int FakeLibrary::Probes()
{
    const std::lock_guard lock(mutex);
    return probes;
}

std::vector<Value> FakeLibrary::Values()
{
    const std::lock_guard lock(mutex);
    return values;
}

int Count(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

std::string Progress(Gtk::Widget& window)
{
    return All<Gtk::ProgressBar>(window).front()->get_text();
}

void PlcHost::SetUp()
{
    library = &fake;
    options.plugin = FAKE_PLUGIN;
    options.dataFolder = ProjectFile("");
    options.configFolder = dir.Path();
    options.language = "en";
}

void PlcHost::TearDown()
{
    library = nullptr;
}

int PlcHost::Run(const std::function<void()>& operate)
{
    ground = Prepare(options);
    ground.plugin = Library();
    Host host(options, ground);
    Glib::signal_idle().connect_once([&operate] {
        operate();
        Window().close();
    });
    auto guard = Glib::signal_timeout().connect_seconds(
        [] {
            ADD_FAILURE() << "the host does not end";
            Gtk::Main::quit();
            return false;
        },
        longestRunSeconds);
    const int status = host.Run();
    guard.disconnect();
    return status;
}

Plugin PlcHost::Library()
{
    return {{&Create, &Destroy, &TakeValue, &TakeProgramState}, ""};
}

HostWindow& PlcHost::Window()
{
    for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
        if (auto* const own = dynamic_cast<HostWindow*>(window)) {
            return *own;
        }
    }
    throw std::logic_error("plchost has no window");
}

void PlcHost::Click(const std::string& label)
{
    for (Gtk::Button* button : All<Gtk::Button>(Window())) {
        if (button->get_label() == label) {
            button->clicked();
            return;
        }
    }
    ADD_FAILURE() << "no button \"" << label << "\"";
}

testing::AssertionResult PlcHost::WaitForText(const std::string& text)
{
    return WaitFor(text, [&text] {
        return testing::Matches(testing::Contains(testing::HasSubstr(text)))(Shown(Window()));
    });
}

void PlcHost::OpenDebugger()
{
    Click(english.openDebugger);
    ASSERT_FALSE(fake.calls.empty());
    EXPECT_EQ(fake.calls.back(), "create");
}

testing::AssertionResult PlcHost::WaitForValue(const Value& value, int times)
{
    return WaitFor("value", [&] {
        const auto values = fake.Values();
        return std::count(values.begin(), values.end(), value) >= times;
    });
}

void PlcHost::WaitForSomeLooks()
{
    const int before = fake.Probes();
    EXPECT_TRUE(WaitFor("looks", [&] { return fake.Probes() >= before + 3; }));
}

std::string PlcHost::Recorded(const std::vector<RecordedEvent>& events) const
{
    const std::string listing =
        dir.Read(std::filesystem::path(Prepare(options).files.debugFile).filename());
    std::string bytes =
        EncodeRecordingHead() +
        EncodeEvent({std::chrono::microseconds(0), EventKind::Listing, true, listing});
    for (const RecordedEvent& event : events) {
        bytes += EncodeEvent(event);
    }
    return dir.Write("run.rec", bytes);
}

RecordedEvent PlcHost::Asked(std::chrono::microseconds time, int key)
{
    const CMD_DATA request =
        PlcMakeReadRequest(static_cast<std::uint16_t>(key), ("MB" + std::to_string(key)).c_str());
    return {time, EventKind::Request, true, CountingBytes(&request)};
}

} // namespace plchost
