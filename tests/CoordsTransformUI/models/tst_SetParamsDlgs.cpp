#include "models/ModelStore.h"
#include "models/Set4ParamsDlg.h"
#include "models/Set7ParamsDlg.h"

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/SpatialReferenceFactory.h"
#include "KivUI/EnvironmentSetting.h"

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextCodec>

using KivTest::ModalDriver;

namespace {

const QStringList kFields4{"lineEdit_DX", "lineEdit_DY", "lineEdit_T", "lineEdit_K"};
const QStringList kFields7{"lineEdit_DX", "lineEdit_DY", "lineEdit_DZ", "lineEdit_W",
                           "lineEdit_K",  "lineEdit_R",  "lineEdit_M"};

std::unique_ptr<QDialog> makeDialog(int kind)
{
    if (kind == 4)
        return std::unique_ptr<QDialog>(new Set4ParamsDlg(nullptr));
    return std::unique_ptr<QDialog>(new Set7ParamsDlg(nullptr));
}

const QStringList& fieldsOf(int kind)
{
    return kind == 4 ? kFields4 : kFields7;
}

QLineEdit* edit(QWidget* dlg, const QString& name)
{
    QLineEdit* e = dlg->findChild<QLineEdit*>(name);
    if (!e)
        qFatal("no line edit %s", qPrintable(name));
    return e;
}

void setFields(QWidget* dlg, int kind, const QStringList& values)
{
    for (int i = 0; i < fieldsOf(kind).size(); ++i)
        edit(dlg, fieldsOf(kind).at(i))->setText(values.value(i));
}

QStringList fieldTexts(QWidget* dlg, int kind)
{
    QStringList out;
    for (const QString& f : fieldsOf(kind))
        out << edit(dlg, f)->text();
    return out;
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

} // namespace

class TestSetParamsDlgs : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void formsShowTheirCaptions_data();
    void formsShowTheirCaptions();
    void checksInOrder_data();
    void checksInOrder();
    void savesWithTheModelNameAsTarget_data();
    void savesWithTheModelNameAsTarget();
    void refusesATakenName_data();
    void refusesATakenName();
    void badStoreKeepsTheDialogOpen_data();
    void badStoreKeepsTheDialogOpen();
    void importsModelFiles_data();
    void importsModelFiles();
    void set4AcceptsOnlyProjectedSystems();
    void set7ShowsGeographicNamesAndKeepsTheSystems();
    void set7RefusesTheSameGeographicBase();
};

void TestSetParamsDlgs::init()
{
    KivTest::resetData();
}

void TestSetParamsDlgs::formsShowTheirCaptions_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("captions");  // object name = text
    const QStringList common{"groupBox_2=Set Coordinate System", "pushButton_src=select", "pushButton_dst=select",
                             "pushButton_OK=OK", "pushButton_Cancel=Cancel"};
    QTest::newRow("four") << 4 << "Set 4 Params"
                          << common + QStringList{"label=DX(m)", "label_2=DY(m)", "label_3=T(゜)", "label_5=K"};
    QTest::newRow("seven") << 7 << "Set 7 Params"
                           << common + QStringList{"label_11=Source Ellipsoid", "label_12=Target Ellipsoid"};
}

void TestSetParamsDlgs::formsShowTheirCaptions()
{
    QFETCH(int, kind);
    QFETCH(QString, title);
    QFETCH(QStringList, captions);
    const std::unique_ptr<QDialog> dlg = makeDialog(kind);
    QCOMPARE(dlg->windowTitle(), title);
    for (const QString& c : captions) {
        const QString name = c.section('=', 0, 0), text = c.section('=', 1);
        QWidget* w = dlg->findChild<QWidget*>(name);
        QVERIFY2(w, qPrintable(name));
        QCOMPARE(w->property(w->inherits("QGroupBox") ? "title" : "text").toString(), text);
    }
    for (const QString& f : fieldsOf(kind) + QStringList{"lineEdit_src", "lineEdit_des", "lineEdit_Name"})
        QVERIFY2(dlg->findChild<QLineEdit*>(f), qPrintable(f));
    for (const char* w : {"groupBox", "pushButton_Import", "label_13"})
        QVERIFY2(dlg->findChild<QWidget*>(w), w);
}

