#include "plcdebug_host.h"

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

// A host that answers for every operand and every step, until it is sent SIGTERM; with one defect.
//   bad_host LIBRARY PREFIX DEFECT
// A defect is called by what is found of it; one of two ways to the same has its own name behind a
// colon.

namespace {

PlcCreateExport createDebugger = nullptr;
PlcDestroyExport destroyDebugger = nullptr;
PlcAnswerExport answerReadVar = nullptr;
PlcAnswerExport answerProgState = nullptr;

std::string_view defect;
PLC_DBG_INIT init;

struct Watched
{
    bool isBit = false;
    bool isByte = false;
    bool isEarly = false; ///< Asked for while the debugger was created.
    int asked = 0;        ///< The tick in which it was asked for.
    int told = 0;
};

std::map<std::uint16_t, Watched> watched; ///< By key.
std::int32_t firstStep = 0;
std::int32_t lastStep = -1; ///< Before the first one: no steps.
const CMD_DATA* kept = nullptr;
int ticks = 0;
int keysAsked = 0;
int taken = 0;
bool isCreating = false;
bool isDestroying = false;
bool hasMisbehaved = false;
bool ends = false;

bool Has(std::string_view name)
{
    return defect == name;
}

void SendRead(std::uint16_t key, std::int32_t value)
{
    CMD_DATA answer = PlcMakeReadAnswer(key, value);
    if (Has("wrong-length")) {
        answer.length = PLC_CMD_SIZE;
    }
    taken += answerReadVar(reinterpret_cast<unsigned char*>(&answer));
}

std::int32_t ValueOf(const Watched& variable)
{
    constexpr std::int32_t tooWide = 1000;
    if (variable.isBit && Has("bit-not-0-or-1")) {
        return 8;
    }
    return variable.isByte && Has("value-too-wide") ? tooWide : 1;
}

void AnswerFor(std::uint16_t key, Watched& variable)
{
    constexpr int lateTicks = 30;
    const bool isSilent = (Has("value-late") && ticks - variable.asked < lateTicks) ||
                          (Has("value-stops") && variable.told > 0) ||
                          (Has("not-answered-again") && variable.isEarly);
    if (!isSilent) {
        ++variable.told;
        SendRead(key, ValueOf(variable));
    }
}

void AnswerSteps()
{
    if (lastStep < firstStep) {
        return;
    }
    const std::int32_t last = lastStep - (Has("steps-unknown") && lastStep > firstStep ? 1 : 0);
    const std::vector<std::uint8_t> states(PLC_MAX_STEPS, Has("state-not-0-or-1") ? 2 : 1);
    const std::vector<std::int32_t> values(PLC_MAX_STEPS, PLC_NO_VALUE);
    CMD_DATA answer = PlcMakePrgStateAnswer(firstStep, last, states.data(), values.data());
    answerProgState(reinterpret_cast<unsigned char*>(&answer));
}

void AnswerAll()
{
    if (Has("nothing-answered")) {
        return;
    }
    for (auto& [key, variable] : watched) {
        AnswerFor(key, variable);
    }
    AnswerSteps();
}

/// What some do inside their first callback.
void MisbehaveInside()
{
    constexpr unsigned tooLong = 3'000'000;
    if (Has("create-inside")) {
        createDebugger(&init);
    }
    if (Has("callback-slow")) {
        g_usleep(tooLong); // the defect itself; no test waits by it
    }
    if (Has("callback-throws")) {
        throw std::runtime_error("no such operand");
    }
}

std::int32_t OnReadVar(const CMD_DATA* request)
{
    constexpr int keysBeforeTheChange = 19;
    char name[PLC_OPERAND_SIZE];
    PlcOperandOf(request, name);
    Watched variable;
    variable.isBit = std::string_view(name) == "M1.0";
    variable.isByte = std::string_view(name) == "MB0";
    variable.isEarly = isCreating;
    variable.asked = ticks;
    ++keysAsked;
    if (!Has("list-change-ignored") || keysAsked <= keysBeforeTheChange) {
        watched[request->key] = variable;
    }
    if (Has("not-answered-again") && isCreating) {
        SendRead(request->key, ValueOf(variable));
    }
    if (Has("request-kept")) {
        kept = request;
    }
    if (Has("request-overread")) {
        std::vector<unsigned char> copy(sizeof *request + 1);
        std::memcpy(copy.data(), request, copy.size());
    }
    if (keysAsked == 1) {
        MisbehaveInside();
    }
    return 1;
}

std::int32_t OnDeleteVar(const CMD_DATA* request)
{
    if (Has("answer-during-destroy") && isDestroying) {
        SendRead(request->key, 1);
    }
    if (PlcArgumentOfDelete(request) == PLC_DELETE_ARG_RELEASE && !Has("key-released") &&
        !Has("of-last-life") && !Has("answer-after-destroy")) {
        watched.erase(request->key);
    }
    return 1;
}

std::int32_t OnProgramState(const CMD_DATA* request)
{
    if (PlcIsStop(request) == 0) {
        firstStep = PlcFirstStep(request);
        lastStep = PlcLastStep(request);
    } else if (!Has("steps-released")) {
        lastStep = firstStep - 1;
    }
    return 1;
}

void Create()
{
    isCreating = true;
    createDebugger(&init);
    isCreating = false;
}

void Destroy()
{
    isDestroying = true;
    destroyDebugger();
    isDestroying = false;
}

/// What some do once, when the debugger has taken some answers.
void Misbehave()
{
    constexpr std::uint16_t unknown = 9999;
    if (Has("create-twice")) {
        Create();
    }
    if (Has("null-answer")) {
        answerReadVar(nullptr);
    }
    if (Has("key-unknown")) {
        SendRead(unknown, 1);
    }
    if (Has("of-last-life")) {
        Destroy();
        Create();
    }
    if (Has("answer-after-destroy") || Has("answer-during-destroy")) {
        Destroy();
    }
    if (Has("destroy-on-other-thread")) {
        std::thread(Destroy).join();
        watched.clear();
        lastStep = firstStep - 1;
    }
    if (Has("never-destroyed")) {
        gtk_main_quit();
    }
}

gboolean OnTick(gpointer /*unused*/)
{
    constexpr int some = 100;
    ++ticks;
    if (kept != nullptr && kept->key == UINT16_MAX) {
        std::puts("the last key");
    }
    if (taken >= some && !std::exchange(hasMisbehaved, true)) {
        Misbehave();
    }
    if (!ends) {
        AnswerAll();
    }
    return G_SOURCE_CONTINUE;
}

gboolean OnTerm(gpointer /*unused*/)
{
    ends = true;
    Destroy();
    gtk_main_quit();
    return G_SOURCE_REMOVE;
}

gboolean OnStart(gpointer /*unused*/)
{
    if (Has("create-on-other-thread")) {
        std::thread(Create).join();
    } else {
        Create();
    }
    return G_SOURCE_REMOVE;
}

/// Two blocks of two steps each; none with the defect.
void WriteDebugFile()
{
    struct Block
    {
        char name[48];
        std::uint16_t firstStep;
        std::uint16_t lines;
        std::uint32_t place;
    };

    const std::string lines = ":U E0.0\n:= A0.0\n";
    const std::int32_t place = 12;
    const std::int32_t index = place + static_cast<std::int32_t>(lines.size());
    const std::int32_t count = Has("no-block") ? 0 : 2;
    const Block blocks[] = {{"PB1", 1, 2, 12}, {"PB2", 3, 2, 12}};
    std::string bytes("PLCDBGI1");
    bytes.append(reinterpret_cast<const char*>(&index), sizeof index);
    bytes += lines;
    bytes.append(reinterpret_cast<const char*>(&count), sizeof count);
    bytes.append(reinterpret_cast<const char*>(blocks), sizeof blocks);
    std::ofstream(std::string(init.szPath) + "_plcdbgi.dat", std::ios::binary) << bytes;
}

template <typename Export> void Load(void* library, const char* name, Export& function)
{
    // POSIX promises that the address that dlsym() returns can be called as a function.
    function = reinterpret_cast<Export>(dlsym(library, name));
}

} // namespace

