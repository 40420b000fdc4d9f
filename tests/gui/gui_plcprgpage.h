#pragma once

#include "debugfile.h"
#include "guitexts.h"
#include "plcnotebook.h"
#include "plcprggrid.h"
#include "plcprggrid_table.h"
#include "plcprgpanel.h"
#include "recordinghost.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <wx/combobox.h>
#include <wx/frame.h>

#include <cstdint>
#include <string>
#include <vector>

// The program status page in a frame, as the second page of the notebook. GUI thread.

using Words = std::vector<std::string>;

/// @return a block of lines that name it.
DebugFileBlock Block(const std::string& name, std::uint16_t firstStep, int lineCount);

/// @return a listing with a network line before every ten instructions.
Words Networks(int lineCount);

class PlcPrgPage : public testing::Test
{
public:
    ~PlcPrgPage() override;

protected:
    /// Writes the program debug file.
    void WriteFile(const std::vector<DebugFileBlock>& blocks);

    /// Opens the frame on the file that there is, with an empty first page in front.
    void Open();

    /// Opens the frame on these blocks and turns to the program page.
    /// @return the requests that this has led to.
    Words OpenOnPage(const std::vector<DebugFileBlock>& blocks);

    /// Turns to the program page (1) or to the one before (0).
    void TurnTo(std::size_t page);

    /// What the timer of the debugger's frame does for the page at every tick.
    void Tick();

    /// Has the operator choose another block.
    void ChooseBlock(int index);

    /// Hands over an answer for all steps of the last request: state 1 and value step + @p offset
    /// each.
    void AnswerSubscribed(int offset = 0);

    /// Moves the view as the toolkit does, without any event.
    void ScrollToRow(int row);

    /// Lets the layout follow a new size of the frame.
    void Resize(const wxSize& size);

    /// @param firstStep of the block on show.
    /// @return the request in words that belongs to the rows on screen: every row is looked at, as
    ///         the rule has it.
    std::string VisibleRange(int firstStep = 0) const;

    /// @return state and value that a row shows, "?/-" for example.
    std::string Shown(int row) const;

    /// @return the requests since the last call.
    Words TakeRequests();

    NumberedTexts m_texts;
    TempDir m_dir;
    RecordingHost m_host{m_dir.File("machine")};
    wxFrame* m_frame = nullptr;
    PlcNoteBook* m_notebook = nullptr;
    PlcPrgPanel* m_panel = nullptr;
    PlcPrgGrid* m_grid = nullptr;
    wxComboBox* m_combo = nullptr;

private:
    CMD_DATA m_lastRequest{};
};