void TestSetParamsDlgs::checksInOrder_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("clearName");
    QTest::addColumn<int>("emptyField");   // -1: all filled, 99: all empty
    QTest::addColumn<QString>("message");
    for (int kind : {4, 7}) {
        const QByteArray k = QByteArray::number(kind) + ": ";
        QTest::newRow(k + "nothing") << kind << "" << "" << false << 99 << "Please input source spatialreference name! ";
        QTest::newRow(k + "no source") << kind << "" << "b" << false << -1 << "Please input source spatialreference name! ";
        QTest::newRow(k + "no target") << kind << "a" << "" << false << 99 << "Please input target spatialreference name! ";
        QTest::newRow(k + "no name") << kind << "a" << "b" << true << 99 << "Please input transform model name! ";
        for (int i = 0; i < kind; ++i)
            QTest::newRow(k + "empty field " + QByteArray::number(i)) << kind << "a" << "b" << false << i
                                                                       << "Please input valid parameter ! ";
    }
}

void TestSetParamsDlgs::checksInOrder()
{
    QFETCH(int, kind);
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(bool, clearName);
    QFETCH(int, emptyField);
    QFETCH(QString, message);
    const QByteArray before = KivTest::readFile(ModelStore::WriterPath());
    const std::unique_ptr<QDialog> dlg = makeDialog(kind);
    dlg->show();
    edit(dlg.get(), "lineEdit_src")->setText(source);
    edit(dlg.get(), "lineEdit_des")->setText(target);
    if (clearName)
        edit(dlg.get(), "lineEdit_Name")->clear();
    for (int i = 0; i < kind; ++i)
        edit(dlg.get(), fieldsOf(kind).at(i))->setText(emptyField == 99 || emptyField == i ? QString() : "1");

    ModalDriver driver;
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, message);
    QCOMPARE(driver.messages().first().title, QStringLiteral("Error"));
    QVERIFY(dlg->isVisible());
    QCOMPARE(KivTest::readFile(ModelStore::WriterPath()), before);
}

void TestSetParamsDlgs::savesWithTheModelNameAsTarget_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("element");
    QTest::newRow("four") << 4 << QStringList{"0.5", " -12.25", "abc", "1"}
                          << "<GeoTransformsModel SrcSpaRef=\"Xian 1980 / zone 40\" TransName=\"Xian 1980 / zone 40-to-WGS 84\" "
                             "DesSpaRef=\"Xian 1980 / zone 40-to-WGS 84\" DX=\"0.500000\" DY=\"-12.250000\" T=\"0.000000\" "
                             "K=\"1.000000000000\"/>";
    QTest::newRow("seven") << 7 << QStringList{"1", "2", "3", "1,5", "-0.25", "1e-3", "0.0000031"}
                           << "<GeoTransformsModel SrcSpaRef=\"Xian 1980 / zone 40\" TransName=\"Xian 1980 / zone 40-to-WGS 84\" "
                              "DesSpaRef=\"Xian 1980 / zone 40-to-WGS 84\" DX=\"1.000000\" DY=\"2.000000\" DZ=\"3.000000\" "
                              "w=\"0.000000\" k=\"-0.250000\" r=\"0.001000\" m=\"0.000003100000\"/>";
}

void TestSetParamsDlgs::savesWithTheModelNameAsTarget()
{
    QFETCH(int, kind);
    QFETCH(QStringList, values);
    QFETCH(QString, element);
    const std::unique_ptr<QDialog> dlg = makeDialog(kind);
    dlg->show();
    edit(dlg.get(), "lineEdit_src")->setText("Xian 1980 / zone 40");
    edit(dlg.get(), "lineEdit_des")->setText("WGS 84");
    QCOMPARE(edit(dlg.get(), "lineEdit_Name")->text(), QStringLiteral("Xian 1980 / zone 40-to-WGS 84"));
    setFields(dlg.get(), kind, values);

    ModalDriver driver;
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text,
             kind == 4 ? QStringLiteral(" 4 parameters  is saved successfully !")
                       : QStringLiteral(" 7 parameters  is saved successfully !"));
    QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
    QCOMPARE(dlg->result(), int(QDialog::Accepted));

    const QString text = QString::fromUtf8(KivTest::readFile(ModelStore::WriterPath()));
    QVERIFY2(text.contains(element), qPrintable(text));
    const QList<TransformModel> listed = ModelStore::List(ModelStore::Kind(kind));
    QCOMPARE(listed.size(), 1);
    QCOMPARE(listed.first().DesSpaRef, QStringLiteral("Xian 1980 / zone 40-to-WGS 84"));
    QVERIFY(ModelStore::List(ModelStore::Kind(11 - kind)).isEmpty());
}

