#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <unistd.h>

// The readers under test take paths, so every input goes through a file. It
// lives in a folder of this process's own (in memory where there is one), so
// that parallel fuzzers and corpus runs never share a file.
namespace KivFuzz {

inline QString WorkFolder()
{
    static const QString folder = [] {
        const QString base = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
        const QString dir = QStringLiteral("%1/kiv-fuzz-%2").arg(base).arg(::getpid());
        QDir().mkpath(dir);
        return dir;
    }();
    return folder;
}

/// Writes `size` bytes to `name` in the work folder; returns its path.
inline QString WriteInput(const uint8_t* data, size_t size, const QString& name)
{
    const QString path = WorkFolder() + QLatin1Char('/') + name;
    const QByteArray native = QFile::encodeName(path);
    const int fd = ::open(native.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (fd < 0)
        return path;
    size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(fd, data + done, size - done);
        if (n <= 0)
            break;
        done += size_t(n);
    }
    ::close(fd);
    return path;
}

/// Splits an input at its first line feed: the text before it (UTF-8) and
/// the bytes after it. Without a line feed, all of it is the rest.
inline QString TakeFirstLine(const uint8_t*& data, size_t& size)
{
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') {
            const QString line = QString::fromUtf8(reinterpret_cast<const char*>(data), int(i));
            data += i + 1;
            size -= i + 1;
            return line;
        }
    }
    return QString();
}

} // namespace KivFuzz
