#include "fakedevice.h"
#include "sourceevents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <string>
#include <vector>

namespace {

using plclink::FakeDevice;
using plclink::LinkStatus;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

plc::Operand Named(const std::string& name)
{
    const auto operand = plc::ParseOperand(name);
    EXPECT_TRUE(operand) << name;
    return operand.value_or(plc::Operand{});
}

class ModbusSourceTest : public testing::Test
{
protected:
    /// Flags in holding registers from 0: MW0 in 0, MW2 in 1.
    explicit ModbusSourceTest(const std::string& keys = "write = yes\n")
    {
        plclink::MapReading reading = plclink::ReadModbusMap(
            "[device]\npoll = 20\n"
            "[range flags]\noperands = MW0..MW98\ntable = holding\nstart = 0\n" +
            keys);
        EXPECT_TRUE(reading.map);
        auto device = std::make_unique<FakeDevice>();
        m_device = device.get();
        m_source = std::make_unique<plclink::ModbusSource>(
            reading.map.value_or(plclink::ModbusMap{}), std::move(device));
    }

    void Watch(const std::vector<std::string>& names)
    {
        plclink::WatchList list;
        for (const std::string& name : names) {
            list.push_back(Named(name));
        }
        m_source->Watch(std::make_shared<const plclink::WatchList>(list));
    }

    void Start() { m_source->Start(m_events); }

    /// What comes of a write.
    std::future<std::string> Write(const std::string& name, std::uint32_t value)
    {
        const auto end = std::make_shared<std::promise<std::string>>();
        m_source->Write(Named(name), value, [end](const base::Result<void>& done) {
            end->set_value(done ? "done" : done.Message());
        });
        return end->get_future();
    }

    FakeDevice* m_device; ///< Of the source.
    RecordedEvents m_events;
    std::unique_ptr<plclink::ModbusSource> m_source;
};

class ModbusSourceRewriting : public ModbusSourceTest
{
protected:
    ModbusSourceRewriting() : ModbusSourceTest("write = yes\nbits-by = read-modify-write\n") {}
};

TEST_F(ModbusSourceTest, TellsWhatIsWatched)
{
    m_device->Set(0, 0x1234);
    m_device->Set(2, 0x5678);
    Watch({"MW0", "MB5", "M0.4"});
    Start();

    EXPECT_TRUE(m_events.WaitForValue("MB5", 0x78));
    EXPECT_TRUE(m_events.WaitForValue("MW0", 0x1234));
    EXPECT_TRUE(m_events.WaitForValue("M0.4", 1));
    EXPECT_TRUE(m_events.WaitForStatus(LinkStatus::Running));
    m_device->Set(0, 7);
    EXPECT_TRUE(m_events.WaitForValue("MW0", 7));
}

TEST_F(ModbusSourceTest, FollowsAnotherList)
{
    Watch({"MW0"});
    Start();
    ASSERT_TRUE(m_events.WaitForValue("MW0", 0));

    m_device->Set(1, 5);
    Watch({"MW2"});

    EXPECT_TRUE(m_events.WaitForValue("MW2", 5));
}

TEST_F(ModbusSourceTest, RunsWithoutAnythingToWatchUntilTheDeviceHangsUp)
{
    Start();
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Running));

    m_device->Change([](auto& mood) { mood.isThere = false; });

    EXPECT_TRUE(m_events.WaitFor([&] {
        return m_events.HasBeen({LinkStatus::Lost, "it hung up"});
    }));
}

TEST_F(ModbusSourceTest, ConnectsAnewAfterARequestWithoutAnswer)
{
    Watch({"MW0"});
    Start();
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Running));

    m_device->Change([](auto& mood) { mood.answers = false; });
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Lost));
    EXPECT_EQ(m_events.State().reason, "no answer");
    m_device->Change([](auto& mood) { mood.answers = true; });
    EXPECT_TRUE(m_events.WaitForStatus(LinkStatus::Running));

    EXPECT_GE(m_device->Openings(), 2);
    EXPECT_FALSE(m_device->WasOpenedTwiceAtOnce());
}

TEST_F(ModbusSourceTest, WaitsForADeviceThatIsNotThereYet)
{
    m_device->Change([](auto& mood) { mood.isThere = false; });
    Watch({"MW0"});
    Start();
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Lost));
    EXPECT_EQ(m_events.State().reason, "nobody is there");
    EXPECT_THAT(m_events.Values("MW0"), IsEmpty());

    m_device->Change([](auto& mood) { mood.isThere = true; });

    EXPECT_TRUE(m_events.WaitForValue("MW0", 0));
}

TEST_F(ModbusSourceTest, NamesARefusedOperandOnceAndReadsTheOthers)
{
    m_device->Change([](auto& mood) { mood.forbidden = {1}; });
    Watch({"MW0", "MW2", "MW4"});
    Start();

    ASSERT_TRUE(m_events.WaitFor([&] { return m_events.Values("MW4").size() > 3; }));

    ASSERT_EQ(m_events.Unreadable().size(), 1U);
    EXPECT_EQ(m_events.Unreadable()[0].first, "MW2");
    EXPECT_EQ(
        m_events.Unreadable()[0].second,
        "MW2 cannot be read: the device answers with exception 2 (illegal data address)");
    EXPECT_TRUE(m_events.Values("MW2").empty());
    EXPECT_GT(m_events.Values("MW0").size(), 2U);
    EXPECT_TRUE(m_events.WaitForStatus(LinkStatus::Running));
}

