#include "KivGeometry/SpatialReferenceFactory.h"
#include "spatialref/CoordinateConversion.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileDataProjTransDlg.h"
#include "textfiles/FileFormatDirectory.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTest>
#include <QTextCodec>

#include <proj.h>

#include <cmath>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using KivTest::ModalDriver;

namespace {

const char kStore[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CoordTransform>\n"
    " <Params4>\n"
    "  <GeoTransformsModel SrcSpaRef=\"a\" TransName=\"four-a\" DesSpaRef=\"b\" DX=\"100.000000\" DY=\"-50.000000\""
    " T=\"0.001000\" K=\"1.000010000000\"/>\n"
    "  <GeoTransformsModel SrcSpaRef=\"a\" TransName=\"four-b\" DesSpaRef=\"b\" DX=\"1.000000\" DY=\"2.000000\""
    " T=\"0.000000\" K=\"1.000000000000\"/>\n"
    " </Params4>\n"
    " <Params7>\n"
    "  <GeoTransformsModel SrcSpaRef=\"a\" TransName=\"seven-a\" DesSpaRef=\"b\" DX=\"-12.500000\" DY=\"-130.300000\""
    " DZ=\"-80.100000\" w=\"0.500000\" k=\"-1.200000\" r=\"2.000000\" m=\"0.000004000000\"/>\n"
    " </Params7>\n</CoordTransform>\n";

QPushButton* button(QWidget& w, const char* name)
{
    return w.findChild<QPushButton*>(QLatin1String(name));
}

QLineEdit* edit(QWidget& w, const char* name)
{
    return w.findChild<QLineEdit*>(QLatin1String(name));
}

QTableWidget* table(QWidget& w)
{
    return w.findChild<QTableWidget*>(QStringLiteral("tableWidget"));
}

QString text(QTableWidget* t, int row, int col)
{
    QTableWidgetItem* item = t->item(row, col);
    return item ? item->text() : QString();
}

// Makes the format whose file name is `fileName` current.
void chooseFormat(QWidget& dlg, const QString& fileName)
{
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox"));
    for (int i = 0; i < combo->count(); ++i) {
        if (combo->itemText(i).startsWith(fileName + QLatin1Char(' ')))
            combo->setCurrentIndex(i);
    }
}

void pickInput(QWidget& dlg, ModalDriver& driver, const QString& path)
{
    driver.answerFileDialog(path);
    button(dlg, "pushButton_Input")->click();
}

void pickSystem(QWidget& dlg, ModalDriver& driver, const char* which, const QString& code)
{
    KivTest::answerSelector(driver, code);
    button(dlg, which)->click();
}

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

// PROJ's own answer for one point, in the surveying order (north, east).
bool projTransform(const char* from, const char* to, double& north, double& east)
{
    PJ_CONTEXT* ctx = proj_context_create();
    PJ* raw = proj_create_crs_to_crs(ctx, from, to, nullptr);
    PJ* pj = raw ? proj_normalize_for_visualization(ctx, raw) : nullptr;
    bool ok = false;
    if (pj) {
        PJ_COORD c = proj_coord(east, north, 0, 0);
        c = proj_trans(pj, PJ_FWD, c);
        ok = proj_errno(pj) == 0 && std::isfinite(c.xy.x);
        east = c.xy.x;
        north = c.xy.y;
    }
    proj_destroy(pj);
    proj_destroy(raw);
    proj_context_destroy(ctx);
    return ok;
}

} // namespace

class TestFileDataProjTransDlg : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }

    void startsWithAnEmptyPreview();
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
    void sameSystemIsRefusedAtSelection();
    void codeNumberNeedsAProjectedSource();
    void sevenParametersNeedAModel();
    void convertsLikeTheSharedRoute_data();
    void convertsLikeTheSharedRoute();
    void directBranchesAgreeWithProj_data();
    void directBranchesAgreeWithProj();
    void importRefillsTheModels();
    void unwritableOutputEndsSilently();
};

