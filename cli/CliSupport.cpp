#include "CliSupport.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

#include <cmath>

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
    QList<double> result;
    const QStringList pieces = text.split(QLatin1Char(','));
    for (const QString& piece : pieces) {
        bool ok = false;
        const double v = piece.trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(v))
            return false;
        result << v;
    }
    if (count >= 0 && result.size() != count)
        return false;
    if (values)
        *values = result;
    return true;
}

} // namespace CliSupport
