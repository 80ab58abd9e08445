#include "support/ToolRun.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace orv::test {

ToolRun RunTool(const std::string& program, const std::vector<std::string>& args, const std::string& stdinText,
                const std::vector<std::string>& env, Stdout sink)
{
    ToolRun run;
    int in[2], out[2] = {-1, -1}, err[2];
    if (pipe(in) != 0 || pipe(err) != 0) return run;
    if (sink == Stdout::kDevFull) {
        out[1] = open("/dev/full", O_WRONLY | O_CLOEXEC);
    } else if (pipe(out) == 0 && sink == Stdout::kClosedPipe) {
        close(out[0]);
        out[0] = -1;
    }
    if (out[1] < 0) return run;
    // Input is small; a child that exits without reading it must not kill the test.
    signal(SIGPIPE, SIG_IGN);
    const pid_t pid = fork();
    if (pid < 0) return run;
    if (pid == 0) {
        signal(SIGPIPE, SIG_DFL);
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) close(fd);
        for (const std::string& e : env) putenv(strdup(e.c_str()));
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    close(err[1]);
    for (std::size_t done = 0; done < stdinText.size();) {
        const ssize_t n = write(in[1], stdinText.data() + done, stdinText.size() - done);
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
    close(in[1]);
    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* sinks[2] = {&run.out, &run.err};
    while (fds[0].fd >= 0 || fds[1].fd >= 0) {
        if (poll(fds, 2, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0) continue;
            char buf[4096];
            const ssize_t n = read(fds[i].fd, buf, sizeof buf);
            if (n > 0) {
                sinks[i]->append(buf, static_cast<std::size_t>(n));
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;
            }
        }
    }
    int raw = 0;
    rusage usage{};
    if (wait4(pid, &raw, 0, &usage) == pid && WIFEXITED(raw)) run.status = WEXITSTATUS(raw);
    run.maxRssKb = usage.ru_maxrss;
    return run;
}

std::string Join(const std::vector<std::string>& args)
{
    std::string s;
    for (const std::string& a : args) s += " " + a;
    return s;
}

} // namespace orv::test
