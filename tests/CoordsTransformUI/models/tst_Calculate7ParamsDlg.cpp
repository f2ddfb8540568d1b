#include "CalcTestSupport.h"

#include "models/Calculate7ParamsDlg.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QTest>
#include <QTextCodec>

using namespace CalcTest;
using KivTest::ModalDriver;

namespace {

const QStringList kEdits{"lineEdit_SrcB", "lineEdit_SrcL", "lineEdit_SrcH",
                         "lineEdit_DesX", "lineEdit_DesY", "lineEdit_DesH"};
// Beijing 1954 -> WGS 84 of the order found in practice.
const double kParams[7] = {-12.5, 130.75, 48.25, -1.25, 2.5, -3.125, 4.5e-6};
const QString kDefaultPair = QStringLiteral("GCS_WGS_1984 -- Beijing_1954_3_Degree_GK_CM_102E");

void add(Calculate7ParamsDlg& dlg, const QStringList& texts)
{
    addPoint(dlg, kEdits, texts, "pushButton_Add");
}

QString resultText(Calculate7ParamsDlg& dlg)
{
    return child<QLabel>(&dlg, "label_Result")->text();
}

QStringList headers(Calculate7ParamsDlg& dlg)
{
    auto* table = child<QTableWidget>(&dlg, "tableWidget");
    QStringList texts;
    for (int c = 0; c < table->columnCount(); ++c)
        texts << table->horizontalHeaderItem(c)->text();
    return texts;
}

/// Picks `code` for the source ("src") or target ("des") through the picker.
bool choose(Calculate7ParamsDlg& dlg, const QString& side, const QString& code)
{
    ModalDriver driver;
    if (code.isEmpty())
        KivTest::cancelSelector(driver);
    else
        KivTest::answerSelector(driver, code);
    child<QComboBox>(&dlg, side == "src" ? "comboBox_srcSpaRef" : "comboBox_desSpaRef")->setCurrentIndex(0);
    return driver.verify();
}

// Default pair (WGS 84 geographic -> Beijing 1954 GK 102°E): geodetic source
// points and plane targets, good enough to run on.
QStringList defaultPairPoint(int i, double height = 0)
{
    return {QString::number(30.5 + 0.1 * i), QString::number(102.25 + 0.15 * (i % 3)), QString::number(height + 10 * i),
            QString::number(3380000.5 + 11000 * i), QString::number(524000.25 + 14000 * (i % 3)),
            QString::number(height + 12 * i)};
}

} // namespace

class TestCalculate7ParamsDlg : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void formAndStart();
    void chooseReference_data();
    void chooseReference();
    void rangeChecks_data();
    void rangeChecks();
    void addStoresCanonicalAngles_data();
    void addStoresCanonicalAngles();
    void styleMasks_data();
    void styleMasks();
    void runChecksInOrder_data();
    void runChecksInOrder();
    void recoversKnownParametersAndFlagsAMovedPoint();
    void singularPointsGiveCalculateError_data();
    void singularPointsGiveCalculateError();
    void exportImportRoundTrip_data();
    void exportImportRoundTrip();
    void importReadsSevenToNineParts_data();
    void importReadsSevenToNineParts();
};

