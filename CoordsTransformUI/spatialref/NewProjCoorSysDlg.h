#pragma once

#include <QDialog>
#include <QMap>
#include <QStringList>

#include <memory>

namespace Ui {
class NewProjCoorSysDlg;
}

/// Composes a projected coordinate system from a catalogued projection with
/// its parameters, a catalogued linear unit and a geographic system (chosen,
/// composed or modified), and hands it back as PROJCS text.
class NewProjCoorSysDlg : public QDialog
{
    Q_OBJECT
public:
    explicit NewProjCoorSysDlg(QWidget* parent = nullptr);
    ~NewProjCoorSysDlg() override;

    /// Takes the name, the projection and the geographic system of `wkt`
    /// over (the parameters show the catalogue's defaults); false, after
    /// telling the user, when its datum or projection is not catalogued.
    bool ModifyAssistant(QString wkt);

    /// The PROJCS text composed by the last complete OK; empty before.
    QString GetSrsWkt() const { return m_srsWkt; }
    QString GetSrsName() const { return m_srsName; }

private slots:
    void OnProjCombo(int index);
    void OnLinearCombo(int index);
    void OnSelectGeoCoor();
    void OnBtnNewGeoCoor();
    void OnBtnModify();
    void OnBtnOk();
    void OnBtnCancel();

private:
    enum ProjectionMode { ListMode, ParameterMode };
    /// Reads the projection catalogue: the projection names, or the
    /// parameters of projection `index`.
    void readProjections(ProjectionMode mode, int index = -1);
    void showGeographic(const QString& wkt);
    void refreshModifyButton();

    std::unique_ptr<Ui::NewProjCoorSysDlg> ui;
    QString m_projectionFile;
    QStringList m_projectionNames;
    QMap<QString, QString> m_parameters;  // name -> default value, in name order
    QStringList m_metersPerUnit;
    QStringList m_datumNames;
    QString m_srsWkt;
    QString m_srsName;
};
