#include "io/DatasetOutput.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

namespace {

QString canonical(const QString& path)
{
    const QFileInfo info(path);
    const QString real = info.canonicalFilePath();
    if (!real.isEmpty())
        return real;
    // Not there yet: its folder may still be a link.
    const QString folder = info.absoluteDir().canonicalPath();
    return (folder.isEmpty() ? info.absolutePath() : folder) + QLatin1Char('/') + info.fileName();
}

/// A shapefile is named by any of its parts; compare without the extension.
QString datasetKey(const QString& path)
{
    QString key = canonical(path);
    static const QStringList parts = {QStringLiteral("shp"), QStringLiteral("shx"), QStringLiteral("dbf"),
                                      QStringLiteral("prj"), QStringLiteral("cpg")};
    const QString suffix = QFileInfo(key).suffix().toLower();
    if (parts.contains(suffix))
        key.chop(suffix.size() + 1);
    return key;
}

/// What an existing path is when it is not a regular file; empty otherwise.
QString nodeKind(const QString& path)
{
    struct stat st = {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return QString();
    if (S_ISREG(st.st_mode))
        return QString();
    if (S_ISDIR(st.st_mode))
        return QStringLiteral("a folder");
    if (S_ISFIFO(st.st_mode))
        return QStringLiteral("a named pipe");
    if (S_ISSOCK(st.st_mode))
        return QStringLiteral("a socket");
    if (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode))
        return QStringLiteral("a device");
    return QStringLiteral("not a regular file");
}

} // namespace

bool DatasetOutput::SameDataset(const QString& a, const QString& b)
{
    return datasetKey(a) == datasetKey(b);
}

QString DatasetOutput::FinalPath(const QString& output)
{
    const QFileInfo info(output);
    if (info.isSymLink() && info.exists())
        return info.canonicalFilePath();
    return info.absoluteFilePath();
}

QString DatasetOutput::Problem(const QString& output, const QStringList& inputs)
{
    if (output.isEmpty())
        return QStringLiteral("No output file is given.");
    for (const QString& input : inputs)
        if (SameDataset(input, output))
            return QStringLiteral("The output \"%1\" is the input; choose another output.").arg(output);
    const QString kind = nodeKind(output);
    if (!kind.isEmpty())
        return QStringLiteral("The output \"%1\" is %2, not a file; give the path of a file to write.")
            .arg(output, kind);
    const QFileInfo folder(QFileInfo(FinalPath(output)).absolutePath());
    if (!folder.isDir())
        return QStringLiteral("The output folder \"%1\" does not exist.").arg(folder.filePath());
    if (!folder.isWritable())
        return QStringLiteral("The output folder \"%1\" cannot be written.").arg(folder.filePath());
    return QString();
}
