#include "CalcTestSupport.h"

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
#include <QTest>
#include <QTextCodec>

using CalcTest::click;
using KivTest::ModalDriver;

namespace {

enum Which { Save4, Save7, Set4, Set7 };
const char* const kNames[] = {"Save4", "Save7", "Set4", "Set7"};

const double kResult4[4] = {0.5, -1.25, 0.000321, 1.0};
const double kResult7[7] = {-15.5, 120.25, 88.125, 0.5, -1.5, 2.25, 0.0000025};

ModelStore::Kind kindOf(int which)
{
    return which == Save4 || which == Set4 ? ModelStore::Params4 : ModelStore::Params7;
}

QStringList fieldsOf(int which)
{
    if (which == Set4)
        return {"lineEdit_DX", "lineEdit_DY", "lineEdit_T", "lineEdit_K"};
    if (which == Set7)
        return {"lineEdit_DX", "lineEdit_DY", "lineEdit_DZ", "lineEdit_W", "lineEdit_K", "lineEdit_R", "lineEdit_M"};
    return {};
}

QLineEdit* edit(QWidget* dlg, const QString& name)
{
    return CalcTest::child<QLineEdit>(dlg, name.toLatin1().constData());
}

/// The dialog, shown, with source "a", target "b" (so the name "a-to-b"),
/// every parameter field "1", then `edits` ("objectName=text"; "*" stands for
/// every parameter field; "refs=CODE,CODE" hands systems to the seven-parameter
/// entry as a caller does, an empty code passing none) applied in order.
std::unique_ptr<QDialog> openDialog(int which, const QStringList& edits = {})
{
    std::unique_ptr<QDialog> dlg;
    switch (which) {
    case Save4: dlg.reset(new Save4ParamsResultDlg(kResult4, nullptr)); break;
    case Save7: dlg.reset(new Save7ParamsResultDlg(kResult7, "a", "b", "a-to-b", nullptr)); break;
    case Set4: dlg.reset(new Set4ParamsDlg(nullptr)); break;
    default: dlg.reset(new Set7ParamsDlg(nullptr)); break;
    }
    QStringList all = which == Save7 ? QStringList() : QStringList{"lineEdit_src=a", "lineEdit_des=b", "*=1"};
    for (const QString& e : all + edits) {
        const QString name = e.section('=', 0, 0), text = e.section('=', 1);
        if (name == "refs") {
            const auto ref = [&](int i) {
                const QString code = text.section(',', i, i);
                return code.isEmpty() ? nullptr : KivGeometry::SpatialReferenceFactory::CreateSpatialReference(code);
            };
            static_cast<Set7ParamsDlg*>(dlg.get())->SetSpatialReferences(ref(0), ref(1));
            continue;
        }
        for (const QString& field : name == "*" ? fieldsOf(which) : QStringList{name})
            edit(dlg.get(), field)->setText(text);
    }
    dlg->show();
    return dlg;
}

void clickOk(QWidget* dlg, int which)
{
    click(dlg, which == Save4 ? "pushButton_Ok" : "pushButton_OK");
}

QByteArray gb18030(const QString& text)
{
    return QTextCodec::codecForName("GB18030")->fromUnicode(text);
}

} // namespace

class TestModelDialogs : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void okButton_data();
    void okButton();
    void importsModelFiles_data();
    void importsModelFiles();
    void chooseReference_data();
    void chooseReference();
};

