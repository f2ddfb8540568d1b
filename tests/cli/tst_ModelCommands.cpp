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

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

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
    void editsTheStore_data();
    void editsTheStore();
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
    QTest::newRow("residual layer") << "--residuals" << 0 << "DX(m)=";
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
    const CliRun run(option == "--json"        ? QStringList{"calc4", "--json", path}
                     : option == "--residuals" ? QStringList{"calc4", "--residuals", dir + "/r.gpkg", path}
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
    } else if (option == "--residuals") {
        // Eight vectors, only point 5's flagged, at the points' target positions.
        GDALDatasetUniquePtr layer(GDALDataset::Open((dir + "/r.gpkg").toUtf8().constData(), GDAL_OF_VECTOR));
        QVERIFY(layer && layer->GetLayerByName("residual_vectors"));
        QStringList flagged;
        for (const auto& feature : *layer->GetLayerByName("residual_vectors"))
            if (feature->GetFieldAsInteger("flagged"))
                flagged << feature->GetFieldAsString("id");
        QCOMPARE(layer->GetLayerByName("residual_vectors")->GetFeatureCount(), 8);
        QCOMPARE(flagged, QStringList{"5"});
    } else if (status == 0) {
        QVERIFY(run.out.startsWith(CliRun({"calc4", path}).out));
        QCOMPARE(KivTest::readFile(pdf).left(4), QByteArray("%PDF"));
    }
    QCOMPARE(QDir(dir).entryList(QDir::Files).size(), option == "--robust" || option == "--residuals" ? 2 : 1);
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

    // The same models as JSON, each made back into its listed line.
    const CliRun json(args + QStringList{"--json"});
    QCOMPARE(json.status, 0);
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(json.out.toUtf8(), &error);
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    QStringList rebuilt{lines.first()};
    for (const QJsonValue& value : doc.object().value("models").toArray()) {
        const QJsonObject m = value.toObject();
        const int kind = m.value("kind").toInt();
        QStringList params;
        for (const QString& key : kind == 7 ? QStringList{"DX", "DY", "DZ", "w", "k", "r", "m"}
                                            : QStringList{"DX", "DY", "T", "K"})
            params << key + '=' + QString::number(m.value("parameters")[key].toDouble(), 'f',
                                                  key == "m" || key == "K" ? 12 : 6);
        rebuilt << QStringList{QString::number(kind), m.value("name").toString(), m.value("source").toString(),
                               m.value("target").toString(), params.join(' ')}.join('\t');
    }
    QCOMPARE(rebuilt, lines);
    QCOMPARE(doc.object().value("problems").toArray().size(), 0);
}

