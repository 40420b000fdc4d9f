#include "plcdebug_host.h"

// A library with the four exports and nothing behind them; an older one lacks the last.

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int ExportCreatePlcDebugger(PLC_DBG_INIT*)
{
    return 1;
}

EXPORTED void ExportDestroyPlcDebugger() {}

EXPORTED int ExportAnswerReadVar(unsigned char*)
{
    return 2;
}

#ifndef OLD_PLUGIN
EXPORTED int ExportAnswerProgState(unsigned char*)
{
    return 3;
}
#endif
