#include "CalcTestSupport.h"

#include "models/Calculate4ParamsDlg.h"
#include "models/ModelStore.h"
#include "support/ModalDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivUI/EnvironmentSetting.h"

#include <QHeaderView>
#include <QLabel>
#include <QTest>
#include <QTextCodec>

using namespace CalcTest;
using KivTest::ModalDriver;

namespace {

const QStringList kEdits{"lineEdit_X0", "lineEdit_Y0", "lineEdit_X1", "lineEdit_Y1"};
const double kParams[4] = {-3021.25, 1488.5, 0.0123, 1.000012};

void add(Calculate4ParamsDlg& dlg, const QStringList& texts)
{
    addPoint(dlg, kEdits, texts, "pushButton_addPoint");
}

QStringList row(int i)
{
    return {QString::number(100 + i) + ".5", QString::number(200 + i) + ".25", QString::number(300 + i) + ".0",
            QString::number(400 + i) + ".75"};
}

QString resultText(Calculate4ParamsDlg& dlg)
{
    return child<QLabel>(&dlg, "label_Result")->text();
}

} // namespace

class TestCalculate4ParamsDlg : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void formAndStart();
    void addChecksEachCoordinate_data();
    void addChecksEachCoordinate();
    void sixthPointInsertsARow();
    void removeRenumbers_data();
    void removeRenumbers();
    void editWritesBackAndFollowsTheRow();
    void runNeedsTwoCheckedPoints();
    void recoversKnownParametersAndFlagsAMovedPoint();
    void failedRunClearsTheResult();
    void exportImportRoundTrip_data();
    void exportImportRoundTrip();
    void importReadsPointLines_data();
    void importReadsPointLines();
    void exportIntoMissingFolderIsSilent();
};

void TestCalculate4ParamsDlg::formAndStart()
{
    Calculate4ParamsDlg dlg;
    QCOMPARE(dlg.windowTitle(), QStringLiteral("Four-parameter Calculation"));
    auto* table = child<QTableWidget>(&dlg, "tableWidget");
    QCOMPARE(table->rowCount(), 5);
    QStringList headers;
    for (int c = 0; c < table->columnCount(); ++c)
        headers << table->horizontalHeaderItem(c)->text();
    QCOMPARE(headers, (QStringList{"Checked", "SourceX", "SourceY", "TargetX", "TargetY", "RMS"}));
    QCOMPARE(table->columnWidth(0), 50);
    QVERIFY(!table->verticalHeader()->isVisible() && table->horizontalHeader()->stretchLastSection());
    QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(table->selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(dlg.minimumSize(), dlg.maximumSize());
    QVERIFY(!(dlg.windowFlags() & (Qt::WindowContextHelpButtonHint | Qt::WindowMinimizeButtonHint
                                   | Qt::WindowMaximizeButtonHint)));
    QCOMPARE(child<QPushButton>(&dlg, "pushButton_editPoint")->text(), QStringLiteral("Edit"));
}

void TestCalculate4ParamsDlg::addChecksEachCoordinate_data()
{
    QTest::addColumn<QStringList>("typed");
    QTest::addColumn<QStringList>("stored");   // empty: refused
    QTest::newRow("decimals") << QStringList{"1.5", "-2.25", ".5", "100"} << QStringList{"1.5", "-2.25", ".5", "100"};
    QTest::newRow("integer typed") << QStringList{"5", "6", "7", "8"} << QStringList{"5", "6", "7", "8"};
    QTest::newRow("letters dropped") << QStringList{"1a2.5", "2", "3", "4"} << QStringList{"12.5", "2", "3", "4"};
    QTest::newRow("first empty") << QStringList{"", "2", "3", "4"} << QStringList();
    QTest::newRow("last only a sign") << QStringList{"1", "2", "3", "-"} << QStringList();
}

void TestCalculate4ParamsDlg::addChecksEachCoordinate()
{
    QFETCH(QStringList, typed);
    QFETCH(QStringList, stored);
    Calculate4ParamsDlg dlg;
    for (int i = 0; i < 4; ++i)
        QTest::keyClicks(child<QLineEdit>(&dlg, kEdits.at(i).toLatin1().constData()), typed.at(i));
    ModalDriver driver;
    if (stored.isEmpty())
        driver.answerMessageBox();
    click(&dlg, "pushButton_addPoint");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (stored.isEmpty()) {
        QCOMPARE(driver.messages().first().title, QStringLiteral("Error"));
        QCOMPARE(driver.messages().first().text, QStringLiteral("Input data is incorrect, please re-enter!"));
        QVERIFY(!child<QTableWidget>(&dlg, "tableWidget")->item(0, 0));
        return;
    }
    QCOMPARE(cell(dlg, 0, 0), QStringLiteral("1"));
    for (int c = 1; c <= 4; ++c)
        QCOMPARE(cell(dlg, 0, c), stored.at(c - 1));
    QCOMPARE(child<QLineEdit>(&dlg, "lineEdit_X0")->text(), QString());
}

void TestCalculate4ParamsDlg::sixthPointInsertsARow()
{
    Calculate4ParamsDlg dlg;
    for (int i = 0; i < 6; ++i)
        add(dlg, row(i));
    auto* table = child<QTableWidget>(&dlg, "tableWidget");
    QCOMPARE(table->rowCount(), 6);
    QCOMPARE(cell(dlg, 5, 0), QStringLiteral("6"));
    QCOMPARE(cell(dlg, 5, 4), row(5).at(3));
    QCOMPARE(table->item(5, 0)->checkState(), Qt::Checked);
    QCOMPARE(table->item(5, 2)->textAlignment(), int(Qt::AlignHCenter | Qt::AlignVCenter));
}

void TestCalculate4ParamsDlg::removeRenumbers_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<QList<int>>("selected");
    QTest::addColumn<QList<int>>("remaining");   // original point indexes
    QTest::newRow("rows 2 and 4 of five") << 5 << QList<int>{1, 3} << QList<int>{0, 2, 4};
    QTest::newRow("empty row selected too") << 3 << QList<int>{0, 4} << QList<int>{1, 2};
    QTest::newRow("nothing selected") << 2 << QList<int>{} << QList<int>{0, 1};
}

