#include "CalcTestSupport.h"

#include "models/Calculate4ParamsDlg.h"
#include "models/Calculate7ParamsDlg.h"
#include "models/ModelStore.h"
#include "LayerSource.h"
#include "MapRenderer.h"
#include "support/FakeHost.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivUI/EnvironmentSetting.h"

#include <QComboBox>
#include <QRegularExpression>
#include <QHash>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextCodec>

#include <cpl_vsi.h>
#include <gdal.h>
#include <ogr_api.h>

using namespace CalcTest;
using KivTest::ModalDriver;

namespace {

const double kParams4[4] = {-3021.25, 1488.5, 0.0123, 1.000012};
// Beijing 1954 -> WGS 84 of the order found in practice.
const double kParams7[7] = {-12.5, 130.75, 48.25, -1.25, 2.5, -3.125, 4.5e-6};
const QString kDefaultPair = QStringLiteral("GCS_WGS_1984 -- Beijing_1954_3_Degree_GK_CM_102E");

/// One of the two calculation dialogs, driven by object names. Buttons are
/// named by the four-parameter dialog's role word ("run", "save", ...).
struct Calc
{
    explicit Calc(bool seven, KivFramework::IApplication* host = nullptr) : seven(seven)
    {
        dlg.reset(seven ? static_cast<QDialog*>(new Calculate7ParamsDlg(nullptr, host))
                        : new Calculate4ParamsDlg(nullptr, host));
    }
    QStringList edits() const
    {
        return seven ? QStringList{"lineEdit_SrcB", "lineEdit_SrcL", "lineEdit_SrcH", "lineEdit_DesX", "lineEdit_DesY",
                                   "lineEdit_DesH"}
                     : QStringList{"lineEdit_X0", "lineEdit_Y0", "lineEdit_X1", "lineEdit_Y1"};
    }
    QPushButton* button(const QString& role) const
    {
        static const QHash<QString, QString> sevenNames{{"addPoint", "Add"}, {"editPoint", "Edit"}, {"remove", "Remove"},
                                                     {"run", "Run"}, {"save", "Save"}};
        const QString name = "pushButton_" + (seven ? sevenNames.value(role, role) : role);
        return child<QPushButton>(dlg.get(), name.toLatin1().constData());
    }
    void press(const QString& role) { button(role)->click(); }
    void add(const QStringList& texts) { addPoint(*dlg, edits(), texts, seven ? "pushButton_Add" : "pushButton_addPoint"); }
    void fill(const QList<QStringList>& points) { for (const QStringList& p : points) add(p); }
    QString result() const { return child<QLabel>(dlg.get(), "label_Result")->text(); }
    QString cell(int row, int column) const { return CalcTest::cell(*dlg, row, column); }
    /// The texts of row `r`; of the header for -1.
    QStringList row(int r) const
    {
        QStringList cells;
        for (int c = 0; c < columns(); ++c)
            cells << (r < 0 ? table()->horizontalHeaderItem(c)->text() : cell(r, c));
        return cells;
    }
    QTableWidget* table() const { return child<QTableWidget>(dlg.get(), "tableWidget"); }
    QLineEdit* input(int i) const { return child<QLineEdit>(dlg.get(), edits().at(i).toLatin1().constData()); }
    int columns() const { return seven ? 9 : 6; }
    int residual() const { return seven ? 7 : 5; }
    /// Picks `code` for the source or target through the picker (empty: cancel).
    bool choose(bool source, const QString& code)
    {
        ModalDriver driver;
        if (code.isEmpty())
            KivTest::cancelSelector(driver);
        else
            KivTest::answerSelector(driver, code);
        child<QComboBox>(dlg.get(), source ? "comboBox_srcSpaRef" : "comboBox_desSpaRef")->setCurrentIndex(0);
        return driver.verify();
    }

