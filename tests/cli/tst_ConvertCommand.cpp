#include "CliRegistry.h"

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileDataProjTransDlg.h"
#include "textfiles/FileFormatDirectory.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextCodec>
#include <QTextStream>

#include <proj.h>

#include <cmath>

namespace {

const char kStore[] =
    "<CoordTransform><Params4>"
    "<GeoTransformsModel TransName=\"four-a\" DX=\"100\" DY=\"-50\" T=\"0.001\" K=\"1.00001\"/>"
    "</Params4><Params7>"
    "<GeoTransformsModel TransName=\"seven-a\" DX=\"-12.5\" DY=\"-130.3\" DZ=\"-80.1\" w=\"0.5\" k=\"-1.2\" "
    "r=\"2\" m=\"0.000004\"/>"
    "</Params7></CoordTransform>";

struct Run
{
    int status;
    QString err;
};

Run convert(const QStringList& args)
{
    QString outText, errText;
    QTextStream out(&outText), err(&errText);
    const int status = CliRegistry::instance().run(QStringList{QStringLiteral("convert")} + args, out, err);
    err.flush();
    return {status, errText};
}

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

// Converts `in` to `out` in the dialog, as a user would.
bool convertInDialog(const QString& format, const QString& in, const QString& out, const QString& from,
                     const QString& to, const QString& model, QString* problem)
{
    FileDataProjTransDlg dlg;
    auto* formats = dlg.findChild<QComboBox*>(QStringLiteral("comboBox"));
    for (int i = 0; i < formats->count(); ++i) {
        if (formats->itemText(i).startsWith(format + QStringLiteral(".xml ")))
            formats->setCurrentIndex(i);
    }
    KivTest::ModalDriver driver;
    driver.answerFileDialog(in);
    dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Input"))->click();
    KivTest::answerSelector(driver, from);
    dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Original"))->click();
    KivTest::answerSelector(driver, to);
    dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Target"))->click();
    auto* models = dlg.findChild<QComboBox*>(QStringLiteral("comboBox_Model"));
    models->setCurrentIndex(models->findText(model));
    driver.answerFileDialog(out);
    dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Output"))->click();
    dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Transform"))->click();
    if (!driver.verify() || !driver.messages().isEmpty()) {
        *problem = driver.report();
        return false;
    }
    return true;
}

} // namespace

class TestConvertCommand : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }

    void refusesWhatItCannotDo_data();
    void refusesWhatItCannotDo();
    void writesTheSameBytesAsTheDialog_data();
    void writesTheSameBytesAsTheDialog();
    void countsSkippedLinesAndFailedPoints();
    void withoutModelUsesProj();
};

void TestConvertCommand::init()
{
    KivTest::resetData();
    KivTest::writeFile(KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml"),
                       kStore);
    KivTest::writeFile(scratch(QStringLiteral("in.txt")), "A,30,120,5\nB,31,121,6\n");
    KivTest::writeFile(scratch(QStringLiteral("short.txt")), "A,30,120,5\nB,31,121\n");
}

void TestConvertCommand::refusesWhatItCannotDo_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    const QString in = scratch(QStringLiteral("in.txt"));
    const QString out = scratch(QStringLiteral("out.txt"));
    const QStringList base{"--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4326"};
    QTest::newRow("no format") << QStringList{"--from", "EPSG:4214", "--to", "EPSG:4326", in, out}
                               << "--format is required";
    QTest::newRow("unknown format") << QStringList{"--format", "nope", "--from", "EPSG:4214", "--to", "EPSG:4326", in, out}
                                    << "no format \"nope\"";
    QTest::newRow("two models") << base + QStringList{"--model", "seven-a", "--params4", "1,2,3,4", in, out}
                                << "at most one of";
    QTest::newRow("six values") << base + QStringList{"--params7", "1,2,3,4,5,6", in, out}
                                << "--params7 needs seven numbers";
    QTest::newRow("one file") << base + QStringList{in} << "expected INPUT and OUTPUT";
    QTest::newRow("unknown system") << QStringList{"--format", "General", "--from", "EPSG:999999", "--to",
                                                   "EPSG:4326", in, out}
                                    << "unknown coordinate system";
    QTest::newRow("same system") << QStringList{"--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4214",
                                                in, out}
                                 << "the same";
    QTest::newRow("unknown model") << base + QStringList{"--model", "Seven-A", in, out}
                                   << "no 7-parameter model named \"Seven-A\"";
    QTest::newRow("output is the input") << base + QStringList{"--model", "seven-a", in,
                                                               KivTest::scratchDir() + "/sub/../in.txt"}
                                         << "OUTPUT is the input file";
    QTest::newRow("missing input") << base + QStringList{"--model", "seven-a", scratch("none.txt"), out}
                                   << "cannot open";
    QTest::newRow("missing column") << base + QStringList{"--model", "seven-a", scratch("short.txt"), out}
                                    << "line 2 of";
}

void TestConvertCommand::refusesWhatItCannotDo()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const QByteArray before = KivTest::readFile(scratch(QStringLiteral("in.txt")));
    const Run r = convert(args);
    QCOMPARE(r.status, int(CliUsageError));
    QVERIFY2(r.err.contains(message), qPrintable(r.err));
    QVERIFY(!QFile::exists(scratch(QStringLiteral("out.txt"))));
    QCOMPARE(KivTest::readFile(scratch(QStringLiteral("in.txt"))), before);
}

