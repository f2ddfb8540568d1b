#include "RouteSettings.h"

#include "reprojection/stCoordsTransformInfo.h"
#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/SpatialReferenceFactory.h"

RouteSettings RouteSettings::FromRecord(const stCoordsTransformInfo& info)
{
    RouteSettings settings;
    settings.sourceWkt = info.strSrcWkt;
    settings.targetWkt = info.strDstWkt;
    settings.useSevenParameters = info.bUse7Params;
    settings.params = info.bUse7Params ? info.model7.Params : info.model4.Params;
    settings.codeNumber = info.bCode;
    return settings;
}

QString RouteSettings::Check() const
{
    const auto source = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(sourceWkt);
    if (!source)
        return QStringLiteral("The source spatial reference is not valid.");
    const auto target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(targetWkt);
    if (!target)
        return QStringLiteral("The target spatial reference is not valid.");
    if (useSevenParameters && params.size() != 7)
        return QStringLiteral("The seven-parameter model is missing or incomplete.");
    CoordinateConversion conversion(source, target);
    conversion.SetMode(useSevenParameters ? CoordinateConversion::SevenParameters
                                          : CoordinateConversion::FourParameters);
    conversion.SetParams(params);
    conversion.SetCodeNumber(codeNumber);
    if (!conversion.IsReady())
        return QStringLiteral("No conversion exists between the source and the target spatial references.");
    return QString();
}
