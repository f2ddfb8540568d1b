#pragma once

#include "reprojection/stCoordsTransformInfo.h"

#include <QString>

/// One reprojection to run: the record the algorithm reads (input or inputs,
/// output file or folder, the two systems and the model, raster and vector
/// options in its pass-through fields) and how its algorithm is chosen.
struct ReprojectionRequest
{
    enum Choice {
        BySuffix, ///< the dialogs' rule: the text after the input's last "."
        ByKind,   ///< what the input holds (`datasetKind`, or opened when 0)
        Batch     ///< several inputs into one folder
    };

    stCoordsTransformInfo info;
    Choice choice = ByKind;
    int datasetKind = 0; ///< `KivDataSource::DatasetKind` of the input, when known
    QString displayName = QStringLiteral("Reproject");
};
