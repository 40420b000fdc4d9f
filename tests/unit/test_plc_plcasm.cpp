#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>

// The command plcasm, run as a command.

namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class Plcasm : public testing::Test
{
protected:
    void SetUp() override { fs::create_directories(folder); }

    void TearDown() override { fs::remove_all(folder); }

    /// Runs it in the test's folder; keeps what it writes.
    /// @return its exit status.
    int Run(const std::string& arguments)
    {
        const std::string command = "cd '" + folder.string() + "' && '" PLCASM "' " + arguments +
                                    " >stdout.txt 2>stderr.txt";
        const int status = std::system(command.c_str());
        out = Content(folder / "stdout.txt");
        errors = Content(folder / "stderr.txt");
        return WEXITSTATUS(status);
    }

    void WriteSource(const std::string& text) const
    {
        std::ofstream(folder / "machine.il", std::ios::binary) << text;
    }

    const fs::path folder =
        fs::path(testing::TempDir()) /
        (std::string("plcasm_") + testing::UnitTest::GetInstance()->current_test_info()->name());
    const fs::path debugFile = folder / "machine_plcdbgi.dat";
    std::string out;
    std::string errors;
};

TEST_F(Plcasm, WritesTheDebugFile)
{
    WriteSource("OB1: TITLE Main\n U E0.0\n BE\n");

    EXPECT_EQ(Run("machine.il -o machine"), 0);

    EXPECT_EQ(out, "machine_plcdbgi.dat: blocks 1, lines 3\n");
    EXPECT_EQ(errors, "");
    EXPECT_NE(Content(debugFile).find("OB1: TITLE Main\n U E0.0\n BE\n"), std::string::npos);
}

TEST_F(Plcasm, ListsAllErrorsAndLeavesTheFormerOutput)
{
    WriteSource("OB1: TITLE Main\n X E0.0\n U E99.0\n BE\n");
    std::ofstream(debugFile) << "former";

    EXPECT_EQ(Run("machine.il -o machine"), 1);

    EXPECT_EQ(
        errors,
        "machine.il:2:2: expected an instruction, found 'X'\n"
        "machine.il:3:4: E99.0 does not exist: the last byte of this area is 63\n");
    EXPECT_EQ(out, "");
    EXPECT_EQ(Content(debugFile), "former");
}

TEST_F(Plcasm, OnlyChecksWithoutAPrefix)
{
    WriteSource("OB1: TITLE Main\n BE\n");

    EXPECT_EQ(Run("machine.il"), 0);

    EXPECT_EQ(out + errors, "");
    EXPECT_FALSE(fs::exists(debugFile));
}

TEST_F(Plcasm, NamesWhatItCannotReadOrWrite)
{
    EXPECT_EQ(Run("missing.il -o machine"), 1);
    EXPECT_EQ(errors, "missing.il:0:0: cannot read \"missing.il\": No such file or directory\n");

    WriteSource("OB1: TITLE Main\n BE\n");
    EXPECT_EQ(Run("machine.il -o missing/machine"), 3);
    EXPECT_EQ(
        errors,
        "plcasm: cannot write \"missing/machine_plcdbgi.dat\": No such file or directory\n");
}

TEST_F(Plcasm, TellsHowItIsUsed)
{
    EXPECT_EQ(Run("--help"), 0);

    EXPECT_NE(out.find("Usage: plcasm [OPTIONS] SOURCE"), std::string::npos);
    EXPECT_NE(out.find("3  cannot write"), std::string::npos);
}

TEST_F(Plcasm, NamesWhatIsWrongWithItsCommandLineInOneLine)
{
    for (const char* arguments : {"", "-o", "a.il b.il", "-x a.il", "a.il -o"}) {
        EXPECT_EQ(Run(arguments), 2) << arguments;
        EXPECT_EQ(errors.rfind("plcasm: ", 0), 0U) << arguments;
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << arguments;
        EXPECT_EQ(out, "") << arguments;
    }
    EXPECT_EQ(Run(""), 2);
    EXPECT_EQ(errors, "plcasm: SOURCE is required (plcasm --help tells more)\n");
}

} // namespace
