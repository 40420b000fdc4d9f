#include "checks.h"
#include "file.h"
#include "shown.h"
#include "window.h"

#include <array>
#include <clocale>
#include <csignal>
#include <filesystem>
#include <malloc.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace plccheck {

namespace {

constexpr int settlingRounds = 5; ///< What a toolkit keeps for good, it has by then.
constexpr int countedRounds = 15; ///< Of which nothing may be left.
constexpr std::size_t keptEachRound = 100'000;

std::size_t OpenFiles()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

mode_t FileMask()
{
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

/// What a process has once, so that it is the host's.
struct Ownership
{
    std::string folder = std::filesystem::current_path().string();
    std::string locale = setlocale(LC_ALL, nullptr);
    mode_t mask = FileMask();
    std::array<struct sigaction, NSIG> handlers{};

    Ownership()
    {
        for (std::size_t signal = 1; signal < handlers.size(); ++signal) {
            sigaction(static_cast<int>(signal), nullptr, &handlers.at(signal));
        }
    }
};

void RequireSame(TrialHost& host, const Ownership& before)
{
    const Ownership now;
    host.Require(now.folder == before.folder, "the working directory is \"" + now.folder + '"');
    host.Require(now.locale == before.locale, "the locale is \"" + now.locale + '"');
    host.Require(now.mask == before.mask, "the mode mask of new files has changed");
    for (std::size_t signal = 1; signal < now.handlers.size(); ++signal) {
        host.Require(
            now.handlers.at(signal).sa_handler == before.handlers.at(signal).sa_handler,
            "signal " + std::to_string(signal) + " has another handler");
    }
}

void LeavesTheHostAlone(TrialHost& host)
{
    const Ownership before;
    if (!host.Open()) {
        return;
    }
    StillPicture(host);
    RequireSame(host, before);
    host.Destroy();
    host.IsGone();
    RequireSame(host, before);
}

struct Holding
{
    std::size_t windows = CountWindows();
    std::size_t files = OpenFiles();
    std::size_t bytes = mallinfo2().uordblks + mallinfo2().hblkhd;
};

bool OpenAndDestroy(TrialHost& host, int times)
{
    for (int round = 0; round < times; ++round) {
        if (!host.Open()) {
            return false;
        }
        host.Destroy();
        if (!host.IsGone()) {
            return false;
        }
    }
    return true;
}

void LeavesNothing(TrialHost& host)
{
    if (!OpenAndDestroy(host, settlingRounds)) {
        return;
    }
    const Holding before;
    if (!OpenAndDestroy(host, countedRounds)) {
        return;
    }
    const Holding now;
    host.Require(now.windows <= before.windows, "a round leaves a window");
    host.Require(now.files <= before.files, "a round leaves a file open");
    const std::size_t grown = now.bytes > before.bytes ? now.bytes - before.bytes : 0;
    host.Require(
        grown / countedRounds <= keptEachRound,
        "a round leaves " + std::to_string(grown / countedRounds) + " bytes");
}

/// Memory that is written into ends the process.
class ReadOnlyAnswer
{
public:
    explicit ReadOnlyAnswer(const CMD_DATA& answer)
    {
        if (m_place == MAP_FAILED) {
            throw std::runtime_error("no memory for the checks");
        }
        *static_cast<CMD_DATA*>(m_place) = answer;
        mprotect(m_place, sizeof(CMD_DATA), PROT_READ);
    }

    ~ReadOnlyAnswer() { munmap(m_place, sizeof(CMD_DATA)); }

    ReadOnlyAnswer(const ReadOnlyAnswer&) = delete;
    ReadOnlyAnswer(ReadOnlyAnswer&&) = delete;
    ReadOnlyAnswer& operator=(const ReadOnlyAnswer&) = delete;
    ReadOnlyAnswer& operator=(ReadOnlyAnswer&&) = delete;

    const CMD_DATA* Get() const { return static_cast<const CMD_DATA*>(m_place); }

private:
    void* const m_place =
        mmap(nullptr, sizeof(CMD_DATA), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
};

void LeavesTheAnswerAlone(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    const Picture before = StillPicture(host);
    host.Reports().Step("answers from memory that is only to be read");
    const ReadOnlyAnswer answer(PlcMakeReadAnswer(0, 1));
    for (const auto kind : {plchost::AnswerKind::ReadVar, plchost::AnswerKind::ProgramState}) {
        host.Require(host.Answer(kind, answer.Get()) == 1, "an answer is not taken");
    }
    AwaitChange(host, before);
    host.Destroy();
    host.IsGone();
}

void AnswersReturnAtOnce(TrialHost& host)
{
    constexpr int count = 100;
    constexpr std::chrono::microseconds slowestAnswer{5000};
    if (!host.Open()) {
        return;
    }
    host.Reports().Step("answers a hundred times");
    const auto start = std::chrono::steady_clock::now();
    for (int value = 0; value < count; ++value) {
        AnswerKey(host, 0, value);
    }
    const auto each = std::chrono::duration_cast<std::chrono::microseconds>(
        (std::chrono::steady_clock::now() - start) / count);
    host.Reports().Figure(static_cast<int>(each.count()), "us for an answer");
    host.Require(each <= slowestAnswer, "an answer keeps its thread waiting");
    host.Destroy();
    host.IsGone();
}

/// The configuration is the host's as well: what stands in it stays.
void KeepsTheConfiguration(TrialHost& host)
{
    const auto before = base::ReadFile(host.Files().settings);
    if (!host.Open()) {
        return;
    }
    host.Destroy();
    host.IsGone();
    const auto after = base::ReadFile(host.Files().settings);
    host.Require(before && after && *after == *before, "the configuration is not as it was");
}

} // namespace

const std::vector<Check>& OwnershipChecks()
{
    static const std::vector<Check> checks{
        {"leaves-host-alone",
         "working directory, locale, file mask and signals stay the host's",
         LeavesTheHostAlone},
        {"leaves-nothing", "no window, file or memory is left by twenty rounds", LeavesNothing},
        {"leaves-answers-alone", "the host's answers are not written into", LeavesTheAnswerAlone},
        {"answers-at-once", "an answer does not keep its thread waiting", AnswersReturnAtOnce},
        {"keeps-configuration", "the configuration stays as it was", KeepsTheConfiguration},
        {"wx-leaves-nothing",
         "in a wxWidgets host nothing is left by twenty rounds",
         LeavesNothing,
         HostKind::Wx},
    };
    return checks;
}

} // namespace plccheck
