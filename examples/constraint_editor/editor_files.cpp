// How the editor opens and saves files, and what it says when that fails.

#include <sys/stat.h>

#include <array>
#include <fstream>
#include <future>

#include "editor_window.h"

using namespace kiri::tov;

namespace {

enum class Content { constraints, dump, notText };

// What a file holds, by its first character, and by whether it has NUL bytes. A pipe can be read only once.
Content contentOf(std::string const& path) {
    if (!QFileInfo(QString::fromStdString(path)).isFile()) return Content::constraints;
    std::ifstream file(path, std::ios::binary);
    std::array<char, 65536> block = {};
    bool isFirst = true;
    bool hasNul = false;
    while (file.read(block.data(), block.size()), file.gcount() > 0) {
        std::string_view text(block.data(), static_cast<std::size_t>(file.gcount()));
        hasNul = hasNul || text.find('\0') != std::string_view::npos;
        if (!isFirst) continue;
        bool isWide = false;
        for (std::string_view const mark : {"\xef\xbb\xbf", "\xff\xfe", "\xfe\xff"}) {
            if (text.substr(0, mark.size()) != mark) continue;
            text.remove_prefix(mark.size());
            isWide = mark.size() == 2;
        }
        std::size_t const first = text.find_first_not_of(std::string_view(" \t\n\r\v\f\0", isWide ? 7 : 6));
        if (first != std::string_view::npos && text[first] == '<') return Content::dump;
        isFirst = first == std::string_view::npos;
    }
    return hasNul ? Content::notText : Content::constraints;
}

std::string fileName(QString const& path) {
    return QFile::encodeName(path).toStdString();
}

}  // namespace

bool EditorWindow::refuse(QString const& sentence) const {
    tell(sentence);
    return false;
}

bool EditorWindow::withMemory(std::function<bool()> const& run) {
    try {
        return run();
    } catch (std::bad_alloc const&) {
        return refuse("There is not enough memory for this.");
    }
}

// A job runs in a thread of its own. If it lasts, a dialog shows how far it is, keeps the user from the window, and
// accepts a cancel, which stops the job at its next step. Returns false if the user cancelled.
bool EditorWindow::runJob(QString const& label, std::function<void(TovProgress const&)> const& job) {
    QScopedValueRollback<bool> const busy(isBusy_, true);
    std::atomic<int> permille = 0;
    std::atomic<bool> isCancelled = false;
    TovProgress const progress = [&](std::uint64_t read, std::uint64_t size) {
        permille = size == 0 ? 0 : static_cast<int>(read * 1000 / size);
        return !isCancelled;
    };
    std::future<void> done = std::async(std::launch::async, [&] { job(progress); });
    if (done.wait_for(std::chrono::milliseconds(200)) != std::future_status::ready) {
        QProgressDialog dialog(label, "Cancel", 0, 1000, this);
        dialog.setWindowModality(Qt::WindowModal);
        dialog.setAutoReset(false);
        dialog.setMinimumDuration(0);
        dialog.show();
        while (done.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
            if (!dialog.wasCanceled()) dialog.setValue(permille);
            QCoreApplication::processEvents();
            if (dialog.wasCanceled()) isCancelled = true;
        }
    }
    done.get();
    return !isCancelled;
}

bool EditorWindow::open(QString const& path) {
    if (isBusy_) return false;
    takeTyped();
    return withMemory([this, &path] {
        Content content = Content::constraints;
        if (!runJob("Reading " + path, [&](TovProgress const&) { content = contentOf(fileName(path)); })) return false;
        if (content == Content::dump) return openDesign(path);
        if (content == Content::notText)
            return refuse(path + " is no constraint file: it has NUL bytes, as programs and UTF-16 texts have.");
        return mayDiscard() && openDocument(path);
    });
}

// What is open stays until the new document is whole.
bool EditorWindow::openDocument(QString const& path) {
    std::unique_ptr<Document> document;
    std::string error;
    Identity const identity = identityOf(path);
    bool const isWhole = runJob("Reading " + path, [&](TovProgress const& progress) {
        auto tov = std::make_unique<TOV>();
        if (!tov->read(fileName(path).c_str(), progress, &error)) return;
        document = std::make_unique<Document>(std::move(tov), names());
    });
    if (!isWhole) return false;
    if (!document) return refuse(QString("%1 cannot be opened: %2").arg(path, QString::fromStdString(error)));
    setDocument(std::move(document), path);
    identity_ = identity;
    return true;
}

// What is open stays until the new dump and the index of its names are whole.
bool EditorWindow::openDesign(QString const& path) {
    auto design = std::make_shared<Design>();
    design->path = path;
    std::string error;
    Document::Join join;
    bool isLoaded = false;
    bool const isWhole = runJob("Reading " + path, [&](TovProgress const& progress) {
        isLoaded = design->nodes.load(fileName(path).c_str(), progress, &error);
        if (!isLoaded) return;
        design->names = std::make_unique<TovDesignNames>(design->nodes, progress);
        if (design->names->complete()) join = document_->join(*design->names);
    });
    if (!isWhole) return false;
    if (!isLoaded) return refuse(QString("%1 cannot be read: %2").arg(path, QString::fromStdString(error)));
    document_->setNames(std::move(join));
    dump_ = std::move(design);
    design_->show(dump_, [this](QString const& label, auto const& job) {
        return withMemory([&] { return runJob(label, job); });
    });
    findings_->start(path_, dump_);
    setPath(path_);
    remarksAt_ = {};
    work_.start();
    if (error.empty()) return true;
    return refuse(QString("%1 cannot be read to its end: %2").arg(path, QString::fromStdString(error)));
}

