#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>

#include "test_window.h"

// While it is set, there is no memory for objects of this size.
static std::atomic<std::size_t> refusedSize = 0;

void* operator new(std::size_t size) {
    return size == refusedSize && size != 0 ? throw std::bad_alloc() : std::malloc(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return std::malloc(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

// A window that is told what to do, a verb and its text at a time, and keeps what it says. The script answers
// its questions; without an answer the window takes the last choice, which does nothing.
struct TestWindow : EditorWindow {
    explicit TestWindow(TestFolder& files) : folder(files) {
        tell = [this](QString const& sentence) { said << sentence; };
        ask = [this](QString const& question, QString const& details, QStringList const& choices) {
            said << question + "\n" + details;
            int const choice = static_cast<int>(choices.indexOf(answer));
            return choice < 0 ? static_cast<int>(choices.size()) - 1 : choice;
        };
        askForFile = [this](bool) { return folder.path("chosen.tov"); };
        show();
    }

    QWidget* part(QString const& name) { return findChild<QWidget*>(name); }
    QLineEdit* line() { return qobject_cast<QLineEdit*>(focusWidget()); }
    QTreeView* table() { return findChild<QTreeView*>("lines"); }
    QString shown(int column) { return table()->currentIndex().siblingAtColumn(column).data().toString(); }
    bool waitUntilIdle() {
        QApplication::processEvents();
        return QTest::qWaitFor([this] { return isIdle(); }, 60000);
    }

    // Does one step; false where what it expects is not so.
    bool step(QString const& verb, QString const& text) {
        if (verb == "do") {
            auto* const action = findChild<QAction*>(text);
            bool const isEnabled = action->isEnabled();
            action->trigger();
            return isEnabled;
        }
        if (verb == "cannot") return !findChild<QAction*>(text)->isEnabled();
        if (verb == "row") return showPlace({text.section(' ', 0, 0).toInt(), text.section(' ', 1).toInt()}), true;
        if (verb == "open") return open(folder.path(text)), true;
        if (verb == "save") return save(folder.path(text)), true;
        if (verb == "type") {
            if (line() == nullptr) editLine();
            line()->selectAll();
            return QTest::keyClicks(line(), text), true;
        }
        if (verb == "press") return QTest::keySequence(focusWidget(), QKeySequence(text)), true;
        if (verb == "focus") return part(text)->setFocus(), true;
        if (verb == "copied") return QGuiApplication::clipboard()->setText(QString(text).replace('|', '\n')), true;
        if (verb == "answer") return answer = text, true;
        if (verb == "disk") return folder.write("a.tov", text.toStdString() + "\n"), true;
        if (verb == "fill") return part(text.section(' ', 0, 0))->setProperty("text", text.section(' ', 1)), true;
        if (verb == "choose")
            return part(text.section(' ', 0, 0))->setProperty("currentIndex", text.section(' ', 1).toInt()), true;
        if (verb == "wait") return waitUntilIdle();
        if (verb == "is") return shown(0) == text;
        if (verb == "remark") return waitUntilIdle() && shown(1) == text;
        if (verb == "label")
            return waitUntilIdle() && part(text.section(' ', 0, 0))->property("text") == text.section(' ', 1);
        if (verb == "title") return windowTitle() == text;
        if (verb == "select") return table()->selectAll(), true;
        if (verb == "activate") {
            auto* const list = qobject_cast<QAbstractItemView*>(part(text.section(' ', 0, 0)));
            if (!waitUntilIdle()) return false;
            QModelIndex const index = list->model()->index(text.section(' ', 1).toInt(), 0);
            list->setCurrentIndex(index);
            return index.isValid() && (emit list->activated(index), true);
        }
        if (verb == "doubleclick") {
            QRect const place = table()->visualRect(table()->currentIndex().siblingAtColumn(text.toInt()));
            QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, place.center());
            return QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, place.center()), true;
        }
        return false;
    }

    TestFolder& folder;
    QStringList said;
    QString answer;
};

// What a save writes, with $1 and $2 in place of the headers.
static std::string withHeaders(std::string text) {
    kiri::tov::TOV const tov;
    text.replace(text.find("$1"), 2, tov.sdcComments() + "\n");
    return text.replace(text.find("$2"), 2, "\n" + tov.attributeComments() + "\n");
}

struct Row {
    char const* name;
    char const* file;   // before
    char const* steps;  // a line each
    char const* saved;  // after; null: as before
    char const* said;   // a part of each sentence, a line each
};

static Row const rows[] = {
    {"typing, moving, removing, and the way back",
     "# a comment\ncreate_clock -period 10 -name a\nset_false_path -to [get_ports x]\nset_false_path -to [get_ports "
     "y]\n",
     R"(do Enable or disable
        row 8 0
        type set_false_path -to [get_ports q] -setup
        remark lost word: -setup
        press Return
        do Move down
        cannot Move down
        do Undo
        do Redo
        do Add
        type #disable set_false_path -from [get_ports new]
        do Move up
        row 8 0
        do Remove
        do Undo
        do Undo
        do Redo
        title a.tov[*] - Constraint editor
        do Save)",
     "$1#disable create_clock -period 10.000000 -name a\nset_false_path -to  [ get_ports { y } ]\n"
     "#disable set_false_path -from  [ get_ports { new } ]\nset_false_path -to  [ get_ports { q } ]\n# a comment\n$2",
     ""},
    {"an added row that is cancelled leaves nothing", "set_false_path -to x\n",
     R"(do Add
        press Esc
        row 8 0
        do Add
        focus kinds
        row 8 0
        do Add
        type x
        press Esc
        do Save)",
     "$1set_false_path -to  x\n$2", ""},
    {"what is no command yet stays in its row", "create_clock -period 1\n",
     R"(type create_cloc
        focus kinds
        is create_cloc
        remark not a line of "Clocks" yet; unknown command: create_cloc
        do Save
        is create_cloc
        do Give up what is typed
        is create_clock -period 1.000000
        do Undo
        do Undo
        is create_clock -period 1.000000
        remark)",
     nullptr, "What is typed in this line is no command"},
    {"the first save asks before something is lost",
     "set_false_path -through [get_nets n] -setup\nset_multicycle_path 2 -hold -to x\nunknown\n",
     R"(do Save
        answer Yes
        do Save
        do Save)",
     "$1set_multicycle_path 2 -to  x\nset_false_path -through  [ get_nets { n } ]\nunknown\n$2",
     "Line 1: lost word: -setup\nLine 2: lost word: -hold"},
    {"other programs change the file", "create_clock -period 1\n",
     R"(do Remove
        disk create_clock -period 22
        do Save
        answer Reload
        do Save
        is create_clock -period 22.000000
        do Remove
        disk create_clock -period 33
        answer Overwrite
        do Save)",
     "$1$2", "changed by another program\nchanged by another program\nchanged by another program\n"},
    {"line feeds are not taken, and bytes are kept",
     "create_clock -name \xc3\xbc\nset_false_path -to \xff\n#attribute port a b c d\n",
     R"(is create_clock -period 0.000000 -name ü
        copied create_clock -name|ü|-period 5
        press F2
        press Ctrl+A
        press Ctrl+V
        press Return
        row 8 0
        type set_false_path -to ÿÿ
        answer Yes
        do Save)",
     "$1create_clock -period 5.000000 -name \xc3\xbc\nset_false_path -to  \xff\xff\n$2#attribute\tport\ta\tb\tc\td\n",
     "Line 1"},
    {"files that are no constraints", "create_clock -period 1\n",
     R"(open none
        open .
        open dump
        title a.tov[*] - dump - Constraint editor
        open nul
        open wide
        open ends
        open cut
        open other
        title a.tov[*] - cut - Constraint editor
        is create_clock -period 1.000000)",
     nullptr,
     "none cannot be opened: No such file\ncannot be opened: Is a directory\nnul is no constraint file\n"
     "wide is no constraint file\nends cannot be opened: Line 2: \ncut cannot be read to its end: \n"
     "other cannot be read: \n"},
    {"comments and unknown lines", "# one\nset_units\n#attribute port a b c d\n# two\ncreate_clock -period 1\n",
     R"(row 10 1
        is set_units
        type create_clock
        focus kinds
        remark not a line of "Comments and unknown lines" yet; changed value: -period 0.000000
        do Undo
        row 10 1
        do Move up
        row 11 0
        is # two
        do Duplicate
        type # three
        do Save)",
     "$1create_clock -period 1.000000\nset_units\n# one\n$2#attribute\tport\ta\tb\tc\td\n# two\n# three\n", ""},
    {"actions act where the focus is", "create_clock -period 1\ncreate_clock -period 2\n",
     R"(focus kinds
        press Delete
        press Alt+Down
        cannot Remove
        cannot Move down
        cannot Paste
        cannot Undo
        row 0 0
        cannot Move up
        press Alt+Down
        is create_clock -period 1.000000
        row 2 0
        cannot Remove
        press Alt+Down
        press F2
        focus objectFilter
        cannot Remove
        row 0 0
        doubleclick 1
        press Esc
        is create_clock -period 2.000000
        do Save)",
     "$1create_clock -period 2.000000\ncreate_clock -period 1.000000\n$2", ""},
    {"several lines are cut, pasted and doubled", "create_clock -period 1\ncreate_clock -period 2\n",
     R"(select
        do Duplicate
        select
        do Enable or disable
        do Cut
        do Paste
        copied set_false_path -to x|# note|create_clock -period 3|
        do Paste
        copied set_false_path -setup
        do Paste
        do Save)",
     "$1#disable create_clock -period 1.000000\n#disable create_clock -period 2.000000\n"
     "#disable create_clock -period 1.000000\n#disable create_clock -period 2.000000\n"
     "create_clock -period 3.000000\nset_false_path -to  x\n# note\n$2",
     "The pasted text has what a save does not keep"},
    {"finding and filtering", "set_false_path -to x\nset_false_path -to X\n# x\nset_max_delay 1 -to x\nfoo\n",
     R"(fill search x
        label found 4 found
        fill search -to  x
        label found 3 found
        do Find next
        is set_max_delay 1.000000 -to  x
        do Find previous
        is set_false_path -to  X
        fill filter to  X
        row 8 0
        select
        do Copy
        cannot Move down
        do Next remark
        is foo
        remark unknown command: foo
        do Save)",
     "$1set_max_delay 1.000000 -to  x\nset_false_path -to  x\nset_false_path -to  X\n# x\nfoo\n$2", ""},
    {"a design",
     "create_clock -name c -period 1\nset_false_path -to [get_pins u/*/D]\nset_false_path -to [get_ports e]\n",
     R"(open dump
        row 8 1
        remark missing name: e
        activate findings 0
        is set_false_path -to  [ get_ports { e } ]
        choose objectKind 1
        fill objectFilter u/?/D
        activate objects 1
        press Return
        is set_false_path -to  [ get_ports { e } ]
        remark missing name: e
        activate commandsOfObject 0
        is set_false_path -to  [ get_pins { u/*/D } ]
        do Save)",
     "$1create_clock -period 1.000000 -name c\nset_false_path -to  [ get_pins { u/*/D } ]\n"
     "set_false_path -to  [ get_ports { e } ]\n$2",
     ""},
};

