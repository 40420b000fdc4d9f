#pragma once

#include "plcdebug_host.h"

// The way of an answer: bridge -> faults -> trace -> plug-in. Each station is an AnswerSink.

namespace plchost {

enum class AnswerKind
{
    ReadVar,
    ProgramState
};

/// Takes answers and hands them on.
class AnswerSink
{
public:
    AnswerSink() = default;
    virtual ~AnswerSink() = default;
    AnswerSink(const AnswerSink&) = delete;
    AnswerSink(AnswerSink&&) = delete;
    AnswerSink& operator=(const AnswerSink&) = delete;
    AnswerSink& operator=(AnswerSink&&) = delete;

    /// @param answer stays the caller's; null only from a host that misbehaves on purpose.
    /// @return false when nobody took it, because no debugger is open: it is lost.
    virtual bool Answer(AnswerKind kind, const CMD_DATA* answer) = 0;
};

} // namespace plchost
