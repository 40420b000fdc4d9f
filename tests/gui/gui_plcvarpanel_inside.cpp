#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

#include <gmock/gmock.h>

// The host does something to the page from inside a callback, as it can in any loop that it runs.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Callback = RecordedRequest::Callback;

class VarPanelInside : public WatchPage
{
protected:
    /// Has the host act inside the next request of a kind.
    void InsideNext(Callback callback, const std::function<void()>& act)
    {
        host.reaction = [this, callback, act](const RecordedRequest& request) {
            if (request.callback == callback) {
                const auto once = act;
                host.reaction = nullptr;
                once();
            }
        };
    }

    void DeleteFirst()
    {
        Select({{0, 0}});
        wxCommandEvent pressed;
        panel->OnButtonDelete(pressed);
    }
};

} // namespace

TEST_F(VarPanelInside, ARowDeletedInsideTheReleaseOfModifyLeavesTheModifiedOneRight)
{
    Load({"MB1/D", "MB2/D", "MB3/D"});
    Select({{1, 1}});
    ExpectAddress("T91", "6");
    InsideNext(Callback::Delete, [this] { DeleteFirst(); });

    ClickAndWait(*modify, [this] { return host.requests.size() == 4; });

    EXPECT_THAT(host.InWords(), ElementsAre("release 1", "release 0", "read 1 MB6", "start 1"));
    EXPECT_THAT(Column(0), ElementsAre("MB 6", "MB 3"));
}

TEST_F(VarPanelInside, AListEmptiedInsideTheReleaseOfModifyStaysEmpty)
{
    Load({"MB1/D", "MB2/D"});
    Select({{1, 1}});
    ExpectAddress("T91", "6");
    InsideNext(Callback::Delete, [this] { panel->Reset(); });

    ClickAndWait(*modify, [this] { return host.requests.size() >= 3; });

    EXPECT_THAT(host.InWords(), ElementsAre("release 1", "release 0", "release 1"));
    EXPECT_THAT(Column(0), IsEmpty());
    EXPECT_FALSE(panel->IsModified());
}

TEST_F(VarPanelInside, ARowDeletedInsideTheReleaseOfAllLeavesNoVariableUnreleased)
{
    Load({"MB1/D", "MB2/D", "MB3/D"});
    InsideNext(Callback::Delete, [this] { DeleteFirst(); });

    panel->FinishVarRequest();

    EXPECT_THAT(host.InWords(), ElementsAre("release 0", "release 0", "release 1", "release 2"));
}

TEST_F(VarPanelInside, AListEmptiedInsideAWriteStaysEmpty)
{
    Load({"MB1/D"});
    OpenEditor(0);
    Type("7");
    ASSERT_TRUE(WaitFor("typed", [this] { return EditorText() == "7"; }));
    InsideNext(Callback::Write, [this] { panel->Reset(); });

    PressKey(WXK_RETURN);

    ASSERT_TRUE(WaitFor("release", [this] { return host.requests.size() >= 2; }));
    RunPending();
    EXPECT_THAT(host.InWords(), ElementsAre("write MB1=7", "release 0"));
    EXPECT_THAT(Column(0), IsEmpty());
}

TEST_F(VarPanelInside, AValueAnsweredInsideTheRequestOfDefineIsShown)
{
    ExpectAddress("T9", "3.5");
    InsideNext(Callback::Read, [this] { Answer(0, 1); });

    ClickAndWait(*define, [this] { return host.requests.size() == 2; });

    EXPECT_THAT(Column(1), ElementsAre("1"));
}
