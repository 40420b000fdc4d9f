#include "debug_file.h"
#include "messageof.h"
#include "projectfile.h"
#include "test_plc_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using plctest::Assembled;
using plctest::CyclicBlock;

struct ReadLine
{
    std::string text;
    std::int32_t step;
};

struct ReadBlock
{
    std::string name;
    std::uint32_t firstStep;
    std::vector<ReadLine> lines;
};

/// Reads the file by the rules of the program page, which know nothing of the assembler.
class Reader
{
public:
    explicit Reader(std::string bytes) : m_bytes(std::move(bytes)) {}

    std::vector<ReadBlock> Blocks() const
    {
        std::vector<ReadBlock> blocks;
        const std::uint32_t index = Number(8, 4);
        for (std::uint32_t i = 0; i < Number(index, 4); ++i) {
            const std::size_t at = index + 4 + i * 56;
            ReadBlock block;
            block.name = m_bytes.substr(at, std::min(m_bytes.find('\0', at) - at, std::size_t{48}));
            block.firstStep = Number(at + 48, 2);
            block.lines = Lines(Number(at + 52, 4), Number(at + 50, 2), block.firstStep);
            blocks.push_back(block);
        }
        EXPECT_EQ(m_bytes.size(), index + 4 + blocks.size() * 56);
        return blocks;
    }

private:
    std::uint32_t Number(std::size_t at, std::size_t count) const
    {
        std::uint32_t value = 0;
        for (std::size_t i = count; i-- > 0;) {
            value = value << 8U | static_cast<unsigned char>(m_bytes.at(at + i));
        }
        return value;
    }

    std::vector<ReadLine> Lines(std::size_t at, std::uint32_t count, std::uint32_t step) const
    {
        std::vector<ReadLine> lines;
        for (std::uint32_t i = 0; i < count; ++i) {
            // As fgets does with a buffer of 256 bytes.
            const std::size_t length = std::min<std::size_t>(m_bytes.find('\n', at) + 1 - at, 255);
            std::string text = m_bytes.substr(at, length);
            at += length;
            text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
            const std::string judged =
                text.find(':') == std::string::npos ? text : text.substr(text.find(':') + 1);
            bool isExecutable = true;
            for (const char* word : {"NOP", "BLD", "NETWORK", "TITLE"}) {
                isExecutable = isExecutable && judged.find(word) == std::string::npos;
            }
            lines.push_back({text, isExecutable ? static_cast<std::int32_t>(step++) : -1});
        }
        return lines;
    }

    std::string m_bytes;
};

std::string Written(const plc::Program& program)
{
    const auto bytes = plc::DebugFileOf(program);
    EXPECT_TRUE(bytes);
    return bytes ? *bytes : "";
}

void ExpectSameListing(const plc::Program& program)
{
    const auto blocks = Reader(Written(program)).Blocks();
    ASSERT_EQ(blocks.size(), program.blocks.size());
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const plc::Block& block = program.blocks[i];
        EXPECT_EQ(blocks[i].firstStep, static_cast<std::uint32_t>(block.firstStep));
        ASSERT_EQ(blocks[i].lines.size(), block.lines.size());
        for (std::size_t line = 0; line < block.lines.size(); ++line) {
            EXPECT_EQ(blocks[i].lines[line].text, block.lines[line].text);
            EXPECT_EQ(blocks[i].lines[line].step, block.lines[line].step);
        }
    }
}

TEST(IsExecutable, OnlyTheTextAfterTheFirstColonDecides)
{
    EXPECT_FALSE(plc::IsExecutable("PB1: NETWORK 3"));
    EXPECT_FALSE(plc::IsExecutable("NOP"));
    EXPECT_FALSE(plc::IsExecutable("M1: U E0.0 // TITLE"));
    EXPECT_FALSE(plc::IsExecutable("U E0.0 // BLD"));
    EXPECT_FALSE(plc::IsExecutable("A: B: NOP"));
    EXPECT_FALSE(plc::IsExecutable("U E0.0 XNOPX"));
    EXPECT_TRUE(plc::IsExecutable("U E0.0"));
    EXPECT_TRUE(plc::IsExecutable("NOP1: U E0.0"));
    EXPECT_TRUE(plc::IsExecutable("// NETWORK 3: belt"));
    EXPECT_TRUE(plc::IsExecutable("nop"));
    EXPECT_TRUE(plc::IsExecutable(""));
}

TEST(DebugFile, HoldsHeaderListingAndIndex)
{
    const auto program =
        Assembled(plc::Assemble("OB1: TITLE Main\n BE\nPB2: TITLE\n U E0.0\n BE\n", "a.il"));

    const std::string bytes = Written(program);

    const std::string listing = "OB1: TITLE Main\n BE\nPB2: TITLE\n U E0.0\n BE\n";
    EXPECT_EQ(bytes.substr(0, 8), "PLCDBGI1");
    EXPECT_EQ(bytes.substr(8, 4), std::string("\x37\0\0\0", 4));
    EXPECT_EQ(bytes.substr(12, listing.size()), listing);
    EXPECT_EQ(bytes.substr(55, 4), std::string("\2\0\0\0", 4));
    EXPECT_EQ(
        bytes.substr(59, 56),
        std::string("OB1 Main") + std::string(40, '\0') + std::string("\1\0\2\0\x0C\0\0\0", 8));
    EXPECT_EQ(
        bytes.substr(115, 56),
        std::string("PB2") + std::string(45, '\0') + std::string("\2\0\3\0\x20\0\0\0", 8));
    EXPECT_EQ(bytes.size(), 171U);
}

