#include "modbus_source.h"

#include <algorithm>
#include <utility>

namespace plclink {

namespace {

using Kind = ModbusAnswer::Kind;

/// How often clients are given the chance to take what they could not.
constexpr std::chrono::milliseconds tick{100};

/// Each operand of a block alone.
std::vector<ModbusBlock> Alone(const ModbusBlock& block)
{
    std::vector<ModbusBlock> blocks;
    for (const ModbusItem& item : block.items) {
        blocks.push_back({block.range, item.span, {item}});
    }
    return blocks;
}

} // namespace

ModbusSource::ModbusSource(ModbusMap map, std::unique_ptr<ModbusExchange> exchange)
    : m_map(std::move(map)), m_exchange(std::move(exchange)), m_plan(m_map),
      m_list(std::make_shared<const WatchList>())
{
}

ModbusSource::~ModbusSource()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_all();
    m_exchange->Interrupt();
    if (m_thread.joinable()) {
        m_thread.join();
    }
    RefuseOrders("the link has ended");
}

void ModbusSource::Start(SourceEvents& events)
{
    m_events = &events;
    m_thread = std::thread([this] { Run(); });
}

base::Result<void> ModbusSource::Check(const plc::Operand& operand) const
{
    const auto range = RangeOf(m_map, operand);
    return range ? base::Result<void>{} : base::Failure{range.Message()};
}

void ModbusSource::Watch(std::shared_ptr<const WatchList> list)
{
    {
        const std::lock_guard lock(m_mutex);
        m_wanted = std::move(list);
    }
    m_wake.notify_all();
}

void ModbusSource::Write(const plc::Operand& operand, std::uint32_t value, WriteDone done)
{
    std::string lost;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_lost) {
            m_orders.push_back({operand, value, std::move(done)});
            m_wake.notify_all();
            return;
        }
        lost = *m_lost;
    }
    done(base::Failure{plc::OperandName(operand) + " is not written: " + lost});
}

void ModbusSource::RefuseOrders(const std::string& reason)
{
    std::deque<Order> orders;
    {
        const std::lock_guard lock(m_mutex);
        m_lost = reason;
        orders.swap(m_orders);
    }
    for (const Order& order : orders) {
        order.done(base::Failure{plc::OperandName(order.operand) + " is not written: " + reason});
    }
}

void ModbusSource::SetState(LinkState state)
{
    if (state.status == LinkStatus::Lost) {
        RefuseOrders(state.reason);
    } else {
        const std::lock_guard lock(m_mutex);
        m_lost.reset();
    }
    if (!(state == m_state)) {
        m_state = std::move(state);
        m_events->OnState(m_state);
    }
}

void ModbusSource::WaitUntil(Clock::time_point time, bool isServing)
{
    std::unique_lock lock(m_mutex);
    m_wake.wait_until(
        lock, time, [&] { return m_isEnding || (isServing && (m_wanted || !m_orders.empty())); });
}

void ModbusSource::Run()
{
    auto pause = firstPause;
    const auto isEnding = [this] {
        const std::lock_guard lock(m_mutex);
        return m_isEnding;
    };
    while (!isEnding()) {
        m_hasAnswered = false;
        base::Result<void> served = m_exchange->Open();
        if (served) {
            served = Serve();
        }
        m_exchange->Close();
        if (isEnding()) {
            return;
        }
        SetState({LinkStatus::Lost, served.Message()});
        pause = m_hasAnswered ? firstPause : pause;
        WaitUntil(Clock::now() + pause, false);
        pause = std::min(2 * pause, longestPause);
    }
}

/// Asks the device until the connection fails.
/// @return why it has failed; done when the source is ending.
base::Result<void> ModbusSource::Serve()
{
    m_nextTurn = Clock::now();
    m_lastTurn.reset();
    for (;;) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_isEnding) {
                return {};
            }
        }
        TakeWatchList();
        if (auto written = WriteOrders(); !written) {
            return written;
        }
        if (auto usable = m_exchange->Check(); !usable) {
            return usable;
        }
        if (Clock::now() >= m_nextTurn) {
            m_nextTurn = std::max(m_nextTurn + m_map.device.poll, Clock::now());
            if (auto turn = ServeTurn(); !turn) {
                return turn;
            }
        }
        m_events->OnReadings(*m_list, {});
        WaitUntil(std::min(m_nextTurn, Clock::now() + tick), true);
    }
}

void ModbusSource::TakeWatchList()
{
    std::shared_ptr<const WatchList> wanted;
    {
        const std::lock_guard lock(m_mutex);
        wanted.swap(m_wanted);
    }
    if (!wanted) {
        return;
    }
    const bool hasNew =
        std::any_of(wanted->begin(), wanted->end(), [this](const plc::Operand& operand) {
            return std::find(m_list->begin(), m_list->end(), operand) == m_list->end();
        });
    m_list = std::move(wanted);
    m_plan.Watch(*m_list);
    if (hasNew) {
        m_nextTurn = Clock::now();
    }
}

