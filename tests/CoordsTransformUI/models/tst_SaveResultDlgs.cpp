#include "models/ModelStore.h"
#include "models/Save4ParamsResultDlg.h"
#include "models/Save7ParamsResultDlg.h"

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using KivTest::ModalDriver;

namespace {

const double kResult4[4] = {0.5, -1.25, 0.000321, 1.0};
const double kResult7[7] = {-15.5, 120.25, 88.125, 0.5, -1.5, 2.25, 0.0000025};

QStringList storedNames(ModelStore::Kind kind)
{
    QStringList out;
    for (const TransformModel& m : ModelStore::List(kind))
        out << m.TransName;
    return out;
}

void add(ModelStore::Kind kind, const QString& name)
{
    TransformModel m{name, QStringLiteral("s"), QStringLiteral("d"), QList<double>()};
    for (int i = 0; i < int(kind); ++i)
        m.Params << 7.0;
    QCOMPARE(ModelStore::Add(kind, m), ModelStore::Written);
}

QLineEdit* edit(QWidget* dlg, const char* name)
{
    return dlg->findChild<QLineEdit*>(QString::fromLatin1(name));
}

void click(QWidget* dlg, const char* name)
{
    QPushButton* b = dlg->findChild<QPushButton*>(QString::fromLatin1(name));
    QVERIFY2(b, name);
    b->click();
}

} // namespace

class TestSaveResultDlgs : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void formsShowTheirCaptions_data();
    void formsShowTheirCaptions();
    void save4ProposesTheNameFromTheReferences();
    void save4ChecksInOrder_data();
    void save4ChecksInOrder();
    void save4WritesTheModel();
    void save7ShowsTheResultAndWritesIt();
    void save7NeedsAName();
    void replaceQuestion_data();
    void replaceQuestion();
    void badStoreKeepsTheDialogOpen_data();
    void badStoreKeepsTheDialogOpen();
    void save4TakesTheChosenReferenceName();

private:
    QString m_storePath;
};

void TestSaveResultDlgs::init()
{
    KivTest::resetData();
    m_storePath = ModelStore::WriterPath();
}

void TestSaveResultDlgs::formsShowTheirCaptions_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("captions");  // object name = text
    QTest::newRow("four") << 4 << "Save4ParamsResultDlg"
                          << QStringList{"label=Source SpatialReference", "pushButton_src=select",
                                         "label_2=Target SpatialReference", "pushButton_dst=select",
                                         "label_3=Transform model name", "pushButton_Ok=OK",
                                         "pushButton_Cancel=Cancel"};
    QTest::newRow("seven") << 7 << "Save7ParamsResultDlg"
                           << QStringList{"label_2=Transform model name:", "pushButton_OK=OK",
                                          "pushButton_Cancel=Cancel"};
}

void TestSaveResultDlgs::formsShowTheirCaptions()
{
    QFETCH(int, kind);
    QFETCH(QString, title);
    QFETCH(QStringList, captions);
    std::unique_ptr<QDialog> dlg;
    if (kind == 4)
        dlg.reset(new Save4ParamsResultDlg(kResult4, nullptr));
    else
        dlg.reset(new Save7ParamsResultDlg(kResult7, "a", "b", "a-to-b", nullptr));
    QCOMPARE(dlg->windowTitle(), title);
    for (const QString& c : captions) {
        const QString name = c.section('=', 0, 0), text = c.section('=', 1);
        QWidget* w = dlg->findChild<QWidget*>(name);
        QVERIFY2(w, qPrintable(name));
        QCOMPARE(w->property("text").toString(), text);
    }
    for (const char* e : {"lineEdit_src", "lineEdit_des", "lineEdit_Name"})
        QCOMPARE(edit(dlg.get(), e) != nullptr, kind == 4);
    QCOMPARE(edit(dlg.get(), "lineEdit_name") != nullptr, kind == 7);
    QCOMPARE(dlg->minimumSize(), dlg->maximumSize());
    const Qt::WindowFlags flags = dlg->windowFlags();
    QVERIFY(!(flags & (Qt::WindowContextHelpButtonHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint)));
    QVERIFY(flags & Qt::WindowCloseButtonHint);
}

void TestSaveResultDlgs::save4ProposesTheNameFromTheReferences()
{
    Save4ParamsResultDlg dlg(kResult4, nullptr);
    edit(&dlg, "lineEdit_Name")->setText("typed");
    QTest::keyClicks(edit(&dlg, "lineEdit_src"), "Xian 1980");
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(), QStringLiteral("Xian 1980-to-"));
    edit(&dlg, "lineEdit_des")->setText("CGCS2000");
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(), QStringLiteral("Xian 1980-to-CGCS2000"));
    edit(&dlg, "lineEdit_Name")->setText("mine");
    edit(&dlg, "lineEdit_src")->clear();
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(), QStringLiteral("-to-CGCS2000"));
}

