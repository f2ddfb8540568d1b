#pragma once

#include "models/TransformModel.h"

#include <QString>
#include <QStringList>

/// Everything a reprojection needs, filled by the dataset and batch
/// reprojection dialogs and carried to the algorithm library inside a
/// `boost::any`; the algorithm hands it back with `lstOutputFiles` filled.
/// A plain value: copied whole wherever it travels, so the field order and
/// defaults are part of the contract between the plug-in and the algorithms.
///
/// Every dialog assigns `bUse7Params` and the models before the record is
/// used; `bUse7Params` still starts as false so that copying a fresh record
/// never reads an indeterminate value.
struct stCoordsTransformInfo
{
    bool bAlgoOption = true;          ///< passed through to the algorithm library
    bool bUse7Params = false;         ///< the systems lie on different geographic bases: apply model7
    bool bCode = false;               ///< source Y values carry their zone number in front
    QString strInputFile;             ///< input dataset (single-dataset job)
    QString strSrcWkt;                ///< source system as WKT
    QString strDstWkt;                ///< target system as WKT
    QString strOutputFile;            ///< output dataset (single-dataset job)
    QString strExtra1;                ///< passed through
    TransformModel model7;            ///< seven values DX, DY, DZ, w, k, r, m
    TransformModel model4;            ///< four values DX, DY, T, K
    QString strExtra2;                ///< passed through
    QStringList lstOutputFiles;       ///< result datasets, filled by the algorithm
    QStringList lstInputFiles;        ///< input datasets (batch job)
    QString strOutputFolder;          ///< output folder
    QString strRasterFormat = QStringLiteral("GTiff"); ///< "GTiff", "HFA" or "ENVI"
};
