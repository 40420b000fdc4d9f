#pragma once

#include <filesystem>
#include <string>
#include <vector>

// Files of a test, in a directory of its own.

/// A new empty directory that every user may use, removed with all that it holds when the object
/// goes.
class TempDir
{
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir(TempDir&&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    TempDir& operator=(TempDir&&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

    /// Writes a file as it stands, byte by byte.
    /// @return its path.
    std::string Write(const std::string& name, const std::string& bytes) const;

    /// @return the file's bytes; empty when there is none.
    std::string Read(const std::string& name) const;

    /// @return the path that a file of this name has or would have.
    std::string File(const std::string& name) const { return (m_path / name).string(); }

    /// @return the names of what it holds, sorted.
    std::vector<std::string> Names() const;

private:
    std::filesystem::path m_path;
};
