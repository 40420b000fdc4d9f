#pragma once

#include "host.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <gtkmm/container.h>

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

// plchost as a whole in this process, but for the debugger: a library of the test's own stands for
// it. GUI thread.

namespace plchost {

/// Key and value of an answer.
using Value = std::pair<int, std::int32_t>;

/// What the library does and has seen. The exports have no user data, so there is one for all
/// tests.
struct FakeLibrary
{
    int created = 1;
    std::function<void()> duringCreate = [] {};
    PLC_DBG_INIT init{};
    std::vector<std::string> calls;
    GtkWidget* window = nullptr;

    std::mutex mutex; ///< Guards what follows: answers come on the PLC's thread, too.
    bool takesAnswers = true;
    int probes = 0; ///< Answers of program states, with which the host asks who is there.
    std::vector<Value> values;

    /// Asks for an operand under a key.
    void Watch(int key, const char* operand) const;
    int Probes();
    std::vector<Value> Values();
};

/// @return all widgets of a kind in a window.
template <typename Kind> std::vector<Kind*> All(Gtk::Widget& widget)
{
    std::vector<Kind*> found;
    if (auto* const kind = dynamic_cast<Kind*>(&widget)) {
        found.push_back(kind);
    }
    if (auto* const container = dynamic_cast<Gtk::Container*>(&widget)) {
        for (Gtk::Widget* child : container->get_children()) {
            const std::vector<Kind*> below = All<Kind>(*child);
            found.insert(found.end(), below.begin(), below.end());
        }
    }
    return found;
}

/// How often a text holds another one.
int Count(const std::string& text, const std::string& part);

/// @return what stands in the progress bar of a window.
std::string Progress(Gtk::Widget& window);

/// A host with the bottling line, in a folder of its own.
class PlcHost : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Runs the host from its preparation to its end.
    /// @param operate what the operator does; then he closes the window.
    /// @return its exit status.
    int Run(const std::function<void()>& operate);

    /// @return the library that stands for the debugger.
    static Plugin Library();

    static HostWindow& Window();
    static void Click(const std::string& label);
    void OpenDebugger();

    /// Waits for a label in the window that holds a text.
    static testing::AssertionResult WaitForText(const std::string& text);
    testing::AssertionResult WaitForValue(const Value& value, int times = 1);

    /// So long that the host has looked at everything again and again.
    void WaitForSomeLooks();

    /// @return the path of a recording of these events, made at the bottling line.
    std::string Recorded(const std::vector<RecordedEvent>& events) const;

    /// A request for the flag byte of this number.
    static RecordedEvent Asked(std::chrono::microseconds time, int key);

    const HostTexts& english = TextsIn("en");
    TempDir dir;
    FakeLibrary fake;
    Options options;
    Ground ground;
};

} // namespace plchost
