#include "pending_writes.h"

#include <algorithm>
#include <utility>

namespace plcremote {

namespace {

base::Failure NotWritten(const plc::Operand& operand, const std::string& reason)
{
    return {plc::OperandName(operand) + " is not written: " + reason};
}

base::Failure NotConfirmed(const plc::Operand& operand, const std::string& reason)
{
    return {plc::OperandName(operand) + " is not confirmed: " + reason};
}

} // namespace

void PendingWrites::Add(const WriteMessage& message, plclink::WriteDone done, Time now)
{
    const std::lock_guard lock(m_mutex);
    m_orders.push_back({message, std::move(done), now});
}

std::optional<PendingWrites::Order> PendingWrites::Take(const std::string& id)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_orders.begin(), m_orders.end(), [&id](const Order& order) {
        return order.message.id == id;
    });
    if (found == m_orders.end()) {
        return std::nullopt;
    }
    std::optional<Order> order = std::move(*found);
    m_orders.erase(found);
    return order;
}

void PendingWrites::Answer(const WrittenMessage& answer)
{
    if (const auto order = Take(answer.id)) {
        order->done(answer.refusal.empty() ? base::Result<void>{} : base::Failure{answer.refusal});
    }
}

void PendingWrites::Withdraw(const std::string& id, const std::string& reason)
{
    if (const auto order = Take(id)) {
        order->done(NotWritten(order->message.operand, reason));
    }
}

void PendingWrites::Expire(Time now)
{
    for (;;) {
        std::optional<Order> late;
        {
            const std::lock_guard lock(m_mutex);
            if (m_orders.empty() || now - m_orders.front().sent < writePatience) {
                return;
            }
            late = std::move(m_orders.front());
            m_orders.pop_front();
        }
        late->done(NotConfirmed(
            late->message.operand,
            "the machine has not answered within " +
                std::to_string(
                    std::chrono::duration_cast<std::chrono::seconds>(writePatience).count()) +
                " s"));
    }
}

void PendingWrites::EndAll(const std::string& reason)
{
    std::deque<Order> orders;
    {
        const std::lock_guard lock(m_mutex);
        orders.swap(m_orders);
    }
    for (const Order& order : orders) {
        order.done(NotConfirmed(order.message.operand, reason));
    }
}

} // namespace plcremote
