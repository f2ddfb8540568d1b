#include "models/ModelStore.h"
#include "models/Save4ParamsResultDlg.h"
#include "models/Save7ParamsResultDlg.h"
#include "models/Set4ParamsDlg.h"
#include "models/Set7ParamsDlg.h"

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/SpatialReferenceFactory.h"
#include "KivUI/EnvironmentSetting.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextCodec>

using KivTest::ModalDriver;

namespace {

enum Which { Save4, Save7, Set4, Set7 };

const double kResult4[4] = {0.5, -1.25, 0.000321, 1.0};
const double kResult7[7] = {-15.5, 120.25, 88.125, 0.5, -1.5, 2.25, 0.0000025};
const QStringList kFields4{"lineEdit_DX", "lineEdit_DY", "lineEdit_T", "lineEdit_K"};
const QStringList kFields7{"lineEdit_DX", "lineEdit_DY", "lineEdit_DZ", "lineEdit_W",
                           "lineEdit_K",  "lineEdit_R",  "lineEdit_M"};

ModelStore::Kind kindOf(int which)
{
    return which == Save4 || which == Set4 ? ModelStore::Params4 : ModelStore::Params7;
}

QStringList fieldsOf(int which)
{
    return which == Set4 ? kFields4 : which == Set7 ? kFields7 : QStringList();
}

const char* okButton(int which)
{
    return which == Save4 ? "pushButton_Ok" : "pushButton_OK";
}

QLineEdit* edit(QWidget* dlg, const QString& name)
{
    QLineEdit* e = dlg->findChild<QLineEdit*>(name);
    if (!e)
        qFatal("no line edit %s", qPrintable(name));
    return e;
}

void setFields(QWidget* dlg, int which, const QStringList& values)
{
    for (int i = 0; i < fieldsOf(which).size(); ++i)
        edit(dlg, fieldsOf(which).at(i))->setText(values.value(i));
}

/// The dialog, shown, with source "a", target "b" (so the name "a-to-b") and
/// every parameter field "1".
std::unique_ptr<QDialog> openDialog(int which)
{
    std::unique_ptr<QDialog> dlg;
    switch (which) {
    case Save4: dlg.reset(new Save4ParamsResultDlg(kResult4, nullptr)); break;
    case Save7: dlg.reset(new Save7ParamsResultDlg(kResult7, "a", "b", "a-to-b", nullptr)); break;
    case Set4: dlg.reset(new Set4ParamsDlg(nullptr)); break;
    default: dlg.reset(new Set7ParamsDlg(nullptr)); break;
    }
    if (which != Save7) {
        edit(dlg.get(), "lineEdit_src")->setText("a");
        edit(dlg.get(), "lineEdit_des")->setText("b");
    }
    setFields(dlg.get(), which, QStringList{"1", "1", "1", "1", "1", "1", "1"});
    dlg->show();
    return dlg;
}

void click(QWidget* dlg, const char* name)
{
    QPushButton* b = dlg->findChild<QPushButton*>(QString::fromLatin1(name));
    QVERIFY2(b, name);
    b->click();
}

QByteArray gb18030(const QString& text)
{
    return QTextCodec::codecForName("GB18030")->fromUnicode(text);
}

void addModel(ModelStore::Kind kind, const QString& name)
{
    TransformModel m{name, "x", "y", QList<double>()};
    for (int i = 0; i < int(kind); ++i)
        m.Params << 9.0;
    QCOMPARE(ModelStore::Add(kind, m), ModelStore::Written);
}

QStringList storedNames(ModelStore::Kind kind)
{
    QStringList out;
    for (const TransformModel& m : ModelStore::List(kind))
        out << m.TransName;
    return out;
}

} // namespace

class TestModelDialogs : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void formsShowTheirCaptions_data();
    void formsShowTheirCaptions();
    void checksInOrder_data();
    void checksInOrder();
    void savedModelIsListedByAFreshRead_data();
    void savedModelIsListedByAFreshRead();
    void takenName_data();
    void takenName();
    void badStoreKeepsTheDialogOpen_data();
    void badStoreKeepsTheDialogOpen();
    void importsModelFiles_data();
    void importsModelFiles();
    void save4TakesChosenNamesOverTypedOnes();
    void set4AcceptsOnlyProjectedSystems();
    void set7ShowsGeographicNamesAndRefusesOneBase();
    void set7TakesReferencesFromItsCaller();
};

