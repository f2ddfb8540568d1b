#include "CliRegistry.h"

#include "CoordsTransformUI/textfiles/DialogSteps.h"
#include "support/TestRegistry.h"
#include "textfiles/FileDataProjTransDlg.h"
#include "textfiles/FileFormatDirectory.h"

#include <QTest>
#include <QTextCodec>
#include <QTextStream>

using namespace DialogSteps;

namespace {

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
    writeStore();
    KivTest::writeFile(scratch(QStringLiteral("in.txt")), "A,30,120,5\nB,31,121,6\n");
    KivTest::writeFile(scratch(QStringLiteral("short.txt")), "A,30,120,5\nB,31,121\n");
}

void TestConvertCommand::refusesWhatItCannotDo_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(QStringLiteral("out.txt"));
    const QStringList systems{"--from", "EPSG:4214", "--to", "EPSG:4326"};
    const QStringList base = QStringList{"--format", "General"} + systems;
    QTest::newRow("no format") << systems + QStringList{in, out} << "--format is required";
    QTest::newRow("unknown format") << QStringList{"--format", "nope"} + systems + QStringList{in, out}
                                    << "no format \"nope\"";
    QTest::newRow("two models") << base + QStringList{"--model", "seven-a", "--params4", "1,2,3,4", in, out}
                                << "at most one of";
    QTest::newRow("six values") << base + QStringList{"--params7", "1,2,3,4,5,6", in, out}
                                << "--params7 needs seven numbers";
    QTest::newRow("one file") << base + QStringList{in} << "expected INPUT and OUTPUT";
    QTest::newRow("unknown system") << QStringList{"--format", "General", "--from", "EPSG:999999", "--to", "EPSG:4326",
                                                   in, out}
                                    << "unknown coordinate system";
    QTest::newRow("same system") << QStringList{"--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4214", in, out}
                                 << "the same";
    QTest::newRow("model name in another case") << base + QStringList{"--model", "Seven-A", in, out}
                                                << "no 7-parameter model named \"Seven-A\"";
    QTest::newRow("output is the input") << base + QStringList{"--model", "seven-a", in, scratch("./in.txt")}
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
    const Run r = convert(args);
    QCOMPARE(r.status, int(CliUsageError));
    QVERIFY2(r.err.contains(message), qPrintable(r.err));
    QVERIFY(!QFile::exists(scratch(QStringLiteral("out.txt"))));
    QCOMPARE(KivTest::readFile(scratch(QStringLiteral("in.txt"))), QByteArray("A,30,120,5\nB,31,121,6\n"));
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
        QString::fromUtf8("点号,纬度,经度,高程,备注\n北1,39.9,116.4,50.25,北门\nP2,22.5,114.1,-3,x\nP3,north,1,1,skip\n"));
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
    const QString byDialog = scratch(QStringLiteral("dialog_") + output), byCli = scratch(QStringLiteral("cli_") + output);
    {
        FileDataProjTransDlg dlg;
        chooseFormat(dlg, format + QStringLiteral(".xml"));
        KivTest::ModalDriver driver;
        pickInput(dlg, driver, in);
        pickSystems(dlg, driver, from, to);
        chooseModel(dlg, model);
        edit(dlg, "lineEdit_Output")->setText(byDialog);
        click(dlg, "pushButton_Transform");
        QVERIFY2(driver.verify() && driver.messages().isEmpty(), qPrintable(driver.report()));
    }
    const Run r = convert({"--format", format, "--from", from, "--to", to, "--model", model, in, byCli});
    QVERIFY2(r.status == CliOk || r.status == CliDataErrors, qPrintable(r.err));
    QVERIFY(QFile::exists(byDialog));
    QCOMPARE(KivTest::readFile(byCli), KivTest::readFile(byDialog));
    QCOMPARE(KivTest::readFile(in), content);
}

void TestConvertCommand::countsSkippedLinesAndFailedPoints()
{
    const QString in = scratch(QStringLiteral("mixed.txt")), out = scratch(QStringLiteral("mixed_out.txt"));
    // A latitude beyond the pole cannot be converted.
    KivTest::writeFile(in, "A,39.9,116.4,1\nB,x,116.4,1\nC,95,116.4,1\nD,40,117,1\n");
    const Run r = convert({"--format", "General", "--from", "EPSG:4214", "--to", "EPSG:2435", in, out});
    QCOMPARE(r.status, int(CliDataErrors));
    QVERIFY2(r.err.contains(QStringLiteral("1 line(s) skipped")), qPrintable(r.err));
    QVERIFY2(r.err.contains(QStringLiteral("1 point(s) could not be converted")) && r.err.contains(QStringLiteral("\"C\"")),
             qPrintable(r.err));
    QStringList ids;
    for (const QString& l : QString::fromUtf8(KivTest::readFile(out)).split('\n', Qt::SkipEmptyParts))
        ids << l.section(',', 0, 0);
    QCOMPARE(ids, (QStringList{"A", "D"}));
}

void TestConvertCommand::withoutModelUsesProj()
{
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(QStringLiteral("out.txt"));
    const QString formatFile = FileFormatDirectory::Path() + QStringLiteral("/General.xml");
    const Run r = convert({"--format", formatFile, "--from", "EPSG:4214", "--to", "EPSG:2435", in, out});
    QCOMPARE(r.status, int(CliOk));
    const QStringList lines = QString::fromUtf8(KivTest::readFile(out)).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    for (int i = 0; i < 2; ++i) {
        double north = 30 + i, east = 120 + i;
        QVERIFY(projTransform(QStringLiteral("EPSG:4214"), QStringLiteral("EPSG:2435"), north, east));
        const QStringList f = lines.at(i).split(',');
        QVERIFY2(std::abs(f.at(1).toDouble() - north) < 1e-6 && std::abs(f.at(2).toDouble() - east) < 1e-6,
                 qPrintable(lines.at(i)));
        QCOMPARE(f.at(3), QString::number(5 + i, 'f', 6));
    }
}

KIV_TEST_CLASS(TestConvertCommand)
#include "tst_ConvertCommand.moc"
