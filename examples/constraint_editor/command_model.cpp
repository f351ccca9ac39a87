#include "command_model.h"

using namespace kiri::tov;

void CommandModel::show(List& list) {
    beginResetModel();
    list_ = &list;
    rows_.clear();
    for (auto cmd = list.begin(); cmd != list.end(); ++cmd) rows_.push_back(cmd);
    endResetModel();
}

void CommandModel::insert(int row, std::unique_ptr<TovCmd> cmd) {
    rows_.reserve(rows_.size() + 1);  // so that nothing fails halfway
    auto const at = rows_.begin() + row;
    beginInsertRows({}, row, row);
    auto const place = rows_.insert(at, list_->insert(at == rows_.end() ? list_->end() : *at, nullptr));
    **place = cmd.release();
    endInsertRows();
}

std::unique_ptr<TovCmd> CommandModel::take(int row) {
    auto const at = rows_.begin() + row;
    std::unique_ptr<TovCmd> cmd(**at);
    beginRemoveRows({}, row, row);
    list_->erase(*at);
    rows_.erase(at);
    endRemoveRows();
    return cmd;
}

void CommandModel::change(int row, std::unique_ptr<TovCmd>& cmd) {
    TovCmd*& here = *rows_[static_cast<std::size_t>(row)];
    if (cmd) {
        cmd.reset(std::exchange(here, cmd.release()));
    } else {
        here->enabled = !here->enabled;
    }
    emit dataChanged(index(row, 0), index(row, columns - 1));
}

QVariant CommandModel::data(QModelIndex const& index, int role) const {
    TovCmd& cmd = command(index.row());
    bool const isText = role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole;
    if (index.column() == remarksColumn) {
        if (role == Qt::ForegroundRole) return QColor(0xb0, 0x30, 0x00);
        return isText ? remarksOn(index.row()) : QVariant();
    }
    if (role == Qt::CheckStateRole) return cmd.enabled ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::ForegroundRole && !cmd.enabled) return QColor(Qt::gray);
    return isText ? line(index.row()) : QVariant();
}

QVariant CommandModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
    return QStringList{"Line", "Remarks"}.value(section);
}

Qt::ItemFlags CommandModel::flags(QModelIndex const& index) const {
    Qt::ItemFlags const usual = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == lineColumn ? usual | Qt::ItemIsUserCheckable | Qt::ItemIsEditable : usual;
}
