#pragma once

#include "plcdebug_host.h"
#include "plcprgpanel_file.h"

#include <cstdint>
#include <optional>
#include <vector>

// The program-state protocol: requests built, answers taken apart and applied. No windows. Any
// thread.

/// Steps that one request asks for at most: the answer, 5 bytes a step, has to fit its record.
constexpr int maxRequestSteps = 98;

/// @return the request for the steps first to last; for noStep, noStep the one that stops the
///         subscription.
CMD_DATA PrgStateRequest(std::int32_t first, std::int32_t last);

/// One program-state answer, read where it stands. What would stand behind the end of the record
/// reads as 0.
class PrgStateAnswer
{
public:
    /// @param record outlives the object.
    explicit PrgStateAnswer(const CMD_DATA& record);

    std::int32_t First() const { return m_first; }

    std::int32_t Last() const { return m_last; }

    /// @param i step First() + i, not beyond Last().
    /// @return the logic result of the step.
    bool State(std::int64_t i) const;

    /// @param i step First() + i, not beyond Last().
    /// @return what the step has left in the accumulator; nothing when the step has no value.
    std::optional<std::int32_t> Value(std::int64_t i) const;

private:
    const CMD_DATA& m_record; // not owned
    std::int32_t m_first;
    std::int32_t m_last;
};

/// Which line carries a step, found without a search.
class StepIndex
{
public:
    /// @param lines one block's, whose steps follow each other in line order.
    void Build(const std::vector<DB_BAUSTEIN>& lines);

    /// The block's first and last step; without any the last is the smaller one.
    std::int64_t First() const { return m_firstStep; }

    std::int64_t Last() const;

    /// @return the position of the line with this step; nothing when the block has none.
    std::optional<std::size_t> LineOf(std::int64_t step) const;

private:
    std::int64_t m_firstStep = 0;
    std::vector<std::size_t> m_lineOfStep; ///< From m_firstStep on.
};

/// Writes an answer's states and values into the lines that carry its steps.
void ApplyAnswer(
    const PrgStateAnswer& answer, const StepIndex& index, std::vector<DB_BAUSTEIN>& lines);
