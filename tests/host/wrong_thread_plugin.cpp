#include "plcdebug_host.h"

#include <thread>

// A library that breaks the thread rule: it calls back on a thread of its own.

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int ExportCreatePlcDebugger(PLC_DBG_INIT* init)
{
    const CMD_DATA stop = PlcMakeStopRequest();
    std::thread([&] { init->pfnPrgStateRequest(&stop); }).join();
    return 1;
}

EXPORTED void ExportDestroyPlcDebugger() {}

EXPORTED int ExportAnswerReadVar(unsigned char*)
{
    return 1;
}

EXPORTED int ExportAnswerProgState(unsigned char*)
{
    return 1;
}