    bool seven;
    std::unique_ptr<QDialog> dlg;
};

/// Points the dialog can run on as it opens: PROJ-made plane pairs, or for
/// the seven-parameter dialog's default pair (WGS 84 -> Beijing 1954 GK 102°E)
/// geodetic sources and plane targets.
QList<QStringList> somePoints(bool seven, int count)
{
    if (!seven)
        return fourParameterPoints(kParams4, count);
    QList<QStringList> points;
    for (int i = 0; i < count; ++i)
        points << QStringList{QString::number(30.5 + 0.1 * i), QString::number(102.25 + 0.15 * (i % 3)),
                              QString::number(10 * i), QString::number(3380000.5 + 11000 * i),
                              QString::number(524000.25 + 14000 * (i % 3)), QString::number(12 * i)};
    return points;
}

} // namespace

class TestCalculationDialogs : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void addChecksInput_data();
    void addChecksInput();
    void runChecksInOrder_data();
    void runChecksInOrder();
    void editAndRemove_data();
    void editAndRemove();
    void recoversKnownParametersThenFails_data();
    void recoversKnownParametersThenFails();
    void exportImportRoundTrip_data();
    void exportImportRoundTrip();
    void importReadsPointLines_data();
    void importReadsPointLines();
    void qualityReport_data();
    void qualityReport();
};

void TestCalculationDialogs::addChecksInput_data()
{
    QTest::addColumn<bool>("seven");
    QTest::addColumn<QStringList>("typed");
    QTest::addColumn<QString>("message");      // "text / title"; empty: none
    QTest::addColumn<QStringList>("stored");   // empty: refused
    const QString badNumber = "Input data is incorrect, please re-enter! / Error";
    QTest::newRow("4: integers, decimals") << false << QStringList{"5", "-2.25", ".5", "100"} << ""
                                           << QStringList{"5", "-2.25", ".5", "100"};
    QTest::newRow("4: letters dropped") << false << QStringList{"1a2.5", "2", "3", "4"} << ""
                                        << QStringList{"12.5", "2", "3", "4"};
    QTest::newRow("4: first empty") << false << QStringList{"", "2", "3", "4"} << badNumber << QStringList();
    QTest::newRow("4: last only a sign") << false << QStringList{"1", "2", "3", "-"} << badNumber << QStringList();
    QTest::newRow("7: decimal degrees, negative") << true << QStringList{"30.5", "-10.25", "12.5", "3380000.5", "524000.25", "13"}
                                                  << "" << QStringList{"30°30′0.000000″", "-10°15′0.000000″", "12.5", "3380000.5", "524000.25", "13"};
    QTest::newRow("7: zero, sexagesimal") << true << QStringList{"0", "116°23′29.123456″", "0", "1", "2", "3"} << ""
                                          << QStringList{"0", "116°23′29.123456″", "0", "1", "2", "3"};
    QTest::newRow("7: empty height") << true << QStringList{"30", "102", "", "1", "2", "3"}
                                     << "There is one or more coordinate is empty, Please input the coordinate / Error"
                                     << QStringList();
    // Out of range: the field is reset to zero as it is typed.
    QTest::newRow("7: latitude 90") << true << QStringList{"90", "102", "5", "1", "2", "3"}
                                    << "Input should be between 0 and 90 / Error"
                                    << QStringList{"0", "102°0′0.000000″", "5", "1", "2", "3"};
    QTest::newRow("7: longitude 180") << true << QStringList{"30", "180:00:00", "5", "1", "2", "3"}
                                      << "Input should be between 0 and 180 / Error"
                                      << QStringList{"30°0′0.000000″", "0", "5", "1", "2", "3"};
}

