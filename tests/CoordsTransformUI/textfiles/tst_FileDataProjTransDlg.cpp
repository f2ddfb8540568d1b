#include "cli/CliRun.h"
#include "models/ModelStore.h"
#include "spatialref/PointCoordsTransformDlg.h"
#include "support/FilesDialogSteps.h"
#include "support/TestRegistry.h"
#include "textfiles/FileDataProjTransDlg.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QTextCodec>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

using namespace DialogSteps;
using KivTest::ModalDriver;

namespace {

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

int bindSocket(const QString& path)
{
    const int sock = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    std::strncpy(addr.sun_path, QFile::encodeName(path).constData(), sizeof addr.sun_path - 1);
    if (::bind(sock, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0)
        return sock;
    ::close(sock);
    return -1;
}

} // namespace

class TestFileDataProjTransDlg : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        KivTest::resetData();
        writeStore();
    }
    void cleanup() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }

    void largeFilesFillRowsAsTheyAreShown();
    void checksComeInOrder_data();
    void checksComeInOrder();
    void systemChoiceSetsTheModels_data();
    void systemChoiceSetsTheModels();
    void convertsLikePointDialogAndTool_data();
    void convertsLikePointDialogAndTool();
    void importRefillsTheModels();
};

void TestFileDataProjTransDlg::largeFilesFillRowsAsTheyAreShown()
{
    const int filled = FileDataProjTransDlg::PreviewFilledRows, n = filled + 5000;
    QByteArray content;
    for (int i = 0; i < n; ++i)
        content += "P" + QByteArray::number(i) + ",30,120,0\n";
    KivTest::writeFile(scratch(QStringLiteral("big.txt")), content);
    FileDataProjTransDlg dlg;
    dlg.show();
    ModalDriver driver;
    pickInput(dlg, driver, scratch(QStringLiteral("big.txt")));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    auto* t = dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"));
    QCOMPARE(t->rowCount(), n);
    QCOMPARE(cell(dlg, filled - 1, 0), QStringLiteral("P%1").arg(filled - 1));
    QVERIFY(!t->item(n - 1, 0));
    t->verticalScrollBar()->setValue(t->verticalScrollBar()->maximum());
    QCOMPARE(cell(dlg, n - 1, 0) + QLatin1Char('|') + cell(dlg, n - 1, 2), QStringLiteral("P%1|30.000000").arg(n - 1));
}

void TestFileDataProjTransDlg::checksComeInOrder_data()
{
    QTest::addColumn<QByteArray>("input");  // the file's content; "-" none chosen, "socket" no file to open
    QTest::addColumn<QString>("output");    // relative to the scratch folder; "" none
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("models");       // the store holds models
    QTest::addColumn<QStringList>("boxes"); // "i " information or "w " warning, then title|text
    const QString bj = QStringLiteral("EPSG:4214"), wgs = QStringLiteral("EPSG:4326");
    const QString noInput = QStringLiteral("w Warning|Select correct input file!");
    const QByteArray good("A,30,120,3\n");
    QTest::newRow("no input") << QByteArray("-") << "out.txt" << bj << wgs << true << QStringList(noInput);
    // A file the format does not fit never reaches the conversion.
    QTest::newRow("missing column") << QByteArray("A,1,2,3\nB,1,2\n") << "out.txt" << bj << wgs << true
        << QStringList{"i Coordinate Conversion|Input data is incorrect, please reset the file format in the interface!",
                       noInput};
    QTest::newRow("cannot open")
        << QByteArray("socket") << "out.txt" << bj << wgs << true
        << QStringList{"i Coordinate Conversion|Failed to open the file,please try again!", noInput};
    QTest::newRow("no output") << good << "" << "" << "" << true << QStringList("w Warning|Select correct output file!");
    QTest::newRow("output is input") << good << "in.txt" << "" << "" << true
                                     << QStringList("w Warning|Input file is matching to output file!");
    QTest::newRow("output is input, spelled otherwise") << good << "./in.txt" << bj << wgs << true
                                                        << QStringList("w Warning|Input file is matching to output file!");
    QTest::newRow("no source") << good << "out.txt" << "" << wgs << true
                               << QStringList("i Warning|Select original projection!");
    QTest::newRow("no target") << good << "out.txt" << bj << "" << true
                               << QStringList("i Warning|Please select the output coordinate system!");
    // Different datums without a seven-parameter model: nothing visible happens.
    QTest::newRow("no seven-parameter model") << good << "out.txt" << bj << wgs << false << QStringList();
    // An output folder that cannot be written ends silently.
    QTest::newRow("output folder not writable") << good << "plain/out.txt" << bj << wgs << true << QStringList();
}

