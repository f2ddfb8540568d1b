#pragma once

#include "textfiles/CoordsPoint.h"

#include <cstddef>
#include <string>
#include <vector>

/// Points held compactly, for a preview of a file of millions of lines: the
/// texts of all points in one UTF-8 buffer, the numbers in plain arrays, so a
/// point costs its characters and about 40 bytes instead of two string
/// objects on the heap.
class CoordsPointStore
{
public:
    void Clear();
    /// `converted`: for a converting run, whether the point was converted
    /// (else it is as read).
    void Append(const CoordsPoint& point, bool converted = true);
    size_t Size() const { return m_converted.size(); }
    CoordsPoint At(size_t i) const;
    QString Id(size_t i) const;
    double North(size_t i) const { return m_numbers[3 * i]; }
    double East(size_t i) const { return m_numbers[3 * i + 1]; }
    double H(size_t i) const { return m_numbers[3 * i + 2]; }
    bool Converted(size_t i) const { return m_converted[i] != 0; }

private:
    std::string m_texts;           ///< per point: id, then each other column, each with its length
    std::vector<size_t> m_ends;    ///< where each point's texts end in m_texts
    std::vector<double> m_numbers; ///< north, east, h of each point
    std::vector<char> m_converted;
};
