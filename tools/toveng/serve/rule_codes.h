#pragma once
#include <string>
namespace tool::lsp { inline bool isRuleCode(std::string const&) { return true; } }
