#include "test_kt_support.h"

#include <ktcore/ktreplacefile.h>

#include <gtest/gtest.h>

// How links, modes, protected files and a full disk are treated: see test_base_file.cpp.

TEST(KtReplaceFile, ReplacesTheFileOfThisName)
{
    const TemporaryFolder folder;
    WriteFile(folder / "list.plc", "a much longer old content");

    ASSERT_TRUE(KtReplaceFile(wxString((folder / "list.plc").native()), "new"));

    EXPECT_EQ(ReadFile(folder / "list.plc"), "new");
}

TEST(KtReplaceFile, ANameThatIsNoneIsRefused)
{
    EXPECT_FALSE(KtReplaceFile("", "text"));
    EXPECT_FALSE(KtReplaceFile("/", "text"));
}
