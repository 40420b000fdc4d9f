#ifndef PLCDEBUG_RECORDS_H
#define PLCDEBUG_RECORDS_H

/** The records of the host boundary: what stands where in a request and in an answer, and functions
 *  that read and build them, so that no program counts bytes. Include plcdebug_host.h, which
 *  includes this file; the thread tags are defined there.
 *
 *      a host reads         PlcOperandOf, PlcWrittenValue, PlcArgumentOfDelete,
 *                           PlcFirstStep, PlcLastStep, PlcIsStop
 *      a host builds        PlcMakeReadAnswer, PlcMakePrgStateAnswer
 *      the debugger reads   PlcAnsweredValue, PlcFirstStep, PlcLastStep, PlcStepState, PlcStepValue
 *      the debugger builds  PlcMakeReadRequest, PlcMakeWriteRequest, PlcMakeDeleteRequest,
 *                           PlcMakePrgStateRequest, PlcMakeStopRequest
 *
 *  A record is 506 bytes: a header of three 16-bit words and a payload. All numbers are
 *  little-endian and may stand unaligned. The functions own and keep nothing; what they read they
 *  leave as it is, and they never read or write beyond it. None can fail. */

/* NOLINTBEGIN(modernize-*): this header is C as well */
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "records are little-endian, and so are the machines that the debugger is built for"
#endif