TEST(DebugFile, ThePageFindsTheStepsOfTheAssembler)
{
    ExpectSameListing(Assembled(plc::Assemble(
        CyclicBlock(
            "// remark\n\nLAB:\n NETWORK 1\n NOP 0\nX: BLD 2\n U E0.0 // no NOP\n"
            "// NOP: here\nNOP1: U E0.0 // a: TITLE\n SPA NOP1\n// Füllventil NETWORK\n"
            "// " +
            std::string(251, 'x')),
        "a.il")));
}

TEST(DebugFile, ThePageFindsTheStepsOfTheBottlingLine)
{
    ExpectSameListing(Assembled(plc::AssembleFile(ProjectFile("samples/bottling/bottling.il"))));
}

TEST(DebugFile, ALongNameIsCutAfterAWholeCharacter)
{
    const auto program =
        Assembled(plc::Assemble("OB1: TITLE " + std::string(42, 'x') + "ü\n BE\n", "a.il"));

    const auto blocks = Reader(Written(program)).Blocks();

    EXPECT_EQ(blocks[0].name, "OB1 " + std::string(42, 'x'));
}

TEST(DebugFile, ANameMayFillItsFieldButForTheZero)
{
    const auto program =
        Assembled(plc::Assemble("OB1: TITLE " + std::string(60, 'x') + "\n BE\n", "a.il"));

    EXPECT_EQ(Reader(Written(program)).Blocks()[0].name, "OB1 " + std::string(43, 'x'));
}

/// A folder of its own for each test.
class DebugFileOnDisk : public testing::Test
{
protected:
    void SetUp() override { std::filesystem::create_directories(folder); }

    void TearDown() override { std::filesystem::remove_all(folder); }

    std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) /
        (std::string("plc_") + testing::UnitTest::GetInstance()->current_test_info()->name());
    plc::Program program = Assembled(plc::Assemble(CyclicBlock("U E0.0"), "a.il"));
};

TEST_F(DebugFileOnDisk, IsWrittenBehindThePrefix)
{
    const std::string prefix = (folder / "machine").string();

    ASSERT_TRUE(plc::WriteDebugFile(program, prefix));

    std::ifstream in(prefix + "_plcdbgi.dat", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    EXPECT_EQ(bytes, Written(program));
    const auto files = std::distance(
        std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    EXPECT_EQ(files, 1) << "nothing is left beside it";
}

TEST_F(DebugFileOnDisk, AFolderThatDoesNotExistIsReported)
{
    const std::string prefix = (folder / "missing" / "machine").string();

    EXPECT_EQ(
        MessageOf(plc::WriteDebugFile(program, prefix)),
        "cannot write \"" + prefix + "_plcdbgi.dat\": No such file or directory");
}

TEST_F(DebugFileOnDisk, AFailureLeavesTheFormerFile)
{
    const auto path = folder / "machine_plcdbgi.dat";
    std::filesystem::create_directories(path / "in the way");

    EXPECT_FALSE(plc::WriteDebugFile(program, (folder / "machine").string()));

    EXPECT_TRUE(std::filesystem::exists(path / "in the way"));
    EXPECT_FALSE(std::filesystem::exists(path.string() + ".new"));
}

TEST(CheckDebugBytes, TakesWhatIsWrittenAndNothingThatIsCutOff)
{
    const std::string bytes =
        Written(Assembled(plc::AssembleFile(ProjectFile("samples/instructions/instructions.il"))));

    EXPECT_TRUE(plc::CheckDebugBytes(bytes));
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(plc::CheckDebugBytes(std::string_view(bytes).substr(0, size))) << size;
    }
}

TEST(CheckDebugBytes, RefusesForeignBytes)
{
    EXPECT_EQ(MessageOf(plc::CheckDebugBytes("")), "it is no program debug file");
    EXPECT_EQ(
        MessageOf(plc::CheckDebugBytes(std::string(10000, 'x'))), "it is no program debug file");
    EXPECT_FALSE(plc::CheckDebugBytes(std::string(10000, '\0')));
    EXPECT_FALSE(plc::CheckDebugBytes(std::string(10000, '\x01')));
}

TEST(CheckDebugBytes, RefusesALineThatDoesNotEnd)
{
    std::string bytes = Written(Assembled(plc::Assemble(CyclicBlock("U E0.0"), "a.il")));

    std::replace(bytes.begin(), bytes.end(), '\n', ' ');

    EXPECT_EQ(MessageOf(plc::CheckDebugBytes(bytes)), "it is no whole program debug file");
}

} // namespace
