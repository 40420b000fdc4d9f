#pragma once

#include <gtest/gtest.h>
#include <wx/debug.h>
#include <wx/init.h>
#include <wx/log.h>

/// Counts what the toolkit would show to the operator: log messages and failed asserts.
class ToolkitWitness
{
public:
    ToolkitWitness()
        : m_oldTarget(wxLog::SetActiveTarget(&m_target)), m_oldHandler(wxSetAssertHandler(OnAssert))
    {
        asserts = 0;
    }

    ToolkitWitness(const ToolkitWitness&) = delete;
    ToolkitWitness(ToolkitWitness&&) = delete;
    ToolkitWitness& operator=(const ToolkitWitness&) = delete;
    ToolkitWitness& operator=(ToolkitWitness&&) = delete;

    ~ToolkitWitness()
    {
        wxSetAssertHandler(m_oldHandler);
        wxLog::SetActiveTarget(m_oldTarget);
    }

    int Complaints() const { return m_target.messages + asserts; }

    /// @return true when messages and asserts reach this witness.
    bool Listens() const
    {
        const int before = Complaints();
        wxLogError("heard");
        wxFAIL_MSG("heard");
        return Complaints() == before + 2;
    }

private:
    class Target : public wxLog
    {
    public:
        int messages = 0;

    protected:
        void DoLogRecord(wxLogLevel, const wxString&, const wxLogRecordInfo&) override
        {
            ++messages;
        }
    };

    static void OnAssert(const wxString&, int, const wxString&, const wxString&, const wxString&)
    {
        ++asserts;
    }

    static inline int asserts = 0;

    wxInitializer m_toolkit;
    Target m_target;
    wxLog* m_oldTarget;
    wxAssertHandler_t m_oldHandler;
};

/// Tests in which the toolkit shows the operator nothing.
class WitnessedTest : public testing::Test
{
protected:
    void TearDown() override
    {
        EXPECT_EQ(m_witness.Complaints(), 0) << "shown to the operator";
        EXPECT_TRUE(m_witness.Listens()) << "log or assert handler not restored";
    }

private:
    ToolkitWitness m_witness;
};
