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
    // A private folder beside the output (so the rename stays on one file
    // system) holding the dataset under its final name (so the driver names
    // its side files alike). Its files are found by listing that folder
    // alone: an archive's output folder may hold tens of thousands of files.
    const QString tag = QUuid::createUuid().toString(QUuid::Id128).left(12);
    m_temporaryFolder =
        info.absolutePath() + QLatin1Char('/') + QStringLiteral(".%1.kivtmp-%2").arg(info.completeBaseName(), tag);
    m_temporary = m_temporaryFolder + QLatin1Char('/') + info.fileName();
}

QString OutputGuard::TemporaryPath() const
{
    if (!m_folderMade)
        m_folderMade = QDir().mkdir(m_temporaryFolder);
    return m_temporary;
}

namespace {

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

OutputGuard::~OutputGuard()
{
    if (!m_folderMade)
        return;
    const QDir folder(m_temporaryFolder);
    for (const QString& name : filesIn(m_temporaryFolder))
        QFile::remove(folder.filePath(name));
    QDir().rmdir(m_temporaryFolder);
}

QString OutputGuard::Check(const QStringList& inputs) const
{
    return DatasetOutput::Problem(m_final, inputs);
}

QString OutputGuard::Commit()
{
    const QFileInfo temporary(m_temporary);
    const QFileInfo final(m_final);
    const QDir from(m_temporaryFolder);
    const QDir folder = final.absoluteDir();

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
    QStringList names = filesIn(m_temporaryFolder);
    names.removeAll(temporary.fileName());
    names << temporary.fileName();
    QStringList written;
    for (const QString& name : names) {
        const QString target = folder.filePath(name);
        // rename() replaces an existing file in one step.
        if (::rename(QFile::encodeName(from.filePath(name)).constData(), QFile::encodeName(target).constData()) != 0)
            return QStringLiteral("Cannot write \"%1\": %2").arg(target, QString::fromLocal8Bit(strerror(errno)));
        written << QFileInfo(target).absoluteFilePath();
    }
    m_committed = true;
    for (const QString& file : oldFiles)
        if (!written.contains(file))
            QFile::remove(file);
    return QString();
}
