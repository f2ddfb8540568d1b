// The point conversion dialog, driven offscreen through its widgets. Expected
// answers come from PROJ pipelines spelled out here (projection, geocentric
// conversion, coordinate-frame Helmert, plane similarity) or from the
// command-line tool run in-process.

#include "spatialref/PointCoordsTransformDlg.h"

#include "models/ModelStore.h"

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "../../cli/CliRun.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QRadioButton>
#include <QRegExpValidator>
#include <QRegularExpression>
#include <QTest>

#include <proj.h>

#include <cmath>

using KivTest::ModalDriver;

namespace {

const QString kTmerc117 = QStringLiteral("+proj=tmerc +lat_0=0 +lon_0=117 +k=1 +x_0=500000 +y_0=0 +ellps=krass");
const QString kTmerc120 = QStringLiteral("+proj=tmerc +lat_0=0 +lon_0=120 +k=1 +x_0=500000 +y_0=0 +ellps=krass");
const QString kUtm50 = QStringLiteral("+proj=utm +zone=50 +ellps=WGS84");
const QString kToRad = QStringLiteral("+proj=unitconvert +xy_in=deg +xy_out=rad");
const QString kToDeg = QStringLiteral("+proj=unitconvert +xy_in=rad +xy_out=deg");
const QString kCartKrass = QStringLiteral("+proj=cart +ellps=krass");
const QString kCartWgs = QStringLiteral("+proj=cart +ellps=WGS84");

// Beijing 1954 -> WGS 84, rotations large enough that a sign or axis mix-up
// shows by metres; and a plane model between two grids.
const QList<double> kSeven{15.8, -154.4, -82.3, 0.52, -1.31, 2.17, 3.5e-6};
const QString kHelmert = QStringLiteral("+proj=helmert +x=15.8 +y=-154.4 +z=-82.3 +rx=0.52 +ry=-1.31 +rz=2.17 "
                                        "+s=3.5 +convention=coordinate_frame");
const QList<double> kFour{-35.2, 120.7, 0.0125, 1.0000123};
const QString kSevenName = QStringLiteral("BJ54-WGS84");
const QString kFourName = QStringLiteral("site grid");

// The test point, as typed in each form, and as PROJ takes it (east, north).
enum Input { Plane, PlaneWithZone, Dms, Decimal };
const QStringList kTyped[4] = {{"4419000.123", "447000.456"},
                               {"4419000.123", "39447000.456"},
                               {"39°54′26.123456″", "116°23′44.654321″"},
                               {"39.907256515556", "116.395737311389"}};
const double kPoint[4][2] = {{447000.456, 4419000.123},
                             {447000.456, 4419000.123},
                             {116.0 + 23.0 / 60 + 44.654321 / 3600, 39.0 + 54.0 / 60 + 26.123456 / 3600},
                             {116.395737311389, 39.907256515556}};

QString pipeline(const QStringList& steps)
{
    return QStringLiteral("+proj=pipeline +step ") + steps.join(QStringLiteral(" +step "));
}

QString inv(const QString& step)
{
    return QStringLiteral("+inv ") + step;
}

/// The plane similarity in PROJ's order x = east (Y), y = north (X).
QString affine(const QList<double>& p)
{
    const double t = p[2] * M_PI / 180.0, k = p[3];
    return QStringLiteral("+proj=affine +xoff=%1 +yoff=%2 +s11=%3 +s12=%4 +s21=%5 +s22=%6")
        .arg(p[1], 0, 'g', 17).arg(p[0], 0, 'g', 17)
        .arg(k * std::cos(t), 0, 'g', 17).arg(k * std::sin(t), 0, 'g', 17)
        .arg(-k * std::sin(t), 0, 'g', 17).arg(k * std::cos(t), 0, 'g', 17);
}

/// Runs `definition` on one point in place (x east/longitude, y north/latitude).
bool throughProj(const QString& definition, double& x, double& y, double& z)
{
    PJ_CONTEXT* ctx = proj_context_create();
    PJ* op = proj_create(ctx, definition.toUtf8().constData());
    bool ok = false;
    if (op) {
        const PJ_COORD c = proj_trans(op, PJ_FWD, proj_coord(x, y, z, 0));
        ok = c.xyzt.x != HUGE_VAL;
        x = c.xyzt.x;
        y = c.xyzt.y;
        z = c.xyzt.z;
        proj_destroy(op);
    }
    proj_context_destroy(ctx);
    return ok;
}

/// Reads a result: "D°M′S.ssssss″" when `dms`, else fixed-point with six decimals.
bool parseResult(const QString& text, bool dms, double* value)
{
    static const QRegularExpression angle(QStringLiteral("^(-?)(\\d+)°(\\d+)′(\\d+\\.\\d{6})″$"));
    static const QRegularExpression fixed(QStringLiteral("^-?\\d+\\.\\d{6}$"));
    if (!dms) {
        *value = text.toDouble();
        return fixed.match(text).hasMatch();
    }
    const QRegularExpressionMatch m = angle.match(text);
    const double v = m.captured(2).toDouble() + m.captured(3).toDouble() / 60 + m.captured(4).toDouble() / 3600;
    *value = m.captured(1).isEmpty() ? v : -v;
    return m.hasMatch();
}

void storeModels(bool seven, bool four)
{
    if (seven)
        QCOMPARE(ModelStore::Add(ModelStore::Params7, {kSevenName, "Beijing 1954", "WGS 84", kSeven}),
                 ModelStore::Written);
    if (four)
        QCOMPARE(ModelStore::Add(ModelStore::Params4, {kFourName, "zone 39", "site", kFour}), ModelStore::Written);
}

/// The dialog and a driver for the windows it opens.
struct Fixture
{
    ModalDriver driver;
    PointCoordsTransformDlg dlg{nullptr};

