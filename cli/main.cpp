// coordstransform: converts coordinates from the command line. Everything is
// in the CoordsTransformCli library; main only hands over the arguments and
// returns the status as the exit code.

#include "CliRegistry.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextCodec>
#include <QTextStream>

#include <cerrno>
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

    QCoreApplication app(argc, argv);
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
