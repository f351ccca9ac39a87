// A client that does not call the flow.
#include <cstdio>

#include "tov/tov.h"
#include "tov/version.h"

int main() {
    kiri::tov::TOV document;
    std::printf("%s %zu\n", kiri::tov::versionText(), document.toSaveString().size());
    std::printf("%d.%d.%d\n", TOVENG_VERSION_MAJOR, TOVENG_VERSION_MINOR, TOVENG_VERSION_PATCH);
}