    template <class T = QWidget>
    T* widget(const char* name)
    {
        T* w = dlg.findChild<T*>(QString::fromLatin1(name));
        if (!w)
            qFatal("no widget %s", name);
        return w;
    }
    QLineEdit* edit(const char* name) { return widget<QLineEdit>(name); }
    QString text(const char* name) { return edit(name)->text(); }
    void click(const char* name) { widget<QAbstractButton>(name)->click(); }
    bool choose(const char* button, const QString& code)
    {
        KivTest::answerSelector(driver, code);
        click(button);
        return driver.verify();
    }
    bool chooseBoth(const QString& from, const QString& to)
    {
        return choose("pushButton_Original", from) && choose("pushButton_Target", to);
    }
    void type(const QStringList& blh)
    {
        const char* names[3] = {"lineEdit_OrigB", "lineEdit_OrigL", "lineEdit_OrigH"};
        for (int i = 0; i < blh.size(); ++i)
            edit(names[i])->setText(blh.at(i));
    }
    QStringList results() { return {text("lineEdit_TargetB"), text("lineEdit_TargetL"), text("lineEdit_TargetH")}; }
    QStringList comboItems()
    {
        QStringList items;
        for (int i = 0; i < widget<QComboBox>("comboBox_7Parameter")->count(); ++i)
            items << widget<QComboBox>("comboBox_7Parameter")->itemText(i);
        return items;
    }
};

} // namespace

class TestPointCoordsTransformDlg : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void formCaptionsAndSlots();
    void choosingSystemsSetsTheForm_data();
    void choosingSystemsSetsTheForm();
    void sameSystemIsRefusedAndTheOldOneKept_data();
    void sameSystemIsRefusedAndTheOldOneKept();
    void conversionsMatchProj_data();
    void conversionsMatchProj();
    void refusalsLeaveTheResults_data();
    void refusalsLeaveTheResults();
    void decimalAndDmsRoundTrip_data();
    void decimalAndDmsRoundTrip();
    void importAddsAModelAndRefillsTheCombo_data();
    void importAddsAModelAndRefillsTheCombo();
    void sameDigitsAsTheCommandLine_data();
    void sameDigitsAsTheCommandLine();
};

