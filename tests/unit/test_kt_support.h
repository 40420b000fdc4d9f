#pragma once

#include "filelimits.h"

#include <wx/debug.h>
#include <wx/init.h>
#include <wx/log.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

// What the tests of the core library share: files of their own, and a witness of the toolkit.

inline void WriteFile(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder that goes with the test. Every user may use it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "ktcore-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("cannot create " + name);
        }
        m_path = name;
        std::filesystem::permissions(m_path, std::filesystem::perms::all);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder(TemporaryFolder&&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(TemporaryFolder&&) = delete;

    ~TemporaryFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }

    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

    const std::filesystem::path& Path() const { return m_path; }

    std::vector<std::string> FileNames() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path m_path;
};

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
