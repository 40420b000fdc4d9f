#include "debuggertest.h"
#include "records.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <thread>

// Answers from several threads at once, of any length, and from inside the requests.

namespace {

thread_local bool isMemoryGone = false;

} // namespace

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what allocates for all others has nothing else
void* operator new(std::size_t size)
{
    void* const memory = isMemoryGone ? nullptr : std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

// NOLINTEND(cppcoreguidelines-no-malloc)

namespace {

constexpr int threadCount = 4;
constexpr int answersEach = 2000;

class Answers : public DebuggerTest
{
protected:
    void SetUp() override
    {
        UseList({"MD0/D", "MD4/D", "MD8/D", "MD12/D"});
        ASSERT_TRUE(Open());
        TakeRequests();
    }

    /// Has every thread answer for a variable of its own with 1, 2, and so on.
    void AnswerFromAllThreads()
    {
        std::vector<std::thread> threads;
        for (std::uint16_t key = 0; key < threadCount; ++key) {
            threads.emplace_back([this, key] {
                for (int value = 1; value <= answersEach; ++value) {
                    taken += Answer(key, value);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    /// Waits until only the answer for key 2 is shown.
    testing::AssertionResult ShowsAtKey2(const std::string& value)
    {
        return Shows({"MD 0|?|T30", "MD 4|?|T30", "MD 8|" + value + "|T30", "MD 12|?|T30"});
    }

    static Words RowsWith(int value)
    {
        const std::string shown = "|" + std::to_string(value) + "|T30";
        return {"MD 0" + shown, "MD 4" + shown, "MD 8" + shown, "MD 12" + shown};
    }

    std::atomic<int> taken = 0;
};

} // namespace

TEST_F(Answers, OfFourThreadsAreAllTakenAndTheNewestOfEachIsShown)
{
    AnswerFromAllThreads();

    EXPECT_EQ(taken, threadCount * answersEach);
    EXPECT_TRUE(Shows(RowsWith(answersEach)));
}

TEST_F(Answers, OfFourThreadsAreShownBehindAnOpenDialog)
{
    Click(defineButton);
    ASSERT_TRUE(DialogOpens("dialog [T9]"));

    AnswerFromAllThreads();

    EXPECT_TRUE(Shows(RowsWith(answersEach)));
    EXPECT_TRUE(AnswerDialog("dialog [T9]", wxID_CANCEL));
}

TEST_F(Answers, OfFourThreadsMayMeetTheClosingWindow)
{
    std::thread answering([this] { AnswerFromAllThreads(); });
    CloseFrame();
    EXPECT_TRUE(FrameGoes());
    answering.join();

    EXPECT_TRUE(Await("answers dropped", [this] { return Answer(0, 1) == 0; }));
}

TEST_F(Answers, WithoutEndDoNotKeepTheClosingWindowWaiting)
{
    constexpr int many = 24;
    std::atomic<bool> stop = false;
    std::vector<std::thread> threads;
    for (std::uint16_t key = 0; key < many; ++key) {
        threads.emplace_back([this, key, &stop] {
            while (!stop) {
                Answer(key, 1);
            }
        });
    }

    OnGui([] { Frame()->Close(); });
    EXPECT_TRUE(FrameGoes());

    stop = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(Answers, ForWhichThereIsNoMemoryDoNotKeepTheClosingWindowWaiting)
{
    CMD_DATA answer = PlcMakeReadAnswer(0, 1);
    isMemoryGone = true;
    EXPECT_THROW(plugin.answerReadVar(reinterpret_cast<unsigned char*>(&answer)), std::bad_alloc);
    isMemoryGone = false;

    EXPECT_EQ(Answer(0, 2), 1) << "no lock is left behind";
    Destroy();
    EXPECT_EQ(Answer(0, 3), 0);
}

TEST_F(Answers, TheNewestOfOneKeyWins)
{
    OnGui([this] { // between two ticks
        Answer(1, 10);
        Answer(3, 20);
        Answer(1, 30);
    });

    EXPECT_TRUE(Shows({"MD 0|?|T30", "MD 4|30|T30", "MD 8|?|T30", "MD 12|20|T30"}));
    Answer(1, 40);
    EXPECT_TRUE(Shows({"MD 0|?|T30", "MD 4|40|T30", "MD 8|?|T30", "MD 12|20|T30"}));
}

TEST_F(Answers, GivenInsideARequestAreShown)
{
    OnGui([this] {
        host.reaction = [this](const RecordedRequest& request) {
            if (request.callback == RecordedRequest::Callback::Read) {
                Answer(request.record.key, 7);
            }
        };
    });

    Define("16");

    EXPECT_TRUE(Await("the answer shown", [] {
        return WatchList().size() == 5 && WatchList()[4] == "MD 16|7|T30";
    }));
}

TEST_F(Answers, ShorterThanAValueCountTheMissingBytesAsZero)
{
    CMD_DATA answer = PlcMakeReadAnswer(2, 0x01020304);
    answer.length = 8;

    EXPECT_EQ(Answer(answer), 1);

    EXPECT_TRUE(ShowsAtKey2("772"));
}

TEST_F(Answers, OfAWildLengthAreClamped)
{
    CMD_DATA answer = PlcMakeReadAnswer(2, 5);
    answer.length = 0xFFFF;

    EXPECT_EQ(Answer(answer), 1);

    EXPECT_TRUE(ShowsAtKey2("5"));
}

TEST_F(Answers, MayStandAtAnOddAddressAndTheirBufferMayBeReusedAtOnce)
{
    std::vector<unsigned char> buffer(PLC_CMD_SIZE + 1);
    const CMD_DATA answer = PlcMakeReadAnswer(2, 5);
    std::memcpy(buffer.data() + 1, &answer, sizeof answer);

    EXPECT_EQ(plugin.answerReadVar(buffer.data() + 1), 1);
    std::fill(buffer.begin(), buffer.end(), '\xFF');

    EXPECT_TRUE(ShowsAtKey2("5"));
}

TEST_F(Answers, OfAnyCommandWordAreTaken)
{
    CMD_DATA answer = PlcMakeReadAnswer(2, 5);
    answer.command = 0;

    EXPECT_EQ(Answer(answer), 1);

    EXPECT_TRUE(ShowsAtKey2("5"));
}

TEST_F(Answers, ForStepsThatNobodyAskedForAreDropped)
{
    CMD_DATA answer = PrgStateAnswerRecord(-1, -1, {});

    EXPECT_EQ(plugin.answerProgramState(reinterpret_cast<unsigned char*>(&answer)), 1);
    AwaitThreeTicks();

    EXPECT_EQ(OnGui([] { return GridOn(programPage).GetCellValue(0, 0); }), "?");
}
