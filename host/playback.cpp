#include "playback.h"

#include <utility>

namespace plchost {

namespace {

constexpr std::chrono::milliseconds turnTime{10};

} // namespace

Playback::~Playback()
{
    {
        const std::lock_guard lock(m_mutex);
        m_end = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void Playback::Start(plclink::SourceEvents& events)
{
    m_thread = std::thread([this, &events] {
        m_player.Start(events);
        Run();
    });
}

void Playback::Run()
{
    std::unique_lock lock(m_mutex);
    while (!m_end) {
        const auto posted = std::exchange(m_posted, {});
        lock.unlock();
        for (const auto& work : posted) {
            work();
        }
        m_player.Advance(Player::Clock::now());
        lock.lock();
        m_wake.wait_for(lock, turnTime, [this] { return m_end; });
    }
}

void Playback::Post(std::function<void()> work)
{
    const std::lock_guard lock(m_mutex);
    m_posted.push_back(std::move(work));
}

base::Result<void> Playback::Check(const plc::Operand& operand) const
{
    return m_player.Check(operand);
}

void Playback::Watch(std::shared_ptr<const plclink::WatchList> list)
{
    Post([this, list = std::move(list)] { m_player.Watch(list); });
}

void Playback::Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done)
{
    m_player.Write(operand, value, std::move(done)); // which refuses it
}

void Playback::WatchSteps(std::optional<plc::StepRange> range)
{
    Post([this, range] { m_player.WatchSteps(range); });
}

} // namespace plchost
