#include "BenchReport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <fmt/format.h>
#include <iostream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace bench {

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const std::size_t mid = values.size() / 2;
    return values.size() % 2 ? values[mid] : (values[mid - 1] + values[mid]) / 2;
}

double MedianSeconds(int runs, const std::function<void()>& work, int warmups) {
    for (int i = 0; i < warmups; ++i)
        work();
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(SecondsSince(start));
    }
    return Median(times);
}

double GrowthExponent(double t1, double n1, double t2, double n2) {
    return std::log(t2 / t1) / std::log(n2 / n1);
}

SChild RunChild(const std::vector<std::string>& argv, const std::vector<std::string>& env,
                bool capture, const std::string& cwd) {
    SChild child;
    std::vector<std::string> environment;
    for (char** e = environ; *e; ++e)
        environment.emplace_back(*e);
    for (const auto& added : env) {
        const std::string name = added.substr(0, added.find('=') + 1);
        std::erase_if(environment, [&](const std::string& e) { return e.starts_with(name); });
        environment.push_back(added);
    }
    std::vector<char*> args, envp;
    for (const auto& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    for (const auto& e : environment)
        envp.push_back(const_cast<char*>(e.c_str()));
    envp.push_back(nullptr);

    int out[2] = {-1, -1};
    if (capture && pipe(out) != 0)
        return child;
    std::fflush(nullptr);
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        if (capture) {
            dup2(out[1], STDOUT_FILENO);
            close(out[0]);
            close(out[1]);
        } else {
            const int null = open("/dev/null", O_WRONLY);
            dup2(null, STDOUT_FILENO);
            close(null);
        }
        if (!cwd.empty() && chdir(cwd.c_str()) != 0)
            _exit(127);
        execvpe(args[0], args.data(), envp.data());
        _exit(127);
    }
    if (capture) {
        close(out[1]);
        char buffer[4096];
        ssize_t n = 0;
        while (pid > 0 && (n = read(out[0], buffer, sizeof buffer)) > 0)
            child.output.append(buffer, static_cast<std::size_t>(n));
        close(out[0]);
    }
    if (pid < 0)
        return child;
    int status = 0;
    rusage usage{};
    if (wait4(pid, &status, 0, &usage) != pid)
        return child;
    child.seconds = SecondsSince(start);
    child.peakKb = usage.ru_maxrss;
    child.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return child;
}

std::string SelfPath() {
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return n > 0 ? std::string(buffer, static_cast<std::size_t>(n)) : std::string();
}

std::string TimeText(double seconds) {
    if (seconds < 1e-3)
        return fmt::format("{:.1f} us", seconds * 1e6);
    if (seconds < 1)
        return fmt::format("{:.1f} ms", seconds * 1e3);
    return fmt::format("{:.2f} s", seconds);
}

std::string CountText(long long n) {
    std::string digits = std::to_string(n < 0 ? -n : n);
    for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), ",");
    return n < 0 ? "-" + digits : digits;
}

void Row(const std::string& action, const std::string& size, const std::string& figure,
         const std::string& target, const std::string& met) {
    std::cout << action << '\t' << size << '\t' << figure << '\t' << target << '\t' << met
              << std::endl;
}

void InfoRow(const std::string& action, const std::string& size, const std::string& figure) {
    Row(action, size, figure, "-", "-");
}

void TimeRow(const std::string& action, const std::string& size, double seconds, double limit) {
    Row(action, size, TimeText(seconds), "< " + TimeText(limit), seconds < limit ? "yes" : "no");
}

void GrowthRow(const std::string& action, double t1, long long n1, double t2, long long n2,
               double limit) {
    const double exponent =
        GrowthExponent(t1, static_cast<double>(n1), t2, static_cast<double>(n2));
    Row(action + " growth", CountText(n1) + " -> " + CountText(n2),
        fmt::format("{:.2f} ({} -> {})", exponent, TimeText(t1), TimeText(t2)),
        fmt::format("<= {:.1f}", limit), exponent <= limit ? "yes" : "no");
}

void FailedRow(const std::string& action, const std::string& size, const std::string& why,
               const std::string& target) {
    Row(action, size, "failed: " + why, target, "no");
}

void Note(const std::string& text) {
    std::cerr << text << std::endl;
}

} // namespace bench
