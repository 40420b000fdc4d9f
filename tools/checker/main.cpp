#include "command_line.h"
#include "trial.h"

#include <CLI/CLI.hpp>
#include <gtk/gtk.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <unistd.h>

// plcdebug-check LIBRARY: puts a build of the debugger library through what a host does.

namespace plccheck {

namespace {

constexpr const char* name = "plcdebug-check";
constexpr int exitGood = 0;
constexpr int exitFindings = 1;
constexpr int usualLimit = 40;
constexpr int longestLimit = 3600;
constexpr int usualSlowest = 3000;
/// A library that hangs in so many checks hangs in the others, too.
constexpr int hangsThatAreEnough = 2;

constexpr const char* description =
    "Loads a build of the debugger library as a host does, each check in a process of its own, "
    "and\n"
    "reports one line for each: what holds, or what is wrong. Needs a display; windows open and\n"
    "close by themselves.";

constexpr const char* exitStatuses = R"(
Exit status:
  0  nothing is wrong
  1  something is wrong; the report says what
  2  the command line is wrong, there is no display, or no wxWidgets host for the checks)";

struct Options
{
    std::string library;
    std::string only;           ///< Empty: all.
    int limit = usualLimit;     ///< Seconds for one check.
    int slowest = usualSlowest; ///< Milliseconds for a create or a destroy.
    std::string through;        ///< What runs the processes of the checks; empty: nothing.
    bool list = false;
    std::string here;   ///< The check that this process is to run itself; empty: none.
    std::string folder; ///< Where it writes.
    int reportTo = STDERR_FILENO;
};

std::vector<Check> AllChecks()
{
    std::vector<Check> checks{LoadCheck()};
    for (const auto* part :
         {&LifeCycleChecks(),
          &AnswerChecks(),
          &ShownChecks(),
          &OwnershipChecks(),
          &OperatorChecks(),
          &WxChecks()}) {
        checks.insert(checks.end(), part->begin(), part->end());
    }
    return checks;
}

std::vector<Check> ChosenChecks(const Options& options)
{
    std::vector<Check> checks = AllChecks();
    const auto others = std::remove_if(checks.begin(), checks.end(), [&](const Check& check) {
        return !options.only.empty() && options.only != check.name;
    });
    checks.erase(others, checks.end());
    return checks;
}

std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const Check& check : AllChecks()) {
        names.emplace_back(check.name);
    }
    return names;
}

void ListChecks()
{
    for (const Check& check : AllChecks()) {
        std::cout << check.name << ": " << check.sentence << '\n';
    }
}

TrialTerms TermsOf(const Options& options)
{
    return {
        options.library,
        std::chrono::seconds(options.limit),
        std::chrono::milliseconds(options.slowest),
        options.through};
}

/// Everything that was found, each with the checks that it hit.
class Findings
{
public:
    void Add(const char* check, const std::string& finding)
    {
        const auto known = std::find_if(m_found.begin(), m_found.end(), [&](const Found& found) {
            return found.finding == finding;
        });
        if (known == m_found.end()) {
            m_found.push_back({finding, check});
        } else {
            known->checks += std::string(", ") + check;
        }
    }

    void Print() const
    {
        for (const Found& found : m_found) {
            std::cout << found.finding << "\n         (" << found.checks << ")\n";
        }
    }

private:
    struct Found
    {
        std::string finding;
        std::string checks;
    };

    std::vector<Found> m_found;
};

/// @return whether nothing is wrong.
bool RunAll(const std::vector<Check>& checks, const TrialTerms& terms)
{
    int wrong = 0;
    int count = 0;
    int hangs = 0;
    Findings findings;
    std::map<std::string, int> slowest;
    for (const Check& check : checks) {
        const Outcome outcome = RunTrial(check.name, terms);
        const bool good = outcome.findings.empty();
        ++count;
        wrong += good ? 0 : 1;
        hangs += outcome.returned ? 0 : 1;
        std::cout << (good ? "ok     " : "WRONG  ") << check.name << ": " << check.sentence
                  << std::endl;
        for (const std::string& finding : outcome.findings) {
            findings.Add(check.name, finding);
        }
        for (const auto& [figure, value] : outcome.figures) {
            slowest[figure] = std::max(slowest[figure], value);
        }
        if (!good && check.name == std::string(LoadCheck().name)) {
            std::cout << "       the other checks have nothing to look at\n";
            break;
        }
        if (hangs == hangsThatAreEnough) {
            std::cout << "       the other checks are left out: it would hang in them as well\n";
            break;
        }
    }
    findings.Print();
    for (const auto& [figure, value] : slowest) {
        std::cout << "at most " << value << ' ' << figure << '\n';
    }
    std::cout << count << " checks, " << wrong << " wrong" << std::endl;
    return wrong == 0;
}

int Run(const Options& options)
{
    if (options.list) {
        ListChecks();
        return exitGood;
    }
    const auto checks = AllChecks();
    const auto here = std::find_if(checks.begin(), checks.end(), [&](const Check& check) {
        return options.here == check.name;
    });
    if (here != checks.end()) {
        return RunCheckHere(*here, TermsOf(options), options.folder, options.reportTo);
    }
    if (gtk_init_check(nullptr, nullptr) == FALSE) {
        base::Tell(name, "no display (set DISPLAY, or run it under a virtual X server)");
        return base::exitUsage;
    }
    const auto chosen = ChosenChecks(options);
    const bool needsWx = std::any_of(chosen.begin(), chosen.end(), [](const Check& check) {
        return check.host == HostKind::Wx;
    });
    if (const auto wx = needsWx ? LoadWxHost() : nullptr; !wx) {
        base::Tell(name, wx.Message());
        return base::exitUsage;
    }
    return RunAll(chosen, TermsOf(options)) ? exitGood : exitFindings;
}

int Main(int argc, char** argv)
{
    Options options;
    CLI::App app{description, name};
    app.footer(exitStatuses);
    app.add_flag("--list", options.list, "print the checks");
    app.add_option("LIBRARY", options.library, "libplcdebug.so, of this program's architecture")
        ->check(CLI::ExistingFile.description(""));
    app.add_option("--only", options.only, "run this check alone")
        ->type_name("CHECK")
        ->check(CLI::IsMember(Names()).description(""));
    app.add_option("--limit", options.limit, "end a check after so many seconds, else 40")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, longestLimit).description(""));
    app.add_option(
           "--slowest",
           options.slowest,
           "what a create or a destroy may take, in milliseconds, else 3000")
        ->type_name("MS")
        ->check(CLI::Range(1, longestLimit * 1000).description(""));
    app.add_option(
           "--through", options.through, "run each check by this program, such as an emulator")
        ->type_name("PROGRAM");
    // For the processes that this program starts.
    app.add_option("--here", options.here)->group("");
    app.add_option("--folder", options.folder)->group("");
    app.add_option("--report-to", options.reportTo)->group("");
    app.callback([&options] {
        if (options.library.empty() && !options.list) {
            throw CLI::RequiredError("LIBRARY");
        }
    });
    if (const auto ended = base::ReadCommandLine(app, argc, argv)) {
        return *ended;
    }
    return Run(options);
}

} // namespace

} // namespace plccheck

int main(int argc, char** argv)
{
    try {
        return plccheck::Main(argc, argv);
    } catch (const std::exception& error) {
        base::Tell(plccheck::name, error.what());
        return base::exitUsage;
    }
}
