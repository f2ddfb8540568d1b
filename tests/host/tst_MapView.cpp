#include "LayerPanel.h"
#include "MainWindow.h"
#include "MapFixtures.h"
#include "MapView.h"
#include "support/ProjReference.h"
#include "support/TestRegistry.h"

#include "KivCarto/Map.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

namespace {

const QString kDirTemplate = QDir::tempPath() + QStringLiteral("/kiv view.视图-XXXXXX");

} // namespace

/// The map in the main window: what the layer panel does to the picture,
/// zooming, panning and the cursor's coordinates.
class TestMapView : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void panelTogglesReordersAndRemoves();
    void zoomToLayerShowsItWhole();
    void dragPansAndWheelZooms();
    void statusBarShowsCursorCoordinates();
    void unreadableFileIsRefusedByName();

private:
    // Map (x, y) on the map view's own picture.
    QRgb pixelAt(double x, double y) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<MainWindow> m_window;
};

void TestMapView::init()
{
    m_dir = std::make_unique<QTemporaryDir>(kDirTemplate);
    // Two overlapping squares in UTM zone 50N: "lower" added first, so drawn
    // first; "upper" over it.
    QVERIFY(MapFixtures::writeShape(m_dir->filePath(QStringLiteral("lower.shp")), 32650, wkbPolygon,
                                    {QStringLiteral("POLYGON((500000 4000000,500100 4000000,500100 4000100,"
                                                    "500000 4000100,500000 4000000))")}));
    QVERIFY(MapFixtures::writeShape(m_dir->filePath(QStringLiteral("upper.shp")), 32650, wkbPolygon,
                                    {QStringLiteral("POLYGON((500050 4000050,500150 4000050,500150 4000150,"
                                                    "500050 4000150,500050 4000050))")}));
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QString error;
    QVERIFY2(m_window->addDataFile(m_dir->filePath(QStringLiteral("lower.shp")), &error), qPrintable(error));
    QVERIFY2(m_window->addDataFile(m_dir->filePath(QStringLiteral("upper.shp")), &error), qPrintable(error));
}

void TestMapView::cleanup()
{
    m_window.reset();
    m_dir.reset();
}

QRgb TestMapView::pixelAt(double x, double y) const
{
    MapView* view = m_window->mapView();
    const QImage image = view->grab().toImage();
    const QRectF e = view->extent();
    const double res = e.width() / view->width();
    return image.pixel(static_cast<int>((x - e.left()) / res), static_cast<int>((e.bottom() - y) / res));
}

void TestMapView::panelTogglesReordersAndRemoves()
{
    LayerPanel* panel = m_window->layerPanel();
    MapView* view = m_window->mapView();
    auto map = m_window->GetCurrentMap();
    const QRgb lower = view->renderer().layerColor(map->GetLayer(0).get()).rgba();
    const QRgb upper = view->renderer().layerColor(map->GetLayer(1).get()).rgba();
    QVERIFY(lower != upper);
    // The first layer showed the whole map at once.
    QVERIFY(view->extent().contains(QRectF(500000, 4000000, 100, 100)));
    QVERIFY(view->zoomToAll());
    QCOMPARE(panel->count(), 2);
    QCOMPARE(panel->item(0)->text(), QStringLiteral("upper"));
    QCOMPARE(pixelAt(500075, 4000075), upper);
    QCOMPARE(pixelAt(500025, 4000025), lower);

    // Hiding the upper layer shows the lower one where they overlap.
    panel->item(0)->setCheckState(Qt::Unchecked);
    QVERIFY(!map->GetLayer(1)->IsVisible());
    QCOMPARE(pixelAt(500075, 4000075), lower);
    QCOMPARE(pixelAt(500125, 4000125), qRgb(255, 255, 255));
    panel->item(0)->setCheckState(Qt::Checked);
    QCOMPARE(pixelAt(500075, 4000075), upper);

    // Moving the upper layer down puts it under the other one.
    panel->selectLayer(1);
    QVERIFY(!panel->moveUpAction()->isEnabled());
    panel->moveDownAction()->trigger();
    QCOMPARE(map->GetLayer(0)->GetName(), QStringLiteral("upper"));
    QCOMPARE(panel->item(0)->text(), QStringLiteral("lower"));
    QCOMPARE(panel->selectedLayer(), 0);
    QCOMPARE(pixelAt(500075, 4000075), lower);
    panel->moveUpAction()->trigger();
    QCOMPARE(map->GetLayer(1)->GetName(), QStringLiteral("upper"));
    QCOMPARE(pixelAt(500075, 4000075), upper);

    // Removing it leaves the lower one alone.
    panel->selectLayer(1);
    panel->removeAction()->trigger();
    QCOMPARE(map->GetLayerCount(), 1);
    QCOMPARE(panel->count(), 1);
    QCOMPARE(map->GetLayer(0)->GetName(), QStringLiteral("lower"));
    QCOMPARE(pixelAt(500075, 4000075), lower);
    QCOMPARE(pixelAt(500125, 4000125), qRgb(255, 255, 255));
    panel->selectLayer(0);
    panel->removeAction()->trigger();
    QCOMPARE(map->GetLayerCount(), 0);
    QVERIFY(!panel->removeAction()->isEnabled());
    QVERIFY(view->extent().isNull());
}