void TestPointCoordsTransformDlg::formCaptionsAndSlots()
{
    Fixture f;
    QCOMPARE(f.dlg.windowTitle(), QStringLiteral("Point Coordinate Conversion"));
    const QStringList captions{
        "label_11=Seven-parameter Conversion:", "pushButton_7Parameter=Import", "pushButton_Transform=Transform",
        "checkBox_bCode=Check if there is a code number", "label=Original Coordinate System:",
        "pushButton_Original=Select", "groupBox_2=Converted Coordinates", "radioButton=Degree",
        "radioButton_2=dd\u309Cmm′ss″", "radioButton_5=Meter", "label_6=Target Coordinate System:",
        "pushButton_Target=Select", "groupBox=Conversion Result", "radioButton_3=Degree",
        "radioButton_4=dd\u309Cmm′ss″", "radioButton_6=Meter"};
    for (const QString& c : captions) {
        QWidget* w = f.dlg.findChild<QWidget*>(c.section('=', 0, 0));
        QVERIFY2(w, qPrintable(c));
        QCOMPARE(w->property(w->inherits("QGroupBox") ? "title" : "text").toString(), c.section('=', 1));
    }
    QVERIFY(f.widget<QRadioButton>("radioButton_2")->isChecked() && f.widget<QRadioButton>("radioButton_4")->isChecked());
    for (const char* name : {"lineEdit_OrigB", "lineEdit_OrigL", "lineEdit_OrigH"}) {
        auto* validator = qobject_cast<const QRegExpValidator*>(f.edit(name)->validator());
        QVERIFY2(validator && validator->regExp().pattern() == "100|-?([0-9]*[\\.][0-9]*)", name);
    }
    QStringList slotNames;
    const QMetaObject* mo = f.dlg.metaObject();
    for (int i = mo->methodOffset(); i < mo->methodCount(); ++i) {
        if (mo->method(i).methodType() == QMetaMethod::Slot)
            slotNames << QString::fromLatin1(mo->method(i).methodSignature());
    }
    QCOMPARE(slotNames, (QStringList{"slot_Original()", "slot_Target()", "slot_ComboBox7Parameter(int)",
                                     "slot_7Parameter()", "slot_Transform()", "slot_bCode()",
                                     "OnRadioToggledTargDec(bool)", "OnRadioToggledSrcDec(bool)",
                                     "slot_SrcMeter(bool)", "slot_DesMeter(bool)"}));
}

void TestPointCoordsTransformDlg::choosingSystemsSetsTheForm_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("four");
    QTest::newRow("geographic, two bases") << "EPSG:4214" << "EPSG:4326" << false;
    QTest::newRow("geographic to projected, one base") << "EPSG:4214" << "EPSG:2436" << true;
    QTest::newRow("projected to geographic, two bases") << "EPSG:2436" << "EPSG:4326" << false;
    QTest::newRow("projected, one base") << "EPSG:2436" << "EPSG:2437" << true;
    QTest::newRow("projected, two bases") << "EPSG:2436" << "EPSG:32650" << false;
}

