#include "models/ModelEntry.h"

#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"

const char* ModelEntry::MissingName(const QString& source, const QString& target, const QString& name)
{
    if (source.isEmpty())
        return kNoSource;
    if (target.isEmpty())
        return kNoTarget;
    return name.isEmpty() ? kNoName : nullptr;
}

const char* ModelEntry::MissingParameter(const QStringList& texts)
{
    for (const QString& text : texts) {
        if (text.isEmpty())
            return kNoParameter;
    }
    return nullptr;
}

TransformModel ModelEntry::Entered(const QString& source, const QString& name, const QStringList& texts)
{
    TransformModel model{name, source, name, {}};
    for (const QString& text : texts)
        model.Params << text.toDouble();
    return model;
}

QString ModelEntry::ProposedName(const QString& source, const QString& target)
{
    return source + QStringLiteral("-to-") + target;
}

QString ModelEntry::SevenParameterSideName(const KivGeometry::SpatialReference* reference)
{
    if (!reference)
        return QString();
    if (reference->GetType() == KivGeometry::SRT_Projected) {
        const KivGeometry::ProjectedCoordinateSystem projected(*reference);
        if (const auto geographic = projected.GetGeographicCoordinateSystem())
            return geographic->GetName();
    }
    return reference->GetName();
}
