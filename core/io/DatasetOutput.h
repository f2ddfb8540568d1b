#pragma once

#include <QString>
#include <QStringList>

/// The checks every surface makes on the path a dataset (a raster, a
/// shapefile) is to be written to, before any work is done. A dataset is
/// written under a temporary name and renamed over its path when complete,
/// so the path must be a file that can be replaced: never an input, a folder,
/// a device, a named pipe or a socket.
class DatasetOutput
{
public:
    /// Why `output` cannot receive a dataset made from `inputs`, naming it;
    /// empty when it can.
    static QString Problem(const QString& output, const QStringList& inputs);

    /// True when the two paths name the same dataset: the same file (by any
    /// spelling or link), or the same shapefile through any of its parts.
    static bool SameDataset(const QString& a, const QString& b);

    /// The path the dataset is finally written to: a link to an existing
    /// file is followed, so that the file is replaced and the link kept.
    static QString FinalPath(const QString& output);
};