void TestFileDataProjTransDlg::checksComeInOrder()
{
    QFETCH(QByteArray, input);
    QFETCH(QString, output);
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(bool, models);
    QFETCH(QStringList, boxes);
    writeStore(models);
    const QString in = scratch(QStringLiteral("in.txt"));
    const int sock = input == "socket" ? bindSocket(in) : -1;
    if (sock < 0)
        KivTest::writeFile(in, input);
    KivTest::writeFile(scratch(QStringLiteral("plain")), "x");
    FileDataProjTransDlg dlg;
    ModalDriver driver;
    if (input != "-") {
        driver.answerFileDialog(in);
        if (boxes.size() > 1)
            driver.answerMessageBox();
        click(dlg, "pushButton_Input");
    }
    if (sock >= 0)
        ::close(sock);
    pickSystems(dlg, driver, source, target);
    if (!output.isEmpty())
        edit(dlg, "lineEdit_Output")->setText(scratch(output));
    if (!boxes.isEmpty())
        driver.answerMessageBox();
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QStringList shown;
    for (const ModalDriver::Message& m : driver.messages())
        shown << (m.icon == QMessageBox::Information ? "i " : "w ") + m.title + QLatin1Char('|') + m.text;
    QCOMPARE(shown, boxes);
    QCOMPARE(KivTest::readFile(in) + KivTest::readFile(scratch(QStringLiteral("plain"))),
             (sock >= 0 ? QByteArray() : input) + "x");
    QVERIFY(!QFile::exists(scratch(QStringLiteral("out.txt"))) && !QFile::exists(scratch(QStringLiteral("plain/out.txt"))));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
}

void TestFileDataProjTransDlg::systemChoiceSetsTheModels_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("enabled");
    const QString seven = QStringLiteral("7Parameter:"), four = QStringLiteral("4Parameter:");
    QTest::newRow("geographic, other datum") << "EPSG:4214" << "EPSG:4326" << seven << true;
    QTest::newRow("projected, other datum") << "EPSG:2435" << "EPSG:32650" << seven << true;
    QTest::newRow("geographic to projected, other datum") << "EPSG:4326" << "EPSG:2435" << seven << true;
    QTest::newRow("geographic to projected, same datum") << "EPSG:4214" << "EPSG:2435" << four << false;
    QTest::newRow("projected to geographic, same datum") << "EPSG:2435" << "EPSG:4214" << four << false;
    QTest::newRow("two zones, same datum") << "EPSG:2435" << "EPSG:2436" << four << true;
}

