#include "debugfile.h"
#include "literal_drain.h"
#include "literal_listing.h"
#include "measure.h"
#include "plcdebugframe_drain.h"
#include "tempdir.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

// The rows that need no window: answer queue, newest answer per key, loading a block.

namespace {

using bench::PrintRow;

constexpr int backlog = 100000;
constexpr int watchedVars = 20;
constexpr int allKeys = 65536;

CMD_DATA AnswerNumber(int number, int keys)
{
    return PlcMakeReadAnswer(static_cast<std::uint16_t>(number % keys), number);
}

/// A queue of read answers that takes a backlog whole, where the frame's would thin it out.
struct BacklogQueue : AnswerQueue
{
    BacklogQueue() : AnswerQueue(VariableOf) {}

    using KtValueQueue<CMD_DATA>::Push;
};

/// Never mind how long it takes.
void DeliverNewest(AnswerQueue& queue, std::vector<CMD_DATA>& delivered)
{
    queue.DeliverNewest(
        [&delivered](const CMD_DATA& answer) { delivered.push_back(answer); },
        [] { return false; });
}

template <typename Queue> void Fill(Queue& queue, int answers, int keys)
{
    for (int i = 0; i < answers; ++i) {
        queue.Push(AnswerNumber(i, keys));
    }
}

void DrainRow()
{
    constexpr int pairs = 5;
    std::vector<double> product;
    std::vector<double> reference;
    for (int i = 0; i < pairs; ++i) {
        BacklogQueue queue;
        Fill(queue, backlog, watchedVars);
        std::vector<CMD_DATA> drained;
        product.push_back(bench::CpuOf([&] { DeliverNewest(queue, drained); }));

        literal::Queue<CMD_DATA> literalQueue;
        Fill(literalQueue, backlog, watchedVars);
        literal::Pending pending;
        reference.push_back(bench::CpuOf([&] { pending = literal::Drain(literalQueue); }));
        bench::RequireSame(literal::SameOrder(drained, pending), "drain");
    }
    PrintRow("drain of 100,000 queued answers", "literal", product, reference, 0.02);
}

/// Takes from a queue and puts as much into it again, so that it keeps its length.
class Circulation
{
public:
    explicit Circulation(int length) { Fill(m_queue, length, watchedVars); }

    double PopTime(int pops)
    {
        CMD_DATA answer{};
        const double time = bench::CpuOf([&] {
            for (int i = 0; i < pops; ++i) {
                m_queue.Pop(answer);
            }
        });
        Fill(m_queue, pops, watchedVars);
        return time / pops;
    }

private:
    KtValueQueue<CMD_DATA> m_queue;
};

void PopRow()
{
    constexpr int few = 10;
    constexpr int rounds = 10001;
    constexpr int roundsOfMany = 31;
    constexpr int popsOfMany = 5000;
    Circulation shortQueue(few);
    Circulation longQueue(backlog);
    std::vector<double> ofFew;
    std::vector<double> ofMany;
    for (int i = 0; i < rounds; ++i) {
        ofFew.push_back(shortQueue.PopTime(few));
        if (i % (rounds / roundsOfMany) == 0) {
            ofMany.push_back(longQueue.PopTime(popsOfMany));
        }
    }
    PrintRow("Pop with 100,000 queued", "with 10 queued", ofMany, ofFew, 3);
}

/// Has threads push, 100 us apart, while this thread drains a backlog.
/// @return how long the pushes took, in seconds.
template <typename Queue, typename DrainIt>
std::vector<double> PushTimes(int threadCount, DrainIt drainIt)
{
    constexpr int halfBacklog = backlog / 2;
    constexpr auto gap = std::chrono::microseconds(100);
    Queue queue;
    Fill(queue, halfBacklog, watchedVars);
    std::atomic<bool> stop = false;
    std::vector<std::vector<double>> times(static_cast<std::size_t>(threadCount));
    std::vector<std::thread> threads;
    threads.reserve(times.size());
    for (std::vector<double>& ofThread : times) {
        threads.emplace_back([&queue, &stop, &ofThread, gap] {
            const CMD_DATA answer = PlcMakeReadAnswer(1, 1);
            while (!stop) {
                const double start = bench::WallNow();
                queue.Push(answer);
                ofThread.push_back(bench::WallNow() - start);
                std::this_thread::sleep_for(gap);
            }
        });
    }
    drainIt(queue);
    stop = true;
    std::vector<double> all;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        all.insert(all.end(), times[i].begin(), times[i].end());
    }
    return all;
}