void TestCalculate7ParamsDlg::formAndStart()
{
    Calculate7ParamsDlg dlg;
    QCOMPARE(dlg.windowTitle(), QStringLiteral("Seven-parameter Calculation"));
    QCOMPARE(headers(dlg), (QStringList{"Checked", "SourceB", "SourceL", "SourceH", "TargetX", "TargetY", "TargetH",
                                        "PRMS", "HRMS"}));
    QCOMPARE(child<QTableWidget>(&dlg, "tableWidget")->rowCount(), 5);
    auto* src = child<QComboBox>(&dlg, "comboBox_srcSpaRef");
    auto* des = child<QComboBox>(&dlg, "comboBox_desSpaRef");
    QCOMPARE(src->itemText(0), QStringLiteral("Click to select spatial reference"));
    QCOMPARE(src->currentIndex(), 1);
    QCOMPARE(src->currentText() + " -- " + des->currentText(), kDefaultPair);
    QVERIFY(child<QRadioButton>(&dlg, "radioButton_srcBLH")->isChecked());
    QVERIFY(child<QRadioButton>(&dlg, "radioButton_desXYH")->isChecked());
    auto* style = child<QComboBox>(&dlg, "comboBox_SrcCoordStyle");
    QCOMPARE(style->count(), 5);
    QCOMPARE(style->itemText(4), QString::fromUtf8("dd゜mm'ss\""));
    QCOMPARE(dlg.minimumSize(), dlg.maximumSize());
}

void TestCalculate7ParamsDlg::chooseReference_data()
{
    QTest::addColumn<QString>("side");
    QTest::addColumn<QString>("code");     // empty: the picker is cancelled
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("headers");
    QTest::addColumn<QString>("checkedRadio");
    QTest::newRow("projected source") << "src" << "EPSG:2436" << "Beijing_1954_3_Degree_GK_CM_117E"
                                      << QStringList{"SourceX", "SourceY", "TargetX", "TargetY"} << "radioButton_srcXYH";
    QTest::newRow("geographic target") << "des" << "EPSG:4214" << "GCS_Beijing_1954"
                                       << QStringList{"SourceB", "SourceL", "TargetB", "TargetL"} << "radioButton_desBLH";
    QTest::newRow("cancelled") << "src" << "" << "GCS_WGS_1984"
                               << QStringList{"SourceB", "SourceL", "TargetX", "TargetY"} << "radioButton_srcBLH";
}

void TestCalculate7ParamsDlg::chooseReference()
{
    QFETCH(QString, side);
    QFETCH(QString, code);
    QFETCH(QString, name);
    QFETCH(QStringList, headers);
    QFETCH(QString, checkedRadio);
    Calculate7ParamsDlg dlg;
    QVERIFY(choose(dlg, side, code));
    auto* combo = child<QComboBox>(&dlg, side == "src" ? "comboBox_srcSpaRef" : "comboBox_desSpaRef");
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->currentIndex(), 1);
    QCOMPARE(combo->currentText(), name);
    const QStringList all = ::headers(dlg);
    QCOMPARE((QStringList{all[1], all[2], all[4], all[5]}), headers);
    QVERIFY(child<QRadioButton>(&dlg, checkedRadio.toLatin1().constData())->isChecked());
}

void TestCalculate7ParamsDlg::rangeChecks_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("geographicTarget");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");   // empty: accepted
    const QString lat = QStringLiteral("Input should be between 0 and 90");
    const QString lon = QStringLiteral("Input should be between 0 and 180");
    QTest::newRow("latitude 90") << "lineEdit_SrcB" << false << "90" << lat;
    QTest::newRow("latitude 89.9") << "lineEdit_SrcB" << false << "89.9" << "";
    QTest::newRow("latitude -10") << "lineEdit_SrcB" << false << "-10" << "";
    QTest::newRow("longitude 180") << "lineEdit_SrcL" << false << "180:00:00" << lon;
    QTest::newRow("longitude 179.5") << "lineEdit_SrcL" << false << "179.5" << "";
    QTest::newRow("target latitude 95") << "lineEdit_DesX" << true << "95" << lat;
    QTest::newRow("target longitude 200") << "lineEdit_DesY" << true << "200" << lon;
    QTest::newRow("plane target 4000000") << "lineEdit_DesX" << false << "4000000" << "";
}

