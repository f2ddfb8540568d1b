#include "models/ControlPointReport.h"

#include "io/OutputFile.h"

#include <QJsonArray>
#include <QPainter>
#include <QPdfWriter>

#include <cmath>

namespace {

const double kMargin = 40;

// The largest of 1, 2, 5 × 10^k not above `value`.
double niceBelow(double value)
{
    if (!(value > 0))
        return 0;
    const double p = std::pow(10.0, std::floor(std::log10(value)));
    for (double m : {5.0, 2.0, 1.0}) {
        if (m * p <= value)
            return m * p;
    }
    return p;
}

QString fixed(double v, int decimals)
{
    // Nothing that rounds to zero is printed with a minus sign.
    if (std::abs(v) < 0.5 * std::pow(10.0, -decimals))
        v = 0;
    return QString::number(v, 'f', decimals);
}

QJsonValue idValue(const QString& id)
{
    bool ok = false;
    const int number = id.toInt(&ok);
    return ok ? QJsonValue(number) : QJsonValue(id);
}

QString metres(double v)
{
    return v >= 1000 ? QString::number(v / 1000) + QStringLiteral(" km")
                     : v >= 1 ? QString::number(v) + QStringLiteral(" m")
                              : QString::number(v * 100) + QStringLiteral(" cm");
}

} // namespace

ControlPointReport::ControlPointReport(const ControlPointQuality& quality, const QString& source,
                                       const QString& target)
    : m_quality(quality), m_source(source), m_target(target)
{
}

QStringList ControlPointReport::ParameterNames() const
{
    if (m_quality.GetModel() == ControlPointQuality::FourParameters)
        return {QStringLiteral("DX(m)"), QStringLiteral("DY(m)"), QString::fromUtf8("T(゜)"), QStringLiteral("K")};
    return {QStringLiteral("DX(m)"), QStringLiteral("DY(m)"), QStringLiteral("DZ(m)"), QString::fromUtf8("ω(″)"),
            QString::fromUtf8("κ(″)"), QString::fromUtf8("γ(″)"), QStringLiteral("m")};
}

QString ControlPointReport::ModelName() const
{
    return m_quality.GetModel() == ControlPointQuality::FourParameters ? tr("four-parameter (plane similarity)")
                                                                       : tr("seven-parameter (spatial similarity)");
}

QStringList ControlPointReport::Verdicts() const
{
    QStringList lines;
    for (const ControlPointQuality::Point& p : m_quality.Points()) {
        if (!p.flagged)
            continue;
        lines << tr("Point %1 holds a gross error in %2: w = %3 exceeds the critical value; check its number and "
                    "coordinates, or leave it out (robust weight %4).")
                     .arg(p.id, p.flaggedInHeight ? tr("height") : tr("plane"), fixed(p.flaggedW, 2),
                          fixed(p.robustWeight, 2));
    }
    if (lines.isEmpty() && m_quality.HasSnooping())
        lines << tr("No point is named as a gross error.");
    return lines;
}

