#include "CliRegistry.h"

#include "CoordsTransformUI/models/CalcTestSupport.h"
#include "models/Calculate4ParamsDlg.h"
#include "models/Calculate7ParamsDlg.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QComboBox>
#include <QLabel>
#include <QTest>
#include <QTextStream>

using namespace CalcTest;
using KivTest::ModalDriver;

namespace {

int runCli(const QStringList& args, QString* outText, QString* errText)
{
    QTextStream out(outText), err(errText);
    return CliRegistry::instance().run(args, out, err);
}

} // namespace

class TestCalcCommands : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void dialogExportGivesTheSameResult_data();
    void dialogExportGivesTheSameResult();
    void reportsBadInput_data();
    void reportsBadInput();
};

void TestCalcCommands::dialogExportGivesTheSameResult_data()
{
    QTest::addColumn<bool>("seven");
    QTest::addColumn<QString>("name");
    QTest::newRow("calc4 txt") << false << "four.txt";
    QTest::newRow("calc4 csv") << false << "four.CSV";
    QTest::newRow("calc7 txt") << true << "seven.txt";
    QTest::newRow("calc7 csv") << true << "seven.csv";
}

void TestCalcCommands::dialogExportGivesTheSameResult()
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

    QString out, err;
    const QStringList args = seven ? QStringList{"calc7", "--from", "EPSG:2436", "--to", "EPSG:4326", path}
                                   : QStringList{"calc4", path};
    QCOMPARE(runCli(args, &out, &err), 0);
    QVERIFY2(err.isEmpty(), qPrintable(err));
    QVERIFY2(out.startsWith(block), qPrintable(out));
    const QStringList lines = out.mid(block.size()).split('\n', Qt::SkipEmptyParts);
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

void TestCalcCommands::reportsBadInput_data()
{
    QTest::addColumn<QStringList>("args");     // FILE stands for the written file
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");
    const QByteArray same = "1\t3380000\t520000\t3380010\t520020\t\n2\t3380000\t520000\t3380010\t520020\t\n";
    const QByteArray vertical = "1\t30.5\t102.5\t0\t3380000\t520000\t10\t\n2\t30.5\t102.5\t100\t3380000\t520000\t110\t\n"
                                "3\t30.5\t102.5\t200\t3380000\t520000\t210\t\n";
    const QStringList seven{"calc7", "--from", "EPSG:4326", "--to", "EPSG:2436", "FILE"};
    QTest::newRow("missing file") << QStringList{"calc4", "/nonexistent/gcp.txt"} << QByteArray() << 2 << ""
                                  << "/nonexistent/gcp.txt";
    QTest::newRow("no points") << QStringList{"calc4", "FILE"} << QByteArray("1\t2\t3\n") << 2 << "" << "no control points";
    QTest::newRow("one point") << QStringList{"calc4", "FILE"} << same.left(same.indexOf('\n') + 1) << 1 << ""
                               << "Need 2 GCPs at least!";
    QTest::newRow("identical points") << QStringList{"calc4", "FILE"} << same << 1 << "Calculate Error!" << "";
    QTest::newRow("no target") << QStringList{"calc7", "--from", "EPSG:4326", "FILE"} << vertical << 2 << "" << "--to";
    QTest::newRow("unknown system") << QStringList{"calc7", "--from", "EPSG:999999", "--to", "EPSG:2436", "FILE"}
                                    << vertical << 2 << "" << "EPSG:999999";
    QTest::newRow("one geographic system") << QStringList{"calc7", "--from", "EPSG:4214", "--to", "EPSG:2436", "FILE"}
                                           << vertical << 2 << "" << "The Source Spheroid must be different";
    QTest::newRow("collinear points") << seven << vertical << 1 << "Calculate Error!" << "";
    QTest::newRow("two points") << seven << vertical.left(vertical.lastIndexOf("3\t")) << 1 << ""
                                << "Need 3 GCPs at least!";
}

void TestCalcCommands::reportsBadInput()
{
    QFETCH(QStringList, args);
    QFETCH(QByteArray, content);
    QFETCH(int, status);
    QFETCH(QString, out);
    QFETCH(QString, err);
    const QString path = KivTest::scratchDir() + QStringLiteral("/gcp.txt");
    QVERIFY(KivTest::writeFile(path, content));
    args.replaceInStrings(QRegularExpression("^FILE$"), path);
    QString outText, errText;
    QCOMPARE(runCli(args, &outText, &errText), status);
    QVERIFY2((out.isEmpty() || outText.startsWith(out)) && !outText.contains("nan", Qt::CaseInsensitive), qPrintable(outText));
    QVERIFY2(errText.contains(err), qPrintable(errText));
}

KIV_TEST_CLASS(TestCalcCommands)
#include "tst_CalcCommands.moc"
