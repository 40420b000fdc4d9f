#include "watchpage.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class VarPanelDelete : public WatchPage
{
protected:
    void Delete(const Rows& blocks, int rowsLeft)
    {
        Select(blocks);
        ClickAndWait(*remove, [this, rowsLeft] { return grid->GetNumberRows() == rowsLeft; });
    }
};

const std::vector<std::string> eightVars = {
    "MB0/D", "MB1/D", "MB2/D", "MB3/D", "MB4/D", "MB5/D", "MB6/D", "MB7/D"};

} // namespace

TEST_F(VarPanelDelete, RefusesToDeleteNothing)
{
    ClickRefused(*remove, "T95");

    Load({"MB1/D"});
    Select({});
    ClickRefused(*remove, "T95");
    EXPECT_EQ(grid->GetNumberRows(), 1);
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelDelete, DeletesTheSelectedRow)
{
    Load({"MB1/D", "MB2/D", "MB3/D"});

    Delete({{1, 1}}, 2);

    EXPECT_THAT(Column(0), ElementsAre("MB 1", "MB 3"));
    EXPECT_THAT(host.InWords(), ElementsAre("release 1"));
    EXPECT_TRUE(panel->IsModified());
}

TEST_F(VarPanelDelete, DeletesOnlyTheLastRowWhenThatIsSelected)
{
    Load(eightVars);
    GoTo(7, 0);
    ASSERT_THAT(Selected(), ElementsAre(Pair(7, 7)));

    ClickAndWait(*remove, [this] { return grid->GetNumberRows() < 8; });

    EXPECT_EQ(grid->GetNumberRows(), 7);
    EXPECT_THAT(host.InWords(), ElementsAre("release 7"));
    EXPECT_THAT(Selected(), IsEmpty());
}

TEST_F(VarPanelDelete, DeletesEveryBlockInListOrder)
{
    Load(eightVars);

    Delete({{1, 1}, {3, 4}, {7, 7}}, 4);

    EXPECT_THAT(Column(0), ElementsAre("MB 0", "MB 2", "MB 5", "MB 6"));
    EXPECT_THAT(host.InWords(), ElementsAre("release 1", "release 3", "release 4", "release 7"));
}

TEST_F(VarPanelDelete, DeletesBlocksThatWereSelectedFromTheBottomUp)
{
    Load(eightVars);

    Delete({{6, 7}, {0, 1}}, 4);

    EXPECT_THAT(Column(0), ElementsAre("MB 2", "MB 3", "MB 4", "MB 5"));
    EXPECT_THAT(
        host.InWords(),
        testing::UnorderedElementsAre("release 0", "release 1", "release 6", "release 7"));
}

TEST_F(VarPanelDelete, DeletesOverlappingBlocksOnce)
{
    Load(eightVars);

    Delete({{2, 5}, {4, 6}}, 3);

    EXPECT_THAT(Column(0), ElementsAre("MB 0", "MB 1", "MB 7"));
    EXPECT_EQ(host.requests.size(), 5U);
}

TEST_F(VarPanelDelete, DeletesTheWholeList)
{
    Load(eightVars);

    Delete({{0, 7}}, 0);

    EXPECT_EQ(host.requests.size(), 8U);
    ClickRefused(*remove, "T95");
}

TEST_F(VarPanelDelete, DropsAnAnswerForADeletedVariable)
{
    Load({"MB1/D", "MB2/D"});
    Delete({{0, 0}}, 1);

    Answer(0, 5);

    EXPECT_THAT(Column(0), ElementsAre("MB 2"));
    EXPECT_THAT(Column(1), ElementsAre("?"));
}

TEST_F(VarPanelDelete, SurvivesAHostThatEmptiesTheListInsideTheRelease)
{
    Load(eightVars);
    bool first = true;
    host.reaction = [&](const RecordedRequest&) {
        if (first) {
            first = false;
            panel->Reset();
        }
    };

    Delete({{2, 4}}, 0);

    EXPECT_THAT(Selected(), IsEmpty());
}
