#include "../command.h"
#include "../text.h"

namespace tool {

int import(Arguments const&) {
    throw Trouble("import: this toveng was built without Tcl");
}

}  // namespace tool
