#pragma once

#include <QString>

namespace KivGeometry {

/// Degree-minute-second texts (docs/geodesy.md, "Angle texts").
class AngleText
{
public:
    /// Canonical D°M′S.ssssss″; empty for a value that is not finite or whose
    /// magnitude exceeds 1e9 degrees.
    static QString format(double degrees);
    /// Any accepted form; 0 and *ok = false for anything else.
    static double parse(const QString& text, bool* ok);
};

} // namespace KivGeometry
