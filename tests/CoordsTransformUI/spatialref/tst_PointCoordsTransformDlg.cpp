// The point conversion dialog, driven offscreen through its widgets. Expected
// answers come from PROJ pipelines spelled out here.

#include "spatialref/PointCoordsTransformDlg.h"

#include "models/ModelStore.h"

#include "support/FilesDialogSteps.h"
#include "support/RouteReference.h"
#include "support/TestRegistry.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>

using namespace RouteReference;
using KivTest::ModalDriver;

namespace {

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

void storeModels(bool sevenToo, bool fourToo)
{
    if (sevenToo)
        QCOMPARE(ModelStore::Add(ModelStore::Params7, {kSevenName, "Beijing 1954", "WGS 84", seven()}),
                 ModelStore::Written);
    if (fourToo)
        QCOMPARE(ModelStore::Add(ModelStore::Params4, {kFourName, "zone 39", "site", four()}), ModelStore::Written);
}

/// The dialog and a driver for the windows it opens.
struct Fixture
{
    ModalDriver driver;
    PointCoordsTransformDlg dlg{nullptr};

    template <class T = QWidget>
    T* widget(const char* name)
    {
        return dlg.findChild<T*>(QString::fromLatin1(name));
    }
    QLineEdit* edit(const char* name) { return widget<QLineEdit>(name); }
    QString text(const char* name) { return edit(name)->text(); }
    void click(const char* name) { widget<QAbstractButton>(name)->click(); }
    /// Picks the source and the target system; an empty code leaves that side.
    bool choose(const QString& from, const QString& to)
    {
        DialogSteps::pickSystems(dlg, driver, from, to);
        return driver.verify();
    }
    void type(const QStringList& blh)
    {
        const char* names[3] = {"lineEdit_OrigB", "lineEdit_OrigL", "lineEdit_OrigH"};
        for (int i = 0; i < blh.size(); ++i)
            edit(names[i])->setText(blh.at(i));
    }
    QStringList results() { return {text("lineEdit_TargetB"), text("lineEdit_TargetL"), text("lineEdit_TargetH")}; }
};

} // namespace

