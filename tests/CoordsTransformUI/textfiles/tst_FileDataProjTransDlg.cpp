#include "CoordsTransformUI/textfiles/DialogSteps.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "spatialref/CoordinateConversion.h"
#include "spatialref/PointCoordsTransformDlg.h"
#include "support/TestRegistry.h"
#include "textfiles/FileDataProjTransDlg.h"
#include "textfiles/FileFormatDirectory.h"

#include <QCheckBox>
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

const char kIncorrect[] = "Input data is incorrect, please reset the file format in the interface!";

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

    void startsEmpty();
    void readerResultsAreReported_data();
    void readerResultsAreReported();
    void previewShowsWhatWasRead_data();
    void previewShowsWhatWasRead();
    void largeFilesFillRowsAsTheyAreShown();
    void formatButtonRefillsTheFormats();
    void transformChecksComeInOrder_data();
    void transformChecksComeInOrder();
    void modelChoiceFollowsTheDatums_data();
    void modelChoiceFollowsTheDatums();
    void systemChoiceRules();
    void convertsLikeTheSharedRoute_data();
    void convertsLikeTheSharedRoute();
    void sameDigitsAsThePointDialog_data();
    void sameDigitsAsThePointDialog();
    void directBranchesAgreeWithProj_data();
    void directBranchesAgreeWithProj();
    void transformWritesNothing_data();
    void transformWritesNothing();
    void importRefillsTheModels();
};

void TestFileDataProjTransDlg::startsEmpty()
{
    FileDataProjTransDlg dlg;
    QCOMPARE(dlg.windowTitle(), QStringLiteral("File Coordinate Conversion"));
    QCOMPARE(dlg.size(), QSize(795, 376));
    auto* t = dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"));
    QCOMPARE(t->rowCount(), 8);
    QStringList headers;
    for (int c = 0; c < t->columnCount(); ++c)
        headers << t->horizontalHeaderItem(c)->text();
    QCOMPARE(headers, (QStringList{"Point ID", "Src Y", "Src X", "Src Z", "Target Y", "Target X", "Target Z"}));
    QCOMPARE(t->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(t->selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(dlg.findChild<QComboBox*>(QStringLiteral("comboBox"))->count(), FileFormatDirectory::ListFiles().size());
}

void TestFileDataProjTransDlg::readerResultsAreReported_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("content");  // "socket": exists, but cannot be opened as a file
    QTest::addColumn<QString>("message");     // empty when the file is accepted
    QTest::newRow("good") << "General.xml" << QByteArray("A,1,2,3\n") << QString();
    QTest::newRow("missing column") << "General.xml" << QByteArray("A,1,2,3\nB,1,2\n") << kIncorrect;
    QTest::newRow("empty file") << "General.xml" << QByteArray() << kIncorrect;
    QTest::newRow("wrong separator") << "General_Tab.xml" << QByteArray("A,1,2,3\n") << kIncorrect;
    QTest::newRow("cannot open") << "General.xml" << QByteArray("socket") << "Failed to open the file,please try again!";
}

void TestFileDataProjTransDlg::readerResultsAreReported()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, format);
    const QString path = scratch(QStringLiteral("in.txt"));
    int sock = -1;
    if (content == "socket") {
        sock = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un addr{};
        addr.sun_family = AF_UNIX;
        std::strncpy(addr.sun_path, QFile::encodeName(path).constData(), sizeof addr.sun_path - 1);
        QCOMPARE(::bind(sock, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
    } else {
        KivTest::writeFile(path, content);
    }
    edit(dlg, "lineEdit_Input")->setText(QStringLiteral("previous"));

    ModalDriver driver;
    driver.answerFileDialog(path);
    if (!message.isEmpty())
        driver.answerMessageBox();
    click(dlg, "pushButton_Input");
    if (sock >= 0)
        ::close(sock);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.fileDialogs().first().caption, QStringLiteral("Open Text File"));
    QCOMPARE(driver.fileDialogs().first().nameFilters, (QStringList{"Text Files (*.txt)", "CSV Files(*.csv)"}));
    QCOMPARE(edit(dlg, "lineEdit_Input")->text(), message.isEmpty() ? path : QString());
    QCOMPARE(dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"))->rowCount(), message.isEmpty() ? 1 : 0);
    if (!message.isEmpty()) {
        const ModalDriver::Message m = driver.messages().first();
        QCOMPARE(m.title + QLatin1Char('|') + m.text, QStringLiteral("Coordinate Conversion|") + message);
        QCOMPARE(m.icon, QMessageBox::Information);
    }
}

void TestFileDataProjTransDlg::previewShowsWhatWasRead_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("row1");  // the seven cells of the second row
    QTest::newRow("3D") << "General.xml" << QByteArray("A,1,2,3\nB,30.5,120.25,-4\n")
                        << QStringList{"B", "120.250000", "30.500000", "-4.000000", "", "", ""};
    QTest::newRow("no heights: three columns") << "General_2D.xml" << QByteArray("A,1,2\nB,30.5,120.25\n")
                                               << QStringList{"B", "120.250000", "30.500000", "", "", "", ""};
    QTest::newRow("title line is not a point")
        << "General_Title.xml" << QByteArray("id,lat,lon,h\nA,1,2,3\nB,30.5,120.25,-4\n")
        << QStringList{"B", "120.250000", "30.500000", "-4.000000", "", "", ""};
    QTest::newRow("GBK names") << "General.xml"
                               << QTextCodec::codecForName("GBK")->fromUnicode(QString::fromUtf8("甲,1,2,3\n乙,4,5,6\n"))
                               << QStringList{QString::fromUtf8("乙"), "5.000000", "4.000000", "6.000000", "", "", ""};
}