void TestCalculate4ParamsDlg::removeRenumbers()
{
    QFETCH(int, points);
    QFETCH(QList<int>, selected);
    QFETCH(QList<int>, remaining);
    Calculate4ParamsDlg dlg;
    for (int i = 0; i < points; ++i)
        add(dlg, row(i));
    setChecked(dlg, remaining.last(), false);
    auto* table = child<QTableWidget>(&dlg, "tableWidget");
    for (int r : selected)
        table->selectionModel()->select(table->model()->index(r, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    click(&dlg, "pushButton_remove");
    for (int i = 0; i < remaining.size(); ++i) {
        QCOMPARE(cell(dlg, i, 0), QString::number(i + 1));
        QCOMPARE(cell(dlg, i, 1), row(remaining.at(i)).at(0));
        QCOMPARE(table->item(i, 0)->checkState(), i + 1 == remaining.size() ? Qt::Unchecked : Qt::Checked);
    }
    QVERIFY(!table->item(remaining.size(), 0));
    // The next point follows the remaining ones.
    add(dlg, row(9));
    QCOMPARE(cell(dlg, remaining.size(), 0), QString::number(remaining.size() + 1));
}

void TestCalculate4ParamsDlg::editWritesBackAndFollowsTheRow()
{
    Calculate4ParamsDlg dlg;
    for (int i = 0; i < 3; ++i)
        add(dlg, row(i));
    auto* table = child<QTableWidget>(&dlg, "tableWidget");
    auto* x0 = child<QLineEdit>(&dlg, "lineEdit_X0");
    auto* y1 = child<QLineEdit>(&dlg, "lineEdit_Y1");
    table->setCurrentCell(1, 2);
    click(&dlg, "pushButton_editPoint");
    QCOMPARE(child<QPushButton>(&dlg, "pushButton_editPoint")->text(), QStringLiteral("Stop Edit"));
    for (const char* b : {"pushButton_addPoint", "pushButton_remove", "pushButton_run", "pushButton_save"})
        QVERIFY2(!child<QPushButton>(&dlg, b)->isEnabled(), b);
    QCOMPARE(x0->text(), row(1).at(0));
    QCOMPARE(y1->text(), row(1).at(3));

    x0->setText(QStringLiteral("777.5"));
    QCOMPARE(cell(dlg, 1, 1), QStringLiteral("777.5"));
    table->setCurrentCell(1, 4);                 // same row: nothing moves
    QCOMPARE(x0->text(), QStringLiteral("777.5"));
    table->setCurrentCell(2, 0);                 // the edit follows the row
    QCOMPARE(x0->text(), row(2).at(0));
    y1->setText(QStringLiteral("9.5"));
    QCOMPARE(cell(dlg, 2, 4), QStringLiteral("9.5"));
    QCOMPARE(cell(dlg, 1, 1), QStringLiteral("777.5"));
    QCOMPARE(cell(dlg, 1, 4), row(1).at(3));
    table->setCurrentCell(4, 0);                 // an empty row takes nothing
    x0->setText(QStringLiteral("1.5"));
    QVERIFY(!table->item(4, 1));

    click(&dlg, "pushButton_editPoint");
    QCOMPARE(child<QPushButton>(&dlg, "pushButton_editPoint")->text(), QStringLiteral("Edit"));
    QVERIFY(child<QPushButton>(&dlg, "pushButton_run")->isEnabled());
    QCOMPARE(x0->text(), QString());
    QCOMPARE(cell(dlg, 2, 4), QStringLiteral("9.5"));
}

void TestCalculate4ParamsDlg::runNeedsTwoCheckedPoints()
{
    Calculate4ParamsDlg dlg;
    for (int i = 0; i < 3; ++i)
        add(dlg, row(i));
    setChecked(dlg, 0, false);
    setChecked(dlg, 2, false);
    ModalDriver driver;
    driver.answerMessageBox();
    click(&dlg, "pushButton_run");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().title, QStringLiteral("Error"));
    QCOMPARE(driver.messages().first().text, QStringLiteral("Need 2 GCPs at least!"));
    QCOMPARE(resultText(dlg), QString());
}

void TestCalculate4ParamsDlg::recoversKnownParametersAndFlagsAMovedPoint()
{
    const int n = 10;
    QList<QStringList> points = fourParameterPoints(kParams, n);
    // The last point is a bad measurement; it stays unchecked for the first run.
    points.last()[2] = fixed(points.last().at(2).toDouble() + 0.5, 4);
    Calculate4ParamsDlg dlg;
    for (const QStringList& p : points)
        add(dlg, p);
    setChecked(dlg, n - 1, false);
    click(&dlg, "pushButton_run");
    const QStringList lines = resultText(dlg).split(QStringLiteral("\r\n"));
    QCOMPARE(lines.size(), 5);
    QVERIFY(lines.at(2).startsWith(QString::fromUtf8("T(゜)=")));
    QCOMPARE(lines.at(3).section('.', 1).size(), 12);
    const QVector<double> r = resultValues(resultText(dlg));
    QVERIFY2(std::abs(r[0] - kParams[0]) < 0.01 && std::abs(r[1] - kParams[1]) < 0.01, qPrintable(resultText(dlg)));
    QVERIFY2(std::abs(r[2] - kParams[2]) < 1e-7 && std::abs(r[3] - kParams[3]) < 1e-9, qPrintable(resultText(dlg)));
    for (int i = 0; i < n - 1; ++i)
        QVERIFY2(cell(dlg, i, 5).toDouble() <= 0.001 && cell(dlg, i, 5).section('.', 1).size() == 3,
                 qPrintable(cell(dlg, i, 5)));
    QCOMPARE(cell(dlg, n - 1, 5), QString());

    // With the bad point in, its residual stands out.
    setChecked(dlg, n - 1, true);
    setChecked(dlg, 1, false);
    click(&dlg, "pushButton_run");
    QCOMPARE(cell(dlg, 1, 5), QString());
    double worstOther = 0;
    for (int i = 0; i < n - 1; ++i)
        worstOther = std::max(worstOther, cell(dlg, i, 5).toDouble());
    const double moved = cell(dlg, n - 1, 5).toDouble();
    QVERIFY2(moved > 0.3 && moved > 2 * worstOther, qPrintable(QStringLiteral("%1 vs %2").arg(moved).arg(worstOther)));
}

void TestCalculate4ParamsDlg::failedRunClearsTheResult()
{
    Calculate4ParamsDlg dlg;
    const QList<QStringList> points = fourParameterPoints(kParams, 3);
    for (const QStringList& p : points)
        add(dlg, p);
    click(&dlg, "pushButton_run");
    QVERIFY(resultText(dlg).startsWith(QStringLiteral("DX(m)=")));
    const QString residual = cell(dlg, 0, 5);

    // The result goes to the save dialog and into the store.
    ModalDriver driver;
    driver.handleModal("Save4ParamsResultDlg", [](QWidget* w) {
        child<QLineEdit>(w, "lineEdit_src")->setText(QStringLiteral("Grid A"));
        child<QLineEdit>(w, "lineEdit_des")->setText(QStringLiteral("Grid B"));
        click(w, "pushButton_Ok");
    });
    driver.answerMessageBox();
    click(&dlg, "pushButton_save");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, QStringLiteral("save result success!"));
    TransformModel model;
    QVERIFY(ModelStore::Find(ModelStore::Params4, QStringLiteral("Grid A-to-Grid B"), &model));
    QCOMPARE(fixed(model.Params.value(2), 6), fixed(resultValues(resultText(dlg)).value(2), 6));

    // Identical points: no model can be fitted.
    setChecked(dlg, 2, false);
    auto* table = child<QTableWidget>(&dlg, "tableWidget");
    for (int c = 1; c <= 4; ++c)
        table->item(1, c)->setText(cell(dlg, 0, c));
    click(&dlg, "pushButton_run");
    QCOMPARE(resultText(dlg), QStringLiteral("Calculate Error!"));
    QCOMPARE(cell(dlg, 0, 5), residual);

    driver.answerMessageBox();
    click(&dlg, "pushButton_save");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().last().title, QStringLiteral("Information"));
    QCOMPARE(driver.messages().last().text, QStringLiteral("Please run calculation first and get a correct result !"));
}