void TestCalculate7ParamsDlg::rangeChecks()
{
    QFETCH(QString, field);
    QFETCH(bool, geographicTarget);
    QFETCH(QString, text);
    QFETCH(QString, message);
    Calculate7ParamsDlg dlg;
    if (geographicTarget)
        QVERIFY(choose(dlg, "des", "EPSG:4214"));
    auto* edit = child<QLineEdit>(&dlg, field.toLatin1().constData());
    ModalDriver driver;
    if (!message.isEmpty())
        driver.answerMessageBox();
    edit->setText(text);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (message.isEmpty()) {
        QCOMPARE(edit->text(), text);
        return;
    }
    QCOMPARE(driver.messages().first().title, QStringLiteral("Error"));
    QCOMPARE(driver.messages().first().text, message);
    QCOMPARE(edit->text(), QString::fromUtf8(message.endsWith("90") ? "00°00′00.000000″" : "000°00′00.000000″"));
}

void TestCalculate7ParamsDlg::addStoresCanonicalAngles_data()
{
    QTest::addColumn<QStringList>("typed");
    QTest::addColumn<QStringList>("stored");   // empty: refused
    QTest::newRow("decimal degrees") << QStringList{"30.5", "-10.25", "12.5", "3380000.5", "524000.25", "13"}
                                     << QStringList{"30°30′0.000000″", "-10°15′0.000000″", "12.5", "3380000.5", "524000.25", "13"};
    QTest::newRow("latitude 0") << QStringList{"0", "00:00:00", "0", "1", "2", "3"}
                                << QStringList{"0", "0", "0", "1", "2", "3"};
    QTest::newRow("sexagesimal") << QStringList{"39:54:26.5", "116°23′29.123456″", "5", "1", "2", "3"}
                                 << QStringList{"39°54′26.500000″", "116°23′29.123456″", "5", "1", "2", "3"};
    QTest::newRow("empty height") << QStringList{"30", "102", "", "1", "2", "3"} << QStringList();
}

void TestCalculate7ParamsDlg::addStoresCanonicalAngles()
{
    QFETCH(QStringList, typed);
    QFETCH(QStringList, stored);
    Calculate7ParamsDlg dlg;
    ModalDriver driver;
    if (stored.isEmpty())
        driver.answerMessageBox();
    add(dlg, typed);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (stored.isEmpty()) {
        QCOMPARE(driver.messages().first().text,
                 QStringLiteral("There is one or more coordinate is empty, Please input the coordinate"));
        QVERIFY(!child<QTableWidget>(&dlg, "tableWidget")->item(0, 0));
        return;
    }
    for (int c = 1; c <= 6; ++c)
        QCOMPARE(cell(dlg, 0, c), stored.at(c - 1));
    QCOMPARE(cell(dlg, 0, 7), QString());
}

void TestCalculate7ParamsDlg::styleMasks_data()
{
    QTest::addColumn<QString>("side");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("latitude");    // expected mask, also the text shown
    QTest::addColumn<QString>("longitude");
    QTest::newRow("dd:mm:ss") << "src" << 0 << "00:00:00.000000" << "000:00:00.000000";
    QTest::newRow("dd:mm") << "src" << 1 << "00:00.00000000" << "000:00.00000000";
    QTest::newRow("dd") << "src" << 2 << "" << "";
    QTest::newRow("dms signs") << "src" << 4 << QString::fromUtf8("00°00′00.000000″") << QString::fromUtf8("000°00′00.000000″");
    QTest::newRow("plane target unchanged") << "des" << 4 << "" << "";
}

void TestCalculate7ParamsDlg::styleMasks()
{
    QFETCH(QString, side);
    QFETCH(int, index);
    QFETCH(QString, latitude);
    QFETCH(QString, longitude);
    Calculate7ParamsDlg dlg;
    auto* lat = child<QLineEdit>(&dlg, side == "src" ? "lineEdit_SrcB" : "lineEdit_DesX");
    auto* lon = child<QLineEdit>(&dlg, side == "src" ? "lineEdit_SrcL" : "lineEdit_DesY");
    lat->setText(QStringLiteral("12"));
    lon->setText(QStringLiteral("34"));
    auto* style = child<QComboBox>(&dlg, side == "src" ? "comboBox_SrcCoordStyle" : "comboBox_DesCoordStyle");
    style->setCurrentIndex(3);
    style->setCurrentIndex(index);
    if (side == "des") {
        QCOMPARE(lat->text(), QStringLiteral("12"));
        return;
    }
    QCOMPARE(lat->inputMask().section(';', 0, 0), latitude);
    QCOMPARE(lat->text(), latitude);
    QCOMPARE(lon->inputMask().section(';', 0, 0), longitude);
    QCOMPARE(lon->text(), longitude);
}

