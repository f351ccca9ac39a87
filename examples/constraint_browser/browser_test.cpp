#include <sys/resource.h>
#include <unistd.h>

#include <QtTest>
#include <random>

#include "window.h"

namespace {

void write(QString const& path, QByteArray const& text) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

// A dump of registers u0, u1 ... with pins D and Q, and the ports clk and in.
QByteArray dump(int cells) {
    QByteArray text =
        "<top name='t'><library name='work'><unit name='t'><pins><pitem name='clk' direction='in'/>"
        "<pitem name='in' direction='in'/></pins>";
    for (int i = 0; i < cells; ++i) {
        text +=
            "<instance name='u" + QByteArray::number(i) +
            "' type='reg'><pins><pitem name='D' direction='in'/><pitem name='Q' direction='out'/></pins></instance>";
    }
    return text + "</unit></library></top>";
}

constexpr char const* constraints =
    "create_clock -period 10 -name clk [get_ports clk]\n"
    "create_clock -period 3 -name fast [get_ports fast]\n"
    "create_generated_clock -divide_by 2 -source [get_ports clk] -name half [get_pins u1/Q]\n"
    "set_clock_groups -asynchronous -group [get_clocks {clk half}] -group [get_clocks fast]\n"
    "set_input_delay 1 -clock [get_clocks clk] [get_ports im]\n"
    "set_max_delay 4 -from [get_pins u0/Q] -to [get_pins u2/D]\n"
    "set_multicycle_path 2 -to [get_cells u3]\n"
    "set_false_path -through [get_pins u*/Q]\n"
    "#disable set_false_path -from [all_inputs]\n"
    "# a comment\n"
    "#attribute port clk keep true string\n";

}  // namespace

class BrowserTest : public QObject {
    Q_OBJECT

private slots:
    // Each field is changed, undone and changed again.
    void changes() {
        struct Row {
            char const *line, *field, *value, *saved;  // `saved` is empty if the value is refused
        };
        constexpr char const* clock = "create_clock -period 10 clk";
        constexpr char const* generated = "create_generated_clock -name a b";
        constexpr char const* groups = "set_clock_groups -group [get_clocks {a b}]";
        constexpr Row rows[] = {
            {clock, "period", "2.5", "create_clock -period 2.500000 clk"},
            {clock, "period", "0.1", "create_clock -period 0.100000 clk"},
            {clock, "period", "1e-9", ""},
            {clock, "period", "ten", ""},
            {clock, "period", "nan", ""},
            {clock, "period", "", ""},
            {clock, "enabled", "no", "#disable create_clock -period 10.000000 clk"},
            {clock, "objects", "[ get_pins { u/q } ]", "create_clock -period 10.000000 [ get_pins { u/q } ]"},
            {clock, "objects", "-waveform", ""},
            {generated, "divide by", "4", "create_generated_clock -divide_by 4 -name a b"},
            {generated, "divide by", "x", ""},
            {groups, "exclusive", "no", "set_clock_groups -asynchronous -group [ get_clocks { a b } ]"},
            {groups, "group", "[get_clocks {a c d}]", "set_clock_groups -exclusive -group [ get_clocks { a c d } ]"},
            {"set_max_delay 1 -to b", "from", "[ get_pins { a b } ]", ""},    // a file holds only the first
            {"set_false_path -through a", "from", "[ get_pins { a } ]", ""},  // the through point would be lost
            {"set_multicycle_path 2 -to b", "cycles", "2147483648", ""},
        };
        QTemporaryDir const folder;
        for (Row const& row : rows) {
            write(folder.filePath("a.tov"), row.line);
            std::string error;
            auto const document = Document::load(folder.filePath("a.tov").toStdString(), {}, error);
            QVERIFY(document);
            QUndoStack undo;
            CommandModel model(undo, [](int) {});
            model.show(document);
            std::size_t field = 0;
            while (fieldsOf(*model.command(0))[field].title != row.field) ++field;
            auto const text = [&model] { return model.index(0).data().toString().simplified(); };
            QString const before = text();
            QString const after = *row.saved == '\0' ? before : row.saved;
            QString const reason = model.change(0, field, row.value);
            QVERIFY2(reason.isEmpty() == (*row.saved != '\0') && text() == after, row.value);
            undo.undo();
            QCOMPARE(text(), before);
            undo.redo();
            QCOMPARE(text(), after);
        }
    }

    void smallDesign() { randomUse(10); }
    void largeDesign() { randomUse(20000); }

private:
    static void randomUse(int cells);
};

