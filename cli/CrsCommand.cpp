#include "CrsCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"

#include "spatialref/DatasetSpatialReference.h"

#include "KivGeometry/SpatialReference.h"

#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>
#include <QFileInfo>
#include <QTextStream>

static CliRegistrar<CrsCommand> registrar;

namespace {

QString kindName(int type)
{
    switch (type) {
    case KivGeometry::SRT_Geographic: return QStringLiteral("geographic");
    case KivGeometry::SRT_Projected: return QStringLiteral("projected");
    case KivGeometry::SRT_Geocentric: return QStringLiteral("geocentric");
    case KivGeometry::SRT_Vertical: return QStringLiteral("vertical");
    case KivGeometry::SRT_Compound: return QStringLiteral("compound");
    case KivGeometry::SRT_Engineering: return QStringLiteral("engineering");
    default: return QStringLiteral("unknown");
    }
}

const QStringList kFields{"name", "kind", "code", "proj", "wkt", "pretty", "esri"};

} // namespace

QString CrsCommand::name() const
{
    return QStringLiteral("crs");
}

QString CrsCommand::summary() const
{
    return QStringLiteral("print a coordinate system: name, kind, WKT and ESRI WKT");
}

QString CrsCommand::help() const
{
    return QStringLiteral(
        "Usage: coordstransform crs INPUT [--field FIELD | --json]\n"
        "\n"
        "INPUT is a code (\"EPSG:2415\"), a .prj or .wkt file, WKT text, a PROJ\n"
        "string, or a dataset file (GeoTIFF, shapefile and the other formats the\n"
        "data source reads), whose coordinate system is printed.\n"
        "\n"
        "Without --field the output is, in this order:\n"
        "  name: NAME\n"
        "  kind: geographic|projected|...\n"
        "  code: EPSG:NNNN (empty when the system has none)\n"
        "  proj: the PROJ string\n"
        "  wkt: the one-line WKT (what the spatial reference dialog hands on)\n"
        "  pretty:\n"
        "  the indented WKT, over several lines\n"
        "  esri:\n"
        "  the ESRI WKT, on one line (what a .prj file holds)\n"
        "\n"
        "Options:\n"
        "  --field FIELD   print only that value (name, kind, code, proj, wkt,\n"
        "                  pretty or esri), with nothing around it\n"
        "  --json          print one JSON object with the seven fields as keys\n"
        "\n"
        "Exit status 2 when INPUT is no coordinate system or a dataset without one.\n");
}

int CrsCommand::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    try {
        QCommandLineParser parser;
        const QCommandLineOption fieldOption(QStringLiteral("field"), QString(), QStringLiteral("FIELD"));
        const QCommandLineOption jsonOption(QStringLiteral("json"));
        parser.addOptions({fieldOption, jsonOption});
        QString error;
        if (!CliSupport::parse(parser, args, &error)) {
            err << "coordstransform crs: " << error << '\n';
            return CliUsageError;
        }
        const QStringList inputs = parser.positionalArguments();
        if (inputs.size() != 1) {
            err << "coordstransform crs: " << (inputs.isEmpty() ? "INPUT is missing" : "only one INPUT is taken")
                << '\n';
            return CliUsageError;
        }
        const QString field = parser.value(fieldOption);
        if (parser.isSet(fieldOption) && !kFields.contains(field)) {
            err << "coordstransform crs: --field takes " << kFields.join(", ") << ", not \"" << field << "\"\n";
            return CliUsageError;
        }

        const QString input = inputs.first();
        const QFileInfo info(input);
        const QString suffix = info.suffix().toLower();
        KivUtility::_ptr_t<KivGeometry::SpatialReference> system;
        // Any other existing file is first read as a dataset; a text file that
        // holds WKT is still taken as such when the data source refuses it.
        if (info.isFile() && suffix != "prj" && suffix != "wkt") {
            bool opened = false;
            system = DatasetSpatialReference::Read(info.absoluteFilePath(), &opened);
            if (opened && !system) {
                err << "coordstransform crs: dataset \"" << input << "\" has no coordinate system\n";
                return CliUsageError;
            }
        }
        if (!system)
            system = CliSupport::loadSpatialReference(input, &error);
        if (!system) {
            err << "coordstransform crs: " << error << '\n';
            return CliUsageError;
        }

        const auto esri = system->Clone();
        esri->MorphToESRI();
        const QMap<QString, QString> values{{"name", system->GetName()},
                                            {"kind", kindName(system->GetType())},
                                            {"code", system->GetAuthorityCode()},
                                            {"proj", system->ExportToProj4()},
                                            {"wkt", system->ExportToWkt()},
                                            {"pretty", system->ExportToPrettyWkt()},
                                            {"esri", esri->ExportToWkt()}};
        if (parser.isSet(jsonOption)) {
            QJsonObject object;
            for (const QString& key : kFields)
                object.insert(key, values.value(key));
            out << QJsonDocument(object).toJson(QJsonDocument::Indented);
            return CliOk;
        }
        if (!field.isEmpty()) {
            out << values.value(field) << '\n';
            return CliOk;
        }
        for (const char* key : {"name", "kind", "code", "proj", "wkt"})
            out << key << ": " << values.value(key) << '\n';
        out << "pretty:\n" << values.value("pretty") << '\n';
        out << "esri:\n" << values.value("esri") << '\n';
        return CliOk;
    } catch (...) {
        err << "coordstransform crs: internal error\n";
        return CliUsageError;
    }
}
