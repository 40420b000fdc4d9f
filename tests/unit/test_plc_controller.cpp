#include "controller.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

using plc::Controller;
using plc::Image;
using std::chrono::milliseconds;

const plc::Cell motor = Image::CellOf("A0.0");
const plc::Cell cyclesSeen = Image::CellOf("MD0");
const plc::Cell timeSeen = Image::CellOf("MD4");
const plc::Cell sensor = Image::CellOf("E0.0");
const plc::Cell stopWish = Image::CellOf("M100.0");

/// Switches an output on, counts its cycles, and stops the PLC when a flag asks for it.
class CountingProgram : public plc::CyclicProgram
{
public:
    std::optional<plc::StopReason> RunCycle(Image& image, milliseconds elapsed) override
    {
        image.Write(motor, 1);
        image.Write(cyclesSeen, image.Read(cyclesSeen) + 1);
        image.Write(timeSeen, image.Read(timeSeen) + static_cast<std::uint32_t>(elapsed.count()));
        if (image.IsOn(stopWish)) {
            return plc::StopReason{plc::StopCause::DivisionByZero, "OB1, line 3"};
        }
        return std::nullopt;
    }

    bool Watch(std::optional<plc::StepRange>) override { return true; }

    const std::vector<plc::StepState>& WatchedStates() const override { return m_states; }

private:
    std::vector<plc::StepState> m_states;
};

/// Reports the motor by a sensor.
class MotorProcess : public plc::Process
{
public:
    void PowerOn(Image& image) override { image.Write(Image::CellOf("E1.0"), 1); }

    void Advance(Image& image, milliseconds) override
    {
        image.Write(sensor, image.IsOn(motor) ? 1 : 0);
    }
};

/// A controller with a short period, and what its hook has seen.
class ControllerTest : public testing::Test
{
protected:
    /// Waits until @p condition holds after a cycle; the hook looks at it on the PLC thread.
    void AwaitCycle(std::function<bool(Image&)> condition)
    {
        std::promise<void> seen;
        {
            const std::lock_guard lock(m_mutex);
            m_condition = std::move(condition);
            m_seen = &seen;
        }
        seen.get_future().wait();
    }

    void AwaitCycles(unsigned count)
    {
        auto seen = std::make_shared<unsigned>(0);
        AwaitCycle([seen, count](Image&) { return ++*seen > count; });
    }

    void AfterCycle(Image& image)
    {
        const std::lock_guard lock(m_mutex);
        if (m_seen && m_condition(image)) {
            m_seen->set_value();
            m_seen = nullptr;
        }
    }

private:
    std::mutex m_mutex;
    std::function<bool(Image&)> m_condition;
    std::promise<void>* m_seen = nullptr;

protected:
    Controller controller{
        std::make_unique<CountingProgram>(),
        std::make_unique<MotorProcess>(),
        [this](Image& image, plc::CyclicProgram&, std::uint64_t) { AfterCycle(image); },
        milliseconds{1}};
};

TEST_F(ControllerTest, BeginsInStopWithTheProcessPoweredOn)
{
    bool poweredOn = false;
    AwaitCycle([&](Image& image) {
        poweredOn = image.IsOn(Image::CellOf("E1.0"));
        return true;
    });

    EXPECT_TRUE(poweredOn);
    EXPECT_FALSE(controller.Status().running);
    EXPECT_EQ(controller.Status().cycles, 0U);
    EXPECT_EQ(controller.Status().period, milliseconds{1});
}

TEST_F(ControllerTest, RunsProgramAndProcessAfterStart)
{
    controller.Start();

    AwaitCycle([](Image& image) { return image.Read(cyclesSeen) > 5 && image.IsOn(sensor); });

    EXPECT_TRUE(controller.Status().running);
    EXPECT_GE(controller.Status().cycles, 5U);
    EXPECT_GE(controller.Status().max, controller.Status().last);
}

TEST_F(ControllerTest, HandsTheProgramTheTimeThatHasPassed)
{
    controller.Start();

    AwaitCycle([](Image& image) { return image.Read(timeSeen) > 10; });

    EXPECT_TRUE(controller.Status().running);
}