void TestModelDialogs::formsShowTheirCaptions_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("captions");  // object name = text
    QTest::newRow("Save4") << int(Save4) << "Save4ParamsResultDlg"
                           << QStringList{"label=Source SpatialReference", "pushButton_src=select",
                                          "label_2=Target SpatialReference", "pushButton_dst=select",
                                          "label_3=Transform model name", "pushButton_Ok=OK", "pushButton_Cancel=Cancel",
                                          "lineEdit_Name=a-to-b"};
    QTest::newRow("Save7") << int(Save7) << "Save7ParamsResultDlg"
                           << QStringList{"label_2=Transform model name:", "pushButton_OK=OK", "pushButton_Cancel=Cancel",
                                          "lineEdit_name=a-to-b",
                                          "label_result=7 parameters:\r\nDX(m)=-15.500000\r\nDY(m)=120.250000\r\n"
                                          "DZ(m)=88.125000\r\nω(″)=0.500000\r\nκ(″)=-1.500000\r\nγ(″)=2.250000\r\n"
                                          "m=0.000002500000\r\n"};
    const QStringList set{"groupBox_2=Set Coordinate System", "pushButton_src=select", "pushButton_dst=select",
                          "pushButton_OK=OK", "pushButton_Cancel=Cancel", "lineEdit_Name=a-to-b", "pushButton_Import=Import"};
    QTest::newRow("Set4") << int(Set4) << "Set 4 Params"
                          << set + QStringList{"label=DX(m)", "label_2=DY(m)", "label_3=T(゜)", "label_5=K"};
    QTest::newRow("Set7") << int(Set7) << "Set 7 Params"
                          << set + QStringList{"label_11=Source Ellipsoid", "label_12=Target Ellipsoid"};
}

void TestModelDialogs::formsShowTheirCaptions()
{
    QFETCH(int, which);
    QFETCH(QString, title);
    QFETCH(QStringList, captions);
    const std::unique_ptr<QDialog> dlg = openDialog(which);
    QCOMPARE(dlg->windowTitle(), title);
    for (const QString& c : captions) {
        QWidget* w = dlg->findChild<QWidget*>(c.section('=', 0, 0));
        QVERIFY2(w, qPrintable(c));
        QCOMPARE(w->property(w->inherits("QGroupBox") ? "title" : "text").toString(), c.section('=', 1));
    }
    if (which == Save4 || which == Save7) {
        QCOMPARE(dlg->minimumSize(), dlg->maximumSize());
        QVERIFY(!(dlg->windowFlags() & (Qt::WindowContextHelpButtonHint | Qt::WindowMinMaxButtonsHint)));
    }
}

void TestModelDialogs::checksInOrder_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("clearName");
    QTest::addColumn<int>("emptyField");  // -1: none, 99: all
    QTest::addColumn<QString>("message");
    const QString src = "Please input source spatialreference name! ", dst = "Please input target spatialreference name! ",
                  name = "Please input transform model name! ", param = "Please input valid parameter ! ";
    for (int which : {Save4, Set4, Set7}) {
        const QByteArray w = QByteArray::number(which) + ": ";
        QTest::newRow(w + "nothing") << which << "" << "" << true << 99 << src;
        QTest::newRow(w + "no source") << which << "" << "b" << false << -1 << src;
        QTest::newRow(w + "no target") << which << "a" << "" << true << 99 << dst;
        QTest::newRow(w + "no name") << which << "a" << "b" << true << 99 << name;
        for (int i = 0; i < fieldsOf(which).size(); ++i)
            QTest::newRow(w + "empty field " + QByteArray::number(i)) << which << "a" << "b" << false << i << param;
    }
    QTest::newRow("Save7: no name") << int(Save7) << "" << "" << true << -1 << name;
}