void TestMapView::zoomToLayerShowsItWhole()
{
    MapView* view = m_window->mapView();
    LayerPanel* panel = m_window->layerPanel();
    view->setExtent(QRectF(0, 0, 10, 10));
    panel->selectLayer(1);
    panel->zoomToLayerAction()->trigger();
    const QRectF e = view->extent();
    QVERIFY(e.contains(QRectF(500050, 4000050, 100, 100)));
    QCOMPARE(e.center(), QPointF(500100, 4000100));
    // Tight: the layer fills the view's shorter side but for a small margin.
    QVERIFY(std::min(e.width(), e.height()) < 110);

    QVERIFY(m_window->findChild<QAction*>(QStringLiteral("actionZoomToAll")));
    m_window->findChild<QAction*>(QStringLiteral("actionZoomToAll"))->trigger();
    QVERIFY(view->extent().contains(QRectF(500000, 4000000, 150, 150)));
    QCOMPARE(view->extent().center(), QPointF(500075, 4000075));
}

void TestMapView::dragPansAndWheelZooms()
{
    MapView* view = m_window->mapView();
    const QRectF before = view->extent();
    const double res = before.width() / view->width();
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(100, 100), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent move(QEvent::MouseMove, QPointF(150, 120), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(150, 120), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(view, &press);
    QApplication::sendEvent(view, &move);
    QCOMPARE(view->extent(), before);  // the picture moves, the map only when let go
    QApplication::sendEvent(view, &release);
    const QRectF after = view->extent();
    QVERIFY(qFuzzyCompare(after.left(), before.left() - 50 * res));
    QVERIFY(qFuzzyCompare(after.top(), before.top() + 20 * res));

    // One wheel step closer keeps the point under the cursor in place.
    const QPointF cursor(80, 60);
    const QPointF anchor = view->toMap(cursor);
    QWheelEvent wheel(cursor, QPointF(view->mapToGlobal(cursor.toPoint())), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &wheel);
    QVERIFY(qFuzzyCompare(view->extent().width(), after.width() / 1.25));
    QVERIFY(std::abs(view->toMap(cursor).x() - anchor.x()) < 1e-6);
    QVERIFY(std::abs(view->toMap(cursor).y() - anchor.y()) < 1e-6);
}

void TestMapView::statusBarShowsCursorCoordinates()
{
    MapView* view = m_window->mapView();
    const QPointF pixel(37, 41);
    const QPointF point = view->toMap(pixel);
    QMouseEvent move(QEvent::MouseMove, pixel, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(view, &move);
    auto* label = m_window->findChild<QLabel*>(QStringLiteral("cursorCoordinates"));
    QVERIFY(label);
    const QRegularExpression pattern(QStringLiteral("X: (\\S+)  Y: (\\S+)  Lon: (\\S+)  Lat: (\\S+)"));
    const QRegularExpressionMatch m = pattern.match(label->text());
    QVERIFY2(m.hasMatch(), qPrintable(label->text()));
    QVERIFY(std::abs(m.captured(1).toDouble() - point.x()) < 1e-3);
    QVERIFY(std::abs(m.captured(2).toDouble() - point.y()) < 1e-3);
    double lon = point.x(), lat = point.y(), z = 0;
    QVERIFY(KivTest::projTransform(QStringLiteral("EPSG:32650 -> EPSG:4326"), lon, lat, z));
    QVERIFY(std::abs(m.captured(3).toDouble() - lon) < 2e-6);
    QVERIFY(std::abs(m.captured(4).toDouble() - lat) < 2e-6);
}

void TestMapView::unreadableFileIsRefusedByName()
{
    const QString path = m_dir->filePath(QStringLiteral("not a raster.tif"));
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("plain text\n");
    f.close();
    QString error;
    QVERIFY(!m_window->addDataFile(path, &error));
    QVERIFY2(error.contains(path), qPrintable(error));
    QCOMPARE(m_window->GetCurrentMap()->GetLayerCount(), 2);
    QCOMPARE(m_window->layerPanel()->count(), 2);
}

KIV_TEST_CLASS(TestMapView)
#include "tst_MapView.moc"
