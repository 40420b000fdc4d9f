#include "tempdir.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

TempDir::TempDir()
{
    std::string name = (std::filesystem::temp_directory_path() / "plcdebug-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    m_path = name;
    std::filesystem::permissions(m_path, std::filesystem::perms::all);
}

TempDir::~TempDir()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TempDir::Write(const std::string& name, const std::string& bytes) const
{
    std::ofstream file(m_path / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return File(name);
}

std::string TempDir::Read(const std::string& name) const
{
    std::ifstream file(m_path / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> TempDir::Names() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}
