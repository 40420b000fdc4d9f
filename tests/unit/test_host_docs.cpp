#include "plcdebug_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

// The offsets that the integrators' page states are those of the header.

namespace {

using testing::ContainerEq;

/// Offsets on 32 and on 64 bits by field.
using Layout = std::map<std::string, std::pair<std::size_t, std::size_t>>;

/// The rows of the table that stands below "`PLC_DBG_INIT`:".
Layout DocumentedLayout()
{
    std::ifstream in(PROJECT_DIR "/docs/integration.md");
    Layout layout;
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
        inside = line == "`PLC_DBG_INIT`:" || (inside && (line.empty() || line[0] == '|'));
        const auto name = line.find_first_not_of("| `");
        if (!inside || line.empty() || line.find_first_of("0123456789") == std::string::npos ||
            line.find("bits") != std::string::npos)
            continue;
        const auto narrow = line.find('|', name);
        const auto wide = line.find('|', narrow + 1);
        layout[line.substr(name, line.find_first_of("` ", name) - name)] = {
            std::stoul(line.substr(narrow + 1)), std::stoul(line.substr(wide + 1))};
    }
    return layout;
}

/// @param number of pointers that stand before.
std::pair<std::size_t, std::size_t> Behind(std::size_t pointers)
{
    return {PLC_PATH_SIZE + 4 * pointers, PLC_PATH_SIZE + 8 * pointers};
}

TEST(IntegrationPage, StatesTheLayoutOfTheRecordOnBothArchitectures)
{
    EXPECT_THAT(
        DocumentedLayout(),
        ContainerEq(Layout{
            {"szPath", {0, 0}},
            {"pfnTallFrame", Behind(0)},
            {"pfnReadVarRequest", Behind(1)},
            {"pfnWriteVarRequest", Behind(2)},
            {"pfnPrgStateRequest", Behind(3)},
            {"pfnDeleteVarRequest", Behind(4)},
            {"reserved", Behind(5)},
            {"size", Behind(6)}}));
}

TEST(IntegrationPage, StatesTheLayoutThatTheCompilerMakes)
{
    Layout layout = DocumentedLayout();
    const auto stated = [&layout](const std::string& field) {
        return sizeof(void*) == 4 ? layout[field].first : layout[field].second;
    };

    EXPECT_EQ(stated("szPath"), offsetof(PLC_DBG_INIT, szPath));
    EXPECT_EQ(stated("pfnTallFrame"), offsetof(PLC_DBG_INIT, pfnTallFrame));
    EXPECT_EQ(stated("pfnReadVarRequest"), offsetof(PLC_DBG_INIT, pfnReadVarRequest));
    EXPECT_EQ(stated("pfnWriteVarRequest"), offsetof(PLC_DBG_INIT, pfnWriteVarRequest));
    EXPECT_EQ(stated("pfnPrgStateRequest"), offsetof(PLC_DBG_INIT, pfnPrgStateRequest));
    EXPECT_EQ(stated("pfnDeleteVarRequest"), offsetof(PLC_DBG_INIT, pfnDeleteVarRequest));
    EXPECT_EQ(stated("reserved"), offsetof(PLC_DBG_INIT, reserved));
    EXPECT_EQ(stated("size"), sizeof(PLC_DBG_INIT));
}

} // namespace
