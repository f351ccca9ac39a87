// Shows a constraint file next to its design, and changes the fields of its commands.

#include "window.h"

int main(int argc, char** argv) {
    QApplication const app(argc, argv);
    Window window;
    window.resize(1240, 760);
    window.show();
    for (QString const& file : QApplication::arguments().mid(1)) window.open(file);
    return QApplication::exec();
}
