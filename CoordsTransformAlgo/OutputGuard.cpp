#include "OutputGuard.h"

#include "io/DatasetOutput.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <cpl_error.h>
#include <gdal_priv.h>

OutputGuard::OutputGuard(const QString& finalPath, const QString& driver)
    : m_final(DatasetOutput::FinalPath(finalPath)), m_driver(driver)
{
    const QFileInfo info(m_final);
    // Same folder (so the rename stays on one file system), same suffix (so
    // the driver names its side files alike), a name nobody else uses.
    const QString tag = QUuid::createUuid().toString(QUuid::Id128).left(12);
    QString name = QStringLiteral(".%1.kivtmp-%2").arg(info.completeBaseName(), tag);
    if (!info.suffix().isEmpty())
        name += QLatin1Char('.') + info.suffix();
    m_temporary = info.absolutePath() + QLatin1Char('/') + name;
}

namespace {

/// The files of the dataset whose main file is `path`: the main file and
/// every file beside it named like it with other suffixes ("out.hdr" and
/// "out.dat.aux.xml" for "out.dat").
QStringList filesOf(const QString& path)
{
    const QFileInfo info(path);
    const QDir folder = info.absoluteDir();
    const QString base = info.completeBaseName();
    QStringList files;
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        if (name == info.fileName() || name.startsWith(base + QLatin1Char('.')))
            files << name;
    }
    return files;
}

} // namespace

OutputGuard::~OutputGuard()
{
    if (m_committed)
        return;
    const QDir folder = QFileInfo(m_temporary).absoluteDir();
    for (const QString& name : filesOf(m_temporary))
        QFile::remove(folder.filePath(name));
}

QString OutputGuard::Check(const QStringList& inputs) const
{
    return DatasetOutput::Problem(m_final, inputs);
}

QString OutputGuard::Commit()
{
    const QFileInfo temporary(m_temporary);
    const QFileInfo final(m_final);
    const QDir folder = temporary.absoluteDir();
    const QString tempBase = temporary.completeBaseName();
    const QString finalBase = final.completeBaseName();

    // What the old dataset had (only files that belong to it by format, not
    // every file that happens to start with its name).
    QStringList oldFiles;
    if (final.exists()) {
        CPLErrorStateBackuper state;
        CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
        GDALAllRegister();
        const QByteArray path = QFile::encodeName(m_final);
        if (GDALDataset* old = GDALDataset::Open(path.constData(), GDAL_OF_RASTER | GDAL_OF_VECTOR | GDAL_OF_READONLY)) {
            char** files = old->GetFileList();
            for (char** f = files; f && *f; ++f)
                oldFiles << QFileInfo(QFile::decodeName(*f)).absoluteFilePath();
            CSLDestroy(files);
            GDALClose(old);
        }
    }

    // The main file goes last, so that the dataset is whole once it appears.
    QStringList names = filesOf(m_temporary);
    names.removeAll(temporary.fileName());
    names << temporary.fileName();
    QStringList written;
    for (const QString& name : names) {
        const QString target = folder.filePath(finalBase + name.mid(tempBase.size()));
        // rename() replaces an existing file in one step.
        if (::rename(QFile::encodeName(folder.filePath(name)).constData(), QFile::encodeName(target).constData()) != 0)
            return QStringLiteral("Cannot write \"%1\": %2").arg(target, QString::fromLocal8Bit(strerror(errno)));
        written << QFileInfo(target).absoluteFilePath();
    }
    m_committed = true;
    for (const QString& file : oldFiles)
        if (!written.contains(file))
            QFile::remove(file);
    return QString();
}
