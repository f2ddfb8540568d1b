#pragma once
// Steps shared by the spatial reference dialog tests: widgets by object name,
// the catalogue folder of the test's data folder, and the composition of a
// system in the new-system dialogs as a user would do it.

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTextEdit>
#include <QtTest>

namespace SrsTest {

template <class T>
T* widget(QObject* root, const char* name)
{
    T* w = root->findChild<T*>(QString::fromLatin1(name));
    if (!w)
        qWarning("no widget named %s", name);
    return w;
}

inline void press(QObject* root, const char* name)
{
    widget<QAbstractButton>(root, name)->click();
}

inline QString text(QObject* root, const char* name)
{
    if (auto* edit = root->findChild<QLineEdit*>(QString::fromLatin1(name)))
        return edit->text();
    if (auto* box = root->findChild<QTextEdit*>(QString::fromLatin1(name)))
        return box->toPlainText();
    if (auto* combo = root->findChild<QComboBox*>(QString::fromLatin1(name)))
        return combo->currentText();
    if (auto* label = root->findChild<QLabel*>(QString::fromLatin1(name)))
        return label->text();
    return QStringLiteral("<no widget %1>").arg(QString::fromLatin1(name));
}

inline QString catalogueDir()
{
    return KivTest::dataRoot() + QStringLiteral("/Coordinate System/spatialreference");
}

/// Picks `item` of the combo by its text; an empty item leaves the combo.
inline void choose(QObject* root, const char* combo, const QString& item)
{
    if (item.isEmpty())
        return;
    auto* box = widget<QComboBox>(root, combo);
    const int index = box->findText(item);
    if (index < 0)
        qWarning("%s does not offer %s", combo, qPrintable(item));
    box->setCurrentIndex(index);
}

/// In a shown NewGeoCoorSysDlg: name, datum, unit and prime meridian by their
/// catalogue names (empty: keep the default).
inline void fillGeographic(QWidget* dlg, const QString& name, const QString& datum, const QString& unit = QString(),
                           const QString& meridian = QString())
{
    widget<QLineEdit>(dlg, "geoCoorName_lineEdit")->setText(name);
    choose(dlg, "datumName_comboBox", datum);
    choose(dlg, "unitName_comboBox", unit);
    choose(dlg, "centrlMerName_comboBox", meridian);
}

/// Sets the value of parameter `key` in the parameter table.
inline bool setParameter(QWidget* dlg, const QString& key, const QString& value)
{
    auto* table = widget<QTableWidget>(dlg, "tableWidget");
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 0) && table->item(row, 0)->text() == key) {
            table->item(row, 1)->setText(value);
            return true;
        }
    }
    return false;
}

/// Queues the answer for a NewGeoCoorSysDlg that the code under test opens:
/// fill it and press OK.
inline void answerNewGeographic(KivTest::ModalDriver& driver, const QString& name, const QString& datum)
{
    driver.handleModal("NewGeoCoorSysDlg", [name, datum](QWidget* w) {
        fillGeographic(w, name, datum);
        press(w, "okButton");
    });
}

/// Queues the answer for a NewProjCoorSysDlg: a geographic system composed on
/// `datum` through its New button (or, for a code, picked through Select), projection `projection` with `parameters`
/// ("Key=value"), then OK.
inline void answerNewProjected(KivTest::ModalDriver& driver, const QString& name, const QString& datum,
                               const QString& projection, const QStringList& parameters)
{
    driver.handleModal("NewProjCoorSysDlg", [&driver, name, datum, projection, parameters](QWidget* w) {
        if (datum.startsWith("EPSG:")) {
            KivTest::answerSelector(driver, datum);
            press(w, "selectGeo_pushButton");
        } else {
            answerNewGeographic(driver, "GCS_" + datum.mid(2), datum);
            press(w, "newGeo_pushButton");
        }
        widget<QLineEdit>(w, "lineEdit")->setText(name);
        choose(w, "projName_comboBox", projection);
        for (const QString& p : parameters)
            if (!setParameter(w, p.section('=', 0, 0), p.section('=', 1)))
                driver.fail("no parameter " + p);
        press(w, "okButton");
    });
}

/// The GEOGCS text the geographic dialog writes for a catalogued datum with
/// the default unit and meridian.
inline QString geogcs(const QString& name, const QString& datum, const QString& spheroid, const QString& a,
                      const QString& rf)
{
    return "GEOGCS[\"" + name + "\",DATUM[\"" + datum + "\",SPHEROID[\"" + spheroid + "\"," + a + "," + rf
        + "]],PRIMEM[\"Greenwich\",0.0,0,0],UNIT[\"Degree\",0.0174532925199433]]";
}

} // namespace SrsTest