class EditorTest : public QObject {
    Q_OBJECT
    TestFolder folder_;

private slots:
    void initTestCase() {
        folder_.write("dump", smallDump);
        folder_.write("nul", std::string("set_false_path\0", 15));
        folder_.write("wide", std::string("\xff\xfe#\0", 4));
        folder_.write("ends", "create_clock -period 1\ncreate_clock -waveform\n");
        folder_.write("cut", "<top name=\"t\"><library>");
        folder_.write("other", "<design/>");
    }

    void actions_data() {
        QTest::addColumn<int>("number");
        for (std::size_t i = 0; i < std::size(rows); ++i) QTest::newRow(rows[i].name) << static_cast<int>(i);
    }

    void actions() {
        QFETCH(int, number);
        Row const& row = rows[number];
        folder_.write("a.tov", row.file);
        TestWindow window(folder_);
        QVERIFY(window.open(folder_.path("a.tov")) && window.waitUntilIdle());
        for (QString const& step : QString(row.steps).split('\n', Qt::SkipEmptyParts)) {
            QApplication::processEvents();
            QVERIFY2(window.step(step.trimmed().section(' ', 0, 0), step.trimmed().section(' ', 1)),
                     qPrintable(step + "\nbut: " + window.shown(0) + "\n" + window.shown(1) + "\n" +
                                window.said.join('\n')));
        }
        QStringList const sentences = QString(row.said).split('\n', Qt::SkipEmptyParts);
        for (int i = 0; i < static_cast<int>(window.said.size()); ++i)
            QVERIFY2(window.said[i].contains(sentences.value(i, "nothing")), qPrintable(window.said[i]));
        QCOMPARE(window.said.size(), sentences.size());
        std::string const saved = folder_.read("a.tov");
        QVERIFY2(saved == (row.saved == nullptr ? row.file : withHeaders(row.saved)), saved.c_str());
    }

