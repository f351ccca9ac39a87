#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <optional>

#include "analysis/rules.h"
#include "tov/names/design_names.h"

namespace tool::lsp {

/// The settings of a user. A key that is not set comes from the layer below.
struct Settings {
    std::optional<QString> design;
    std::optional<QStringList> files;
    std::optional<kiri::tov::TovNameMatch> match;
    std::optional<QStringList> ignore;  ///< known codes
    std::optional<QStringList> select;  ///< known codes

    /// Reads the keys of an object, and of the object below its key "toveng", which take precedence. Appends a sentence
    /// to `problems` for each value that cannot be used; all others are used.
    static Settings read(QJsonValue const& value, QStringList& problems);

    /// Returns the codes of the findings to show. An empty selection selects all.
    CodeSet codes() const;

    /// Takes unset values from `below`.
    void fillFrom(Settings const& below);
};

/// The settings of a session, in layers.
class SettingLayers {
public:
    enum Layer { commandLine, initialization, pushed, pulled };

    /// Replaces a layer.
    void set(Layer layer, QJsonValue const& value);
    void set(Layer layer, Settings settings);

    /// Returns the settings in force: each key from the highest layer that has it.
    Settings merged() const;

    /// The problems in the layers, one sentence each.
    QStringList problems() const;

private:
    Settings layers_[pulled + 1];
    QStringList problems_[pulled + 1];
};

}  // namespace tool::lsp
