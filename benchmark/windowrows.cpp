#include "windowrows.h"

#include "pages.h"

#include <gtk/gtk.h>

namespace bench {

namespace {

gboolean QuitLoop(gpointer /*unused*/)
{
    gtk_main_quit();
    return G_SOURCE_REMOVE;
}

} // namespace

DebugFileBlock Block(int lineCount)
{
    DebugFileBlock block{"FB" + std::to_string(lineCount), 0};
    for (int i = 0; i < lineCount; ++i) {
        block.lines.push_back(
            i % 10 == 0 ? ":NETWORK " + std::to_string(i / 10) : "M1: U E " + std::to_string(i));
    }
    return block;
}

void RequireSameGrids(const wxGrid& product, const wxGrid& reference, const std::string& what)
{
    RequireSame(PictureOf(product) == PictureOf(reference), what);
}

double CpuOfLoop(unsigned seconds)
{
    g_timeout_add(seconds * 1000, QuitLoop, nullptr);
    return CpuOf(gtk_main);
}

} // namespace bench
