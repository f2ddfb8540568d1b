#pragma once

#include <QString>

/// Writes a dataset in a private folder beside its final path and puts it
/// in place only when it is complete, so that a failure or a cancel leaves
/// nothing behind and an existing output is replaced only by a whole one.
/// A dataset may be several files (a shapefile, ENVI's header): GDAL's
/// driver renames and deletes them together.
class OutputGuard
{
public:
    /// `driver`: the GDAL driver that writes the output.
    OutputGuard(const QString& finalPath, const QString& driver);
    /// Deletes the temporary dataset unless `Commit` succeeded.
    ~OutputGuard();
    OutputGuard(const OutputGuard&) = delete;
    OutputGuard& operator=(const OutputGuard&) = delete;

    /// `DatasetOutput::Problem` of the output: empty when all is well, else
    /// the message naming the path.
    QString Check(const QStringList& inputs) const;

    /// Where the driver writes the dataset (its private folder is made on
    /// the first call).
    QString TemporaryPath() const;
    QString FinalPath() const { return m_final; }

    /// Replaces the final dataset with the temporary one (which must be
    /// closed). Empty on success, else the message.
    QString Commit();

private:
    QString m_final;
    QString m_temporary;
    QString m_temporaryFolder;
    mutable bool m_folderMade = false;
    QString m_driver;
    bool m_committed = false;
};