QString ControlPointReport::Text() const
{
    const ControlPointQuality& q = m_quality;
    const bool seven = q.GetModel() == ControlPointQuality::SevenParameters;
    QString t;
    t += tr("Control-point quality report") + '\n';
    t += tr("Model: %1").arg(ModelName()) + '\n';
    t += tr("Source: %1").arg(m_source) + '\n';
    t += tr("Target: %1").arg(m_target) + '\n';
    if (!q.IsValid()) {
        for (const QString& note : q.Notes())
            t += note + '\n';
        return t;
    }
    t += tr("Points: %1, observations: %2, parameters: %3, degrees of freedom: %4")
             .arg(q.Points().size())
             .arg(q.ObservationCount())
             .arg(q.ParameterCount())
             .arg(q.DegreesOfFreedom())
         + '\n';
    if (q.HasSigma0())
        t += tr("sigma0 = %1 m (%2 degrees of freedom)").arg(fixed(q.Sigma0(), 4)).arg(q.DegreesOfFreedom()) + '\n';
    t += '\n' + tr("Parameter") + '\t' + tr("Least squares") + '\t' + tr("Std. dev.") + '\t' + tr("Robust") + '\n';
    const QStringList names = ParameterNames();
    for (int i = 0; i < names.size(); ++i) {
        const int d = i + 1 == names.size() ? 12 : 6;
        t += names[i] + '\t' + fixed(q.Parameters()[i], d) + '\t'
             + (q.HasSigma0() ? fixed(q.StandardDeviations()[i], d) : QStringLiteral("-")) + '\t'
             + (q.HasRobust() ? fixed(q.RobustParameters()[i], d) : QStringLiteral("-")) + '\n';
    }
    if (q.HasSigma0()) {
        t += '\n' + tr("Correlations") + '\n';
        for (int i = 0; i < names.size(); ++i) {
            t += names[i];
            for (int j = 0; j < names.size(); ++j)
                t += '\t' + fixed(q.Correlation(i, j), 2);
            t += '\n';
        }
    }
    t += '\n';
    if (q.HasSnooping()) {
        t += tr("w-test: significance %1 for all points together, %2 per observation; critical |w| %3 in plane")
                 .arg(ControlPointQuality::FamilyAlpha)
                 .arg(q.ObservationAlpha(), 0, 'g', 3)
                 .arg(fixed(q.CriticalPlane(), 2));
        if (seven)
            t += tr(", %1 in height").arg(fixed(q.CriticalHeight(), 2));
        t += '\n';
    }
    if (q.HasRobust())
        t += tr("Robust fit: IGG III, k0 = %1, k1 = %2, %3 iterations")
                 .arg(q.K0())
                 .arg(q.K1())
                 .arg(q.RobustIterations())
             + '\n';
    t += '\n' + tr("Point") + '\t' + tr("North") + '\t' + tr("East") + '\t' + (seven ? tr("Up") + '\t' : QString())
         + tr("Plane") + '\t' + (seven ? tr("Height") + '\t' : QString()) + tr("Check plane") + '\t'
         + (seven ? tr("Check height") + '\t' : QString()) + tr("w plane") + '\t'
         + (seven ? tr("w height") + '\t' : QString()) + tr("Weight") + '\t' + tr("Flag") + '\n';
    for (const ControlPointQuality::Point& p : q.Points()) {
        const QString none = QStringLiteral("-");
        t += p.id + '\t' + fixed(p.vNorth, 3) + '\t' + fixed(p.vEast, 3) + '\t'
             + (seven ? fixed(p.vUp, 3) + '\t' : QString()) + fixed(p.plane, 3) + '\t'
             + (seven ? fixed(p.height, 3) + '\t' : QString())
             + (p.checkAvailable ? fixed(p.checkPlane, 3) : none) + '\t'
             + (seven ? (p.checkAvailable ? fixed(p.checkHeight, 3) : none) + '\t' : QString())
             + (p.wAvailable ? fixed(p.wPlane, 2) : none) + '\t'
             + (seven ? (p.wAvailable ? fixed(p.wHeight, 2) : none) + '\t' : QString())
             + (q.HasRobust() ? fixed(p.robustWeight, 2) : none) + '\t' + (p.flagged ? tr("gross error") : QString())
             + '\n';
    }
    const QStringList verdicts = Verdicts();
    if (!verdicts.isEmpty())
        t += '\n' + verdicts.join('\n') + '\n';
    if (!q.Notes().isEmpty())
        t += '\n' + q.Notes().join('\n') + '\n';
    return t;
}

