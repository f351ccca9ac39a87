// dlopen_test LIBRARY: loads the library in a process that has done nothing else, and checks that loading does not
// change the process, and that the library can be unloaded while a thread that used it is running. The environment
// variable that the library reads when it is loaded makes no difference.

#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <clocale>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <future>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

std::size_t entries(char const* folder) {
    std::filesystem::directory_iterator const all(folder);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

std::string state() {
    std::string text = std::setlocale(LC_ALL, nullptr);
    text += "|files " + std::to_string(entries("/proc/self/fd"));
    text += "|threads " + std::to_string(entries("/proc/self/task"));
    for (char** variable = ::environ; *variable != nullptr; ++variable) {
        text.append("|").append(*variable);
    }
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) == 0) {
            text += action.sa_handler == SIG_DFL ? '.' : 'h';
        }
    }
    return text;
}

// The number of available keys for thread-specific data.
std::size_t freeKeys() {
    std::vector<pthread_key_t> keys;
    for (pthread_key_t key{}; ::pthread_key_create(&key, nullptr) == 0;) keys.push_back(key);
    for (pthread_key_t const key : keys) ::pthread_key_delete(key);
    return keys.size();
}

using Formatter = char const* (*)(char const*, ...);

Formatter formatterOf(void* library) {
    return reinterpret_cast<Formatter>(::dlsym(library, "_Z7neoformPKcz"));
}

// Loads a design and destroys it, as a program does that knows the library's functions only by name.
bool loadsDesign(void* library) {
    using Member = void (*)(void* design);
    auto const construct = reinterpret_cast<Member>(::dlsym(library, "_ZN4kiri3tov9TovDesignC1Ev"));
    auto const destroy = reinterpret_cast<Member>(::dlsym(library, "_ZN4kiri3tov9TovDesignD1Ev"));
    auto const load =
        reinterpret_cast<bool (*)(void* design, char const* path)>(::dlsym(library, "_ZN4kiri3tov9TovDesign4loadEPKc"));
    if (construct == nullptr || destroy == nullptr || load == nullptr) return false;
    std::string const dump = "<top><library><unit><nets><nitem name='a[0]'/></nets></unit></library></top>";
    int const file = ::memfd_create("dump", MFD_CLOEXEC);
    bool loaded = ::write(file, dump.data(), dump.size()) == static_cast<ssize_t>(dump.size());
    alignas(std::max_align_t) char design[64];
    construct(design);
    loaded = loaded && load(design, ("/proc/self/fd/" + std::to_string(file)).c_str());
    destroy(design);
    ::close(file);
    return loaded;
}

// Whether a new thread, which runs until the library is unloaded, can format text and load a design.
bool worksAndUnloads(void* library, char const* path) {
    Formatter const neoform = formatterOf(library);
    std::promise<bool> worked;
    std::promise<void> unloaded;
    std::thread user([&] {
        bool const formats = neoform != nullptr && std::string(neoform("%f", 1.5)) == "1.500000";
        worked.set_value(formats && loadsDesign(library));
        unloaded.get_future().wait();
    });
    bool const works = worked.get_future().get() && ::dlclose(library) == 0;
    bool const gone = ::dlopen(path, RTLD_NOW | RTLD_NOLOAD) == nullptr;
    unloaded.set_value();
    user.join();
    return works && gone;
}

// Whether loads after the first leak nothing: no key, and no text of the thread that unloads.
bool givesBack(char const* path) {
    std::string const longText(1'000'000, 'x');
    std::size_t const keys = freeKeys();
    std::size_t const before = ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
    for (int i = 0; i < 10; ++i) {
        void* const library = ::dlopen(path, RTLD_NOW);
        formatterOf(library)("%s", longText.c_str());
        ::dlclose(library);
    }
    return freeKeys() == keys && ::mallinfo2().uordblks + ::mallinfo2().hblkhd < before + longText.size();
}

}  // namespace

int main(int, char** argv) {
    // The locale of the environment is set before the library is loaded, as in a program that uses Qt.
    std::setlocale(LC_ALL, "");
    // Output of the library while it is loaded goes to a pipe.
    int pipe[2];
    if (::pipe2(pipe, 0) != 0 || ::dup2(pipe[1], 1) < 0 || ::dup2(pipe[1], 2) < 0) return 2;
    std::string const before = state();
    void* const library = ::dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    bool const same = library != nullptr && state() == before;
    bool const usable = same && worksAndUnloads(library, argv[1]) && state() == before;
    bool const gives = usable && givesBack(argv[1]);
    ::close(pipe[1]);
    ::close(1);
    ::close(2);
    char text[1000];
    bool const silent = ::read(pipe[0], text, sizeof text) == 0;
    return gives && silent ? 0 : 1;
}