void TestPointCoordsTransformDlg::choosingSystemsSetsTheForm()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, four);
    storeModels(true, true);
    Fixture f;
    const bool geo[2] = {from == "EPSG:4214", to.startsWith("EPSG:4")};

    // Start from the other kind on each side, with a decimal display or the
    // code-number flag on, so that every switch is seen.
    QVERIFY(f.chooseBoth(geo[0] ? "EPSG:2435" : "EPSG:4490", geo[1] ? "EPSG:2434" : "EPSG:4610"));
    f.click(geo[0] ? "checkBox_bCode" : "radioButton");
    QCOMPARE(f.widget<QCheckBox>("checkBox_bCode")->isChecked(), geo[0]);
    if (!geo[1])
        f.click("radioButton_3");
    QVERIFY(f.chooseBoth(from, to));

    const char* names[2][8] = {
        {"lineEdit_OrigB", "lineEdit_OrigL", "lineEdit_OrigH", "label_2", "label_3", "radioButton", "radioButton_2",
         "radioButton_5"},
        {"lineEdit_TargetB", "lineEdit_TargetL", "lineEdit_TargetH", "label_7", "label_8", "radioButton_3",
         "radioButton_4", "radioButton_6"}};
    for (int side = 0; side < 2; ++side) {
        const char* const* n = names[side];
        const bool g = geo[side];
        QCOMPARE(f.widget<QLabel>(n[3])->text() + f.widget<QLabel>(n[4])->text(), QString(g ? "BL" : "XY"));
        QCOMPARE(f.widget<QRadioButton>(n[5])->isEnabled(), g);
        QCOMPARE(f.widget<QRadioButton>(n[6])->isEnabled() && f.widget<QRadioButton>(n[6])->isChecked(), g);
        QCOMPARE(f.widget<QRadioButton>(n[7])->isEnabled() && f.widget<QRadioButton>(n[7])->isChecked(), !g);
        QCOMPARE(f.text(n[0]) + f.text(n[1]) + f.text(n[2]),
                 QString(g ? "00°00′00.000000″000°00′00.000000″0" : ""));
        QCOMPARE(f.edit(n[0])->inputMask().section(';', 0, 0), QString(g ? "00°00′00.000000″" : ""));
        QCOMPARE(f.edit(n[1])->inputMask().section(';', 0, 0), QString(g ? "000°00′00.000000″" : ""));
    }
    QCOMPARE(f.widget<QCheckBox>("checkBox_bCode")->isEnabled(), !geo[0]);
    QVERIFY(!f.widget<QCheckBox>("checkBox_bCode")->isChecked());  // a geographic source cleared it
    QCOMPARE(f.widget<QLabel>("label_11")->text(), four ? "Transform 4Parameter:" : "Transform 7Parameter:");
    QCOMPARE(f.comboItems(), QStringList{four ? kFourName : kSevenName});
    const bool models = !geo[0] && !geo[1];
    QCOMPARE(f.widget<QLabel>("label_11")->isEnabled(), models);
    QCOMPARE(f.widget<QComboBox>("comboBox_7Parameter")->isEnabled(), models);
    QCOMPARE(f.widget<QPushButton>("pushButton_7Parameter")->isEnabled(), models);
}

void TestPointCoordsTransformDlg::sameSystemIsRefusedAndTheOldOneKept_data()
{
    QTest::addColumn<bool>("onSource");
    QTest::newRow("target equal to source") << false;
    QTest::newRow("source equal to target") << true;
}

void TestPointCoordsTransformDlg::sameSystemIsRefusedAndTheOldOneKept()
{
    QFETCH(bool, onSource);
    Fixture f;
    QVERIFY(f.chooseBoth("EPSG:2436", "EPSG:2437"));
    const QString names = f.text("lineEdit_Original") + f.text("lineEdit_Target");
    f.type(kTyped[Plane]);

    KivTest::answerSelector(f.driver, onSource ? "EPSG:2437" : "EPSG:2436");
    f.driver.answerMessageBox();
    f.click(onSource ? "pushButton_Original" : "pushButton_Target");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.driver.messages().size(), 1);
    QCOMPARE(f.driver.messages().at(0).title + '|' + f.driver.messages().at(0).text,
             QStringLiteral("Warning|Source Spatial Reference is same with Target!"));
    QCOMPARE(f.text("lineEdit_Original") + f.text("lineEdit_Target"), names);
    QCOMPARE(f.text("lineEdit_OrigL"), kTyped[Plane].at(1));

    // The conversion still runs from zone 117E to zone 120E.
    f.click("pushButton_Transform");
    double x = kPoint[Plane][0], y = kPoint[Plane][1], z = 0.0;
    QVERIFY(throughProj(pipeline({inv(kTmerc117), kTmerc120}), x, y, z));
    QCOMPARE(f.text("lineEdit_TargetB") + ' ' + f.text("lineEdit_TargetL"),
             QString::number(y, 'f', 6) + ' ' + QString::number(x, 'f', 6));
}

