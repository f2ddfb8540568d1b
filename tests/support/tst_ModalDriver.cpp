#include "support/ModalDriver.h"
#include "support/TestRegistry.h"

#include <QDialog>
#include <QFileDialog>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

using KivTest::ModalDriver;

class TestModalDriver : public QObject
{
    Q_OBJECT
private slots:
    void answersMessageBoxesAndRecordsThem_data();
    void answersMessageBoxesAndRecordsThem();
    void closesAnUnexpectedModalInsteadOfHanging();
    void reportsAnAnswerThatWasNeverUsed();
    void answersAndCancelsFileDialogs();
    void answersWindowsOpenedFromAnotherModal();
    void closesAWindowItsHandlerLeftOpen();
};

void TestModalDriver::answersMessageBoxesAndRecordsThem_data()
{
    QTest::addColumn<QString>("pressText");
    QTest::addColumn<int>("expected");
    QTest::newRow("default Yes") << QString() << int(QMessageBox::Yes);
    QTest::newRow("No by text") << QStringLiteral("No") << int(QMessageBox::No);
}

void TestModalDriver::answersMessageBoxesAndRecordsThem()
{
    QFETCH(QString, pressText);
    QFETCH(int, expected);
    ModalDriver driver;
    if (pressText.isEmpty())
        driver.answerMessageBox();
    else
        driver.answerMessageBoxText(pressText);

    const int answer = QMessageBox::question(nullptr, QStringLiteral("Information"), QStringLiteral("Replace it?"),
                                             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(answer, expected);
    QCOMPARE(driver.messages().size(), 1);
    const ModalDriver::Message m = driver.messages().first();
    QCOMPARE(m.title, QStringLiteral("Information"));
    QCOMPARE(m.text, QStringLiteral("Replace it?"));
    QVERIFY(m.buttons.contains(QStringLiteral("Yes")) && m.buttons.contains(QStringLiteral("No")));
    QCOMPARE(m.defaultButton, QStringLiteral("Yes"));
    QCOMPARE(m.icon, QMessageBox::Question);
}

void TestModalDriver::closesAnUnexpectedModalInsteadOfHanging()
{
    ModalDriver driver;
    QMessageBox::warning(nullptr, QStringLiteral("Warning"), QStringLiteral("nobody expects this"));
    QVERIFY(!driver.verify());
    QVERIFY(driver.report().contains(QStringLiteral("nobody expects this")));
    // The failure is reported once; the driver is usable again.
    QVERIFY(driver.verify());
}

void TestModalDriver::reportsAnAnswerThatWasNeverUsed()
{
    ModalDriver driver;
    driver.answerMessageBox();
    QVERIFY(!driver.verify());
    QCOMPARE(driver.pending(), 0);
}

void TestModalDriver::answersAndCancelsFileDialogs()
{
    ModalDriver driver;
    const QString path = QDir::tempPath() + QStringLiteral("/kivtest-answer.txt");
    driver.answerFileDialog(path);
    const QString chosen = QFileDialog::getSaveFileName(nullptr, QStringLiteral("Output File"), QDir::tempPath(),
                                                        QStringLiteral("Text Files(*.txt);;CSV Files(*.csv)"));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(chosen, path);
    QCOMPARE(driver.fileDialogs().first().caption, QStringLiteral("Output File"));
    QCOMPARE(driver.fileDialogs().first().nameFilters,
             (QStringList{QStringLiteral("Text Files(*.txt)"), QStringLiteral("CSV Files(*.csv)")}));
    QVERIFY(driver.fileDialogs().first().save);

    driver.cancelFileDialog();
    QVERIFY(QFileDialog::getOpenFileName(nullptr, QStringLiteral("Open Text File")).isEmpty());
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
}

void TestModalDriver::answersWindowsOpenedFromAnotherModal()
{
    QDialog outer;
    auto* button = new QPushButton(QStringLiteral("OK"), &outer);
    QObject::connect(button, &QPushButton::clicked, &outer, [&outer] {
        if (QMessageBox::question(&outer, QStringLiteral("Q"), QStringLiteral("Close?")) == QMessageBox::Yes)
            outer.accept();
    });

    ModalDriver driver;
    driver.handleModal("QDialog", [&driver](QWidget* w) {
        driver.answerMessageBoxText(QStringLiteral("Yes"));
        w->findChild<QPushButton*>()->click();
    });
    QCOMPARE(outer.exec(), int(QDialog::Accepted));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, QStringLiteral("Close?"));
}

void TestModalDriver::closesAWindowItsHandlerLeftOpen()
{
    ModalDriver driver(200);
    driver.handleModal([](QWidget*) {});
    QDialog dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QVERIFY(!driver.verify());
    QVERIFY(driver.report().contains(QStringLiteral("still open")));
}

KIV_TEST_CLASS(TestModalDriver)
#include "tst_ModalDriver.moc"
