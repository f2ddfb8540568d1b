#include "ConvertCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"

#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "io/OutputFile.h"
#include "models/ModelStore.h"
#include "spatialref/CoordinateConversion.h"
#include "textfiles/CoordsFileConverter.h"
#include "textfiles/CoordsFileReader.h"
#include "textfiles/CoordsFileWriter.h"
#include "textfiles/FileFormatDirectory.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>
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
        "           [--code] INPUT OUTPUT\n"
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
        "  --format NAME|FILE  a format of the format folder, by name (\"General\" or\n"
        "                      \"General.xml\"), or the path of a format XML file\n"
        "  --from CRS          source coordinate system\n"
        "  --to CRS            target coordinate system\n"
        "                      CRS: an authority code (EPSG:2435), WKT, a PROJ string,\n"
        "                      or the path of a .prj or .wkt file\n"
        "  --params7 VALUES    seven-parameter model DX,DY,DZ (metres), W,K,R (arc-\n"
        "                      seconds), M (scale 1 + M), as in the dialog\n"
        "  --params4 VALUES    four-parameter plane model DX,DY (metres), T (degrees),\n"
        "                      K (scale), as in the dialog\n"
        "  --model NAME        a stored model, by exact name; a seven-parameter model\n"
        "                      when the systems lie on different datums, else a\n"
        "                      four-parameter one. Without a model, PROJ's own\n"
        "                      operation between the two systems is used.\n"
        "  --code              projected source Y values carry their zone number in\n"
        "                      front; it is removed first\n"
        "\n"
        "Lines whose latitude or longitude is not a number are skipped, and points\n"
        "that cannot be converted are left out of OUTPUT; both are counted on\n"
        "standard error and the exit status is then 1. A line that does not have the\n"
        "format's columns stops everything (status 2, nothing written).\n");
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
    const QCommandLineOption formatOpt(QStringLiteral("format"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption fromOpt(QStringLiteral("from"), QString(), QStringLiteral("CRS"));
    const QCommandLineOption toOpt(QStringLiteral("to"), QString(), QStringLiteral("CRS"));
    const QCommandLineOption params7Opt(QStringLiteral("params7"), QString(), QStringLiteral("VALUES"));
    const QCommandLineOption params4Opt(QStringLiteral("params4"), QString(), QStringLiteral("VALUES"));
    const QCommandLineOption modelOpt(QStringLiteral("model"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption codeOpt(QStringLiteral("code"));
    parser.addOptions({formatOpt, fromOpt, toOpt, params7Opt, params4Opt, modelOpt, codeOpt});

    auto fail = [&err](const QString& message) {
        err << kPrefix << message << '\n';
        return int(CliUsageError);
    };

    QString error;
    if (!CliSupport::parse(parser, args, &error))
        return fail(error);
    for (const QCommandLineOption& o : {formatOpt, fromOpt, toOpt}) {
        if (!parser.isSet(o))
            return fail(QStringLiteral("--%1 is required").arg(o.names().first()));
    }
    const int models = int(parser.isSet(params7Opt)) + int(parser.isSet(params4Opt)) + int(parser.isSet(modelOpt));
    if (models > 1)
        return fail(QStringLiteral("give at most one of --params7, --params4 and --model"));
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

    _ptr_t<SpatialReference> source = CliSupport::loadSpatialReference(parser.value(fromOpt), &error);
    if (!source)
        return fail(error);
    _ptr_t<SpatialReference> target = CliSupport::loadSpatialReference(parser.value(toOpt), &error);
    if (!target)
        return fail(error);
    if (source->IsSame(target.get()))
        return fail(QStringLiteral("the source and target systems are the same; nothing to convert"));

    CoordinateConversion::Mode mode = CoordinateConversion::Direct;
    QList<double> params;
    if (parser.isSet(params7Opt)) {
        if (!CliSupport::parseNumberList(parser.value(params7Opt), 7, &params))
            return fail(QStringLiteral("--params7 needs seven numbers separated by commas"));
        mode = CoordinateConversion::SevenParameters;
    } else if (parser.isSet(params4Opt)) {
        if (!CliSupport::parseNumberList(parser.value(params4Opt), 4, &params))
            return fail(QStringLiteral("--params4 needs four numbers separated by commas"));
        mode = CoordinateConversion::FourParameters;
    } else if (parser.isSet(modelOpt)) {
        mode = CoordinateConversion::DialogMode(source.get(), target.get());
        const ModelStore::Kind kind =
            mode == CoordinateConversion::SevenParameters ? ModelStore::Params7 : ModelStore::Params4;
        TransformModel model;
        if (!CliSupport::findModel(kind, parser.value(modelOpt), &model, &error)) {
            if (!error.isEmpty())
                return fail(error);
            return fail(QStringLiteral("no %1-parameter model named \"%2\" in %3")
                            .arg(kind == ModelStore::Params7 ? 7 : 4)
                            .arg(parser.value(modelOpt), ModelStore::ReaderPath()));
        }
        params = model.Params;
    }
    if (parser.isSet(codeOpt)) {
        const QString refusal = CliSupport::codeNumberRefusal(*source);
        if (!refusal.isEmpty())
            return fail(refusal);
    }
    if (mode != CoordinateConversion::Direct) {
        // With a model the systems take the dialog's way, through their WKT,
        // so that both give the same digits.
        source = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(source->ExportToWkt());
        target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(target->ExportToWkt());
        if (!source || !target)
            return fail(QStringLiteral("the coordinate systems cannot be written as WKT"));
    }

    if (OutputFile::SameFile(input, files.at(1)) || QFileInfo(output).absoluteFilePath() == QFileInfo(input).absoluteFilePath())
        return fail(QStringLiteral("OUTPUT \"%1\" is the input file; writing it would destroy the input").arg(files.at(1)));

    ProgressLine progress(err);
    CoordsFileReader reader;
    const int read = reader.Read(input, record, [&progress](qint64 done, qint64 total) {
        progress.show("reading", done, total);
    });
    progress.done();
    if (read == CoordsFileReader::CannotOpen)
        return fail(QStringLiteral("cannot open \"%1\"").arg(input));
    if (read != CoordsFileReader::Success) {
        if (reader.StopLine() > 0)
            return fail(QStringLiteral("line %1 of \"%2\" does not have the %3 columns of the format; nothing written")
                            .arg(reader.StopLine())
                            .arg(input)
                            .arg(reader.Format().ColumnCount()));
        return fail(QStringLiteral("no point with numeric coordinates in \"%1\"; nothing written").arg(input));
    }

    CoordinateConversion conversion(source, target);
    conversion.SetMode(mode);
    conversion.SetParams(params);
    conversion.SetCodeNumber(parser.isSet(codeOpt));
    if (mode == CoordinateConversion::Direct && CliSupport::onlyBallpark(source, target))
        err << kPrefix << "warning: PROJ knows no datum transformation from \"" << source->GetName() << "\" to \""
            << target->GetName() << "\"; points are converted without any datum shift (errors of up to ~100 m). "
            << "Give the shift with --model, --params7 or --params4.\n";
    std::vector<CoordsPoint> results;
    std::vector<int> rows;
    if (!CoordsFileConverter::Run(conversion, reader.Points(), &results, &rows,
                                  [&progress](qint64 done, qint64 total) { progress.show("converting", done, total); }))
        return fail(QStringLiteral("the conversion cannot run between these systems with this model"));
    progress.done();

    // "-" is standard output; a pipe or a device is written in place; a file
    // is replaced only once it is complete.
    OutputFile outputFile(files.at(1) == QLatin1String("-") ? files.at(1) : output);
    if (!outputFile.Open(&error))
        return fail(error);
    const bool written = CoordsFileWriter::WriteTo(
        outputFile.Device(), output, record, reader.HasTitle(), reader.TitleLine(), results,
        [&progress](qint64 done, qint64 total) { progress.show("writing", done, total); });
    progress.done();
    if (!written) {
        const QString message = outputFile.WriteError();
        outputFile.Cancel();
        return fail(message);
    }
    if (!outputFile.Commit(&error))
        return fail(error);

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
    if (reader.SkippedLines() > 0) {
        err << kPrefix << reader.SkippedLines()
            << " line(s) skipped: their latitude or longitude is not a number: line "
            << lineList(reader.SkippedLineNumbers(), reader.SkippedLines()) << '\n';
        dataErrors = true;
    }
    if (reader.BadHeights() > 0) {
        err << kPrefix << reader.BadHeights() << " height(s) are not numbers (text is read as 0, as in the dialog): line "
            << lineList(reader.BadHeightLineNumbers(), reader.BadHeights()) << '\n';
        dataErrors = true;
    }
    if (parser.isSet(codeOpt)) {
        const double cm = CliSupport::centralMeridian(*source);
        qint64 mismatches = 0;
        QString first;
        for (const CoordsPoint& p : reader.Points()) {
            const int zone = KivGeometry::CoordFuncLibrary::ZoneNumberOf(p.east);
            const QString mismatch = zone > 0 ? CliSupport::zoneMismatch(zone, cm) : QString();
            if (mismatch.isEmpty())
                continue;
            if (mismatches++ == 0)
                first = QStringLiteral("point \"%1\": %2").arg(p.id, mismatch);
        }
        if (mismatches > 0) {
            err << kPrefix << mismatches << " point(s) carry a zone number that is not the system's zone; the first is "
                << first << '\n';
            dataErrors = true;
        }
    }
    const qint64 failed = qint64(reader.Points().size()) - qint64(results.size());
    if (failed > 0) {
        size_t first = 0;
        while (first < rows.size() && rows[first] == int(first))
            ++first;
        const CoordsPoint& p = reader.Points()[first];
        err << kPrefix << failed << " point(s) could not be converted and were left out; the first is point \""
            << p.id << "\" at " << QString::number(p.north, 'f', 6) << ", " << QString::number(p.east, 'f', 6)
            << '\n';
        dataErrors = true;
    }
    return dataErrors ? CliDataErrors : CliOk;
}
