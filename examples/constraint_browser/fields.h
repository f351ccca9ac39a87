#pragma once

#include <charconv>

#include "design.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/make_command.h"

/// A field of a command. Its value is a text: "yes" or "no", numbers, or references as "[ get_ports { a b } ]".
struct Field {
    QString title;
    std::function<std::string()> get;
    std::function<bool(std::string const&)> set;  ///< false if the text is not a value of the field
    bool isFlag;
};

/// Convert a value to a text, and a text to a value; false if it is not one. The text of a number is the shortest that
/// is read back as that number.
struct Convert {
    static std::string text(bool flag) { return flag ? "yes" : "no"; }
    static std::string text(std::string const& value) { return value; }
    template <class Number>
    static std::string text(Number number) {
        char text[64];
        return {text, std::to_chars(text, text + sizeof text, number).ptr};
    }

    static bool set(bool& flag, std::string const& text) { return flag = text == "yes", true; }
    static bool set(std::string& value, std::string const& text) { return value = text, true; }
    template <class Number>
    static bool set(Number& number, std::string const& text) {
        char const* const end = text.data() + text.size();
        auto const [read, error] = std::from_chars(text.data(), end, number);
        return error == std::errc() && read == end;
    }
};

/// Returns the expression of all references in a list, "[ get_clocks { a b } ]".
inline std::string expressionOf(ppStlList<taDciObj*>& list) {
    std::string text;
    for (taDciObj* obj : list) {
        std::string const closing = " } ]";
        std::size_t const end = text.size() - std::min(text.size(), closing.size());
        text.insert(end, text.empty() ? TovCmd::toTclString(obj) : ' ' + std::string(obj->name));
    }
    return text;
}

/// Returns whether the expression of a list contains all of its references.
inline bool isExpression(ppStlList<taDciObj*>& list, bool isSource) {
    ppStlList<taDciObj*> read = TovCmd::fromTclString(expressionOf(list), isSource);
    bool const isSame =
        std::equal(list.begin(), list.end(), read.begin(), read.end(), [](auto const* a, auto const* b) {
            return a && a->name && a->type == b->type && std::string(a->name) == b->name;
        });
    freeDciObjList(read);
    return isSame;
}

/// Returns the fields of a command: `enabled`, then the others in the order of its line, without free texts and
/// references that no field text can express.
inline std::vector<Field> fieldsOf(TovCmd& cmd) {
    std::vector<Field> fields;
    auto const add = [&](char const* title, auto* of, auto member) {
        if (of == nullptr) return;
        auto* const place = &(of->*member);
        auto const set = [place](std::string const& text) { return Convert::set(*place, text); };
        fields.push_back(
            {title, [place] { return Convert::text(*place); }, set, std::is_same_v<decltype(place), bool* const>});
    };
    auto* const clock = dynamic_cast<TovCmdClockDef*>(&cmd);
    auto* const generated = dynamic_cast<TovCmdGenClockDef*>(&cmd);
    auto* const io = dynamic_cast<TovCmdIODelay*>(&cmd);
    add("enabled", &cmd, &TovCmd::enabled);
    add("period", clock, &TovCmdClockDef::period);
    add("divide by", generated, &TovCmdGenClockDef::divideBy);
    add("multiply by", generated, &TovCmdGenClockDef::multiplyBy);
    add("duty cycle", generated, &TovCmdGenClockDef::dutyCycle);
    add("exclusive", dynamic_cast<TovCmdClockGroupDef*>(&cmd), &TovCmdClockGroupDef::exclusive);
    add("delay", io, &TovCmdIODelay::delay);
    add("max", io, &TovCmdIODelay::max);
    add("min", io, &TovCmdIODelay::min);
    add("delay", dynamic_cast<TovCmdTimingDelay*>(&cmd), &TovCmdTimingDelay::delay);
    add("cycles", dynamic_cast<TovCmdMultiPath*>(&cmd), &TovCmdMultiPath::multiplier);
    bool const isSource = clock != nullptr || generated != nullptr;
    for (TovReferences const& objects : referencesOf(cmd)) {
        auto const set = [list = objects.list, isSource](std::string const& text) {
            return replaceReferences(*list, text, isSource), true;
        };
        QString const title = *objects.role == '\0' ? "objects" : objects.role + 1;
        auto const get = [list = objects.list] { return expressionOf(*list); };
        if (isExpression(*objects.list, isSource)) fields.push_back({title, get, set, false});
    }
    return fields;
}

