#include "debugfile.h"
#include "descendants.h"
#include "plcdebug_host.h"
#include "tempdir.h"
#include "watchvalues.h"

#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/grid.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string>

// A host whose debugger shows the values.
//   watch_debugger LIBRARY

namespace {

bench::ShownTick shownTick;
PlcAnswerExport answerReadVar;

void PrintTexts()
{
    const auto* frame = dynamic_cast<wxFrame*>(wxTopLevelWindows.GetLast()->GetData());
    const auto* grid = FirstOf<wxGrid>(*frame);
    for (int row = 0; row < grid->GetNumberRows(); ++row) {
        std::puts(grid->GetCellValue(row, 1).utf8_str());
    }
    std::fflush(stdout);
}

gboolean OnTick(gpointer /*unused*/)
{
    shownTick.Next();
    for (std::size_t i = 0; i < bench::shownValues; ++i) {
        const auto value = static_cast<float>(shownTick.Value(i));
        std::int32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        CMD_DATA answer = PlcMakeReadAnswer(static_cast<std::uint16_t>(i), bits);
        answerReadVar(reinterpret_cast<unsigned char*>(&answer));
    }
    if (shownTick.IsToPrint()) {
        PrintTexts();
    }
    return G_SOURCE_CONTINUE;
}

} // namespace

int main(int argc, char** argv)
{
    gtk_init(nullptr, nullptr);
    void* library = argc == 2 ? dlopen(argv[1], RTLD_NOW) : nullptr;
    if (library == nullptr) {
        std::fprintf(stderr, "usage: watch_debugger LIBRARY\n");
        return EXIT_FAILURE;
    }
    const auto create =
        reinterpret_cast<PlcCreateExport>(dlsym(library, "ExportCreatePlcDebugger"));
    answerReadVar = reinterpret_cast<PlcAnswerExport>(dlsym(library, "ExportAnswerReadVar"));

    const TempDir dir;
    std::string list;
    for (std::size_t i = 0; i < bench::shownValues; ++i) {
        list += "MD" + std::to_string(4 * i) + "/G\n";
    }
    dir.Write("plcdebug.ini", "[Settings]\nPLCLastFile=" + dir.Write("list.plc", list));
    dir.Write("prog_plcdbgi.dat", DebugFile({{"OB1"}}));
    PLC_DBG_INIT init{};
    dir.File("prog").copy(init.szPath, sizeof init.szPath - 1);
    init.pfnTallFrame = [] { return 1; };
    create(&init);
    g_timeout_add(bench::shownPeriodMs, OnTick, nullptr);
    gtk_main();
    return EXIT_SUCCESS;
}
