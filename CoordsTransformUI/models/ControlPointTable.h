#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

class QTableWidget;

/// The control-point table of the calculation dialogs: filled rows come first
/// (rows 0 .. count-1), each with a check box item in column 0 whose text is
/// the 1-based point number, then the coordinate columns and the residual
/// columns, all centred. Rows beyond the count are empty.
class ControlPointTable
{
public:
    /// Sets the flags the dialogs share on `table` (column 0 fifty pixels
    /// wide); the form supplies the columns and the five empty rows.
    explicit ControlPointTable(QTableWidget* table);

    QTableWidget* Widget() const { return m_table; }
    int PointCount() const { return m_count; }
    bool IsFilledRow(int row) const { return row >= 0 && row < m_count; }
    bool IsChecked(int row) const;
    int CheckedCount() const;

    /// Appends a checked, numbered point; `cells` are the columns after the
    /// check column (missing ones are left empty). A row is inserted when
    /// every row is filled.
    void AddPoint(const QStringList& cells);
    /// Removes the filled rows among the selected ones and renumbers the rest
    /// (their check states stay).
    void RemoveSelected();

    /// Texts of `columns` columns of `row` from `firstColumn` on.
    QStringList RowTexts(int row, int firstColumn, int columns) const;
    /// Sets a cell of a filled row; other rows are left alone.
    void SetCellText(int row, int column, const QString& text);
    /// Coordinate texts (`columns` from column 1) of the checked rows in order.
    QList<QStringList> CheckedPoints(int columns) const;
    /// Every column of the checked rows, point number included.
    QList<QStringList> CheckedRows() const;
    QStringList HeaderTexts() const;
    void SetHeaderText(int column, const QString& text);

    /// Puts `residuals` (one vector per residual column, one value per checked
    /// row) into the columns from `firstColumn` on: checked rows take the next
    /// values, unchecked rows get empty texts.
    void FillResiduals(int firstColumn, const QList<QVector<double>>& residuals);

private:
    void Renumber();

    QTableWidget* m_table;
    int m_count = 0;
};
