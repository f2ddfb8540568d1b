#include "reprojection/RasterOptions.h"

#include "reprojection/stCoordsTransformInfo.h"

#include <QUrl>

#include <cpl_error.h>
#include <cpl_string.h>
#include <gdal.h>
#include <gdalwarper.h>

#include <algorithm>
#include <cmath>

namespace {

const QString kResampling = QStringLiteral("resampling");
const QString kResolution = QStringLiteral("resolution");
const QString kCreation = QStringLiteral("co");
const QString kFormat = QStringLiteral("format");

QString keyOf(const QString& option)
{
    return option.section(QLatin1Char('='), 0, 0).trimmed().toUpper();
}

} // namespace

QStringList RasterOptions::ResamplingNames()
{
    // In the order of GDALResampleAlg.
    return {QStringLiteral("near"),    QStringLiteral("bilinear"), QStringLiteral("cubic"), QStringLiteral("cubicspline"),
            QStringLiteral("lanczos"), QStringLiteral("average"),  QStringLiteral("mode")};
}

QString RasterOptions::SetResampling(const QString& name)
{
    if (!ResamplingNames().contains(name))
        return QStringLiteral("--resampling takes %1, not \"%2\"")
            .arg(ResamplingNames().join(QStringLiteral(", ")), name);
    m_resampling = name;
    return QString();
}

int RasterOptions::GdalResampling() const
{
    static_assert(GRA_NearestNeighbour == 0 && GRA_Bilinear == 1 && GRA_Cubic == 2 && GRA_CubicSpline == 3
                      && GRA_Lanczos == 4 && GRA_Average == 5 && GRA_Mode == 6,
                  "the names follow GDALResampleAlg");
    return std::max(0, int(ResamplingNames().indexOf(m_resampling)));
}

QString RasterOptions::SetResolution(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    bool okX = false, okY = false;
    const double x = parts.size() == 2 ? parts[0].trimmed().toDouble(&okX) : 0.0;
    const double y = parts.size() == 2 ? parts[1].trimmed().toDouble(&okY) : 0.0;
    if (!okX || !okY || !std::isfinite(x) || !std::isfinite(y) || x <= 0 || y <= 0)
        return QStringLiteral("--resolution takes two positive numbers XRES,YRES, not \"%1\"").arg(text);
    m_xResolution = x;
    m_yResolution = y;
    return QString();
}

QString RasterOptions::AddCreationOption(const QString& text)
{
    const int equals = text.indexOf(QLatin1Char('='));
    if (equals <= 0 || text.left(equals).trimmed().isEmpty())
        return QStringLiteral("--co takes KEY=VALUE, not \"%1\"").arg(text);
    const QString key = keyOf(text);
    for (int i = m_creationOptions.size() - 1; i >= 0; --i)
        if (keyOf(m_creationOptions[i]) == key)
            m_creationOptions.removeAt(i);
    m_creationOptions << text;
    return QString();
}

QStringList RasterOptions::CreationOptions(const QStringList& defaults) const
{
    QStringList merged;
    for (const QString& option : defaults) {
        bool replaced = false;
        for (const QString& given : m_creationOptions)
            replaced = replaced || keyOf(given) == keyOf(option);
        if (!replaced)
            merged << option;
    }
    return merged + m_creationOptions;
}

QString RasterOptions::CreationProblem(const QString& format) const
{
    if (m_creationOptions.isEmpty())
        return QString();
    GDALAllRegister();
    GDALDriverH driver = GDALGetDriverByName(format.toUtf8().constData());
    if (!driver)
        return QString();
    CPLStringList list;
    for (const QString& option : m_creationOptions)
        list.AddString(option.toUtf8().constData());
    CPLErrorStateBackuper state;
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    CPLErrorReset();
    if (GDALValidateCreationOptions(driver, list.List()))
        return QString();
    return QStringLiteral("--co: %1").arg(QString::fromUtf8(CPLGetLastErrorMsg()));
}

QString RasterOptions::ToText() const
{
    const auto encode = [](const QString& value) { return QString::fromLatin1(QUrl::toPercentEncoding(value, "=,")); };
    QStringList pairs;
    if (m_resampling != QLatin1String("near"))
        pairs << kResampling + QLatin1Char('=') + encode(m_resampling);
    if (m_xResolution > 0)
        pairs << kResolution + QLatin1Char('=')
                     + encode(QStringLiteral("%1,%2").arg(m_xResolution, 0, 'g', 17).arg(m_yResolution, 0, 'g', 17));
    for (const QString& option : m_creationOptions)
        pairs << kCreation + QLatin1Char('=') + encode(option);
    if (m_formatNamed)
        pairs << kFormat + QStringLiteral("=named");
    return pairs.join(QLatin1Char(';'));
}

RasterOptions RasterOptions::FromText(const QString& text, QString* error)
{
    RasterOptions options;
    error->clear();
    for (const QString& pair : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString key = pair.section(QLatin1Char('='), 0, 0);
        const QString value = QUrl::fromPercentEncoding(pair.section(QLatin1Char('='), 1).toUtf8());
        QString problem;
        if (key == kResampling)
            problem = options.SetResampling(value);
        else if (key == kResolution)
            problem = options.SetResolution(value);
        else if (key == kCreation)
            problem = options.AddCreationOption(value);
        else if (key == kFormat && value == QLatin1String("named"))
            options.m_formatNamed = true;
        else
            problem = QStringLiteral("unknown raster option \"%1\"").arg(key);
        if (!problem.isEmpty()) {
            *error = QStringLiteral("The raster options \"%1\" are not understood: %2").arg(text, problem);
            return RasterOptions();
        }
    }
    return options;
}

void RasterOptions::WriteTo(stCoordsTransformInfo& info) const
{
    info.strExtra1 = ToText();
}

RasterOptions RasterOptions::FromRecord(const stCoordsTransformInfo& info, QString* error)
{
    return FromText(info.strExtra1, error);
}