void TestModelDialogs::okButton_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QByteArray>("store");    // empty: the shipped one; "taken": holds "a-to-b"; "missing": none
    QTest::addColumn<QStringList>("edits");
    QTest::addColumn<QString>("answer");      // pressed on the one message box; empty: no box
    QTest::addColumn<QString>("message");     // its text and title
    QTest::addColumn<QString>("written");     // the element appended last; empty: nothing, the dialog stays open

    // Checks in order: the first empty field is reported.
    const QString src = "Please input source spatialreference name! ", dst = "Please input target spatialreference name! ",
                  name = "Please input transform model name! ", param = "Please input valid parameter ! ";
    for (int which : {Save4, Set4, Set7}) {
        const QByteArray w = QByteArray(kNames[which]) + ": ";
        const QString title = which == Save4 ? " / " : " / Error";
        QTest::newRow(w + "no source") << which << QByteArray() << QStringList{"lineEdit_src="} << "OK" << src + title << "";
        QTest::newRow(w + "no target") << which << QByteArray() << QStringList{"lineEdit_des=", "lineEdit_Name=", "*="}
                                       << "OK" << dst + title << "";
        QTest::newRow(w + "no name") << which << QByteArray() << QStringList{"lineEdit_Name=", "*="} << "OK"
                                     << name + title << "";
        for (const QString& field : fieldsOf(which))
            QTest::newRow(w + field.toLatin1()) << which << QByteArray() << QStringList{field + "="} << "OK"
                                                << param + title << "";
    }
    QTest::newRow("Save7: no name") << int(Save7) << QByteArray() << QStringList{"lineEdit_name="} << "OK"
                                    << name + " / " << "";

    // Saved: free text names (nothing checks they name a real system), and for
    // the manual entry the model name as target and unparsable text as 0.
    const QStringList names{"lineEdit_src=北京54 / 3° \"zone\"", "lineEdit_des=<b> & c"};
    const QString attrs = "SrcSpaRef=\"北京54 / 3° &quot;zone&quot;\" TransName=\"北京54 / 3° &quot;zone&quot;-to-&lt;b&gt; &amp; c\" ";
    const QString setTarget = "DesSpaRef=\"北京54 / 3° &quot;zone&quot;-to-&lt;b&gt; &amp; c\" ";
    QTest::newRow("Save4: saved") << int(Save4) << QByteArray() << names << "" << ""
                                  << attrs + "DesSpaRef=\"&lt;b&gt; &amp; c\" DX=\"0.500000\" DY=\"-1.250000\" "
                                             "T=\"0.000321\" K=\"1.000000000000\"/>";
    QTest::newRow("Save7: saved") << int(Save7) << QByteArray() << QStringList() << "" << ""
                                  << "SrcSpaRef=\"a\" TransName=\"a-to-b\" DesSpaRef=\"b\" DX=\"-15.500000\" "
                                     "DY=\"120.250000\" DZ=\"88.125000\" w=\"0.500000\" k=\"-1.500000\" r=\"2.250000\" "
                                     "m=\"0.000002500000\"/>";
    QTest::newRow("Set4: saved") << int(Set4) << QByteArray()
                                 << names + QStringList{"lineEdit_DX=0.5", "lineEdit_DY= -12.25", "lineEdit_T=abc"} << "OK"
                                 << " 4 parameters  is saved successfully ! / Information"
                                 << attrs + setTarget + "DX=\"0.500000\" DY=\"-12.250000\" T=\"0.000000\" K=\"1.000000000000\"/>";
    QTest::newRow("Set7: saved") << int(Set7) << QByteArray()
                                 << names + QStringList{"lineEdit_W=1,5", "lineEdit_R=1e-3", "lineEdit_M=0.0000031"}
                                 << "OK" << " 7 parameters  is saved successfully ! / Information"
                                 << attrs + setTarget + "DX=\"1.000000\" DY=\"1.000000\" DZ=\"1.000000\" w=\"0.000000\" "
                                                        "k=\"1.000000\" r=\"0.001000\" m=\"0.000003100000\"/>";

    // A taken name: the save dialogs ask, the entry dialogs refuse.
    const QString ask = "The TransModelName has been taken,Wherher to replace it or not?  / Information";
    QTest::newRow("Save4: taken, Yes") << int(Save4) << QByteArray("taken") << QStringList() << "Yes" << ask
                                       << "SrcSpaRef=\"a\" TransName=\"a-to-b\" DesSpaRef=\"b\" DX=\"0.500000\"";
    QTest::newRow("Save7: taken, Yes") << int(Save7) << QByteArray("taken") << QStringList() << "Yes" << ask
                                       << "SrcSpaRef=\"a\" TransName=\"a-to-b\" DesSpaRef=\"b\" DX=\"-15.500000\"";
    QTest::newRow("Save4: taken, No") << int(Save4) << QByteArray("taken") << QStringList() << "No" << ask << "";
    QTest::newRow("Save7: taken, No") << int(Save7) << QByteArray("taken") << QStringList() << "No" << ask << "";
    const QString refuse = "The TransModelName has been taken,Please input another one!  / Error";
    // Handed-over systems decide, whatever the fields say, after the checks
    // of the fields; a null one leaves its side as it was.
    const QString oneBase = "The Source Spheroid must be different with target Spheroid! / Error";
    QTest::newRow("Set7: one geographic base") << int(Set7) << QByteArray()
                                               << QStringList{"refs=EPSG:2436,EPSG:4214", "lineEdit_des=typed over"}
                                               << "OK" << oneBase << "";
    QTest::newRow("Set7: one base, empty field") << int(Set7) << QByteArray()
                                                 << QStringList{"refs=EPSG:2436,EPSG:4214", "lineEdit_M="} << "OK"
                                                 << param + " / Error" << "";
    QTest::newRow("Set7: handed over") << int(Set7) << QByteArray()
                                       << QStringList{"refs=EPSG:2436,EPSG:4214", "refs=,EPSG:4610"} << "OK"
                                       << " 7 parameters  is saved successfully ! / Information"
                                       << "SrcSpaRef=\"Beijing 1954\" TransName=\"Beijing 1954-to-Xian 1980\" "
                                          "DesSpaRef=\"Beijing 1954-to-Xian 1980\"";
    QTest::newRow("Set4: taken") << int(Set4) << QByteArray("taken") << QStringList() << "OK" << refuse << "";
    QTest::newRow("Set7: taken") << int(Set7) << QByteArray("taken") << QStringList() << "OK" << refuse << "";

    // Bad stores: nothing written; only the four-parameter save dialog is
    // silent about a store it cannot read.
    for (int which : {Save4, Save7, Set4, Set7}) {
        const QByteArray w = QByteArray(kNames[which]) + ": ";
        QTest::newRow(w + "missing") << which << QByteArray("missing") << QStringList() << (which == Save4 ? "" : "OK")
                                     << (which == Save4 ? "" : "save result failed! / Information") << "";
        QTest::newRow(w + "not XML") << which << QByteArray("\xff\xfe\0<r>", 6) << QStringList() << "" << "" << "";
        QTest::newRow(w + "no container")
            << which << QByteArray(kindOf(which) == ModelStore::Params4 ? "<r><Params7/></r>" : "<r><Params4/></r>")
            << QStringList() << "" << "" << "";
    }
}