void TestCalculationDialogs::addChecksInput()
{
    QFETCH(bool, seven);
    QFETCH(QStringList, typed);
    QFETCH(QString, message);
    QFETCH(QStringList, stored);
    Calc calc(seven);
    ModalDriver driver;
    if (!message.isEmpty())
        driver.answerMessageBox();
    for (int i = 0; i < typed.size(); ++i) {
        if (seven)
            calc.input(i)->setText(typed.at(i));
        else
            QTest::keyClicks(calc.input(i), typed.at(i));   // through the validator
    }
    calc.press("addPoint");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(calc.table()->columnWidth(0), 50);
    QCOMPARE(driver.messages().size(), int(!message.isEmpty()));
    if (!message.isEmpty())
        QCOMPARE(driver.messages().first().text + " / " + driver.messages().first().title, message);
    if (stored.isEmpty()) {
        QVERIFY(!calc.table()->item(0, 0));
        return;
    }
    QCOMPARE(calc.row(0), QStringList{"1"} + stored + (seven ? QStringList{"", ""} : QStringList{""}));
    QCOMPARE(calc.input(0)->text(), QString());
}

void TestCalculationDialogs::runChecksInOrder_data()
{
    QTest::addColumn<bool>("seven");
    QTest::addColumn<int>("checked");
    QTest::addColumn<QString>("importLine");
    QTest::addColumn<QString>("sourceCode");   // seven: picked as source; empty: the picker is cancelled
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");      // empty: runs
    QTest::newRow("4: one point") << false << 1 << "" << "" << "Error" << "Need 2 GCPs at least!";
    QTest::newRow("4: two points") << false << 2 << "" << "" << "" << "";
    QTest::newRow("7: two points") << true << 2 << "other -- pair" << "EPSG:4214" << "Error" << "Need 3 GCPs at least!";
    QTest::newRow("7: imported pair differs")
        << true << 3 << "GCS_Beijing_1954 -- Beijing_1954_3_Degree_GK_CM_117E" << "EPSG:4214" << "Warning"
        << "The Transformation model for the imported data is different from the currently selected elipsoid.Please "
           "reselect the ellipsoid!";
    QTest::newRow("7: same geographic system") << true << 3 << "" << "EPSG:4214" << "Error"
                                               << "The Source Spheroid must be different with target Spheroid!";
    QTest::newRow("7: picker cancelled, imported pair in other case") << true << 3 << kDefaultPair.toUpper() << ""
                                                                     << "" << "";
}

void TestCalculationDialogs::runChecksInOrder()
{
    QFETCH(bool, seven);
    QFETCH(int, checked);
    QFETCH(QString, importLine);
    QFETCH(QString, sourceCode);
    QFETCH(QString, title);
    QFETCH(QString, message);
    Calc calc(seven);
    if (seven) {
        QVERIFY(calc.choose(true, sourceCode));
        const auto* combo = child<QComboBox>(calc.dlg.get(), "comboBox_srcSpaRef");
        QCOMPARE(combo->count() * 10 + combo->currentIndex(), 21);   // two items, the system selected
        child<QLineEdit>(calc.dlg.get(), "lineEdit_ImportModel")->setText(importLine);
    }
    calc.fill(somePoints(seven, 4));
    for (int i = checked; i < 4; ++i)
        setChecked(*calc.dlg, i, false);
    ModalDriver driver;
    if (!message.isEmpty())
        driver.answerMessageBox();
    calc.press("run");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (message.isEmpty()) {
        QVERIFY2(calc.result().startsWith("DX(m)="), qPrintable(calc.result()));
        return;
    }
    QCOMPARE(driver.messages().first().title, title);
    QCOMPARE(driver.messages().first().text, message);
    QCOMPARE(calc.result(), QString());
}

void TestCalculationDialogs::editAndRemove_data()
{
    QTest::addColumn<bool>("seven");
    QTest::newRow("four") << false;
    QTest::newRow("seven") << true;
}