void TestFileDataProjTransDlg::previewShowsWhatWasRead()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, content);
    QFETCH(QStringList, row1);
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, format);
    KivTest::writeFile(scratch(QStringLiteral("in.txt")), content);
    ModalDriver driver;
    pickInput(dlg, driver, scratch(QStringLiteral("in.txt")));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"))->rowCount(), 2);
    QStringList cells;
    for (int c = 0; c < 7; ++c)
        cells << cell(dlg, 1, c);
    QCOMPARE(cells, row1);
    QCOMPARE(dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"))->item(1, 1)->textAlignment(),
             int(Qt::AlignHCenter | Qt::AlignVCenter));
}

void TestFileDataProjTransDlg::largeFilesFillRowsAsTheyAreShown()
{
    const int filled = FileDataProjTransDlg::PreviewFilledRows;
    const int n = filled + 5000;
    QByteArray content;
    for (int i = 0; i < n; ++i)
        content += "P" + QByteArray::number(i) + ",30,120,0\n";
    KivTest::writeFile(scratch(QStringLiteral("big.txt")), content);
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    dlg.show();
    ModalDriver driver;
    pickInput(dlg, driver, scratch(QStringLiteral("big.txt")));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    auto* t = dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"));
    QCOMPARE(t->rowCount(), n);
    QCOMPARE(cell(dlg, filled - 1, 0), QStringLiteral("P%1").arg(filled - 1));
    QVERIFY(!t->item(n - 1, 0));
    t->verticalScrollBar()->setValue(t->verticalScrollBar()->maximum());
    QCOMPARE(cell(dlg, n - 1, 0), QStringLiteral("P%1").arg(n - 1));
    QCOMPARE(cell(dlg, n - 1, 2), QStringLiteral("30.000000"));
}

void TestFileDataProjTransDlg::formatButtonRefillsTheFormats()
{
    FileDataProjTransDlg dlg;
    FileFormatDirectory::Write(QStringLiteral("zz.xml"), QStringLiteral("NoTitle"), QStringLiteral("Latitude Longitude"),
                               QStringLiteral(";"));
    ModalDriver driver;
    driver.handleModal("FileFormatXMLManagerDlg", [](QWidget* w) { click(*w, "pushButton_Cancel"); });
    click(dlg, "pushButton_Format");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox"));
    QStringList shown;
    for (int i = 0; i < combo->count(); ++i)
        shown << combo->itemText(i);
    QCOMPARE(shown, FileFormatDirectory::LoadRecords(FileFormatDirectory::ListFiles()));
    QVERIFY(shown.contains(QStringLiteral("zz.xml Latitude Longitude NoTitle \";\"")));
    QCOMPARE(combo->currentIndex(), combo->count() - 1);
}