void TestSetParamsDlgs::refusesATakenName_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("four") << 4;
    QTest::newRow("seven") << 7;
}

void TestSetParamsDlgs::refusesATakenName()
{
    QFETCH(int, kind);
    TransformModel taken{"a-to-b", "x", "y", QList<double>()};
    for (int i = 0; i < kind; ++i)
        taken.Params << 9.0;
    QCOMPARE(ModelStore::Add(ModelStore::Kind(kind), taken), ModelStore::Written);
    const QByteArray before = KivTest::readFile(ModelStore::WriterPath());

    const std::unique_ptr<QDialog> dlg = makeDialog(kind);
    dlg->show();
    edit(dlg.get(), "lineEdit_src")->setText("a");
    edit(dlg.get(), "lineEdit_des")->setText("b");
    setFields(dlg.get(), kind, QStringList(QStringList() << "1" << "2" << "3" << "4" << "5" << "6" << "7").mid(0, kind));
    ModalDriver driver;
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    QCOMPARE(driver.messages().first().text, QStringLiteral("The TransModelName has been taken,Please input another one! "));
    QCOMPARE(driver.messages().first().title, QStringLiteral("Error"));
    QVERIFY(dlg->isVisible());
    QCOMPARE(KivTest::readFile(ModelStore::WriterPath()), before);

    // Another name goes through.
    edit(dlg.get(), "lineEdit_Name")->setText("a-to-b ");
    driver.answerMessageBox();
    click(dlg.get(), "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg->result(), int(QDialog::Accepted));
    QCOMPARE(ModelStore::List(ModelStore::Kind(kind)).size(), 2);
}

void TestSetParamsDlgs::badStoreKeepsTheDialogOpen_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("store");   // empty: no store file at all
    QTest::addColumn<bool>("failureShown");
    for (int kind : {4, 7}) {
        const QByteArray k = QByteArray::number(kind) + ": ";
        QTest::newRow(k + "missing") << kind << QByteArray() << true;
        QTest::newRow(k + "not XML") << kind << QByteArray("\xff\xfe\0garbage", 10) << false;
        QTest::newRow(k + "no container") << kind << QByteArray("<r/>") << false;
    }
}

void TestSetParamsDlgs::badStoreKeepsTheDialogOpen()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, store);
    QFETCH(bool, failureShown);
    const QString path = ModelStore::WriterPath();
    QFile::remove(path);
    if (!store.isEmpty())
        QVERIFY(KivTest::writeFile(path, store));

    const std::unique_ptr<QDialog> dlg = makeDialog(kind);
    dlg->show();
    edit(dlg.get(), "lineEdit_src")->setText("a");
    edit(dlg.get(), "lineEdit_des")->setText("b");
    setFields(dlg.get(), kind, QStringList(QStringList() << "1" << "1" << "1" << "1" << "1" << "1" << "1").mid(0, kind));
    ModalDriver driver;
    if (failureShown)
        driver.answerMessageBox();
    click(dlg.get(), "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (failureShown) {
        QCOMPARE(driver.messages().first().text, QStringLiteral("save result failed!"));
        QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
    }
    QVERIFY(dlg->isVisible());
    QCOMPARE(KivTest::readFile(path), store);
    QCOMPARE(QFile::exists(path), !store.isEmpty());
}

