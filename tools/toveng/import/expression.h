#pragma once

namespace tool::sdc {

class Run;

/// Replaces `expr`, `if`, `while` and `for` with commands that check each operand, because Tcl does not trace
/// operators.
void replaceExpressions(Run& run);

}  // namespace tool::sdc