void TestPointCoordsTransformDlg::conversionsMatchProj_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<int>("model");  // the kind stored (4 or 7), 0 for none
    QTest::addColumn<int>("input");  // Input: the form typed; Decimal sets "Degree", PlaneWithZone the code flag
    QTest::addColumn<QString>("h");
    QTest::addColumn<bool>("decimalOut");
    QTest::addColumn<QString>("reference");

    const QString bj("EPSG:4214"), wgs("EPSG:4326"), cm117("EPSG:2436"), cm120("EPSG:2437"), zone39("EPSG:2415"),
        utm50("EPSG:32650");
    const QString shift = kCartKrass + " +step " + kHelmert + " +step " + inv(kCartWgs);
    const QString back = kCartWgs + " +step " + kHelmert + " +step " + inv(kCartKrass);
    QTest::newRow("geographic to projected, DMS") << bj << cm117 << 4 << int(Dms) << "12.5" << false
                                                  << pipeline({kToRad, kTmerc117});
    QTest::newRow("geographic to projected, decimal") << bj << cm120 << 0 << int(Decimal) << "12.5" << false
                                                      << pipeline({kToRad, kTmerc120});
    QTest::newRow("projected to geographic, DMS") << cm117 << bj << 0 << int(Plane) << "" << false
                                                  << pipeline({inv(kTmerc117), kToDeg});
    QTest::newRow("projected to geographic, decimal") << cm117 << bj << 0 << int(Plane) << "7" << true
                                                      << pipeline({inv(kTmerc117), kToDeg});
    QTest::newRow("projected to geographic, code number") << cm117 << bj << 0 << int(PlaneWithZone) << "7" << true
                                                          << pipeline({inv(kTmerc117), kToDeg});
    QTest::newRow("across zones, no model") << cm117 << cm120 << 0 << int(Plane) << "-3.25" << false
                                            << pipeline({inv(kTmerc117), kTmerc120});
    QTest::newRow("across zones, four parameters") << cm117 << cm120 << 4 << int(Plane) << "-3.250" << false
                                                   << pipeline({inv(kTmerc117), kTmerc120, affine(kFour)});
    QTest::newRow("one zone, four parameters") << cm117 << zone39 << 4 << int(Plane) << "" << false << affine(kFour);
    QTest::newRow("one zone, four parameters, code number") << cm117 << zone39 << 4 << int(PlaneWithZone) << "1"
                                                            << false << affine(kFour);
    // Carthage in degrees and in grads: one base, not the same system.
    QTest::newRow("geographic, one base: unchanged") << "EPSG:4223" << "ESRI:37225" << 4 << int(Decimal) << "5"
                                                     << false << "+proj=noop";
    QTest::newRow("seven, projected ends") << cm117 << utm50 << 7 << int(Plane) << "30" << false
                                           << pipeline({inv(kTmerc117), shift, kUtm50});
    QTest::newRow("seven, geographic ends, decimal to DMS") << bj << wgs << 7 << int(Decimal) << "12.5" << false
                                                            << pipeline({kToRad, shift, kToDeg});
    QTest::newRow("seven, geographic ends, DMS to decimal") << bj << wgs << 7 << int(Dms) << "12.5" << true
                                                            << pipeline({kToRad, shift, kToDeg});
    QTest::newRow("seven, projected to geographic, empty H") << cm117 << wgs << 7 << int(Plane) << "" << false
                                                             << pipeline({inv(kTmerc117), shift, kToDeg});
    QTest::newRow("seven, code number") << cm117 << wgs << 7 << int(PlaneWithZone) << "50" << true
                                        << pipeline({inv(kTmerc117), shift, kToDeg});
    QTest::newRow("seven, geographic to projected") << wgs << cm117 << 7 << int(Dms) << "12.5" << false
                                                    << pipeline({kToRad, back, kTmerc117});
}

