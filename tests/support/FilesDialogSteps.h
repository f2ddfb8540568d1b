#pragma once

// Steps shared by the tests (and the benchmark) that drive the file
// conversion dialog: what a user does, by object name; and the model store
// they work with.

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace DialogSteps {

inline void click(QWidget& dlg, const char* button)
{
    dlg.findChild<QAbstractButton*>(QLatin1String(button))->click();
}

inline QLineEdit* edit(QWidget& dlg, const char* name)
{
    return dlg.findChild<QLineEdit*>(QLatin1String(name));
}

inline QString cell(QWidget& dlg, int row, int column)
{
    QTableWidgetItem* item = dlg.findChild<QTableWidget*>(QStringLiteral("tableWidget"))->item(row, column);
    return item ? item->text() : QString();
}

inline QStringList comboItems(QWidget& dlg, const char* combo)
{
    auto* box = dlg.findChild<QComboBox*>(QLatin1String(combo));
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items << box->itemText(i);
    return items;
}

/// "title|text" of every message box the driver saw, in order.
inline QStringList messageTexts(const KivTest::ModalDriver& driver)
{
    QStringList texts;
    for (const KivTest::ModalDriver::Message& m : driver.messages())
        texts << m.title + QLatin1Char('|') + m.text;
    return texts;
}

/// Makes the format whose file name is `fileName` current.
inline void chooseFormat(QWidget& dlg, const QString& fileName)
{
    auto* combo = dlg.findChild<QComboBox*>(QStringLiteral("comboBox"));
    for (int i = 0; i < combo->count(); ++i) {
        if (combo->itemText(i).startsWith(fileName + QLatin1Char(' ')))
            combo->setCurrentIndex(i);
    }
}

inline void pickInput(QWidget& dlg, KivTest::ModalDriver& driver, const QString& path)
{
    driver.answerFileDialog(path);
    click(dlg, "pushButton_Input");
}

/// Answers the target system dialog: `code` from the picker, or a .prj of
/// the scratch folder imported; then OK.
inline void answerTarget(KivTest::ModalDriver& driver, const QString& code)
{
    driver.handleModal("OutputSpatialReferenceDlg", [&driver, code](QWidget* w) {
        if (code.endsWith(QLatin1String(".prj"))) {
            driver.answerFileDialog(KivTest::scratchDir() + QLatin1Char('/') + code);
            w->findChild<QAbstractButton*>(QStringLiteral("import_pushButton"))->click();
        } else {
            KivTest::answerSelector(driver, code);
            w->findChild<QAbstractButton*>(QStringLiteral("Select_pushButton"))->click();
        }
        w->findChild<QAbstractButton*>(QStringLiteral("okButton"))->click();
    });
}

using KivTest::typeAndAccept;

/// Answers the next file dialog with `files` of the scratch folder under the
/// name filter `filter` (empty: the dialog's first); the dialog keeps only
/// names its filter matches.
inline void answerFiles(KivTest::ModalDriver& driver, const QStringList& files, const QString& filter = QString())
{
    driver.handleModal("QFileDialog", [files, filter](QWidget* w) {
        auto* dialog = qobject_cast<QFileDialog*>(w);
        if (!filter.isEmpty())
            dialog->selectNameFilter(filter);
        dialog->setDirectory(KivTest::scratchDir());
        QStringList quoted;
        for (const QString& f : files)
            quoted << QLatin1Char('"') + f + QLatin1Char('"');
        typeAndAccept(dialog, files.size() == 1 ? KivTest::scratchDir() + QLatin1Char('/') + files.first()
                                                : quoted.join(QLatin1Char(' ')));
    });
}

inline void pickSystems(QWidget& dlg, KivTest::ModalDriver& driver, const QString& source, const QString& target)
{
    if (!source.isEmpty()) {
        KivTest::answerSelector(driver, source);
        click(dlg, "pushButton_Original");
    }
    if (!target.isEmpty()) {
        KivTest::answerSelector(driver, target);
        click(dlg, "pushButton_Target");
    }
}

inline void chooseModel(QWidget& dlg, const QString& name, const char* comboName = "comboBox_Model")
{
    auto* combo = dlg.findChild<QComboBox*>(QLatin1String(comboName));
    combo->setCurrentIndex(combo->findText(name));
}

inline QString storePath()
{
    return KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml");
}

/// A store with four-parameter models "four-a", "four-b" and the
/// seven-parameter model "seven-a" (values in `fourA` / `sevenA`).
inline void writeStore(bool withModels = true)
{
    KivTest::writeFile(storePath(),
                       withModels ? QByteArray("<CoordTransform><Params4>"
                                               "<GeoTransformsModel TransName=\"four-a\" DX=\"100\" DY=\"-50\" "
                                               "T=\"0.001\" K=\"1.00001\"/>"
                                               "<GeoTransformsModel TransName=\"four-b\" DX=\"1\" DY=\"2\" T=\"0\" "
                                               "K=\"1\"/>"
                                               "</Params4><Params7>"
                                               "<GeoTransformsModel TransName=\"seven-a\" DX=\"-12.5\" "
                                               "DY=\"-130.3\" DZ=\"-80.1\" w=\"0.5\" k=\"-1.2\" r=\"2\" "
                                               "m=\"0.000004\"/>"
                                               "</Params7></CoordTransform>")
                                  : QByteArray("<CoordTransform><Params4/><Params7/></CoordTransform>"));
}
inline QList<double> fourA() { return {100, -50, 0.001, 1.00001}; }
inline QList<double> sevenA() { return {-12.5, -130.3, -80.1, 0.5, -1.2, 2, 0.000004}; }

} // namespace DialogSteps
