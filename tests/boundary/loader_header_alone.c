/* The header for what hosts do around the boundary, as the first and only one: C and C++ programs
 * compile this in every standard that they may use, with the warnings that they may have on. */
#include "plcdebug_loader.h"

int UseOfTheLoader(const char* library, const char* prefix, char why[PLC_WHY_SIZE]);

int UseOfTheLoader(const char* library, const char* prefix, char why[PLC_WHY_SIZE])
{
    PLC_DEBUGGER debugger = {0, 0, 0, 0};
    char path[PLC_DEBUG_FILE_PATH_SIZE];
    unsigned char listing[PLC_EMPTY_DEBUG_FILE_SIZE];
    PlcMakeEmptyDebugFile("P", listing);
    PlcDebugFilePath(prefix, path);
    return PlcWriteDebugFile(path, listing, sizeof listing, why) && PlcCheckDebugFile(path, why) &&
           PlcLoad(library, &debugger, why) && PlcTakesAnswers(&debugger);
}