TEST_F(ControllerTest, StopSwitchesTheOutputsOffWhileTheProcessGoesOn)
{
    controller.Start();
    AwaitCycle([](Image& image) { return image.IsOn(sensor); });

    controller.Stop();

    AwaitCycle([](Image& image) { return !image.IsOn(motor) && !image.IsOn(sensor); });
    const auto cycles = controller.Status().cycles;
    AwaitCycles(3);
    EXPECT_EQ(controller.Status().cycles, cycles);
    EXPECT_FALSE(controller.Status().stopped);
}

TEST_F(ControllerTest, TheProgramsOwnStopIsKeptWithItsReasonUntilTheNextStart)
{
    controller.Start();
    controller.Post([](Image& image) { image.Write(stopWish, 1); });
    AwaitCycle([](Image& image) { return image.IsOn(stopWish) && !image.IsOn(motor); });

    const auto stopped = controller.Status();
    controller.Post([](Image& image) { image.Write(stopWish, 0); });
    AwaitCycle([](Image& image) { return !image.IsOn(stopWish); });
    controller.Start();

    ASSERT_TRUE(stopped.stopped);
    EXPECT_FALSE(stopped.running);
    EXPECT_EQ(plc::StopText(*stopped.stopped), "division by zero in OB1, line 3");
    EXPECT_FALSE(controller.Status().stopped);
    EXPECT_TRUE(controller.Status().running);
}

TEST_F(ControllerTest, RunsPostedWorkInOrderAlsoInStop)
{
    std::promise<std::vector<int>> done;
    auto order = std::make_shared<std::vector<int>>();
    auto postedOn = std::make_shared<std::thread::id>();

    controller.Post([order, postedOn](Image&) {
        order->push_back(1);
        *postedOn = std::this_thread::get_id();
    });
    controller.Post([order](Image&) { order->push_back(2); });
    controller.Post([order, &done](Image&) { done.set_value(*order); });

    EXPECT_EQ(done.get_future().get(), (std::vector<int>{1, 2}));
    EXPECT_NE(*postedOn, std::this_thread::get_id());
}

TEST_F(ControllerTest, AProgramSeesPostedWorkInTheSameCycle)
{
    controller.Start();
    controller.Post([](Image& image) { image.Write(cyclesSeen, 1000); });

    AwaitCycle([](Image& image) { return image.Read(cyclesSeen) >= 1000; });

    EXPECT_TRUE(controller.Status().running);
}

TEST(Controller, MayEndAtAnyMoment)
{
    std::atomic<int> calls = 0;
    for (int i = 0; i < 50; ++i) {
        const Controller controller(
            std::make_unique<CountingProgram>(),
            nullptr,
            [&](Image&, plc::CyclicProgram&, std::uint64_t) { ++calls; });
    }

    const int atEnd = calls;
    std::this_thread::yield();
    EXPECT_EQ(calls, atEnd);
}

/// Adds up the time that it is given.
class TimedProcess : public plc::Process
{
public:
    explicit TimedProcess(milliseconds& sum) : m_sum(sum) {}

    void PowerOn(Image&) override {}

    void Advance(Image&, milliseconds elapsed) override { m_sum += elapsed; }

private:
    milliseconds& m_sum;
};

TEST(Controller, HandsProgramAndProcessTheWholeOfALongPeriod)
{
    constexpr milliseconds period{150};
    milliseconds processTime{0};
    std::uint64_t cyclesWithTime = 0;
    std::promise<void> enough;
    std::uint32_t programTime = 0;
    {
        Controller controller(
            std::make_unique<CountingProgram>(),
            std::make_unique<TimedProcess>(processTime),
            [&](Image& image, plc::CyclicProgram&, std::uint64_t cycle) {
                if (cycle > 0 && ++cyclesWithTime == 2) {
                    programTime = image.Read(timeSeen);
                    enough.set_value();
                }
            },
            period);
        controller.Start();
        enough.get_future().wait();
    }

    EXPECT_GE(programTime, period.count());
    EXPECT_GE(processTime.count(), programTime);
}

TEST(Controller, EndsWithoutWaitingForThePeriod)
{
    std::promise<void> first;
    std::once_flag once;
    const auto seen = first.get_future();
    auto controller = std::make_unique<Controller>(
        std::make_unique<CountingProgram>(),
        nullptr,
        [&](Image&, plc::CyclicProgram&, std::uint64_t) {
            std::call_once(once, [&] { first.set_value(); });
        },
        std::chrono::hours{24});
    seen.wait();

    controller.reset();

    EXPECT_EQ(controller, nullptr);
}

} // namespace