void TestModelDialogs::okButton()
{
    QFETCH(int, which);
    QFETCH(QByteArray, store);
    QFETCH(QStringList, edits);
    QFETCH(QString, answer);
    QFETCH(QString, message);
    QFETCH(QString, written);
    const ModelStore::Kind kind = kindOf(which);
    const QString path = ModelStore::WriterPath();
    if (store == "taken") {
        for (const char* n : {"a-to-b", "other", "third"})
            QCOMPARE(ModelStore::Add(kind, TransformModel{n, "x", "y", QVector<double>(kind, 9.0).toList()}),
                     ModelStore::Written);
    } else if (!store.isEmpty()) {
        QVERIFY(QFile::remove(path));
        QVERIFY(store == "missing" || KivTest::writeFile(path, store));
    }
    const QByteArray before = KivTest::readFile(path);

    const std::unique_ptr<QDialog> dlg = openDialog(which, edits);
    if (which == Save7) {
        QCOMPARE(CalcTest::child<QLabel>(dlg.get(), "label_result")->text(),
                 QStringLiteral("7 parameters:\r\nDX(m)=-15.500000\r\nDY(m)=120.250000\r\nDZ(m)=88.125000\r\n"
                                "ω(″)=0.500000\r\nκ(″)=-1.500000\r\nγ(″)=2.250000\r\nm=0.000002500000\r\n"));
    }
    ModalDriver driver;
    if (answer == QLatin1String("OK"))
        driver.answerMessageBox();
    else if (!answer.isEmpty())
        driver.answerMessageBoxText(answer);
    clickOk(dlg.get(), which);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), int(!answer.isEmpty()));
    if (!answer.isEmpty()) {
        const ModalDriver::Message m = driver.messages().first();
        QCOMPARE(m.text + " / " + m.title, message);
        QCOMPARE(m.icon, answer != QLatin1String("OK")            ? QMessageBox::Question
                         : message.endsWith(QLatin1String(" / Information")) ? QMessageBox::Information
                                                                            : QMessageBox::Warning);
        if (answer != QLatin1String("OK"))
            QCOMPARE(m.buttons + QStringList{m.defaultButton}, (QStringList{"Yes", "No", "Yes"}));
    }
    if (written.isEmpty()) {
        QVERIFY(dlg->isVisible());
        QCOMPARE(KivTest::readFile(path), before);
        QCOMPARE(QFile::exists(path), store != "missing");
        return;
    }
    QCOMPARE(dlg->result(), int(QDialog::Accepted));
    const QString text = QString::fromUtf8(KivTest::readFile(path));
    QVERIFY2(text.lastIndexOf("<GeoTransformsModel ") == text.indexOf("<GeoTransformsModel " + written), qPrintable(text));
    // A fresh read through the readers' path (the writers' is another
    // recipe) lists it last, under the name the dialog showed, once.
    const QString saved = edit(dlg.get(), which == Save7 ? "lineEdit_name" : "lineEdit_Name")->text();
    QStringList listed;
    for (const TransformModel& m : ModelStore::List(kind))
        listed << m.TransName;
    QCOMPARE(listed.last(), saved);
    QCOMPARE(listed.count(saved), 1);
    QCOMPARE(listed.size(), store == "taken" ? 3 : 1);
    QVERIFY(ModelStore::List(ModelStore::Kind(11 - kind)).isEmpty());
}

