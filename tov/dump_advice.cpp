#include <cstdlib>

// The environment is read once, when the library is loaded. Nothing uses the flag, but a debugger can show it.
[[gnu::used]] static bool const dumpAdvice = std::getenv("TW_DUMP_ADVICE") != nullptr;