void TestFileDataProjTransDlg::transformChecksComeInOrder_data()
{
    QTest::addColumn<bool>("input");
    QTest::addColumn<QString>("output");  // relative to the scratch folder; "" none
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("icon");
    const int warning = QMessageBox::Warning, info = QMessageBox::Information;
    QTest::newRow("no input") << false << "out.txt" << "EPSG:4214" << "EPSG:4326" << "Select correct input file!"
                              << warning;
    QTest::newRow("no output") << true << "" << "" << "" << "Select correct output file!" << warning;
    QTest::newRow("output is input") << true << "in.txt" << "" << "" << "Input file is matching to output file!"
                                     << warning;
    QTest::newRow("output is input, spelled otherwise")
        << true << "./in.txt" << "EPSG:4214" << "EPSG:4326" << "Input file is matching to output file!" << warning;
    QTest::newRow("no source") << true << "out.txt" << "" << "EPSG:4326" << "Select original projection!" << info;
    QTest::newRow("no target") << true << "out.txt" << "EPSG:4214" << ""
                               << "Please select the output coordinate system!" << info;
}

void TestFileDataProjTransDlg::transformChecksComeInOrder()
{
    QFETCH(bool, input);
    QFETCH(QString, output);
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, message);
    QFETCH(int, icon);
    const QString in = scratch(QStringLiteral("in.txt"));
    KivTest::writeFile(in, "A,1,2,3\n");
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    ModalDriver driver;
    if (input)
        pickInput(dlg, driver, in);
    pickSystems(dlg, driver, source, target);
    if (!output.isEmpty())
        edit(dlg, "lineEdit_Output")->setText(scratch(output));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));

    driver.answerMessageBox();
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    const ModalDriver::Message m = driver.messages().first();
    QCOMPARE(m.title + QLatin1Char('|') + m.text, QStringLiteral("Warning|") + message);
    QCOMPARE(int(m.icon), icon);
    QCOMPARE(KivTest::readFile(in), QByteArray("A,1,2,3\n"));
    QVERIFY(!QFile::exists(scratch(QStringLiteral("out.txt"))));
}

void TestFileDataProjTransDlg::modelChoiceFollowsTheDatums_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QStringList>("models");
    const QStringList seven{"seven-a"}, four{"four-a", "four-b"};
    QTest::newRow("geographic, other datum") << "EPSG:4214" << "EPSG:4326" << "7Parameter:" << true << seven;
    QTest::newRow("projected, other datum") << "EPSG:2435" << "EPSG:32650" << "7Parameter:" << true << seven;
    QTest::newRow("geographic to projected, other datum") << "EPSG:4326" << "EPSG:2435" << "7Parameter:" << true << seven;
    QTest::newRow("geographic to projected, same datum") << "EPSG:4214" << "EPSG:2435" << "4Parameter:" << false << four;
    QTest::newRow("projected to geographic, same datum") << "EPSG:2435" << "EPSG:4214" << "4Parameter:" << false << four;
    QTest::newRow("two zones, same datum") << "EPSG:2435" << "EPSG:2436" << "4Parameter:" << true << four;
}

void TestFileDataProjTransDlg::modelChoiceFollowsTheDatums()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, label);
    QFETCH(bool, enabled);
    QFETCH(QStringList, models);
    FileDataProjTransDlg dlg;
    ModalDriver driver;
    pickSystems(dlg, driver, source, target);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(!edit(dlg, "lineEdit_Original")->text().isEmpty() && !edit(dlg, "lineEdit_Target")->text().isEmpty());
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox_Model"));
    auto* labelWidget = dlg.findChild<QLabel*>(QStringLiteral("label_5"));
    QCOMPARE(labelWidget->text(), label);
    QCOMPARE(combo->isEnabled(), enabled);
    QCOMPARE(labelWidget->isEnabled(), enabled);
    QCOMPARE(dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Import"))->isEnabled(), enabled);
    QStringList shown;
    for (int i = 0; i < combo->count(); ++i)
        shown << combo->itemText(i);
    QCOMPARE(shown, models);
}

