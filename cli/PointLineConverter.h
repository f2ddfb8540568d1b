#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <limits>
#include <utility>
#include <vector>

class CoordinateConversion;
class QIODevice;
class QTextStream;

/// Streams text lines "X Y [H]" through a `CoordinateConversion`.
///
/// Input is read in large blocks and split in place; numbers are parsed and
/// formatted without allocating per line; points are converted in batches.
/// Pieces are separated by blanks, tabs or commas (runs count as one); a line
/// written back uses the input line's separator (comma, tab or blank) and has
/// as many values as the input line. Empty lines are skipped.
class PointLineConverter
{
public:
    /// Receives output bytes; returns false when they could not be written.
    using Sink = std::function<bool(const char* data, qsizetype size)>;

    struct Options
    {
        bool angularInput = false; ///< X and Y are angles: degree-minute-second texts are accepted too
        int precisionXY = 6;       ///< decimals of X and Y
        int precisionH = 6;        ///< decimals of H
        QString messagePrefix;     ///< put before every message ("coordstransform transform: ")
        /// With zone numbers in front of Y: the source system's central
        /// meridian, so that a Y from another zone is refused (NaN: no check).
        double codeCentralMeridian = std::numeric_limits<double>::quiet_NaN();
    };

    PointLineConverter(const CoordinateConversion& conversion, const Options& options);

    /// Reads `input` to its end. Each line that cannot be read or converted is
    /// reported on `err` with its number and skipped. Returns false only when
    /// reading failed (reported on `err`) or the sink refused bytes (not
    /// reported: the caller knows its output; see `writeFailed`).
    bool process(QIODevice* input, const Sink& sink, QTextStream& err);
    bool writeFailed() const { return m_writeFailed; }

    qint64 linesConverted() const { return m_converted; }
    qint64 linesRejected() const { return m_rejected; }

    /// Parses a whole piece as a finite number ("-12.5", "+3", "1e-3"); false
    /// for anything else.
    static bool parseNumber(const char* begin, const char* end, double* value);
    /// Appends `value` in fixed notation with `decimals` decimals.
    static void appendFixed(std::vector<char>& out, double value, int decimals);

private:
    enum { BatchSize = 8192 };

    void handleLine(const char* begin, const char* end, qint64 lineNumber);
    void reject(qint64 lineNumber, const QString& message);
    bool parseValue(const char* begin, const char* end, bool angle, double* value) const;
    bool flushBatch(const Sink& sink, QTextStream& err);
    bool flushOutput(const Sink& sink, QTextStream& err, bool force);

    const CoordinateConversion& m_conversion;
    Options m_options;

    // The pending batch.
    std::vector<double> m_north, m_east, m_h;
    std::vector<qint64> m_line;
    std::vector<char> m_values;    ///< 2 or 3 per point
    std::vector<char> m_separator; ///< ',', '\t' or ' ' per point
    std::vector<int> m_success;
    /// Lines of the batch that could not be read, reported with the batch so
    /// that messages come in line order.
    std::vector<std::pair<qint64, QString>> m_rejects;

    std::vector<char> m_out;
    qint64 m_converted = 0;
    qint64 m_rejected = 0;
    bool m_writeFailed = false;
};