QJsonObject ControlPointReport::Json(const QString& resultText) const
{
    const ControlPointQuality& q = m_quality;
    const bool seven = q.GetModel() == ControlPointQuality::SevenParameters;
    QJsonObject o;
    o["model"] = seven ? "seven" : "four";
    o["source"] = m_source;
    o["target"] = m_target;
    o["result"] = resultText;
    o["valid"] = q.IsValid();
    o["observations"] = q.ObservationCount();
    o["degreesOfFreedom"] = q.IsValid() ? QJsonValue(q.DegreesOfFreedom()) : QJsonValue();
    o["sigma0"] = q.HasSigma0() ? QJsonValue(q.Sigma0()) : QJsonValue();
    QJsonArray parameters, correlation;
    const QStringList names = ParameterNames();
    for (int i = 0; q.IsValid() && i < names.size(); ++i) {
        QJsonObject p;
        p["name"] = names[i];
        p["value"] = q.Parameters()[i];
        p["stdDev"] = q.HasSigma0() ? QJsonValue(q.StandardDeviations()[i]) : QJsonValue();
        p["robust"] = q.HasRobust() ? QJsonValue(q.RobustParameters()[i]) : QJsonValue();
        parameters << p;
        QJsonArray row;
        for (int j = 0; q.HasSigma0() && j < names.size(); ++j)
            row << q.Correlation(i, j);
        if (q.HasSigma0())
            correlation << row;
    }
    o["parameters"] = parameters;
    o["correlation"] = correlation;
    if (q.HasSnooping()) {
        QJsonObject w;
        w["significance"] = ControlPointQuality::FamilyAlpha;
        w["observationSignificance"] = q.ObservationAlpha();
        w["criticalPlane"] = q.CriticalPlane();
        if (seven)
            w["criticalHeight"] = q.CriticalHeight();
        o["wTest"] = w;
    } else {
        o["wTest"] = QJsonValue();
    }
    if (q.HasRobust()) {
        QJsonObject r;
        r["method"] = "IGG III";
        r["k0"] = q.K0();
        r["k1"] = q.K1();
        r["iterations"] = q.RobustIterations();
        o["robust"] = r;
    } else {
        o["robust"] = QJsonValue();
    }
    QJsonArray points;
    for (const ControlPointQuality::Point& p : q.Points()) {
        QJsonObject j;
        j["id"] = idValue(p.id);
        j["flagged"] = p.flagged;
        j["east"] = p.east;
        j["north"] = p.north;
        QJsonObject v{{"north", p.vNorth}, {"east", p.vEast}, {"plane", p.plane}};
        if (seven)
            v["up"] = p.vUp;
        j["residual"] = v;
        QJsonObject c{{"plane", p.checkPlane}};
        if (seven)
            c["height"] = p.checkHeight;
        j["check"] = p.checkAvailable ? QJsonValue(c) : QJsonValue();
        QJsonObject w{{"plane", p.wPlane}};
        if (seven)
            w["height"] = p.wHeight;
        j["w"] = p.wAvailable ? QJsonValue(w) : QJsonValue();
        j["robustWeight"] = q.HasRobust() ? QJsonValue(p.robustWeight) : QJsonValue();
        if (p.flagged)
            j["flaggedIn"] = p.flaggedInHeight ? "height" : "plane";
        points << j;
    }
    o["points"] = points;
    o["verdicts"] = QJsonArray::fromStringList(Verdicts());
    o["notes"] = QJsonArray::fromStringList(q.Notes());
    return o;
}

bool ControlPointReport::WritePdf(const QString& path, QString* error) const
{
    OutputFile out(path);
    if (!out.Open(error))
        return false;
    {
        QPdfWriter writer(out.Device());
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(72);
        writer.setTitle(tr("Control-point quality report"));
        QPainter painter;
        if (!painter.begin(&writer)) {
            *error = tr("cannot write the PDF \"%1\"").arg(path);
            out.Cancel();
            return false;
        }
        Paint(painter, writer.pageLayout().fullRect(QPageLayout::Point).size(),
              [&writer] { return writer.newPage(); });
        painter.end();
    }
    return out.Commit(error);
}