void TestModelDialogs::importsModelFiles_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("expected");
    const QStringList keep4{"1", "1", "1", "1"};
    QTest::newRow("4: empty file") << int(Set4) << "empty.txt" << QByteArray("") << keep4;
    QTest::newRow("4: binary") << int(Set4) << "image.txt" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0=\xff\xfe", 20)
                               << keep4;
    QTest::newRow("4: GB18030 keys") << int(Set4) << "model.txt"
                                     << gb18030("# 北京54 → 西安80\nT(゜)=0.25\nDX(m)= 12.5 \nK=\nDY(m)=1=2\n K=3\ndx(m)=4\n")
                                     << QStringList{" 12.5 ", "1", "0.25", ""};
    QTest::newRow("4: exported result") << int(Set4) << "result.csv"
                                        << gb18030("DX(m)=-3.500000\r\nDY(m)=7.125000\r\nT(゜)=0.000321\r\nK=1.000004000000\r\n\n"
                                                   "Checked,SourceX,SourceY,TargetX,TargetY,RMS,\n"
                                                   "1,3380000.0,39500000.0,3380010.0,39500020.0,0.001,\n")
                                        << QStringList{"-3.500000", "7.125000", "0.000321", "1.000004000000"};
    QTest::newRow("7: GB18030 keys") << int(Set7) << "model.txt"
                                     << gb18030("γ(″)=3\nκ(″)=2\nω(″)=5\nm=0.000002\nDZ(m)=-9\nK=5\nT(゜)=6\n")
                                     << QStringList{"1", "1", "-9", "5", "2", "3", "0.000002"};
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
    QVERIFY(KivTest::writeFile(path, content));
    const std::unique_ptr<QDialog> dlg = openDialog(which);
    ModalDriver driver;
    driver.answerFileDialog(path);
    click(dlg.get(), "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QStringList texts;
    for (const QString& f : fieldsOf(which))
        texts << edit(dlg.get(), f)->text();
    QCOMPARE(texts, expected);
    const ModalDriver::FileDialogInfo fd = driver.fileDialogs().value(0);
    QCOMPARE(QDir(fd.directory).canonicalPath(),
             QDir(KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir()).canonicalPath());
    QVERIFY(dlg->isVisible());
}

void TestModelDialogs::chooseReference_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("code");      // empty: the picker is cancelled
    QTest::addColumn<QString>("message");   // empty: none
    QTest::addColumn<QString>("shown");     // the model name field afterwards
    // A chosen name overwrites a typed model name with the proposal.
    QTest::newRow("Save4 source") << int(Save4) << "pushButton_src" << "EPSG:4214" << "" << "Beijing 1954-to-b";
    QTest::newRow("Save4 cancelled") << int(Save4) << "pushButton_dst" << "" << "" << "typed";
    QTest::newRow("Set4 geographic refused") << int(Set4) << "pushButton_src" << "EPSG:4214"
                                             << "Please select a  Projected Coordinate System! " << "typed";
    QTest::newRow("Set4 projected target") << int(Set4) << "pushButton_dst" << "EPSG:2385" << ""
                                           << "a-to-Xian 1980 / 3-degree Gauss-Kruger CM 120E";
    // A projected system stands for its geographic one.
    QTest::newRow("Set7 projected source") << int(Set7) << "pushButton_src" << "EPSG:2436" << "" << "Beijing 1954-to-b";
}

void TestModelDialogs::chooseReference()
{
    QFETCH(int, which);
    QFETCH(QString, button);
    QFETCH(QString, code);
    QFETCH(QString, message);
    QFETCH(QString, shown);
    const std::unique_ptr<QDialog> dlg = openDialog(which, {"lineEdit_Name=typed"});
    ModalDriver driver(20000);
    if (code.isEmpty())
        KivTest::cancelSelector(driver);
    else
        KivTest::answerSelector(driver, code);
    if (!message.isEmpty())
        driver.answerMessageBox();
    click(dlg.get(), button.toLatin1().constData());
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (!message.isEmpty())
        QCOMPARE(driver.messages().value(0).text + driver.messages().value(0).title, message + "Information");
    QCOMPARE(edit(dlg.get(), "lineEdit_Name")->text(), shown);
}

KIV_TEST_CLASS(TestModelDialogs)
#include "tst_ModelDialogs.moc"
