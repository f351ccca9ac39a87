// An editor of constraint files, beside the design that they are about.

#include <cstdio>
#include <cstring>

#include "editor_window.h"

static constexpr char const* usage =
    "Usage: constraint_editor [FILE]...\n"
    "\n"
    "Opens constraint files and design dumps. A dump is a file whose first character is '<'.\n"
    "\n"
    "  --picture FILE.png  draws the window with the files into FILE.png, and ends\n"
    "  --help              prints this text, and ends\n";

// The window as the README shows it.
static void pose(EditorWindow& window) {
    window.resize(1240, 640);
    window.designPane().setFilter(1, "u_cpu/*/*/D");
    window.showPlace({kiri::tov::TOVCMD_FALSEPATH - kiri::tov::TOVCMD_CLOCK, 4});
    while (!window.isIdle()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
}

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--help") == 0) return std::fputs(usage, stdout) < 0 ? 1 : 0;
    QApplication const app(argc, argv);
    QStringList files = QApplication::arguments().mid(1);
    bool const isPicture = files.value(0) == "--picture";
    if (!isPicture && !files.isEmpty() && files[0].startsWith('-')) return std::fputs(usage, stderr), 2;
    EditorWindow window;
    window.show();
    for (QString const& file : files.mid(isPicture ? 2 : 0)) window.open(file);
    if (!isPicture) return QApplication::exec();
    pose(window);
    return window.grab().save(files.value(1)) ? 0 : 1;
}