#ifdef __cplusplus
#define PLCDEBUG_UINT16(number) static_cast<uint16_t>(number)
extern "C" {
#else
#define PLCDEBUG_UINT16(number) ((uint16_t)(number))
#endif

/** Command words at byte 0 of a request. The command word of an answer is not looked at. */
enum
{
    PLC_CMD_READ_VAR = 0x600D,
    PLC_CMD_WRITE_VAR = 0x600E,
    PLC_CMD_DELETE_VAR = 0x600F,
    PLC_CMD_PRG_STATE = 0x6010
};

/** Arguments of a delete request. */
enum
{
    PLC_DELETE_ARG_START = 1,   /* right after a read request: serve this variable from now on */
    PLC_DELETE_ARG_RELEASE = -1 /* the variable has left the watch list: serve it no longer */
};

/** A step without a value in a program-state answer: this one, or -1. */
#define PLC_NO_VALUE INT32_C(0x7FFFFFFF)

/** Sizes in bytes, and places in bytes from the start of a record. */
enum
{
    PLC_CMD_HEADER_SIZE = 6,
    PLC_CMD_PAYLOAD_SIZE = 500,
    PLC_CMD_SIZE = 506,

    PLC_READ_OPERAND_AT = 6,
    PLC_WRITE_VALUE_AT = 6,
    PLC_WRITE_OPERAND_AT = 10,
    PLC_OPERAND_SIZE = 501, /* room for every operand name and its zero byte */
    PLC_DELETE_ARG_AT = 6,
    PLC_DELETE_REQUEST_SIZE = 8,

    PLC_ANSWER_VALUE_AT = 6,
    PLC_READ_ANSWER_SIZE = 10,

    PLC_FIRST_STEP_AT = 6, /* of a program-state request and of its answer */
    PLC_LAST_STEP_AT = 10,
    PLC_PRG_STATE_REQUEST_SIZE = 14,
    PLC_STATES_AT = 14,
    PLC_STEP_SIZE = 5, /* a state of 1 byte, a value of 4 */
    PLC_MAX_STEPS = 98 /* of one program-state request, because its answer holds no more */
};

/** One request or one answer.
 *
 *  Payloads (offsets from the start of the record):
 *
 *  Read request 0x600D        6: operand name, 8-bit, zero-terminated. length = 7 + characters.
 *  Write request 0x600E       key 0. 6: int32 value. 10: operand name, zero-terminated.
 *                             length = 11 + characters.
 *  Delete request 0x600F      6: int16 argument, PLC_DELETE_ARG_*. length = 8.
 *  Program-state request      4: uint16 count of steps, 6: int32 first step, 10: int32 last step.
 *  0x6010                     length = 14. All three 0: stop. A new range replaces the former one.
 *
 *  Read answer                4: uint16 key of the read request. 6: int32 value.
 *                             length = 10.
 *  Program-state answer       6: int32 first step, 10: int32 last step, both as requested.
 *                             14: n = last - first + 1 bytes, 1 where the logic result is set.
 *                             14 + n: n int32 values; PLC_NO_VALUE or -1 for none.
 *                             length = 14 + 5 n, at most 504.
 *
 *  Values: a byte or word operand is taken from the low 8 or 16 bits, sign-extended; floating
 *  point travels as the bit pattern of an IEEE 754 single. */
typedef struct CMD_DATA
{
    uint16_t command;                      /* 0: PLC_CMD_* */
    uint16_t length;                       /* 2: meaningful bytes of the record, header included */
    uint16_t key;                          /* 4: request id of the variable, or count of steps */
    uint8_t payload[PLC_CMD_PAYLOAD_SIZE]; /* 6 */
} CMD_DATA;

/* ---- What the others are made of */

/** @return last - first + 1; 0 or less for a range that ends before its start.
 *  [any-thread] */
static inline int64_t PlcStepCount(int32_t first, int32_t last)
{
    return INT64_C(1) + last - first;
}

/** @return the number of 4 bytes at a place of a record; 0 where they are not all payload.
 *  [any-thread] */
static inline int32_t PlcInt32At(const CMD_DATA* record, int64_t place)
{
    int32_t number = 0;
    if (place >= PLC_CMD_HEADER_SIZE && place <= PLC_CMD_SIZE - 4) {
        memcpy(&number, record->payload + (place - PLC_CMD_HEADER_SIZE), sizeof number);
    }
    return number;
}

/** Writes a number of 4 bytes at PLC_..._AT, and nothing else.
 *  [any-thread] */
static inline void PlcPutInt32(CMD_DATA* record, size_t place, int32_t number)
{
    memcpy(record->payload + (place - PLC_CMD_HEADER_SIZE), &number, sizeof number);
}

/** Writes the range of a program-state request or answer, and nothing else.
 *  [any-thread] */
static inline void PlcPutSteps(CMD_DATA* record, int32_t first, int32_t last)
{
    PlcPutInt32(record, PLC_FIRST_STEP_AT, first);
    PlcPutInt32(record, PLC_LAST_STEP_AT, last);
}

/** Writes an operand name at PLC_..._AT into a payload of zeros, and the length word that goes with
 *  it. Of a name too long for the record the end is cut off; the zero byte is always there.
 *  [any-thread] */
static inline void PlcPutOperand(CMD_DATA* record, size_t place, const char* operand)
{
    size_t size = 0;
    while (operand[size] != 0 && place + size + 1 < PLC_CMD_SIZE) {
        ++size;
    }
    memcpy(record->payload + (place - PLC_CMD_HEADER_SIZE), operand, size);
    record->length = PLCDEBUG_UINT16(place + size + 1);
}

/* ---- What a host reads: requests */

/** The operand name of a read or write request. It ends with the record when it lacks its zero
 *  byte.
 *  @param name the caller's; gets the name and a zero byte.
 *  @return the length of the name.
 *  [any-thread] */
static inline size_t PlcOperandOf(const CMD_DATA* request, char name[PLC_OPERAND_SIZE])
{
    const size_t place =
        request->command == PLC_CMD_WRITE_VAR ? PLC_WRITE_OPERAND_AT : PLC_READ_OPERAND_AT;
    const uint8_t* const operand = request->payload + (place - PLC_CMD_HEADER_SIZE);
    size_t length = 0;
    while (place + length < PLC_CMD_SIZE && operand[length] != 0) {
        ++length;
    }
    memcpy(name, operand, length);
    name[length] = 0;
    return length;
}

/** @return the value of a write request.
 *  [any-thread] */
static inline int32_t PlcWrittenValue(const CMD_DATA* request)
{
    return PlcInt32At(request, PLC_WRITE_VALUE_AT);
}

/** @return PLC_DELETE_ARG_START, PLC_DELETE_ARG_RELEASE, or what else a delete request holds.
 *  [any-thread] */
static inline int16_t PlcArgumentOfDelete(const CMD_DATA* request)
{
    const uint8_t* const place = request->payload + (PLC_DELETE_ARG_AT - PLC_CMD_HEADER_SIZE);
    int16_t argument = 0;
    memcpy(&argument, place, sizeof argument);
    return argument;
}

/** @return the first step of a program-state request, or of its answer.
 *  [any-thread] */
static inline int32_t PlcFirstStep(const CMD_DATA* record)
{
    return PlcInt32At(record, PLC_FIRST_STEP_AT);
}

/** @return the last step of a program-state request, or of its answer.
 *  [any-thread] */
static inline int32_t PlcLastStep(const CMD_DATA* record)
{
    return PlcInt32At(record, PLC_LAST_STEP_AT);
}

/** @return nonzero when a program-state request asks for no steps any more.
 *  [any-thread] */
static inline int PlcIsStop(const CMD_DATA* request)
{
    return request->key == 0 && PlcFirstStep(request) == 0 && PlcLastStep(request) == 0;
}

/* ---- What a host builds: answers. The record is the caller's. */

/** Answers a read request with the value that its operand has now.
 *  @param key of the request.
 *  @return a record for ExportAnswerReadVar(), of 10 meaningful bytes.
 *  [any-thread] */
static inline CMD_DATA PlcMakeReadAnswer(uint16_t key, int32_t value)
{
    CMD_DATA answer = {PLC_CMD_READ_VAR, PLC_READ_ANSWER_SIZE, key, {0}};
    PlcPutInt32(&answer, PLC_ANSWER_VALUE_AT, value);
    return answer;
}

/** Answers a program-state request with what its steps have left behind.
 *  @param first, last of the request. A range of more than PLC_MAX_STEPS, which no request has, is
 *         answered as if it ended there. One that ends before its start has no steps.
 *  @param states one byte a step, 1 where the logic result is set; copied.
 *  @param values one number a step, the accumulator or PLC_NO_VALUE; copied.
 *  @return a record for ExportAnswerProgState(), of 14 + 5 n meaningful bytes for n steps.
 *  [any-thread] */
static inline CMD_DATA
PlcMakePrgStateAnswer(int32_t first, int32_t last, const uint8_t* states, const int32_t* values)
{
    const int64_t steps = PlcStepCount(first, last);
    uint16_t count = 0;
    if (steps > PLC_MAX_STEPS) {
        count = PLC_MAX_STEPS;
        last = first + PLC_MAX_STEPS - 1;
    } else if (steps > 0) {
        count = PLCDEBUG_UINT16(steps);
    }
    const uint16_t length = PLCDEBUG_UINT16(PLC_STATES_AT + PLC_STEP_SIZE * count);
    CMD_DATA answer = {PLC_CMD_PRG_STATE, length, count, {0}};
    PlcPutSteps(&answer, first, last);
    if (count > 0) {
        uint8_t* const place = answer.payload + (PLC_STATES_AT - PLC_CMD_HEADER_SIZE);
        memcpy(place, states, count);
        memcpy(place + count, values, count * sizeof *values);
    }
    return answer;
}

/* ---- The debugger's side, for programs that stand in for it. The record is the caller's. */

/** @param operand zero-terminated.
 *  @return the request for the value of an operand.
 *  [any-thread] */
static inline CMD_DATA PlcMakeReadRequest(uint16_t key, const char* operand)
{
    CMD_DATA request = {PLC_CMD_READ_VAR, 0, key, {0}};
    PlcPutOperand(&request, PLC_READ_OPERAND_AT, operand);
    return request;
}

/** @param operand zero-terminated.
 *  @return the request to give an operand a value.
 *  [any-thread] */
static inline CMD_DATA PlcMakeWriteRequest(const char* operand, int32_t value)
{
    CMD_DATA request = {PLC_CMD_WRITE_VAR, 0, 0, {0}};
    PlcPutInt32(&request, PLC_WRITE_VALUE_AT, value);
    PlcPutOperand(&request, PLC_WRITE_OPERAND_AT, operand);
    return request;
}

/** @param argument PLC_DELETE_ARG_*.
 *  @return the request to serve a variable, or to serve it no longer.
 *  [any-thread] */
static inline CMD_DATA PlcMakeDeleteRequest(uint16_t key, int16_t argument)
{
    CMD_DATA request = {PLC_CMD_DELETE_VAR, PLC_DELETE_REQUEST_SIZE, key, {0}};
    uint8_t* const place = request.payload + (PLC_DELETE_ARG_AT - PLC_CMD_HEADER_SIZE);
    memcpy(place, &argument, sizeof argument);
    return request;
}

/** @return the request for the states of steps, at most PLC_MAX_STEPS of them.
 *  [any-thread] */
static inline CMD_DATA PlcMakePrgStateRequest(int32_t first, int32_t last)
{
    const uint16_t count = PLCDEBUG_UINT16(PlcStepCount(first, last));
    CMD_DATA request = {PLC_CMD_PRG_STATE, PLC_PRG_STATE_REQUEST_SIZE, count, {0}};
    PlcPutSteps(&request, first, last);
    return request;
}

/** @return the program-state request that asks for no steps any more.
 *  [any-thread] */
static inline CMD_DATA PlcMakeStopRequest(void)
{
    CMD_DATA request = {PLC_CMD_PRG_STATE, PLC_PRG_STATE_REQUEST_SIZE, 0, {0}};
    return request;
}

/** @return the value of a read answer.
 *  [any-thread] */
static inline int32_t PlcAnsweredValue(const CMD_DATA* answer)
{
    return PlcInt32At(answer, PLC_ANSWER_VALUE_AT);
}

/** @param i counts the steps of a program-state answer from 0.
 *  @return 1 where the logic result is set; 0 where it is not, or not in the record.
 *  [any-thread] */
static inline int PlcStepState(const CMD_DATA* answer, int64_t i)
{
    const int64_t count = PlcStepCount(PlcFirstStep(answer), PlcLastStep(answer));
    const int64_t room = PLC_CMD_SIZE - PLC_STATES_AT;
    return i >= 0 && i < count && i < room &&
           answer->payload[PLC_STATES_AT - PLC_CMD_HEADER_SIZE + i] == 1;
}

/** @param i counts the steps of a program-state answer from 0.
 *  @return the accumulator, or PLC_NO_VALUE or -1 for none; 0 where it is not in the record.
 *  [any-thread] */
static inline int32_t PlcStepValue(const CMD_DATA* answer, int64_t i)
{
    const int64_t count = PlcStepCount(PlcFirstStep(answer), PlcLastStep(answer));
    return i >= 0 && i < count ? PlcInt32At(answer, PLC_STATES_AT + count + 4 * i) : 0;
}

#undef PLCDEBUG_UINT16

#ifdef __cplusplus
}
#define PLCDEBUG_STATIC_ASSERT(condition, text) static_assert(condition, text)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define PLCDEBUG_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#else
#define PLCDEBUG_STATIC_ASSERT(condition, text) struct PlcDebugNoStaticAssert
#endif

PLCDEBUG_STATIC_ASSERT(sizeof(CMD_DATA) == PLC_CMD_SIZE, "a record has 506 bytes");
PLCDEBUG_STATIC_ASSERT(offsetof(CMD_DATA, length) == 2, "length word at byte 2");
PLCDEBUG_STATIC_ASSERT(offsetof(CMD_DATA, key) == 4, "key at byte 4");
PLCDEBUG_STATIC_ASSERT(offsetof(CMD_DATA, payload) == PLC_CMD_HEADER_SIZE, "payload at byte 6");
PLCDEBUG_STATIC_ASSERT(
    PLC_STATES_AT + PLC_STEP_SIZE * PLC_MAX_STEPS <= PLC_CMD_SIZE, "98 steps fit an answer");
PLCDEBUG_STATIC_ASSERT(
    PLC_STATES_AT + PLC_STEP_SIZE * (PLC_MAX_STEPS + 1) > PLC_CMD_SIZE, "99 steps do not");

/* NOLINTEND(modernize-*) */

#endif