class TestPointCoordsTransformDlg : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void choosingSystemsSetsTheForm_data();
    void choosingSystemsSetsTheForm();
    void conversionsMatchProj_data();
    void conversionsMatchProj();
    void refusalsLeaveTheResults_data();
    void refusalsLeaveTheResults();
    void decimalAndDmsRoundTrip_data();
    void decimalAndDmsRoundTrip();
    void importAddsAModelAndRefillsTheCombo_data();
    void importAddsAModelAndRefillsTheCombo();
};

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
    QVERIFY(f.choose(geo[0] ? "EPSG:2435" : "EPSG:4490", geo[1] ? "EPSG:2434" : "EPSG:4610"));
    f.click(geo[0] ? "checkBox_bCode" : "radioButton");
    QCOMPARE(f.widget<QCheckBox>("checkBox_bCode")->isChecked(), geo[0]);
    if (!geo[1])
        f.click("radioButton_3");
    QVERIFY(f.choose(from, to));

    // Either side equal to the other is refused, and everything below stays.
    const QString chosen = f.text("lineEdit_Original") + f.text("lineEdit_Target");
    for (const auto& [button, code] : {std::make_pair("pushButton_Original", to),
                                       std::make_pair("pushButton_Target", from)}) {
        KivTest::answerSelector(f.driver, code);
        f.driver.answerMessageBox();
        f.click(button);
    }
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    const QString refused = QStringLiteral("Warning|Source Spatial Reference is same with Target!");
    QCOMPARE(DialogSteps::messageTexts(f.driver), QStringList({refused, refused}));
    QCOMPARE(f.text("lineEdit_Original") + f.text("lineEdit_Target"), chosen);

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
    QCOMPARE(DialogSteps::comboItems(f.dlg, "comboBox_7Parameter"), QStringList{four ? kFourName : kSevenName});
    const bool models = !geo[0] && !geo[1];
    for (const char* name : {"label_11", "comboBox_7Parameter", "pushButton_7Parameter"})
        QCOMPARE(f.widget(name)->isEnabled(), models);
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

    // The routes themselves are checked in core; here the fields' forms around them.
    const QString bj("EPSG:4214"), wgs("EPSG:4326"), cm117("EPSG:2436"), cm120("EPSG:2437");
    const QString from117 = inv(tmerc(117));
    QTest::newRow("geographic to projected, DMS") << bj << cm117 << 4 << int(Dms) << "12.5" << false
                                                  << pipeline({toRad(), tmerc(117)});
    QTest::newRow("projected to geographic, code number, decimal") << cm117 << bj << 0 << int(PlaneWithZone) << "7"
                                                                   << true << pipeline({from117, toDeg()});
    QTest::newRow("across zones, four parameters") << cm117 << cm120 << 4 << int(Plane) << "-3.250" << false
                                                   << pipeline({from117, tmerc(120), affine(four())});
    QTest::newRow("seven, geographic ends, decimal") << bj << wgs << 7 << int(Decimal) << "12.5" << true
                                                     << pipeline({toRad(), helmert(), toDeg()});
    QTest::newRow("seven, code number, empty H, DMS") << cm117 << wgs << 7 << int(PlaneWithZone) << "" << false
                                                      << pipeline({from117, helmert(), toDeg()});
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
        QVERIFY(f.choose(from, QString()));
        f.click("radioButton");
        QVERIFY(f.choose("EPSG:2435", QString()));
    }
    QVERIFY(f.choose(from, to));
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

    double x = kPoint[input][0], y = kPoint[input][1], z = h.toDouble();
    QVERIFY(KivTest::projTransform(reference, x, y, z));
    const bool dms = f.widget<QLabel>("label_7")->text() == "B" && !decimalOut;
    // Half a unit of the last decimal written, plus rounding noise.
    const double tolerance = (dms ? 0.5e-6 / 3600 : 0.5e-6) + 1e-12;
    double north = 0, east = 0;
    const QStringList r = f.results();
    QVERIFY2(parseResult(r[0], dms, &north) && parseResult(r[1], dms, &east), qPrintable(r.join(' ')));
    QVERIFY2(std::abs(north - y) <= tolerance && std::abs(east - x) <= tolerance,
             qPrintable(QString("%1 %2 off by %3 %4").arg(r[0], r[1]).arg(north - y).arg(east - x)));
    if (reference.contains("helmert")) {
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
    QTest::newRow("no seven-parameter model") << cm117 << "EPSG:32650" << false << kTyped[Plane] << none;
    QTest::newRow("lone minus") << cm117 << cm120 << false << QStringList{"-", "447000.456"} << none;
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
    QVERIFY(f.choose(from, to));
    f.type(input);
    const QStringList before = f.results();
    if (!warning.isEmpty())
        f.driver.answerMessageBox();
    f.click("pushButton_Transform");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.results(), before);
    QCOMPARE(DialogSteps::messageTexts(f.driver), warning.isEmpty() ? QStringList() : QStringList("Warning|" + warning));
    if (!warning.isEmpty()) {
        QCOMPARE(f.driver.messages().at(0).buttons, QStringList("OK"));
        QCOMPARE(f.driver.messages().at(0).icon, QMessageBox::Warning);
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
    QVERIFY(f.choose("EPSG:4214", "EPSG:2436"));
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
    QVERIFY(f.choose("EPSG:2437", "EPSG:4214"));
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
    QVERIFY(f.choose("EPSG:2436", to));
    QStringList handedOver;
    f.driver.handleModal(seven ? "Set7ParamsDlg" : "Set4ParamsDlg", [&](QWidget* w) {
        for (const char* name : {"lineEdit_src", "lineEdit_des"})
            handedOver << w->findChild<QLineEdit*>(name)->text();
        if (accept) {
            const TransformModel model{"typed model", "zone 117", "zone 120", seven ? RouteReference::seven() : four()};
            QCOMPARE(ModelStore::Add(seven ? ModelStore::Params7 : ModelStore::Params4, model), ModelStore::Written);
        }
        accept ? static_cast<QDialog*>(w)->accept() : static_cast<QDialog*>(w)->reject();
    });
    f.click("pushButton_7Parameter");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    // The seven-parameter entry gets both systems, by their geographic names.
    if (seven)
        QVERIFY2(handedOver.join('|').contains(QRegularExpression("^[^|]*Beijing[^|]*\\|[^|]*WGS[^|]*$"))
                     && !handedOver.join('|').contains(QRegularExpression("UTM|Gauss")),
                 qPrintable(handedOver.join('|')));
    const QString existing = seven ? kSevenName : kFourName;
    QCOMPARE(DialogSteps::comboItems(f.dlg, "comboBox_7Parameter"),
             (accept ? QStringList{existing, "typed model"} : QStringList{existing}));
}

KIV_TEST_CLASS(TestPointCoordsTransformDlg)
#include "tst_PointCoordsTransformDlg.moc"
