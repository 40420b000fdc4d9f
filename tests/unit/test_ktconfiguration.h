#pragma once

#include "tempdir.h"
#include "toolkitwitness.h"

#include <ktcore/ktconfiguration.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

/// A configuration on a file of the test's own.
class KtConfigurationTest : public WitnessedTest
{
public:
    KtConfiguration Settings() const { return {"Settings", "", wxString(m_file.native())}; }

    std::optional<wxString> Get(const wxString& key) const
    {
        wxString value;
        return Settings().Get(key, value) ? std::optional(value) : std::nullopt;
    }

    void Write(const std::string& text) const { m_folder.Write(m_file.filename(), text); }

    std::string Read() const { return m_folder.Read(m_file.filename()); }

    const TempDir& Folder() const { return m_folder; }

    const std::filesystem::path& File() const { return m_file; }

private:
    const TempDir m_folder;
    const std::filesystem::path m_file = m_folder.Path() / "plcdebug.ini";
};
