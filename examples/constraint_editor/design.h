#pragma once

#include <QString>
#include <memory>

#include "tov/design/design.h"
#include "tov/names/design_names.h"

/// A dump that is open: the design and the index of its names. Panes and threads share it.
struct Design {
    QString path;
    kiri::tov::TovDesign nodes;
    std::unique_ptr<kiri::tov::TovDesignNames> names;
};