void TestCalculate7ParamsDlg::runChecksInOrder_data()
{
    QTest::addColumn<int>("checked");
    QTest::addColumn<QString>("importLine");
    QTest::addColumn<QString>("sourceCode");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");   // empty: runs
    QTest::newRow("two points") << 2 << "other -- pair" << "EPSG:4214" << "Error" << "Need 3 GCPs at least!";
    QTest::newRow("imported pair differs")
        << 3 << "GCS_WGS_1984 -- Beijing_1954_3_Degree_GK_CM_117E" << "EPSG:4214" << "Warning"
        << "The Transformation model for the imported data is different from the currently selected elipsoid.Please "
           "reselect the ellipsoid!";
    QTest::newRow("same geographic system") << 3 << "" << "EPSG:4214" << "Error"
                                            << "The Source Spheroid must be different with target Spheroid!";
    QTest::newRow("imported pair in other case") << 3 << kDefaultPair.toUpper() << "" << "" << "";
}

void TestCalculate7ParamsDlg::runChecksInOrder()
{
    QFETCH(int, checked);
    QFETCH(QString, importLine);
    QFETCH(QString, sourceCode);
    QFETCH(QString, title);
    QFETCH(QString, message);
    Calculate7ParamsDlg dlg;
    if (!sourceCode.isEmpty())
        QVERIFY(choose(dlg, "src", sourceCode));
    for (int i = 0; i < 4; ++i)
        add(dlg, defaultPairPoint(i));
    for (int i = checked; i < 4; ++i)
        setChecked(dlg, i, false);
    if (!sourceCode.isEmpty())
        importLine.replace(QStringLiteral("GCS_WGS_1984"), QStringLiteral("GCS_Beijing_1954"));
    child<QLineEdit>(&dlg, "lineEdit_ImportModel")->setText(importLine);
    ModalDriver driver;
    if (!message.isEmpty())
        driver.answerMessageBox();
    click(&dlg, "pushButton_Run");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (message.isEmpty()) {
        QVERIFY2(resultText(dlg).startsWith("DX(m)="), qPrintable(resultText(dlg)));
        return;
    }
    QCOMPARE(driver.messages().first().title, title);
    QCOMPARE(driver.messages().first().text, message);
    QCOMPARE(resultText(dlg), QString());
}

