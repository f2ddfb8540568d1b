#include "ConvertCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "ConversionOptions.h"

#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "io/OutputFile.h"
#include "models/ModelStore.h"
#include "spatialref/CoordinateConversion.h"
#include "textfiles/CoordsFileStreamConverter.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/TextFileFormat.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>
#include <memory>
#include <new>
#include <unistd.h>

static CliRegistrar<ConvertCommand> registrar;

using KivGeometry::SpatialReference;
using KivUtility::_ptr_t;

namespace {

const char kPrefix[] = "coordstransform convert: ";

// A format by the path of its XML file, or by its name (with or without
// ".xml") in the format folder; names match exactly first, then ignoring
// case, as the format editor treats them as the same format.
bool findFormat(const QString& argument, QString* record, QString* error)
{
    QString file;
    const QFileInfo direct(argument);
    if (direct.isFile()) {
        file = direct.absoluteFilePath();
    } else {
        const QStringList files = FileFormatDirectory::ListFiles();
        for (Qt::CaseSensitivity cs : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
            for (const QString& f : files) {
                const QString n = QFileInfo(f).fileName();
                if (n.compare(argument, cs) == 0 || n.compare(argument + QStringLiteral(".xml"), cs) == 0) {
                    file = f;
                    break;
                }
            }
            if (!file.isEmpty())
                break;
        }
    }
    if (file.isEmpty()) {
        *error = QStringLiteral("no format \"%1\" (neither a file nor a format in %2)")
                     .arg(argument, QDir::toNativeSeparators(FileFormatDirectory::Path()));
        return false;
    }
    if (!FileFormatDirectory::LoadRecord(file, record)) {
        *error = QStringLiteral("format file \"%1\" cannot be read or is not XML").arg(file);
        return false;
    }
    return true;
}

// Rewrites one status line on a terminal; says nothing elsewhere.
class ProgressLine
{
public:
    ProgressLine(QTextStream& err) : m_err(err), m_enabled(::isatty(STDERR_FILENO) == 1) {}
    ~ProgressLine() { done(); }

    void show(const char* phase, qint64 value, qint64 total)
    {
        if (!m_enabled || total <= 0)
            return;
        const int percent = int(value * 100 / total);
        if (percent == m_percent && phase == m_phase)
            return;
        m_percent = percent;
        m_phase = phase;
        m_err << '\r' << kPrefix << phase << ' ' << percent << "%   ";
        m_err.flush();
        m_shown = true;
    }
    void done()
    {
        if (m_shown) {
            m_err << "\r\033[K";
            m_err.flush();
            m_shown = false;
        }
    }

private:
    QTextStream& m_err;
    bool m_enabled;
    bool m_shown = false;
    int m_percent = -1;
    const char* m_phase = nullptr;
};

} // namespace

QString ConvertCommand::name() const
{
    return QStringLiteral("convert");
}

QString ConvertCommand::summary() const
{
    return QStringLiteral("convert a coordinate text file laid out in a text-file format");
}

QString ConvertCommand::help() const
{
    return QStringLiteral(
        "Usage: coordstransform convert --format NAME|FILE --from CRS --to CRS\n"
        "           [--params7 DX,DY,DZ,W,K,R,M | --params4 DX,DY,T,K | --model NAME]\n"
        "           [--code] [--threads N] INPUT OUTPUT\n"
        "\n"
        "Reads INPUT as the text-file format says (columns, separator, title line),\n"
        "converts every point and writes OUTPUT in the same layout: the title line,\n"
        "the columns in the format's order, coordinates with 6 decimals, point\n"
        "numbers and \"other\" columns as they were. The file conversion dialog does\n"
        "the same and writes the same bytes.\n"
        "\n"
        "INPUT is GBK (or UTF-8 when the whole file is valid UTF-8). OUTPUT is written\n"
        "in UTF-8, or in GB18030 when the path from its first \".\" on is \".csv\". It\n"
        "is replaced only when the whole file has been written, and may not be INPUT.\n"
        "\n"
        "Options:\n"
        "  --format NAME|FILE a format of the format folder, by name (\"General\" or\n"
        "                    \"General.xml\"), or the path of a format XML file\n"
        "%1"
        "                    Without a model, PROJ's own operation between the two\n"
        "                    systems is used.\n"
        "  --threads N         worker threads (default: one per core; 1 converts on\n"
        "                      the calling thread only)\n"
        "\n"
        "The file is read, converted and written chunk by chunk, so memory does not\n"
        "grow with its length. Only a whole, accepted file becomes OUTPUT: a regular\n"
        "file is written under a temporary name and renamed at the end; for a pipe,\n"
        "a device or \"-\" (standard output) the result is gathered in a temporary\n"
        "file (in $TMPDIR) and copied there once the whole input has been accepted.\n"
        "\n"
        "Lines whose latitude or longitude is not a number are skipped, and points\n"
        "that cannot be converted are left out of OUTPUT; both are counted on\n"
        "standard error and the exit status is then 1. A line that does not have the\n"
        "format's columns stops everything (status 2, nothing written).\n").arg(ConversionOptions::Help());
}