void TestCalculate4ParamsDlg::exportImportRoundTrip_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("separator");
    QTest::newRow("txt") << "points.txt" << "\t";
    QTest::newRow("upper-case CSV") << "points.CSV" << ",";
    QTest::newRow("a.b.txt") << "a.b.txt" << "\t";
    QTest::newRow("a.b.csv ends in .b.csv") << "a.b.csv" << "\t";
}

void TestCalculate4ParamsDlg::exportImportRoundTrip()
{
    QFETCH(QString, name);
    QFETCH(QString, separator);
    const QString path = KivTest::scratchDir() + QLatin1Char('/') + name;
    const QList<QStringList> points = fourParameterPoints(kParams, 4);
    Calculate4ParamsDlg dlg;
    for (const QStringList& p : points)
        add(dlg, p);
    setChecked(dlg, 1, false);
    click(&dlg, "pushButton_run");

    ModalDriver driver;
    driver.answerFileDialog(path);
    driver.answerMessageBox();
    click(&dlg, "pushButton_Export");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.fileDialogs().first().caption, QStringLiteral("Open Text File"));
    QCOMPARE(driver.fileDialogs().first().nameFilters, (QStringList{"Text Files (*.txt)", "CSV Files(*.csv)"}));
    QCOMPARE(driver.messages().first().text, QStringLiteral("Export success!"));
    QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
    QCOMPARE(KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(), KivTest::scratchDir());

    const QStringList lines = QTextCodec::codecForName("GB18030")->toUnicode(KivTest::readFile(path)).split('\n');
    QCOMPARE(lines.mid(0, 5).join('\n'), resultText(dlg));
    QCOMPARE(lines.at(5), QStringList({"Checked", "SourceX", "SourceY", "TargetX", "TargetY", "RMS", ""}).join(separator));
    QCOMPARE(lines.at(6), (QStringList{"1"} + points.at(0) + QStringList{cell(dlg, 0, 5), ""}).join(separator));
    QCOMPARE(lines.at(8), (QStringList{"4"} + points.at(3) + QStringList{cell(dlg, 3, 5), ""}).join(separator));
    QCOMPARE(lines.size(), 10);   // the unchecked point is not written

    Calculate4ParamsDlg other;
    add(other, row(0));
    driver.answerFileDialog(path);
    click(&other, "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    for (int i = 0; i < 3; ++i) {
        const int original = i == 0 ? 0 : i + 1;
        QCOMPARE(cell(other, i + 1, 0), QString::number(i + 2));
        QCOMPARE(other.findChild<QTableWidget*>("tableWidget")->item(i + 1, 0)->checkState(), Qt::Checked);
        for (int c = 1; c <= 4; ++c)
            QCOMPARE(cell(other, i + 1, c), points.at(original).at(c - 1));
        QCOMPARE(cell(other, i + 1, 5), cell(dlg, original, 5));
    }
    QVERIFY(!other.findChild<QTableWidget*>("tableWidget")->item(4, 0));
}

