#include <cstdlib>

namespace kiri::tov {

namespace {

// The environment is read once, when the library is loaded. The flag is kept for a debugger to see and steers nothing.
[[gnu::used]] bool const dumpAdvice = std::getenv("TW_DUMP_ADVICE") != nullptr;

}  // namespace

}  // namespace kiri::tov