void TestFileDataProjTransDlg::init()
{
    KivTest::resetData();
    KivTest::writeFile(KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml"),
                       kStore);
    QFile::remove(KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml~"));
}

void TestFileDataProjTransDlg::startsWithAnEmptyPreview()
{
    FileDataProjTransDlg dlg;
    QCOMPARE(dlg.windowTitle(), QStringLiteral("File Coordinate Conversion"));
    QCOMPARE(dlg.size(), QSize(795, 376));
    QTableWidget* t = table(dlg);
    QCOMPARE(t->rowCount(), 8);
    QCOMPARE(t->columnCount(), 7);
    QStringList headers;
    for (int c = 0; c < 7; ++c)
        headers << t->horizontalHeaderItem(c)->text();
    QCOMPARE(headers, (QStringList{"Point ID", "Src Y", "Src X", "Src Z", "Target Y", "Target X", "Target Z"}));
    QCOMPARE(t->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(t->selectionBehavior(), QAbstractItemView::SelectRows);
    // Every shipped format is offered.
    QCOMPARE(dlg.findChild<QComboBox*>(QStringLiteral("comboBox"))->count(),
             FileFormatDirectory::ListFiles().size());
}

void TestFileDataProjTransDlg::readerResultsAreReported_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("content");  // "-" for a file that does not exist
    QTest::addColumn<QString>("message");     // empty when the file is accepted
    QTest::newRow("good") << "General.xml" << QByteArray("A,1,2,3\n") << QString();
    QTest::newRow("missing column") << "General.xml" << QByteArray("A,1,2,3\nB,1,2\n")
                                    << "Input data is incorrect, please reset the file format in the interface!";
    QTest::newRow("empty file") << "General.xml" << QByteArray()
                                << "Input data is incorrect, please reset the file format in the interface!";
    QTest::newRow("wrong separator") << "General_Tab.xml" << QByteArray("A,1,2,3\n")
                                     << "Input data is incorrect, please reset the file format in the interface!";
    // A socket exists, so the file dialog hands it back, but cannot be
    // opened as a file, whoever runs the test.
    QTest::newRow("cannot open") << "General.xml" << QByteArray("-") << "Failed to open the file,please try again!";
}

void TestFileDataProjTransDlg::readerResultsAreReported()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, format);
    const QString path = scratch(content == "-" ? QStringLiteral("socket.txt") : QStringLiteral("in.txt"));
    int sock = -1;
    if (content == "-") {
        sock = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un addr{};
        addr.sun_family = AF_UNIX;
        const QByteArray native = QFile::encodeName(path);
        QVERIFY(native.size() < int(sizeof addr.sun_path));
        std::memcpy(addr.sun_path, native.constData(), native.size());
        QCOMPARE(::bind(sock, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
    } else {
        KivTest::writeFile(path, content);
    }
    edit(dlg, "lineEdit_Input")->setText(QStringLiteral("previous"));

    ModalDriver driver;
    driver.answerFileDialog(path);
    if (!message.isEmpty())
        driver.answerMessageBox();
    button(dlg, "pushButton_Input")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (message.isEmpty()) {
        QCOMPARE(edit(dlg, "lineEdit_Input")->text(), path);
        QCOMPARE(table(dlg)->rowCount(), 1);
    } else {
        QCOMPARE(driver.messages().first().title, QStringLiteral("Coordinate Conversion"));
        QCOMPARE(driver.messages().first().text, message);
        QCOMPARE(driver.messages().first().icon, QMessageBox::Information);
        QVERIFY(edit(dlg, "lineEdit_Input")->text().isEmpty());
        QCOMPARE(table(dlg)->rowCount(), 0);
    }
    QCOMPARE(driver.fileDialogs().first().caption, QStringLiteral("Open Text File"));
    QCOMPARE(driver.fileDialogs().first().nameFilters, (QStringList{"Text Files (*.txt)", "CSV Files(*.csv)"}));
    if (sock >= 0)
        ::close(sock);
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
    QTableWidget* t = table(dlg);
    QCOMPARE(t->rowCount(), 2);
    QStringList cells;
    for (int c = 0; c < 7; ++c)
        cells << text(t, 1, c);
    QCOMPARE(cells, row1);
    QCOMPARE(t->item(1, 1)->textAlignment(), int(Qt::AlignHCenter | Qt::AlignVCenter));
}

void TestFileDataProjTransDlg::largeFilesFillRowsAsTheyAreShown()
{
    const int n = FileDataProjTransDlg::PreviewFilledRows + 5000;
    QByteArray content;
    for (int i = 0; i < n; ++i)
        content += "P" + QByteArray::number(i) + "," + QByteArray::number(30 + i * 1e-5, 'f', 6) + ",120,0\n";
    KivTest::writeFile(scratch(QStringLiteral("big.txt")), content);
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    dlg.show();
    ModalDriver driver;
    pickInput(dlg, driver, scratch(QStringLiteral("big.txt")));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QTableWidget* t = table(dlg);
    QCOMPARE(t->rowCount(), n);
    QCOMPARE(text(t, FileDataProjTransDlg::PreviewFilledRows - 1, 0),
             QStringLiteral("P%1").arg(FileDataProjTransDlg::PreviewFilledRows - 1));
    QVERIFY(!t->item(n - 1, 0));
    t->verticalScrollBar()->setValue(t->verticalScrollBar()->maximum());
    QCOMPARE(text(t, n - 1, 0), QStringLiteral("P%1").arg(n - 1));
    QCOMPARE(text(t, n - 1, 2), QStringLiteral("%1").arg(30 + (n - 1) * 1e-5, 0, 'f', 6));
}

void TestFileDataProjTransDlg::formatButtonRefillsTheFormats()
{
    FileDataProjTransDlg dlg;
    FileFormatDirectory::Write(QStringLiteral("zz.xml"), QStringLiteral("NoTitle"),
                               QStringLiteral("Latitude Longitude"), QStringLiteral(";"));
    ModalDriver driver;
    driver.handleModal("FileFormatXMLManagerDlg", [](QWidget* w) {
        w->findChild<QPushButton*>(QStringLiteral("pushButton_Cancel"))->click();
    });
    button(dlg, "pushButton_Format")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox"));
    QStringList records = FileFormatDirectory::LoadRecords(FileFormatDirectory::ListFiles());
    QStringList shown;
    for (int i = 0; i < combo->count(); ++i)
        shown << combo->itemText(i);
    QCOMPARE(shown, records);
    QCOMPARE(combo->currentIndex(), combo->count() - 1);
    QVERIFY(records.contains(QStringLiteral("zz.xml Latitude Longitude NoTitle \";\"")));
}

void TestFileDataProjTransDlg::transformChecksComeInOrder_data()
{
    QTest::addColumn<QString>("input");   // "" none, "in" the read file
    QTest::addColumn<QString>("output");  // "" none, "same", "alias", "out"
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("icon");
    const int warning = QMessageBox::Warning;
    const int info = QMessageBox::Information;
    QTest::newRow("1 no input") << "" << "" << "" << "" << "Select correct input file!" << warning;
    QTest::newRow("1 no input, output set") << "" << "out" << "EPSG:4214" << "EPSG:4326"
                                            << "Select correct input file!" << warning;
    QTest::newRow("2 no output") << "in" << "" << "" << "" << "Select correct output file!" << warning;
    QTest::newRow("3 output is input") << "in" << "same" << "" << "" << "Input file is matching to output file!"
                                       << warning;
    QTest::newRow("3 output is input, spelled otherwise")
        << "in" << "alias" << "EPSG:4214" << "EPSG:4326" << "Input file is matching to output file!" << warning;
    QTest::newRow("4 no source") << "in" << "out" << "" << "EPSG:4326" << "Select original projection!" << info;
    QTest::newRow("5 no target") << "in" << "out" << "EPSG:4214" << ""
                                 << "Please select the output coordinate system!" << info;
}

void TestFileDataProjTransDlg::transformChecksComeInOrder()
{
    QFETCH(QString, input);
    QFETCH(QString, output);
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, message);
    QFETCH(int, icon);
    const QByteArray content("A,1,2,3\n");
    const QString in = scratch(QStringLiteral("in.txt"));
    KivTest::writeFile(in, content);
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    ModalDriver driver;
    if (!input.isEmpty())
        pickInput(dlg, driver, in);
    if (!source.isEmpty())
        pickSystem(dlg, driver, "pushButton_Original", source);
    if (!target.isEmpty())
        pickSystem(dlg, driver, "pushButton_Target", target);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (output == QLatin1String("same"))
        edit(dlg, "lineEdit_Output")->setText(in);
    else if (output == QLatin1String("alias"))
        edit(dlg, "lineEdit_Output")->setText(KivTest::scratchDir() + QStringLiteral("/./sub/../in.txt"));
    else if (output == QLatin1String("out"))
        edit(dlg, "lineEdit_Output")->setText(scratch(QStringLiteral("out.txt")));

    driver.clearRecords();
    driver.answerMessageBox();
    button(dlg, "pushButton_Transform")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    QCOMPARE(driver.messages().first().title, QStringLiteral("Warning"));
    QCOMPARE(driver.messages().first().text, message);
    QCOMPARE(int(driver.messages().first().icon), icon);
    QCOMPARE(KivTest::readFile(in), content);
    QVERIFY(!QFile::exists(scratch(QStringLiteral("out.txt"))));
}