void TestCalculate7ParamsDlg::recoversKnownParametersAndFlagsAMovedPoint()
{
    QList<QStringList> points = sevenParameterPoints(kParams, 10);
    points.last()[1] = fixed(points.last().at(1).toDouble() + 0.5, 4);   // easting off by 0.5 m
    Calculate7ParamsDlg dlg;
    QVERIFY(choose(dlg, "src", "EPSG:2436"));
    QVERIFY(choose(dlg, "des", "EPSG:4326"));
    for (const QStringList& p : points)
        add(dlg, p);
    setChecked(dlg, 9, false);
    click(&dlg, "pushButton_Run");

    const QStringList lines = resultText(dlg).split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 8);
    QVERIFY(lines.at(3).startsWith(QString::fromUtf8("ω(″)=")) && lines.at(5).startsWith(QString::fromUtf8("γ(″)=")));
    const QVector<double> r = resultValues(resultText(dlg));
    for (int i = 0; i < 3; ++i)
        QVERIFY2(std::abs(r[i] - kParams[i]) < 0.05, qPrintable(resultText(dlg)));
    for (int i = 3; i < 6; ++i)
        QVERIFY2(std::abs(r[i] - kParams[i]) < 0.002, qPrintable(resultText(dlg)));
    QVERIFY2(std::abs(r[6] - kParams[6]) < 1e-8, qPrintable(resultText(dlg)));
    for (int i = 0; i < 9; ++i) {
        QVERIFY2(std::abs(cell(dlg, i, 7).toDouble()) <= 0.002, qPrintable(cell(dlg, i, 7)));
        QVERIFY2(std::abs(cell(dlg, i, 8).toDouble()) <= 0.002, qPrintable(cell(dlg, i, 8)));
    }
    QCOMPARE(cell(dlg, 9, 7), QString());
    QCOMPARE(cell(dlg, 9, 8), QString());

    setChecked(dlg, 9, true);
    click(&dlg, "pushButton_Run");
    double worstOther = 0;
    for (int i = 0; i < 9; ++i)
        worstOther = std::max(worstOther, cell(dlg, i, 7).toDouble());
    const double moved = cell(dlg, 9, 7).toDouble();
    QVERIFY2(moved > 0.25 && moved > 2 * worstOther, qPrintable(QStringLiteral("%1 vs %2").arg(moved).arg(worstOther)));
}

void TestCalculate7ParamsDlg::singularPointsGiveCalculateError_data()
{
    QTest::addColumn<bool>("identical");
    QTest::newRow("one vertical line") << false;
    QTest::newRow("identical points") << true;
}

void TestCalculate7ParamsDlg::singularPointsGiveCalculateError()
{
    QFETCH(bool, identical);
    Calculate7ParamsDlg dlg;
    for (int i = 0; i < 3; ++i)
        add(dlg, defaultPairPoint(i));
    click(&dlg, "pushButton_Run");
    QVERIFY2(resultText(dlg).startsWith("DX(m)="), qPrintable(resultText(dlg)));
    const QString residual = cell(dlg, 0, 7);
    // A projected side is saved under its geographic system's name.
    ModalDriver driver;
    driver.handleModal("Save7ParamsResultDlg", [&driver](QWidget* w) {
        if (child<QLineEdit>(w, "lineEdit_name")->text() != QStringLiteral("GCS_WGS_1984-to-GCS_Beijing_1954"))
            driver.fail(child<QLineEdit>(w, "lineEdit_name")->text());
        click(w, "pushButton_OK");
    });
    driver.answerMessageBox();
    click(&dlg, "pushButton_Save");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, QStringLiteral("save result success!"));
    for (int i = 0; i < 3; ++i) {
        add(dlg, identical ? defaultPairPoint(0) : defaultPairPoint(0, 100.0 * i));
        setChecked(dlg, i, false);
    }
    click(&dlg, "pushButton_Run");
    QCOMPARE(resultText(dlg), QStringLiteral("Calculate Error!"));
    QCOMPARE(cell(dlg, 0, 7), residual);
    for (int i = 3; i < 6; ++i)
        QVERIFY(!cell(dlg, i, 7).contains("nan", Qt::CaseInsensitive));

    driver.answerMessageBox();
    click(&dlg, "pushButton_Save");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().last().text, QStringLiteral("Please run calculation first and get a correct result !"));
}

void TestCalculate7ParamsDlg::exportImportRoundTrip_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("separator");
    QTest::newRow("txt") << "gcp.txt" << "\t";
    QTest::newRow("csv") << "gcp.csv" << ",";
}