void TestModelDialogs::checksInOrder()
{
    QFETCH(int, which);
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(bool, clearName);
    QFETCH(int, emptyField);
    QFETCH(QString, message);
    const QByteArray before = KivTest::readFile(ModelStore::WriterPath());
    const std::unique_ptr<QDialog> dlg = openDialog(which);
    if (which != Save7) {
        edit(dlg.get(), "lineEdit_src")->setText(source);
        edit(dlg.get(), "lineEdit_des")->setText(target);
    }
    if (clearName)
        edit(dlg.get(), which == Save7 ? "lineEdit_name" : "lineEdit_Name")->clear();
    for (int i = 0; i < fieldsOf(which).size(); ++i)
        edit(dlg.get(), fieldsOf(which).at(i))->setText(emptyField == 99 || emptyField == i ? "" : "1");

    ModalDriver driver;
    driver.answerMessageBox();
    click(dlg.get(), okButton(which));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, message);
    QCOMPARE(driver.messages().first().title, which == Set4 || which == Set7 ? QStringLiteral("Error") : QString());
    QCOMPARE(driver.messages().first().icon, QMessageBox::Warning);
    QVERIFY(dlg->isVisible());
    QCOMPARE(KivTest::readFile(ModelStore::WriterPath()), before);
}

void TestModelDialogs::savedModelIsListedByAFreshRead_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("message");
    const QString names = "SrcSpaRef=\"北京54 / 3° \"zone\"\" TransName=\"北京54 / 3° \"zone\"-to-&lt;b&gt; &amp; c\" ";
    QTest::newRow("Save4") << int(Save4) << QStringList()
                           << names + "DesSpaRef=\"&lt;b&gt; &amp; c\" DX=\"0.500000\" DY=\"-1.250000\" T=\"0.000321\" "
                                      "K=\"1.000000000000\"/>"
                           << "";
    QTest::newRow("Save7") << int(Save7) << QStringList()
                           << "SrcSpaRef=\"a\" TransName=\"a-to-b\" DesSpaRef=\"b\" DX=\"-15.500000\" DY=\"120.250000\" "
                              "DZ=\"88.125000\" w=\"0.500000\" k=\"-1.500000\" r=\"2.250000\" m=\"0.000002500000\"/>"
                           << "";
    // The manual entry stores the model name as target, and unparsable text as 0.
    QTest::newRow("Set4") << int(Set4) << QStringList{"0.5", " -12.25", "abc", "1"}
                          << names + "DesSpaRef=\"北京54 / 3° \"zone\"-to-&lt;b&gt; &amp; c\" DX=\"0.500000\" "
                                     "DY=\"-12.250000\" T=\"0.000000\" K=\"1.000000000000\"/>"
                          << " 4 parameters  is saved successfully !";
    QTest::newRow("Set7") << int(Set7) << QStringList{"1", "2", "3", "1,5", "-0.25", "1e-3", "0.0000031"}
                          << names + "DesSpaRef=\"北京54 / 3° \"zone\"-to-&lt;b&gt; &amp; c\" DX=\"1.000000\" "
                                     "DY=\"2.000000\" DZ=\"3.000000\" w=\"0.000000\" k=\"-0.250000\" r=\"0.001000\" "
                                     "m=\"0.000003100000\"/>"
                          << " 7 parameters  is saved successfully !";
}

void TestModelDialogs::savedModelIsListedByAFreshRead()
{
    QFETCH(int, which);
    QFETCH(QStringList, values);
    QFETCH(QString, element);
    QFETCH(QString, message);
    element.replace("\"zone\"", "&quot;zone&quot;");
    const std::unique_ptr<QDialog> dlg = openDialog(which);
    if (which != Save7) {
        // Free text: nothing checks that it names a real system.
        edit(dlg.get(), "lineEdit_src")->setText("北京54 / 3° \"zone\"");
        edit(dlg.get(), "lineEdit_des")->setText("<b> & c");
    }
    setFields(dlg.get(), which, values);
    ModalDriver driver;
    if (!message.isEmpty())
        driver.answerMessageBox();
    click(dlg.get(), okButton(which));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (!message.isEmpty()) {
        QCOMPARE(driver.messages().first().text, message);
        QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
    }
    QCOMPARE(dlg->result(), int(QDialog::Accepted));

    const QString text = QString::fromUtf8(KivTest::readFile(ModelStore::WriterPath()));
    QVERIFY2(text.contains("<GeoTransformsModel " + element), qPrintable(text));
    const QString name = which == Save7 ? "a-to-b" : "北京54 / 3° \"zone\"-to-<b> & c";
    QCOMPARE(storedNames(kindOf(which)), QStringList{name});
    QVERIFY(ModelStore::List(ModelStore::Kind(11 - kindOf(which))).isEmpty());
}

