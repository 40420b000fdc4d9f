#include "exports.h"
#include "messageof.h"
#include "tempdir.h"

#include <gmock/gmock.h>

using plccheck::ExportsOf;
using testing::HasSubstr;
using testing::IsSupersetOf;

namespace {

TEST(ExportsOfTest, AreTheNamesThatALibraryOffers)
{
    const auto names = ExportsOf(FAKE_PLUGIN);
    ASSERT_TRUE(names);
    EXPECT_THAT(
        *names,
        IsSupersetOf(
            {std::string("ExportAnswerProgState"),
             std::string("ExportAnswerReadVar"),
             std::string("ExportCreatePlcDebugger"),
             std::string("ExportDestroyPlcDebugger")}));
}

TEST(ExportsOfTest, AreNoneOfAFileThatIsNoLibrary)
{
    const TempDir folder;
    for (const std::string& content :
         {std::string(), std::string("no library"), std::string(4096, '\xff')}) {
        EXPECT_THAT(
            MessageOf(ExportsOf(folder.Write("text", content))),
            HasSubstr("has no table of what it exports"));
    }
}

TEST(ExportsOfTest, AreNoneOfAFileThatIsNotThere)
{
    EXPECT_THAT(MessageOf(ExportsOf("/nowhere.so")), HasSubstr("/nowhere.so"));
}

} // namespace
