#include "trial.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace plccheck {

namespace {

using Clock = std::chrono::steady_clock;

/// What has been read of a report.
struct Reading
{
    std::string rest; ///< Not yet a whole line.
    std::string step = "starts";
    std::vector<std::string> findings;
    std::vector<std::pair<std::string, int>> figures;
    bool done = false;

    void Take(const std::string& line)
    {
        const std::string text = line.substr(1);
        if (line[0] == Report::stepMark) {
            step = text;
        } else if (line[0] == Report::doneMark) {
            done = true;
        } else if (line[0] == Report::figureMark) {
            figures.emplace_back(text.substr(text.find(' ') + 1), std::stoi(text));
        } else if (std::find(findings.begin(), findings.end(), text) == findings.end()) {
            findings.push_back(text); // what is wrong a thousand times is said once
        }
    }

    void Add(std::string_view bytes)
    {
        rest += bytes;
        for (auto end = rest.find('\n'); end != std::string::npos; end = rest.find('\n')) {
            Take(rest.substr(0, end));
            rest.erase(0, end + 1);
        }
    }
};

/// Reads until the other side has ended.
/// @return false when the time was up before.
bool ReadAll(int file, Clock::time_point end, Reading& reading)
{
    constexpr std::size_t bufferSize = 4096;
    std::array<char, bufferSize> buffer{};
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting{file, POLLIN, 0};
        if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) == 0) {
            return false;
        }
        const ssize_t count = read(file, buffer.data(), buffer.size());
        if (count == 0) {
            return true;
        }
        if (count > 0) {
            reading.Add({buffer.data(), static_cast<std::size_t>(count)});
        } else if (errno != EINTR) {
            throw std::runtime_error(std::string("cannot read the report: ") + strerror(errno));
        }
    }
}

/// A new folder for what one process writes. It goes here, because that process may end anywhere.
class Folder
{
public:
    Folder() : m_path((std::filesystem::temp_directory_path() / "plcdebug-check-XXXXXX").string())
    {
        if (mkdtemp(m_path.data()) == nullptr) {
            throw std::runtime_error(
                "cannot make a folder like " + m_path + ": " + strerror(errno));
        }
    }

    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    Folder(const Folder&) = delete;
    Folder(Folder&&) = delete;
    Folder& operator=(const Folder&) = delete;
    Folder& operator=(Folder&&) = delete;

    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

/// Becomes the program that runs the check. Only between fork() and exec().
[[noreturn]] void
Become(const std::string& check, const TrialTerms& terms, const std::string& folder, int reportFile)
{
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string file = std::to_string(reportFile);
    const std::string slowest = std::to_string(terms.slowest.count());
    const std::array<const char*, 12> command{
        terms.through.c_str(),
        self.c_str(),
        "--here",
        check.c_str(),
        "--folder",
        folder.c_str(),
        "--report-to",
        file.c_str(),
        "--slowest",
        slowest.c_str(),
        terms.library.c_str(),
        nullptr};
    const char* const* const first = command.data() + (terms.through.empty() ? 1 : 0);
    execvp(*first, const_cast<char* const*>(first)); // which changes none of them
    _exit(1);
}

std::string EndOf(int status)
{
    if (WIFSIGNALED(status)) {
        const char* signal = sigdescr_np(WTERMSIG(status)); // in English, as the whole report
        return std::string("crashes (") + (signal != nullptr ? signal : "unknown signal") + ")";
    }
    return "ends the program with status " + std::to_string(WEXITSTATUS(status));
}

void RunIn(
    WxHost* program,
    const Check& check,
    const TrialTerms& terms,
    const std::string& folder,
    const Report& report)
{
    report.Step("loads the library");
    if (const auto plugin = plchost::LoadPlugin(terms.library)) {
        TrialHost host(*plugin, report, terms.slowest, folder, program);
        check.run(host);
    } else {
        report.Wrong(plugin.Message());
    }
    report.Step("ends");
}

} // namespace

Outcome RunTrial(const std::string& check, const TrialTerms& terms)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error(std::string("cannot make a pipe: ") + strerror(errno));
    }
    const Folder folder;
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error(std::string("cannot start a process: ") + strerror(errno));
    }
    if (child == 0) {
        close(ends[0]);
        Become(check, terms, folder.Path(), ends[1]);
    }
    close(ends[1]);
    Reading reading;
    const bool ended = ReadAll(ends[0], Clock::now() + terms.limit, reading);
    close(ends[0]);
    if (!ended) {
        kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const std::string where = " while the host " + reading.step;
    if (!ended) {
        reading.findings.push_back(
            "does not return within " + std::to_string(terms.limit.count()) + " s" + where);
    } else if (!reading.done && (WIFSIGNALED(status) || reading.findings.empty())) {
        reading.findings.push_back(EndOf(status) + where);
    } else if (WIFSIGNALED(status)) {
        reading.findings.push_back(EndOf(status) + " when the host ends");
    }
    return {reading.findings, reading.figures, ended};
}

int RunCheckHere(
    const Check& check, const TrialTerms& terms, const std::string& folder, int reportFile)
{
    fcntl(reportFile, F_SETFD, FD_CLOEXEC);
    static const Report report(reportFile); // the toolkits may complain until the process ends
    if (check.host == HostKind::Gtk) {
        gtk_init(nullptr, nullptr);
        RunIn(nullptr, check, terms, folder, report);
    } else if (const auto run = LoadWxHost()) {
        const auto inside = [&](WxHost& program) { RunIn(&program, check, terms, folder, report); };
        if (!(*run)(inside)) {
            report.Wrong("the host's main loop ends, and not by the host");
        }
    } else {
        report.Wrong(run.Message());
    }
    report.Done();
    return 0;
}

} // namespace plccheck