void TestFileDataProjTransDlg::systemChoiceRules()
{
    FileDataProjTransDlg dlg;
    auto* code = dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_bCode"));
    QVERIFY(!code->isEnabled());
    ModalDriver driver;
    pickSystems(dlg, driver, QStringLiteral("EPSG:2435"), QStringLiteral("EPSG:4326"));
    QVERIFY(code->isEnabled());
    code->click();

    // The same system on both sides is refused and the old choice stays.
    const QString before = edit(dlg, "lineEdit_Original")->text();
    KivTest::answerSelector(driver, QStringLiteral("EPSG:4326"));
    driver.answerMessageBox();
    click(dlg, "pushButton_Original");
    KivTest::cancelSelector(driver);
    click(dlg, "pushButton_Original");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    QCOMPARE(driver.messages().first().title + QLatin1Char('|') + driver.messages().first().text,
             QStringLiteral("Warning|Source Spatial Reference is same with Target!"));
    QCOMPARE(edit(dlg, "lineEdit_Original")->text(), before);
    QVERIFY(code->isChecked());

    // A geographic source disables and clears the code number.
    pickSystems(dlg, driver, QStringLiteral("EPSG:4214"), QString());
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(!code->isEnabled() && !code->isChecked());
}

void TestFileDataProjTransDlg::convertsLikeTheSharedRoute_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("model");
    QTest::addColumn<bool>("code");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("seven parameters, geographic")
        << "EPSG:4214" << "EPSG:4326" << "seven-a" << false << "General_Other.xml"
        << QStringList{QString::fromUtf8("点号,纬度,经度,高程,备注"), QString::fromUtf8("点1,39.9,116.4,50.25,北门"),
                       "P2,22.5,114.1,-3,x"};
    QTest::newRow("seven parameters, projected both sides")
        << "EPSG:2435" << "EPSG:32650" << "seven-a" << false << "General.xml"
        << QStringList{"K1,4420000.5,500123.25,12", "K2,4300000,480000,0"};
    QTest::newRow("seven parameters, zone number in Y")
        << "EPSG:2435" << "EPSG:4326" << "seven-a" << true << "General_2D.xml" << QStringList{"K1,4420000.5,38500123.25"};
    QTest::newRow("four parameters between zones")
        << "EPSG:2435" << "EPSG:2436" << "four-a" << false << "General.xml" << QStringList{"K1,4420000.5,500123.25,12"};
}

void TestFileDataProjTransDlg::convertsLikeTheSharedRoute()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, model);
    QFETCH(bool, code);
    QFETCH(QString, format);
    QFETCH(QStringList, lines);
    const bool title = format == QLatin1String("General_Other.xml");
    const bool is3D = format != QLatin1String("General_2D.xml");
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(QStringLiteral("out.txt"));
    const QByteArray inBytes = QTextCodec::codecForName("GBK")->fromUnicode(lines.join(QLatin1Char('\n')) + "\n");
    KivTest::writeFile(in, inBytes);

    FileDataProjTransDlg dlg;
    chooseFormat(dlg, format);
    ModalDriver driver;
    pickInput(dlg, driver, in);
    pickSystems(dlg, driver, source, target);
    chooseModel(dlg, model);
    if (code)
        dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_bCode"))->click();
    driver.answerFileDialog(out);
    click(dlg, "pushButton_Output");
    QCOMPARE(edit(dlg, "lineEdit_Output")->text(), out);
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(driver.messages().isEmpty());

    // Each point as the shared route gives it, written in the format's order.
    CoordinateConversion conversion(KivGeometry::SpatialReferenceFactory::CreateSpatialReference(source),
                                    KivGeometry::SpatialReferenceFactory::CreateSpatialReference(target));
    conversion.SetParams(model == QLatin1String("seven-a") ? sevenA() : fourA());
    conversion.SetCodeNumber(code);
    QStringList expected = title ? lines.mid(0, 1) : QStringList();
    for (int row = 0; row < lines.size() - int(title); ++row) {
        QStringList f = lines.at(row + int(title)).split(QLatin1Char(','));
        double north = f.at(1).toDouble(), east = f.at(2).toDouble(), h = is3D ? f.at(3).toDouble() : 0.0;
        QVERIFY(conversion.Convert(north, east, h));
        f[1] = QString::number(north, 'f', 6);
        f[2] = QString::number(east, 'f', 6);
        if (is3D)
            f[3] = QString::number(h, 'f', 6);
        expected << f.join(QLatin1Char(','));
        QCOMPARE(QStringList({cell(dlg, row, 4), cell(dlg, row, 5), cell(dlg, row, 6)}),
                 QStringList({f[2], f[1], is3D ? f[3] : QString()}));
    }
    QCOMPARE(QString::fromUtf8(KivTest::readFile(out)), expected.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    QCOMPARE(KivTest::readFile(in), inBytes);
}

