#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QDialog>

#include <memory>

namespace Ui {
class OutputSpatialReferenceDlg;
}

/// Settles one spatial reference system and hands it back as WKT: picked
/// from the predefined catalogue, imported from a projection file or a
/// dataset, composed new, modified, cleared or exported to a projection file.
class OutputSpatialReferenceDlg : public QDialog
{
    Q_OBJECT
public:
    explicit OutputSpatialReferenceDlg(QWidget* parent = nullptr);
    ~OutputSpatialReferenceDlg() override;

    /// WKT of the system shown; empty when none was chosen. Meaningful only
    /// after `exec()` returned 1.
    QString GetWkt() const { return m_strWkt; }

private slots:
    void OnBtnClickedSelect();
    void OnNewGeoCoorSys();
    void OnNewProjCoorSys();
    void OnBtnImportSRS();
    void OnBtnModify();
    void OnBtnClear();
    void OnBtnExport();
    void OnBtnOk();
    void OnBtnCancel();

private:
    void refreshButtons();
    /// Shows `wkt` in pretty form, made through a geographic system object
    /// whatever the kind (a projected system still exports as PROJCS).
    void showThroughGeographic(const QString& wkt);
    /// Runs a new-system dialog; its accepted text replaces `remembered`,
    /// and the remembered text (also after Cancel) becomes the result.
    template <class NewSystemDialog>
    void composeSystem(QString& remembered);
    void importProjectionFile(const QString& path);
    void importDataset(const QString& path);

    std::unique_ptr<Ui::OutputSpatialReferenceDlg> ui;
    QString m_strWkt;
    QString m_strProjWkt;
    QString m_strGeoWkt;
};
