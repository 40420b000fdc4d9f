/* The smallest program that uses an installed library: opens the debugger for a moment and tells
 * the title of its window and how many variables it has asked for.
 *     host PREFIX */
#include <gtk/gtk.h>

#include <plcdebug_host.h>
#include <stdio.h>

static int asked;

static int32_t OnRead(const CMD_DATA* request)
{
    asked += request->length > PLC_CMD_HEADER_SIZE;
    return 1;
}

static gboolean OnEnd(gpointer unused)
{
    (void)unused;
    for (GList* window = gtk_window_list_toplevels(); window; window = window->next) {
        if (gtk_widget_get_visible(window->data)) {
            printf("%s, %d asked for\n", gtk_window_get_title(window->data), asked);
        }
    }
    gtk_main_quit();
    return G_SOURCE_REMOVE;
}

int main(int argc, char** argv)
{
    PLC_DBG_INIT init = {.pfnReadVarRequest = OnRead};
    gtk_init(&argc, &argv);
    g_strlcpy(init.szPath, argv[1], sizeof init.szPath);
    if (!ExportCreatePlcDebugger(&init)) {
        return 1;
    }
    g_timeout_add(500, OnEnd, NULL);
    gtk_main();
    ExportDestroyPlcDebugger();
    return 0;
}
