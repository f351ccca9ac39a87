#include "serve/settings.h"

#include <QJsonArray>
#include <QJsonObject>
#include <utility>

namespace tool::lsp {

namespace {

/// Reads the values of one object.
class Reader {
public:
    Reader(QJsonObject object, QStringList& problems) : object_(std::move(object)), problems_(problems) {}

    std::optional<QString> text(char const* key) {
        QJsonValue const value = object_.value(QLatin1String(key));
        if (value.isString()) return value.toString();
        if (!value.isUndefined() && !value.isNull()) complain(key, "must be a string");
        return {};
    }

    std::optional<QStringList> texts(char const* key) {
        QJsonValue const value = object_.value(QLatin1String(key));
        if (value.isUndefined() || value.isNull()) return {};
        // Users write one word without the list.
        if (value.isString()) return value.toString().split(',', Qt::SkipEmptyParts);
        QStringList texts;
        for (QJsonValue const entry : value.toArray()) {
            if (entry.isString()) texts.append(entry.toString());
        }
        if (value.isArray() && texts.size() == value.toArray().size()) return texts;
        complain(key, "must be a list of strings");
        if (value.isArray()) return texts;
        return {};
    }

    std::optional<kiri::tov::TovNameMatch> match(char const* key) {
        std::optional<QString> const value = text(key);
        if (!value) return {};
        auto const index = QStringList{"levels", "local", "flat"}.indexOf(*value);
        if (index >= 0) return static_cast<kiri::tov::TovNameMatch>(index);
        complain(key, QString("is '%1'; the choices are levels, local and flat").arg(*value));
        return {};
    }

    /// Reads a list of codes, and skips unknown ones.
    std::optional<QStringList> codes(char const* key) {
        std::optional<QStringList> found = texts(key);
        if (!found) return {};
        QStringList known;
        for (QString const& text : std::as_const(*found)) {
            QString const code = text.trimmed();
            if (findRule(code.toStdString()) == nullptr) {
                complain(key, QString("contains the unknown code '%1'").arg(code));
            } else if (code == "ends-load" && std::string_view(key) == "ignore") {
                complain(key, "cannot contain ends-load: nothing after that line is read");
            } else {
                known.append(code);
            }
        }
        return known;
    }

private:
    void complain(char const* key, QString const& what) {
        problems_.append(QString("The setting '%1' %2.").arg(QLatin1String(key), what));
    }

    QJsonObject object_;
    QStringList& problems_;
};

Settings readObject(QJsonObject const& object, QStringList& problems) {
    Reader reader(object, problems);
    Settings settings;
    settings.design = reader.text("design");
    settings.files = reader.texts("files");
    settings.match = reader.match("match");
    settings.ignore = reader.codes("ignore");
    settings.select = reader.codes("select");
    return settings;
}

template <class Value>
void fill(std::optional<Value>& value, std::optional<Value> const& below) {
    if (!value) value = below;
}

}  // namespace

Settings Settings::read(QJsonValue const& value, QStringList& problems) {
    QJsonObject const object = value.toObject();
    Settings settings = readObject(object.value("toveng").toObject(), problems);
    settings.fillFrom(readObject(object, problems));
    return settings;
}

CodeSet Settings::codes() const {
    QStringList const selected = select.value_or(QStringList());
    CodeSet codes(selected.isEmpty());
    for (QString const& code : selected) codes.set(findRule(code.toStdString())->code, true);
    for (QString const& code : ignore.value_or(QStringList())) codes.set(findRule(code.toStdString())->code, false);
    return codes;
}

void Settings::fillFrom(Settings const& below) {
    fill(design, below.design);
    fill(files, below.files);
    fill(match, below.match);
    fill(ignore, below.ignore);
    fill(select, below.select);
}

void SettingLayers::set(Layer layer, QJsonValue const& value) {
    problems_[layer].clear();
    layers_[layer] = Settings::read(value, problems_[layer]);
}

void SettingLayers::set(Layer layer, Settings settings) {
    problems_[layer].clear();
    layers_[layer] = std::move(settings);
}

Settings SettingLayers::merged() const {
    Settings settings;
    for (int layer = pulled; layer >= commandLine; --layer) settings.fillFrom(layers_[layer]);
    return settings;
}

QStringList SettingLayers::problems() const {
    QStringList all;
    for (QStringList const& problems : problems_) all += problems;
    all.removeDuplicates();
    return all;
}

}  // namespace tool::lsp