void TestCalculate4ParamsDlg::importReadsPointLines_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("second");   // columns 1 to 5 of the second point; empty: no points
    const QString chinese = QString::fromUtf8("控制点一,3600000.125,500100.5,3600010.25,500090.75\n"
                                              "北京点二,3610000.5,501200.25,3610011.75,501190.125,0.004\n");
    const QStringList chineseSecond{"3610000.5", "501200.25", "3610011.75", "501190.125", "0.004"};
    QTest::newRow("GBK names") << QString::fromUtf8("控制点.csv") << QTextCodec::codecForName("GBK")->fromUnicode(chinese)
                               << chineseSecond;
    QTest::newRow("UTF-8 names") << "utf8.csv" << chinese.toUtf8() << chineseSecond;
    QTest::newRow("five parts") << "p.txt" << QByteArray("Checked\tA\n1\t1\t2\t3\t4\n2\t5\t6\t7\t8\t\t\n")
                                << QStringList{"5", "6", "7", "8", ""};
    QTest::newRow("empty") << "p.txt" << QByteArray() << QStringList();
    QTest::newRow("binary") << "p.txt" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\xff\xfe\x01", 19) << QStringList();
    QTest::newRow("four columns") << "p.txt" << QByteArray("1\t2\t3\t4\n5\t6\t7\t8\n") << QStringList();
    QTest::newRow("seven-parameter file") << "p.txt" << QByteArray("a -- b\n\nDX(m)=1\r\n1\t1\t2\t3\t4\t5\t6\t0.1\t0.2\t\n")
                                          << QStringList();
    QTest::newRow("header only") << "p.txt" << QByteArray("Checked\tSourceX\tSourceY\tTargetX\tTargetY\tRMS\t\n")
                                 << QStringList();
}

