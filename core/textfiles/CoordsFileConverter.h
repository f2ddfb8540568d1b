#pragma once

#include "textfiles/CoordsPoint.h"

#include <functional>
#include <vector>

class CoordinateConversion;

/// Converts the points of a coordinate text file through the shared
/// `CoordinateConversion` route, for the file conversion dialog and the
/// command-line tool alike.
///
/// A point that the route cannot convert (outside a projection's domain, a
/// datum shift that does not converge, ...) is left out of the results: a
/// file never holds a point in the target system that was not converted.
/// The caller learns how many were left out, and which: `rows` gives, for
/// every result, the position of its point in the input.
class CoordsFileConverter
{
public:
    using Progress = std::function<void(qint64 done, qint64 total)>;

    /// Fills `results` (cleared first) with the converted points in input
    /// order and `rows` with their input positions. Returns false, with no
    /// result, when the route is not ready (a seven-parameter model without
    /// exactly seven values, a missing system).
    static bool Run(const CoordinateConversion& conversion, const std::vector<CoordsPoint>& points,
                    std::vector<CoordsPoint>* results, std::vector<int>* rows,
                    const Progress& progress = Progress());
};
