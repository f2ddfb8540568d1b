#pragma once
// Control points made with PROJ for the calculation tests, and small helpers
// to drive dialogs by object name. Header only: the command-line tests use it
// too.

#include "support/ProjReference.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QTableWidget>
#include <QVector>

#include <algorithm>
#include <array>
#include <cmath>

namespace CalcTest {

using Point3 = std::array<double, 3>;

/// Runs `points` through the PROJ operation `definition` (forward).
inline QVector<Point3> projTransform(const QString& definition, QVector<Point3> points)
{
    const KivTest::ProjReference op(definition);
    for (Point3& p : points)
        op.transform(p[0], p[1], p[2]);
    return points;
}

/// Geodetic positions (longitude, latitude in radians, height) spread over
/// the 3-degree zone of 117°E, about 300 km across, and their Beijing 1954
/// Gauss-Krüger grid coordinates (X north, Y east, H).
inline void zonePoints(int count, QVector<Point3>* positions, QVector<Point3>* grid)
{
    for (int i = 0; i < count; ++i) {
        const double golden = i * 0.6180339887;
        const double lon = 115.7 + 2.6 * (golden - std::floor(golden));
        const double lat = 38.2 + 2.6 * i / std::max(1, count - 1);
        positions->push_back({lon * M_PI / 180.0, lat * M_PI / 180.0, 40.0 + 37.0 * i});
    }
    *grid = projTransform("+proj=tmerc +lat_0=0 +lon_0=117 +k=1 +x_0=500000 +y_0=0 +ellps=krass", *positions);
    for (Point3& p : *grid)
        std::swap(p[0], p[1]);
}

inline QString fixed(double v, int decimals)
{
    return QString::number(v, 'f', decimals);
}

/// Seven-parameter control points: source Beijing 1954 GK CM 117°E plane
/// (X, Y, H), target WGS 84 geographic (B, L in decimal degrees, H), the
/// target made by PROJ's Helmert with `params` (DX, DY, DZ m; ω, κ, γ ″; m)
/// in the coordinate-frame convention.
inline QList<QStringList> sevenParameterPoints(const double params[7], int count = 9)
{
    QVector<Point3> positions, grid;
    zonePoints(count, &positions, &grid);
    const QVector<Point3> wgs = projTransform(
        QStringLiteral("+proj=pipeline +step +proj=cart +ellps=krass +step +proj=helmert +x=%1 +y=%2 +z=%3 "
                       "+rx=%4 +ry=%5 +rz=%6 +s=%7 +convention=coordinate_frame +step +inv +proj=cart +ellps=WGS84")
            .arg(params[0], 0, 'f', 6).arg(params[1], 0, 'f', 6).arg(params[2], 0, 'f', 6)
            .arg(params[3], 0, 'f', 6).arg(params[4], 0, 'f', 6).arg(params[5], 0, 'f', 6)
            .arg(params[6] * 1e6, 0, 'f', 9),
        positions);
    QList<QStringList> rows;
    for (int i = 0; i < count; ++i)
        rows << QStringList{fixed(grid[i][0], 4), fixed(grid[i][1], 4), fixed(grid[i][2], 4),
                            fixed(wgs[i][1] * 180.0 / M_PI, 10), fixed(wgs[i][0] * 180.0 / M_PI, 10), fixed(wgs[i][2], 4)};
    return rows;
}

/// Four-parameter control points between two plane grids: the Beijing 1954
/// grid and its image under PROJ's affine operation built from `params`
/// (DX, DY m; T in degrees; K), X2 = DX + K (X cos T - Y sin T),
/// Y2 = DY + K (X sin T + Y cos T).
inline QList<QStringList> fourParameterPoints(const double params[4], int count = 6)
{
    QVector<Point3> positions, grid;
    zonePoints(count, &positions, &grid);
    const double t = params[2] * M_PI / 180.0, k = params[3];
    const QVector<Point3> target = projTransform(
        QStringLiteral("+proj=affine +xoff=%1 +yoff=%2 +s11=%3 +s12=%4 +s21=%5 +s22=%6")
            .arg(params[0], 0, 'f', 6).arg(params[1], 0, 'f', 6).arg(k * std::cos(t), 0, 'g', 17)
            .arg(-k * std::sin(t), 0, 'g', 17).arg(k * std::sin(t), 0, 'g', 17).arg(k * std::cos(t), 0, 'g', 17),
        grid);
    QList<QStringList> rows;
    for (int i = 0; i < count; ++i)
        rows << QStringList{fixed(grid[i][0], 4), fixed(grid[i][1], 4), fixed(target[i][0], 4), fixed(target[i][1], 4)};
    return rows;
}

/// The values of a result text "DX(m)=…\r\n…", in order.
inline QVector<double> resultValues(const QString& text)
{
    QVector<double> values;
    for (const QString& line : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
        values << line.section(QLatin1Char('='), 1).toDouble();
    return values;
}

template <class W>
W* child(QObject* parent, const char* name)
{
    W* w = parent->findChild<W*>(QString::fromLatin1(name));
    if (!w)
        qFatal("no child %s", name);
    return w;
}

inline void click(QObject* dialog, const char* button)
{
    child<QPushButton>(dialog, button)->click();
}

/// Types `texts` into the line edits named `edits` and presses `addButton`.
inline void addPoint(QDialog& dialog, const QStringList& edits, const QStringList& texts, const char* addButton)
{
    for (int i = 0; i < edits.size(); ++i)
        child<QLineEdit>(&dialog, edits.at(i).toLatin1().constData())->setText(texts.value(i));
    click(&dialog, addButton);
}

inline QString cell(QDialog& dialog, int row, int column)
{
    const QTableWidgetItem* item = child<QTableWidget>(&dialog, "tableWidget")->item(row, column);
    return item ? item->text() : QStringLiteral("<none>");
}

inline void setChecked(QDialog& dialog, int row, bool checked)
{
    child<QTableWidget>(&dialog, "tableWidget")->item(row, 0)->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
}

} // namespace CalcTest
