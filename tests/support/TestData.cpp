#include "support/TestData.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace KivTest {

namespace {

bool copyTree(const QString& from, const QString& to)
{
    QDir().mkpath(to);
    QDirIterator it(from, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    bool ok = true;
    while (it.hasNext()) {
        const QString src = it.next();
        const QString rel = QDir(from).relativeFilePath(src);
        const QString dst = to + QLatin1Char('/') + rel;
        if (it.fileInfo().isDir())
            ok = QDir().mkpath(dst) && ok;
        else
            ok = QFile::copy(src, dst) && ok;
    }
    return ok;
}

void makeWritable(const QString& root)
{
    // A test may have taken write permission away; give it back before removing.
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    QFile::setPermissions(root, QFile::permissions(root) | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOwner);
    while (it.hasNext()) {
        const QString p = it.next();
        QFile::setPermissions(p, QFile::permissions(p) | QFile::WriteOwner | QFile::ReadOwner
                                     | (it.fileInfo().isDir() ? QFile::ExeOwner : QFileDevice::Permissions()));
    }
}

} // namespace

QString dataRoot()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../data"));
}

QString tempRoot()
{
    static const QString root = [] {
        QString base = QDir::tempPath();
        if (base.contains(QLatin1Char('.')))
            base = QStringLiteral("/tmp");
        static QTemporaryDir dir(base + QStringLiteral("/kivtest-XXXXXX"));
        return dir.isValid() ? dir.path() : QString();
    }();
    return root;
}

QString scratchDir()
{
    const QString dir = tempRoot() + QStringLiteral("/scratch");
    QDir().mkpath(dir);
    return dir;
}

void resetData()
{
    const QString root = dataRoot();
    const QString scratch = tempRoot() + QStringLiteral("/scratch");
    for (const QString& dir : {root, scratch}) {
        if (QFileInfo::exists(dir)) {
            makeWritable(dir);
            QDir(dir).removeRecursively();
        }
    }
    copyTree(QStringLiteral(KIV_DATA_TEMPLATE), root);
    QDir().mkpath(scratch);
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return f.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

} // namespace KivTest