TEST_F(ModbusSourceTest, NamesEveryOperandOfATableThatTheDeviceDoesNotHave)
{
    m_device->Change([](auto& mood) { mood.exception = plclink::illegalFunction; });
    Watch({"MW0", "MW2"});
    Start();

    EXPECT_TRUE(m_events.WaitFor([&] { return m_events.Unreadable().size() == 2; }));
    EXPECT_TRUE(m_events.WaitForStatus(LinkStatus::Running));
}

TEST_F(ModbusSourceTest, SaysThatTheDeviceRefusesUntilItServes)
{
    m_device->Change([](auto& mood) { mood.exception = 6; });
    Watch({"MW0"});
    Start();

    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Refused));
    EXPECT_EQ(m_events.State().reason, "the device answers with exception 6 (device busy)");
    m_device->Change([](auto& mood) { mood.exception = 0; });
    EXPECT_TRUE(m_events.WaitForStatus(LinkStatus::Running));
    EXPECT_EQ(m_device->Openings(), 1);
}

TEST_F(ModbusSourceTest, ConfirmsAWriteByReadingBack)
{
    Watch({"MW0"});
    Start();

    EXPECT_EQ(Write("MW0", 0x12345).get(), "done");

    EXPECT_EQ(m_device->Register(0), 0x2345);
    EXPECT_EQ(m_events.Value("MW0"), 0x2345U);
    EXPECT_EQ(Write("MD4", 0x12345678).get(), "done");
    EXPECT_EQ(m_device->Register(2), 0x1234);
    EXPECT_EQ(m_device->Register(3), 0x5678);
}

TEST_F(ModbusSourceTest, WritesBitsAndBytesByMask)
{
    m_device->Set(0, 0x1234);
    Start();

    EXPECT_EQ(Write("MB1", 0xAB).get(), "done");
    EXPECT_EQ(Write("M0.0", 1).get(), "done");

    EXPECT_EQ(m_device->Register(0), 0x13AB);
    EXPECT_THAT(m_device->Writes(), ElementsAre("mask 0", "mask 0"));
}

TEST_F(ModbusSourceTest, WritesNoBitOfARegisterWhenTheDeviceHasNoMaskWrite)
{
    m_device->Change([](auto& mood) { mood.hasMask = false; });
    Start();

    EXPECT_EQ(
        Write("M0.0", 1).get(),
        "M0.0 is not written: the device has no mask write (function 22); bits-by = "
        "read-modify-write in the range flags allows to read the register and write it back");
    EXPECT_EQ(m_device->Register(0), 0);
}

TEST_F(ModbusSourceRewriting, ReadsTheRegisterAndWritesItBack)
{
    m_device->Change([](auto& mood) { mood.hasMask = false; });
    m_device->Set(0, 0x1234);
    Start();

    EXPECT_EQ(Write("MB1", 0xAB).get(), "done");

    EXPECT_EQ(m_device->Register(0), 0x12AB);
    EXPECT_THAT(m_device->Writes(), ElementsAre("replace 0"));
}

TEST_F(ModbusSourceTest, DoesNotConfirmWhatTheDeviceDidNotTake)
{
    m_device->Change([](auto& mood) { mood.keepsWrites = false; });
    Start();

    EXPECT_EQ(Write("MW0", 17).get(), "MW0 is not confirmed: it is 0 after it was set to 17");
}

TEST_F(ModbusSourceTest, DoesNotWriteWhatIsOnlyRead)
{
    Start();

    EXPECT_THAT(Write("MW1", 17).get(), HasSubstr("begins in the middle of a register"));
    EXPECT_THAT(m_device->Writes(), IsEmpty());
}

TEST_F(ModbusSourceTest, RepeatsNoWriteThatWasNotAnswered)
{
    Watch({"MW0"});
    Start();
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Running));

    m_device->Change([](auto& mood) { mood.answers = false; });
    EXPECT_THAT(Write("MW0", 17).get(), HasSubstr("no answer"));
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Lost));
    m_device->Change([](auto& mood) { mood.answers = true; });
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Running));

    EXPECT_LE(m_device->Writes().size(), 1U);
    EXPECT_EQ(m_device->Register(0), 0);
}

TEST_F(ModbusSourceTest, WritesNothingWhileTheLinkIsLost)
{
    m_device->Change([](auto& mood) { mood.isThere = false; });
    Start();
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Lost));

    EXPECT_EQ(Write("MW0", 17).get(), "MW0 is not written: nobody is there");
    m_device->Change([](auto& mood) { mood.isThere = true; });
    ASSERT_TRUE(m_events.WaitForStatus(LinkStatus::Running));
    EXPECT_THAT(m_device->Writes(), IsEmpty());
}

TEST_F(ModbusSourceTest, KeepsAWriteUntilTheFirstConnectionStands)
{
    m_device->Change([](auto& mood) { mood.isStuck = true; });
    Start();
    std::future<std::string> written = Write("MW0", 17);

    m_device->Change([](auto& mood) { mood.isStuck = false; });

    EXPECT_EQ(written.get(), "done");
    EXPECT_EQ(m_device->Register(0), 17);
}

TEST_F(ModbusSourceTest, EndsWhileItConnectsAndRefusesWhatWasToBeWritten)
{
    m_device->Change([](auto& mood) { mood.isStuck = true; });
    Start();
    std::future<std::string> written = Write("MW0", 17);

    m_source.reset();

    EXPECT_EQ(written.get(), "MW0 is not written: the link has ended");
}

TEST_F(ModbusSourceTest, SaysWhichOperandsTheMapDoesNotHave)
{
    EXPECT_TRUE(m_source->Check(Named("MW98")));
    const auto check = m_source->Check(Named("MW100"));
    ASSERT_FALSE(check);
    EXPECT_EQ(check.Message(), "the map has no range with MW100");
}

} // namespace
