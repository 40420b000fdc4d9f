#include "machines_program.h"
#include "playedmachine.h"
#include "plchosttest.h"
#include "waitfor.h"

#include <glibmm/main.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

// plchost with the machines of a plant, and a program of the test's own in place of each that it
// opens.

namespace plchost {
namespace {

using plclink::LinkStatus;
using testing::HasSubstr;

class PlcHostMachines : public testing::Test
{
protected:
    void SetUp() override
    {
        options.plantAddress = "mqtts://service@127.0.0.1:" + broker.Port() + "/hall1";
        options.plant = broker.Address("service", "");
        options.access = broker.Access("service");
        options.language = "en";
    }

    /// Runs the program until its end.
    /// @param operate what the operator does; then he closes the window.
    int Run(const std::function<void()>& operate, const std::string& opened = "/bin/true")
    {
        MachinesProgram program(options, opened);
        Glib::signal_idle().connect_once([&operate] {
            operate();
            Window().close();
        });
        return program.Run();
    }

    static MachinesWindow& Window()
    {
        for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
            if (auto* const own = dynamic_cast<MachinesWindow*>(window)) {
                return *own;
            }
        }
        throw std::logic_error("there is no window of the machines");
    }

    static Gtk::TreeView& Table() { return *All<Gtk::TreeView>(Window()).front(); }

    /// What stands in a column, from the first row to the last.
    static std::vector<std::string> Column(int column)
    {
        std::vector<std::string> texts;
        for (const auto& row : Table().get_model()->children()) {
            Glib::ustring text;
            row.get_value(column, text);
            texts.push_back(text);
        }
        return texts;
    }

    static testing::AssertionResult WaitForLamp(const std::string& word)
    {
        return WaitFor(word, [&word] {
            const auto lamps = Column(1);
            return lamps.size() == 1 && lamps.front().find(word) != std::string::npos;
        });
    }

    static testing::AssertionResult WaitForText(const std::string& text)
    {
        return WaitFor(text, [&text] {
            const auto labels = All<Gtk::Label>(Window());
            return std::any_of(labels.begin(), labels.end(), [&text](const Gtk::Label* label) {
                return label->get_mapped() && label->get_text().find(text) != std::string::npos;
            });
        });
    }

    static void Open() { All<Gtk::Button>(Window()).front()->clicked(); }

    /// A program that notes its words and stays until it is told to end with a status.
    std::string Opened() const
    {
        const std::string folder = dir.Path();
        std::string path = dir.Write(
            "opened",
            "#!/bin/sh\ncd '" + folder +
                "'\necho \"$@\" >>words\nuntil [ -s end ]; do sleep 0.05; done\nexit $(cat end)\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    std::string Words() const
    {
        return std::filesystem::exists(dir.File("words")) ? dir.Read("words") : "";
    }

    const HostTexts& english = TextsIn("en");
    TempDir dir;
    Options options;
    Broker broker{{"press7", "service"}};
};

TEST_F(PlcHostMachines, ListsWhoIsThereAndMarksWhoGoes)
{
    PlayedMachine machine(broker, broker.Port());
    machine.TellState({LinkStatus::Running}, true);

    Run([&] {
        EXPECT_TRUE(WaitForLamp(english.linkRunning));
        EXPECT_THAT(Column(0), testing::ElementsAre("press7"));
        EXPECT_EQ(Window().get_title(), "hall1: machines");

        machine.Silence(true);

        EXPECT_TRUE(WaitForLamp(english.linkLost));
        EXPECT_THAT(Column(5).front(), HasSubstr("says nothing"));
    });
}

TEST_F(PlcHostMachines, SaysThatNobodyIsThere)
{
    Run([this] { EXPECT_TRUE(WaitForText(english.noMachines)); });
}

TEST_F(PlcHostMachines, SaysWhyTheBrokerRefuses)
{
    options.access.passwordFile = dir.Write("wrong", "wrong\n");
    std::filesystem::permissions(
        options.access.passwordFile,
        std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);

    Run([this] { EXPECT_TRUE(WaitForText(std::string("Broker: ") + english.linkRefused)); });
}

TEST_F(PlcHostMachines, OpensAMachineOnceAndEndsWithItsWindow)
{
    PlayedMachine machine(broker, broker.Port());
    machine.TellState({LinkStatus::Running});

    EXPECT_EQ(
        Run(
            [&] {
                EXPECT_TRUE(WaitForLamp(english.linkRunning));

                Open();
                EXPECT_TRUE(WaitFor("words", [this] { return !Words().empty(); }));
                Open();
                EXPECT_TRUE(WaitForText(std::string("press7 ") + english.isOpen));

                Glib::signal_timeout().connect_once([this] { dir.Write("end", "0"); }, 1);
            },
            Opened()),
        0);

    const std::string words = Words();
    EXPECT_THAT(words, testing::StartsWith("--machine " + options.plantAddress + "/press7 "));
    EXPECT_EQ(std::count(words.begin(), words.end(), '\n'), 1);
}

TEST_F(PlcHostMachines, SaysThatAnOpenedMachineHasEndedWithAnError)
{
    options.openMachine = "press7";
    dir.Write("end", "1");

    Run([this] { EXPECT_TRUE(WaitForText(std::string("press7 ") + english.endedWrong)); },
        Opened());
}

TEST_F(PlcHostMachines, SaysWhyAMachineCannotBeOpened)
{
    options.openMachine = "press7";

    Run([] { EXPECT_TRUE(WaitForText("/nowhere")); }, "/nowhere");
}

TEST_F(PlcHostMachines, KeepsTheChoiceWhenMachinesComeAndGo)
{
    MachinesWindow window(
        english, "hall1", [this](const std::string& name) { dir.Write("chosen", name); });
    const auto named = [](const char* name) { return ShownMachine{name}; };
    window.Show("", {named("lift"), named("mixer")});
    Table().set_cursor(Gtk::TreeModel::Path("1"));

    window.Show("", {named("crossing"), named("lift"), named("mixer")});
    Open();
    EXPECT_EQ(dir.Read("chosen"), "mixer");

    window.Show("", {named("mixer")});
    Open();
    EXPECT_EQ(dir.Read("chosen"), "mixer");
}

} // namespace
} // namespace plchost
