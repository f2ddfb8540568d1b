#include "models/ControlPointTable.h"

#include "models/ControlPointCalculation.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QTableWidget>

#include <algorithm>

namespace {

QTableWidgetItem* centredItem(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    return item;
}

} // namespace

ControlPointTable::ControlPointTable(QTableWidget* table) : m_table(table)
{
    m_table->verticalHeader()->setVisible(false);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->horizontalHeader()->setStretchLastSection(true);
    // Number columns take a plane coordinate with its zone number and six
    // decimals whole. The check column keeps its fixed 50 pixels: it holds a
    // check box and a point number, and the dialogs are laid out around it.
    const QFontMetrics metrics = m_table->fontMetrics();
    m_table->horizontalHeader()->setDefaultSectionSize(metrics.horizontalAdvance(QStringLiteral("38512345.678901")) + 16);
    m_table->setColumnWidth(0, 50);
}

bool ControlPointTable::IsChecked(int row) const
{
    const QTableWidgetItem* item = IsFilledRow(row) ? m_table->item(row, 0) : nullptr;
    return item && item->checkState() == Qt::Checked;
}

int ControlPointTable::CheckedCount() const
{
    int checked = 0;
    for (int row = 0; row < m_count; ++row) {
        if (IsChecked(row))
            ++checked;
    }
    return checked;
}

void ControlPointTable::AddPoint(const QStringList& cells)
{
    if (m_count >= m_table->rowCount())
        m_table->insertRow(m_table->rowCount());
    const int row = m_count;
    QTableWidgetItem* number = centredItem(QString::number(row + 1));
    number->setFlags(number->flags() | Qt::ItemIsUserCheckable);
    number->setCheckState(Qt::Checked);
    m_table->setItem(row, 0, number);
    for (int column = 1; column < m_table->columnCount(); ++column)
        m_table->setItem(row, column, centredItem(cells.value(column - 1)));
    ++m_count;
}

void ControlPointTable::RemoveSelected()
{
    QList<int> rows;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows()) {
        if (index.row() <= m_table->rowCount())
            rows << index.row();
    }
    std::sort(rows.begin(), rows.end());
    for (int i = rows.size() - 1; i >= 0; --i) {
        const int row = rows.at(i);
        if (m_table->item(row, 0)) {
            m_table->removeRow(row);
            --m_count;
        }
    }
    Renumber();
}

void ControlPointTable::Renumber()
{
    for (int row = 0; row < m_count; ++row) {
        if (QTableWidgetItem* item = m_table->item(row, 0))
            item->setText(QString::number(row + 1));
    }
}

QStringList ControlPointTable::RowTexts(int row, int firstColumn, int columns) const
{
    QStringList texts;
    for (int column = firstColumn; column < firstColumn + columns; ++column) {
        const QTableWidgetItem* item = m_table->item(row, column);
        texts << (item ? item->text() : QString());
    }
    return texts;
}

void ControlPointTable::SetCellText(int row, int column, const QString& text)
{
    if (!IsFilledRow(row))
        return;
    if (QTableWidgetItem* item = m_table->item(row, column))
        item->setText(text);
    else
        m_table->setItem(row, column, centredItem(text));
}

QList<QStringList> ControlPointTable::CheckedPoints(int columns) const
{
    QList<QStringList> points;
    for (int row = 0; row < m_count; ++row) {
        if (IsChecked(row))
            points << RowTexts(row, 1, columns);
    }
    return points;
}

QList<QStringList> ControlPointTable::CheckedRows() const
{
    QList<QStringList> rows;
    for (int row = 0; row < m_count; ++row) {
        if (IsChecked(row))
            rows << RowTexts(row, 0, m_table->columnCount());
    }
    return rows;
}

QStringList ControlPointTable::HeaderTexts() const
{
    QStringList headers;
    for (int column = 0; column < m_table->columnCount(); ++column) {
        const QTableWidgetItem* item = m_table->horizontalHeaderItem(column);
        headers << (item ? item->text() : QString());
    }
    return headers;
}

void ControlPointTable::SetHeaderText(int column, const QString& text)
{
    if (QTableWidgetItem* item = m_table->horizontalHeaderItem(column))
        item->setText(text);
    else
        m_table->setHorizontalHeaderItem(column, new QTableWidgetItem(text));
}

void ControlPointTable::FillResiduals(int firstColumn, const QList<QVector<double>>& residuals)
{
    int next = 0;
    for (int row = 0; row < m_count; ++row) {
        const bool checked = IsChecked(row);
        for (int i = 0; i < residuals.size(); ++i) {
            const QVector<double>& values = residuals.at(i);
            const QString text = checked && next < values.size()
                ? ControlPointCalculation::FormatResidual(values.at(next)) : QString();
            SetCellText(row, firstColumn + i, text);
        }
        if (checked)
            ++next;
    }
}
