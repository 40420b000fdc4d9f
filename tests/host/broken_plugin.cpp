#include "plcdebug_host.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <string>
#include <string_view>
#include <unistd.h>

// A library with everything that a host sees of a debugger, and with one defect, or none.

namespace {

constexpr std::string_view defect = BROKEN_PLUGIN_DEFECT;
constexpr std::array<const char*, 4> operands{"MW20", "EB3", "MD4", "DB10.DBW4"};
constexpr guint tickMs = 50;

PLC_DBG_INIT host;
GtkWidget* window = nullptr;
GtkWidget* label = nullptr;
guint timer = 0;
std::uint16_t asked = 0; // operands that the host has been asked for
std::atomic<bool> isOpen = false;
std::atomic<std::int32_t> shownValue = 0;

void Send(PlcRequestCallback callback, const CMD_DATA& request)
{
    if (callback != nullptr) {
        callback(&request);
    }
}

CMD_DATA ReadRequest(std::uint16_t key)
{
    CMD_DATA request = PlcMakeReadRequest(key, operands.at(key));
    if (defect == "wrong-length") {
        --request.length;
    }
    return request;
}

void Close(GtkWidget*, gpointer)
{
    isOpen = false;
    window = nullptr;
    g_source_remove(timer);
    if (defect == "keeps-variables") {
        return;
    }
    for (std::uint16_t key = 0; key < asked; ++key) {
        Send(host.pfnDeleteVarRequest, PlcMakeDeleteRequest(key, PLC_DELETE_ARG_RELEASE));
    }
}

gboolean ShowValue(gpointer)
{
    if (defect != "loses-answers") {
        gtk_label_set_text(GTK_LABEL(label), std::to_string(shownValue).c_str());
    }
    return G_SOURCE_CONTINUE;
}

void OpenWindow()
{
    window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    label = gtk_label_new("?");
    gtk_container_add(GTK_CONTAINER(window), label);
    g_signal_connect(window, "destroy", G_CALLBACK(Close), nullptr);
    gtk_widget_show_all(window);
    timer = g_timeout_add(tickMs, ShowValue, nullptr);
}

void AskTheOperator()
{
    GtkWidget* const box = gtk_message_dialog_new(
        nullptr, GTK_DIALOG_MODAL, GTK_MESSAGE_ERROR, GTK_BUTTONS_OK, "an assertion failed");
    gtk_dialog_run(GTK_DIALOG(box));
    gtk_widget_destroy(box);
}

int Take(const unsigned char* answer)
{
    if (!isOpen || answer == nullptr) {
        return 0;
    }
    std::uint16_t length = 0;
    std::memcpy(&length, answer + offsetof(CMD_DATA, length), sizeof length);
    CMD_DATA copy{};
    const std::size_t known = std::min<std::size_t>(length, sizeof copy);
    std::memcpy(&copy, answer, defect == "reads-too-much" ? sizeof copy : known);
    if (length >= PLC_READ_ANSWER_SIZE) {
        shownValue = PlcAnsweredValue(&copy);
    }
    return defect == "refuses-answers" ? 0 : 1;
}

} // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int ExportCreatePlcDebugger(PLC_DBG_INIT* init)
{
    host = *init;
    OpenWindow();
    if (defect == "warns") {
        gtk_widget_show(nullptr);
    }
    if (defect == "asks") {
        AskTheOperator();
    }
    for (asked = 0; asked < operands.size();) {
        const std::uint16_t key = asked++;
        Send(host.pfnReadVarRequest, ReadRequest(key));
        if (window == nullptr) { // destroyed by the callback
            return 0;
        }
        Send(host.pfnDeleteVarRequest, PlcMakeDeleteRequest(key, PLC_DELETE_ARG_START));
    }
    isOpen = true;
    return 1;
}

EXPORTED void ExportDestroyPlcDebugger()
{
    if (window == nullptr) {
        return;
    }
    if (defect == "crashes") {
        raise(SIGSEGV);
    }
    while (defect == "never-returns") {
        pause();
    }
    gtk_widget_destroy(window);
}

EXPORTED int ExportAnswerReadVar(unsigned char* answer)
{
    return Take(answer);
}

#ifndef WITHOUT_PROGRAM_STATE
// NOLINTNEXTLINE(readability-non-const-parameter): the boundary's signature
EXPORTED int ExportAnswerProgState(unsigned char* answer)
{
    return isOpen && answer != nullptr ? 1 : 0;
}
#endif