void TestFileDataProjTransDlg::modelChoiceFollowsTheDatums_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QStringList>("models");
    const QStringList seven{"seven-a"};
    const QStringList four{"four-a", "four-b"};
    QTest::newRow("geographic, other datum") << "EPSG:4214" << "EPSG:4326" << "7Parameter:" << true << seven;
    QTest::newRow("projected, other datum") << "EPSG:2435" << "EPSG:32650" << "7Parameter:" << true << seven;
    QTest::newRow("geographic to projected, other datum") << "EPSG:4326" << "EPSG:2435" << "7Parameter:" << true
                                                         << seven;
    QTest::newRow("geographic to projected, same datum") << "EPSG:4214" << "EPSG:2435" << "4Parameter:" << false
                                                        << four;
    QTest::newRow("projected to geographic, same datum") << "EPSG:2435" << "EPSG:4214" << "4Parameter:" << false
                                                        << four;
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
    pickSystem(dlg, driver, "pushButton_Original", source);
    pickSystem(dlg, driver, "pushButton_Target", target);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(!edit(dlg, "lineEdit_Original")->text().isEmpty());
    QVERIFY(!edit(dlg, "lineEdit_Target")->text().isEmpty());
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox_Model"));
    QCOMPARE(dlg.findChild<QLabel*>(QStringLiteral("label_5"))->text(), label);
    QCOMPARE(combo->isEnabled(), enabled);
    QCOMPARE(dlg.findChild<QLabel*>(QStringLiteral("label_5"))->isEnabled(), enabled);
    QCOMPARE(button(dlg, "pushButton_Import")->isEnabled(), enabled);
    QStringList shown;
    for (int i = 0; i < combo->count(); ++i)
        shown << combo->itemText(i);
    QCOMPARE(shown, models);
}

