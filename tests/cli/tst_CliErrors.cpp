// Command lines that cannot run, or run into data they cannot use: the status,
// the message, and neither an output file written nor the input touched.

#include "CliRun.h"

#include "models/ModelStore.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QFile>
#include <QTest>

class TestCliErrors : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void dispatchAndRefusals_data();
    void dispatchAndRefusals();
};

static QString scratch(const char* name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + QLatin1String(name);
}

void TestCliErrors::init()
{
    KivTest::resetData();
    // The input under another name: an output given through it is still the input.
    QVERIFY(QFile::link(QStringLiteral("in.txt"), scratch("link.txt")));
    QCOMPARE(ModelStore::Add(ModelStore::Params7, {"seven-a", "Beijing 1954", "WGS 84", {-12.5, -130.3, -80.1, 0.5, -1.2, 2, 4e-6}}),
             ModelStore::Written);
}

void TestCliErrors::dispatchAndRefusals_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QByteArray>("input"); // standard input and the content of in.txt
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("out"); // contained in the output; empty: no output
    QTest::addColumn<QString>("err"); // contained in the messages; empty: none
    const QString in = scratch("in.txt"), out = scratch("out.txt");
    const QByteArray point("4376543.211 432109.876\n"), general("A,30,120,5\nB,31,121,6\n");
    const QByteArray same("1\t3380000\t520000\t3380010\t520020\t\n2\t3380000\t520000\t3380010\t520020\t\n");
    const QByteArray vertical("1\t30.5\t102.5\t0\t3380000\t520000\t10\t\n2\t30.5\t102.5\t100\t3380000\t520000\t110\t\n"
                              "3\t30.5\t102.5\t200\t3380000\t520000\t210\t\n");
    const auto row = [](const char* name, const QStringList& args, const QByteArray& input, int status, const char* out,
                        const char* err) { QTest::newRow(name) << args << input << status << QString(out) << QString(err); };
    const auto usage = [&](const char* name, const QStringList& args, const char* err, const QByteArray& input) {
        row(name, args, input, 2, "", err);
    };

    usage("no arguments", {}, "Usage: coordstransform", point);
    row("--help lists commands", {"--help"}, point, 0, "  transform", "");
    row("help command", {"help", "transform"}, point, 0, "Usage: coordstransform transform", "");
    row("command --help", {"transform", "--from", "x", "--help"}, point, 0, "Usage: coordstransform transform", "");
    usage("unknown command", {"frobnicate"}, "unknown command \"frobnicate\"", point);
    usage("unknown option", {"transform", "--bogus"}, "bogus", point);

    const QStringList tr{"transform", "--from", "EPSG:2436", "--to", "EPSG:4214"};
    usage("transform: unknown system", {"transform", "--from", "EPSG:999999", "--to", "EPSG:4326"}, "\"EPSG:999999\"", point);
    usage("transform: unreadable .prj", {"transform", "--from", "EPSG:4214", "--to", "/nonexistent/z.prj"},
          "\"/nonexistent/z.prj\"", point);
    usage("transform: unreadable input", tr + QStringList{"/nonexistent/p.txt"}, "\"/nonexistent/p.txt\"", point);
    usage("transform: unwritable output", tr + QStringList{"-", "/nonexistent/o.txt"}, "\"/nonexistent/o.txt\"", point);
    usage("transform: six values for seven", tr + QStringList{"--params7", "1,2,3,4,5,6"}, "--params7", point);
    usage("transform: not numbers for four", tr + QStringList{"--params4", "1,2,x,4"}, "--params4", point);
    usage("transform: two models", tr + QStringList{"--params4", "1,2,3,4", "--model", "m"}, "only one", point);
    usage("transform: no target", {"transform", "--from", "EPSG:2436"}, "--to", point);
    usage("transform: bad precision", tr + QStringList{"--precision", "-1"}, "--precision", point);
    usage("transform: three files", tr + QStringList{"a", "b", "c"}, "\"c\"", point);
    usage("transform: output is the input", tr + QStringList{in, in}, "is the input file", point);
    usage("transform: output is the input, other spelling", tr + QStringList{in, scratch("../scratch/./in.txt")},
          "is the input file", point);
    usage("transform: output is a link to the input", tr + QStringList{in, scratch("link.txt")}, "is the input file", point);
    usage("transform: output is a full disk", tr + QStringList{in, "/dev/full"}, "cannot write \"/dev/full\"", point);
    usage("transform: --code where the false easting holds the zone",
          {"transform", "--from", "EPSG:2415", "--to", "EPSG:4214", "--code"}, "already holds the zone number", point);

    const QStringList cv{"convert", "--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4326"};
    usage("convert: no format", {"convert", "--from", "EPSG:4214", "--to", "EPSG:4326", in, out}, "--format is required", general);
    usage("convert: unknown format", {"convert", "--format", "nope", "--from", "EPSG:4214", "--to", "EPSG:4326", in, out},
          "no format \"nope\"", general);
    usage("convert: two models", cv + QStringList{"--model", "seven-a", "--params4", "1,2,3,4", in, out}, "only one of",
          general);
    usage("convert: one file", cv + QStringList{in}, "expected INPUT and OUTPUT", general);
    usage("convert: same system", {"convert", "--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4214", in, out},
          "the same", general);
    usage("convert: model name in another case", cv + QStringList{"--model", "Seven-A", in, out},
          "no stored model is named \"Seven-A\"", general);
    usage("convert: output is the input", cv + QStringList{"--model", "seven-a", in, scratch("./in.txt")},
          "is the input file", general);
    usage("convert: output is a link to the input", cv + QStringList{"--model", "seven-a", in, scratch("link.txt")},
          "is the input file", general);
    usage("convert: output is a full disk", cv + QStringList{"--model", "seven-a", in, "/dev/full"},
          "cannot write \"/dev/full\"", general);
    usage("convert: missing column", cv + QStringList{"--model", "seven-a", in, out}, "line 2 of", "A,30,120,5\nB,31,121\n");

    const QStringList c7{"calc7", "--from", "EPSG:4326", "--to", "EPSG:2436", in};
    usage("calc4: missing file", {"calc4", "/nonexistent/gcp.txt"}, "/nonexistent/gcp.txt", same);
    usage("calc4: no points", {"calc4", in}, "no control points", "1\t2\t3\n");
    row("calc4: one point", {"calc4", in}, same.left(same.indexOf('\n') + 1), 1, "", "Need 2 GCPs at least!");
    row("calc4: identical points", {"calc4", in}, same, 1, "Calculate Error!", "no model fits the points");
    usage("calc7: no target", {"calc7", "--from", "EPSG:4326", in}, "--to", vertical);
    usage("calc7: one geographic system", {"calc7", "--from", "EPSG:4214", "--to", "EPSG:2436", in},
          "The Source Spheroid must be different", vertical);
    row("calc7: collinear points", c7, vertical, 1, "Calculate Error!", "no model fits the points");
    row("calc7: two points", c7, vertical.left(vertical.lastIndexOf("3\t")), 1, "", "Need 3 GCPs at least!");

    usage("models: --kind 5", {"models", "--kind", "5"}, "--kind takes 4 or 7", point);
    usage("models: stray argument", {"models", "x"}, "\"x\"", point);
}

void TestCliErrors::dispatchAndRefusals()
{
    QFETCH(QStringList, args);
    QFETCH(QByteArray, input);
    QFETCH(int, status);
    QFETCH(QString, out);
    QFETCH(QString, err);
    QVERIFY(KivTest::writeFile(scratch("in.txt"), input));
    const CliRun run(args, input);
    QCOMPARE(run.status, status);
    QVERIFY2(out.isEmpty() ? run.out.isEmpty() : run.out.contains(out), qPrintable(run.out));
    QVERIFY2(err.isEmpty() ? run.err.isEmpty() : run.err.contains(err), qPrintable(run.err));
    QVERIFY2(status == 0 || !run.out.contains(QLatin1String("nan"), Qt::CaseInsensitive), qPrintable(run.out));
    QVERIFY(!QFile::exists(scratch("out.txt")));
    QCOMPARE(KivTest::readFile(scratch("in.txt")), input);
}

KIV_TEST_CLASS(TestCliErrors)
#include "tst_CliErrors.moc"
