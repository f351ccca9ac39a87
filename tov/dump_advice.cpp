#include <cstdlib>

// The environment is read once, when the library is loaded. Nothing uses the flag; a debugger can see it.
[[gnu::used]] static bool const dumpAdvice = std::getenv("TW_DUMP_ADVICE") != nullptr;
