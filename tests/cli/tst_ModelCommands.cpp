// calc4 and calc7 against the calculation dialogs; models against the store.

#include "CliRun.h"

#include "CoordsTransformUI/models/CalcTestSupport.h"
#include "models/Calculate4ParamsDlg.h"
#include "models/Calculate7ParamsDlg.h"
#include "models/ModelStore.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "models/ControlPointFile.h"

#include <QComboBox>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QTest>

using namespace CalcTest;
using KivTest::ModalDriver;

class TestModelCommands : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void dialogExportGivesTheSameResult_data();
    void dialogExportGivesTheSameResult();
    void qualityOptions_data();
    void qualityOptions();
    void modelsListsTheStore_data();
    void modelsListsTheStore();
};

void TestModelCommands::dialogExportGivesTheSameResult_data()
{
    QTest::addColumn<bool>("seven");
    QTest::addColumn<QString>("name");
    QTest::newRow("calc4, csv") << false << "four.CSV";
    QTest::newRow("calc7, txt") << true << "seven.txt";
}

void TestModelCommands::dialogExportGivesTheSameResult()
{
    QFETCH(bool, seven);
    QFETCH(QString, name);
    const QString path = KivTest::scratchDir() + QLatin1Char('/') + name;
    const double params4[4] = {150.5, -80.25, -0.05, 0.99998};
    const double params7[7] = {25.5, -120.25, -60.75, 0.5, -1.75, 2.25, -2.5e-6};
    std::unique_ptr<QDialog> dlg;
    QStringList edits;
    if (seven) {
        dlg.reset(new Calculate7ParamsDlg);
        ModalDriver driver;
        KivTest::answerSelector(driver, "EPSG:2436");
        KivTest::answerSelector(driver, "EPSG:4326");
        child<QComboBox>(dlg.get(), "comboBox_srcSpaRef")->setCurrentIndex(0);
        child<QComboBox>(dlg.get(), "comboBox_desSpaRef")->setCurrentIndex(0);
        QVERIFY2(driver.verify(), qPrintable(driver.report()));
        edits = QStringList{"lineEdit_SrcB", "lineEdit_SrcL", "lineEdit_SrcH", "lineEdit_DesX", "lineEdit_DesY", "lineEdit_DesH"};
    } else {
        dlg.reset(new Calculate4ParamsDlg);
        edits = QStringList{"lineEdit_X0", "lineEdit_Y0", "lineEdit_X1", "lineEdit_Y1"};
    }
    const QList<QStringList> points = seven ? sevenParameterPoints(params7, 6) : fourParameterPoints(params4, 5);
    for (const QStringList& p : points)
        addPoint(*dlg, edits, p, seven ? "pushButton_Add" : "pushButton_addPoint");
    setChecked(*dlg, 1, false);
    click(dlg.get(), seven ? "pushButton_Run" : "pushButton_run");
    const QString block = child<QLabel>(dlg.get(), "label_Result")->text();
    QVERIFY2(block.startsWith("DX(m)="), qPrintable(block));
    ModalDriver driver;
    driver.answerFileDialog(path);
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_Export");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));

    const CliRun run(seven ? QStringList{"calc7", "--from", "EPSG:2436", "--to", "EPSG:4326", path}
                           : QStringList{"calc4", path});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.err.isEmpty(), qPrintable(run.err));
    QVERIFY2(run.out.startsWith(block), qPrintable(run.out));
    const QStringList lines = run.out.mid(block.size()).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), points.size() - 1);
    const int columns = seven ? 9 : 6;
    for (int i = 0; i < lines.size(); ++i) {
        const int row = i == 0 ? 0 : i + 1;
        QStringList expected;
        for (int c = 0; c < columns; ++c)
            expected << cell(*dlg, row, c);
        QCOMPARE(lines.at(i), expected.join('\t'));
    }
}

void TestModelCommands::qualityOptions_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("expected");  // in the output, or the error
    QTest::newRow("json") << "--json" << 0 << "\"flagged\": true";
    QTest::newRow("robust and report") << "--robust" << 0 << "Point 5 holds a gross error";
    QTest::newRow("report over the input") << "input" << 2 << "would replace the control-point file";
    QTest::newRow("report in a missing folder") << "missing" << 1 << "missing/r.pdf";
}

