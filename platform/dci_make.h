#ifndef TOVENG_PLATFORM_DCI_MAKE_H
#define TOVENG_PLATFORM_DCI_MAKE_H

#include <string_view>

#include "platform/dci.h"

// How the library itself makes object references. The bundled database makes them without a detour; for an
// external one they go through the constructors that it offers.

/// Returns a new record of that kind. As for any C text, the name ends at the first NUL byte.
taDciObj* makeDciObj(std::string_view name, taDciObjTyp type);

/// Returns a new record like `*other`. The bundled database keeps one text for both names, so that many
/// records of one long name cost no more than one; an external database copies the name.
taDciObj* makeDciObjWithSharedName(taDciObj* other);

#endif