void TestFileDataProjTransDlg::systemChoiceSetsTheModels()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, label);
    QFETCH(bool, enabled);
    FileDataProjTransDlg dlg;
    auto* code = dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_bCode"));
    QVERIFY(!code->isEnabled());
    ModalDriver driver;
    pickSystems(dlg, driver, QStringLiteral("EPSG:2437"), QString());
    code->click();  // kept by a projected source, cleared by a geographic one
    pickSystems(dlg, driver, source, target);
    const bool projected = !source.startsWith(QLatin1String("EPSG:4"));
    QCOMPARE(code->isEnabled(), projected);
    QCOMPARE(code->isChecked(), projected);

    // The same system on both sides is refused and the old choice stays; so does a cancelled choice.
    const QString before = edit(dlg, "lineEdit_Original")->text();
    KivTest::answerSelector(driver, target);
    driver.answerMessageBox();
    click(dlg, "pushButton_Original");
    KivTest::cancelSelector(driver);
    click(dlg, "pushButton_Original");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(messageTexts(driver), QStringList("Warning|Source Spatial Reference is same with Target!"));
    QCOMPARE(edit(dlg, "lineEdit_Original")->text(), before);

    auto* labelWidget = dlg.findChild<QLabel*>(QStringLiteral("label_5"));
    QCOMPARE(labelWidget->text(), label);
    for (QWidget* w : {static_cast<QWidget*>(labelWidget), dlg.findChild<QWidget*>(QStringLiteral("comboBox_Model")),
                       dlg.findChild<QWidget*>(QStringLiteral("pushButton_Import"))})
        QCOMPARE(w->isEnabled(), enabled);
    QCOMPARE(comboItems(dlg, "comboBox_Model"),
             (label.startsWith(QLatin1Char('4')) ? QStringList{"four-a", "four-b"} : QStringList{"seven-a"}));
}

void TestFileDataProjTransDlg::convertsLikePointDialogAndTool_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("model");   // "": none stored, and the tool is not asked
    QTest::addColumn<bool>("code");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("lines");
    const QString bj = QStringLiteral("EPSG:4214"), zone38 = QStringLiteral("EPSG:2435");
    const QStringList plane{"K1,4420000.5,500123.25,12", "K2,4300000,480000,0"};
    QTest::newRow("seven, geographic, title and other columns, csv")
        << bj << "EPSG:4326" << "seven-a" << false << "General_Other" << "out.csv"
        << QString::fromUtf8("点号,纬度,经度,高程,备注\n点1,39.9,116.4,50.25,北门\nP2,22.5,114.1,-3,x").split('\n');
    // The encoding follows the first "." of the whole path: below a dotted
    // folder a .csv file stays UTF-8.
    QTest::newRow("seven, csv below a dotted folder")
        << bj << "EPSG:4326" << "seven-a" << false << "General_Other" << "a.b/out.csv"
        << QString::fromUtf8("点号,纬度,经度,高程,备注\n点1,39.9,116.4,50.25,北门").split('\n');
    QTest::newRow("seven, projected ends") << zone38 << "EPSG:32650" << "seven-a" << false << "General" << "out.txt"
                                           << plane;
    QTest::newRow("seven, zone number in Y, no heights") << zone38 << "EPSG:4326" << "seven-a" << true << "General_2D"
                                                         << "out.txt" << QStringList{"K1,4420000.5,38500123.25"};
    QTest::newRow("four, across zones") << zone38 << "EPSG:2436" << "four-a" << false << "General" << "out.txt" << plane;
    QTest::newRow("geographic to projected, no model") << bj << zone38 << "" << false << "General" << "out.txt"
                                                       << QStringList{"P,39.9,116.4,7.5"};
}