void TestModelDialogs::takenName_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("answer");  // to the replace question; empty: refused outright
    QTest::newRow("Save4, Yes") << int(Save4) << "Yes";
    QTest::newRow("Save4, No") << int(Save4) << "No";
    QTest::newRow("Save7, Yes") << int(Save7) << "Yes";
    QTest::newRow("Save7, No") << int(Save7) << "No";
    QTest::newRow("Set4") << int(Set4) << "";
    QTest::newRow("Set7") << int(Set7) << "";
}

void TestModelDialogs::takenName()
{
    QFETCH(int, which);
    QFETCH(QString, answer);
    const ModelStore::Kind kind = kindOf(which);
    for (const char* n : {"a-to-b", "other", "third"})
        addModel(kind, n);
    const QByteArray before = KivTest::readFile(ModelStore::WriterPath());

    const std::unique_ptr<QDialog> dlg = openDialog(which);
    ModalDriver driver;
    if (answer.isEmpty())
        driver.answerMessageBox();
    else
        driver.answerMessageBoxText(answer);
    click(dlg.get(), okButton(which));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    const ModalDriver::Message m = driver.messages().first();
    if (answer.isEmpty()) {
        QCOMPARE(m.text, QStringLiteral("The TransModelName has been taken,Please input another one! "));
        QCOMPARE(m.title, QStringLiteral("Error"));
    } else {
        QCOMPARE(m.text, QStringLiteral("The TransModelName has been taken,Wherher to replace it or not? "));
        QCOMPARE(m.title, QStringLiteral("Information"));
        QCOMPARE(m.buttons, (QStringList{"Yes", "No"}));
        QCOMPARE(m.defaultButton, QStringLiteral("Yes"));
    }
    if (answer != QLatin1String("Yes")) {
        QVERIFY(dlg->isVisible());
        QCOMPARE(KivTest::readFile(ModelStore::WriterPath()), before);
        return;
    }
    QCOMPARE(dlg->result(), int(QDialog::Accepted));
    QCOMPARE(storedNames(kind), (QStringList{"other", "third", "a-to-b"}));
    QCOMPARE(ModelStore::List(kind).last().Params.first(), which == Save4 ? kResult4[0] : kResult7[0]);
}

void TestModelDialogs::badStoreKeepsTheDialogOpen_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QByteArray>("store");  // empty: no store file at all
    QTest::addColumn<bool>("failureShown");
    for (int which : {Save4, Save7, Set4, Set7}) {
        const QByteArray w = QByteArray::number(which) + ": ";
        // Only the four-parameter save dialog says nothing about a missing store.
        QTest::newRow(w + "missing") << which << QByteArray() << (which != Save4);
        QTest::newRow(w + "not XML") << which << QByteArray("\xff\xfe\0<r>", 6) << false;
        QTest::newRow(w + "no container") << which
                                          << QByteArray(kindOf(which) == ModelStore::Params4 ? "<r><Params7/></r>"
                                                                                              : "<r><Params4/></r>")
                                          << false;
    }
}

void TestModelDialogs::badStoreKeepsTheDialogOpen()
{
    QFETCH(int, which);
    QFETCH(QByteArray, store);
    QFETCH(bool, failureShown);
    const QString path = ModelStore::WriterPath();
    QFile::remove(path);
    if (!store.isEmpty())
        QVERIFY(KivTest::writeFile(path, store));

    const std::unique_ptr<QDialog> dlg = openDialog(which);
    ModalDriver driver;
    if (failureShown)
        driver.answerMessageBox();
    click(dlg.get(), okButton(which));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (failureShown) {
        QCOMPARE(driver.messages().first().text, QStringLiteral("save result failed!"));
        QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
    }
    QVERIFY(dlg->isVisible());
    QCOMPARE(KivTest::readFile(path), store);
    QCOMPARE(QFile::exists(path), !store.isEmpty());
}

