#include "io/OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isStandardStream(const QString& path)
{
    return path == QLatin1String("-");
}

/// stat() of a path, or of standard input/output for "-".
bool statOf(const QString& path, int standardFd, struct stat* st)
{
    if (isStandardStream(path))
        return ::fstat(standardFd, st) == 0;
    const QByteArray native = QFile::encodeName(path);
    return ::stat(native.constData(), st) == 0;
}

/// The descriptor a path names when it is one of the process's own open
/// files (/dev/stdout, /dev/fd/3, /proc/self/fd/1); -1 for any other path.
/// Such a path is written through the descriptor itself: opening it anew
/// would truncate a file the shell redirected there and write over it from
/// its start.
int descriptorOf(const QString& path)
{
    if (isStandardStream(path) || path == QLatin1String("/dev/stdout"))
        return STDOUT_FILENO;
    if (path == QLatin1String("/dev/stderr"))
        return STDERR_FILENO;
    static const QRegularExpression fdPath(QStringLiteral("^/(?:dev/fd|proc/self/fd)/(\\d{1,6})$"));
    const QRegularExpressionMatch m = fdPath.match(QFileInfo(path).absoluteFilePath());
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

/// Outputs that must be written in place, never replaced by a rename.
bool writtenDirectly(const QString& path)
{
    if (isStandardStream(path))
        return true;
    const QString absolute = QFileInfo(path).absoluteFilePath();
    if (absolute.startsWith(QLatin1String("/dev/")) || absolute.startsWith(QLatin1String("/proc/")))
        return true;
    struct stat st;
    const QByteArray native = QFile::encodeName(path);
    return ::stat(native.constData(), &st) == 0 && !S_ISREG(st.st_mode);
}

} // namespace

struct OutputFile::Private
{
    QString path;
    bool direct = false;
    std::unique_ptr<QFile> file;          // direct writing
    std::unique_ptr<QSaveFile> saveFile;  // atomic replacement
    QIODevice* device = nullptr;
};

OutputFile::OutputFile(const QString& path) : d(new Private)
{
    d->path = path;
    d->direct = writtenDirectly(path);
}

OutputFile::~OutputFile()
{
    Cancel();
}

QString OutputFile::Name() const
{
    return isStandardStream(d->path) ? QStringLiteral("standard output") : d->path;
}

bool OutputFile::IsReplacedAtomically() const
{
    return !d->direct;
}

bool OutputFile::Open(QString* error)
{
    if (d->direct) {
        d->file.reset(new QFile);
        bool opened;
        const int fd = descriptorOf(d->path);
        if (fd >= 0) {
            opened = d->file->open(fd, QIODevice::WriteOnly | QIODevice::Unbuffered, QFileDevice::DontCloseHandle);
        } else {
            // A regular file behind a device path (/dev/fd of another
            // process) is continued, never truncated.
            struct stat st;
            const bool regular = ::stat(QFile::encodeName(d->path).constData(), &st) == 0 && S_ISREG(st.st_mode);
            d->file->setFileName(d->path);
            opened = d->file->open(QIODevice::WriteOnly | QIODevice::Unbuffered
                                   | (regular ? QIODevice::Append : QIODevice::OpenModeFlag(0)));
        }
        if (!opened) {
            if (error)
                *error = QStringLiteral("cannot write \"%1\": %2").arg(Name(), d->file->errorString());
            d->file.reset();
            return false;
        }
        d->device = d->file.get();
        return true;
    }
    d->saveFile.reset(new QSaveFile(d->path));
    // Unbuffered: a write that fails while a buffer is flushed on commit
    // would go unnoticed, and a truncated file would replace the old one.
    if (!d->saveFile->open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        if (error)
            *error = QStringLiteral("cannot write \"%1\": %2").arg(Name(), d->saveFile->errorString());
        d->saveFile.reset();
        return false;
    }
    d->device = d->saveFile.get();
    return true;
}

QIODevice* OutputFile::Device() const
{
    return d->device;
}

QString OutputFile::WriteError() const
{
    const QString reason = d->device ? d->device->errorString() : QStringLiteral("not open");
    return QStringLiteral("cannot write \"%1\": %2").arg(Name(), reason);
}

bool OutputFile::Commit(QString* error)
{
    bool ok = false;
    if (d->file) {
        ok = d->file->flush() && d->file->error() == QFileDevice::NoError;
        if (!ok && error)
            *error = WriteError();
        d->file->close();
        d->file.reset();
    } else if (d->saveFile) {
        ok = d->saveFile->error() == QFileDevice::NoError && d->saveFile->commit();
        if (!ok && error)
            *error = WriteError();
        d->saveFile.reset();
    } else if (error) {
        *error = WriteError();
    }
    d->device = nullptr;
    return ok;
}

void OutputFile::Cancel()
{
    if (d->saveFile) {
        d->saveFile->cancelWriting();
        d->saveFile.reset();
    }
    if (d->file) {
        d->file->close();
        d->file.reset();
    }
    d->device = nullptr;
}

bool OutputFile::SameFile(const QString& a, const QString& b)
{
    struct stat sa, sb;
    if (!statOf(a, STDIN_FILENO, &sa) || !statOf(b, STDOUT_FILENO, &sb))
        return false;
    // Only files can be overwritten by their own output; a terminal or a
    // pipe used for both ends is fine.
    return S_ISREG(sa.st_mode) && S_ISREG(sb.st_mode) && sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}
