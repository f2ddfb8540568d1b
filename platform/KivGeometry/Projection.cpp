#include "KivGeometry/Projection.h"

#include <algorithm>

namespace KivGeometry {

Projection::Projection(const QString& name, const double (&parameters)[ParameterCount]) : m_name(name)
{
    std::copy(std::begin(parameters), std::end(parameters), std::begin(m_parameters));
}

double Projection::GetParameter(int index) const
{
    if (index < 0 || index >= ParameterCount)
        return 0.0;
    return m_parameters[index];
}

QString Projection::GetParameterName(int index)
{
    static const char* const names[ParameterCount] = {
        "False_Easting", "Central_Meridian", "False_Northing", "Scale_Factor",
        "Latitude_Of_Origin", "Standard_Parallel_1", "Standard_Parallel_2", "Azimuth"};
    if (index < 0 || index >= ParameterCount)
        return QString();
    return QString::fromLatin1(names[index]);
}

} // namespace KivGeometry