int ConvertCommand::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    try {
        return convert(args, out, err);
    } catch (const std::bad_alloc&) {
        err << kPrefix << "not enough memory for this file; nothing written\n";
        return CliUsageError;
    }
}

int ConvertCommand::convert(const QStringList& args, QTextStream&, QTextStream& err)
{
    QCommandLineParser parser;
    const ConversionOptions conversion(parser);
    const QCommandLineOption formatOpt(QStringLiteral("format"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption threadsOpt(QStringLiteral("threads"), QString(), QStringLiteral("N"));
    parser.addOptions({formatOpt, threadsOpt});

    auto fail = [&err](const QString& message) {
        err << kPrefix << message << '\n';
        return int(CliUsageError);
    };

    QString error;
    if (!CliSupport::parse(parser, args, &error))
        return fail(error);
    if (!parser.isSet(formatOpt))
        return fail(QStringLiteral("--format is required"));
    const QStringList files = parser.positionalArguments();
    if (files.size() != 2)
        return fail(QStringLiteral("expected INPUT and OUTPUT, got %1 file argument(s)").arg(files.size()));
    const QString input = files.at(0);
    // Absolute, as the dialog's file dialogs give it: the output encoding is
    // decided on the path's first dot.
    const QString output = QFileInfo(files.at(1)).absoluteFilePath();

    QString record;
    if (!findFormat(parser.value(formatOpt), &record, &error))
        return fail(error);

    ConversionSetup setup;
    bool usage = false;
    if (!conversion.Read(parser, ConversionSetup::SameDatum, nullptr, &setup, &error, &usage))
        return fail(error);
    if (setup.source->IsSame(setup.target.get()))
        return fail(QStringLiteral("the source and target systems are the same; nothing to convert"));
    if (setup.mode != CoordinateConversion::Direct) {
        // With a model the systems take the dialog's way, through their WKT,
        // so that both give the same digits.
        setup.source = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(setup.source->ExportToWkt());
        setup.target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(setup.target->ExportToWkt());
        if (!setup.source || !setup.target)
            return fail(QStringLiteral("the coordinate systems cannot be written as WKT"));
    }
    const auto& source = setup.source;
    const auto& target = setup.target;

    if (OutputFile::SameFile(input, files.at(1)) || QFileInfo(output).absoluteFilePath() == QFileInfo(input).absoluteFilePath())
        return fail(QStringLiteral("OUTPUT \"%1\" is the input file; writing it would destroy the input").arg(files.at(1)));

    const int threads = CliSupport::threadCount(parser, QStringLiteral("threads"), &error);
    if (threads == 0)
        return fail(error);

    CoordsFileStreamConverter stream;
    stream.SetChunkLines(CliSupport::chunkLines(16384));
    if (setup.codeNumber) {
        const double cm = CliSupport::centralMeridian(*source);
        stream.SetPointCheck([cm](const CoordsPoint& p) {
            const int zone = KivGeometry::CoordFuncLibrary::ZoneNumberOf(p.east);
            return zone > 0 ? CliSupport::zoneMismatch(zone, cm) : QString();
        });
    }
    if (!stream.Open(input))
        return fail(QStringLiteral("cannot open \"%1\"").arg(input));

    // The route's objects are not shared between threads: one per worker,
    // all made from the same set-up.
    std::vector<std::unique_ptr<CoordinateConversion>> owned;
    std::vector<const CoordinateConversion*> conversions;
    for (int i = 0; i < threads; ++i) {
        owned.push_back(setup.MakeConversion());
        conversions.push_back(owned.back().get());
    }

    const auto readFailure = [&](int result) {
        if (result == CoordsFileStreamConverter::CannotOpen)
            return fail(QStringLiteral("cannot open \"%1\"").arg(input));
        if (result == CoordsFileStreamConverter::ReadFailed)
            return fail(QStringLiteral("cannot read \"%1\": %2; nothing written").arg(input, stream.ReadError()));
        if (stream.StopLine() > 0)
            return fail(QStringLiteral("line %1 of \"%2\" does not have the %3 columns of the format; nothing written")
                            .arg(stream.StopLine())
                            .arg(input)
                            .arg(TextFileFormat::FromRecord(record).ColumnCount()));
        return fail(QStringLiteral("no point with numeric coordinates in \"%1\"; nothing written").arg(input));
    };

    if (!conversions.front()->IsReady()) {
        // Read anyway: a file the format does not fit is reported as such first.
        const int result = stream.Run(record, {nullptr}, nullptr, output);
        if (result != CoordsFileStreamConverter::Success)
            return readFailure(result);
        return fail(QStringLiteral("the conversion cannot run between these systems with this model"));
    }

    ProgressLine progress(err);
    const int result = stream.RunToFile(record, conversions, files.at(1) == QLatin1String("-") ? files.at(1) : output,
                                        output, &error, [&progress](qint64 done, qint64 total) {
                                            progress.show("converting", done, total);
                                        });
    progress.done();
    if (result == CoordsFileStreamConverter::WriteFailed)
        return fail(error);
    if (result != CoordsFileStreamConverter::Success)
        return readFailure(result);

    if (stream.PointsWithoutDatumShift() > 0)
        err << kPrefix << "warning: "
            << CoordinateConversion::NoDatumShiftWarning(stream.PointsWithoutDatumShift(), QStringLiteral("point(s)"),
                                                         source->GetName(), target->GetName())
            << '\n';

    bool dataErrors = false;
    const auto lineList = [](const std::vector<qint64>& numbers, qint64 total) {
        QStringList texts;
        for (qint64 n : numbers)
            texts << QString::number(n);
        QString list = texts.join(QStringLiteral(", "));
        if (total > qint64(numbers.size()))
            list += QStringLiteral(" and %1 more").arg(total - qint64(numbers.size()));
        return list;
    };
    if (stream.SkippedLines() > 0) {
        err << kPrefix << stream.SkippedLines()
            << " line(s) skipped: their latitude or longitude is not a number: line "
            << lineList(stream.SkippedLineNumbers(), stream.SkippedLines()) << '\n';
        dataErrors = true;
    }
    if (stream.BadHeights() > 0) {
        err << kPrefix << stream.BadHeights() << " height(s) are not numbers (text is read as 0, as in the dialog): line "
            << lineList(stream.BadHeightLineNumbers(), stream.BadHeights()) << '\n';
        dataErrors = true;
    }
    if (stream.Notes() > 0) {
        err << kPrefix << stream.Notes() << " point(s) carry a zone number that is not the system's zone; the first is "
            << QStringLiteral("point \"%1\": %2").arg(stream.FirstNotePoint().id, stream.FirstNote()) << '\n';
        dataErrors = true;
    }
    if (stream.FailedPoints() > 0) {
        const CoordsPoint& p = stream.FirstFailedPoint();
        err << kPrefix << stream.FailedPoints() << " point(s) could not be converted and were left out; the first is point \""
            << p.id << "\" at " << QString::number(p.north, 'f', 6) << ", " << QString::number(p.east, 'f', 6)
            << '\n';
        dataErrors = true;
    }
    return dataErrors ? CliDataErrors : CliOk;
}
