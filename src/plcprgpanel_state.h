#pragma once

#include "plcdebug_host.h"
#include "plcprgpanel_file.h"

#include <cstdint>
#include <optional>
#include <vector>

// The program-state protocol: requests built, answers applied. No windows. Any thread.

/// @return the request for the steps first to last; for noStep, noStep the one that stops the
///         subscription.
CMD_DATA PrgStateRequest(std::int32_t first, std::int32_t last);

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

/// Writes an answer's states and values into the lines that carry its steps. What would stand
/// behind the end of the record is 0.
void ApplyAnswer(const CMD_DATA& answer, const StepIndex& index, std::vector<DB_BAUSTEIN>& lines);
