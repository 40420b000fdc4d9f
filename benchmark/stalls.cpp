#include <gtk/gtk.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <vector>

// A module that GTK loads into any program (GTK_MODULES=FILE): it looks at the clock every 100 ms
// on the GUI thread, and writes at the program's end how late it came in the last ticks, as many as
// STALLS_TICKS says, and what processor time and memory the program took: to STALLS_FILE, separated
// by tabs, the 99th percentile of the time from tick to tick and the longest one, in ms beyond the
// period, percent of a core, MB.

namespace {

constexpr unsigned periodMs = 100;

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
    constexpr double part = 0.99;
    constexpr double thousand = 1000;
    const std::vector<Tick>& ticks = Ticks();
    const std::size_t wanted = std::strtoul(std::getenv("STALLS_TICKS"), nullptr, 10);
    if (ticks.size() <= wanted) {
        std::fprintf(stderr, "stalls: the program has run for less than %zu ticks\n", wanted);
        return;
    }
    const std::size_t begin = ticks.size() - wanted;
    std::vector<double> late;
    for (std::size_t i = begin; i < ticks.size(); ++i) {
        late.push_back((ticks[i].time - ticks[i - 1].time) * thousand - periodMs);
    }
    std::sort(late.begin(), late.end());
    const Tick& first = ticks[begin];
    const double cpu = (ticks.back().cpu - first.cpu) / (ticks.back().time - first.time);
    const auto position = static_cast<std::size_t>(part * static_cast<double>(late.size()));
    std::FILE* const file = std::fopen(std::getenv("STALLS_FILE"), "w");
    if (file == nullptr) {
        std::perror("stalls");
        return;
    }
    std::fprintf(
        file,
        "%.1f\t%.1f\t%.0f\t%ld\n",
        late[position],
        late.back(),
        cpu * 100,
        Usage().ru_maxrss / 1024);
    std::fclose(file);
}

} // namespace

extern "C" {

// NOLINTNEXTLINE(readability-identifier-naming): GTK looks for this name
__attribute__((visibility("default"))) void gtk_module_init(gint* /*argc*/, gchar*** /*argv*/)
{
    constexpr std::size_t manyTicks = 6000;
    Ticks().reserve(manyTicks);
    g_timeout_add(periodMs, NoteTick, nullptr);
    std::atexit(Report);
}
}
