#pragma once

#include "expecteddialogs.h"
#include "guitexts.h"
#include "plcvargrid.h"
#include "plcvarpanel.h"
#include "recordinghost.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/frame.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A watch page in a frame of its own, on the screen, with a recording host behind it.
class WatchPage : public testing::Test
{
protected:
    using Rows = std::vector<std::pair<int, int>>;

    void SetUp() override;
    void TearDown() override;

    /// Loads a list and forgets the requests that this makes; the ids go on from the last one.
    void Load(const std::vector<std::string>& lines);

    /// Expects the settings dialog and ends it with OK once @p operate has run in it.
    void ExpectSettings(const char* title, const std::function<void(wxDialog&)>& operate);

    /// Expects the settings dialog, in which the operator types an address and confirms it.
    void ExpectAddress(const char* title, const char* address);

    /// Clicks a button and waits for @p done.
    void ClickAndWait(wxButton& button, const std::function<bool()>& done);

    /// Clicks a button that only leads to this message.
    void ClickRefused(wxButton& button, const char* message);

    /// Opens the cell editor of a value cell by its key and waits for it.
    void OpenEditor(int row);

    void Answer(std::uint16_t key, std::int32_t value);

    std::string Cell(int row, int column) const;
    std::vector<std::string> Column(int column) const;
    std::string EditorText() const;
    std::string Status() const;

    /// @return first and last row of each selected block, as the toolkit reports them.
    Rows Selected() const;

    /// Selects blocks of whole rows.
    void Select(const Rows& blocks);

    bool GridHasKeyboard() const;

    /// Moves the grid's cursor and gives it the keyboard.
    void GoTo(int row, int column);

    NumberedTexts texts;
    TempDir dir;
    RecordingHost host;
    ExpectedDialogs dialogs;
    wxFrame* frame = nullptr;
    PlcVarPanel* panel = nullptr;
    PlcVarGrid* grid = nullptr;
    wxButton* define = nullptr;
    wxButton* modify = nullptr;
    wxButton* remove = nullptr;
};
