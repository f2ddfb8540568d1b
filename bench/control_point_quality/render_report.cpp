// Renders the first page of the quality report of a four-parameter
// control-point file to a PNG, for the documentation:
//
//   render_control_point_report FILE OUT.png [SOURCE TARGET]

#include "models/ControlPointCalculation.h"
#include "models/ControlPointFile.h"
#include "models/ControlPointReport.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        std::fprintf(stderr, "usage: render_control_point_report FILE OUT.png [SOURCE TARGET]\n");
        return 2;
    }
    ControlPointFile file(ControlPointFile::FourParameters);
    if (!file.Read(args[1]) || file.Points().isEmpty()) {
        std::fprintf(stderr, "cannot read control points from %s\n", qPrintable(args[1]));
        return 2;
    }
    QList<QStringList> points;
    QStringList ids;
    for (const ControlPointFile::Point& p : file.Points()) {
        points << p.cells.mid(0, 4);
        ids << p.number;
    }
    ControlPointCalculation calculation;
    if (calculation.Calculate4(points) != ControlPointCalculation::Succeeded) {
        std::fprintf(stderr, "no model fits the points\n");
        return 1;
    }
    const ControlPointReport report(calculation.Quality(ids), args.value(3), args.value(4));
    const QSizeF page(595, 842);  // A4 in points
    const double zoom = 2;
    QImage image(int(page.width() * zoom), int(page.height() * zoom), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(zoom, zoom);
    report.Paint(painter, page, [] { return false; });
    painter.end();
    return image.save(args[2]) ? 0 : 1;
}
