#include "command_model.h"

#include <algorithm>
#include <cmath>

// The relative luminance of a colour, from 0 to 1.
static double luminance(QColor const& color) {
    auto const linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor readable(QColor color, QPalette const& palette) {
    constexpr double contrast = 4.5;
    bool const isLight = luminance(palette.color(QPalette::Base)) > 0.18;
    for (int step = 0; step < 64; ++step) {
        bool const isReadable = [&] {
            for (QPalette::ColorRole const role : {QPalette::Base, QPalette::AlternateBase}) {
                auto const [dark, light] = std::minmax({luminance(color), luminance(palette.color(role))});
                if (light + 0.05 < contrast * (dark + 0.05)) return false;
            }
            return true;
        }();
        if (isReadable) break;
        auto const moved = [isLight](int part) { return isLight ? part * 15 / 16 : part + (270 - part) / 16; };
        color.setRgb(moved(color.red()), moved(color.green()), moved(color.blue()));
    }
    return color;
}

void CommandModel::show(Document* document, int kind) {
    beginResetModel();
    document_ = document;
    kind_ = kind;
    endChange();
}

void CommandModel::endChange() {
    shown_.clear();
    lookedAt_ = 0;
    typedRow_ = -1;
    endResetModel();
    goOn(QDeadlineTimer(10));
}

void CommandModel::setFilter(QString const& text) {
    beginResetModel();
    filter_ = text;
    endChange();
}

bool CommandModel::goOn(QDeadlineTimer const& deadline) {
    if (!isFiltered() || document_ == nullptr || lookedAt_ >= document_->count(kind_)) return false;
    std::vector<int> found;
    for (int looked = 0; lookedAt_ < document_->count(kind_); ++lookedAt_) {
        if (++looked % 64 == 0 && deadline.hasExpired()) break;
        if (document_->text({kind_, lookedAt_}).contains(filter_, Qt::CaseInsensitive)) found.push_back(lookedAt_);
    }
    if (found.empty()) return true;
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(found.size()) - 1);
    shown_.insert(shown_.end(), found.begin(), found.end());
    endInsertRows();
    return true;
}

int CommandModel::rowOf(int documentRow) {
    if (documentRow < 0 || documentRow >= document_->count(kind_)) return -1;
    if (!isFiltered()) return documentRow;
    while (lookedAt_ <= documentRow && goOn(QDeadlineTimer(100))) {
    }
    auto const at = std::lower_bound(shown_.begin(), shown_.end(), documentRow);
    return at != shown_.end() && *at == documentRow ? static_cast<int>(at - shown_.begin()) : -1;
}

int CommandModel::rowCount(QModelIndex const& parent) const {
    if (document_ == nullptr || parent.isValid()) return 0;
    return isFiltered() ? static_cast<int>(shown_.size()) : document_->count(kind_);
}

QVariant CommandModel::colorOf(Document::Place at, int column) const {
    QPalette const palette = QGuiApplication::palette();
    bool const isRemark = column == remarksColumn || document_->isDraft(at);
    if (isRemark) return readable(QColor(0xd0, 0x30, 0x00), palette);
    return document_->command(at).enabled ? QVariant() : readable(Qt::gray, palette);
}

// All but the lines is known beforehand: painting a row looks nothing up.
QVariant CommandModel::data(QModelIndex const& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    Document::Place const at = placeOf(index);
    if (role == Qt::ForegroundRole) return colorOf(at, index.column());
    if (role == Qt::FontRole && document_->isDraft(at)) {
        QFont font;
        font.setItalic(true);
        return font;
    }
    bool const isLine = index.column() == lineColumn;
    if (role == Qt::CheckStateRole && isLine && kind_ < commandKinds)
        return document_->command(at).enabled ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole) return {};
    if (isLine) return document_->text(at);
    return at.row == typedRow_ ? typedRemark_ : document_->remark(at);
}

bool CommandModel::setData(QModelIndex const& index, QVariant const& value, int role) {
    if (!index.isValid() || index.column() != lineColumn) return false;
    if (role != Qt::EditRole && role != Qt::CheckStateRole) return false;
    edit(documentRow(index.row()), value, role);
    return true;
}

QVariant CommandModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
    return QStringList{"Line", "Remarks"}.value(section);
}

Qt::ItemFlags CommandModel::flags(QModelIndex const& index) const {
    Qt::ItemFlags const usual = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    if (index.column() != lineColumn) return usual;
    return usual | Qt::ItemIsEditable | (kind_ < commandKinds ? Qt::ItemIsUserCheckable : Qt::NoItemFlags);
}

void CommandModel::setTyped(int documentRow, QString const& remark) {
    int const before = std::exchange(typedRow_, documentRow);
    typedRemark_ = remark;
    for (int const changed : {before, documentRow}) {
        QModelIndex const cell = changed < 0 ? QModelIndex() : index(rowOf(changed), remarksColumn);
        if (cell.isValid()) emit dataChanged(cell, cell);
    }
}
