// Random keys, clicks and actions, from a seed that the test prints: nothing falls over, and the way back is exact.
//
//   random_use_test [SEED [STEPS]]

#include <cstdio>
#include <random>

#include "test_window.h"

namespace {

class RandomUse {
public:
    explicit RandomUse(unsigned seed) : random_(seed) {
        files_ << newSample();
        files_ << folder_.write("b.tov",
                                "set_max_delay 3 -from x\n#disable create_clock -name \xc3\xbc\nset_min_delay \xff\n");
        files_ << folder_.write("c.xml", smallDump) << folder_.path("none")
               << folder_.write("nul", std::string(9, '\0'));
        window_.tell = [](QString const&) {};
        window_.ask = [this](QString const&, QString const&, QStringList const& answers) {
            return upTo(answers.size());
        };
        window_.askForFile = [this](bool) { return one(files_); };
        window_.show();
        window_.open(files_[0]);
        window_.open(files_[2]);
        QTimer::singleShot(0, &window_, [this] { closeMenus(); });
    }

    // Ends when all is done that the step set off: the same seed has the same steps.
    void step() {
        window_.show();  // a step before may have closed it
        if (linesOf(window_.document()).isEmpty()) window_.open(newSample());
        isInStep_ = true;
        act();
        isInStep_ = false;
        QApplication::processEvents();
        while (!window_.isIdle()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QApplication::processEvents();
    }

    // All the way back and forth, and the lines are the same.
    bool isTheWayBackExact() {
        for (int const kind : {1, 0}) window_.showPlace({kind, 0});  // takes what is being typed
        run("Give up what is typed", 1);
        QStringList const lines = linesOf(window_.document());
        run("Redo", run("Undo", 100000));
        QStringList const after = linesOf(window_.document());
        if (after != lines) std::printf("%s\nbut:\n%s\n", qPrintable(lines.join('\n')), qPrintable(after.join('\n')));
        return after == lines;
    }

    std::size_t digest() const {
        return std::hash<std::string>()(linesOf(window_.document()).join('\n').toStdString());
    }

private:
    QString newSample() const {
        return folder_.write("a.tov",
                             "# one\ncreate_clock -period 10 -name a [get_ports clk]\nset_false_path -to q -setup\n"
                             "unknown\n#attribute port a b c d\nset_false_path -from [get_pins u/*/D]\n# two\n"
                             "create_clock -period 5 -name b [get_ports d*]\nset_false_path -to [get_clocks b]\n");
    }

    void act() {
        switch (upTo(8)) {
            case 0:
                return trigger();
            case 1:
                return click();
            case 2:
                return type();
            case 3:
                return setText();
            default:
                return press();
        }
    }

    // How often, at most so often, the action could be run.
    int run(char const* name, int most) {
        auto* const action = window_.findChild<QAction*>(name);
        int times = 0;
        for (; times < most && action->isEnabled(); ++times) action->trigger();
        return times;
    }
    int upTo(qsizetype end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    template <class List>
    auto one(List const& list) -> std::decay_t<decltype(list[0])> {
        return list[upTo(static_cast<qsizetype>(std::size(list)))];
    }
    QWidget* target() {
        if (QWidget* const popup = QApplication::activePopupWidget()) return popup;
        return window_.focusWidget() != nullptr ? window_.focusWidget() : &window_;
    }

    void trigger() {
        QList<QAction*> const actions = window_.findChildren<QAction*>();
        QAction* const action = one(actions);
        if (action->objectName() != "Quit") action->trigger();
    }

    void click() {
        QList<QWidget*> widgets;
        for (QWidget* widget : window_.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->isEnabled() && !widget->rect().isEmpty()) widgets << widget;
        }
        QWidget* const widget = one(widgets);
        QPoint const at(upTo(widget->width()), upTo(std::min(widget->height(), 200)));
        Qt::KeyboardModifier const modifiers[] = {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier};
        if (upTo(3) == 0)
            QTest::mouseDClick(widget, Qt::LeftButton, Qt::NoModifier, at);
        else
            QTest::mouseClick(widget, upTo(6) == 0 ? Qt::RightButton : Qt::LeftButton, one(modifiers), at);
    }

    void type() {
        char const* const texts[] = {"set_false_path -to [get_ports {d[0]}]",
                                     "create_clock -name b",
                                     "x",
                                     "#",
                                     "\"",
                                     "[",
                                     "#disable ",
                                     "u/*",
                                     "\xc3\xa9"};
        QPointer<QWidget> const widget = target();
        for (QChar const letter : QString(one(texts))) {
            if (widget) QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(letter), Qt::NoModifier);
        }
    }

    void setText() {
        char const* const texts[] = {"set_false_path\nfoo\r\nset_max_delay 1 -zzz", "a\nb", "#attribute a b c d e", "",
                                     "d"};
        QGuiApplication::clipboard()->setText(one(texts));
    }

    // New and Cut leave little to try: they are only among the actions.
    void press() {
        char const* const keys[] = {"Up",       "Down",        "Return",     "Return", "Esc",    "Tab",    "Shift+Tab",
                                    "Delete",   "F2",          "F3",         "F8",     "Home",   "End",    "Shift+F3",
                                    "Shift+F8", "Space",       "Ctrl+C",     "Ctrl+V", "Ctrl+A", "Ctrl+Z", "Ctrl+Y",
                                    "Ctrl+D",   "Ctrl+Return", "Ctrl+S",     "Ctrl+E", "Ctrl+L", "Ctrl+F", "Ctrl+O",
                                    "Alt+Up",   "Alt+Down",    "Shift+Down", "PgDown", "F5",     "Alt+E",  "Left",
                                    "Right",    "Backspace",   "Shift+Home"};
        QTest::keySequence(target(), QKeySequence(one(keys)));
    }

    // A menu for whose end a step waits ends by itself.
    void closeMenus() {
        QWidget* const popup = QApplication::activePopupWidget();
        if (popup != nullptr && isInStep_) QTest::keyClick(popup, Qt::Key_Escape);
        QTimer::singleShot(3, &window_, [this] { closeMenus(); });
    }

    std::mt19937 random_;
    bool isInStep_ = false;
    TestFolder folder_;
    QStringList files_;
    EditorWindow window_;
};

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_HASH_SEED", "0");
    QApplication const app(argc, argv);
    QApplication::setKeyboardInputInterval(std::numeric_limits<int>::max());
    unsigned const seed = argc > 1 ? static_cast<unsigned>(std::atoi(argv[1])) : 1;
    int const steps = argc > 2 ? std::atoi(argv[2]) : 2000;
    std::printf("seed %u\n", seed);
    RandomUse use(seed);
    for (int i = 0; i < steps; ++i) {
        use.step();
        if (i % 100 == 99 && !use.isTheWayBackExact()) return std::printf("not exact at step %d\n", i), 1;
    }
    std::printf("ends with lines of digest %zx\n", use.digest());
    return 0;
}