    // A pipe to which nobody writes lasts until the cancel, however fast the machine is.
    void aLoadIsCancelled() {
        QVERIFY(::mkfifo(folder_.path("pipe").toStdString().c_str(), 0600) == 0);
        int const pipe = ::open(folder_.path("pipe").toStdString().c_str(), O_RDWR);
        TestWindow window(folder_);
        QVERIFY(window.open(folder_.write("short.tov", "create_clock -period 1\n")));
        QTimer timer;
        connect(&timer, &QTimer::timeout, &window, [&window, pipe] {
            auto* const dialog = window.findChild<QProgressDialog*>();
            if (dialog == nullptr || !dialog->isVisible()) return;
            dialog->cancel();
            ::close(pipe);  // the load hears of the cancel at its next step
        });
        timer.start(5);
        QVERIFY(!window.open(folder_.path("pipe")));
        timer.stop();
        QVERIFY(window.said.isEmpty() && window.windowTitle().startsWith("short.tov"));
        QCOMPARE(window.shown(0), QString("create_clock -period 1.000000"));
    }

    void shortMemoryAndAFullDisk() {
        folder_.write("memory.tov", "create_generated_clock -name a\n");
        TestWindow window(folder_);
        QVERIFY(window.open(folder_.write("a.tov", "create_clock -period 1\n")));
        refusedSize = sizeof(kiri::tov::TovCmdGenClockDef);
        QVERIFY(!window.open(folder_.path("memory.tov")));
        refusedSize = 0;
        rlimit const full = {1, RLIM_INFINITY}, free = {RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &full);
        bool const isSaved = window.save(folder_.path("a.tov"));
        setrlimit(RLIMIT_FSIZE, &free);
        QVERIFY(!isSaved && window.said.size() == 2 && window.windowTitle().startsWith("a.tov"));
        QVERIFY(window.said[0].contains("not enough memory") && window.said[1].contains("File too large"));
        QCOMPARE(folder_.read("a.tov"), std::string("create_clock -period 1\n"));
        window.step("do", "Remove");
        QVERIFY(!window.close() && window.said.last().contains("changes that are not saved"));
    }
};

QTEST_MAIN(EditorTest)
#include "editor_test.moc"
