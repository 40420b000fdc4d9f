#include "plcdebug_host.h"
#include "stand_in.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unistd.h>

// The library that a host loads in the debugger's place.

#define EXPORTED extern "C" __attribute__((visibility("default")))

using hostcheck::StandIn;

EXPORTED int ExportCreatePlcDebugger(PLC_DBG_INIT* init)
{
    return StandIn::Get().Create(*init);
}

EXPORTED void ExportDestroyPlcDebugger()
{
    StandIn::Get().Destroy();
}

EXPORTED int ExportAnswerReadVar(unsigned char* answer)
{
    return StandIn::Get().AnswerReadVar(answer);
}

EXPORTED int ExportAnswerProgState(unsigned char* answer)
{
    return StandIn::Get().AnswerProgState(answer);
}

namespace {

/// When the host has done all that it does at its end.
__attribute__((destructor)) void End()
{
    constexpr int exitFound = 9;
    const char* const wanted = std::getenv("PLCDEBUG_HOSTCHECK_STATUS");
    if (!StandIn::Get().End() && wanted != nullptr && std::string_view(wanted) == "1") {
        std::fflush(nullptr);
        _exit(exitFound);
    }
}

} // namespace
