#pragma once

#include "pages.h"
#include "random_steps.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

// A page in a real window beside the same taken literally: every request, cell, width and selection
// has to agree. GUI thread.

/// Random steps on a pair of pages.
class Session
{
public:
    Session(const StepOptions& options, Dice& dice) : m_options(options), m_dice(dice) {}

    virtual ~Session() = default;
    Session(const Session&) = delete;
    Session(Session&&) = delete;
    Session& operator=(const Session&) = delete;
    Session& operator=(Session&&) = delete;

    /// @param step counted through all sessions.
    void Run(int step);

protected:
    virtual void BeginRun(int run) = 0;
    virtual void Step() = 0;
    virtual wxFrame& Frame() = 0;
    /// @param whole with all cells.
    virtual void Compare(bool whole) = 0;

    Dice& Random() { return m_dice; }

    /// To be called by a step that may change the layout.
    void NoteLayoutChange() { m_layoutChanged = true; }

    wxSize RandomSize();

    /// Does the same on both sides; the requests that this leads to have to agree.
    template <typename OnProduct, typename OnReference>
    void Both(RecordingHost& host, OnProduct onProduct, OnReference onReference)
    {
        host.requests.clear(); // what both pages have sent in between, by events of their own
        onProduct();
        const std::vector<std::string> product = host.TakeInWords();
        onReference();
        const std::vector<std::string> reference = host.TakeInWords();
        Require(
            product == reference,
            "requests " + testing::PrintToString(product) + " and " +
                testing::PrintToString(reference));
    }

    void Require(bool same, const std::string& what) const
    {
        RequireAgreement(same, m_options, m_step, what);
    }

private:
    /// Neither side may begin a step while a former one still changes its layout.
    void SettleLayout();

    const StepOptions& m_options;
    Dice& m_dice;
    int m_step = 0;
    bool m_layoutChanged = false;
};

/// Of the program pages.
/// @param withLargest one of the blocks has as many lines as a block can have.
std::unique_ptr<Session> NewPrgSession(const StepOptions& options, Dice& dice, bool withLargest);

/// Of the watch pages.
std::unique_ptr<Session> NewVarSession(const StepOptions& options, Dice& dice);
