#pragma once

#include <string>

#include "tov/check.h"

namespace tool::lsp {

/// Whether a text is the code of a finding.
inline bool isRuleCode(std::string const& text) {
    for (int kind = kiri::tov::TOVFINDING_DROPPED_LINE; kind <= kiri::tov::TOVFINDING_MISSING_NAME; ++kind) {
        if (text == kiri::tov::findingCode(static_cast<kiri::tov::TovFindingKind>(kind))) return true;
    }
    return false;
}

}  // namespace tool::lsp
