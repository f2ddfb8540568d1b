#pragma once

#include "KivUtility/CRef.h"

#include <QString>

namespace KivGeometry {

/// The map projection of a projected coordinate system: the method name and
/// its parameters, read through a fixed index so that two systems can be
/// compared parameter by parameter whatever method they use.
///
/// | index | parameter                                   | unit    |
/// |-------|---------------------------------------------|---------|
/// | 0     | False_Easting                               | metres  |
/// | 1     | Central_Meridian (longitude of origin/center)| degrees |
/// | 2     | False_Northing                              | metres  |
/// | 3     | Scale_Factor                                | —       |
/// | 4     | Latitude_Of_Origin (latitude of center)     | degrees |
/// | 5     | Standard_Parallel_1                         | degrees |
/// | 6     | Standard_Parallel_2                         | degrees |
/// | 7     | Azimuth                                     | degrees |
///
/// Lengths are in metres and angles in degrees whatever units the system
/// itself uses. A parameter the method does not have reads as 0 (Scale_Factor
/// reads as 1).
class Projection : public KivUtility::CRef
{
public:
    enum ParameterIndex {
        FalseEasting = 0,
        CentralMeridian = 1,
        FalseNorthing = 2,
        ScaleFactor = 3,
        LatitudeOfOrigin = 4,
        StandardParallel1 = 5,
        StandardParallel2 = 6,
        Azimuth = 7,
        ParameterCount = 8
    };

    Projection() = default;
    Projection(const QString& name, const double (&parameters)[ParameterCount]);

    /// The method name as written in WKT1, e.g. "Transverse_Mercator".
    QString GetName() const { return m_name; }
    /// The parameter at `index` of the table above; 0 outside the table.
    double GetParameter(int index) const;
    /// The ESRI-style name of the parameter at `index` ("Central_Meridian"),
    /// empty outside the table.
    static QString GetParameterName(int index);

private:
    QString m_name;
    double m_parameters[ParameterCount] = {0, 0, 0, 1, 0, 0, 0, 0};
};

} // namespace KivGeometry
