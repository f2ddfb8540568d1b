#pragma once

#include "KivDataSource/Dataset.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

namespace KivDataSource {

/// Opens dataset files through GDAL/OGR.
///
/// Kinds: a file with raster bands and no layers is a raster (1); a file with
/// exactly one layer in a single-layer format (a shapefile, say) is a vector
/// dataset (2); a file with several layers, or of a format made to hold
/// several (GeoPackage, FileGDB, personal geodatabase .mdb), is a container
/// (4, a `MultiDataset`) whose members are its layers. Personal geodatabases
/// open through GDAL's PGeo driver and need the MDB Tools ODBC driver
/// (Debian package odbc-mdbtools).
class DatasetFactory
{
public:
    static DatasetFactory* Instance();

    /// `mode` 0 opens read-only, 1 for update (the file must be writable).
    /// `options` are GDAL open options "KEY=VALUE", separated by ";".
    /// Null when nothing can open the path. Never throws.
    KivUtility::_ptr_t<Dataset> OpenDataset(const QString& path, int mode, const QString& options) const;

    /// While one is alive (on any thread), a read-only open without options
    /// gives the description the first such open of that path made: a run
    /// that plans, checks and converts a dataset reads what it holds once.
    /// Not for where a file may change in between; the last one to go
    /// forgets every description.
    class RunCache
    {
    public:
        RunCache();
        ~RunCache();
        RunCache(const RunCache&) = delete;
        RunCache& operator=(const RunCache&) = delete;
    };

private:
    DatasetFactory() = default;
};

} // namespace KivDataSource
