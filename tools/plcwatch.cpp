#include "command_line.h"
#include "loader.h"
#include "open_machine.h"
#include "plcwatch_machines.h"
#include "plcwatch_session.h"

#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

// plcwatch: watches a machine without a window.

namespace plcwatch {

namespace {

constexpr int signalStatus = 128; ///< Plus the signal's number.
constexpr std::size_t usualHeight = 24;

void Tell(const std::string& sentence)
{
    base::Tell("plcwatch", sentence);
}

/// @return whether somebody still reads what is printed.
bool Print(const std::string& text)
{
    pollfd output{STDOUT_FILENO, 0, 0};
    if (::poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0) {
        return false;
    }
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (std::fflush(stdout) == 0) {
        return true;
    }
    if (errno != EPIPE) {
        throw std::runtime_error("cannot write the output (is the disk full?)");
    }
    return false;
}

/// The signals that end the program in its own time.
sigset_t EndingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

std::optional<int> Wait(std::chrono::milliseconds time)
{
    constexpr long perSecond = 1000;
    constexpr long nanoseconds = 1000000;
    const timespec limit{
        static_cast<time_t>(time.count() / perSecond),
        static_cast<long>(time.count() % perSecond) * nanoseconds};
    const sigset_t signals = EndingSignals();
    const int signal = sigtimedwait(&signals, nullptr, &limit);
    return signal > 0 ? std::optional(signalStatus + signal) : std::nullopt;
}

std::size_t TerminalHeight()
{
    winsize size{};
    const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0;
    return isKnown ? size.ws_row : usualHeight;
}

base::Result<std::unique_ptr<plclink::Source>> Open(const Options& options)
{
    if (!std::holds_alternative<plclink::SampleAddress>(options.address)) {
        return plchost::OpenMachine({options.address, options.map, "", options.access, &Tell});
    }
    const auto folder =
        plchost::FindDataFolder(std::filesystem::read_symlink("/proc/self/exe").parent_path());
    if (!folder) {
        return base::Failure{folder.Message()};
    }
    return plchost::OpenMachine({options.address, options.map, *folder});
}

int Main(int argc, char** argv)
{
    const auto parsed = ParseOptions(argc, argv);
    if (const auto* const status = std::get_if<ExitStatus>(&parsed)) {
        return *status;
    }
    const auto& options = std::get<Options>(parsed);
    VariableList list;
    if (!options.list.empty()) {
        auto read = ReadList(options.list);
        if (!read) {
            throw std::runtime_error(read.Message());
        }
        list = *std::move(read);
        for (const std::string& remark : list.remarks) {
            Tell(remark);
        }
    }
    // Before there is a second thread, which would be the one that is interrupted.
    const sigset_t signals = EndingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    const Surroundings around{&Print, &Tell, &Wait, ::isatty(STDOUT_FILENO) != 0, TerminalHeight()};
    if (options.plant) {
        return ListMachines(options, around);
    }
    auto source = Open(options);
    if (!source) {
        throw std::runtime_error(source.Message());
    }
    Session session(options, *std::move(source), around);
    if (options.read) {
        return session.Read();
    }
    return options.write ? session.Write() : session.Watch(list.variables);
}

} // namespace

} // namespace plcwatch

int main(int argc, char** argv)
{
    // File names are the only thing that the locale has a say in.
    std::setlocale(LC_CTYPE, "");
    try {
        return plcwatch::Main(argc, argv);
    } catch (const std::exception& error) {
        plcwatch::Tell(error.what());
        return plcwatch::exitFile;
    }
}