void TestCalculationDialogs::editAndRemove()
{
    QFETCH(bool, seven);
    Calc calc(seven);
    const QList<QStringList> points = somePoints(seven, 7);
    calc.fill(points.mid(0, 3));
    // Filled rows go, an empty row in the selection is skipped.
    for (int r : {0, 4})
        calc.table()->selectionModel()->select(calc.table()->model()->index(r, 0),
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
    calc.press("remove");
    QCOMPARE(calc.table()->rowCount(), 4);
    QCOMPARE(calc.cell(1, 0) + calc.cell(2, 0), QStringLiteral("2<none>"));
    calc.fill(points.mid(3));
    QCOMPARE(calc.table()->rowCount(), 6);   // the fifth and sixth points insert rows
    QCOMPARE(calc.cell(5, 0), QStringLiteral("6"));

    calc.table()->setCurrentCell(1, 2);
    calc.press("editPoint");
    QCOMPARE(calc.button("editPoint")->text(), QStringLiteral("Stop Edit"));
    for (const char* b : {"addPoint", "remove", "run", "save"})
        QVERIFY2(!calc.button(b)->isEnabled(), b);
    // Each line edit shows and then writes its own column of the edited row.
    const int n = calc.edits().size();
    for (int i = 0; i < n; ++i) {
        QCOMPARE(calc.input(i)->text(), calc.cell(1, i + 1));
        calc.input(i)->setText(QString::number(i + 1) + ".5");
    }
    for (int i = 0; i < n; ++i)
        QCOMPARE(calc.cell(1, i + 1), QString::number(i + 1) + ".5");
    calc.table()->setCurrentCell(1, 4);   // same row: nothing moves
    QCOMPARE(calc.input(0)->text(), QStringLiteral("1.5"));
    const QStringList row2 = calc.row(2);
    calc.table()->setCurrentCell(2, 0);   // the edit follows the row
    QCOMPARE(calc.input(0)->text(), row2.at(1));
    calc.press("editPoint");
    QCOMPARE(calc.button("editPoint")->text(), QStringLiteral("Edit"));
    QVERIFY(calc.button("run")->isEnabled());
    QCOMPARE(calc.input(0)->text(), QString());
    QCOMPARE(calc.row(2), row2);

    // Removing rows 2 and 4 renumbers the rest and keeps their check states.
    QStringList row4 = calc.row(4);
    setChecked(*calc.dlg, 4, false);
    calc.table()->clearSelection();
    for (int r : {1, 3})
        calc.table()->selectionModel()->select(calc.table()->model()->index(r, 0),
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
    calc.press("remove");
    row4[0] = QStringLiteral("3");
    QCOMPARE(calc.row(2), row4);
    QCOMPARE(calc.table()->item(2, 0)->checkState(), Qt::Unchecked);
    QCOMPARE(calc.cell(3, 0), QStringLiteral("4"));
    QCOMPARE(calc.table()->rowCount(), 4);
}

void TestCalculationDialogs::recoversKnownParametersThenFails_data()
{
    QTest::addColumn<bool>("seven");
    QTest::addColumn<QVector<double>>("tolerances");   // per result value
    QTest::addColumn<double>("residual");               // of the good points, at most
    QTest::addColumn<bool>("identical");                // failing points identical, else on one vertical line
    const QVector<double> four{0.01, 0.01, 1e-7, 1e-9}, seven{0.05, 0.05, 0.05, 0.002, 0.002, 0.002, 1e-8};
    QTest::newRow("four: plane grids, identical points") << false << four << 0.001 << true;
    QTest::newRow("seven: Beijing 1954 GK to WGS 84, identical points") << true << seven << 0.002 << true;
    QTest::newRow("seven: Beijing 1954 GK to WGS 84, one vertical") << true << seven << 0.002 << false;
}

void TestCalculationDialogs::recoversKnownParametersThenFails()
{
    QFETCH(bool, seven);
    QFETCH(QVector<double>, tolerances);
    QFETCH(double, residual);
    QFETCH(bool, identical);
    const int n = 10;
    QList<QStringList> points = seven ? sevenParameterPoints(kParams7, n) : fourParameterPoints(kParams4, n);
    // The last point's easting is 0.5 m off; it stays unchecked at first.
    const int east = seven ? 1 : 3;
    points.last()[east] = fixed(points.last().at(east).toDouble() + 0.5, 4);
    Calc calc(seven);
    if (seven) {
        QVERIFY(calc.choose(true, "EPSG:2436") && calc.choose(false, "EPSG:4326"));
        QCOMPARE(calc.row(-1).mid(1, 5), (QStringList{"SourceX", "SourceY", "SourceH", "TargetB", "TargetL"}));
    }
    calc.fill(points);
    setChecked(*calc.dlg, n - 1, false);
    calc.press("run");
    const QStringList lines = calc.result().split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), tolerances.size() + 1);
    QVERIFY(seven ? lines.at(3).startsWith("ω(″)=") && lines.at(5).startsWith("γ(″)=") : lines.at(2).startsWith("T(゜)="));
    QCOMPARE(lines.at(tolerances.size() - 1).section('.', 1).size(), 12);
    const QVector<double> r = resultValues(calc.result());
    for (int i = 0; i < tolerances.size(); ++i)
        QVERIFY2(std::abs(r[i] - (seven ? kParams7[i] : kParams4[i])) < tolerances[i], qPrintable(calc.result()));
    for (int i = 0; i < n - 1; ++i) {
        for (int c = calc.residual(); c < calc.columns(); ++c)
            QVERIFY2(std::abs(calc.cell(i, c).toDouble()) <= residual && calc.cell(i, c).section('.', 1).size() == 3,
                     qPrintable(calc.cell(i, c)));
    }
    QCOMPARE(calc.cell(n - 1, calc.residual()), QString());

    // With the bad point in and another one out, the bad one stands out.
    setChecked(*calc.dlg, n - 1, true);
    setChecked(*calc.dlg, 1, false);
    calc.press("run");
    QCOMPARE(calc.row(1).mid(calc.residual()), QStringList(seven ? QStringList{"", ""} : QStringList{""}));
    double worstOther = 0;
    for (int i = 0; i < n - 1; ++i)
        worstOther = std::max(worstOther, calc.cell(i, calc.residual()).toDouble());
    const double moved = calc.cell(n - 1, calc.residual()).toDouble();
    QVERIFY2(moved > 0.25 && moved > 2 * worstOther, qPrintable(QStringLiteral("%1 vs %2").arg(moved).arg(worstOther)));

    // The shown result goes to the save dialog and into the store; a
    // projected side is saved under its geographic system's name.
    ModalDriver driver;
    driver.handleModal(seven ? "Save7ParamsResultDlg" : "Save4ParamsResultDlg", [seven](QWidget* w) {
        if (!seven) {
            child<QLineEdit>(w, "lineEdit_src")->setText(QStringLiteral("Grid A"));
            child<QLineEdit>(w, "lineEdit_des")->setText(QStringLiteral("Grid B"));
        }
        click(w, seven ? "pushButton_OK" : "pushButton_Ok");
    });
    driver.answerMessageBox();
    calc.press("save");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, QStringLiteral("save result success!"));
    TransformModel model;
    QVERIFY(ModelStore::Find(seven ? ModelStore::Params7 : ModelStore::Params4,
                             seven ? "GCS_Beijing_1954-to-GCS_WGS_1984" : "Grid A-to-Grid B", &model));
    const QVector<double> shown = resultValues(calc.result());
    for (int i = 0; i < shown.size(); ++i)
        QCOMPARE(fixed(model.Params.value(i), 6), fixed(shown.at(i), 6));

    // Three points no model fits: "Calculate Error!" (never NaN), the old
    // residuals stay, and Save refuses.
    const QString kept = calc.cell(0, calc.residual());
    for (int i = 0; i < n; ++i)
        setChecked(*calc.dlg, i, false);
    for (int i = 0; i < 3; ++i) {
        QStringList p = points.first();
        if (!identical)
            p[2] = p[5] = QString::number(100 * i);
        calc.add(p);
    }
    calc.press("run");
    QCOMPARE(calc.result(), QStringLiteral("Calculate Error!"));
    QCOMPARE(calc.cell(0, calc.residual()), kept);
    driver.answerMessageBox();
    calc.press("save");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().last().title, QStringLiteral("Information"));
    QCOMPARE(driver.messages().last().text, QStringLiteral("Please run calculation first and get a correct result !"));
}