int main(int argc, char** argv)
{
    constexpr unsigned tickMs = 100;
    if (argc != 4 || std::strlen(argv[2]) >= sizeof init.szPath) {
        return 2;
    }
    defect = argv[3];
    std::strcpy(init.szPath, argv[2]);
    init.pfnReadVarRequest = OnReadVar;
    init.pfnDeleteVarRequest = OnDeleteVar;
    init.pfnPrgStateRequest = OnProgramState;
    void* const library = dlopen(argv[1], RTLD_NOW);
    if (library == nullptr) {
        return 1;
    }
    Load(library, "ExportCreatePlcDebugger", createDebugger);
    Load(library, "ExportDestroyPlcDebugger", destroyDebugger);
    Load(library, "ExportAnswerReadVar", answerReadVar);
    Load(library, "ExportAnswerProgState", answerProgState);
    WriteDebugFile();
    g_unix_signal_add(SIGTERM, OnTerm, nullptr);
    if (Has("toolkit-not-set-up")) {
        Create();
    }
    gtk_init(nullptr, nullptr);
    if (Has("answer-before-create")) {
        SendRead(0, 1);
    }
    if (Has("create-on-other-thread:early")) {
        std::thread(Create).join();
    } else {
        g_idle_add(OnStart, nullptr);
    }
    g_timeout_add(tickMs, OnTick, nullptr);
    gtk_main();
    return 0;
}