void TestSetParamsDlgs::importsModelFiles_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("fileName");   // empty: the file dialog is cancelled
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("expected");
    const QStringList keep4{"k", "k", "k", "k"}, keep7{"k", "k", "k", "k", "k", "k", "k"};

    QTest::newRow("4: cancelled") << 4 << QString() << QByteArray() << keep4;
    QTest::newRow("4: empty file") << 4 << "empty.txt" << QByteArray("") << keep4;
    QTest::newRow("4: binary") << 4 << "image.txt" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0=\xff\xfe", 20) << keep4;
    QTest::newRow("4: GB18030 keys") << 4 << "model.txt"
                                     << gb18030("# 北京54 → 西安80\nT(゜)=0.25\nDX(m)= 12.5 \nK=\nDY(m)=1=2\n K=3\ndx(m)=4\n")
                                     << QStringList{" 12.5 ", "k", "0.25", ""};
    QTest::newRow("4: exported result") << 4 << "result.csv"
                                        << gb18030("DX(m)=-3.500000\r\nDY(m)=7.125000\r\nT(゜)=0.000321\r\nK=1.000004000000\r\n\n"
                                                   "Checked,Source X,Source Y,Target X,Target Y,Residual,\n"
                                                   "1,3380000.0,39500000.0,3380010.0,39500020.0,0.001,\n")
                                        << QStringList{"-3.500000", "7.125000", "0.000321", "1.000004000000"};
    QTest::newRow("4: seven-parameter keys") << 4 << "seven.txt" << gb18030("DZ(m)=1\nm=2\nκ(″)=3\nDX(m)=4\n")
                                             << QStringList{"4", "k", "k", "k"};

    QTest::newRow("7: empty file") << 7 << "empty.txt" << QByteArray() << keep7;
    QTest::newRow("7: binary") << 7 << "bin.csv" << QByteArray("\0\x01m=\x80\x81\nDX(m)\0=1\n", 16) << keep7;
    QTest::newRow("7: GB18030 keys") << 7 << "model.txt"
                                     << gb18030("γ(″)=3\nκ(″)=2\nω(″)=1\nm=0.000002\nDZ(m)=-9\nK=5\nT(゜)=6\n")
                                     << QStringList{"k", "k", "-9", "1", "2", "3", "0.000002"};
    QTest::newRow("7: UTF-8 Greek keys are not read as GB18030") << 7 << "utf8.txt"
                                                                 << QString("ω(″)=1\nDX(m)=2\n").toUtf8()
                                                                 << QStringList{"2", "k", "k", "k", "k", "k", "k"};
    QTest::newRow("7: exported result") << 7 << "result.txt"
                                        << gb18030("Beijing 1954 -- WGS 84\n\n"
                                                   "DX(m)=-15.500000\r\nDY(m)=120.250000\r\nDZ(m)=88.125000\r\n"
                                                   "ω(″)=0.500000\r\nκ(″)=-1.500000\r\nγ(″)=2.250000\r\nm=0.000002500000\r\n\n"
                                                   "Checked\tB\tL\tH\tB\tL\tH\tdp\tdh\t\n")
                                        << QStringList{"-15.500000", "120.250000", "88.125000", "0.500000",
                                                       "-1.500000", "2.250000", "0.000002500000"};
}

void TestSetParamsDlgs::importsModelFiles()
{
    QFETCH(int, kind);
    QFETCH(QString, fileName);
    QFETCH(QByteArray, content);
    QFETCH(QStringList, expected);
    const QString path = KivTest::scratchDir() + QLatin1Char('/') + fileName;
    if (!fileName.isEmpty())
        QVERIFY(KivTest::writeFile(path, content));

    const std::unique_ptr<QDialog> dlg = makeDialog(kind);
    dlg->show();
    setFields(dlg.get(), kind, QString(kind, QLatin1Char('k')).split(QString(), Qt::SkipEmptyParts));
    ModalDriver driver;
    if (fileName.isEmpty())
        driver.cancelFileDialog();
    else
        driver.answerFileDialog(path);
    click(dlg.get(), "pushButton_Import");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(fieldTexts(dlg.get(), kind), expected);
    QCOMPARE(driver.fileDialogs().size(), 1);
    const ModalDriver::FileDialogInfo fd = driver.fileDialogs().first();
    QCOMPARE(fd.caption, QStringLiteral("Open Text File"));
    QCOMPARE(fd.nameFilters, (QStringList{"Text Files (*.txt)", "CSV Files(*.csv)"}));
    QVERIFY(!fd.save);
    QCOMPARE(QDir(fd.directory).canonicalPath(),
             QDir(KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir()).canonicalPath());
    QVERIFY(dlg->isVisible());
}

