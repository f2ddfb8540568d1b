#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QDialog>

#include <memory>

class QTreeWidgetItem;

namespace KivAdapterUI {

class SpatialReferenceSelectorDlgPrivate;

/// The predefined-system picker: every geographic 2D and projected system of
/// PROJ's database (EPSG and ESRI), grouped by kind, with a filter box that
/// matches words of the name or the code as one types, the chosen system's
/// WKT and area of use, and the recently chosen systems first (remembered
/// between runs through `KivUI::EnvironmentSetting`).
///
/// Object names, for tests and for scripts that drive the dialog:
///
/// | object name          | widget         | role                                            |
/// |----------------------|----------------|-------------------------------------------------|
/// | `lineEdit_Filter`    | QLineEdit      | filter text: words of the name, or a code such as "4214" or "EPSG:4214" |
/// | `treeWidget_Systems` | QTreeWidget    | top-level groups "Recently Used", "Geographic Coordinate Systems", "Projected Coordinate Systems"; each system item holds its code ("EPSG:4214") in column 1 and in `Qt::UserRole` of column 0 |
/// | `textEdit_Wkt`       | QPlainTextEdit | WKT of the current system, then its area of use |
/// | `label_Count`        | QLabel         | number of systems shown                         |
/// | `buttonBox`          | QDialogButtonBox | OK (enabled only while a system item is current) and Cancel |
///
/// Double-clicking a system item or pressing OK accepts; Cancel rejects.
///
/// The filter keeps a system when every typed word (split at blanks) is part
/// of its name, case-insensitively and with '_' taken as a blank, or is the
/// start of its code: "beijing 114e", "4214", "EPSG:4214", "esri:102100".
/// Groups without a match are hidden; a current system that the filter hides
/// stops being current, and when a single system is left it becomes current
/// (Enter then accepts it). The list is read from PROJ once per process; ESRI
/// codes that PROJ marks deprecated are offered (ESRI data still carries
/// them), deprecated EPSG codes are not.
///
/// The recently chosen codes, newest first and at most ten, are kept in the
/// setting "SpatialReferenceSelector/RecentCodes" (a string list).
class SpatialReferenceSelectorDlg : public QDialog
{
    Q_OBJECT
public:
    explicit SpatialReferenceSelectorDlg(QWidget* parent = nullptr);
    ~SpatialReferenceSelectorDlg() override;

    /// The chosen system, made from its authority code; null when nothing was
    /// chosen (the dialog was cancelled or no system was current).
    KivUtility::_ptr_t<KivGeometry::SpatialReference> GetCoordinateSystem() const;

    /// Makes the system with this code ("EPSG:4214") current, as if the user
    /// had clicked it; false when the code is not in the list.
    bool SelectCode(const QString& code);

public slots:
    /// Accepting remembers the current system as chosen and recently used.
    void done(int result) override;

private slots:
    void slot_FilterChanged(const QString& text);
    void slot_CurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem* previous);
    void slot_ItemDoubleClicked(QTreeWidgetItem* item, int column);

private:
    std::unique_ptr<SpatialReferenceSelectorDlgPrivate> d;
};

} // namespace KivAdapterUI
