// coordstransform: converts coordinates from the command line. Everything is
// in the CoordsTransformCli library; main only hands over the arguments and
// returns the status as the exit code.

#include "CliRegistry.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QTextCodec>
#include <QTextStream>

#include <cerrno>
#include <memory>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

// A standard stream closed by the caller ("coordstransform ... >&-") would
// be taken by the next file the tool opens, and the points meant for
// standard output would land in, say, the output file. Park a read-only
// /dev/null there instead: writes then fail and are reported.
void reserveStandardStreams()
{
    for (int fd = 0; fd <= 2; ++fd) {
        if (::fcntl(fd, F_GETFD) == -1 && errno == EBADF) {
            const int opened = ::open("/dev/null", O_RDONLY);
            if (opened >= 0 && opened != fd) {
                ::dup2(opened, fd);
                ::close(opened);
            }
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    reserveStandardStreams();
    // A reader that goes away (coordstransform ... | head) is a write error to
    // report, not a signal that kills the tool before it can say so.
    std::signal(SIGPIPE, SIG_IGN);

    // A PDF report needs fonts, hence a GUI application, on no display.
    bool report = false;
    for (int i = 1; i < argc; ++i)
        report = report || std::strcmp(argv[i], "--report") == 0 || std::strncmp(argv[i], "--report=", 9) == 0;
    if (report && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::unique_ptr<QCoreApplication> app(report ? new QGuiApplication(argc, argv)
                                                 : new QCoreApplication(argc, argv));
    QCoreApplication::setApplicationName(QStringLiteral("coordstransform"));
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    QTextStream out(stdout);
    QTextStream err(stderr);
    int status = CliRegistry::instance().run(QCoreApplication::arguments().mid(1), out, err);
    out.flush();
    auto* stdoutFile = qobject_cast<QFile*>(out.device());
    errno = 0;
    const bool flushed = (!stdoutFile || stdoutFile->flush()) && std::fflush(stdout) == 0 && !std::ferror(stdout);
    if (!flushed) {
        const int saved = errno;
        // A command that failed on its own writes has said so already.
        if (status != CliUsageError)
            err << "coordstransform: cannot write standard output: "
                << (saved ? QString::fromLocal8Bit(std::strerror(saved))
                          : stdoutFile ? stdoutFile->errorString() : QStringLiteral("write error"))
                << '\n';
        status = CliUsageError;
    }
    err.flush();
    return status >= 0 && status <= 255 ? status : CliUsageError;
}
