#include "defects.h"
#include "plcdebug_host.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

// The debugger library with one defect, which the environment names: everything goes through to
// the library itself, and one thing on its way is spoiled.

namespace {

using Clock = std::chrono::steady_clock;

template <typename Export> Export Real(const char* name)
{
    static void* const library = dlopen(REAL_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    // POSIX promises that the address that dlsym() returns can be called as a function.
    return reinterpret_cast<Export>(dlsym(library, name));
}

PLC_DBG_INIT* hostRecord = nullptr; // the host's own, for as long as that is there
PLC_DBG_INIT host;
int lives = 0;
bool isCreating = false;
bool isDestroying = false;
std::atomic<bool> isAlive = false; // created and not destroyed
int variables = 0;                 // that are served

/// What some of the defects are: a call that keeps its host waiting. No test waits by it.
void Sleep(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

[[noreturn]] void Crash()
{
    raise(SIGSEGV);
    std::abort();
}

void Send(PlcRequestCallback PLC_DBG_INIT::*callback, const CMD_DATA& request)
{
    const PLC_DBG_INIT& record = Has("reads-record-late") ? *hostRecord : host;
    if (record.*callback != nullptr || Has("calls-null") || Has("reads-record-late")) {
        (record.*callback)(&request);
    }
}

std::uint16_t HostsKey(std::uint16_t key)
{
    constexpr int eachLife = 4;
    return static_cast<std::uint16_t>(key + (Has("keys-go-on") ? eachLife * (lives - 1) : 0));
}

CMD_DATA ReadRequest(const CMD_DATA& real)
{
    char operand[PLC_OPERAND_SIZE];
    PlcOperandOf(&real, operand);
    if (Has("list-upside-down")) {
        constexpr std::array<const char*, 4> reversed{"DB10.DBW4", "MD4", "EB3", "MW20"};
        return PlcMakeReadRequest(real.key, reversed.at(real.key));
    }
    CMD_DATA request = PlcMakeReadRequest(HostsKey(real.key), operand);
    request.length = static_cast<std::uint16_t>(request.length - (Has("wrong-length") ? 1 : 0));
    return request;
}

std::int32_t OnTallFrame()
{
    return host.pfnTallFrame == nullptr ? 0 : host.pfnTallFrame();
}

std::int32_t OnReadVar(const CMD_DATA* request)
{
    Send(&PLC_DBG_INIT::pfnReadVarRequest, ReadRequest(*request));
    return 0;
}

std::int32_t OnWriteVar(const CMD_DATA* request)
{
    char operand[PLC_OPERAND_SIZE];
    PlcOperandOf(request, operand);
    const std::int32_t change = Has("writes-one-more") ? 1 : 0;
    for (int times = Has("writes-twice") ? 2 : 1; times > 0; --times) {
        Send(
            &PLC_DBG_INIT::pfnWriteVarRequest,
            PlcMakeWriteRequest(operand, PlcWrittenValue(request) + change));
    }
    return 0;
}

std::int32_t OnPrgState(const CMD_DATA* request)
{
    if (PlcIsStop(request) != 0) {
        if (!Has("never-stops-states")) {
            Send(&PLC_DBG_INIT::pfnPrgStateRequest, *request);
        }
        return 0;
    }
    const int change = Has("asks-for-other-steps") ? 1 : 0;
    const CMD_DATA changed =
        PlcMakePrgStateRequest(PlcFirstStep(request) + change, PlcLastStep(request) + change);
    if (Has("calls-on-another-thread")) {
        std::thread([&] { Send(&PLC_DBG_INIT::pfnPrgStateRequest, changed); }).join();
    } else {
        Send(&PLC_DBG_INIT::pfnPrgStateRequest, changed);
    }
    return 0;
}

std::int32_t OnDeleteVar(const CMD_DATA* request)
{
    const bool starts = PlcArgumentOfDelete(request) == PLC_DELETE_ARG_START;
    variables += starts ? 1 : -1;
    if (variables == 0) {
        SpoilWxHostByReleases(isDestroying);
    }
    if (!starts &&
        (Has("keeps-variables") || (Has("keeps-variables-when-closed") && !isDestroying))) {
        return 0;
    }
    constexpr std::int16_t none = -2;
    const std::int16_t argument =
        !starts && Has("releases-by-minus-2") ? none : PlcArgumentOfDelete(request);
    Send(
        &PLC_DBG_INIT::pfnDeleteVarRequest, PlcMakeDeleteRequest(HostsKey(request->key), argument));
    return 0;
}

void SpoilThePath(PLC_DBG_INIT& init)
{
    if (Has("path-needs-zero")) {
        init.szPath[PLC_PATH_SIZE - 1] = '\0';
    }
    if (Has("path-must-be-text") && init.szPath[1] == '\xff') {
        Crash();
    }
}

void AskTheOperator()
{
    GtkWidget* const box = gtk_message_dialog_new(
        nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_ERROR, GTK_BUTTONS_OK, "an assertion failed");
    gtk_dialog_run(GTK_DIALOG(box));
    gtk_widget_destroy(box);
}

void Ignore(int /*unused*/) {}

/// What a library must not do to the process.
void SpoilTheProcess()
{
    if (Has("changes-folder")) {
        if (chdir("/") != 0) {
            Crash();
        }
    }
    if (Has("changes-locale")) {
        const std::string_view locale = setlocale(LC_NUMERIC, nullptr);
        setlocale(LC_NUMERIC, locale == "C" ? "C.UTF-8" : "C");
    }
    if (Has("changes-file-mask")) {
        umask(0);
    }
    if (Has("catches-signals")) {
        std::signal(SIGTERM, Ignore);
    }
    if (Has("leaves-a-window")) {
        gtk_window_new(GTK_WINDOW_TOPLEVEL);
    }
    if (Has("leaves-a-file-open")) {
        open("/dev/null", O_RDONLY);
    }
    if (Has("leaks")) {
        constexpr std::size_t twentyMegabytes = 20'000'000;
        static std::vector<std::string> leaked;
        leaked.emplace_back(twentyMegabytes, ' ');
    }
    if (Has("warns")) {
        gtk_widget_show(nullptr);
    }
    if (Has("asks")) {
        AskTheOperator();
    }
}

/// The way of one answer.
class Answer
{
public:
    Answer(const char* name, unsigned char* bytes)
        : m_export(Real<PlcAnswerExport>(name)), m_bytes(bytes)
    {
        if (bytes != nullptr) {
            std::uint16_t length = 0;
            std::memcpy(&length, bytes + offsetof(CMD_DATA, length), sizeof length);
            const std::size_t known =
                std::clamp<std::size_t>(length, std::size_t{PLC_CMD_HEADER_SIZE}, sizeof m_copy);
            std::memcpy(&m_copy, bytes, Has("reads-too-much") ? sizeof m_copy : known);
        }
    }

    bool IsThere() const { return m_bytes != nullptr; }

    CMD_DATA& Copy() { return m_copy; }

    int Pass() { return m_export(IsThere() ? reinterpret_cast<unsigned char*>(&m_copy) : nullptr); }

private:
    const PlcAnswerExport m_export;
    unsigned char* const m_bytes;
    CMD_DATA m_copy{};
};

/// What was asked for an answer of either kind.
int Spoiled(Answer& answer, unsigned char* bytes)
{
    constexpr int slowMs = 20;
    constexpr std::uint16_t unknownKey = 1000;
    if (bytes != nullptr && Has("writes-into-answers")) {
        bytes[0] = static_cast<unsigned char>(bytes[0] + 0);
    }
    if (Has("slow-answers")) {
        Sleep(slowMs);
    }
    if (answer.IsThere() && answer.Copy().key > unknownKey && Has("crashes-by-unknown-keys")) {
        Crash();
    }
    const int taken = answer.Pass();
    if (taken == 0 && isAlive && Has("crashes-by-late-answers")) {
        Crash();
    }
    if (Has("takes-early-answers") && !isAlive && lives == 0) {
        return 1;
    }
    if (Has("takes-answers-while-creating") && isCreating) {
        return 1;
    }
    if (Has("refuses-after-exit") && variables == 0) {
        return 0;
    }
    static const auto guiThread = std::this_thread::get_id();
    return Has("refuses-other-threads") && std::this_thread::get_id() != guiThread ? 0 : taken;
}

/// Exchanges an answer for the one before of its variable.
/// @return false when there was none.
bool TakeTheOneBefore(CMD_DATA& answer)
{
    static std::map<std::uint16_t, CMD_DATA> former;
    const bool known = former.count(answer.key) > 0;
    std::swap(former[answer.key], answer);
    return known;
}

/// Whether an answer comes in the same moment as another one for its variable.
bool ComesSecond(const CMD_DATA& answer)
{
    constexpr std::chrono::milliseconds moment{50};
    static std::map<std::uint16_t, Clock::time_point> last;
    const auto now = Clock::now();
    return now - std::exchange(last[answer.key], now) < moment;
}

void SpoilTheValue(CMD_DATA& answer)
{
    const std::int32_t value = PlcAnsweredValue(&answer);
    if (Has("shows-one-more")) {
        answer = PlcMakeReadAnswer(answer.key, value + 1);
    }
    if (Has("exchanges-rows") && answer.key < 2) {
        answer.key = static_cast<std::uint16_t>(1 - answer.key);
    }
    if (Has("keys-go-on")) {
        answer.key = static_cast<std::uint16_t>(answer.key - HostsKey(0));
    }
}

} // namespace

bool Has(std::string_view defect)
{
    static const char* const named = std::getenv("PLUGIN_DEFECT");
    return named != nullptr && named == defect;
}

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int ExportCreatePlcDebugger(PLC_DBG_INIT* init)
{
    constexpr int slowMs = 5000;
    hostRecord = init;
    host = *init;
    PLC_DBG_INIT own = *init;
    own.pfnTallFrame = OnTallFrame;
    own.pfnReadVarRequest = OnReadVar;
    own.pfnWriteVarRequest = OnWriteVar;
    own.pfnPrgStateRequest = OnPrgState;
    own.pfnDeleteVarRequest = OnDeleteVar;
    SpoilThePath(own);
    if (Has("slow-create")) {
        Sleep(slowMs);
    }
    while (Has("create-never-returns")) {
        pause();
    }
    ++lives;
    isCreating = true;
    variables = 0;
    const int created = Real<PlcCreateExport>("ExportCreatePlcDebugger")(&own);
    isCreating = false;
    isAlive = created == 1;
    SpoilTheProcess();
    SpoilWxHostByCreate();
    return Has("create-always-succeeds") ? 1 : created;
}

EXPORTED void ExportDestroyPlcDebugger()
{
    constexpr int slowMs = 4000;
    if (Has("crashes") && isAlive) {
        Crash();
    }
    if (Has("crashes-by-second-destroy") && !isAlive && lives > 0) {
        Crash();
    }
    while (Has("destroy-never-returns")) {
        pause();
    }
    if (Has("slow-destroy")) {
        Sleep(slowMs);
    }
    isDestroying = true;
    Real<PlcDestroyExport>("ExportDestroyPlcDebugger")();
    isDestroying = false;
    isAlive = false;
    SpoilWxHostByDestroy();
    if (Has("rewrites-configuration") && lives > 0) {
        const std::string prefix(host.szPath, strnlen(host.szPath, PLC_PATH_SIZE));
        std::ofstream(prefix.substr(0, prefix.rfind('/')) + "/plcdebug.ini") << "[Language]\n";
    }
}

EXPORTED int ExportAnswerReadVar(unsigned char* answer)
{
    Answer way("ExportAnswerReadVar", answer);
    if (way.IsThere() && isAlive) {
        if (Has("drops-answers") || (Has("shows-the-oldest") && ComesSecond(way.Copy())) ||
            (Has("one-behind") && !TakeTheOneBefore(way.Copy()))) {
            return 1;
        }
        SpoilTheValue(way.Copy());
    }
    return Spoiled(way, answer);
}

#ifndef WITHOUT_PROGRAM_STATE
EXPORTED int ExportAnswerProgState(unsigned char* answer)
{
    Answer way("ExportAnswerProgState", answer);
    if (way.IsThere() && isAlive && Has("drops-states")) {
        return 1;
    }
    return Spoiled(way, answer);
}
#endif

#ifdef WITH_A_FIFTH_EXPORT
EXPORTED int ExportVersion()
{
    return 1;
}
#endif