void TestCalculationDialogs::exportImportRoundTrip_data()
{
    QTest::addColumn<bool>("seven");
    QTest::addColumn<QString>("name");   // empty: into a folder that does not exist
    QTest::addColumn<QString>("separator");
    QTest::newRow("4: txt") << false << "points.txt" << "\t";
    QTest::newRow("4: upper-case CSV") << false << "points.CSV" << ",";
    QTest::newRow("4: a.b.txt") << false << "a.b.txt" << "\t";
    QTest::newRow("4: a.b.csv ends in .b.csv") << false << "a.b.csv" << "\t";
    QTest::newRow("4: missing folder") << false << "" << "";
    QTest::newRow("7: txt") << true << "gcp.txt" << "\t";
    QTest::newRow("7: csv") << true << "gcp.csv" << ",";
}

void TestCalculationDialogs::exportImportRoundTrip()
{
    QFETCH(bool, seven);
    QFETCH(QString, name);
    QFETCH(QString, separator);
    const QString path = KivTest::scratchDir() + (name.isEmpty() ? QStringLiteral("/missing/points.csv") : "/" + name);
    Calc calc(seven);
    calc.fill(somePoints(seven, 4));
    setChecked(*calc.dlg, 1, false);
    calc.press("run");
    ModalDriver driver;
    driver.answerFileDialog(path);
    if (!name.isEmpty())
        driver.answerMessageBox();
    calc.press("Export");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
    if (name.isEmpty()) {   // silently nothing
        QVERIFY(driver.messages().isEmpty() && !QFile::exists(path));
        return;
    }
    QCOMPARE(driver.fileDialogs().first().caption, QStringLiteral("Open Text File"));
    QCOMPARE(driver.fileDialogs().first().nameFilters, (QStringList{"Text Files (*.txt)", "CSV Files(*.csv)"}));
    QCOMPARE(driver.messages().first().text, QStringLiteral("Export success!"));
    QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
    QCOMPARE(KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(), KivTest::scratchDir());

    QStringList lines = QTextCodec::codecForName("GB18030")->toUnicode(KivTest::readFile(path)).split('\n');
    if (seven) {
        QCOMPARE(lines.mid(0, 2), (QStringList{kDefaultPair, ""}));
        lines = lines.mid(2);
    }
    const int resultLines = seven ? 8 : 5;
    QCOMPARE(lines.mid(0, resultLines).join('\n'), calc.result());
    QStringList expected{calc.row(-1).join(separator) + separator};
    for (int row : {0, 2, 3})   // not the unchecked second point
        expected << calc.row(row).join(separator) + separator;
    QCOMPARE(lines.mid(resultLines), expected + QStringList{""});

    // Imported points follow the ones already there, checked and renumbered.
    Calc other(seven);
    other.add(somePoints(seven, 2).first());
    driver.answerFileDialog(path);
    other.press("Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    for (int i = 0; i < 3; ++i) {
        QStringList row = calc.row(i == 0 ? 0 : i + 1);
        row[0] = QString::number(i + 2);
        QCOMPARE(other.row(i + 1), row);
        QCOMPARE(other.table()->item(i + 1, 0)->checkState(), Qt::Checked);
    }
    QVERIFY(!other.table()->item(4, 0));
    if (seven) {
        // The imported pair is the current one: Run is allowed.
        QCOMPARE(child<QLineEdit>(other.dlg.get(), "lineEdit_ImportModel")->text(), kDefaultPair);
        setChecked(*other.dlg, 0, false);
        other.press("run");
        QCOMPARE(other.result(), calc.result());
    }
}