void EditorWindow::setDocument(std::unique_ptr<Document> document, QString const& path) {
    takeTyped();
    int const kind = std::max(0, kinds_->currentRow());
    model_.show(nullptr, kind);
    undo_.clear();
    document_ = std::move(document);
    remarksAt_ = {};
    restartCount();
    lossAccepted_ = path.isEmpty();
    identity_ = identityOf(path);
    setPath(path);
    findings_->start(path, dump_);
    kinds_->setCurrentRow(kind);
    showKind(kind);
    design_->commandsChanged();
    showCounts();
}

void EditorWindow::setPath(QString const& path) {
    path_ = path;
    QString const name = path.isEmpty() ? "untitled" : QFileInfo(path).fileName();
    QString const dump = dump_ ? QFileInfo(dump_->path).fileName() + " - " : QString();
    setWindowTitle(QString("%1[*] - %2Constraint editor").arg(name, dump));
    if (path.isEmpty()) return;
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, "toveng", "constraint_editor");
    QStringList recent = settings.value("recent").toStringList();
    for (QString const& file : {dump_ ? dump_->path : QString(), path}) {
        if (file.isEmpty()) continue;
        recent.removeAll(QFileInfo(file).absoluteFilePath());
        recent.prepend(QFileInfo(file).absoluteFilePath());
    }
    settings.setValue("recent", QStringList(recent.mid(0, 10)));
}

// All zero for what does not exist.
EditorWindow::Identity EditorWindow::identityOf(QString const& path) {
    struct stat info {};
    if (path.isEmpty() || ::stat(fileName(path).c_str(), &info) != 0) return {};
    return {static_cast<quint64>(info.st_dev), static_cast<quint64>(info.st_ino), static_cast<quint64>(info.st_size),
            static_cast<quint64>(info.st_mtim.tv_sec), static_cast<quint64>(info.st_mtim.tv_nsec)};
}

bool EditorWindow::noticeOtherProgram(QString const& keep) {
    Identity const now = identityOf(path_);
    Identity const missing = {};
    if (isBusy_ || path_.isEmpty() || now == identity_ || now == missing) return true;
    isBusy_ = true;
    QString const changes = undo_.isClean() ? "" : " A reload gives up the changes that are not saved.";
    int const answer = ask(path_ + " was changed by another program." + changes, {}, {"Reload", keep, "Cancel"});
    isBusy_ = false;
    if (answer == 1) identity_ = now;
    if (answer == 0) withMemory([this] { return openDocument(path_); });
    return answer == 1;
}

// Returns whether the first save may lose what the findings name. Waits for them.
bool EditorWindow::mayLose() {
    if (lossAccepted_) return true;
    bool const isKnown = runJob("Looking for what a save would lose",
                                [this](TovProgress const& progress) { findings_->wait(progress); });
    if (!isKnown) return false;
    findings_->collect();
    return acceptLoss("A save does not keep all that is in the file. Save it?", findings_->findings());
}

bool EditorWindow::acceptLoss(QString const& question, std::vector<TovFinding> const& findings) {
    constexpr int most = 1000;  // lines of a text that nobody reads to its end
    QStringList list;
    int losses = 0;
    for (TovFinding const& finding : findings) {
        if (!isLoss(finding) || ++losses > most) continue;
        list << QString("Line %1: %2").arg(finding.line).arg(sentenceOf(finding));
    }
    if (losses == 0) return true;
    if (losses > most) list << QString("and %1 more").arg(losses - most);
    return ask(question, list.join('\n'), {"Yes", "Cancel"}) == 0;
}

bool EditorWindow::save(QString path) {
    if (isBusy_) return false;
    takeTyped();
    if (path.isEmpty()) path = askForFile(true);
    if (path.isEmpty()) return false;
    auto const draft = document_->search({0, 0}, false, [this](Document::Place at) { return document_->isDraft(at); });
    if (draft) {
        showPlace(*draft);
        return refuse("What is typed in this line is no command: " +
                      document_->remarkOn(document_->text(*draft), draft->kind));
    }
    if (path == path_ && !noticeOtherProgram("Overwrite")) return false;
    return withMemory([this, &path] {
        if (!mayLose()) return false;
        std::string error;
        if (!document_->save(fileName(path), error))
            return refuse("The document was not saved: " + QString::fromStdString(error));
        lossAccepted_ = true;
        identity_ = identityOf(path);
        setPath(path);
        undo_.setClean();
        findings_->start(path, dump_);
        return true;
    });
}

// Returns whether the document may be closed: it is as its file is, or the user saves or discards it.
bool EditorWindow::mayDiscard() {
    takeTyped();
    if (undo_.isClean()) return true;
    int const answer =
        ask("The document has changes that are not saved. Save them?", {}, {"Save", "Discard", "Cancel"});
    return answer == 0 ? save(path_) : answer == 1;
}

void EditorWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(!isBusy_ && mayDiscard());
}

bool EditorWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        QTimer::singleShot(0, this, [this] {
            if (isActiveWindow()) noticeOtherProgram("Keep mine");
        });
    }
    return QMainWindow::event(event);
}