void TestCalculate4ParamsDlg::importReadsPointLines()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QStringList, second);
    const QString path = KivTest::scratchDir() + QLatin1Char('/') + name;
    QVERIFY(KivTest::writeFile(path, content));
    Calculate4ParamsDlg dlg;
    ModalDriver driver;
    driver.answerFileDialog(path);
    if (second.isEmpty())
        driver.answerMessageBox();
    click(&dlg, "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (second.isEmpty()) {
        QCOMPARE(driver.messages().first().text, QStringLiteral("This File is not Vaild!"));
        QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
        QVERIFY(!dlg.findChild<QTableWidget*>("tableWidget")->item(0, 0));
        return;
    }
    QCOMPARE(cell(dlg, 0, 5), QString());
    QCOMPARE(cell(dlg, 1, 0), QStringLiteral("2"));
    for (int c = 1; c <= 5; ++c)
        QCOMPARE(cell(dlg, 1, c), second.at(c - 1));
}

void TestCalculate4ParamsDlg::exportIntoMissingFolderIsSilent()
{
    Calculate4ParamsDlg dlg;
    add(dlg, row(0));
    const QString path = KivTest::scratchDir() + QStringLiteral("/missing/points.csv");
    ModalDriver driver;
    driver.answerFileDialog(path);
    click(&dlg, "pushButton_Export");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(driver.messages().isEmpty());
    QVERIFY(!QFile::exists(path));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
}

KIV_TEST_CLASS(TestCalculate4ParamsDlg)
#include "tst_Calculate4ParamsDlg.moc"
