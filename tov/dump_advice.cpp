#include <cstdlib>

// The environment is read once, when the library is loaded. The flag is kept for a debugger to see and steers nothing.
[[gnu::used]] static bool const dumpAdvice = std::getenv("TW_DUMP_ADVICE") != nullptr;
