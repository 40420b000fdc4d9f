#pragma once

#include "modbus_exchange.h"
#include "modbus_plan.h"
#include "source.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

// A Modbus device as a machine: asked, written and connected again on a thread of its own. Any
// thread.

namespace plclink {

/// The first pause before a connection is made anew, and the longest; in between it doubles.
constexpr std::chrono::milliseconds firstPause{200};
constexpr std::chrono::milliseconds longestPause{1000};

class ModbusSource : public Source
{
public:
    ModbusSource(ModbusMap map, std::unique_ptr<ModbusExchange> exchange);
    /// Waits for a request under way, at most.
    ~ModbusSource() override;
    ModbusSource(const ModbusSource&) = delete;
    ModbusSource(ModbusSource&&) = delete;
    ModbusSource& operator=(const ModbusSource&) = delete;
    ModbusSource& operator=(ModbusSource&&) = delete;

    void Start(SourceEvents& events) override;
    base::Result<void> Check(const plc::Operand& operand) const override;
    void Watch(std::shared_ptr<const WatchList> list) override;
    void Write(const plc::Operand& operand, std::uint32_t value, WriteDone done) override;

    std::chrono::milliseconds TurnTime() const override { return m_map.device.poll; }

private:
    struct Order
    {
        plc::Operand operand;
        std::uint32_t value;
        WriteDone done;
    };

    /// How one turn has gone.
    struct Turn
    {
        bool hasRead = false;
        std::string refusal{}; ///< What the device has answered instead of serving.
    };

    void Run();
    base::Result<void> Serve();
    base::Result<void> ServeTurn();
    base::Result<void> ReadBlock(std::deque<ModbusBlock>& open, Turn& turn);
    void
    TakeExchanged(const ModbusBlock& block, const ModbusAnswer& answer, Clock::time_point asked);
    void TakeRefused(
        const ModbusBlock& block, const ModbusAnswer& answer, std::deque<ModbusBlock>& open);
    base::Result<void> WriteOrders();
    void TakeWatchList();
    void JudgeTurn(const Turn& turn);
    void SetState(LinkState state);
    void RefuseOrders(const std::string& reason);
    void WaitUntil(Clock::time_point time, bool isServing);

    const ModbusMap m_map;
    const std::unique_ptr<ModbusExchange> m_exchange;

    // Of the thread.
    SourceEvents* m_events = nullptr; ///< Not owned; outlives this.
    ModbusPlan m_plan;
    std::shared_ptr<const WatchList> m_list; ///< Not null.
    Clock::time_point m_nextTurn;
    std::optional<Clock::time_point> m_lastTurn; ///< When the last one of this connection ended.
    bool m_hasAnswered = false;                  ///< On this connection.
    LinkState m_state;

    std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_wake;
    bool m_isEnding = false;
    std::shared_ptr<const WatchList> m_wanted; ///< Not null when it has not been taken yet.
    std::deque<Order> m_orders;
    std::optional<std::string> m_lost; ///< Why nothing can be written now.

    std::thread m_thread; ///< Last: it uses all of the above.
};

} // namespace plclink
