#include "useractions.h"
#include "waitfor.h"
#include "watchpage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

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

namespace {

/// The host changes the list inside one request after the other of all that the page does.
class ListChangedInside : public VarPanelInside
{
protected:
    using Act = std::function<void()>;

    void LoadList(const char* lines) { ASSERT_TRUE(panel->LoadFile(dir.Write("l.plc", lines))); }

    /// @return false when @p act makes fewer than @p number requests.
    bool ChangesInsideRequest(int number, const Act& act, const Act& change)
    {
        panel->Reset();
        host.requests.clear();
        LoadList("MB1/D\nMB2/D\nMB3/D\n");
        Select({{1, 1}});
        int toCome = number;
        host.reaction = [&](const RecordedRequest& /*request*/) {
            if (--toCome == 0) {
                change();
            }
        };
        act();
        RunPending();
        host.reaction = nullptr;
        return toCome <= 0;
    }

    /// @return the ids of the variables that the host has to answer, in their order.
    std::vector<std::uint16_t> Registered() const
    {
        std::set<std::uint16_t> ids;
        for (const RecordedRequest& request : host.requests) {
            if (request.callback == Callback::Read) {
                ids.insert(request.record.key);
            } else if (request.InWords().rfind("release", 0) == 0) {
                ids.erase(request.record.key);
            }
        }
        return {ids.begin(), ids.end()};
    }

    /// Expects that each of these variables has a row, and that there are no other rows.
    void ExpectRowForEachRegistered()
    {
        std::vector<std::string> answered;
        for (const std::uint16_t id : Registered()) {
            answered.push_back(std::to_string(100 + answered.size()));
            Answer(id, std::stoi(answered.back()));
        }
        EXPECT_THAT(Column(1), testing::UnorderedElementsAreArray(answered));
    }

    void ExpectAgreementAfter(const Act& act)
    {
        const std::vector<Act> changes = {
            [this] {
                if (grid->GetNumberRows() > 0) {
                    DeleteFirst();
                }
            },
            [this] { panel->Reset(); },
            [this] { LoadList("MB7/D\nMB8/D\n"); },
        };
        for (std::size_t change = 0; change < changes.size(); ++change) {
            for (int number = 1; ChangesInsideRequest(number, act, changes[change]); ++number) {
                SCOPED_TRACE(std::to_string(change) + " inside request " + std::to_string(number));
                ExpectRowForEachRegistered();
            }
        }
    }
};

} // namespace

TEST_F(ListChangedInside, ALoadAgreesWithTheHost)
{
    ExpectAgreementAfter([this] { LoadList("MB4/D\nMB5/D\nMB6/D\n"); });
}

TEST_F(ListChangedInside, ADefineAgreesWithTheHost)
{
    ExpectAgreementAfter([this] {
        ExpectAddress("T9", "6");
        ClickAndWait(*define, [this] { return dialogs.AllShown() && frame->IsActive(); });
    });
}

TEST_F(ListChangedInside, AModifyAgreesWithTheHost)
{
    ExpectAgreementAfter([this] {
        ExpectAddress("T91", "6");
        ClickAndWait(*modify, [this] { return dialogs.AllShown() && frame->IsActive(); });
    });
}

TEST_F(ListChangedInside, ADeleteAgreesWithTheHost)
{
    ExpectAgreementAfter([this] {
        Select({{0, 0}, {2, 2}});
        wxCommandEvent pressed;
        panel->OnButtonDelete(pressed);
    });
}

TEST_F(ListChangedInside, AWriteAgreesWithTheHost)
{
    ExpectAgreementAfter([this] {
        OpenEditor(0);
        Type("7");
        ASSERT_TRUE(WaitFor("typed", [this] { return EditorText() == "7"; }));
        PressKey(WXK_RETURN);
        ASSERT_TRUE(WaitFor("end", [this] { return !grid->IsCellEditControlShown(); }));
    });
}

TEST_F(ListChangedInside, AReleaseOfAllAgreesWithTheHost)
{
    ExpectAgreementAfter([this] { panel->Reset(); });
}
