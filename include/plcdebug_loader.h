#ifndef PLCDEBUG_LOADER_H
#define PLCDEBUG_LOADER_H

/** What every host does around the four exports: load the library, look at the program debug file
 *  before it opens the debugger on it, write one, see whether the debugger is still there. It
 *  includes plcdebug_host.h; a host may do all this in its own way and leave this file out. For
 *  POSIX systems; link with -ldl where the C library does not have dlopen() itself.
 *
 *  A function that can fail returns 1, or 0 and the reason in one line. Nothing is printed, nothing
 *  is kept but the library. The thread tags are explained in plcdebug_host.h. */

#include "plcdebug_host.h"

/* NOLINTBEGIN(modernize-*,cppcoreguidelines-*): this header is C as well */
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#ifdef __cplusplus
#define PLCDEBUG_BYTE(character) static_cast<unsigned char>(character)
#define PLCDEBUG_BYTES(content) static_cast<const unsigned char*>(content)
#define PLCDEBUG_SIZE(count) static_cast<size_t>(count)
extern "C" {
#else
#define PLCDEBUG_BYTE(character) ((unsigned char)(character))
#define PLCDEBUG_BYTES(content) ((const unsigned char*)(content))
#define PLCDEBUG_SIZE(count) ((size_t)(count))
#endif

enum
{
    PLC_WHY_SIZE = 512, /* room for a reason; what is longer is cut off */
    PLC_DEBUG_FILE_PATH_SIZE = PLC_PATH_SIZE + 16,
    PLC_EMPTY_DEBUG_FILE_SIZE = 72
};

/** The four exports of a loaded library. */
typedef struct PLC_DEBUGGER
{
    PlcCreateExport create;
    PlcDestroyExport destroy;
    PlcAnswerExport answerReadVar;
    PlcAnswerExport answerProgramState;
} PLC_DEBUGGER;

/** Loads the library, which stays in memory until the process ends.
 *  @param library its path; a name without a slash is looked for in the system's folders.
 *  @param debugger gets the exports; on failure it stays as it was.
 *  @param why gets the reason: no such file, what the system's loader says (another architecture,
 *         or a library that it needs is missing), or which export it lacks.
 *  @return 1 loaded, 0 not.
 *  [any-thread] */
static inline int PlcLoad(const char* library, PLC_DEBUGGER* debugger, char why[PLC_WHY_SIZE])
{
    static const char* const names[] = {
        "ExportCreatePlcDebugger",
        "ExportDestroyPlcDebugger",
        "ExportAnswerReadVar",
        "ExportAnswerProgState"};
    void* exports[4] = {NULL, NULL, NULL, NULL};
    void* loaded = NULL;
    size_t i = 0;
    if (strchr(library, '/') != NULL && access(library, F_OK) != 0 && errno == ENOENT) {
        snprintf(why, PLC_WHY_SIZE, "no file \"%s\"", library);
        return 0;
    }
    loaded = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    if (loaded == NULL) {
        snprintf(
            why,
            PLC_WHY_SIZE,
            "cannot load the library: %s (is it built for this architecture, and is everything "
            "installed that it needs?)",
            dlerror());
        return 0;
    }
    for (i = 0; i < sizeof names / sizeof *names; ++i) {
        exports[i] = dlsym(loaded, names[i]);
        if (exports[i] == NULL) {
            snprintf(
                why,
                PLC_WHY_SIZE,
                "%s has no symbol \"%s\" (is it an older library, or another one?)",
                library,
                names[i]);
            return 0;
        }
    }
    memcpy(&debugger->create, &exports[0], sizeof debugger->create);
    memcpy(&debugger->destroy, &exports[1], sizeof debugger->destroy);
    memcpy(&debugger->answerReadVar, &exports[2], sizeof debugger->answerReadVar);
    memcpy(&debugger->answerProgramState, &exports[3], sizeof debugger->answerProgramState);
    return 1;
}

/** Whether a debugger is there to take answers: it is told of no step at all, which no request can
 *  match. After the close box it is not; after the menu's Exit it still is, hidden.
 *  @return 1 or 0.
 *  [any-thread, not during destroy] */
static inline int PlcTakesAnswers(const PLC_DEBUGGER* debugger)
{
    const CMD_DATA nothing = PlcMakePrgStateAnswer(1, 0, NULL, NULL);
    unsigned char bytes[PLC_CMD_SIZE];
    memcpy(bytes, &nothing, sizeof bytes);
    return debugger->answerProgramState(bytes) != 0;
}

/** The program debug file that belongs to a path prefix.
 *  @param prefix as in PLC_DBG_INIT: zero-terminated, or as long as that field.
 *  @param path gets its path.
 *  [any-thread] */
static inline void PlcDebugFilePath(const char* prefix, char path[PLC_DEBUG_FILE_PATH_SIZE])
{
    snprintf(path, PLC_DEBUG_FILE_PATH_SIZE, "%.*s_plcdbgi.dat", PLC_PATH_SIZE, prefix);
}

/** Whether the debugger can open on a program debug file. Without a single whole block it would end
 *  a program in C: ExportCreatePlcDebugger() throws. Without a file it opens, after two messages.
 *  @param path of the file. Only a regular file is read, as the debugger does.
 *  @param why gets the reason: there is none, or it holds no block, as an empty one or one that is
 *         cut off does.
 *  @return 1 it can, 0 it cannot.
 *  [any-thread] */
static inline int PlcCheckDebugFile(const char* path, char why[PLC_WHY_SIZE])
{
    enum
    {
        indexOffsetAt = 8,
        blockRecordSize = 56
    };
    struct stat status;
    int32_t indexOffset = 0;
    int32_t blocks = 0;
    char block[blockRecordSize];
    int good = 0;
    FILE* const file =
        stat(path, &status) == 0 && S_ISREG(status.st_mode) ? fopen(path, "rb") : NULL;
    if (file == NULL) {
        snprintf(why, PLC_WHY_SIZE, "no program debug file \"%s\"", path);
        return 0;
    }
    good = fseek(file, indexOffsetAt, SEEK_SET) == 0 &&
           fread(&indexOffset, sizeof indexOffset, 1, file) == 1 && indexOffset > 0 &&
           fseek(file, indexOffset, SEEK_SET) == 0 && fread(&blocks, sizeof blocks, 1, file) == 1 &&
           blocks > 0 && fread(block, sizeof block, 1, file) == 1;
    fclose(file);
    if (!good) {
        snprintf(why, PLC_WHY_SIZE, "the program debug file \"%s\" holds no block", path);
    }
    return good;
}

/** Replaces a program debug file as a whole: nobody, the debugger neither, ever sees half of it.
 *  It is written beside, as "PATH.new", and renamed.
 *  @param content as docs/formats.md describes it.
 *  @param why gets what could not be done, and the system's reason; the old file is still there.
 *  @return 1 written, 0 not.
 *  [any-thread] */
static inline int
PlcWriteDebugFile(const char* path, const void* content, size_t size, char why[PLC_WHY_SIZE])
{
    char beside[PLC_DEBUG_FILE_PATH_SIZE + 4];
    const unsigned char* next = PLCDEBUG_BYTES(content);
    size_t left = size;
    int error = 0;
    int file = -1;
    if (strlen(path) >= PLC_DEBUG_FILE_PATH_SIZE) {
        snprintf(why, PLC_WHY_SIZE, "the path \"%s\" is too long", path);
        return 0;
    }
    snprintf(beside, sizeof beside, "%s.new", path);
    file = open(beside, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    error = file < 0 ? errno : 0;
    while (error == 0 && left > 0) {
        const ssize_t written = write(file, next, left);
        if (written >= 0) {
            next += written;
            left -= PLCDEBUG_SIZE(written);
        } else if (errno != EINTR) {
            error = errno;
        }
    }
    if (error == 0 && fsync(file) != 0) {
        error = errno;
    }
    if (file >= 0 && close(file) != 0 && error == 0) {
        error = errno;
    }
    if (error == 0 && rename(beside, path) != 0) {
        error = errno;
    }
    if (error != 0) {
        unlink(beside);
        snprintf(why, PLC_WHY_SIZE, "cannot write \"%s\": %s", path, strerror(error));
    }
    return error == 0;
}

/** The smallest program debug file: one block without lines.
 *  @param program name of the block, at most 47 bytes of it.
 *  @param content gets the file.
 *  [any-thread] */
static inline void
PlcMakeEmptyDebugFile(const char* program, unsigned char content[PLC_EMPTY_DEBUG_FILE_SIZE])
{
    enum
    {
        indexOffsetAt = 8,
        indexAt = 12,
        nameAt = 16,
        nameSize = 48,
        linesOffsetAt = 68
    };

    size_t i = 0;
    memset(content, 0, PLC_EMPTY_DEBUG_FILE_SIZE);
    content[indexOffsetAt] = indexAt;
    content[indexAt] = 1;
    content[linesOffsetAt] = indexAt; /* there are none */
    while (i < nameSize - 1 && program[i] != 0) {
        content[nameAt + i] = PLCDEBUG_BYTE(program[i]);
        ++i;
    }
}

#undef PLCDEBUG_BYTE
#undef PLCDEBUG_BYTES
#undef PLCDEBUG_SIZE

#ifdef __cplusplus
}
#endif

/* NOLINTEND(modernize-*,cppcoreguidelines-*) */

#endif