void TestFileDataProjTransDlg::convertsLikePointDialogAndTool()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, model);
    QFETCH(bool, code);
    QFETCH(QString, format);
    QFETCH(QString, output);
    QFETCH(QStringList, lines);
    writeStore(!model.isEmpty());
    const bool title = format == QLatin1String("General_Other"), is3D = format != QLatin1String("General_2D");
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(output);
    QDir().mkpath(QFileInfo(out).absolutePath());
    const QByteArray inBytes = QTextCodec::codecForName("GBK")->fromUnicode(lines.join(QLatin1Char('\n')) + "\n");
    KivTest::writeFile(in, inBytes);

    // The file dialog, and the point dialog on the same systems and model, in decimal degrees.
    FileDataProjTransDlg dlg;
    PointCoordsTransformDlg pointDlg(nullptr);
    chooseFormat(dlg, format + QStringLiteral(".xml"));
    ModalDriver driver;
    pickInput(dlg, driver, in);
    pickSystems(dlg, driver, source, target);
    pickSystems(pointDlg, driver, source, target);
    chooseModel(dlg, model);
    chooseModel(pointDlg, model, "comboBox_7Parameter");
    for (const char* degree : {"radioButton", "radioButton_3"}) {
        if (pointDlg.findChild<QWidget*>(QLatin1String(degree))->isEnabled())
            click(pointDlg, degree);
    }
    if (code) {
        click(dlg, "checkBox_bCode");
        click(pointDlg, "checkBox_bCode");
    }
    driver.answerFileDialog(out);
    click(dlg, "pushButton_Output");
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify() && driver.messages().isEmpty(), qPrintable(driver.report()));

    // Each point as the point dialog gives it, written in the format's order; the
    // preview shows the point number, then east, north and height read and converted.
    const auto fixed = [](const QString& v) { return QString::number(v.toDouble(), 'f', 6); };
    QStringList expected = lines.mid(0, int(title));
    for (int row = 0; row < lines.size() - int(title); ++row) {
        const QStringList typed = lines.at(row + int(title)).split(QLatin1Char(','));
        const char* const fields[] = {"lineEdit_OrigB", "lineEdit_OrigL", "lineEdit_OrigH"};
        for (int i = 0; i < 3; ++i)
            edit(pointDlg, fields[i])->setText(typed.value(i + 1));
        click(pointDlg, "pushButton_Transform");
        QStringList f = typed;
        f[1] = edit(pointDlg, "lineEdit_TargetB")->text();
        f[2] = edit(pointDlg, "lineEdit_TargetL")->text();
        const QString h = is3D ? fixed(edit(pointDlg, "lineEdit_TargetH")->text()) : QString();
        if (is3D)
            f[3] = h;
        expected << f.join(QLatin1Char(','));
        QStringList cells;
        for (int c = 0; c < 7; ++c)
            cells << cell(dlg, row, c);
        QCOMPARE(cells,
                 QStringList({typed[0], fixed(typed[2]), fixed(typed[1]), is3D ? fixed(typed[3]) : "", f[2], f[1], h}));
    }
    QCOMPARE(dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"))->rowCount(), lines.size() - int(title));
    const char* codec = output == QLatin1String("out.csv") ? "GB18030" : "UTF-8";
    QCOMPARE(QTextCodec::codecForName(codec)->toUnicode(KivTest::readFile(out)),
             expected.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    QCOMPARE(KivTest::readFile(in), inBytes);

    // The command-line tool writes the same bytes.
    if (!model.isEmpty()) {
        const QString byTool = scratch(QStringLiteral("tool_") + output);
        QDir().mkpath(QFileInfo(byTool).absolutePath());
        QStringList args{"convert", "--format", format, "--from", source, "--to", target, "--model", model, in, byTool};
        if (code)
            args << QStringLiteral("--code");
        const CliRun cli(args);
        QVERIFY2(cli.status == 0, qPrintable(cli.err));
        QCOMPARE(KivTest::readFile(byTool), KivTest::readFile(out));
    }
}

void TestFileDataProjTransDlg::importRefillsTheModels()
{
    FileDataProjTransDlg dlg;
    ModalDriver driver;
    pickSystems(dlg, driver, QStringLiteral("EPSG:4214"), QStringLiteral("EPSG:4326"));
    driver.handleModal("Set7ParamsDlg", [](QWidget* w) { static_cast<QDialog*>(w)->reject(); });
    click(dlg, "pushButton_Import");
    QCOMPARE(comboItems(dlg, "comboBox_Model"), QStringList("seven-a"));

    // Accepted after storing a model: the store is read again, the last entry is current.
    driver.handleModal("Set7ParamsDlg", [](QWidget* w) {
        QCOMPARE(ModelStore::Add(ModelStore::Params7, {"new", "a", "b", sevenA()}), ModelStore::Written);
        static_cast<QDialog*>(w)->accept();
    });
    click(dlg, "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(comboItems(dlg, "comboBox_Model"), (QStringList{"seven-a", "new"}));
    QCOMPARE(dlg.findChild<QComboBox*>(QStringLiteral("comboBox_Model"))->currentText(), QStringLiteral("new"));
}

KIV_TEST_CLASS(TestFileDataProjTransDlg)
#include "tst_FileDataProjTransDlg.moc"
