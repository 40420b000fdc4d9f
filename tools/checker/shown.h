#pragma once

#include "picture.h"
#include "trial_host.h"

// Answers, and the pictures that they give. GUI thread.

namespace plccheck {

constexpr std::int32_t someValue = 88; ///< As different from others as any.

/// Waits until the window shows something and has stood still for several of its ticks.
Picture StillPicture(TrialHost& host);

/// Waits until the window looks different.
/// @return the picture once it stands still again.
Picture AwaitChange(TrialHost& host, const Picture& before);

/// Answers one variable.
void AnswerKey(TrialHost& host, std::uint16_t key, std::int32_t value);

/// Answers every variable with the same value.
void AnswerAll(TrialHost& host, std::int32_t value);

} // namespace plccheck
