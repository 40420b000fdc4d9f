/* The boundary header as the first and only one: C and C++ programs compile this in every standard
 * that they may use. */
#include "plcdebug_host.h"

int UseOfTheHeader(PlcCreateExport create, PlcAnswerExport answer, CMD_DATA* record);

int UseOfTheHeader(PlcCreateExport create, PlcAnswerExport answer, CMD_DATA* record)
{
    PLC_DBG_INIT init = {{0}, 0, 0, 0, 0, 0, 0};
    record->command = PLC_CMD_READ_VAR;
    return create(&init) + answer((unsigned char*)record);
}