void TestSetParamsDlgs::set4AcceptsOnlyProjectedSystems()
{
    Set4ParamsDlg dlg(nullptr);
    dlg.show();
    ModalDriver driver(20000);
    KivTest::answerSelector(driver, QStringLiteral("EPSG:4214"));
    driver.answerMessageBox();
    click(&dlg, "pushButton_src");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().value(0).text, QStringLiteral("Please select a  Projected Coordinate System! "));
    QCOMPARE(driver.messages().value(0).title, QStringLiteral("Information"));
    QVERIFY(edit(&dlg, "lineEdit_src")->text().isEmpty());

    KivTest::answerSelector(driver, QStringLiteral("EPSG:2436"));
    click(&dlg, "pushButton_src");
    KivTest::answerSelector(driver, QStringLiteral("EPSG:2385"));
    click(&dlg, "pushButton_dst");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(&dlg, "lineEdit_src")->text(), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 117E"));
    QCOMPARE(edit(&dlg, "lineEdit_des")->text(), QStringLiteral("Xian 1980 / 3-degree Gauss-Kruger CM 120E"));
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(),
             QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 117E-to-Xian 1980 / 3-degree Gauss-Kruger CM 120E"));
}

void TestSetParamsDlgs::set7ShowsGeographicNamesAndKeepsTheSystems()
{
    Set7ParamsDlg dlg(nullptr);
    dlg.show();
    ModalDriver driver(20000);
    KivTest::answerSelector(driver, QStringLiteral("EPSG:2436"));
    click(&dlg, "pushButton_src");
    KivTest::answerSelector(driver, QStringLiteral("EPSG:4214"));
    click(&dlg, "pushButton_dst");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(&dlg, "lineEdit_src")->text(), QStringLiteral("Beijing 1954"));
    QCOMPARE(edit(&dlg, "lineEdit_des")->text(), QStringLiteral("Beijing 1954"));

    // The kept systems share their base: refused however the fields read.
    edit(&dlg, "lineEdit_des")->setText("typed over");
    setFields(&dlg, 7, {"1", "2", "3", "4", "5", "6", "7"});
    driver.answerMessageBox();
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().value(0).text, QStringLiteral("The Source Spheroid must be different with target Spheroid!"));
    QVERIFY(ModelStore::List(ModelStore::Params7).isEmpty());

    // Choosing another base for the target lets it through.
    KivTest::answerSelector(driver, QStringLiteral("EPSG:32650"));
    click(&dlg, "pushButton_dst");
    QCOMPARE(edit(&dlg, "lineEdit_des")->text(), QStringLiteral("WGS 84"));
    driver.answerMessageBox();
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QCOMPARE(ModelStore::List(ModelStore::Params7).value(0).TransName, QStringLiteral("Beijing 1954-to-WGS 84"));
}

void TestSetParamsDlgs::set7RefusesTheSameGeographicBase()
{
    using KivGeometry::SpatialReferenceFactory;
    const auto beijingZone = SpatialReferenceFactory::CreateSpatialReference("EPSG:2436");
    const auto beijing = SpatialReferenceFactory::CreateSpatialReference("EPSG:4214");
    const auto xian = SpatialReferenceFactory::CreateSpatialReference("EPSG:4610");
    QVERIFY(beijingZone && beijing && xian);

    Set7ParamsDlg dlg(nullptr);
    dlg.show();
    dlg.SetSpatialReferences(beijingZone, beijing);
    QCOMPARE(edit(&dlg, "lineEdit_src")->text(), QStringLiteral("Beijing 1954"));
    QCOMPARE(edit(&dlg, "lineEdit_des")->text(), QStringLiteral("Beijing 1954"));
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(), QStringLiteral("Beijing 1954-to-Beijing 1954"));
    setFields(&dlg, 7, {"1", "2", "3", "4", "5", "6", "7"});
    ModalDriver driver;
    driver.answerMessageBox();
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().value(0).text, QStringLiteral("The Source Spheroid must be different with target Spheroid!"));
    QCOMPARE(driver.messages().value(0).title, QStringLiteral("Error"));
    QVERIFY(ModelStore::List(ModelStore::Params7).isEmpty());

    // A null side stays as it is.
    dlg.SetSpatialReferences(nullptr, xian);
    QCOMPARE(edit(&dlg, "lineEdit_src")->text(), QStringLiteral("Beijing 1954"));
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(), QStringLiteral("Beijing 1954-to-Xian 1980"));
    driver.answerMessageBox();
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    const QList<TransformModel> listed = ModelStore::List(ModelStore::Params7);
    QCOMPARE(listed.size(), 1);
    QCOMPARE(listed.first().SrcSpaRef, QStringLiteral("Beijing 1954"));
    QCOMPARE(listed.first().DesSpaRef, QStringLiteral("Beijing 1954-to-Xian 1980"));
}

KIV_TEST_CLASS(TestSetParamsDlgs)
#include "tst_SetParamsDlgs.moc"