void TestPointCoordsTransformDlg::conversionsMatchProj()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(int, model);
    QFETCH(int, input);
    QFETCH(QString, h);
    QFETCH(bool, decimalOut);
    QFETCH(QString, reference);
    storeModels(model == 7, model == 4);
    Fixture f;
    if (input == Dms) {
        // A decimal display left behind by a system chosen before must not stick.
        QVERIFY(f.choose("pushButton_Original", from));
        f.click("radioButton");
        QVERIFY(f.choose("pushButton_Original", "EPSG:2435"));
    }
    QVERIFY(f.chooseBoth(from, to));
    if (input == Decimal)
        f.click("radioButton");
    if (input == PlaneWithZone)
        f.click("checkBox_bCode");
    if (decimalOut)
        f.click("radioButton_3");
    if (input == Dms) {
        // Typed into the emptied masks, as a user would.
        for (int i = 0; i < 2; ++i) {
            QLineEdit* e = f.edit(i == 0 ? "lineEdit_OrigB" : "lineEdit_OrigL");
            e->setFocus();
            e->selectAll();
            QTest::keyClick(e, Qt::Key_Backspace);
            QTest::keyClicks(e, QString(kTyped[Dms].at(i)).remove(QRegularExpression("[^0-9]")));
            QCOMPARE(e->text(), kTyped[Dms].at(i));
        }
        f.type({f.text("lineEdit_OrigB"), f.text("lineEdit_OrigL"), h});
    } else {
        f.type(kTyped[input] + QStringList{h});
    }
    f.click("pushButton_Transform");
    QVERIFY2(f.driver.verify() && f.driver.messages().isEmpty(), qPrintable(f.driver.report()));

    const bool seven = reference.contains("helmert");
    double x = kPoint[input][0], y = kPoint[input][1], z = h.toDouble();
    QVERIFY(throughProj(reference, x, y, z));
    const bool dms = f.widget<QLabel>("label_7")->text() == "B" && !decimalOut;
    // Half a unit of the last decimal written, plus rounding noise.
    const double tolerance = (dms ? 0.5e-6 / 3600 : 0.5e-6) + 1e-12;
    double north = 0, east = 0;
    const QStringList r = f.results();
    QVERIFY2(parseResult(r[0], dms, &north) && parseResult(r[1], dms, &east), qPrintable(r.join(' ')));
    QVERIFY2(std::abs(north - y) <= tolerance && std::abs(east - x) <= tolerance,
             qPrintable(QString("%1 %2 off by %3 %4").arg(r[0], r[1]).arg(north - y).arg(east - x)));
    if (seven) {
        double height = 0;
        QVERIFY2(parseResult(r[2], false, &height) && std::abs(height - z) <= 0.5e-6 + 1e-9, qPrintable(r[2]));
    } else {
        QCOMPARE(r[2], h);  // a plane model leaves H exactly as typed
    }
}

void TestPointCoordsTransformDlg::refusalsLeaveTheResults_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("sevenStored");
    QTest::addColumn<QStringList>("input");
    QTest::addColumn<QString>("warning");  // empty: none, silently

    const QString cm117("EPSG:2436"), cm120("EPSG:2437"), none;
    QTest::newRow("no B") << none << none << false << QStringList{"", "1.5"} << "Please enter coordinates!";
    QTest::newRow("no L") << none << none << false << QStringList{"1.5", ""} << "Please enter coordinates!";
    QTest::newRow("no systems") << none << none << false << kTyped[Plane] << "Please enter original coordinate system!";
    QTest::newRow("target only") << none << cm117 << false << kTyped[Plane]
                                 << "Please enter original coordinate system!";
    QTest::newRow("source only") << cm117 << none << false << kTyped[Plane] << "Please enter target coordinate system!";
    QTest::newRow("no Y, both systems") << cm117 << cm120 << false << QStringList{"1.5", ""}
                                        << "Please enter coordinates!";
    QTest::newRow("no seven-parameter model, projected target") << cm117 << "EPSG:32650" << false << kTyped[Plane]
                                                                 << none;
    QTest::newRow("no seven-parameter model, geographic target") << cm117 << "EPSG:4326" << false << kTyped[Plane]
                                                                  << none;
    QTest::newRow("lone minus") << cm117 << cm120 << false << QStringList{"-", "447000.456"} << none;
    QTest::newRow("lone point") << cm117 << cm120 << false << QStringList{"4419000.123", "."} << none;
    QTest::newRow("lone minus as converted H") << cm117 << "EPSG:32650" << true << kTyped[Plane] + QStringList{"-"}
                                               << none;
}