base::Result<void> ModbusSource::WriteOrders()
{
    for (;;) {
        std::optional<Order> order;
        {
            const std::lock_guard lock(m_mutex);
            if (m_orders.empty() || m_isEnding) {
                return {};
            }
            order = std::move(m_orders.front());
            m_orders.pop_front();
        }
        const auto range = RangeOf(m_map, order->operand);
        if (!range) {
            order->done(base::Failure{range.Message()});
            continue;
        }
        const ModbusWritten written =
            WriteConfirmed(*m_exchange, m_map.ranges[*range], order->operand, order->value);
        const auto place = std::find(m_list->begin(), m_list->end(), order->operand);
        if (written.reading && place != m_list->end()) {
            m_events->OnReadings(
                *m_list, {{static_cast<std::size_t>(place - m_list->begin()), *written.reading}});
        }
        order->done(written.done);
        if (!written.failure.empty()) {
            return base::Failure{written.failure};
        }
    }
}

base::Result<void> ModbusSource::ServeTurn()
{
    Turn turn;
    const std::vector<ModbusBlock> blocks = m_plan.Blocks(Clock::now());
    std::deque<ModbusBlock> open(blocks.begin(), blocks.end());
    turn.hasRead = open.empty();
    while (!open.empty()) {
        if (auto read = ReadBlock(open, turn); !read) {
            return read;
        }
        // What the operator enters does not wait for a long turn.
        if (auto written = WriteOrders(); !written) {
            return written;
        }
    }
    m_plan.EndTurn();
    JudgeTurn(turn);
    return {};
}

base::Result<void> ModbusSource::ReadBlock(std::deque<ModbusBlock>& open, Turn& turn)
{
    const ModbusBlock block = open.front();
    open.pop_front();
    const auto asked = Clock::now();
    const ModbusAnswer answer = m_exchange->Read(m_map.ranges[block.range].table, block.span);
    if (answer.kind == Kind::Failed) {
        return base::Failure{answer.reason};
    }
    m_hasAnswered = true;
    if (answer.kind == Kind::Done) {
        turn.hasRead = true;
        TakeExchanged(block, answer, asked);
    } else if (
        answer.exception == illegalFunction || answer.exception == illegalAddress ||
        answer.exception == illegalValue) {
        turn.hasRead = true;
        TakeRefused(block, answer, open);
    } else {
        turn.refusal = answer.reason;
    }
    return {};
}

void ModbusSource::TakeExchanged(
    const ModbusBlock& block, const ModbusAnswer& answer, Clock::time_point asked)
{
    m_plan.Accept(block);
    std::vector<PlacedReading> readings;
    for (const ModbusItem& item : block.items) {
        const auto begin = answer.content.begin() +
                           static_cast<std::ptrdiff_t>(item.span.begin - block.span.begin);
        const std::vector<std::uint16_t> content(
            begin, begin + static_cast<std::ptrdiff_t>(item.span.Count()));
        readings.push_back(
            {item.place, {ValueIn(m_map.ranges[block.range], item.operand, content), asked}});
    }
    m_events->OnReadings(*m_list, readings);
}

void ModbusSource::TakeRefused(
    const ModbusBlock& block, const ModbusAnswer& answer, std::deque<ModbusBlock>& open)
{
    // A function that the device does not have is of no use for half a block either.
    const std::vector<ModbusBlock> refused =
        answer.exception == illegalFunction ? Alone(block) : std::vector<ModbusBlock>{block};
    for (const ModbusBlock& part : refused) {
        const plc::Operand& operand = part.items.front().operand;
        const bool isKnown = m_plan.IsRefused(operand);
        const std::vector<ModbusBlock> halves = m_plan.Refuse(part, Clock::now());
        open.insert(open.begin(), halves.begin(), halves.end());
        if (halves.empty() && !isKnown) {
            m_events->OnUnreadable(
                operand, plc::OperandName(operand) + " cannot be read: " + answer.reason);
        }
    }
}

void ModbusSource::JudgeTurn(const Turn& turn)
{
    const auto now = Clock::now();
    const bool isLate = m_lastTurn && now - *m_lastTurn > 2 * m_map.device.poll;
    m_lastTurn = now;
    if (!turn.hasRead) {
        SetState({LinkStatus::Refused, turn.refusal});
    } else {
        SetState({isLate ? LinkStatus::Slow : LinkStatus::Running, {}});
    }
}

} // namespace plclink
