#pragma once

#include "expecteddialogs.h"
#include "numberedtexts.h"
#include "plcdebugframe.h"
#include "plcnotebook.h"
#include "plcvargrid.h"
#include "plcvarpanel.h"
#include "recordinghost.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <wx/weakref.h>

#include <cstdint>
#include <string>
#include <vector>

/// The debugger's frame, opened on a directory of its own: configuration, texts, debug file.
class DebugFrame : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Writes the configuration with the language and, if there is one, the last list file.
    void Configure(const std::string& lastFile = "") const;

    /// Opens the frame and waits until it is on the screen.
    void Open();

    /// Opens on a list file with these lines.
    void OpenOn(const std::string& lines);

    /// Chooses a menu item and lets it have its effect.
    void Choose(int menuItem);

    /// Changes the list, by deleting its first row.
    void ChangeList();

    /// Types into the value cell of a row, without confirming.
    void TypeValue(int row, const char* text);

    /// Queues a read answer.
    void Answer(std::uint16_t key, std::int32_t value);

    std::vector<std::string> Column(int column) const;
    std::string LastFileInConfiguration() const;

    void Destroy();

    TempDir dir;
    RecordingHost host{dir.File("prog")};
    ExpectedDialogs dialogs;
    wxWeakRef<PlcDebugFrame> frame;
    PlcVarPanel* panel = nullptr;
    PlcVarGrid* grid = nullptr;
    PlcNoteBook* notebook = nullptr;
};

/// A list file of three variables.
constexpr const char* threeVars = "MB1/D\nMB2/D\nMB3/D\n";
