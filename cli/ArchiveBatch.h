#pragma once

#include "reprojection/stCoordsTransformInfo.h"

#include <QHash>
#include <QString>
#include <QStringList>

class QTextStream;

/// A batch of inputs into a folder, run input by input so that a scheduler's
/// workers can share an archive: a deterministic share of the inputs per
/// worker (`--shard`), inputs already done skipped (`--skip-existing`), and
/// one JSON line per input in a log (`--log`), flushed as it goes.
class ArchiveBatch
{
public:
    struct Options
    {
        QString folder;
        QString rasterFormat;  ///< empty: by the output's suffix
        bool skipExisting = false;
        QString logPath;       ///< empty: no log
        int shardIndex = 0;    ///< 0-based
        int shardCount = 1;
        /// Inputs found in folders (--recursive): the folder below `folder`
        /// their outputs go to, so that the archive keeps its layout.
        QHash<QString, QString> subfolders;
    };

    /// The datasets below `folder` (rasters .tif .tiff .img .jp2, vector
    /// .shp .gpkg), sorted, each with its folder relative to `folder` in
    /// `subfolders`.
    static QStringList FindInputs(const QString& folder, QHash<QString, QString>* subfolders);

    /// "K/N" (1 <= K <= N) or "auto": Slurm's SLURM_ARRAY_TASK_ID with
    /// SLURM_ARRAY_TASK_COUNT (and SLURM_ARRAY_TASK_MIN), or a Kubernetes
    /// Indexed Job's JOB_COMPLETION_INDEX with COORDSTRANSFORM_SHARD_COUNT.
    /// False with the reason in `error`.
    static bool ParseShard(const QString& text, int* index, int* count, QString* error);
    /// The input's shard, the same whatever the order or the worker.
    static int ShardOf(const QString& input, int count);
    /// One path per line (UTF-8; empty lines and lines starting with "#" are
    /// skipped). False with the reason in `error`.
    static bool ReadList(const QString& path, QStringList* inputs, QString* error);

    /// Runs every input of this shard; `base` holds the conversion. Returns
    /// the exit status: 0 every input done (or skipped as done before), 1
    /// some failed, 3 none done and some failed, 130 stopped, 2 the log
    /// cannot be written.
    static int Run(const QStringList& inputs, const stCoordsTransformInfo& base, const Options& options,
                   QTextStream& out, QTextStream& err);
};
