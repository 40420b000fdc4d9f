#pragma once

#include "player.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// A recording that plays by itself, on a thread of its own. No windows. Any thread.

namespace plchost {

class Playback : public plclink::Source
{
public:
    explicit Playback(Recording recording) : m_player(std::move(recording), 1) {}

    ~Playback() override;
    Playback(const Playback&) = delete;
    Playback(Playback&&) = delete;
    Playback& operator=(const Playback&) = delete;
    Playback& operator=(Playback&&) = delete;

    void Start(plclink::SourceEvents& events) override;
    base::Result<void> Check(const plc::Operand& operand) const override;
    void Watch(std::shared_ptr<const plclink::WatchList> list) override;
    void Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done) override;
    void WatchSteps(std::optional<plc::StepRange> range) override;

    std::chrono::milliseconds TurnTime() const override { return m_player.TurnTime(); }

    bool TellsEveryReading() const override { return m_player.TellsEveryReading(); }

private:
    void Post(std::function<void()> work);
    void Run();

    Player m_player;    ///< Once it is started, of the thread; Check() changes nothing.
    std::mutex m_mutex; ///< Guards what follows, but the thread.
    std::condition_variable m_wake;
    std::vector<std::function<void()>> m_posted;
    bool m_end = false;
    std::thread m_thread;
};

} // namespace plchost
