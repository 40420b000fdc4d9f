/* The smallest host of the PLC debugger: a GTK 3 program with 64 flag bytes, MB0 to MB63, that an
 * operator can watch and write. MB0 counts, so that something moves.
 *
 *     minimal_host LIBRARY PREFIX [SECONDS]
 *
 * LIBRARY is the path of libplcdebug.so. PREFIX is a path prefix: the debugger keeps its settings
 * in plcdebug.ini beside it and reads PREFIX_plcdbgi.dat. With SECONDS the program ends by itself.
 * Everything here runs on one thread, the one with the GTK main loop. */
#include "plcdebug_loader.h"

#include <gtk/gtk.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static PLC_DEBUGGER debugger;
static PLC_DBG_INIT init;

static uint8_t memory[64];
static uint8_t* watched[UINT16_MAX + 1]; /* by key; NULL where nothing is watched */
static unsigned long taken;              /* answers that the debugger has taken */

/* The byte that a request names; NULL for one that this machine does not have. */
static uint8_t* Operand(const CMD_DATA* request)
{
    char name[PLC_OPERAND_SIZE];
    unsigned number = 0;
    PlcOperandOf(request, name);
    int found = sscanf(name, "MB%u", &number) == 1 && number < sizeof memory;
    return found ? &memory[number] : NULL;
}

/* The record is the debugger's and valid only during the call: copy what is needed of it. An
 * operand that does not exist is answered by nothing, and its row keeps showing "?". */
static int32_t OnReadVar(const CMD_DATA* request)
{
    watched[request->key] = Operand(request);
    return 1;
}

/* PLC_DELETE_ARG_START follows each read request and needs nothing more here. */
static int32_t OnDeleteVar(const CMD_DATA* request)
{
    if (PlcArgumentOfDelete(request) == PLC_DELETE_ARG_RELEASE) {
        watched[request->key] = NULL;
    }
    return 1;
}

/* A byte is the low 8 bits of the value. */
static int32_t OnWriteVar(const CMD_DATA* request)
{
    uint8_t* byte = Operand(request);
    if (byte) {
        *byte = (uint8_t)PlcWrittenValue(request);
    }
    return 1;
}

/* Answers for everything that is watched, ten times a second. The debugger copies the record, so
 * it may lie on the stack. The result 0 says that no debugger is open any more. */
static gboolean OnTick(gpointer unused)
{
    (void)unused;
    ++memory[0];
    for (unsigned key = 0; key <= UINT16_MAX; ++key) {
        if (watched[key]) {
            CMD_DATA answer = PlcMakeReadAnswer((uint16_t)key, *watched[key]);
            if (debugger.answerReadVar((unsigned char*)&answer)) {
                ++taken;
            } else {
                watched[key] = NULL;
            }
        }
    }
    return G_SOURCE_CONTINUE;
}

/* Destroy is harmless without a window, and due after the operator has closed it himself. */
static void OnOpen(void)
{
    debugger.destroy();
    debugger.create(&init);
}

static gboolean QuitOwnLoop(gpointer unused)
{
    (void)unused;
    if (gtk_main_level() > 1) {
        return G_SOURCE_CONTINUE;
    }
    gtk_main_quit();
    return G_SOURCE_REMOVE;
}

/* An open dialog of the debugger runs a main loop inside ours, and gtk_main_quit() ends the
 * innermost loop. So the debugger goes first, which ends its dialogs, and our loop when it is the
 * only one again. */
static void Quit(void)
{
    debugger.destroy();
    g_timeout_add(10, QuitOwnLoop, NULL);
}

static gboolean OnEnd(gpointer unused)
{
    (void)unused;
    Quit();
    return G_SOURCE_REMOVE;
}

/* The debugger needs a program debug file with at least one block; this one has no lines. */
static int WriteDebugFile(char why[PLC_WHY_SIZE])
{
    unsigned char content[PLC_EMPTY_DEBUG_FILE_SIZE];
    char path[PLC_DEBUG_FILE_PATH_SIZE];
    PlcMakeEmptyDebugFile("P", content);
    PlcDebugFilePath(init.szPath, path);
    return PlcWriteDebugFile(path, content, sizeof content, why);
}

int main(int argc, char** argv)
{
    char why[PLC_WHY_SIZE];
    gtk_init(NULL, NULL);
    if (argc < 3 || strlen(argv[2]) >= sizeof init.szPath) {
        fprintf(stderr, "usage: minimal_host LIBRARY PREFIX [SECONDS]\n");
        return 2;
    }
    strcpy(init.szPath, argv[2]);
    init.pfnReadVarRequest = OnReadVar;
    init.pfnWriteVarRequest = OnWriteVar;
    init.pfnDeleteVarRequest = OnDeleteVar;
    if (!PlcLoad(argv[1], &debugger, why) || !WriteDebugFile(why)) {
        fprintf(stderr, "minimal_host: %s\n", why);
        return 1;
    }

    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* button = gtk_button_new_with_label("Open the debugger");
    gtk_container_add(GTK_CONTAINER(window), button);
    g_signal_connect(button, "clicked", G_CALLBACK(OnOpen), NULL);
    g_signal_connect(window, "destroy", G_CALLBACK(Quit), NULL);
    gtk_widget_show_all(window);
    OnOpen();
    g_timeout_add(100, OnTick, NULL);
    if (argc > 3) {
        g_timeout_add_seconds((guint)atoi(argv[3]), OnEnd, NULL);
    }
    gtk_main();
    printf("%lu answers taken\n", taken);
    return 0;
}