void TestSaveResultDlgs::save4ChecksInOrder_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::newRow("nothing") << "" << "" << "" << "Please input source spatialreference name! ";
    QTest::newRow("no source") << "" << "b" << "n" << "Please input source spatialreference name! ";
    QTest::newRow("no target") << "a" << "" << "" << "Please input target spatialreference name! ";
    QTest::newRow("no name") << "a" << "b" << "" << "Please input transform model name! ";
}

void TestSaveResultDlgs::save4ChecksInOrder()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, name);
    QFETCH(QString, message);
    const QByteArray before = KivTest::readFile(m_storePath);
    Save4ParamsResultDlg dlg(kResult4, nullptr);
    dlg.show();
    edit(&dlg, "lineEdit_src")->setText(source);
    edit(&dlg, "lineEdit_des")->setText(target);
    edit(&dlg, "lineEdit_Name")->setText(name);

    ModalDriver driver;
    driver.answerMessageBox();
    click(&dlg, "pushButton_Ok");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    QCOMPARE(driver.messages().first().text, message);
    QCOMPARE(driver.messages().first().title, QString());
    QCOMPARE(driver.messages().first().icon, QMessageBox::Warning);
    QVERIFY(dlg.isVisible());
    QCOMPARE(KivTest::readFile(m_storePath), before);
}

void TestSaveResultDlgs::save4WritesTheModel()
{
    Save4ParamsResultDlg dlg(kResult4, nullptr);
    dlg.show();
    // Free text is accepted as reference names.
    edit(&dlg, "lineEdit_src")->setText(QStringLiteral("北京54 / zone 39"));
    edit(&dlg, "lineEdit_des")->setText(QStringLiteral("no such system"));
    ModalDriver driver;
    click(&dlg, "pushButton_Ok");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));

    const QString text = QString::fromUtf8(KivTest::readFile(m_storePath));
    QVERIFY2(text.contains(QStringLiteral("<GeoTransformsModel SrcSpaRef=\"北京54 / zone 39\" "
                                          "TransName=\"北京54 / zone 39-to-no such system\" DesSpaRef=\"no such system\" "
                                          "DX=\"0.500000\" DY=\"-1.250000\" T=\"0.000321\" K=\"1.000000000000\"/>")),
             qPrintable(text));
    // A fresh read, as the conversion dialogs do, lists it.
    TransformModel m;
    QVERIFY(ModelStore::Find(ModelStore::Params4, QStringLiteral("北京54 / zone 39-to-no such system"), &m));
    QCOMPARE(m.Params, (QList<double>{0.5, -1.25, 0.000321, 1.0}));
}

void TestSaveResultDlgs::save7ShowsTheResultAndWritesIt()
{
    Save7ParamsResultDlg dlg(kResult7, QStringLiteral("Beijing 1954"), QStringLiteral("WGS 84"),
                             QStringLiteral("Beijing 1954-to-WGS 84"), nullptr);
    QCOMPARE(dlg.findChild<QLabel*>("label_result")->text(),
             QStringLiteral("7 parameters:\r\nDX(m)=-15.500000\r\nDY(m)=120.250000\r\nDZ(m)=88.125000\r\n"
                            "ω(″)=0.500000\r\nκ(″)=-1.500000\r\nγ(″)=2.250000\r\nm=0.000002500000\r\n"));
    QCOMPARE(edit(&dlg, "lineEdit_name")->text(), QStringLiteral("Beijing 1954-to-WGS 84"));
    edit(&dlg, "lineEdit_name")->setText(QStringLiteral("my <model> & \"co\""));
    dlg.show();
    ModalDriver driver;
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));

    const QList<TransformModel> models = ModelStore::List(ModelStore::Params7);
    QCOMPARE(models.size(), 1);
    QCOMPARE(models.first().TransName, QStringLiteral("my <model> & \"co\""));
    QCOMPARE(models.first().SrcSpaRef, QStringLiteral("Beijing 1954"));
    QCOMPARE(models.first().DesSpaRef, QStringLiteral("WGS 84"));
    QCOMPARE(models.first().Params, (QList<double>{-15.5, 120.25, 88.125, 0.5, -1.5, 2.25, 0.0000025}));
    QVERIFY(ModelStore::List(ModelStore::Params4).isEmpty());
}

void TestSaveResultDlgs::save7NeedsAName()
{
    const QByteArray before = KivTest::readFile(m_storePath);
    Save7ParamsResultDlg dlg(kResult7, "a", "b", QString(), nullptr);
    dlg.show();
    ModalDriver driver;
    driver.answerMessageBox();
    click(&dlg, "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, QStringLiteral("Please input transform model name! "));
    QCOMPARE(driver.messages().first().title, QString());
    QVERIFY(dlg.isVisible());
    QCOMPARE(KivTest::readFile(m_storePath), before);

    click(&dlg, "pushButton_Cancel");
    QCOMPARE(dlg.result(), int(QDialog::Rejected));
    QVERIFY(!dlg.isVisible());
}

void TestSaveResultDlgs::replaceQuestion_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("answer");
    QTest::newRow("four, Yes") << 4 << "Yes";
    QTest::newRow("four, No") << 4 << "No";
    QTest::newRow("seven, Yes") << 7 << "Yes";
    QTest::newRow("seven, No") << 7 << "No";
}

