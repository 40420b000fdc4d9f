/* The boundary header as the first and only one: C and C++ programs compile this in every standard
 * that they may use, with the warnings that they may have on. */
#include "plcdebug_host.h"

int UseOfTheCalls(PlcCreateExport create, PlcAnswerExport answer, unsigned char* bytes);
int32_t UseOfTheRequests(uint16_t key, int32_t number);
int32_t UseOfTheAnswers(uint16_t key, int32_t number);

int UseOfTheCalls(PlcCreateExport create, PlcAnswerExport answer, unsigned char* bytes)
{
    PLC_DBG_INIT init = {{0}, 0, 0, 0, 0, 0, 0};
    return PLCDEBUG_BOUNDARY_VERSION + create(&init) + answer(bytes);
}

int32_t UseOfTheRequests(uint16_t key, int32_t number)
{
    const CMD_DATA read = PlcMakeReadRequest(key, "MB4");
    const CMD_DATA write = PlcMakeWriteRequest("MB4", number);
    const CMD_DATA start = PlcMakeDeleteRequest(key, PLC_DELETE_ARG_START);
    const CMD_DATA steps = PlcMakePrgStateRequest(number, number);
    const CMD_DATA stop = PlcMakeStopRequest();
    char name[PLC_OPERAND_SIZE];
    return (PlcOperandOf(&read, name) == PlcOperandOf(&write, name)) + PlcWrittenValue(&write) +
           PlcArgumentOfDelete(&start) + PlcFirstStep(&steps) + PlcLastStep(&steps) +
           PlcIsStop(&stop);
}

int32_t UseOfTheAnswers(uint16_t key, int32_t number)
{
    const uint8_t states[2] = {0, 1};
    const int32_t values[2] = {17, PLC_NO_VALUE};
    const CMD_DATA value = PlcMakeReadAnswer(key, number);
    const CMD_DATA steps = PlcMakePrgStateAnswer(number, number + 1, states, values);
    return PlcAnsweredValue(&value) + PlcStepState(&steps, 0) + PlcStepValue(&steps, 1);
}