void TestFileDataProjTransDlg::sameDigitsAsThePointDialog_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QStringList>("point");  // north, east, height as typed
    QTest::newRow("seven parameters, geographic") << "EPSG:4214" << "EPSG:4326" << "seven-a"
                                                  << QStringList{"39.9", "116.4", "50.25"};
    QTest::newRow("seven parameters, plane") << "EPSG:2435" << "EPSG:32650" << "seven-a"
                                             << QStringList{"4420000.5", "500123.25", "12"};
    QTest::newRow("four parameters, zones") << "EPSG:2435" << "EPSG:2436" << "four-a"
                                            << QStringList{"4420000.5", "500123.25", "12.000000"};
}

void TestFileDataProjTransDlg::sameDigitsAsThePointDialog()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, model);
    QFETCH(QStringList, point);
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(QStringLiteral("out.txt"));
    KivTest::writeFile(in, ("P," + point.join(QLatin1Char(',')) + "\n").toUtf8());
    ModalDriver driver;
    {
        FileDataProjTransDlg dlg;
        chooseFormat(dlg, QStringLiteral("General.xml"));
        pickInput(dlg, driver, in);
        pickSystems(dlg, driver, source, target);
        chooseModel(dlg, model);
        edit(dlg, "lineEdit_Output")->setText(out);
        click(dlg, "pushButton_Transform");
    }
    PointCoordsTransformDlg pointDlg(nullptr);
    pickSystems(pointDlg, driver, source, target);
    auto* models = pointDlg.findChild<QComboBox*>(QStringLiteral("comboBox_7Parameter"));
    models->setCurrentIndex(models->findText(model));
    if (source == QLatin1String("EPSG:4214"))
        click(pointDlg, "radioButton");    // decimal degrees in
    if (target == QLatin1String("EPSG:4326"))
        click(pointDlg, "radioButton_3");  // and out
    edit(pointDlg, "lineEdit_OrigB")->setText(point.at(0));
    edit(pointDlg, "lineEdit_OrigL")->setText(point.at(1));
    edit(pointDlg, "lineEdit_OrigH")->setText(point.at(2));
    click(pointDlg, "pushButton_Transform");
    QVERIFY2(driver.verify() && driver.messages().isEmpty(), qPrintable(driver.report()));
    const QStringList shown{edit(pointDlg, "lineEdit_TargetB")->text(), edit(pointDlg, "lineEdit_TargetL")->text(),
                            edit(pointDlg, "lineEdit_TargetH")->text()};
    QCOMPARE(QString::fromUtf8(KivTest::readFile(out)), "P," + shown.join(QLatin1Char(',')) + "\n");
}

void TestFileDataProjTransDlg::directBranchesAgreeWithProj_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("tolerance");
    QTest::newRow("geographic to projected") << "EPSG:4214" << "EPSG:2435" << 39.9 << 116.4 << 1e-6;
    QTest::newRow("projected to geographic") << "EPSG:2435" << "EPSG:4214" << 4420000.5 << 500123.25 << 1e-9;
    QTest::newRow("between zones, no model") << "EPSG:2435" << "EPSG:2436" << 4420000.5 << 360123.25 << 1e-6;
}

