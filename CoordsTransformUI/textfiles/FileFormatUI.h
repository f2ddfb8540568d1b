#pragma once

#include <QDialog>
#include <QList>
#include <QStringList>

#include <memory>

class QModelIndex;
class QStandardItemModel;

namespace Ui {
class FileFormatUI;
}

/// Defines a new text-file format: name, separator, title line and the fields
/// in column order. "Ok" writes the format file into the format folder.
class FileFormatUI : public QDialog
{
    Q_OBJECT
public:
    /// `existingNames`: the file names (".xml" included) of the formats that
    /// exist; a new format may not take one of them, whatever the case.
    explicit FileFormatUI(const QStringList& existingNames, QWidget* parent = nullptr);
    explicit FileFormatUI(QWidget* parent = nullptr);
    ~FileFormatUI() override;

    /// After acceptance: the format's file name, ".xml" included.
    QString GetFileName() const { return m_name; }
    /// After acceptance: the field names in column order, blank-separated.
    QString GetFieldList() const { return m_fieldList; }
    bool IsUseTitle() const { return m_useTitle; }
    /// The title word written to the file ("Title" or "NoTitle", translated).
    QString GetTitleFlag() const;
    QString GetSeparator() const { return m_separator; }

private slots:
    void slot_CheckboxUseTitle(int state);
    void OnClickedListView(const QModelIndex& index);
    void slot_Separator(int index);
    void slot_Add();
    void slot_Clear();
    void slot_Ok();
    void slot_Cancel();

private:
    std::unique_ptr<Ui::FileFormatUI> ui;
    QStandardItemModel* m_fieldModel = nullptr;
    QStringList m_existingNames;
    QString m_name;
    QString m_separator;
    bool m_useTitle = false;
    QString m_selectedText;     ///< the clicked field name with one blank appended
    int m_selectedCode = -1;
    QList<int> m_addedCodes;    ///< kept by Clear on purpose
    QString m_fieldList;
};
