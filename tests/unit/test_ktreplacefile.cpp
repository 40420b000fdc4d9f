#include "test_kt_support.h"

#include <ktcore/ktreplacefile.h>

#include <gmock/gmock.h>

// How links, modes, protected files and a full disk are treated: see the tests of KtConfiguration,
// which writes its file this way.

namespace {

bool Replace(const std::filesystem::path& path, const std::string& bytes)
{
    return KtReplaceFile(wxString(path.native()), bytes);
}

} // namespace

TEST(KtReplaceFile, WritesTheBytesAsTheyAre)
{
    const TemporaryFolder folder;
    const std::string bytes("\0\r\n\xff", 4);
    WriteFile(folder / "list.plc", "a much longer old content");

    ASSERT_TRUE(Replace(folder / "list.plc", bytes));
    ASSERT_TRUE(Replace(folder / "new.plc", bytes));

    EXPECT_EQ(ReadFile(folder / "list.plc"), bytes);
    EXPECT_EQ(ReadFile(folder / "new.plc"), bytes);
}

TEST(KtReplaceFile, NoBytesMakeAnEmptyFile)
{
    const TemporaryFolder folder;
    WriteFile(folder / "list.plc", "old");

    ASSERT_TRUE(Replace(folder / "list.plc", ""));

    EXPECT_EQ(ReadFile(folder / "list.plc"), "");
    EXPECT_THAT(folder.FileNames(), testing::ElementsAre("list.plc"));
}

TEST(KtReplaceFile, ANameThatIsNoneIsRefused)
{
    EXPECT_FALSE(KtReplaceFile("", "text"));
    EXPECT_FALSE(KtReplaceFile("/", "text"));
}
