#include "ConversionOptions.h"

#include "CliSupport.h"

#include <QCommandLineParser>

ConversionOptions::ConversionOptions(QCommandLineParser& parser)
    : m_from(QStringLiteral("from"), QString(), QStringLiteral("CRS")),
      m_to(QStringLiteral("to"), QString(), QStringLiteral("CRS")),
      m_params7(QStringLiteral("params7"), QString(), QStringLiteral("VALUES")),
      m_params4(QStringLiteral("params4"), QString(), QStringLiteral("VALUES")),
      m_model(QStringLiteral("model"), QString(), QStringLiteral("NAME")),
      m_code(QStringLiteral("code"))
{
    parser.addOptions({m_from, m_to, m_params7, m_params4, m_model, m_code});
}

bool ConversionOptions::HasModel(const QCommandLineParser& parser) const
{
    return parser.isSet(m_params7) || parser.isSet(m_params4) || parser.isSet(m_model);
}

bool ConversionOptions::Read(const QCommandLineParser& parser, ConversionSetup::SameBaseRule rule,
                             const KivUtility::_ptr_t<KivGeometry::SpatialReference>& defaultSource,
                             ConversionSetup* setup, QString* error, bool* usage) const
{
    *usage = true;
    if ((!defaultSource && !parser.isSet(m_from)) || !parser.isSet(m_to)) {
        *error = defaultSource ? QStringLiteral("--to is needed") : QStringLiteral("both --from and --to are needed");
        return false;
    }
    if (int(parser.isSet(m_params7)) + int(parser.isSet(m_params4)) + int(parser.isSet(m_model)) > 1) {
        *error = QStringLiteral("give only one of --params7, --params4 and --model");
        return false;
    }
    *usage = false;
    setup->source = parser.isSet(m_from) ? CliSupport::loadSpatialReference(parser.value(m_from), error)
                                         : defaultSource;
    if (!setup->source)
        return false;
    setup->target = CliSupport::loadSpatialReference(parser.value(m_to), error);
    if (!setup->target)
        return false;

    setup->mode = CoordinateConversion::Direct;
    setup->params.clear();
    setup->modelName.clear();
    if (parser.isSet(m_params7) || parser.isSet(m_params4)) {
        *usage = true;
        const bool seven = parser.isSet(m_params7);
        if (!setup->UseTypedModel(seven ? CoordinateConversion::SevenParameters : CoordinateConversion::FourParameters,
                                  parser.value(seven ? m_params7 : m_params4), error))
            return false;
        *usage = false;
    } else if (parser.isSet(m_model)) {
        if (!setup->UseStoredModel(parser.value(m_model), rule, error))
            return false;
    }
    setup->codeNumber = parser.isSet(m_code);
    if (setup->codeNumber) {
        *error = CliSupport::codeNumberRefusal(*setup->source);
        if (!error->isEmpty()) {
            *usage = true;
            return false;
        }
    }
    return true;
}

QString ConversionOptions::Help()
{
    return QStringLiteral(
        "  --from CRS        source coordinate system\n"
        "  --to CRS          target coordinate system\n"
        "                    CRS: an authority code (EPSG:2436), WKT, a PROJ string,\n"
        "                    or the path of a .prj or .wkt file\n"
        "  --params7 VALUES  seven-parameter model: DX,DY,DZ (metres), W,K,R (arc-\n"
        "                    seconds, coordinate-frame rotations about X, Y, Z), M\n"
        "                    (scale 1 + M); projected ends are unprojected and\n"
        "                    reprojected around it\n"
        "  --params4 VALUES  four-parameter plane model: DX,DY (metres), T (degrees),\n"
        "                    K (scale); points are first taken into the target zone\n"
        "                    when the central meridians differ\n"
        "  --model NAME      a stored model, by exact name; its kind decides whether\n"
        "                    it acts as --params7 or --params4 (a name stored as both\n"
        "                    takes the kind the two systems call for: seven parameters\n"
        "                    unless they share datum, ellipsoid and prime meridian)\n"
        "  --code            projected source Y values carry their zone number in\n"
        "                    front (e.g. 39500000.0); it is removed first. A Y from\n"
        "                    another zone than the system's is refused; a system whose\n"
        "                    false easting holds the zone takes Y as it is, without --code\n");
}
