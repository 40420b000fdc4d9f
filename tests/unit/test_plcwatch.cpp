#include "file.h"
#include "tempdir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <sys/wait.h>

// The command plcwatch, run as a command.

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Plcwatch : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(base::ReplaceFile(dir.File("a.plc"), "MW4/D\nE2.4/B\n")); }

    /// Runs a line of a shell in which plcwatch is a command; keeps what it writes.
    /// @return its exit status.
    int Run(const std::string& line)
    {
        const std::string script = "cd '" + dir.Path().string() +
                                   "' && plcwatch() { '" PLCWATCH "' \"$@\"; }; { " + line +
                                   "; } >stdout.txt 2>stderr.txt";
        const int status = std::system(script.c_str());
        out = dir.Read("stdout.txt");
        errors = dir.Read("stderr.txt");
        return WEXITSTATUS(status);
    }

    const TempDir dir;
    std::string out;
    std::string errors;
};

TEST_F(Plcwatch, WatchesAListOfASampleMachineOnce)
{
    EXPECT_EQ(Run("plcwatch a.plc --machine soft:lift --once"), 0) << errors;

    EXPECT_THAT(out, HasSubstr("\tE 2.4\t1\n"));
    EXPECT_THAT(out, HasSubstr("\t\t\trunning\n"));
}

TEST_F(Plcwatch, ReadsAndWrites)
{
    EXPECT_EQ(Run("plcwatch --machine soft:lift --read E2.4"), 0) << errors;
    EXPECT_EQ(out, "1\n");
    EXPECT_EQ(Run("plcwatch --machine soft:lift --write MW300=17"), 0) << errors;
    EXPECT_EQ(Run("plcwatch --machine soft:lift --write T99=17"), 5);
    EXPECT_THAT(errors, StartsWith("plcwatch: T99 does not take this value"));
}

TEST_F(Plcwatch, SaysWhatIsMissing)
{
    EXPECT_EQ(Run("plcwatch b.plc --machine soft:lift"), 1);
    EXPECT_THAT(errors, HasSubstr("b.plc"));
    EXPECT_EQ(Run("plcwatch a.plc --machine recording:b.rec"), 1);
    EXPECT_THAT(errors, HasSubstr("b.rec"));
    EXPECT_EQ(Run("plcwatch a.plc --machine lift"), 2);
}

TEST_F(Plcwatch, EndsWellWhenNobodyReadsAnyMore)
{
    EXPECT_EQ(Run("{ plcwatch a.plc --machine soft:lift; echo $? >&2; } | head -n 1"), 0);

    EXPECT_EQ(errors, "0\n");
}

TEST_F(Plcwatch, EndsProperlyWhenItIsInterruptedOrTerminated)
{
    // It is watched by then, as its first line has been read.
    const auto endedBy = [this](const std::string& signal) {
        return Run(
            "rm -f lines; mkfifo lines; '" PLCWATCH "' a.plc --machine soft:lift >lines & "
            "exec 3<lines; read -r line <&3; kill -s " +
            signal + " $!; wait $!");
    };

    EXPECT_EQ(endedBy("TERM"), 143);
    EXPECT_EQ(endedBy("INT"), 130);
}

} // namespace
