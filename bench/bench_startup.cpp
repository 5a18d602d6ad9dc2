// Start-up: wall time from exec to the first painted login panel, and the
// resident memory then, side by side with a bare Qt window as the floor.
// Runs on the platform in QT_QPA_PLATFORM (offscreen when unset).
#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace {

struct Sample
{
    double ms = -1;
    long rssKb = 0;
};

Sample runOnce(const char *program)
{
    int fds[2];
    if (pipe(fds) != 0)
        return {};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, fds[0]);
    char *argv[] = { const_cast<char *>(program), nullptr };
    QElapsedTimer timer;
    timer.start();
    pid_t pid = -1;
    const int rc = posix_spawn(&pid, program, &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    if (rc != 0) {
        close(fds[0]);
        return {};
    }
    std::string line;
    char c;
    while (read(fds[0], &c, 1) == 1 && c != '\n')
        line += c;
    Sample s;
    s.ms = timer.nsecsElapsed() / 1e6;
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    if (line.rfind("painted ", 0) != 0)
        return {};
    s.rssKb = std::stol(line.substr(8));
    return s;
}

Sample median(const char *program, int runs)
{
    std::vector<Sample> samples;
    for (int i = 0; i < runs; ++i) {
        const Sample s = runOnce(program);
        if (s.ms < 0) {
            std::fprintf(stderr, "%s did not report a paint\n", program);
            return {};
        }
        samples.push_back(s);
    }
    std::sort(samples.begin(), samples.end(), [](const Sample &a, const Sample &b) { return a.ms < b.ms; });
    return samples[samples.size() / 2];
}

} // namespace

int main()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("LUMEX_SYSROOT", LUMEX_SIM_ROOT);
    qputenv("LUMEX_STARTUP_PROBE", "1");
    const int runs = 11;
    const Sample floor = median(LUMEX_MINIMAL_WINDOW, runs);
    const Sample app = median(LUMEX_APP, runs);
    if (floor.ms < 0 || app.ms < 0)
        return 1;
    std::printf("platform: %s\n", qgetenv("QT_QPA_PLATFORM").constData());
    std::printf(
        "bare Qt window, exec to first paint:     %7.1f ms, %6.1f MB resident\n", floor.ms, floor.rssKb / 1024.0);
    std::printf("Lumex, exec to painted login panel:      %7.1f ms, %6.1f MB resident\n", app.ms, app.rssKb / 1024.0);
    std::printf("targets: under 150 ms and under 80 MB (median of %d runs)\n", runs);
    return 0;
}
