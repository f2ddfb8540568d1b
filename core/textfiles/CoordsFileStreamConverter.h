#pragma once

#include "textfiles/CoordsPoint.h"
#include "textfiles/CoordsPointStore.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

class CoordinateConversion;
class QIODevice;

/// Reads a coordinate text file laid out as a text-file format record says
/// and converts it to another in one pass, chunk by chunk, with memory that
/// does not grow with the file: the one pipeline of the file conversion
/// dialog and the command line, so both give the same bytes and results.
///
/// Files are GBK; a file that is valid UTF-8 throughout (or starts with a
/// byte order mark) is read as UTF-8 instead, so that its non-ASCII point
/// names and "other" texts arrive intact. The calling thread reads and
/// decodes the file and writes the results in order; parsing, the
/// conversion route and formatting run on one worker per
/// `CoordinateConversion` given (objects of the route are not shared between
/// threads).
///
/// A line whose north or east value is not a number is skipped; a line
/// whose column count differs from the format's (or that has fewer than two
/// columns, blank lines included) stops the run.
///
/// A line that does not fit the format stops the run with BadData, as does a
/// file without any point: whatever was written to the device by then must
/// be thrown away by the caller (write into a temporary file).
class CoordsFileStreamConverter
{
public:
    enum Result {
        Success = 0,     ///< the file was converted (some points may have failed)
        BadData = 1,     ///< no format, a line that does not fit it, or no point at all
        CannotOpen = -1, ///< the input cannot be opened
        ReadFailed = 3,  ///< the input could not be read to its end
        WriteFailed = 4, ///< the device refused bytes
        CodeNumber = 2   ///< Y values carry a zone number (never produced; the dialog has a message for it)
    };
    using Progress = std::function<void(qint64 done, qint64 total)>;
    /// A check of each point read (before conversion); a non-empty answer is
    /// counted as a note. Called from the workers, at the same time.
    using PointCheck = std::function<QString(const CoordsPoint& point)>;

    CoordsFileStreamConverter();
    ~CoordsFileStreamConverter();
    CoordsFileStreamConverter(const CoordsFileStreamConverter&) = delete;
    CoordsFileStreamConverter& operator=(const CoordsFileStreamConverter&) = delete;

    /// Lines handed to a worker at once (default 16384).
    void SetChunkLines(int lines);
    void SetPointCheck(const PointCheck& check);
    /// Keeps the first `count` points of each run, for a preview: as read
    /// when only reading, as converted otherwise (see `CoordsPointStore::Converted`).
    void SetKeptPoints(int count);

    /// Opens the input; false when it cannot be opened.
    bool Open(const QString& inputPath);
    /// Reads the opened input with the format `record`, converts every point
    /// with `conversions` (one per worker, at least one; all alike) and
    /// writes the result to `device`, encoded as a file at `outputPath` is
    /// (see `CoordsFileWriter::UsesGB18030`). A null `device` only reads: the result says
    /// whether the file would be accepted. Returns a `Result`.
    int Run(const QString& record, const std::vector<const CoordinateConversion*>& conversions, QIODevice* device,
            const QString& outputPath, const Progress& progress = Progress());
    /// Runs into the file `output` ("-" is standard output) through
    /// `OutputFile`: it is replaced only when the whole input was accepted;
    /// what cannot be replaced (a pipe, a device) gets the result gathered in
    /// a temporary file first. `encodingPath` decides the encoding. On
    /// WriteFailed `error` names the file and the reason.
    int RunToFile(const QString& record, const std::vector<const CoordinateConversion*>& conversions,
                  const QString& output, const QString& encodingPath, QString* error,
                  const Progress& progress = Progress());

    /// The line (from 1, title included) that stopped the run; 0 when none did.
    qint64 StopLine() const;
    qint64 SkippedLines() const;
    const std::vector<qint64>& SkippedLineNumbers() const;
    qint64 BadHeights() const;
    const std::vector<qint64>& BadHeightLineNumbers() const;
    /// Points read (lines with numeric coordinates).
    qint64 PointsRead() const;
    /// Points the route could not convert, left out of the output, and the
    /// first of them as read.
    qint64 FailedPoints() const;
    const CoordsPoint& FirstFailedPoint() const;
    /// Converted points that got no datum shift (PROJ's ballpark fallback).
    qint64 PointsWithoutDatumShift() const;
    /// Points the check had something to say about, and the first answer
    /// with its point.
    qint64 Notes() const;
    const CoordsPoint& FirstNotePoint() const;
    QString FirstNote() const;
    /// The error text of a failed read.
    QString ReadError() const;
    /// The points kept by the last run (see `SetKeptPoints`), and for a
    /// converting run whether each was converted (else it is as read).
    const CoordsPointStore& KeptPoints() const;
    CoordsPointStore TakeKeptPoints();

    enum { NoteLimit = 20 };

private:
    struct Private;
    std::unique_ptr<Private> d;
};