// Two thousand steps; after each the document must match its undo stack.
void BrowserTest::randomUse(int cells) {
    QString const given = qEnvironmentVariable("SEED");
    unsigned const seed = given.isEmpty() ? std::random_device()() : given.toUInt();
    qInfo("SEED=%u", seed);
    std::mt19937 random(seed);
    auto const below = [&random](int end) {
        return end <= 0 ? 0 : static_cast<int>(random() % static_cast<unsigned>(end));
    };
    QTemporaryDir const folder;
    QString const files[] = {folder.filePath("a.tov"), folder.filePath("b.tov"), folder.filePath("c.xml")};
    for (QString const& file : files) write(file, file.endsWith("xml") ? dump(cells) : QByteArray(constraints));
    Window window;
    window.show();
    for (QString const& file : files) window.open(file);

    QTimer dialogs;  // answers questions at random
    QObject::connect(&dialogs, &QTimer::timeout, [&] {
        QWidget* const asked = QApplication::activeModalWidget();
        if (auto* box = qobject_cast<QMessageBox*>(asked)) {
            QAbstractButton* const button = box->buttons()[below(static_cast<int>(box->buttons().size()))];
            QTimer::singleShot(0, button, &QAbstractButton::click);  // its action may ask again
        }
        if (auto* chooser = qobject_cast<QFileDialog*>(asked)) {
            chooser->selectFile(files[below(2)]);
            QMetaObject::invokeMethod(chooser, below(2) == 0 ? "accept" : "reject", Qt::QueuedConnection);
        }
    });
    dialogs.start(1);

    auto* const undo = window.findChild<QUndoStack*>();
    auto views = window.findChildren<QTableView*>();
    if (dynamic_cast<FieldModel*>(views[0]->model()) != nullptr) views.swapItemsAt(0, 1);
    QAbstractItemModel* const commands = views[0]->model();
    QAbstractItemModel* const fields = views[1]->model();
    auto const text = [commands] {
        QStringList lines;
        for (int row = 0; row < commands->rowCount(); ++row) lines += commands->index(row, 0).data().toString();
        return lines;
    };
    QStringList const values =
        QString("|1|2.5|-3|x|clk|[ get_ports { in } ]|[ get_pins { u1/D u2/D } ]|[get_clocks clk|-waveform|{")
            .split('|');
    int last = 0;
    QList<QStringList> states = {text()};  // by the index of the undo stack
    QObject::connect(commands, &QAbstractItemModel::modelReset, [&] {
        if (undo->count() == 0 && commands->rowCount() > 0) states = {text()}, last = 0;
    });
    for (int step = 0; step < 2000; ++step) {
        QList<QAction*> const actions = window.findChildren<QAction*>();
        auto const jobs = window.findChildren<Job*>();
        QModelIndex const field = fields->index(below(fields->rowCount()), 0);
        bool isUndo = false;
        switch (below(9)) {
            case 0:
                window.open(files[below(3)]);
                break;
            case 1:
                views[0]->setCurrentIndex(commands->index(below(commands->rowCount()), 0));
                break;
            case 2:
                if (views[1]->isEnabled() && field.isValid()) {
                    views[1]->setCurrentIndex(field);
                    bool const isFlag = field.flags().testFlag(Qt::ItemIsUserCheckable);
                    fields->setData(field, isFlag ? QVariant(below(2) * 2) : QVariant(values[below(11)]),
                                    isFlag ? Qt::CheckStateRole : Qt::EditRole);
                }
                break;
            case 3:
                if (views[1]->isEnabled() && field.isValid()) views[1]->edit(field);
                if (auto* line = views[1]->findChild<QLineEdit*>()) {
                    QTest::keyClicks(line, values[below(11)]);
                    QTest::keyClick(line, below(2) == 0 ? Qt::Key_Return : Qt::Key_Escape);
                }
                break;
            case 4:
                if (QAction* const action = actions[below(static_cast<int>(actions.size()))]) {
                    isUndo = action->text().contains("do");
                    action->trigger();
                }
                break;
            case 5:
                jobs[below(static_cast<int>(jobs.size()))]->click();
                break;
            case 6: {
                auto* const tree = window.findChildren<QTreeView*>()[below(2)];
                QModelIndex const top = tree->model()->index(below(tree->model()->rowCount()), 0);
                tree->setCurrentIndex(below(2) == 0 ? top : tree->model()->index(below(20), 0, top));
                if (auto* findings = qobject_cast<QTreeWidget*>(tree); findings && findings->currentItem())
                    emit findings->itemClicked(findings->currentItem(), below(2));
                break;
            }
            case 7:
                write(files[below(2)], constraints);
                break;
            default:
                window.close(), window.show();
        }
        QTest::qWait(below(3));
        if (commands->rowCount() == 0) continue;  // another thread has the document
        if (!isUndo && undo->index() > last) states = states.mid(0, last + 1) << text();
        last = undo->index();
        QCOMPARE(text(), states.value(undo->index()));
    }
}

// Random use writes files, so not as root.
int main(int argc, char** argv) {
    constexpr unsigned nobody = 65534;
    if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) return 1;
    QApplication const app(argc, argv);
    BrowserTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "browser_test.moc"