void TestSaveResultDlgs::replaceQuestion()
{
    QFETCH(int, kind);
    QFETCH(QString, answer);
    const auto k = ModelStore::Kind(kind);
    for (const char* n : {"a-to-b", "other", "third"})
        add(k, QString::fromLatin1(n));
    const QByteArray before = KivTest::readFile(m_storePath);

    std::unique_ptr<QDialog> dlg;
    if (kind == 4) {
        dlg.reset(new Save4ParamsResultDlg(kResult4, nullptr));
        edit(dlg.get(), "lineEdit_src")->setText("a");
        edit(dlg.get(), "lineEdit_des")->setText("b");
    } else {
        dlg.reset(new Save7ParamsResultDlg(kResult7, "a", "b", "a-to-b", nullptr));
    }
    dlg->show();
    ModalDriver driver;
    driver.answerMessageBoxText(answer);
    click(dlg.get(), kind == 4 ? "pushButton_Ok" : "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));

    const ModalDriver::Message q = driver.messages().value(0);
    QCOMPARE(q.title, QStringLiteral("Information"));
    QCOMPARE(q.text, QStringLiteral("The TransModelName has been taken,Wherher to replace it or not? "));
    QCOMPARE(q.buttons, (QStringList{"Yes", "No"}));
    QCOMPARE(q.defaultButton, QStringLiteral("Yes"));

    if (answer == QLatin1String("No")) {
        QVERIFY(dlg->isVisible());
        QCOMPARE(KivTest::readFile(m_storePath), before);
        return;
    }
    QCOMPARE(dlg->result(), int(QDialog::Accepted));
    QCOMPARE(storedNames(k), (QStringList{"other", "third", "a-to-b"}));
    QCOMPARE(ModelStore::List(k).last().Params.first(), kind == 4 ? kResult4[0] : kResult7[0]);
    QCOMPARE(ModelStore::List(k).first().Params.first(), 7.0);
}

void TestSaveResultDlgs::badStoreKeepsTheDialogOpen_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("store");   // empty: no store file at all
    QTest::addColumn<QString>("message");    // what the dialog says, if anything
    QTest::newRow("four, missing") << 4 << QByteArray() << QString();
    QTest::newRow("seven, missing") << 7 << QByteArray() << "save result failed!";
    QTest::newRow("four, not XML") << 4 << QByteArray("DX(m)=1") << QString();
    QTest::newRow("seven, not XML") << 7 << QByteArray("<a><b></a>") << QString();
    QTest::newRow("four, no container") << 4 << QByteArray("<r><Params7/></r>") << QString();
    QTest::newRow("seven, no container") << 7 << QByteArray("<r><Params4/></r>") << QString();
}

void TestSaveResultDlgs::badStoreKeepsTheDialogOpen()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, store);
    QFETCH(QString, message);
    QFile::remove(m_storePath);
    if (!store.isEmpty())
        QVERIFY(KivTest::writeFile(m_storePath, store));

    std::unique_ptr<QDialog> dlg;
    if (kind == 4) {
        dlg.reset(new Save4ParamsResultDlg(kResult4, nullptr));
        edit(dlg.get(), "lineEdit_src")->setText("a");
        edit(dlg.get(), "lineEdit_des")->setText("b");
    } else {
        dlg.reset(new Save7ParamsResultDlg(kResult7, "a", "b", "a-to-b", nullptr));
    }
    dlg->show();
    ModalDriver driver;
    if (!message.isEmpty())
        driver.answerMessageBox();
    click(dlg.get(), kind == 4 ? "pushButton_Ok" : "pushButton_OK");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (!message.isEmpty()) {
        QCOMPARE(driver.messages().first().text, message);
        QCOMPARE(driver.messages().first().title, QStringLiteral("Information"));
    }
    QVERIFY(dlg->isVisible());
    QCOMPARE(KivTest::readFile(m_storePath), store);
    QCOMPARE(QFile::exists(m_storePath), !store.isEmpty());
}

void TestSaveResultDlgs::save4TakesTheChosenReferenceName()
{
    Save4ParamsResultDlg dlg(kResult4, nullptr);
    dlg.show();
    edit(&dlg, "lineEdit_Name")->setText("typed");
    ModalDriver driver(20000);
    KivTest::answerSelector(driver, QStringLiteral("EPSG:4214"));
    click(&dlg, "pushButton_src");
    KivTest::answerSelector(driver, QStringLiteral("EPSG:2436"));
    click(&dlg, "pushButton_dst");
    KivTest::cancelSelector(driver);
    click(&dlg, "pushButton_src");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(&dlg, "lineEdit_src")->text(), QStringLiteral("Beijing 1954"));
    QCOMPARE(edit(&dlg, "lineEdit_des")->text(), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 117E"));
    QCOMPARE(edit(&dlg, "lineEdit_Name")->text(),
             QStringLiteral("Beijing 1954-to-Beijing 1954 / 3-degree Gauss-Kruger CM 117E"));
}

KIV_TEST_CLASS(TestSaveResultDlgs)
#include "tst_SaveResultDlgs.moc"
