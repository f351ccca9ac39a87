#pragma once

namespace tool::sdc {

class Run;

/// Replaces `expr`, `if`, `while` and `for` by commands that look at each operand: Tcl does not trace its operators.
void replaceExpressions(Run& run);

}  // namespace tool::sdc
