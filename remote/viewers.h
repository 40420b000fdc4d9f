#pragma once

#include "messages.h"
#include "operand.h"
#include "reading.h"
#include "result.h"
#include "steps.h"
#include "topics.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

// Who watches a machine from far away, and what, as long as their leases last. One thread.

namespace plcremote {

/// Sends a viewer an answer.
using AnswerViewer = std::function<void(const Viewer& viewer, const AnswerMessage& message)>;

class Viewers
{
public:
    using Time = plclink::Clock::time_point;

    /// @param always what the machine tells whoever watches.
    explicit Viewers(std::vector<plc::Operand> always = {}) : m_always(std::move(always)) {}

    /// Takes what a viewer asks for, instead of what it asked for before; none: it is gone.
    /// @return why it is refused: there are too many viewers or operands; it watches nothing then.
    base::Result<void> Watch(const Viewer& viewer, std::vector<plc::Operand> operands, Time now);

    /// Takes the steps for this viewer instead of those of any viewer before; none gives them up,
    /// when they are this viewer's.
    void WatchSteps(const Viewer& viewer, std::optional<plc::StepRange> range, Time now);

    /// Forgets those whose lease has ended. @return whether there were any.
    bool Expire(Time now);

    void Clear();

    std::size_t Count() const;

    /// What all watch and what is told always, each operand once.
    std::vector<plc::Operand> Operands() const;

    /// Who asked for steps last, and has not given them up.
    std::optional<Viewer> StepsViewer() const;
    std::optional<plc::StepRange> Steps() const;

private:
    struct Lease
    {
        std::vector<plc::Operand> operands{};
        Time until{};
    };

    std::vector<plc::Operand> m_always;
    std::map<Viewer, Lease> m_leases;
    std::optional<Viewer> m_stepsViewer;
    plc::StepRange m_steps{};
    Time m_stepsUntil{};
};

} // namespace plcremote
