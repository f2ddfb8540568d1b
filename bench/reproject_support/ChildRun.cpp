#include "ChildRun.h"

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

ChildRun ChildRun::run(const std::vector<std::string>& command, bool quiet)
{
    ChildRun result;
    std::vector<char*> argv;
    for (const std::string& arg : command)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        if (quiet) {
            const int null = open("/dev/null", O_WRONLY);
            dup2(null, STDOUT_FILENO);
        }
        execvp(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    struct rusage usage = {};
    wait4(pid, &status, 0, &usage);
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.peakMegabytes = usage.ru_maxrss / 1024.0;
    return result;
}