void TestFileDataProjTransDlg::sameSystemIsRefusedAtSelection()
{
    FileDataProjTransDlg dlg;
    ModalDriver driver;
    pickSystem(dlg, driver, "pushButton_Original", QStringLiteral("EPSG:4214"));
    pickSystem(dlg, driver, "pushButton_Target", QStringLiteral("EPSG:4326"));
    const QString before = edit(dlg, "lineEdit_Target")->text();
    driver.answerMessageBox();
    pickSystem(dlg, driver, "pushButton_Target", QStringLiteral("EPSG:4214"));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    QCOMPARE(driver.messages().first().title, QStringLiteral("Warning"));
    QCOMPARE(driver.messages().first().text, QStringLiteral("Source Spatial Reference is same with Target!"));
    QCOMPARE(edit(dlg, "lineEdit_Target")->text(), before);

    // A cancelled picker changes nothing either.
    KivTest::cancelSelector(driver);
    button(dlg, "pushButton_Target")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(dlg, "lineEdit_Target")->text(), before);
}

void TestFileDataProjTransDlg::codeNumberNeedsAProjectedSource()
{
    FileDataProjTransDlg dlg;
    auto* box = dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_bCode"));
    QVERIFY(!box->isEnabled());
    ModalDriver driver;
    pickSystem(dlg, driver, "pushButton_Original", QStringLiteral("EPSG:2435"));
    QVERIFY(box->isEnabled());
    box->click();
    QVERIFY(box->isChecked());
    pickSystem(dlg, driver, "pushButton_Original", QStringLiteral("EPSG:4214"));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(!box->isEnabled());
    QVERIFY(!box->isChecked());
}

void TestFileDataProjTransDlg::sevenParametersNeedAModel()
{
    // An empty store: nothing to choose, so the transform does nothing at all.
    KivTest::writeFile(KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml"),
                       "<CoordTransform><Params4/><Params7/></CoordTransform>");
    KivTest::writeFile(scratch(QStringLiteral("in.txt")), "A,30,120,10\n");
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    ModalDriver driver;
    pickInput(dlg, driver, scratch(QStringLiteral("in.txt")));
    pickSystem(dlg, driver, "pushButton_Original", QStringLiteral("EPSG:4214"));
    pickSystem(dlg, driver, "pushButton_Target", QStringLiteral("EPSG:4326"));
    edit(dlg, "lineEdit_Output")->setText(scratch(QStringLiteral("out.txt")));
    button(dlg, "pushButton_Transform")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(driver.messages().isEmpty());
    QVERIFY(!QFile::exists(scratch(QStringLiteral("out.txt"))));
    QVERIFY(text(table(dlg), 0, 4).isEmpty());
}

