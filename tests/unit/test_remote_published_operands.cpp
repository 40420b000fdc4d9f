#include "published_operands.h"
#include "scriptedsource.h"
#include "silentwatcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace plcremote {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

plc::Operand OperandOf(const char* name)
{
    return plc::ParseOperand(name).value();
}

struct PublishedOperandsTest : testing::Test
{
    PublishedOperandsTest()
    {
        auto made = std::make_unique<ScriptedSource>();
        source = made.get();
        link.emplace(std::move(made));
        link->Start();
        operands.emplace(*link);
    }

    std::vector<std::string> Read() const
    {
        std::vector<std::string> names;
        for (const plc::Operand& operand : *source->list) {
            names.push_back(plc::OperandName(operand));
        }
        return names;
    }

    std::vector<std::string> Known() const
    {
        std::vector<std::string> texts;
        for (const auto& known : operands->Known()) {
            texts.push_back(plc::OperandName(known.operand) + known.refusal);
        }
        return texts;
    }

    ScriptedSource* source = nullptr;
    std::optional<plclink::MachineLink> link;
    std::optional<PublishedOperands> operands;
};

TEST_F(PublishedOperandsTest, AreThoseThatAreWantedNow)
{
    EXPECT_TRUE(operands->Serve({OperandOf("MW20"), OperandOf("MW22"), OperandOf("MW20")}));
    EXPECT_THAT(Read(), ElementsAre("MW20", "MW22"));

    EXPECT_FALSE(operands->Serve({OperandOf("MW22")}));

    EXPECT_THAT(Read(), ElementsAre("MW22"));
    EXPECT_THAT(Known(), ElementsAre("MW22"));
}

TEST_F(PublishedOperandsTest, AreNotThoseThatSomebodyElseWatches)
{
    SilentWatcher local;
    link->Watch(local, OperandOf("MW24"));

    operands->Serve({OperandOf("MW20")});

    EXPECT_THAT(Known(), ElementsAre("MW20"));
    link->Unwatch(local);
}

TEST_F(PublishedOperandsTest, SayWhatTheMachineNeverTells)
{
    EXPECT_TRUE(operands->Serve({OperandOf("AW0")}));
    EXPECT_THAT(Known(), ElementsAre("AW0no outputs here"));

    operands->LetGo();

    EXPECT_THAT(Known(), IsEmpty());
}

} // namespace
} // namespace plcremote
