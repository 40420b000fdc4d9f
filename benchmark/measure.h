#pragma once

#include <functional>
#include <string>
#include <vector>

// Figures that hold on a noisy machine: ratios of two things measured in turn in one run. One
// thread at a time.

namespace bench {

using Work = std::function<void()>;

/// @return processor time of this process, in seconds.
double CpuNow();

/// @return time of day for differences, in seconds.
double WallNow();

/// @return processor time that @p work takes, in seconds.
double CpuOf(const Work& work);

/// @return the value in the middle; of an even number the upper of both.
double Median(std::vector<double> values);

/// @return the value that the given part of all values does not exceed.
/// @param part 0 to 1.
double Percentile(std::vector<double> values, double part);

/// What a ratio compares: how often each is done for one figure, so that the shorter one can be
/// repeated until it is long enough for the clock.
struct Repeated
{
    Work work;
    int times = 1;
};

/// @return processor time of one time, in seconds.
double CpuOf(const Repeated& repeated);

/// Measures both in turn.
/// @return median processor time of @p measured, over that of @p reference, each for one time.
double CpuRatio(int pairs, const Repeated& measured, const Repeated& reference);

/// Ends the program with a message unless product and reference have delivered the same.
void RequireSame(bool same, const std::string& what);

/// Prints a row of the table: four fields with tabs between.
/// @param goal the ratio must not be greater.
void PrintRow(const std::string& what, const std::string& against, double ratio, double goal);

/// Prints the row of two medians: that of @p measured over that of @p reference.
void PrintRow(
    const std::string& what,
    const std::string& against,
    const std::vector<double>& measured,
    const std::vector<double>& reference,
    double goal);

/// A row that can be run on its own.
struct Row
{
    std::string name;
    Work run;
};

/// Runs the rows that the command line names, or all.
/// @return exit status
int RunRows(const std::vector<Row>& rows, int argc, char** argv);

} // namespace bench
