#include "checks.h"
#include "record.h"
#include "shown.h"
#include "window.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <stdexcept>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace plccheck {

namespace {

using plchost::AnswerKind;

constexpr int threadCount = 4;
constexpr int answersEach = 2000;
constexpr std::uint16_t wildLength = 0xFFFF;

/// Bytes that end where memory ends: who reads behind them crashes.
class EndOfMemory
{
public:
    EndOfMemory()
    {
        if (m_pages == MAP_FAILED || mprotect(m_pages + m_pageSize, m_pageSize, PROT_NONE) != 0) {
            throw std::runtime_error("no memory for the checks");
        }
    }

    ~EndOfMemory() { munmap(m_pages, 2 * m_pageSize); }

    EndOfMemory(const EndOfMemory&) = delete;
    EndOfMemory(EndOfMemory&&) = delete;
    EndOfMemory& operator=(const EndOfMemory&) = delete;
    EndOfMemory& operator=(EndOfMemory&&) = delete;

    /// @return the record, of which only the first @p size bytes may be read.
    const CMD_DATA* Put(const CMD_DATA& record, std::size_t size)
    {
        std::uint8_t* const place = m_pages + m_pageSize - size;
        std::memcpy(place, &record, size);
        return reinterpret_cast<const CMD_DATA*>(place);
    }

private:
    const std::size_t m_pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    std::uint8_t* const m_pages = static_cast<std::uint8_t*>(
        mmap(nullptr, 2 * m_pageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
};

void DuringCreate(TrialHost& host)
{
    host.reaction = [&host](const CMD_DATA& request) {
        const CMD_DATA answer = PlcMakeReadAnswer(request.key, 1);
        host.Require(
            host.Answer(AnswerKind::ReadVar, &answer) == 0, "an answer during create is taken");
    };
    const bool created = host.Create() == 1;
    host.reaction = nullptr;
    if (host.Require(created, "create does not return 1")) {
        host.Destroy();
    }
    host.IsGone();
}

/// @return how many answers were taken.
int AnswerFromThreads(const TrialHost& host)
{
    std::atomic<int> taken = 0;
    std::vector<std::thread> threads;
    for (std::uint16_t key = 0; key < threadCount; ++key) {
        threads.emplace_back([&host, &taken, key] {
            for (int value = 0; value < answersEach; ++value) {
                const CMD_DATA answer = PlcMakeReadAnswer(key, value);
                taken += host.Answer(AnswerKind::ReadVar, &answer);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return taken;
}

void FromThreads(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    const auto before = StillPicture(host);
    host.Reports().Step("answers from four threads");
    std::atomic<int> taken = -1;
    std::thread answering([&] { taken = AnswerFromThreads(host); });
    host.Await("the answering threads", [&] { return taken >= 0; });
    answering.join();
    host.Require(taken == threadCount * answersEach, "answers of threads are not taken");
    AwaitChange(host, before);
    host.Destroy();
    host.IsGone();
}

void MeetTheCloseBox(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    host.Reports().Step("closes the window while four threads answer");
    std::thread answering([&] { AnswerFromThreads(host); });
    gtk_window_close(DebuggerWindow());
    host.Await("the window to go", [] { return DebuggerWindow() == nullptr; });
    answering.join();
    host.Await("the releases after the close box", [&] { return host.Served().empty(); });
    host.IsGone();
    host.Destroy();
}

void OfAnyLength(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    host.Reports().Step("answers with every length word");
    EndOfMemory memory;
    for (unsigned length = 0; length <= wildLength; ++length) {
        CMD_DATA answer = PlcMakeReadAnswer(0, 1);
        answer.length = static_cast<std::uint16_t>(length);
        const std::size_t size = std::clamp<std::size_t>(
            length, std::size_t{PLC_CMD_HEADER_SIZE}, std::size_t{PLC_CMD_SIZE});
        for (const auto kind : {AnswerKind::ReadVar, AnswerKind::ProgramState}) {
            if (!host.Require(
                    host.Answer(kind, memory.Put(answer, size)) == 1,
                    "an answer of length " + std::to_string(length) + " is not taken")) {
                return;
            }
        }
        if (length % 1024 == 0) {
            g_main_context_iteration(nullptr, FALSE);
        }
    }
    const auto before = StillPicture(host);
    AnswerAll(host, someValue);
    AwaitChange(host, before);
    host.Destroy();
    host.IsGone();
}

void NobodyAskedFor(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    host.Reports().Step("answers for keys, steps and commands that nobody asked for");
    const std::vector<plc::StepState> states(PLC_MAX_STEPS, {true, 1});
    for (const std::int32_t first : {INT32_MIN, -1, 0, 7, INT32_MAX}) {
        for (const std::int32_t last : {INT32_MIN, -1, 0, 97, INT32_MAX}) {
            CMD_DATA answer = plchost::MakeProgramStateAnswer({first, last}, states);
            answer.command = static_cast<std::uint16_t>(first);
            host.Require(
                host.Answer(AnswerKind::ProgramState, &answer) == 1, "an answer is not taken");
            answer.key = static_cast<std::uint16_t>(last);
            host.Require(host.Answer(AnswerKind::ReadVar, &answer) == 1, "an answer is not taken");
        }
    }
    host.Require(host.Answer(AnswerKind::ReadVar, nullptr) == 0, "a null answer is taken");
    host.Require(host.Answer(AnswerKind::ProgramState, nullptr) == 0, "a null answer is taken");
    const auto before = StillPicture(host);
    AnswerAll(host, someValue);
    AwaitChange(host, before);
    host.Destroy();
    host.IsGone();
}

} // namespace

const std::vector<Check>& AnswerChecks()
{
    static const std::vector<Check> checks{
        {"answers-during-create", "answers before create returns are dropped", DuringCreate},
        {"answers-of-threads", "answers of four threads are all taken", FromThreads},
        {"answers-while-closing", "answers may meet the close box", MeetTheCloseBox},
        {"answers-of-any-length", "no byte behind an answer is read", OfAnyLength},
        {"answers-for-nobody", "answers that nobody asked for do no harm", NobodyAskedFor},
    };
    return checks;
}

} // namespace plccheck