void TestCalculationDialogs::importReadsPointLines_data()
{
    QTest::addColumn<bool>("seven");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("points");   // the rows read, cells joined by "|"; empty: not a valid file
    const QString chinese = QString::fromUtf8("控制点一,3600000.125,500100.5,3600010.25,500090.75\n"
                                              "Checked,SourceX,SourceY,TargetX,TargetY,RMS,\n"
                                              "北京点二,3610000.5,501200.25,3610011.75,501190.125,0.004\n");
    QTest::newRow("4: GBK names, five and six parts")
        << false << "控制点.csv" << QTextCodec::codecForName("GBK")->fromUnicode(chinese)
        << QStringList{"1|3600000.125|500100.5|3600010.25|500090.75|", "2|3610000.5|501200.25|3610011.75|501190.125|0.004"};
    QTest::newRow("4: empty") << false << "p.txt" << QByteArray() << QStringList();
    QTest::newRow("4: binary") << false << "p.txt" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\xff\xfe\x01", 19) << QStringList();
    QTest::newRow("4: four or seven parts") << false << "p.txt" << QByteArray("a -- b\n\n1\t2\t3\t4\n1\t2\t3\t4\t5\t6\t7\n")
                                            << QStringList();
    // An eighth part alone is no residual; ten parts or six are no point.
    QTest::newRow("7: seven to nine parts")
        << true << "p.txt"
        << QByteArray("DX(m)=1\r\nChecked\tSourceB\tSourceL\tSourceH\tTargetX\tTargetY\tTargetH\tPRMS\tHRMS\t\n"
                      "1\t30\t102\t5\t1\t2\t3\t0.5\n7\t31\t103\t5\t1\t2\t3\t0.5\t0.25\t\n"
                      "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\n1\t2\t3\t4\t5\t0.1\n9\t32\t104\t5\t1\t2\t3\n")
        << QStringList{"1|30|102|5|1|2|3||", "2|31|103|5|1|2|3|0.5|0.25", "3|32|104|5|1|2|3||"};
}

