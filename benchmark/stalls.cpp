#include <gtk/gtk.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <vector>

// A module that GTK loads into any program (GTK_MODULES=FILE): it looks at the clock every 100 ms
// on the GUI thread, and tells at the program's end how late it came in the last minute, and what
// processor time and memory the program took. The output is rows as the other programs print them.

namespace {

constexpr unsigned periodMs = 100;
constexpr std::size_t ticksOfAMinute = 600;

struct Tick
{
    double time; ///< In seconds.
    double cpu;  ///< Of the process so far, in seconds.
};

std::vector<Tick>& Ticks()
{
    static std::vector<Tick> ticks;
    return ticks;
}

double Seconds(const timeval& time)
{
    constexpr double microsecond = 1e-6;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * microsecond;
}

rusage Usage()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage;
}

gboolean NoteTick(gpointer /*unused*/)
{
    constexpr double microsecond = 1e-6;
    const rusage usage = Usage();
    Ticks().push_back(
        {static_cast<double>(g_get_monotonic_time()) * microsecond,
         Seconds(usage.ru_utime) + Seconds(usage.ru_stime)});
    return G_SOURCE_CONTINUE;
}

void Report()
{
    constexpr double goalMs = 30;
    constexpr double part = 0.99;
    constexpr double thousand = 1000;
    const std::vector<Tick>& ticks = Ticks();
    if (ticks.size() <= ticksOfAMinute) {
        std::fprintf(stderr, "stalls: the program has run for less than a minute\n");
        return;
    }
    std::vector<double> late;
    for (std::size_t i = ticks.size() - ticksOfAMinute; i < ticks.size(); ++i) {
        late.push_back((ticks[i].time - ticks[i - 1].time) * thousand - periodMs);
    }
    std::sort(late.begin(), late.end());
    const Tick& first = ticks[ticks.size() - ticksOfAMinute];
    const double cpu = (ticks.back().cpu - first.cpu) / (ticks.back().time - first.time);
    const auto position = static_cast<std::size_t>(part * static_cast<double>(late.size()));
    std::printf(
        "end to end: 99th percentile from tick to tick, longest %.0f ms, processor %.0f %%, memory "
        "%ld MB\tms beyond the period\t%.1f\t%g\n",
        late.back(),
        cpu * 100,
        Usage().ru_maxrss / 1024,
        late[position],
        goalMs);
    std::fflush(stdout);
}

} // namespace

extern "C" {

// NOLINTNEXTLINE(readability-identifier-naming): GTK looks for this name
__attribute__((visibility("default"))) void gtk_module_init(gint* /*argc*/, gchar*** /*argv*/)
{
    Ticks().reserve(ticksOfAMinute * 10);
    g_timeout_add(periodMs, NoteTick, nullptr);
    std::atexit(Report);
}
}
