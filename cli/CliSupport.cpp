#include "CliSupport.h"

#include "spatialref/ConversionSetup.h"

#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

#include <cmath>
#include <algorithm>
#include <limits>
#include <thread>

namespace CliSupport {

KivUtility::_ptr_t<KivGeometry::SpatialReference> loadSpatialReference(const QString& argument,
                                                                        QString* error)
{
    const QString trimmed = argument.trimmed();
    const QFileInfo info(trimmed);
    const bool looksLikeFile = trimmed.endsWith(QLatin1String(".prj"), Qt::CaseInsensitive)
                               || trimmed.endsWith(QLatin1String(".wkt"), Qt::CaseInsensitive);
    if (!trimmed.isEmpty() && (looksLikeFile || info.isFile())) {
        QFile file(trimmed);
        if (!file.open(QIODevice::ReadOnly)) {
            if (error)
                *error = QStringLiteral("cannot read coordinate system file \"%1\": %2")
                             .arg(argument, file.errorString());
            return nullptr;
        }
        const QByteArray bytes = file.readAll();
        // .prj files written on Chinese desktops are often GBK, not UTF-8.
        QTextCodec::ConverterState state;
        QString text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
        if (state.invalidChars > 0)
            text = QTextCodec::codecForName("GB18030")->toUnicode(bytes);
        if (text.startsWith(QChar(0xFEFF)))
            text.remove(0, 1);
        auto sr = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(text.trimmed());
        if (!sr && error)
            *error = QStringLiteral("file \"%1\" does not hold a coordinate system").arg(argument);
        return sr;
    }
    auto sr = trimmed.isEmpty() ? nullptr
                                : KivGeometry::SpatialReferenceFactory::CreateSpatialReference(trimmed);
    if (!sr && error)
        *error = QStringLiteral("unknown coordinate system \"%1\"").arg(argument);
    return sr;
}

bool parse(QCommandLineParser& parser, const QStringList& args, QString* error)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    // The parser expects the program name first.
    if (!parser.parse(QStringList{QStringLiteral("coordstransform")} + args)) {
        if (error)
            *error = parser.errorText();
        return false;
    }
    return true;
}

bool parseNumberList(const QString& text, int count, QList<double>* values)
{
    return ConversionSetup::ParseValues(text, count, values);
}

double centralMeridian(const KivGeometry::SpatialReference& system)
{
    if (system.GetType() != KivGeometry::SRT_Projected)
        return std::numeric_limits<double>::quiet_NaN();
    const auto projection = KivGeometry::ProjectedCoordinateSystem(system).GetProjection();
    return projection ? projection->GetParameter(KivGeometry::Projection::CentralMeridian)
                      : std::numeric_limits<double>::quiet_NaN();
}

QString codeNumberRefusal(const KivGeometry::SpatialReference& source)
{
    if (source.GetType() != KivGeometry::SRT_Projected)
        return QString(); // nothing to remove: the route ignores the flag
    const auto projection = KivGeometry::ProjectedCoordinateSystem(source).GetProjection();
    const double falseEasting = projection ? projection->GetParameter(KivGeometry::Projection::FalseEasting) : 0.0;
    if (std::fabs(falseEasting) >= 1000000.0)
        return QStringLiteral("--code cannot be used with \"%1\": its false easting (%2 m) already holds the "
                              "zone number, so its Y values are converted as they are; leave out --code")
            .arg(source.GetName())
            .arg(QString::number(falseEasting, 'f', 0));
    return QString();
}

QString zoneMismatch(int zone, double cm)
{
    if (!std::isfinite(cm))
        return QString();
    const auto same = [](double a, double b) { return std::fabs(a - b) < 1e-9; };
    if (same(3.0 * zone, cm) || same(6.0 * zone - 3.0, cm))
        return QString();
    QString zones;
    const double three = cm / 3.0, six = (cm + 3.0) / 6.0;
    if (same(three, std::round(three)))
        zones += QStringLiteral("3-degree zone %1").arg(int(std::round(three)));
    if (same(six, std::round(six)))
        zones += (zones.isEmpty() ? QString() : QStringLiteral(" or ")) + QStringLiteral("6-degree zone %1").arg(int(std::round(six)));
    return QStringLiteral("zone number %1 in Y is not the zone of the system (central meridian %2%3)")
        .arg(zone)
        .arg(QString::number(cm, 'g', 12))
        .arg(zones.isEmpty() ? QString() : QStringLiteral(": ") + zones);
}

int threadCount(const QCommandLineParser& parser, const QString& optionName, QString* error)
{
    if (!parser.isSet(optionName)) {
        const unsigned hardware = std::thread::hardware_concurrency();
        return hardware == 0 ? 1 : int(std::min(hardware, 64u));
    }
    bool ok = false;
    const int n = parser.value(optionName).toInt(&ok);
    if (!ok || n < 1 || n > 256) {
        *error = QStringLiteral("--%1 takes a number of threads from 1 to 256, not \"%2\"")
                     .arg(optionName, parser.value(optionName));
        return 0;
    }
    return n;
}

int chunkLines(int defaultLines)
{
    bool ok = false;
    const int n = qEnvironmentVariableIntValue("COORDSTRANSFORM_CHUNK_LINES", &ok);
    return ok && n > 0 ? n : defaultLines;
}

} // namespace CliSupport
