#pragma once

#include "RouteSettings.h"

#include "KivAlgo/Algorithm.h"
#include "reprojection/RasterOptions.h"
#include "reprojection/ReprojectionPlan.h"
#include "reprojection/stCoordsTransformInfo.h"

#include <QStringList>

#include <functional>

/// What the three reprojection algorithms share: the record in, the record
/// out with `lstOutputFiles` filled, progress and stopping.
class ReprojectionAlgorithm : public KivAlgo::Algorithm
{
public:
    ~ReprojectionAlgorithm() override;

protected:
    bool Execute() final;
    /// The work on a copy of the record; appends results to
    /// `info.lstOutputFiles`. False with `SetError` on failure; false without
    /// an error when stopped.
    virtual bool Reproject(stCoordsTransformInfo& info) = 0;

    /// A progress callback for one piece of the work: `share` of the whole,
    /// starting at `offset` (both fractions of 1). Thread-safe.
    std::function<bool(double)> Portion(double offset, double share, const QString& text);

    using Item = ReprojectionPlan::Item;

    /// Runs one item; empty on success, else the reason. `*stopped` tells a stop.
    /// Features left out because their points could not be converted are
    /// reported in `*note` (empty when none).
    QString RunItem(const RouteSettings& route, const Item& item, const std::function<bool(double)>& progress,
                    bool* stopped, QString* note);
    /// True when the user named the raster format (the command line's
    /// `--format`): it decides over each raster's suffix.
    bool RasterFormatNamed() const { return m_rasterOptions.FormatNamed(); }

private:
    /// Read from the record's pass-through field; the defaults for a dialog's job.
    RasterOptions m_rasterOptions;
};
