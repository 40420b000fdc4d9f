#pragma once

#include "reading.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What plcwatch prints. Texts. Any thread.

namespace plcwatch {

/// What is known of a variable.
struct KnownValue
{
    std::string operand;               ///< As the watch page names it.
    std::string text = "?";            ///< In the list's format.
    std::optional<std::int32_t> raw{}; ///< None before the first reading, as the age.
    std::optional<std::chrono::milliseconds> age{};
};

/// "1.234", in every locale.
std::string SecondsText(std::chrono::milliseconds time);

/// Without line end, as all of these: time, operand, value.
std::string ValueLine(const std::string& time, const KnownValue& value);

/// Time, two empty columns, state.
std::string LinkLine(const std::string& time, const plclink::LinkState& state);

/// @param time a JSON value.
std::string ValueJson(const std::string& time, const KnownValue& value);
std::string LinkJson(const std::string& time, const plclink::LinkState& state);

/// A JSON text of UTF-8.
std::string Quoted(const std::string& text);

/// The state in words: "lost: no answer".
std::string StateText(const plclink::LinkState& state);

/// The lines of a table for a terminal: machine and state, then the values.
/// @param height lines that the terminal shows; what does not fit is counted in the last one.
std::vector<std::string> Table(
    const std::string& machine,
    const plclink::LinkState& state,
    const std::vector<KnownValue>& values,
    std::size_t height);

} // namespace plcwatch
