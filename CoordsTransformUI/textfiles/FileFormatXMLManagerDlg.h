#pragma once

#include <QDialog>
#include <QStringList>

#include <memory>

namespace Ui {
class FileFormatXMLManagerDlg;
}

/// Lists the text-file formats of the format folder as a check list, creates
/// new ones through `FileFormatUI` and deletes the checked ones from disk.
class FileFormatXMLManagerDlg : public QDialog
{
    Q_OBJECT
public:
    explicit FileFormatXMLManagerDlg(QWidget* parent = nullptr);
    ~FileFormatXMLManagerDlg() override;

    /// The record texts of the listed formats, in the list's order.
    QStringList GetFormatRecords() const { return m_records; }

private slots:
    void slot_AddFileFormatPath();
    void slot_RemoveFileFormatPath();
    void slot_checkboxClick_SelAll();
    void slot_Cancel();

private:
    void appendItem(const QString& fileName);

    std::unique_ptr<Ui::FileFormatXMLManagerDlg> ui;
    QString m_formatDir;     ///< with a trailing "/"
    QStringList m_records;
};
