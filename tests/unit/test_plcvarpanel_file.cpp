#include "plcvarpanel_file.h"
#include "tempdir.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

// A list file in its folder, read and written.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> LinesOf(const std::optional<wxArrayString>& lines)
{
    std::vector<std::string> result;
    for (const wxString& line : lines.value_or(wxArrayString())) {
        result.push_back(line.ToStdString(wxConvUTF8));
    }
    return result;
}

/// Text as UTF-16 or UTF-32 with a byte-order mark, of ASCII letters.
std::string Wide(const std::string& text, std::size_t width, bool bigEndian)
{
    std::string bytes;
    const auto add = [&](const std::string& littleEndian) {
        std::string unit = littleEndian;
        unit.resize(width, '\0');
        bytes += bigEndian ? std::string(unit.rbegin(), unit.rend()) : unit;
    };
    add("\xFF\xFE");
    for (const char letter : text) {
        add(std::string(1, letter));
    }
    return bytes;
}

} // namespace

TEST(ReadListFile, TakesAnyLineEnd)
{
    const TempDir dir;
    const std::string path = dir.Write("a.plc", "M10.3/B\nEW4/H\r\nT5/D\rZ1/D");

    EXPECT_THAT(LinesOf(ReadListFile(path)), ElementsAre("M10.3/B", "EW4/H", "T5/D", "Z1/D"));
}

TEST(ReadListFile, TakesNoPipeNoDeviceAndNoFolder)
{
    const TempDir dir;
    ASSERT_EQ(::mkfifo(dir.File("pipe.plc").c_str(), S_IRUSR | S_IWUSR), 0);

    EXPECT_FALSE(ReadListFile(dir.File("pipe.plc")));
    EXPECT_FALSE(ReadListFile("/dev/zero"));
    EXPECT_FALSE(ReadListFile(dir.Path().string()));
}

TEST(ReadListFile, TakesAMegabyteAndNoMore)
{
    const TempDir dir;
    const std::string line = "M10.3/B\n";
    std::string text;
    constexpr std::size_t megabyte = 1048576;
    while (text.size() < megabyte) {
        text += line;
    }

    EXPECT_TRUE(ReadListFile(dir.Write("a.plc", text)));
    EXPECT_FALSE(ReadListFile(dir.Write("a.plc", text + "T")));
}

TEST(ReadListFile, OfAnEmptyFileHasNoLines)
{
    const TempDir dir;

    const std::optional<wxArrayString> lines = ReadListFile(dir.Write("a.plc", ""));

    ASSERT_TRUE(lines);
    EXPECT_THAT(LinesOf(lines), IsEmpty());
}

TEST(ReadListFile, TakesEveryEncodingWithAByteOrderMark)
{
    const TempDir dir;
    const std::string text = "M10.3/B\nT5/D\n";
    for (const std::string& bytes :
         {"\xEF\xBB\xBF" + text,
          Wide(text, 2, false),
          Wide(text, 2, true),
          Wide(text, 4, false),
          Wide(text, 4, true)}) {
        EXPECT_THAT(
            LinesOf(ReadListFile(dir.Write("a.plc", bytes))), ElementsAre("M10.3/B", "T5/D"));
    }
}

TEST(ReadListFile, TakesUtf8WithoutAByteOrderMark)
{
    const TempDir dir;
    const std::string path = dir.Write("a.plc", "h\xC3\xB6her\nT5/D\n");

    EXPECT_THAT(LinesOf(ReadListFile(path)), ElementsAre("h\xC3\xB6her", "T5/D"));
}

TEST(ReadListFile, OfDamagedUtf8KeepsTheGoodLines)
{
    const TempDir dir;
    const std::string path = dir.Write("a.plc", "h\xF6her\nT5/D\n");

    const std::vector<std::string> lines = LinesOf(ReadListFile(path));

    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1], "T5/D");
}

TEST(ReadListFile, OfAFileThatCannotBeOpenedIsNothing)
{
    const TempDir dir;

    EXPECT_FALSE(ReadListFile(dir.File("missing.plc")));
    EXPECT_FALSE(ReadListFile(dir.Path().string()));
    EXPECT_FALSE(ReadListFile(""));
}

TEST(WriteListFile, WritesUtf8WithoutAByteOrderMark)
{
    const TempDir dir;

    ASSERT_TRUE(WriteListFile(dir.File("a.plc"), wxString::FromUTF8("M5.ä7/B\n")));

    EXPECT_EQ(dir.Read("a.plc"), "M5.\xC3\xA4\x37/B\n");
}

TEST(WriteListFile, ReplacesTheFileWhole)
{
    const TempDir dir;
    const std::string path = dir.Write("a.plc", "\xEF\xBB\xBFlong\r\nold\r\ntext\r\n");

    ASSERT_TRUE(WriteListFile(path, "T5/D\n"));

    EXPECT_EQ(dir.Read("a.plc"), "T5/D\n");
}

TEST(WriteListFile, WritesAnEmptyFile)
{
    const TempDir dir;
    const std::string path = dir.Write("a.plc", "old\n");

    ASSERT_TRUE(WriteListFile(path, ""));

    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(dir.Read("a.plc"), "");
}

TEST(WriteListFile, LeavesNothingElseInTheDirectory)
{
    const TempDir dir;

    ASSERT_TRUE(WriteListFile(dir.File("a.plc"), "T5/D\n"));

    EXPECT_THAT(dir.Names(), ElementsAre("a.plc"));
}

TEST(WriteListFile, KeepsTheFilesMode)
{
    const TempDir dir;
    const std::string path = dir.Write("a.plc", "old\n");
    using std::filesystem::perms;
    const perms mode = perms::owner_read | perms::owner_write | perms::group_read;
    std::filesystem::permissions(path, mode);

    ASSERT_TRUE(WriteListFile(path, "T5/D\n"));

    EXPECT_EQ(std::filesystem::status(path).permissions(), mode);
}

TEST(WriteListFile, KeepsASymbolicLinkAndReplacesTheFileBehindIt)
{
    const TempDir dir;
    dir.Write("real.plc", "old\n");
    std::filesystem::create_symlink("real.plc", dir.Path() / "middle.plc");
    std::filesystem::create_symlink(dir.Path() / "middle.plc", dir.Path() / "link.plc");

    ASSERT_TRUE(WriteListFile(dir.File("link.plc"), "T5/D\n"));

    EXPECT_TRUE(std::filesystem::is_symlink(dir.Path() / "link.plc"));
    EXPECT_TRUE(std::filesystem::is_symlink(dir.Path() / "middle.plc"));
    EXPECT_EQ(dir.Read("real.plc"), "T5/D\n");
}

TEST(WriteListFile, IntoAMissingDirectoryFails)
{
    const TempDir dir;

    EXPECT_FALSE(WriteListFile(dir.File("missing/a.plc"), "T5/D\n"));
    EXPECT_FALSE(std::filesystem::exists(dir.Path() / "missing"));
}

TEST(WriteListFile, OntoADirectoryFailsAndLeavesNothingBehind)
{
    const TempDir dir;
    std::filesystem::create_directories(dir.Path() / "a.plc" / "inside");

    EXPECT_FALSE(WriteListFile(dir.File("a.plc"), "T5/D\n"));

    EXPECT_THAT(dir.Names(), ElementsAre("a.plc"));
    EXPECT_TRUE(std::filesystem::is_directory(dir.Path() / "a.plc" / "inside"));
}

TEST(WriteListFile, WithoutAPathFails)
{
    EXPECT_FALSE(WriteListFile("", "T5/D\n"));
}
