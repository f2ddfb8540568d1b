#pragma once

#include "spatialref/SpatialReferenceCatalogue.h"

#include <QDialog>
#include <QList>
#include <QStringList>

#include <memory>

namespace Ui {
class NewGeoCoorSysDlg;
}

/// Composes a geographic coordinate system from catalogued parts (datum with
/// its spheroid, angular unit, prime meridian) or typed values, and hands it
/// back as GEOGCS text. `ModifyAssistant` preloads it from an existing system.
class NewGeoCoorSysDlg : public QDialog
{
    Q_OBJECT
public:
    explicit NewGeoCoorSysDlg(QWidget* parent = nullptr);
    ~NewGeoCoorSysDlg() override;

    /// The GEOGCS text composed by the last OK with a name; empty before.
    QString GetSrsWkt() const { return m_srsWkt; }
    /// The name typed when OK was last pressed.
    QString GetSrsName() const { return m_srsName; }

private slots:
    void OnDatumCombo(int index);
    void OnAngularCombo(int index);
    void OnPrimeMerdianCombo(int index);

public slots:
    /// Takes the name and the datum of `wkt` over; false (after telling the
    /// user) when its datum is not in the catalogue.
    bool ModifyAssistant(QString wkt);

private slots:
    void OnBtnOk();
    void OnBtnCancel();

private:
    void readCatalogue(const QString& file, int fieldCount, QList<QStringList>* records);

    std::unique_ptr<Ui::NewGeoCoorSysDlg> ui;
    QList<QStringList> m_spheroids;       // datum, spheroid, semi-major, semi-minor, inverse flattening
    QList<QStringList> m_angularUnits;    // name, radians per unit
    QList<QStringList> m_primeMeridians;  // name, degrees, minutes, seconds
    QStringList m_datumNames;
    QString m_srsWkt;
    QString m_srsName;
};