void TestPointCoordsTransformDlg::refusalsLeaveTheResults()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, sevenStored);
    QFETCH(QStringList, input);
    QFETCH(QString, warning);
    storeModels(sevenStored, true);
    Fixture f;
    QVERIFY((from.isEmpty() || f.choose("pushButton_Original", from)) && (to.isEmpty() || f.choose("pushButton_Target", to)));
    f.type(input);
    const QStringList before = f.results();
    if (!warning.isEmpty())
        f.driver.answerMessageBox();
    f.click("pushButton_Transform");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.results(), before);
    QCOMPARE(f.driver.messages().size(), warning.isEmpty() ? 0 : 1);
    if (!warning.isEmpty()) {
        const ModalDriver::Message m = f.driver.messages().at(0);
        QCOMPARE(m.title + '|' + m.text + '|' + m.buttons.join(','), "Warning|" + warning + "|OK");
        QCOMPARE(m.icon, QMessageBox::Warning);
    }
}

void TestPointCoordsTransformDlg::decimalAndDmsRoundTrip_data()
{
    QTest::addColumn<QStringList>("dms");
    QTest::addColumn<QStringList>("decimal");  // as the toggle writes it: 12 decimals
    QTest::addColumn<bool>("masked");

    const auto twelve = [](double deg, double min, double sec) {
        return QString::number(deg + min / 60.0 + sec / 3600.0, 'f', 12);
    };
    QTest::newRow("Beijing") << kTyped[Dms] << QStringList{twelve(39, 54, 26.123456), twelve(116, 23, 44.654321)}
                             << true;
    QTest::newRow("short parts") << QStringList{"5°3′2.100000″", "7°0′59.999999″"}
                                 << QStringList{twelve(5, 3, 2.1), twelve(7, 0, 59.999999)} << true;
    QTest::newRow("zero angles show the masks") << QStringList{"00°00′00.000000″", "000°00′00.000000″"}
                                                << QStringList{"0.000000000000", "0.000000000000"} << true;
    // A mask has no room for a sign: negative angles are shown whole.
    QTest::newRow("south and west") << QStringList{"-33°51′54.360000″", "-70°40′12.000000″"}
                                    << QStringList{twelve(-33, -51, -54.36), twelve(-70, -40, -12)} << false;
}

void TestPointCoordsTransformDlg::decimalAndDmsRoundTrip()
{
    QFETCH(QStringList, dms);
    QFETCH(QStringList, decimal);
    QFETCH(bool, masked);
    Fixture f;
    QVERIFY(f.chooseBoth("EPSG:4214", "EPSG:2436"));
    QLineEdit *b = f.edit("lineEdit_OrigB"), *l = f.edit("lineEdit_OrigL");

    f.click("radioButton");
    QCOMPARE(b->text() + ' ' + l->text(), QStringLiteral("0.000000000000 0.000000000000"));
    QVERIFY(b->inputMask().isEmpty() && b->validator());
    f.type(decimal);
    f.click("radioButton_2");
    QCOMPARE(QStringList({b->text(), l->text()}), dms);
    QCOMPARE(b->inputMask().isEmpty() || l->inputMask().isEmpty(), !masked);
    f.click("radioButton");
    QCOMPARE(QStringList({b->text(), l->text()}), decimal);

    // The result side: six decimals from a conversion, twelve from a toggle.
    QVERIFY(f.chooseBoth("EPSG:2437", "EPSG:4214"));
    f.type(kTyped[Plane]);
    f.click("pushButton_Transform");
    double lat = 0;
    QVERIFY(parseResult(f.text("lineEdit_TargetB"), true, &lat));
    f.click("radioButton_3");
    QCOMPARE(f.text("lineEdit_TargetB"), QString::number(lat, 'f', 12));
    f.click("pushButton_Transform");
    QCOMPARE(f.text("lineEdit_TargetB"), QString::number(lat, 'f', 6));
}

void TestPointCoordsTransformDlg::importAddsAModelAndRefillsTheCombo_data()
{
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("seven");
    QTest::addColumn<bool>("accept");
    QTest::newRow("seven, saved") << "EPSG:32650" << true << true;
    QTest::newRow("seven, cancelled") << "EPSG:32650" << true << false;
    QTest::newRow("four, saved") << "EPSG:2437" << false << true;
}

