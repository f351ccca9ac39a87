// A small editor of constraint files, beside the design that they are about.
//
//   constraint_editor [--picture FILE.png] [FILE.tov] [DUMP.xml]
//
// With --picture it draws its window into a file and ends.

#include "editor_window.h"

int main(int argc, char** argv) {
    QApplication const app(argc, argv);
    QStringList files = QApplication::arguments().mid(1);
    bool const picture = files.value(0) == "--picture";
    EditorWindow window;
    window.show();
    for (QString const& file : files.mid(picture ? 2 : 0)) window.open(file);
    if (!picture) return QApplication::exec();
    window.showRow(kiri::tov::TOVCMD_INPUTDELAY - kiri::tov::TOVCMD_CLOCK, 3);
    window.resize(window.width(), 400);
    window.editLine();
    if (auto* line = qobject_cast<QLineEdit*>(window.focusWidget())) line->insert(" -add_delay");
    QApplication::processEvents();
    return window.grab().save(files.value(1)) ? 0 : 1;
}
