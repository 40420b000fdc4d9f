#include "command_line.h"

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

namespace {

/// A program with one option, and what it has said.
struct Program
{
    std::optional<int> Read(std::vector<const char*> words)
    {
        words.insert(words.begin(), "/usr/bin/other-name");
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const auto ended = base::ReadCommandLine(app, static_cast<int>(words.size()), words.data());
        out = testing::internal::GetCapturedStdout();
        errors = testing::internal::GetCapturedStderr();
        return ended;
    }

    int count = 0;
    CLI::App app{"Counts.", "counter"};
    CLI::Option* option = app.add_option("--count", count, "how many");
    std::string out;
    std::string errors;
};

TEST(ReadCommandLine, LetsTheProgramGoOn)
{
    Program program;

    EXPECT_EQ(program.Read({"--count", "3"}), std::nullopt);

    EXPECT_EQ(program.count, 3);
    EXPECT_EQ(program.out + program.errors, "");
}

TEST(ReadCommandLine, EndsTheProgramWellWhenItHasHelped)
{
    Program program;

    EXPECT_EQ(program.Read({"--help"}), 0);

    EXPECT_NE(program.out.find("how many"), std::string::npos);
    EXPECT_EQ(program.errors, "");
}

TEST(ReadCommandLine, TellsTheVersionAlsoWhenSomethingThatIsRequiredIsMissing)
{
    Program program;
    program.option->required();

    EXPECT_EQ(program.Read({"--version"}), 0);

    EXPECT_TRUE(std::regex_match(program.out, std::regex("counter \\d+\\.\\d+\\.\\d+\n")))
        << program.out;
    EXPECT_EQ(program.errors, "");
}

TEST(ReadCommandLine, EndsTheProgramWithOneLineAboutWhatIsWrong)
{
    Program program;

    EXPECT_EQ(program.Read({"--count", "x"}), base::exitUsage);

    EXPECT_EQ(program.out, "");
    EXPECT_EQ(
        program.errors, "counter: Could not convert: --count = x (counter --help tells more)\n");
}

} // namespace
