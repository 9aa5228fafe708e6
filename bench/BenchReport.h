// What every benchmark program shares: timing, child processes, and the rows
// of the table scripts/bench.sh prints. Rows go to standard output, one per
// line as ACTION, SIZE, FIGURE, TARGET, MET separated by TABs; progress goes
// to standard error.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace bench {

// The median of `runs` timed calls of `work`, in seconds, after `warmups`
// untimed ones (the first call pays for cold caches).
double MedianSeconds(int runs, const std::function<void()>& work, int warmups = 1);
double Median(std::vector<double> values);
double SecondsSince(std::chrono::steady_clock::time_point start);

// How the time grows with the size: log(t2 / t1) / log(n2 / n1); 1 is linear.
double GrowthExponent(double t1, double n1, double t2, double n2);

struct SChild {
    int exitCode = -1; // -1: did not start or was killed
    double seconds = 0;
    long peakKb = 0; // the child's ru_maxrss
    std::string output;
};

// Runs `argv` (argv[0] a path, or a program found through PATH) in `cwd`
// (empty: this process's) with `env` ("NAME=value") added to this process's
// environment, standard output captured when `capture`, else thrown away;
// standard error goes to this process's.
SChild RunChild(const std::vector<std::string>& argv, const std::vector<std::string>& env = {},
                bool capture = false, const std::string& cwd = {});
// This program's own file, to start itself as a child.
std::string SelfPath();

// "12.3 ms", "1.23 s"
std::string TimeText(double seconds);
// "50,000"
std::string CountText(long long n);

void Row(const std::string& action, const std::string& size, const std::string& figure,
         const std::string& target, const std::string& met);
// A figure without a target.
void InfoRow(const std::string& action, const std::string& size, const std::string& figure);
// A time against an upper limit.
void TimeRow(const std::string& action, const std::string& size, double seconds, double limit);
// The growth exponent of a time from size n1 to n2 against `limit`.
void GrowthRow(const std::string& action, double t1, long long n1, double t2, long long n2,
               double limit);
// A measurement that could not be made: MET "no", the reason as the figure.
void FailedRow(const std::string& action, const std::string& size, const std::string& why,
               const std::string& target);

// Progress for the person watching, on standard error.
void Note(const std::string& text);

} // namespace bench
