#include "spatialref/ConversionSetup.h"

#include "models/ModelStore.h"

#include "KivGeometry/ProjectedCoordinateSystem.h"

#include <QStringList>

#include <cmath>

using KivGeometry::SpatialReference;
using KivUtility::_ptr_t;

namespace {

_ptr_t<SpatialReference> geographicSystemOf(const SpatialReference* system)
{
    if (!system || system->GetType() != KivGeometry::SRT_Projected)
        return _ptr_t<SpatialReference>(const_cast<SpatialReference*>(system));
    return _ptr_t<SpatialReference>(
        KivGeometry::ProjectedCoordinateSystem(*system).GetGeographicCoordinateSystem().get());
}

QString modelNames(ModelStore::Kind kind)
{
    QStringList names;
    for (const TransformModel& model : ModelStore::List(kind))
        names << QLatin1Char('"') + model.TransName + QLatin1Char('"');
    return names.isEmpty() ? QStringLiteral("(none)") : names.join(QStringLiteral(", "));
}

} // namespace

bool ConversionSetup::SameBase(const SpatialReference* source, const SpatialReference* target, SameBaseRule rule)
{
    if (!source || !target)
        return false;
    if (rule == SameDatum)
        return source->IsSameGeoCS(target);
    const _ptr_t<SpatialReference> a = geographicSystemOf(source);
    const _ptr_t<SpatialReference> b = geographicSystemOf(target);
    if (!a || !b)
        return false;
    if (a->GetName().right(4) == b->GetName().right(4))
        return true;
    return a->IsSame(b.get());
}

QString ConversionSetup::RuleName(SameBaseRule rule)
{
    return rule == SameDatum ? QStringLiteral("same datum, ellipsoid and prime meridian")
                             : QStringLiteral("same ending of the geographic systems' names");
}

bool ConversionSetup::ParseValues(const QString& text, int count, QList<double>* values)
{
    QList<double> result;
    for (const QString& piece : text.split(QLatin1Char(','))) {
        bool ok = false;
        const double v = piece.trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(v))
            return false;
        result << v;
    }
    if (count >= 0 && result.size() != count)
        return false;
    if (values)
        *values = result;
    return true;
}

bool ConversionSetup::UseTypedModel(CoordinateConversion::Mode kind, const QString& values, QString* error)
{
    const bool seven = kind == CoordinateConversion::SevenParameters;
    if (!ParseValues(values, seven ? 7 : 4, &params)) {
        *error = seven ? QStringLiteral("--params7 takes seven numbers DX,DY,DZ,W,K,R,M, not \"%1\"").arg(values)
                       : QStringLiteral("--params4 takes four numbers DX,DY,T,K, not \"%1\"").arg(values);
        return false;
    }
    mode = kind;
    modelName.clear();
    return true;
}

bool ConversionSetup::UseStoredModel(const QString& name, SameBaseRule rule, QString* error)
{
    TransformModel model7, model4;
    QString error7, error4;
    const int has7 = ModelStore::FindUsable(ModelStore::Params7, name, &model7, &error7);
    const int has4 = ModelStore::FindUsable(ModelStore::Params4, name, &model4, &error4);
    if (has7 < 0 || has4 < 0) {
        *error = has7 < 0 ? error7 : error4;
        return false;
    }
    if (!has7 && !has4) {
        *error = QStringLiteral("no stored model is named \"%1\"\nSeven-parameter models: %2\n"
                                "Four-parameter models: %3")
                     .arg(name, modelNames(ModelStore::Params7), modelNames(ModelStore::Params4));
        return false;
    }
    // A name used in both lists: the kind the dialogs would offer for this pair.
    const bool useSeven = has7 && has4 ? !SameBase(source.get(), target.get(), rule) : bool(has7);
    params = useSeven ? model7.Params : model4.Params;
    mode = useSeven ? CoordinateConversion::SevenParameters : CoordinateConversion::FourParameters;
    modelName = name;
    return true;
}

bool ConversionSetup::NeedsSevenParameters(SameBaseRule rule) const
{
    return mode == CoordinateConversion::Direct && !SameBase(source.get(), target.get(), rule);
}

std::unique_ptr<CoordinateConversion> ConversionSetup::MakeConversion() const
{
    std::unique_ptr<CoordinateConversion> conversion(new CoordinateConversion(source, target));
    conversion->SetMode(mode);
    conversion->SetParams(params);
    conversion->SetCodeNumber(codeNumber);
    return conversion;
}

QString ConversionSetup::NotReadyReason() const
{
    const auto planeOrGeographic = [](int type) {
        return type == KivGeometry::SRT_Geographic || type == KivGeometry::SRT_Projected;
    };
    if (!source || !target)
        return QStringLiteral("a coordinate system is missing");
    const QString pair = QStringLiteral("\"%1\" to \"%2\"").arg(source->GetName(), target->GetName());
    if (mode == CoordinateConversion::Direct)
        return QStringLiteral("PROJ knows no operation from %1").arg(pair);
    if (!planeOrGeographic(source->GetType()) || !planeOrGeographic(target->GetType()))
        return QStringLiteral("a model converts only between geographic and projected systems, not from %1")
            .arg(pair);
    return QStringLiteral("cannot convert from %1 with this model").arg(pair);
}
