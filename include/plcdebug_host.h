#ifndef PLCDEBUG_HOST_H
#define PLCDEBUG_HOST_H

/** The host boundary of libplcdebug.so, whole: everything that a host program needs, with the
 *  records in plcdebug_records.h. Plain C, usable from C99 and C++11 on.
 *
 *  The debugger is one window that a machine-control program opens and closes. It never talks to
 *  the controller itself: it asks the host through the callbacks of PLC_DBG_INIT, and the host
 *  answers, at once or later, through ExportAnswerReadVar and ExportAnswerProgState.
 *
 *  A host is a GTK 3 program (or a wxWidgets program on GTK 3) that
 *    1. has called gtk_init() and runs a GTK main loop on one thread, the GUI thread;
 *    2. fills a PLC_DBG_INIT and calls ExportCreatePlcDebugger();
 *    3. answers the requests that arrive in its callbacks;
 *    4. calls ExportDestroyPlcDebugger() when it is done, also after the operator has closed the
 *       window, before it opens the debugger again or ends.
 *
 *  Thread tags, the last line of each description:
 *    [gui-thread]                      only on the thread that runs the GTK main loop
 *    [gui-thread, inside a callback]   the plug-in calls the host, on the GUI thread
 *    [any-thread]                      on every thread, also several at a time
 *    [not during destroy]              not while ExportDestroyPlcDebugger() runs
 */

#include "plcdebug_records.h"

/* NOLINTBEGIN(modernize-*): this header is C as well */
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The version of the boundary. It rises by one when a record, a callback or an export changes, or
 *  what one of them means; not when the headers only explain or offer more. */
#define PLCDEBUG_BOUNDARY_VERSION 1

/** Bytes of a path prefix. */
enum
{
    PLC_PATH_SIZE = 256
};

/** Takes one request. The record belongs to the plug-in and is valid only during the call: copy
 *  what you keep. The result is not looked at. The host may answer from inside the call, and may
 *  call ExportDestroyPlcDebugger().
 *  [gui-thread, inside a callback] */
typedef int32_t (*PlcRequestCallback)(const CMD_DATA* request);

/** Tells whether the debugger window may be tall: nonzero allows a height of 1942 pixels, zero one
 *  of 514. Called once, while the window is built.
 *  [gui-thread, inside a callback] */
typedef int32_t (*PlcTallFrameCallback)(void);

/** What a host hands over at creation; 304 bytes on 64 bits, 280 on 32 bits. Copied whole: the
 *  host's record need not outlive the call. A callback that is null is not called, its request is
 *  not sent. */
typedef struct PLC_DBG_INIT
{
    /** Path prefix in the locale's encoding, or in UTF-8 where the host has set no locale;
     *  zero-terminated (without a zero it ends with the field). For "/a/b/prog" the plug-in reads
     *  and writes the configuration /a/b/plcdebug.ini and reads the program debug file
     *  /a/b/prog_plcdbgi.dat. */
    char szPath[PLC_PATH_SIZE];
    PlcTallFrameCallback pfnTallFrame;
    PlcRequestCallback pfnReadVarRequest;
    PlcRequestCallback pfnWriteVarRequest;
    PlcRequestCallback pfnPrgStateRequest;
    PlcRequestCallback pfnDeleteVarRequest;
    void* reserved; /* copied along, never read */
} PLC_DBG_INIT;

/** Opens the debugger window. Not to be called again before ExportDestroyPlcDebugger().
 *
 *  Read requests of the last variable list leave already during this call; answers given before
 *  it returns are dropped.
 *  @param init copied; the caller keeps it.
 *  @return 1 when the window is open; 0 when the toolkit could not be set up, when the host called
 *          ExportDestroyPlcDebugger() from a callback meanwhile, or when it calls this from a
 *          callback or under a question of an ExportDestroyPlcDebugger() that has not returned yet.
 *  @throws std::out_of_range when the program debug file exists but holds no block at all: no
 *          window is left behind, ExportDestroyPlcDebugger() may be called. A host in C ends here,
 *          so it looks at its own file first.
 *  [gui-thread] */
int ExportCreatePlcDebugger(PLC_DBG_INIT* init);

/** Releases every watched variable, offers to save an unsaved list, closes the window and, if the
 *  plug-in has started the toolkit, ends it. Harmless without a window, and when called again.
 *
 *  Called from inside a callback or while a dialog of the debugger is open, it ends the dialogs as
 *  cancelled and takes the window down as soon as the plug-in's code has returned.
 *
 *  A host that wants to end calls this first, and gtk_main_quit() when gtk_main_level() is 1 again:
 *  a dialog of the debugger runs a main loop inside the host's, and gtk_main_quit() ends the
 *  innermost one, so that the host would never end. A wxWidgets host that destroys its own top
 *  window closes the debugger with it, as by this call.
 *  [gui-thread] */
void ExportDestroyPlcDebugger(void);

/** Queues one read answer. Copies at most 506 bytes before it returns; the caller keeps the buffer.
 *  @param answer a CMD_DATA of at least as many bytes as its length word says (506 at most), at any
 *         alignment.
 *  @return 1 queued, 0 no debugger open or answer null (dropped).
 *  [any-thread, not during destroy] */
int ExportAnswerReadVar(unsigned char* answer);

/** Queues one program-state answer; as ExportAnswerReadVar() otherwise.
 *  @return 1 queued, 0 no debugger open or answer null (dropped).
 *  [any-thread, not during destroy] */
int ExportAnswerProgState(unsigned char* answer);

/** The types of the four exports, for dlsym(). */
typedef int (*PlcCreateExport)(PLC_DBG_INIT* init);
typedef void (*PlcDestroyExport)(void);
typedef int (*PlcAnswerExport)(unsigned char* answer);

#ifdef __cplusplus
}
#endif

PLCDEBUG_STATIC_ASSERT(
    sizeof(PLC_DBG_INIT) == PLC_PATH_SIZE + 6 * sizeof(void*),
    "280 bytes on 32 bits, 304 on 64 bits");
PLCDEBUG_STATIC_ASSERT(offsetof(PLC_DBG_INIT, pfnTallFrame) == PLC_PATH_SIZE, "first callback");
PLCDEBUG_STATIC_ASSERT(
    offsetof(PLC_DBG_INIT, pfnReadVarRequest) == PLC_PATH_SIZE + sizeof(void*), "second callback");
PLCDEBUG_STATIC_ASSERT(
    offsetof(PLC_DBG_INIT, pfnWriteVarRequest) == PLC_PATH_SIZE + 2 * sizeof(void*),
    "third callback");
PLCDEBUG_STATIC_ASSERT(
    offsetof(PLC_DBG_INIT, pfnPrgStateRequest) == PLC_PATH_SIZE + 3 * sizeof(void*),
    "fourth callback");
PLCDEBUG_STATIC_ASSERT(
    offsetof(PLC_DBG_INIT, pfnDeleteVarRequest) == PLC_PATH_SIZE + 4 * sizeof(void*),
    "fifth callback");

/* NOLINTEND(modernize-*) */

#endif