// Eight points, 0.4 m wrong on point 5.
void TestModelCommands::qualityOptions()
{
    QFETCH(QString, option);
    QFETCH(int, status);
    QFETCH(QString, expected);
    const double params4[4] = {150.5, -80.25, -0.05, 0.99998};
    QList<QStringList> rows;
    int number = 0;
    for (QStringList p : fourParameterPoints(params4, 8)) {
        if (++number == 5)
            p[2] = fixed(p[2].toDouble() + 0.4, 4);
        rows << (QStringList{QString::number(number)} + p);
    }
    const QString dir = KivTest::scratchDir(), path = dir + "/gcp.txt", pdf = dir + "/r.pdf";
    QVERIFY(ControlPointFile(ControlPointFile::FourParameters).Write(path, QString(), "DX(m)=0\r\n",
                                                                      {"Checked", "SourceX", "SourceY", "TargetX", "TargetY", "RMS"},
                                                                      rows));
    const QByteArray input = KivTest::readFile(path);
    const QString report = option == "input" ? path : option == "missing" ? dir + "/missing/r.pdf" : pdf;
    const CliRun run(option == "--json" ? QStringList{"calc4", "--json", path}
                                        : QStringList{"calc4", "--robust", "--report", report, path});
    QCOMPARE(run.status, status);
    QVERIFY2((status ? run.err : run.out).contains(expected), qPrintable(run.out + run.err));
    QCOMPARE(KivTest::readFile(path), input);
    if (option == "--json") {
        const QJsonArray points = QJsonDocument::fromJson(run.out.toUtf8()).object().value("points").toArray();
        QCOMPARE(points.size(), 8);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(points[i].toObject().value("flagged").toBool(), i == 4);
        QCOMPARE(points[4].toObject().value("id").toInt(), 5);
    } else if (status == 0) {
        QVERIFY(run.out.startsWith(CliRun({"calc4", path}).out));
        QCOMPARE(KivTest::readFile(pdf).left(4), QByteArray("%PDF"));
    }
    QCOMPARE(QDir(dir).entryList(QDir::Files).size(), option == "--robust" ? 2 : 1);
}

void TestModelCommands::modelsListsTheStore_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QStringList>("lines");
    const QString header = QStringLiteral("kind\tname\tsource\ttarget\tparameters");
    const QString seven = QStringLiteral("7\t北京54 <to> \"WGS 84\"\tBeijing 1954\tWGS 84\t"
                                         "DX=15.800000 DY=-154.400000 DZ=-82.300000 w=0.520000 k=-1.310000 "
                                         "r=2.170000 m=0.000003500000");
    const QString four = QStringLiteral("4\tzone 39 local\tBeijing 1954 / 3-degree Gauss-Kruger CM 117E\tlocal\t"
                                        "DX=-35.200000 DY=120.700000 T=0.012500 K=1.000012300000");
    const QString four2 = QStringLiteral("4\tshift\ta\tb\tDX=0.500000 DY=0.000000 T=0.000000 K=1.000000000000");
    QTest::newRow("all, seven first") << QStringList{"models"} << QStringList{header, seven, four, four2};
    QTest::newRow("--kind 4") << QStringList{"models", "--kind", "4"} << QStringList{header, four, four2};
    QTest::newRow("--kind=7") << QStringList{"models", "--kind=7"} << QStringList{header, seven};
}

void TestModelCommands::modelsListsTheStore()
{
    QFETCH(QStringList, args);
    QFETCH(QStringList, lines);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, {"zone 39 local", "Beijing 1954 / 3-degree Gauss-Kruger CM 117E", "local",
                                                   {-35.2, 120.7, 0.0125, 1.0000123}}),
             ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params7, {"北京54 <to> \"WGS 84\"", "Beijing 1954", "WGS 84",
                                                   {15.8, -154.4, -82.3, 0.52, -1.31, 2.17, 3.5e-6}}),
             ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, {"shift", "a", "b", {0.5, 0, 0, 1}}), ModelStore::Written);
    const CliRun run(args);
    QCOMPARE(run.status, 0);
    QVERIFY(run.err.isEmpty());
    QCOMPARE(run.outLines(), lines);
}

KIV_TEST_CLASS(TestModelCommands)
#include "tst_ModelCommands.moc"