void TestModelDialogs::importsModelFiles_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("fileName");  // empty: the file dialog is cancelled
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("expected");
    const QStringList keep4{"1", "1", "1", "1"}, keep7{"1", "1", "1", "1", "1", "1", "1"};

    QTest::newRow("4: cancelled") << int(Set4) << "" << QByteArray() << keep4;
    QTest::newRow("4: empty file") << int(Set4) << "empty.txt" << QByteArray("") << keep4;
    QTest::newRow("4: binary") << int(Set4) << "image.txt" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0=\xff\xfe", 20)
                               << keep4;
    QTest::newRow("4: GB18030 keys") << int(Set4) << "model.txt"
                                     << gb18030("# 北京54 → 西安80\nT(゜)=0.25\nDX(m)= 12.5 \nK=\nDY(m)=1=2\n K=3\ndx(m)=4\n")
                                     << QStringList{" 12.5 ", "1", "0.25", ""};
    QTest::newRow("4: exported result") << int(Set4) << "result.csv"
                                        << gb18030("DX(m)=-3.500000\r\nDY(m)=7.125000\r\nT(゜)=0.000321\r\nK=1.000004000000\r\n\n"
                                                   "Checked,Source X,Source Y,Target X,Target Y,Residual,\n"
                                                   "1,3380000.0,39500000.0,3380010.0,39500020.0,0.001,\n")
                                        << QStringList{"-3.500000", "7.125000", "0.000321", "1.000004000000"};
    QTest::newRow("4: seven-parameter keys") << int(Set4) << "seven.txt" << gb18030("DZ(m)=5\nm=2\nκ(″)=3\nDX(m)=4\n")
                                             << QStringList{"4", "1", "1", "1"};
    QTest::newRow("7: binary") << int(Set7) << "bin.csv" << QByteArray("\0\x01m=\x80\x81\nDX(m)\0=1\n", 16) << keep7;
    QTest::newRow("7: GB18030 keys") << int(Set7) << "model.txt"
                                     << gb18030("γ(″)=3\nκ(″)=2\nω(″)=5\nm=0.000002\nDZ(m)=-9\nK=5\nT(゜)=6\n")
                                     << QStringList{"1", "1", "-9", "5", "2", "3", "0.000002"};
    QTest::newRow("7: UTF-8 Greek keys") << int(Set7) << "utf8.txt" << QString("ω(″)=7\nDX(m)=2\n").toUtf8()
                                         << QStringList{"2", "1", "1", "1", "1", "1", "1"};
    QTest::newRow("7: exported result") << int(Set7) << "result.txt"
                                        << gb18030("Beijing 1954 -- WGS 84\n\n"
                                                   "DX(m)=-15.500000\r\nDY(m)=120.250000\r\nDZ(m)=88.125000\r\n"
                                                   "ω(″)=0.500000\r\nκ(″)=-1.500000\r\nγ(″)=2.250000\r\nm=0.000002500000\r\n\n"
                                                   "Checked\tB\tL\tH\tB\tL\tH\tdp\tdh\t\n")
                                        << QStringList{"-15.500000", "120.250000", "88.125000", "0.500000",
                                                       "-1.500000", "2.250000", "0.000002500000"};
}

void TestModelDialogs::importsModelFiles()
{
    QFETCH(int, which);
    QFETCH(QString, fileName);
    QFETCH(QByteArray, content);
    QFETCH(QStringList, expected);
    const QString path = KivTest::scratchDir() + QLatin1Char('/') + fileName;
    const std::unique_ptr<QDialog> dlg = openDialog(which);
    ModalDriver driver;
    if (fileName.isEmpty()) {
        driver.cancelFileDialog();
    } else {
        QVERIFY(KivTest::writeFile(path, content));
        driver.answerFileDialog(path);
    }
    click(dlg.get(), "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QStringList texts;
    for (const QString& f : fieldsOf(which))
        texts << edit(dlg.get(), f)->text();
    QCOMPARE(texts, expected);
    const ModalDriver::FileDialogInfo fd = driver.fileDialogs().value(0);
    QCOMPARE(fd.caption, QStringLiteral("Open Text File"));
    QCOMPARE(fd.nameFilters, (QStringList{"Text Files (*.txt)", "CSV Files(*.csv)"}));
    QCOMPARE(QDir(fd.directory).canonicalPath(),
             QDir(KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir()).canonicalPath());
    QVERIFY(dlg->isVisible());
}

void TestModelDialogs::save4TakesChosenNamesOverTypedOnes()
{
    const std::unique_ptr<QDialog> dlg = openDialog(Save4);
    edit(dlg.get(), "lineEdit_Name")->setText("typed");
    ModalDriver driver(20000);
    KivTest::answerSelector(driver, "EPSG:4214");
    click(dlg.get(), "pushButton_src");
    KivTest::cancelSelector(driver);
    click(dlg.get(), "pushButton_dst");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(dlg.get(), "lineEdit_src")->text(), QStringLiteral("Beijing 1954"));
    QCOMPARE(edit(dlg.get(), "lineEdit_des")->text(), QStringLiteral("b"));
    QCOMPARE(edit(dlg.get(), "lineEdit_Name")->text(), QStringLiteral("Beijing 1954-to-b"));
}