// Each row runs its command lines in turn; the last one's status and message
// are checked, then the store as "models" lists it. FILE is a scratch file,
// POINTS a four-parameter control-point file.
void TestModelCommands::editsTheStore_data()
{
    QTest::addColumn<QList<QStringList>>("commands");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("models"); // kind, name, source, target of each, seven first

    const QString seven = "15.8,-154.4,-82.3,0.52,-1.31,2.17,3.5e-6";
    const QStringList add7{"models", "add", "--kind", "7", "--from", "EPSG:2436", "--to", "EPSG:4326", "--params", seven};
    const QStringList add4{"models", "add", "--kind", "4", "--name", "z", "--from", "EPSG:2436", "--to", "EPSG:2437",
                           "--params", "1,2,0.5,1.00001"};
    const QString name7 = "Beijing 1954-to-WGS 84";
    const QString entered7 = "7\t" + name7 + "\tBeijing 1954\t" + name7;
    const QString srcZone = "Beijing 1954 / 3-degree Gauss-Kruger CM 117E";
    QTest::newRow("add, names proposed, target is the name")
        << QList<QStringList>{add7} << 0 << QString() << QStringList{entered7};
    QTest::newRow("add: name taken") << QList<QStringList>{add7, add7} << 2
                                     << "The TransModelName has been taken,Please input another one! " << QStringList{entered7};
    QTest::newRow("add 4: geographic refused")
        << QList<QStringList>{{"models", "add", "--kind", "4", "--from", "EPSG:4326", "--to", "EPSG:2436", "--params", "1,2,3,4"}}
        << 2 << "Please select a  Projected Coordinate System! " << QStringList();
    QTest::newRow("add 7: same geographic system")
        << QList<QStringList>{{"models", "add", "--kind", "7", "--from", "EPSG:2436", "--to", "EPSG:4214", "--params", seven}}
        << 2 << "The Source Spheroid must be different with target Spheroid!" << QStringList();
    QTest::newRow("add: no source first")
        << QList<QStringList>{{"models", "add", "--kind", "4", "--to", "EPSG:2436", "--params", "1,,3,4"}}
        << 2 << "Please input source spatialreference name! " << QStringList();
    QTest::newRow("add: empty parameter")
        << QList<QStringList>{{"models", "add", "--kind", "4", "--from", "EPSG:2436", "--to", "EPSG:2437", "--params", "1,,3,4"}}
        << 2 << "Please input valid parameter ! " << QStringList();
    QTest::newRow("add: not a number") << QList<QStringList>{{"models", "add", "--kind", "4", "--from", "EPSG:2436", "--to",
                                                              "EPSG:2437", "--params", "1,abc,3,4"}}
                                       << 2 << "\"abc\" is not a number" << QStringList();
    QTest::newRow("rename") << QList<QStringList>{add4, {"models", "rename", "z", "y y"}} << 0 << QString()
                            << QStringList{"4\ty y\t" + srcZone + "\tz"};
    QTest::newRow("rename onto a taken name")
        << QList<QStringList>{add4, {"models", "add", "--kind", "4", "--name", "w", "--from", "EPSG:2436", "--to", "EPSG:2437",
                                     "--params", "0,0,0,1"}, {"models", "rename", "--kind", "4", "z", "w"}}
        << 2 << "The TransModelName has been taken" << QStringList{"4\tz\t" + srcZone + "\tz", "4\tw\t" + srcZone + "\tw"};
    QTest::newRow("remove") << QList<QStringList>{add7, add4, {"models", "remove", name7}} << 0 << QString()
                            << QStringList{"4\tz\t" + srcZone + "\tz"};
    QTest::newRow("remove: unknown") << QList<QStringList>{{"models", "remove", "--kind", "7", "none"}} << 2
                                     << "no 7-parameter model is named \"none\"" << QStringList();
    QTest::newRow("export, import")
        << QList<QStringList>{add4, {"models", "export", "z", "FILE"},
                              {"models", "import", "--kind", "4", "--name", "z2", "--from", "EPSG:2436", "--to", "EPSG:2437", "FILE"}}
        << 0 << QString() << QStringList{"4\tz\t" + srcZone + "\tz", "4\tz2\t" + srcZone + "\tz2"};
    QTest::newRow("calc4 --save") << QList<QStringList>{{"calc4", "--save", "fit", "--from", "a", "--to", "b", "POINTS"}}
                                  << 0 << "save result success!" << QStringList{"4\tfit\ta\tb"};
    QTest::newRow("calc4 --save: taken, not replaced")
        << QList<QStringList>{{"calc4", "--save", "fit", "--from", "a", "--to", "b", "POINTS"},
                              {"calc4", "--save", "fit", "--from", "c", "--to", "d", "POINTS"}}
        << 2 << "Wherher to replace it or not?" << QStringList{"4\tfit\ta\tb"};
    QTest::newRow("calc4 --save --replace")
        << QList<QStringList>{{"calc4", "--save", "fit", "--from", "a", "--to", "b", "POINTS"},
                              {"calc4", "--save", "fit", "--from", "c", "--to", "d", "--replace", "POINTS"}}
        << 0 << QString() << QStringList{"4\tfit\tc\td"};
    QTest::newRow("calc4 --save: no target") << QList<QStringList>{{"calc4", "--save", "fit", "--from", "a", "POINTS"}}
                                             << 2 << "Please input target spatialreference name! " << QStringList();
}

void TestModelCommands::editsTheStore()
{
    QFETCH(QList<QStringList>, commands);
    QFETCH(int, status);
    QFETCH(QString, message);
    QFETCH(QStringList, models);
    const QString file = KivTest::scratchDir() + "/model 模型.txt";
    const QString points = KivTest::scratchDir() + "/points.txt";
    const double params4[4] = {150.5, -80.25, -0.05, 0.99998};
    QByteArray lines;
    int n = 0;
    for (const QStringList& p : fourParameterPoints(params4, 5))
        lines += QByteArray::number(++n) + '\t' + p.join('\t').toUtf8() + "\t\n";
    QVERIFY(KivTest::writeFile(points, lines));

    CliRun last({"models", "--names"});
    for (QStringList args : commands) {
        args.replaceInStrings(QRegularExpression("^FILE$"), file);
        args.replaceInStrings(QRegularExpression("^POINTS$"), points);
        last = CliRun(args);
    }
    QCOMPARE(last.status, status);
    if (message.isEmpty())
        QVERIFY2(last.status != 0 || !last.err.contains("failed"), qPrintable(last.err));
    else
        QVERIFY2((last.err + last.out).contains(message), qPrintable(last.err));
    QStringList listed;
    for (const QString& line : CliRun({"models"}).outLines().mid(1))
        listed << line.section('\t', 0, 3);
    QCOMPARE(listed, models);
}

KIV_TEST_CLASS(TestModelCommands)
#include "tst_ModelCommands.moc"
