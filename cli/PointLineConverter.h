#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

class CoordinateConversion;
class QIODevice;
class QTextStream;

/// Streams text lines "X Y [H]" through a `CoordinateConversion`.
///
/// Input is read in large blocks and cut into chunks of whole lines; each
/// chunk is parsed, converted and formatted on one of the workers (one per
/// conversion object given: the route's objects are not shared between
/// threads), and the results are written and reported in input order.
/// Numbers are parsed and formatted without allocating per line; points are
/// converted in batches. Pieces are separated by blanks, tabs or commas (runs
/// count as one); a line written back uses the input line's separator (comma,
/// tab or blank) and has as many values as the input line. Empty lines are
/// skipped.
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
        int chunkLines = 16384;    ///< most lines a worker takes at once
    };

    /// One worker per conversion (at least one; all alike). With one, all
    /// runs on the calling thread.
    PointLineConverter(const std::vector<const CoordinateConversion*>& conversions, const Options& options);
    ~PointLineConverter();

    /// Reads `input` to its end. Each line that cannot be read or converted is
    /// reported on `err` with its number and skipped. Returns false only when
    /// reading failed (reported on `err`) or the sink refused bytes (not
    /// reported: the caller knows its output; see `writeFailed`).
    bool process(QIODevice* input, const Sink& sink, QTextStream& err);
    bool writeFailed() const { return m_writeFailed; }

    qint64 linesConverted() const { return m_converted; }
    qint64 linesRejected() const { return m_rejected; }
    /// Converted lines whose point got no datum shift.
    qint64 pointsWithoutDatumShift() const { return m_unshifted; }

    /// Parses a whole piece as a finite number ("-12.5", "+3", "1e-3"); false
    /// for anything else.
    static bool parseNumber(const char* begin, const char* end, double* value);
    /// Appends `value` in fixed notation with `decimals` decimals.
    static void appendFixed(std::vector<char>& out, double value, int decimals);

private:
    enum { BatchSize = 8192 };
    struct Worker;
    struct Chunk;
    struct ChunkResult;

    void convertChunk(Worker& w, const Chunk& chunk, ChunkResult& result) const;
    void handleLine(Worker& w, const char* begin, const char* end, qint64 lineNumber) const;
    bool parseValue(const char* begin, const char* end, bool angle, double* value) const;
    void flushBatch(Worker& w, ChunkResult& result) const;

    Options m_options;
    std::vector<std::unique_ptr<Worker>> m_workers;
    qint64 m_converted = 0;
    qint64 m_rejected = 0;
    qint64 m_unshifted = 0;
    bool m_writeFailed = false;
};
