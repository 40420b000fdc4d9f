#include "measure.h"

#include "command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>

namespace bench {

namespace {

double Now(clockid_t clock)
{
    constexpr double nanosecond = 1e-9;
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * nanosecond;
}

} // namespace

double CpuNow()
{
    return Now(CLOCK_PROCESS_CPUTIME_ID);
}

double WallNow()
{
    return Now(CLOCK_MONOTONIC);
}

double CpuOf(const Work& work)
{
    const double start = CpuNow();
    work();
    return CpuNow() - start;
}

double CpuOf(const Repeated& repeated)
{
    return CpuOf([&] {
               for (int i = 0; i < repeated.times; ++i) {
                   repeated.work();
               }
           }) /
           repeated.times;
}

double Median(std::vector<double> values)
{
    constexpr double middle = 0.5;
    return Percentile(std::move(values), middle);
}

double Percentile(std::vector<double> values, double part)
{
    const auto position = std::min(
        values.size() - 1, static_cast<std::size_t>(part * static_cast<double>(values.size())));
    std::nth_element(
        values.begin(), values.begin() + static_cast<std::ptrdiff_t>(position), values.end());
    return values[position];
}

double CpuRatio(int pairs, const Repeated& measured, const Repeated& reference)
{
    std::vector<double> ofMeasured;
    std::vector<double> ofReference;
    for (int i = 0; i < pairs; ++i) {
        ofMeasured.push_back(CpuOf(measured));
        ofReference.push_back(CpuOf(reference));
    }
    return Median(ofMeasured) / Median(ofReference);
}

void RequireSame(bool same, const std::string& what)
{
    if (!same) {
        std::fprintf(stderr, "bench: %s: product and reference differ\n", what.c_str());
        std::exit(EXIT_FAILURE);
    }
}

void PrintRow(const std::string& what, const std::string& against, double ratio, double goal)
{
    std::printf("%s\t%s\t%.4f\t%g\n", what.c_str(), against.c_str(), ratio, goal);
    std::fflush(stdout);
}

void PrintRow(
    const std::string& what,
    const std::string& against,
    const std::vector<double>& measured,
    const std::vector<double>& reference,
    double goal)
{
    PrintRow(what, against, Median(measured) / Median(reference), goal);
}

int RunRows(const std::vector<Row>& rows, int argc, char** argv)
{
    std::vector<std::string> names;
    std::transform(rows.begin(), rows.end(), std::back_inserter(names), [](const Row& row) {
        return row.name;
    });
    std::vector<std::string> wanted;
    CLI::App app{"Measures what the debugger costs; ./bench builds and runs it.", "bench"};
    app.add_option("ROW", wanted, "measure these rows; else all")->check(CLI::IsMember(names));
    if (const auto ended = base::ReadCommandLine(app, argc, argv)) {
        return *ended;
    }
    for (const Row& row : rows) {
        if (wanted.empty() || std::find(wanted.begin(), wanted.end(), row.name) != wanted.end()) {
            row.run();
        }
    }
    return EXIT_SUCCESS;
}

} // namespace bench