void ControlPointReport::Paint(QPainter& painter, const QSizeF& page, const std::function<bool()>& newPage) const
{
    const ControlPointQuality& q = m_quality;
    const double width = page.width() - 2 * kMargin;
    double y = kMargin;
    QFont font = painter.font();
    font.setFamily(QStringLiteral("Sans"));
    auto setFont = [&](double pixels, bool bold) {
        font.setPixelSize(int(pixels));
        font.setBold(bold);
        painter.setFont(font);
    };
    auto room = [&](double height) {
        if (y + height <= page.height() - kMargin)
            return true;
        if (!newPage())
            return false;
        y = kMargin;
        return true;
    };
    // Tab-separated text as a table row, the columns spread evenly.
    auto row = [&](const QString& line, double height) {
        const QStringList cells = line.split('\t');
        const double w = width / cells.size();
        for (int i = 0; i < cells.size(); ++i)
            painter.drawText(QRectF(kMargin + i * w, y, w, height), Qt::AlignLeft | Qt::AlignVCenter, cells[i]);
        y += height;
    };

    painter.setPen(Qt::black);
    setFont(16, true);
    painter.drawText(QRectF(kMargin, y, width, 22), Qt::AlignLeft, tr("Control-point quality report"));
    y += 28;
    setFont(9, false);
    // The text report, drawn line by line; the point table gets a smaller font.
    const QStringList lines = Text().split('\n').mid(1);
    bool inTable = false;
    for (const QString& line : lines) {
        if (line.startsWith(tr("Point") + '\t')) {
            inTable = true;
            setFont(8, true);
        } else if (inTable && !line.contains('\t')) {
            inTable = false;
            setFont(9, false);
        } else if (inTable) {
            setFont(8, false);
        }
        if (line.contains('\t')) {
            if (!room(12))
                return;
            row(line, 12);
            continue;
        }
        const double height =
            std::max(12.0, painter.boundingRect(QRectF(kMargin, y, width, 1000), Qt::TextWordWrap, line).height());
        if (!room(height))
            return;
        painter.drawText(QRectF(kMargin, y, width, height), Qt::TextWordWrap | Qt::AlignVCenter, line);
        y += height;
    }
    if (!q.IsValid() || q.Points().isEmpty())
        return;

    // The residual vectors at the points' positions.
    // The plot takes what is left of the page, or a new page below 180 units.
    double plotSize = std::min({width - 160, 330.0, page.height() - kMargin - y - 40});
    if (plotSize < 180) {
        if (!room(page.height()))
            return;
        plotSize = std::min(width - 160, 330.0);
    }
    y += 10;
    setFont(10, true);
    painter.drawText(QRectF(kMargin, y, width, 14), Qt::AlignLeft, tr("Residual vectors (plane)"));
    y += 18;
    const QRectF plot(kMargin, y, plotSize, plotSize);
    painter.setPen(QPen(Qt::gray, 0.5));
    painter.drawRect(plot);
    double minE = 1e300, maxE = -1e300, minN = 1e300, maxN = -1e300, maxV = 0;
    for (const ControlPointQuality::Point& p : q.Points()) {
        minE = std::min(minE, p.east), maxE = std::max(maxE, p.east);
        minN = std::min(minN, p.north), maxN = std::max(maxN, p.north);
        maxV = std::max(maxV, p.plane);
    }
    const double extent = std::max({maxE - minE, maxN - minN, 1.0});
    const double scale = (plotSize - 40) / extent;  // page units per metre of ground
    const QPointF centre(plot.center());
    auto at = [&](double east, double north) {
        return QPointF(centre.x() + (east - (minE + maxE) / 2) * scale, centre.y() - (north - (minN + maxN) / 2) * scale);
    };
    // Residuals drawn so that the largest is a tenth of the plot.
    const double vScale = maxV > 0 ? plotSize / 10 / maxV : 0;
    setFont(7, false);
    for (const ControlPointQuality::Point& p : q.Points()) {
        const QPointF from = at(p.east, p.north);
        const QPointF to = from + QPointF(p.vEast * vScale, -p.vNorth * vScale);
        painter.setPen(QPen(p.flagged ? Qt::red : Qt::darkBlue, 1.2));
        painter.drawLine(from, to);
        painter.setBrush(p.flagged ? Qt::red : Qt::black);
        painter.drawEllipse(from, 1.8, 1.8);
        painter.setPen(p.flagged ? Qt::red : Qt::black);
        painter.drawText(from + QPointF(3, -3), p.id);
    }
    // Scale bars: ground distance and residual length.
    painter.setPen(QPen(Qt::black, 1));
    const double ground = niceBelow(extent / 3);
    const double vBar = vScale > 0 ? niceBelow(plotSize / 6 / vScale) : 0;
    double bx = plot.right() + 14, by = plot.top() + 20;
    for (const auto& bar : {std::make_pair(ground * scale, tr("Ground: %1").arg(metres(ground))),
                            std::make_pair(vBar * vScale, tr("Residual: %1").arg(metres(vBar)))}) {
        if (!(bar.first > 0))
            continue;
        painter.drawLine(QPointF(bx, by), QPointF(bx + bar.first, by));
        painter.drawLine(QPointF(bx, by - 3), QPointF(bx, by + 3));
        painter.drawLine(QPointF(bx + bar.first, by - 3), QPointF(bx + bar.first, by + 3));
        painter.drawText(QPointF(bx, by - 5), bar.second);
        by += 30;
    }
    y += plotSize + 10;
}