/// Returns the fields that are lost when the saved line of a command is read again.
inline QStringList lostIn(TovCmd& cmd) try {
    std::unique_ptr<TovCmd> const again = makeCommand(cmd.toSaveString(nullptr));
    std::vector<Field> const read = again ? fieldsOf(*again) : std::vector<Field>();
    std::vector<Field> const fields = fieldsOf(cmd);
    QStringList lost;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (read.size() != fields.size() || read[i].get() != fields[i].get()) lost += fields[i].title;
    }
    return lost;
} catch (std::out_of_range const&) {
    return {"the whole line, which would end the load"};
}

/// Sets a field if its value, and everything else that survived before, survives a save and a load. Otherwise returns
/// the reason and leaves the command as it was.
inline QString trySet(TovCmd& cmd, std::size_t index, std::string const& value) {
    std::vector<Field> const fields = fieldsOf(cmd);
    QStringList const lostBefore = lostIn(cmd);
    std::string const old = fields[index].get();
    bool const isValue = fields[index].set(value) && fieldsOf(cmd).size() == fields.size();
    QStringList const lost = lostIn(cmd);
    if (isValue && !lost.contains(fields[index].title) && lost.size() <= lostBefore.size()) return {};
    fields[index].set(old);
    return isValue ? "lost in a file: " + lost.join(", ") : "not a value of this field";
}

/// A form with the fields of one command. A text that cannot be applied turns red, shows the reason beside it, and
/// stays.
class FieldModel : public QStandardItemModel {
public:
    /// `apply` applies a value and returns why not.
    explicit FieldModel(std::function<QString(std::size_t field, std::string const& value)> apply)
        : apply_(std::move(apply)) {}

    /// Shows a command; null for none. If the command is already shown, red texts stay.
    void show(TovCmd* cmd) {
        if (cmd != std::exchange(cmd_, cmd)) clear();
        int row = 0;
        for (Field const& field : cmd == nullptr ? std::vector<Field>() : fieldsOf(*cmd)) {
            if (row == rowCount()) appendRow({new QStandardItem, new QStandardItem});
            setHeaderData(row, Qt::Vertical, field.title);
            bool const isRed = !item(row, 1)->text().isEmpty();
            item(row)->setEditable(!field.isFlag);
            item(row, 1)->setEditable(false);
            if (field.isFlag) item(row)->setCheckable(true);
            if (field.isFlag)
                item(row)->setCheckState(field.get() == Convert::text(true) ? Qt::Checked : Qt::Unchecked);
            if (!isRed && !field.isFlag) item(row)->setText(toText(field.get()));
            ++row;
        }
    }

    bool isRed() const { return !findItems("?*", Qt::MatchWildcard, 1).isEmpty(); }

    bool setData(QModelIndex const& index, QVariant const& value, int role) override {
        bool const isFlag = role == Qt::CheckStateRole;
        QString const text = isFlag ? toText(Convert::text(value.toInt() == Qt::Checked)) : value.toString().trimmed();
        QString const reason = apply_(static_cast<std::size_t>(index.row()), text.toStdString());
        item(index.row())->setForeground(reason.isEmpty() ? QBrush() : Qt::red);
        item(index.row(), 1)->setText(reason);
        if (!isFlag) item(index.row())->setText(text);
        if (reason.isEmpty()) show(cmd_);
        return true;
    }

private:
    std::function<QString(std::size_t field, std::string const& value)> apply_;
    TovCmd* cmd_ = nullptr;
};

/// Edits references; completes words from the names of the window's design.
class FieldDelegate : public QStyledItemDelegate {
public:
    explicit FieldDelegate(std::shared_ptr<Design const> const& design) : design_(design) {}

    QWidget* createEditor(QWidget* parent, QStyleOptionViewItem const&, QModelIndex const&) const override {
        auto* const line = new QLineEdit(parent);
        auto* const words = new QStringListModel(line);
        line->setCompleter(new QCompleter(words, line));
        line->completer()->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
        connect(line, &QLineEdit::textEdited, words, [words, design = design_](QString const& typed) {
            QString const before = typed.left(typed.lastIndexOf(' ') + 1);
            Design::Nodes nodes;
            for (auto const& [query, type] : kinds) {
                if (design && typed.contains(query))
                    design->names->find(type, typed.mid(before.size()).toStdString() + '*', nodes);
            }
            QStringList list;
            for (std::size_t i = 0; i < std::min<std::size_t>(50, nodes.size()); ++i)
                list += before + toText(design->names->nameOf(*nodes[i]));
            words->setStringList(list);
        });
        return line;
    }

private:
    std::shared_ptr<Design const> const& design_;
};