void TestCalculationDialogs::importReadsPointLines()
{
    QFETCH(bool, seven);
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QStringList, points);
    const QString path = KivTest::scratchDir() + QLatin1Char('/') + name;
    QVERIFY(KivTest::writeFile(path, content));
    Calc calc(seven);
    ModalDriver driver;
    driver.answerFileDialog(path);
    if (points.isEmpty())
        driver.answerMessageBox();
    calc.press("Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (points.isEmpty())
        QCOMPARE(driver.messages().first().text + driver.messages().first().title, "This File is not Vaild!Information");
    QStringList rows;
    for (int r = 0; calc.table()->item(r, 0); ++r)
        rows << calc.row(r).join('|');
    QCOMPARE(rows, points);
    if (seven)
        QCOMPARE(child<QLineEdit>(calc.dlg.get(), "lineEdit_ImportModel")->text(), QString());
}

KIV_TEST_CLASS(TestCalculationDialogs)

void TestCalculationDialogs::qualityReport_data()
{
    QTest::addColumn<bool>("seven");
    QTest::newRow("four") << false;
    QTest::newRow("seven") << true;
}

// The added button: refuses before a run, then shows the last run's report,
// which names the wrong point, saves as PDF and puts the residual vectors on
// the host's map, where kivdesk's renderer draws them.
void TestCalculationDialogs::qualityReport()
{
    QFETCH(bool, seven);
    KivTest::FakeHost host;
    Calc calc(seven, &host);
    if (seven)
        QVERIFY(calc.choose(true, "EPSG:2436") && calc.choose(false, "EPSG:4326"));
    ModalDriver driver;
    driver.answerMessageBox();
    calc.press("QualityReport");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().last().text, QStringLiteral("Please run calculation first and get a correct result !"));

    QList<QStringList> points = seven ? sevenParameterPoints(kParams7, 9) : fourParameterPoints(kParams4, 9);
    const int east = seven ? 1 : 3;
    points[4][east] = fixed(points[4].at(east).toDouble() + 0.5, 4);
    calc.fill(points);
    calc.press("run");
    const QString pdf = KivTest::scratchDir() + QStringLiteral("/quality report.pdf");
    QString text;
    driver.handleModal("ControlPointReportDlg", [&](QWidget* w) {
        text = child<QPlainTextEdit>(w, "plainTextEdit_Report")->toPlainText();
        driver.answerFileDialog(pdf);
        driver.answerMessageBox();
        click(w, "pushButton_SavePdf");
        click(w, "pushButton_ShowOnMap");
        click(w, "pushButton_Close");
    });
    calc.press("QualityReport");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY2(text.contains(QStringLiteral("Point 5 holds a gross error")), qPrintable(text));
    QCOMPARE(KivTest::readFile(pdf).left(4), QByteArray("%PDF"));

    QCOMPARE(host.map->GetLayerCount(), 1);
    auto layer = host.map->GetLayer(0);
    const auto factor = QRegularExpression(QStringLiteral("vectors x (\\d+)\\)")).match(layer->GetName());
    QVERIFY2(factor.hasMatch(), qPrintable(layer->GetName()));
    // The longest vector is the wrong point's, from where its target lies.
    GDALDatasetH ds = GDALOpenEx(layer->GetSourcePath().toUtf8().constData(), GDAL_OF_VECTOR, nullptr, nullptr, nullptr);
    QVERIFY(ds);
    OGRLayerH vectors = GDALDatasetGetLayerByName(ds, "residual_vectors");
    QVERIFY(vectors);
    QCOMPARE(OGR_L_GetFeatureCount(vectors, TRUE), GIntBig(9));
    QString longest, flagged;
    double longestLength = 0, planeOfLongest = 0;
    QPointF from, to;
    while (OGRFeatureH f = OGR_L_GetNextFeature(vectors)) {
        OGRGeometryH g = OGR_F_GetGeometryRef(f);
        const QPointF a(OGR_G_GetX(g, 0), OGR_G_GetY(g, 0)), b(OGR_G_GetX(g, 1), OGR_G_GetY(g, 1));
        const QString id = QString::fromUtf8(OGR_F_GetFieldAsString(f, 0));
        if (OGR_F_GetFieldAsInteger(f, 1))
            flagged += id;
        if (QLineF(a, b).length() > longestLength) {
            longestLength = QLineF(a, b).length(), planeOfLongest = OGR_F_GetFieldAsDouble(f, 2);
            longest = id, from = a, to = b;
        }
        OGR_F_Destroy(f);
    }
    GDALClose(ds);
    QCOMPARE(flagged, QStringLiteral("5"));
    QCOMPARE(longest, QStringLiteral("5"));
    const int north = seven ? 3 : 2;
    QCOMPARE(from, QPointF(points[4][north + 1].toDouble(), points[4][north].toDouble()));
    if (!seven)  // metres on both axes
        QVERIFY(qAbs(longestLength / factor.captured(1).toDouble() - planeOfLongest) < 1e-6);

    MapRenderer renderer;
    renderer.sync(*host.map);
    QRectF extent;
    QVERIFY(renderer.fullExtent(*host.map, &extent));
    const QImage image = renderer.render(*host.map, extent, QSize(200, 200));
    QVERIFY(renderer.takeProblems().isEmpty());
    const QPointF middle = LayerSource::View(extent, image.size()).toScreen((from.x() + to.x()) / 2, (from.y() + to.y()) / 2);
    int drawn = 0;
    for (int dx = -1; dx <= 1; ++dx) {
        for (int dy = -1; dy <= 1; ++dy)
            drawn += image.pixel(middle.toPoint() + QPoint(dx, dy)) == renderer.layerColor(layer.get()).rgba();
    }
    QVERIFY2(drawn > 0, "no line where the wrong point's vector lies");

    // The layer's memory goes with the layer, once the map drops it.
    const QByteArray memory = layer->GetSourcePath().toUtf8();
    QVERIFY(host.map->RemoveLayer(0));
    renderer.sync(*host.map);
    layer = nullptr;
    VSIStatBufL stat;
    QVERIFY(VSIStatL(memory.constData(), &stat) != 0);
}

#include "tst_CalculationDialogs.moc"
