#pragma once

// Runs a program as a child process and reports its wall time and its own
// peak resident memory (wait4), so that each side of a benchmark is measured
// alone in the same run.

#include <string>
#include <vector>

struct ChildRun
{
    int status = -1;
    double seconds = 0.0;
    double peakMegabytes = 0.0;

    static ChildRun run(const std::vector<std::string>& command, bool quiet = true);
};
