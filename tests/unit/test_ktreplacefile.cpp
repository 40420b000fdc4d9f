#include "tempdir.h"

#include <ktcore/ktreplacefile.h>

#include <gtest/gtest.h>

// How links, modes, protected files and a full disk are treated: see test_base_file.cpp.

TEST(KtReplaceFile, ReplacesTheFileOfThisName)
{
    const TempDir folder;
    const std::string path = folder.Write("list.plc", "a much longer old content");

    ASSERT_TRUE(KtReplaceFile(wxString(path), "new"));

    EXPECT_EQ(folder.Read("list.plc"), "new");
}

TEST(KtReplaceFile, ANameThatIsNoneIsRefused)
{
    EXPECT_FALSE(KtReplaceFile("", "text"));
    EXPECT_FALSE(KtReplaceFile("/", "text"));
}