void TestModelDialogs::set4AcceptsOnlyProjectedSystems()
{
    const std::unique_ptr<QDialog> dlg = openDialog(Set4);
    ModalDriver driver(20000);
    KivTest::answerSelector(driver, "EPSG:4214");
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_src");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().value(0).text, QStringLiteral("Please select a  Projected Coordinate System! "));
    QCOMPARE(driver.messages().value(0).title, QStringLiteral("Information"));
    QCOMPARE(edit(dlg.get(), "lineEdit_src")->text(), QStringLiteral("a"));

    KivTest::answerSelector(driver, "EPSG:2385");
    click(dlg.get(), "pushButton_dst");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(dlg.get(), "lineEdit_des")->text(), QStringLiteral("Xian 1980 / 3-degree Gauss-Kruger CM 120E"));
    QCOMPARE(edit(dlg.get(), "lineEdit_Name")->text(), QStringLiteral("a-to-Xian 1980 / 3-degree Gauss-Kruger CM 120E"));
}

void TestModelDialogs::set7ShowsGeographicNamesAndRefusesOneBase()
{
    const std::unique_ptr<QDialog> dlg = openDialog(Set7);
    ModalDriver driver(20000);
    KivTest::answerSelector(driver, "EPSG:2436");
    click(dlg.get(), "pushButton_src");
    KivTest::answerSelector(driver, "EPSG:4214");
    click(dlg.get(), "pushButton_dst");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(dlg.get(), "lineEdit_src")->text(), QStringLiteral("Beijing 1954"));
    QCOMPARE(edit(dlg.get(), "lineEdit_des")->text(), QStringLiteral("Beijing 1954"));

    // The kept systems decide, whatever the fields say.
    edit(dlg.get(), "lineEdit_des")->setText("typed over");
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().value(0).text, QStringLiteral("The Source Spheroid must be different with target Spheroid!"));
    QCOMPARE(driver.messages().value(0).title, QStringLiteral("Error"));
    QVERIFY(ModelStore::List(ModelStore::Params7).isEmpty());

    KivTest::answerSelector(driver, "EPSG:32650");
    click(dlg.get(), "pushButton_dst");
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg->result(), int(QDialog::Accepted));
    QCOMPARE(storedNames(ModelStore::Params7), QStringList{"Beijing 1954-to-WGS 84"});
}

void TestModelDialogs::set7TakesReferencesFromItsCaller()
{
    using KivGeometry::SpatialReferenceFactory;
    const auto zone = SpatialReferenceFactory::CreateSpatialReference("EPSG:2436");
    const auto beijing = SpatialReferenceFactory::CreateSpatialReference("EPSG:4214");
    const auto xian = SpatialReferenceFactory::CreateSpatialReference("EPSG:4610");
    QVERIFY(zone && beijing && xian);

    Set7ParamsDlg dlg(nullptr);
    setFields(&dlg, Set7, {"1", "2", "3", "4", "5", "6", "7"});
    dlg.show();
    dlg.SetSpatialReferences(zone, beijing);
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(), QStringLiteral("Beijing 1954-to-Beijing 1954"));
    ModalDriver driver;
    driver.answerMessageBox();
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().value(0).text, QStringLiteral("The Source Spheroid must be different with target Spheroid!"));

    // A null side stays as it is.
    dlg.SetSpatialReferences(nullptr, xian);
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(), QStringLiteral("Beijing 1954-to-Xian 1980"));
    driver.answerMessageBox();
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
}

KIV_TEST_CLASS(TestModelDialogs)
#include "tst_ModelDialogs.moc"