void TestFileDataProjTransDlg::directBranchesAgreeWithProj()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(double, north);
    QFETCH(double, east);
    QFETCH(double, tolerance);
    writeStore(false);  // without a four-parameter model the zones branch only re-projects
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(QStringLiteral("out.txt"));
    KivTest::writeFile(in, QStringLiteral("P,%1,%2,7.5\n").arg(north, 0, 'f', 6).arg(east, 0, 'f', 6).toLatin1());
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    ModalDriver driver;
    pickInput(dlg, driver, in);
    pickSystems(dlg, driver, source, target);
    edit(dlg, "lineEdit_Output")->setText(out);
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));

    QVERIFY(projTransform(source, target, north, east));
    const QStringList f = QString::fromUtf8(KivTest::readFile(out)).trimmed().split(QLatin1Char(','));
    QCOMPARE(f.size(), 4);
    QVERIFY2(std::abs(f.at(1).toDouble() - north) <= 5e-7 + tolerance, qPrintable(f.join(',')));
    QVERIFY2(std::abs(f.at(2).toDouble() - east) <= 5e-7 + tolerance, qPrintable(f.join(',')));
    QCOMPARE(f.at(3), QStringLiteral("7.500000"));
}

void TestFileDataProjTransDlg::transformWritesNothing_data()
{
    QTest::addColumn<bool>("models");
    QTest::addColumn<QString>("output");
    // Different datums without a seven-parameter model: nothing visible happens.
    QTest::newRow("no seven-parameter model") << false << "out.txt";
    // An output folder that cannot be written ends silently.
    QTest::newRow("output folder not writable") << true << "plain/out.txt";
}

void TestFileDataProjTransDlg::transformWritesNothing()
{
    QFETCH(bool, models);
    QFETCH(QString, output);
    writeStore(models);
    KivTest::writeFile(scratch(QStringLiteral("in.txt")), "A,30,120,10\n");
    KivTest::writeFile(scratch(QStringLiteral("plain")), "x");
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    ModalDriver driver;
    pickInput(dlg, driver, scratch(QStringLiteral("in.txt")));
    pickSystems(dlg, driver, QStringLiteral("EPSG:4214"), QStringLiteral("EPSG:4326"));
    edit(dlg, "lineEdit_Output")->setText(scratch(output));
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(driver.messages().isEmpty());
    QVERIFY(!QFile::exists(scratch(output)));
    QCOMPARE(cell(dlg, 0, 4).isEmpty(), !models);
    QCOMPARE(KivTest::readFile(scratch(QStringLiteral("plain"))), QByteArray("x"));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
}

void TestFileDataProjTransDlg::importRefillsTheModels()
{
    FileDataProjTransDlg dlg;
    ModalDriver driver;
    pickSystems(dlg, driver, QStringLiteral("EPSG:4214"), QStringLiteral("EPSG:4326"));
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox_Model"));
    QCOMPARE(combo->count(), 1);

    driver.handleModal("Set7ParamsDlg", [](QWidget* w) { static_cast<QDialog*>(w)->reject(); });
    click(dlg, "pushButton_Import");
    QCOMPARE(combo->count(), 1);

    // Accepted after storing a model: the store is read again, the last entry is current.
    driver.handleModal("Set7ParamsDlg", [](QWidget* w) {
        QByteArray xml = KivTest::readFile(storePath());
        xml.replace("</Params7>", "<GeoTransformsModel TransName=\"new\" DX=\"1\" DY=\"2\" DZ=\"3\" w=\"0\" k=\"0\" "
                                  "r=\"0\" m=\"0\"/></Params7>");
        KivTest::writeFile(storePath(), xml);
        static_cast<QDialog*>(w)->accept();
    });
    click(dlg, "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->currentText(), QStringLiteral("new"));
}

KIV_TEST_CLASS(TestFileDataProjTransDlg)
#include "tst_FileDataProjTransDlg.moc"
