#include "destroyinside.h"

// The host calls more than destroy from inside a callback.

TEST_F(DestroyInside, AndCreatedAgainInTheSameCallbackTheDebuggerIsOpen)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    int created = -1;
    ReactOnce(Callback::Write, [this, &created] {
        plugin.destroy();
        created = plugin.create(&host.init);
    });

    EnterValue(0, "5");

    ASSERT_TRUE(Requests({"write MW20=5", "release 0", "read 0 MW20", "start 0"}));
    EXPECT_EQ(created, 1);
    AwaitThreeTicks(); // the frame before has gone
    EXPECT_EQ(Answer(0, 7), 1);
    EXPECT_TRUE(Shows({"MW 20|7|T30"}));
}

TEST_F(DestroyInside, AndCreatedAndDestroyedAgainInTheSameCallbackNothingIsLeft)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    TakeRequests();
    ReactOnce(Callback::Write, [this] {
        plugin.destroy();
        plugin.create(&host.init);
        plugin.destroy();
    });

    EnterValue(0, "5");

    EXPECT_TRUE(EverythingGoes());
    EXPECT_TRUE(Requests({"write MW20=5", "release 0", "read 0 MW20", "start 0", "release 0"}));
    ReopenAndUse();
}

TEST_F(DestroyInside, NothingIsCreatedWhileItRuns)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    int created = -1;
    ReactOnce(Callback::Delete, [this, &created] { created = plugin.create(&host.init); });

    Destroy();

    EXPECT_EQ(created, 0);
    EXPECT_TRUE(EverythingGoes());
    EXPECT_EQ(Answer(0, 1), 0);
    TakeRequests();
    ReopenAndUse();
}

TEST_F(DestroyInside, NothingIsCreatedUnderTheQuestionThatItAsks)
{
    ASSERT_TRUE(Open());
    Define("1.0");
    PostToGui([this] { plugin.destroy(); });
    ASSERT_TRUE(DialogOpens("question [T79] T78"));

    EXPECT_EQ(Create(), 0);

    EXPECT_TRUE(AnswerDialog("question [T79] T78", wxID_NO));
    EXPECT_TRUE(EverythingGoes());
    TakeRequests();
    ReopenAndUse();
}

TEST_F(DestroyInside, AnswersDuringTheReleasesThatItLeadsToAreDropped)
{
    UseList({"MW20/D"});
    ASSERT_TRUE(Open());
    int taken = -1;
    ReactOnce(Callback::Write, [this, &taken] {
        ReactOnce(Callback::Delete, [this, &taken] { taken = Answer(0, 1); });
        plugin.destroy();
    });

    EnterValue(0, "5");

    EXPECT_TRUE(EverythingGoes());
    EXPECT_EQ(taken, 0);
}
