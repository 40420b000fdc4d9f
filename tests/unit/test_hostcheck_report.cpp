#include "report.h"

#include <gmock/gmock.h>

#include <set>

using hostcheck::Finding;
using hostcheck::Report;
using ::testing::ElementsAre;

TEST(HostcheckReport, TellsEachFindingOnceAndCountsIt)
{
    std::vector<std::string> said;
    Report report([&](const std::string& line) { said.push_back(line); });

    report.Find(Finding::WrongLength, "9 bytes");
    report.Find(Finding::WrongLength, "8 bytes");
    report.Find(Finding::NullAnswer, "none");

    EXPECT_THAT(said, ElementsAre("WRONG  wrong-length: 9 bytes", "WRONG  null-answer: none"));
    EXPECT_EQ(report.Summary(), "2 findings: null-answer (once), wrong-length (2 times)");
    EXPECT_FALSE(report.IsClean());
}

TEST(HostcheckReport, SaysThatNothingWasFound)
{
    const Report report([](const std::string&) {});

    EXPECT_TRUE(report.IsClean());
    EXPECT_EQ(report.Summary(), "nothing found");
}

TEST(HostcheckReport, NamesEachFindingDifferently)
{
    std::set<std::string> names;
    for (int i = 0; i < hostcheck::findingCount; ++i) {
        names.insert(hostcheck::NameOf(static_cast<Finding>(i)));
    }
    EXPECT_EQ(names.size(), static_cast<std::size_t>(hostcheck::findingCount));
}
