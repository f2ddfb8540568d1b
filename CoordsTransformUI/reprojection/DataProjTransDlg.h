#pragma once

#include "KivCarto/Map.h"
#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"
#include "reprojection/ModelChoice.h"
#include "reprojection/stCoordsTransformInfo.h"

#include <QDialog>
#include <QList>

#include <memory>

namespace Ui {
class DataProjTransDlg;
}

/// Collects what reprojecting one dataset needs: the input dataset and its
/// system, the output file (or folder, for a container of layers), the target
/// system and, between different geographic systems, a seven-parameter model
/// (a four-parameter one within one geographic system). On acceptance the
/// record `GetParams()` is complete; the dialog transforms nothing itself.
class DataProjTransDlg : public QDialog
{
    Q_OBJECT
public:
    explicit DataProjTransDlg(QWidget* parent = nullptr,
                              const KivUtility::_ptr_t<KivCarto::Map>& map = KivUtility::_ptr_t<KivCarto::Map>());
    ~DataProjTransDlg() override;

    /// The dialog's own record, valid while the dialog lives; complete after
    /// `exec()` returned 1.
    stCoordsTransformInfo* GetParams() { return &m_info; }

private slots:
    void slot_InputFile();
    void slot_OutputFile();
    void slot_OutputFolder();
    void slot_TargetCoordSystem();
    void slot_ComboBox7Parameter(int index);
    void slot_7Parameter();
    void slot_Transform();
    void slot_bCode();

private:
    void updateSameGeographicSystem();
    void fillModelCombo();
    void applyKindsToModelControls();
    void showFileRow(bool file);

    std::unique_ptr<Ui::DataProjTransDlg> ui;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_source;
    QString m_sourceWkt;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_target;
    QString m_targetWkt;
    ModelChoice m_models;
    bool m_code = false;
    QString m_rasterFormat = QStringLiteral("GTiff");
    KivUtility::_ptr_t<KivCarto::Map> m_map;
    stCoordsTransformInfo m_info;
};