void TestConvertCommand::writesTheSameBytesAsTheDialog_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("content");
    const QByteArray gbk = QTextCodec::codecForName("GBK")->fromUnicode(
        QString::fromUtf8("点号,纬度,经度,高程,备注\n北1,39.9,116.4,50.25,北门\nP2,22.5,114.1,-3,x\n"
                          "P3,north,1,1,skipped\n"));
    QTest::newRow("seven parameters, GBK, txt") << "General_Other" << "EPSG:4214" << "EPSG:4326" << "seven-a"
                                                << "out.txt" << gbk;
    QTest::newRow("seven parameters, GBK, csv") << "General_Other" << "EPSG:4214" << "EPSG:4326" << "seven-a"
                                                << "out.csv" << gbk;
    QTest::newRow("four parameters, zones") << "General" << "EPSG:2435" << "EPSG:2436" << "four-a" << "out.txt"
                                            << QByteArray("K1,4420000.5,500123.25,12\nK2,4300000,480000,0\n");
}

void TestConvertCommand::writesTheSameBytesAsTheDialog()
{
    QFETCH(QString, format);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, model);
    QFETCH(QString, output);
    QFETCH(QByteArray, content);
    const QString in = scratch(QStringLiteral("points.txt"));
    KivTest::writeFile(in, content);
    const QString byDialog = scratch(QStringLiteral("dialog_") + output);
    const QString byCli = scratch(QStringLiteral("cli_") + output);
    QString problem;
    QVERIFY2(convertInDialog(format, in, byDialog, from, to, model, &problem), qPrintable(problem));
    const Run r = convert({"--format", format, "--from", from, "--to", to, "--model", model, in, byCli});
    QVERIFY2(r.status == CliOk || r.status == CliDataErrors, qPrintable(r.err));
    QVERIFY(QFile::exists(byDialog));
    QCOMPARE(KivTest::readFile(byCli), KivTest::readFile(byDialog));
    QCOMPARE(KivTest::readFile(in), content);
}

void TestConvertCommand::countsSkippedLinesAndFailedPoints()
{
    const QString in = scratch(QStringLiteral("mixed.txt"));
    // Far outside the zone of EPSG:2435 a transverse Mercator has no answer.
    KivTest::writeFile(in, "A,39.9,116.4,1\nB,x,116.4,1\nC,39.9,-63.6,1\nD,40,117,1\n");
    const QString out = scratch(QStringLiteral("mixed_out.txt"));
    const Run r = convert({"--format", "General", "--from", "EPSG:4214", "--to", "EPSG:2435", in, out});
    QCOMPARE(r.status, int(CliDataErrors));
    QVERIFY2(r.err.contains(QStringLiteral("1 line(s) skipped")), qPrintable(r.err));
    const QStringList lines = QString::fromUtf8(KivTest::readFile(out)).split('\n', Qt::SkipEmptyParts);
    QStringList ids;
    for (const QString& l : lines)
        ids << l.section(',', 0, 0);
    if (r.err.contains(QStringLiteral("could not be converted"))) {
        QVERIFY2(r.err.contains(QStringLiteral("1 point(s)")) && r.err.contains(QStringLiteral("\"C\"")),
                 qPrintable(r.err));
        QCOMPARE(ids, (QStringList{"A", "D"}));
    } else {
        QCOMPARE(ids, (QStringList{"A", "C", "D"}));
    }
}

void TestConvertCommand::withoutModelUsesProj()
{
    const QString in = scratch(QStringLiteral("in.txt"));
    const QString out = scratch(QStringLiteral("out.txt"));
    const Run r = convert({"--format", "General.xml", "--from", "EPSG:4214", "--to", "EPSG:2435", in, out});
    QCOMPARE(r.status, int(CliOk));
    const QStringList lines = QString::fromUtf8(KivTest::readFile(out)).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);

    PJ_CONTEXT* ctx = proj_context_create();
    PJ* raw = proj_create_crs_to_crs(ctx, "EPSG:4214", "EPSG:2435", nullptr);
    PJ* pj = proj_normalize_for_visualization(ctx, raw);
    const double input[2][2] = {{30, 120}, {31, 121}};
    for (int i = 0; i < 2; ++i) {
        const PJ_COORD c = proj_trans(pj, PJ_FWD, proj_coord(input[i][1], input[i][0], 0, 0));
        const QStringList f = lines.at(i).split(',');
        QVERIFY2(std::abs(f.at(1).toDouble() - c.xy.y) < 1e-6 && std::abs(f.at(2).toDouble() - c.xy.x) < 1e-6,
                 qPrintable(lines.at(i)));
        QCOMPARE(f.at(3), i == 0 ? QStringLiteral("5.000000") : QStringLiteral("6.000000"));
    }
    proj_destroy(pj);
    proj_destroy(raw);
    proj_context_destroy(ctx);

    // The same format given by the path of its file.
    const Run byPath = convert({"--format", FileFormatDirectory::Path() + "/General.xml", "--from", "EPSG:4214",
                                "--to", "EPSG:2435", in, scratch(QStringLiteral("out2.txt"))});
    QCOMPARE(byPath.status, int(CliOk));
    QCOMPARE(KivTest::readFile(scratch(QStringLiteral("out2.txt"))), KivTest::readFile(out));
}

KIV_TEST_CLASS(TestConvertCommand)
#include "tst_ConvertCommand.moc"
