#include <sys/resource.h>

#include <QtTest>
#include <fstream>

#include "editor_window.h"

// While it is set, there is no memory for objects of this size.
static std::size_t refusedSize = 0;

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

constexpr int falsePaths = kiri::tov::TOVCMD_FALSEPATH - kiri::tov::TOVCMD_CLOCK;

// A window that keeps what it says, and gives up changes when it asks.
struct TestWindow : EditorWindow {
    TestWindow() {
        tell = [this](QString const& sentence) { said << sentence; };
        ask = [this](QString const& question) {
            said << question;
            return QMessageBox::Discard;
        };
        show();
    }
    QAbstractItemModel* table() { return findChild<QTreeView*>()->model(); }
    QString at(int row, int column) { return table()->index(row, column).data().toString(); }
    QLineEdit* typing() { return qobject_cast<QLineEdit*>(focusWidget()); }
    void run(char const* action) { findChild<QAction*>(action)->trigger(); }
    void type(QString const& line) {
        typing()->selectAll();
        QTest::keyClicks(typing(), line);
    }
    QStringList said;
};

class EditorTest : public QObject {
    Q_OBJECT
    QTemporaryDir folder_;
    QString path(char const* name) const { return folder_.filePath(name); }
    QString write(char const* name, std::string const& text) const {
        std::ofstream(path(name).toStdString()) << text;
        return path(name);
    }
    std::string read(char const* name) const {
        std::ifstream file(path(name).toStdString());
        return {std::istreambuf_iterator<char>(file), {}};
    }
private slots:
    void editsAreSaved() {
        TestWindow window;
        QVERIFY(window.open(write("edits.tov",
                                  "# a comment\n"
                                  "create_clock -period 10 -name a\n"
                                  "set_false_path -to [get_ports x]\n"
                                  "set_false_path -to [get_ports y]\n"
                                  "set_false_path -to [get_ports z]\n")));
        window.table()->setData(window.table()->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
        window.showRow(falsePaths, 0);
        window.editLine();
        window.type("set_false_path -to [get_ports q] -setup");
        QCOMPARE(window.at(0, 1), QString("not kept: -setup"));
        QTest::keyClick(window.typing(), Qt::Key_Return);
        QTRY_VERIFY(window.typing() == nullptr);
        for (char const* action : {"Move down", "Move down", "Undo"}) window.run(action);
        window.run("Add");  // to y q z
        window.type("#disable set_false_path -from [get_ports new]");
        window.run("Move up");
        window.showRow(falsePaths, 3);
        window.run("Remove");
        window.showRow(falsePaths, 0);
        for (char const* action : {"Remove", "Undo", "Save"}) window.run(action);
        QVERIFY(!window.isWindowModified() && window.said.isEmpty());
        kiri::tov::TOV const headers;
        std::string const saved = headers.sdcComments() +
                                  "\n#disable create_clock -period 10.000000 -name a\n"
                                  "set_false_path -to  [ get_ports { y } ]\n"
                                  "#disable set_false_path -from  [ get_ports { new } ]\n"
                                  "set_false_path -to  [ get_ports { q } ]\n"
                                  "# a comment\n\n" +
                                  headers.attributeComments() + "\n";
        QCOMPARE(read("edits.tov"), saved);
        // All the way back and forth, and the file comes out the same.
        for (int i = 0; i < 20; ++i) window.run("Undo");
        QVERIFY(window.isWindowModified());
        window.showRow(falsePaths, 0);
        QCOMPARE(window.at(2, 0), QString("set_false_path -to  [ get_ports { z } ]"));
        for (int i = 0; i < 20; ++i) window.run("Redo");
        for (char const* action : {"Undo", "Save"}) window.run(action);  // the last removal
        QCOMPARE(read("edits.tov"), saved);
        window.showRow(0, 0);
        window.findChild<QLineEdit*>("search")->setText("{ q }");
        window.run("Find next");
        QCOMPARE(window.findChild<QTreeView*>()->currentIndex().data().toString(), window.at(2, 0));
    }

    void aLongLoadIsCanceled() {
        std::string const lines = QByteArray("set_false_path\n").repeated(1000000).toStdString();
        TestWindow window;
        QVERIFY(window.open(write("short.tov", "create_clock -period 1\n")));
        QTimer::singleShot(0, &window, [&window] { window.findChild<QProgressDialog*>()->cancel(); });
        QVERIFY(!window.open(write("long.tov", lines)) && window.said.isEmpty());
        QVERIFY(window.windowTitle().startsWith("short.tov") && window.table()->rowCount() == 1);
    }

    void errorsAreSentences() {
        write("ends.tov", "create_clock -period 1\ncreate_clock -waveform\nset_false_path\n");
        write("memory.tov", "create_generated_clock -name a\n");
        write("other.xml", "<design/>");
        write("cut.xml", "<top name=\"t\"><library>");
        auto const open = [](TestWindow& window, QString const& file) { return window.open(file); };
        auto const openInShortMemory = [](TestWindow& window, QString const& file) {
            refusedSize = sizeof(kiri::tov::TovCmdGenClockDef);
            return window.open(file);
        };
        auto const saveOnFullDisk = [](TestWindow& window, QString const& file) {
            rlimit const full = {1, RLIM_INFINITY};
            setrlimit(RLIMIT_FSIZE, &full);
            return window.save(file);
        };
        auto const type = [](TestWindow& window, QString const&) {
            window.editLine();
            window.type("create_cloc");
            window.run("Save");
            return window.typing() == nullptr;
        };
        auto const removeAndClose = [](TestWindow& window, QString const&) {
            window.run("Remove");
            return !window.close();
        };
        rlimit const noLimit = {RLIM_INFINITY, RLIM_INFINITY};
        struct {
            bool (*act)(TestWindow& window, QString const& file);
            char const* file;
            char const* sentence;
            char const* title = "old.tov";
        } const rows[] = {
            {open, "none.tov", "none.tov cannot be opened: No such file"},
            {open, ".", "cannot be opened: "},
            {open, "ends.tov", "no load gets beyond line 2, create_clock -waveform", "untitled"},
            {openInShortMemory, "memory.tov", "There is not enough memory"},
            {open, "none.xml", "none.xml cannot be read: "},
            {open, "other.xml", "other.xml cannot be read: "},
            {open, "cut.xml", "cut.xml cannot be read to its end: "},
            {saveOnFullDisk, "old.tov", "File too large"},
            {saveOnFullDisk, "no/folder.tov", "No such file"},
            {type, "", "What you are typing is no command"},
            {removeAndClose, "", "The document has changes that are not saved"},
        };
        for (auto const& row : rows) {
            TestWindow window;
            QVERIFY(window.open(write("old.tov", "create_clock -period 5\n")));
            QVERIFY2(!row.act(window, path(row.file)), row.sentence);
            refusedSize = 0;
            setrlimit(RLIMIT_FSIZE, &noLimit);
            QCOMPARE(read("old.tov"), std::string("create_clock -period 5\n"));
            QVERIFY2(window.said.size() == 1 && window.said[0].contains(row.sentence), row.sentence);
            QVERIFY2(window.windowTitle().startsWith(row.title), row.sentence);
        }
    }

    void namesThatTheDesignLacksAreMarked() {
        std::pair<char const*, char const*> const rows[] = {
            {"[get_ports {gpio[7:0]}]", ""},
            {"[get_ports gpi?]", ""},
            {"[get_ports {gpi?[9]}]", "not in the design: gpi?[9]"},
            {"[get_nets gpio]", "not in the design: gpio"},
            {"[get_clocks mine]", ""},
            {"[get_clocks other]", "not in the design: other"},
            {"[get_pins u_pll/CLKIN]", ""},
            {"[get_pins u_pll/none]", "not in the design: u_pll/none"},
            {"[all_inputs]", ""},
            {"nothing", "not in the design: nothing"},
        };
        TestWindow window;
        std::string lines = "create_clock -name mine\n";
        for (auto const& row : rows) lines += std::string("set_false_path -to ") + row.first + "\n";
        QVERIFY(window.open(write("names.tov", lines)) && window.open(DEMO_DESIGN));
        window.showRow(falsePaths, 0);
        for (int i = 0; i < window.table()->rowCount(); ++i) {
            QCOMPARE(window.at(i, 1), QString(rows[i].second));
        }
        auto* const objects = window.findChild<QListView*>("objects");
        emit objects->doubleClicked(objects->model()->index(0, 0));
        QVERIFY(window.typing()->text().endsWith("[ get_ports { clk } ]"));
    }
};

QTEST_MAIN(EditorTest)
#include "editor_test.moc"