void TestPointCoordsTransformDlg::importAddsAModelAndRefillsTheCombo()
{
    QFETCH(QString, to);
    QFETCH(bool, seven);
    QFETCH(bool, accept);
    storeModels(true, true);
    Fixture f;
    QVERIFY(f.chooseBoth("EPSG:2436", to));
    const QString existing = seven ? kSevenName : kFourName;

    QStringList handedOver;
    f.driver.handleModal(seven ? "Set7ParamsDlg" : "Set4ParamsDlg", [&](QWidget* w) {
        auto* src = w->findChild<QLineEdit*>("lineEdit_src");
        auto* des = w->findChild<QLineEdit*>("lineEdit_des");
        handedOver << src->text() << des->text();
        if (!accept)
            return static_cast<QDialog*>(w)->reject();
        src->setText("zone 117");
        des->setText("zone 120");
        for (const char* name : {"lineEdit_DX", "lineEdit_DY", "lineEdit_DZ", "lineEdit_W", "lineEdit_T",
                                 "lineEdit_K", "lineEdit_R", "lineEdit_M"}) {
            if (auto* e = w->findChild<QLineEdit*>(name))
                e->setText("1");
        }
        w->findChild<QLineEdit*>("lineEdit_Name")->setText("typed model");
        f.driver.answerMessageBox();
        w->findChild<QPushButton*>("pushButton_OK")->click();
    });
    f.click("pushButton_7Parameter");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    // The seven-parameter entry gets both systems, by their geographic names.
    if (seven)
        QVERIFY2(handedOver.join('|').contains(QRegularExpression("^[^|]*Beijing[^|]*\\|[^|]*WGS[^|]*$"))
                     && !handedOver.join('|').contains(QRegularExpression("UTM|Gauss")),
                 qPrintable(handedOver.join('|')));
    QCOMPARE(f.comboItems(), (accept ? QStringList{existing, "typed model"} : QStringList{existing}));
}

void TestPointCoordsTransformDlg::sameDigitsAsTheCommandLine_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("model");
    QTest::addColumn<int>("input");
    QTest::newRow("seven, projected ends") << "EPSG:2436" << "EPSG:32650" << kSevenName << int(Plane);
    QTest::newRow("seven, geographic ends") << "EPSG:4214" << "EPSG:4326" << kSevenName << int(Decimal);
    QTest::newRow("seven, code number") << "EPSG:2436" << "EPSG:4326" << kSevenName << int(PlaneWithZone);
    QTest::newRow("four, across zones") << "EPSG:2436" << "EPSG:2437" << kFourName << int(Plane);
    QTest::newRow("four, code number, to geographic") << "EPSG:2436" << "EPSG:4214" << kFourName
                                                      << int(PlaneWithZone);
}

void TestPointCoordsTransformDlg::sameDigitsAsTheCommandLine()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, model);
    QFETCH(int, input);
    storeModels(true, true);
    Fixture f;
    QVERIFY(f.chooseBoth(from, to));
    for (const char* degree : {"radioButton", "radioButton_3"}) {
        if (f.widget<QRadioButton>(degree)->isEnabled())
            f.click(degree);
    }
    if (input == PlaneWithZone)
        f.click("checkBox_bCode");
    // Six decimals of H, as the tool writes it.
    const QStringList point = kTyped[input] + QStringList{"35.250000"};
    f.type(point);
    f.click("pushButton_Transform");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));

    QStringList args{"transform", "--from", from, "--to", to, "--model", model, "--precision", "6"};
    if (input == PlaneWithZone)
        args << "--code";
    const CliRun cli(args, point.join(' ').toUtf8() + '\n');
    QCOMPARE(cli.status, 0);
    QCOMPARE(cli.outLines(), QStringList{f.results().join(' ')});
}

KIV_TEST_CLASS(TestPointCoordsTransformDlg)
#include "tst_PointCoordsTransformDlg.moc"
