#pragma once

#include "broker.h"
#include "publisher.h"

#include <cstddef>
#include <string>

// Rows of machines far away, each with a broker of its own.

namespace bench {

/// Who watches, and may write, in all rows.
constexpr const char* viewer = "viewer";

/// The machine of a row that has one.
constexpr const char* machineName = "press7";

/// What a machine has to tell.
constexpr std::size_t wordCount = 20;

/// @return what it takes to publish a machine that tells nothing but what somebody watches.
plcremote::PublishOrder OrderOf(const Broker& broker, const std::string& machine);

/// Says a sentence on standard error.
void Say(const std::string& sentence);

/// 200 machines of 20 values that change ten times a second: what each sends, what is lost on the
/// way, what it costs the broker.
void PlantRow();

/// 500 of them.
void LargePlantRow();

/// A write and its answer, against a text that comes back.
void RequestRow();

/// How long a change takes to who watches from far away.
void ChangeRow();

/// The broker is killed and comes back.
void BrokerKilledRow();

} // namespace bench