void TestCalculate7ParamsDlg::exportImportRoundTrip()
{
    QFETCH(QString, name);
    QFETCH(QString, separator);
    const QString path = KivTest::scratchDir() + QLatin1Char('/') + name;
    Calculate7ParamsDlg dlg;
    for (int i = 0; i < 4; ++i)
        add(dlg, defaultPairPoint(i));
    setChecked(dlg, 2, false);
    click(&dlg, "pushButton_Run");
    ModalDriver driver;
    driver.answerFileDialog(path);
    driver.answerMessageBox();
    click(&dlg, "pushButton_Export");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));

    const QStringList lines = QTextCodec::codecForName("GB18030")->toUnicode(KivTest::readFile(path)).split('\n');
    QCOMPARE(lines.at(0), kDefaultPair);
    QCOMPARE(lines.at(1), QString());
    QCOMPARE(lines.mid(2, 8).join('\n'), resultText(dlg));
    QCOMPARE(lines.at(10), headers(dlg).join(separator) + separator);
    QCOMPARE(lines.at(13), QStringList({"4", cell(dlg, 3, 1), cell(dlg, 3, 2), cell(dlg, 3, 3), cell(dlg, 3, 4),
                                        cell(dlg, 3, 5), cell(dlg, 3, 6), cell(dlg, 3, 7), cell(dlg, 3, 8), ""})
                              .join(separator));
    QCOMPARE(lines.size(), 15);

    Calculate7ParamsDlg other;
    driver.answerFileDialog(path);
    click(&other, "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(child<QLineEdit>(&other, "lineEdit_ImportModel")->text(), kDefaultPair);
    for (int c = 1; c <= 8; ++c)
        QCOMPARE(cell(other, 2, c), cell(dlg, 3, c));
    QCOMPARE(cell(other, 2, 0), QStringLiteral("3"));
    // The imported pair is the current one: Run is allowed.
    click(&other, "pushButton_Run");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(resultText(other), resultText(dlg));
}

void TestCalculate7ParamsDlg::importReadsSevenToNineParts_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("cells");   // columns 1 to 8; empty: not a point
    QTest::newRow("seven parts") << QByteArray("1\t30\t102\t5\t1\t2\t3\t") << QStringList{"30", "102", "5", "1", "2", "3", "", ""};
    QTest::newRow("eight parts") << QByteArray("1\t30\t102\t5\t1\t2\t3\t0.5") << QStringList{"30", "102", "5", "1", "2", "3", "", ""};
    QTest::newRow("nine parts") << QByteArray("7\t30\t102\t5\t1\t2\t3\t0.5\t0.25\t") << QStringList{"30", "102", "5", "1", "2", "3", "0.5", "0.25"};
    QTest::newRow("ten parts") << QByteArray("1\t2\t3\t4\t5\t6\t7\t8\t9\t10") << QStringList();
    QTest::newRow("four-parameter line") << QByteArray("1\t2\t3\t4\t5\t0.1") << QStringList();
}

void TestCalculate7ParamsDlg::importReadsSevenToNineParts()
{
    QFETCH(QByteArray, line);
    QFETCH(QStringList, cells);
    const QString path = KivTest::scratchDir() + QStringLiteral("/points.txt");
    QVERIFY(KivTest::writeFile(path, "DX(m)=1\r\nChecked\tSourceB\tSourceL\tSourceH\tTargetX\tTargetY\tTargetH\tPRMS\tHRMS\t\n"
                                         + line + "\n"));
    Calculate7ParamsDlg dlg;
    ModalDriver driver;
    driver.answerFileDialog(path);
    if (cells.isEmpty())
        driver.answerMessageBox();
    click(&dlg, "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(child<QLineEdit>(&dlg, "lineEdit_ImportModel")->text(), QString());
    if (cells.isEmpty()) {
        QCOMPARE(driver.messages().first().text, QStringLiteral("This File is not Vaild!"));
        return;
    }
    QCOMPARE(cell(dlg, 0, 0), QStringLiteral("1"));
    for (int c = 1; c <= 8; ++c)
        QCOMPARE(cell(dlg, 0, c), cells.at(c - 1));
}

KIV_TEST_CLASS(TestCalculate7ParamsDlg)
#include "tst_Calculate7ParamsDlg.moc"