void PushRow(int threadCount)
{
    constexpr int literalRuns = 3;
    constexpr int runsPerLiteralRun = 10; // a quick drain gives few pushes a run
    constexpr double part = 0.99;
    std::vector<double> product;
    std::vector<double> reference;
    const auto append = [](std::vector<double>& all, const std::vector<double>& more) {
        all.insert(all.end(), more.begin(), more.end());
    };
    for (int i = 0; i < literalRuns * runsPerLiteralRun; ++i) {
        append(product, PushTimes<BacklogQueue>(threadCount, [](auto& queue) {
                   std::vector<CMD_DATA> drained;
                   DeliverNewest(queue, drained);
               }));
        if (i % runsPerLiteralRun == 0) {
            append(reference, PushTimes<literal::Queue<CMD_DATA>>(threadCount, [](auto& queue) {
                       literal::Drain(queue);
                   }));
        }
    }
    PrintRow(
        "push while 50,000 drain, 99th percentile, threads: " + std::to_string(threadCount),
        "literal",
        bench::Percentile(product, part) / bench::Percentile(reference, part),
        0.05);
}

std::vector<CMD_DATA> Copies(const AnswerArray& answers)
{
    std::vector<CMD_DATA> copies;
    for (std::size_t i = 0; i < answers.GetCount(); ++i) {
        copies.push_back(answers[i]);
    }
    return copies;
}

/// The first round touches new memory, as the first backlog of a debugger does; the others use it
/// again, as all its later ticks do.
void NewestRow(int keys, int answers, int literalRounds, double goal)
{
    constexpr int rounds = 11;
    std::vector<CMD_DATA> arrived;
    arrived.reserve(static_cast<std::size_t>(answers));
    for (int i = 0; i < answers; ++i) {
        arrived.push_back(AnswerNumber(i, keys));
    }
    NewestAnswers newest(VariableOf);
    std::vector<double> product;
    std::vector<double> reference;
    literal::Pending pending;
    for (int i = 0; i < rounds; ++i) {
        AnswerArray queued;
        for (const CMD_DATA& answer : arrived) {
            queued.Add(answer);
        }
        product.push_back(bench::CpuOf([&] { newest.TakeOlder(queued); }));

        if (i < literalRounds) {
            pending.clear();
            reference.push_back(bench::CpuOf([&] {
                for (const CMD_DATA& answer : arrived) {
                    literal::AddNewest(pending, answer);
                }
            }));
        }
        bench::RequireSame(literal::SameOrder(Copies(queued), pending), "newest per key");
    }
    PrintRow("newest per key, keys: " + std::to_string(keys), "literal", product, reference, goal);
}

std::string BlockText(int number)
{
    const std::string text = std::to_string(number);
    return number % 10 == 0 ? ":NETWORK " + text : text + " M1: U E " + text + ".3 // a remark";
}

bool SameLine(const DB_BAUSTEIN& one, const DB_BAUSTEIN& other)
{
    return one.state == other.state && one.value == other.value && one.text == other.text &&
           one.step == other.step;
}

void LoadRow()
{
    constexpr int lineCount = 65535;
    constexpr int pairs = 11;
    std::vector<std::string> texts;
    texts.reserve(lineCount);
    for (int i = 0; i < lineCount; ++i) {
        texts.push_back(BlockText(i));
    }
    const TempDir dir;
    const PrgFile file = OpenPrgFile(dir.Write("block", DebugFile({{"FB1", 0, texts}}, "\r\n")));
    const DBG_BAUSTEIN_ENTRY block = ReadBlockIndex(file.get()).at(0);
    std::vector<DB_BAUSTEIN> product;
    std::vector<DB_BAUSTEIN> reference;
    const double ratio =
        bench::CpuRatio(pairs, {[&] { product = ReadBlockLines(file.get(), block); }}, {[&] {
                            reference = literal::ReadLines(file.get(), block);
                        }});
    bench::RequireSame(
        std::equal(product.begin(), product.end(), reference.begin(), reference.end(), SameLine) &&
            product.size() == lineCount,
        "lines of a block");
    PrintRow("loading a block of 65,535 lines", "literal", ratio, 0.15);
}

} // namespace

int main(int argc, char** argv)
{
    return bench::RunRows(
        {{"drain", DrainRow},
         {"pop", PopRow},
         {"push",
          [] {
              for (const int threadCount : {1, 2, 4}) {
                  PushRow(threadCount);
              }
          }},
         {"newest",
          [] {
              NewestRow(allKeys, backlog, 1, 0.01);
              NewestRow(watchedVars, backlog, 11, 1);
          }},
         {"load", LoadRow}},
        argc,
        argv);
}