void TestFileDataProjTransDlg::convertsLikeTheSharedRoute_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("model");     // model combo entry, empty for none
    QTest::addColumn<bool>("code");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("lines");     // data lines, "|"-separated
    QTest::newRow("seven parameters, geographic") << "EPSG:4214" << "EPSG:4326" << "seven-a" << false
                                                  << "General_Other.xml"
                                                  << QString::fromUtf8("点1,39.9,116.4,50.25,北门|P2,22.5,114.1,-3,x");
    QTest::newRow("seven parameters, projected both sides")
        << "EPSG:2435" << "EPSG:32650" << "seven-a" << false << "General.xml"
        << "K1,4420000.5,500123.25,12|K2,4300000,480000,0";
    QTest::newRow("seven parameters, zone number in Y")
        << "EPSG:2435" << "EPSG:4326" << "seven-a" << true << "General_2D.xml" << "K1,4420000.5,39500123.25";
    QTest::newRow("four parameters between zones") << "EPSG:2435" << "EPSG:2436" << "four-a" << false
                                                   << "General.xml" << "K1,4420000.5,500123.25,12";
}

void TestFileDataProjTransDlg::convertsLikeTheSharedRoute()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, model);
    QFETCH(bool, code);
    QFETCH(QString, format);
    QFETCH(QString, lines);
    QString title;
    if (format == QLatin1String("General_Other.xml"))
        title = QString::fromUtf8("点号,纬度,经度,高程,备注");
    QString content = title.isEmpty() ? QString() : title + QLatin1Char('\n');
    for (const QString& l : lines.split(QLatin1Char('|')))
        content += l + QLatin1Char('\n');
    const QString in = scratch(QStringLiteral("in.txt"));
    const QByteArray inBytes = QTextCodec::codecForName("GBK")->fromUnicode(content);
    KivTest::writeFile(in, inBytes);

    FileDataProjTransDlg dlg;
    chooseFormat(dlg, format);
    ModalDriver driver;
    pickInput(dlg, driver, in);
    pickSystem(dlg, driver, "pushButton_Original", source);
    pickSystem(dlg, driver, "pushButton_Target", target);
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox_Model"));
    if (!model.isEmpty())
        combo->setCurrentIndex(combo->findText(model));
    if (code)
        dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_bCode"))->click();
    const QString out = scratch(QStringLiteral("out.txt"));
    driver.answerFileDialog(out);
    button(dlg, "pushButton_Output")->click();
    QCOMPARE(edit(dlg, "lineEdit_Output")->text(), out);
    button(dlg, "pushButton_Transform")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(driver.messages().isEmpty());

    // What the shared route gives for each point, written in the format's order.
    auto src = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(source);
    auto dst = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(target);
    CoordinateConversion conversion(src, dst);
    QList<double> params;
    if (model == QLatin1String("seven-a"))
        params = {-12.5, -130.3, -80.1, 0.5, -1.2, 2.0, 0.000004};
    else if (model == QLatin1String("four-a"))
        params = {100, -50, 0.001, 1.00001};
    conversion.SetParams(params);
    conversion.SetCodeNumber(code);
    const bool is3D = format != QLatin1String("General_2D.xml");
    QString expected = title.isEmpty() ? QString() : title + QLatin1Char('\n');
    QTableWidget* t = table(dlg);
    int row = 0;
    for (const QString& l : lines.split(QLatin1Char('|'))) {
        QStringList f = l.split(QLatin1Char(','));
        double north = f.at(1).toDouble(), east = f.at(2).toDouble(), h = is3D ? f.at(3).toDouble() : 0.0;
        QVERIFY(conversion.Convert(north, east, h));
        f[1] = QString::number(north, 'f', 6);
        f[2] = QString::number(east, 'f', 6);
        if (is3D)
            f[3] = QString::number(h, 'f', 6);
        expected += f.join(QLatin1Char(',')) + QLatin1Char('\n');
        QCOMPARE(text(t, row, 4), f[2]);
        QCOMPARE(text(t, row, 5), f[1]);
        QCOMPARE(text(t, row, 6), is3D ? f[3] : QString());
        ++row;
    }
    QCOMPARE(QString::fromUtf8(KivTest::readFile(out)), expected);
    QCOMPARE(KivTest::readFile(in), inBytes);
}

