#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"
#include "reprojection/ModelChoice.h"
#include "reprojection/stCoordsTransformInfo.h"

#include <QDialog>
#include <QList>
#include <QStringList>

#include <memory>

namespace Ui {
class BatchProjTransDlg;
}

/// Collects a batch reprojection: input datasets that share one system, an
/// output folder, the target system and, where needed, a model. On
/// acceptance the record `GetParams()` is complete for the batch job.
class BatchProjTransDlg : public QDialog
{
    Q_OBJECT
public:
    explicit BatchProjTransDlg(QWidget* parent = nullptr);
    ~BatchProjTransDlg() override;

    /// The dialog's own record, valid while the dialog lives; complete after
    /// `exec()` returned 1.
    stCoordsTransformInfo* GetParams() { return &m_info; }

private slots:
    void OnBtnClickedAdd();
    void OnBtnClickedRemove();
    void OnBtnClickedRemoveAll();
    void slot_OutputFolder();
    void slot_OutputCoordSys();
    void slot_ComboBox7Parameter(int index);
    void slot_7Param();
    void slot_Ok();
    void slot_Cancel();
    void slot_bCode();

private:
    void updateModelControls();
    void fillModelCombo();
    void forgetInput();

    std::unique_ptr<Ui::BatchProjTransDlg> ui;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_source;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_target;
    ModelChoice m_models;
    bool m_code = false;
    QStringList m_inputs;
    stCoordsTransformInfo m_info;
};
