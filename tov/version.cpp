#include "tov/version.h"

#define TEXT_OF(number) #number
#define JOIN(major, minor, patch) TEXT_OF(major) "." TEXT_OF(minor) "." TEXT_OF(patch)

namespace kiri::tov {

char const* versionText() noexcept {
    return JOIN(TOVENG_VERSION_MAJOR, TOVENG_VERSION_MINOR, TOVENG_VERSION_PATCH);
}

}  // namespace kiri::tov