void TestFileDataProjTransDlg::directBranchesAgreeWithProj_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("east");
    QTest::newRow("geographic to projected") << "EPSG:4214" << "EPSG:2435" << 39.9 << 116.4;
    QTest::newRow("projected to geographic") << "EPSG:2435" << "EPSG:4214" << 4420000.5 << 500123.25;
    QTest::newRow("between zones, no model") << "EPSG:2435" << "EPSG:2436" << 4420000.5 << 360123.25;
}

void TestFileDataProjTransDlg::directBranchesAgreeWithProj()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(double, north);
    QFETCH(double, east);
    // Without a four-parameter model the zones branch only re-projects.
    KivTest::writeFile(KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml"),
                       "<CoordTransform><Params4/><Params7/></CoordTransform>");
    const QString in = scratch(QStringLiteral("in.txt"));
    KivTest::writeFile(in, QStringLiteral("P,%1,%2,7.5\n").arg(north, 0, 'f', 6).arg(east, 0, 'f', 6).toLatin1());
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    ModalDriver driver;
    pickInput(dlg, driver, in);
    pickSystem(dlg, driver, "pushButton_Original", source);
    pickSystem(dlg, driver, "pushButton_Target", target);
    const QString out = scratch(QStringLiteral("out.txt"));
    edit(dlg, "lineEdit_Output")->setText(out);
    button(dlg, "pushButton_Transform")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));

    QVERIFY(projTransform(source.toLatin1().constData(), target.toLatin1().constData(), north, east));
    const QStringList f = QString::fromUtf8(KivTest::readFile(out)).trimmed().split(QLatin1Char(','));
    QCOMPARE(f.size(), 4);
    const double tolerance = target == QLatin1String("EPSG:4214") ? 1e-9 : 1e-6;
    QVERIFY2(std::abs(f.at(1).toDouble() - north) <= 5e-7 + tolerance, qPrintable(f.join(',')));
    QVERIFY2(std::abs(f.at(2).toDouble() - east) <= 5e-7 + tolerance, qPrintable(f.join(',')));
    QCOMPARE(f.at(3), QStringLiteral("7.500000"));
}

void TestFileDataProjTransDlg::importRefillsTheModels()
{
    FileDataProjTransDlg dlg;
    ModalDriver driver;
    pickSystem(dlg, driver, "pushButton_Original", QStringLiteral("EPSG:4214"));
    pickSystem(dlg, driver, "pushButton_Target", QStringLiteral("EPSG:4326"));
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox_Model"));
    QCOMPARE(combo->count(), 1);

    // Cancelled: nothing changes.
    driver.handleModal("Set7ParamsDlg", [](QWidget* w) { static_cast<QDialog*>(w)->reject(); });
    button(dlg, "pushButton_Import")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(combo->count(), 1);

    // Accepted after a model was stored: the store is read again, the last entry is current.
    const QString store = KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml");
    driver.handleModal("Set7ParamsDlg", [store](QWidget* w) {
        QByteArray xml = KivTest::readFile(store);
        xml.replace("</Params7>", "<GeoTransformsModel TransName=\"new\" DX=\"1\" DY=\"2\" DZ=\"3\" w=\"0\" k=\"0\" "
                                  "r=\"0\" m=\"0\"/></Params7>");
        KivTest::writeFile(store, xml);
        static_cast<QDialog*>(w)->accept();
    });
    button(dlg, "pushButton_Import")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->currentText(), QStringLiteral("new"));
}

void TestFileDataProjTransDlg::unwritableOutputEndsSilently()
{
    const QString in = scratch(QStringLiteral("in.txt"));
    KivTest::writeFile(in, "A,30,120,1\n");
    FileDataProjTransDlg dlg;
    chooseFormat(dlg, QStringLiteral("General.xml"));
    ModalDriver driver;
    pickInput(dlg, driver, in);
    pickSystem(dlg, driver, "pushButton_Original", QStringLiteral("EPSG:4214"));
    pickSystem(dlg, driver, "pushButton_Target", QStringLiteral("EPSG:4326"));
    KivTest::writeFile(scratch(QStringLiteral("plain")), "x");
    edit(dlg, "lineEdit_Output")->setText(scratch(QStringLiteral("plain/out.txt")));
    button(dlg, "pushButton_Transform")->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(driver.messages().isEmpty());
    QCOMPARE(KivTest::readFile(scratch(QStringLiteral("plain"))), QByteArray("x"));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
}

KIV_TEST_CLASS(TestFileDataProjTransDlg)
#include "tst_FileDataProjTransDlg.moc"
