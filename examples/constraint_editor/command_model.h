#pragma once

#include <QtWidgets>
#include <vector>

#include "document.h"

/// The lines of one kind as a table, all of them or those that have the filter's text.
class CommandModel : public QAbstractTableModel {
public:
    enum Column { lineColumn, remarksColumn, columns };

    /// Shows a kind of a document, which outlives its use here.
    void show(Document* document, int kind);
    int kind() const { return kind_; }

    /// Call these around changes that do more than exchange what a row holds.
    void beginChange() { beginResetModel(); }
    void endChange();

    /// Shows only lines with this text, in whatever case. Rows come as goOn() finds them.
    void setFilter(QString const& text);
    bool isFiltered() const { return !filter_.isEmpty(); }
    /// Looks at more rows until the time is over. False if there are none.
    bool goOn(QDeadlineTimer const& deadline);

    int documentRow(int row) const { return isFiltered() ? shown_[static_cast<std::size_t>(row)] : row; }
    int rowOf(int documentRow);  ///< -1: the filter hides it

    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const&) const override { return columns; }
    QVariant data(QModelIndex const& index, int role) const override;
    bool setData(QModelIndex const& index, QVariant const& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(QModelIndex const& index) const override;

    /// What the user is typing in a row is judged in place of what the row holds; row -1: nothing is typed.
    void setTyped(int documentRow, QString const& remark);

    /// The window makes the edits that the user asks for in the table.
    std::function<void(int documentRow, QVariant const& value, int role)> edit;

private:
    Document::Place placeOf(QModelIndex const& index) const { return {kind_, documentRow(index.row())}; }
    QVariant colorOf(Document::Place at, int column) const;

    Document* document_ = nullptr;
    int kind_ = 0;
    QString filter_;
    std::vector<int> shown_;  // the document's rows that the filter shows, of those looked at
    int lookedAt_ = 0;
    int typedRow_ = -1;
    QString typedRemark_;
};

/// The colour, moved away from the base colours of the palette as far as a contrast of 4.5 takes.
QColor readable(QColor color, QPalette const& palette);
