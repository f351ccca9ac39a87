// How the editor opens and saves files, and what it says when that fails.

#include "editor_window.h"
#include "tov/check.h"

using namespace kiri::tov;

// A dialog that shows how far a load is. A load runs in the window's own thread: each step lets the waiting events in,
// so that Cancel works, while the dialog keeps the user from the window.
struct LoadProgress {
    LoadProgress(QWidget* window, QString const& path) : dialog("Reading " + path, "Cancel", 0, 1000, window) {
        dialog.setWindowModality(Qt::WindowModal);
        dialog.setMinimumDuration(200);
        dialog.setAutoReset(false);
    }

    bool operator()(std::uint64_t read, std::uint64_t size) {
        whole = read == size;
        dialog.setValue(size == 0 ? 0 : static_cast<int>(read * 1000 / size));
        return !dialog.wasCanceled();
    }

    QProgressDialog dialog;
    bool whole = false;  // the file was read to its end
};

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

bool EditorWindow::open(QString const& path) {
    return withMemory([this, &path] { return path.endsWith(".xml") ? openDesign(path) : openDocument(path); });
}

// A load replaces what a document holds, so it goes to a new one, which comes into the window when it is read.
bool EditorWindow::openDocument(QString const& path) {
    if (!mayDiscard()) return false;
    QFile file(path);
    if (!file.open(QFile::ReadOnly)) return refuse(QString("%1 cannot be opened: %2").arg(path, file.errorString()));
    QByteArray const name = QFile::encodeName(path);
    LoadProgress progress(this, path);
    auto document = std::make_unique<TOV>();
    QString problem;
    try {
        if (!document->load(name.constData(), std::ref(progress))) return false;  // canceled
        if (!progress.whole) problem = "the file cannot be read further";
    } catch (std::out_of_range const&) {
        std::vector<TovFinding> findings;
        checkTovFile(name.constData(), findings);
        TovFinding const end = findings.empty() ? TovFinding{} : findings.back();
        problem = QString("no load gets beyond line %1, %2").arg(end.line).arg(toText(end.text));
    }
    setDocument(std::move(document), problem.isEmpty() ? path : QString());
    if (problem.isEmpty()) return true;
    return refuse(
        QString("Only the beginning of %1 is here: %2. The document has no file name, so that saving it does not "
                "shorten that file.")
            .arg(path, problem));
}

bool EditorWindow::openDesign(QString const& path) {
    LoadProgress progress(this, path);
    auto design = std::make_unique<TovDesign>();
    std::string error;
    bool const loaded = design->load(QFile::encodeName(path).constData(), std::ref(progress), &error);
    if (progress.dialog.wasCanceled()) return false;
    if (loaded) {
        names_ = std::make_unique<DesignNames>(*design);
        takeClocks();
        design_ = std::move(design);
        showObjects_();
        table_->viewport()->update();
    }
    if (error.empty()) return true;
    return refuse(
        QString("%1 cannot be read%2: %3").arg(path, loaded ? " to its end" : "", QString::fromStdString(error)));
}

// The clocks that the document defines are names, too.
void EditorWindow::takeClocks() {
    if (!names_) return;
    names_->forgetClocks();
    for (TOVCMD_TYPE type : {TOVCMD_CLOCK, TOVCMD_GENCLOCK}) {
        for (TovCmd const* cmd : *document_->getTovCmdList(type)) names_->addClockOf(*cmd);
    }
}

void EditorWindow::setDocument(std::unique_ptr<TOV> document, QString const& path) {
    auto const listOf = [](TOV& in, int kind) {
        return in.getTovCmdList(static_cast<TOVCMD_TYPE>(kind + TOVCMD_CLOCK));
    };
    for (int kind = 0; kind < kindCount; ++kind) models_[kind].reserve(listOf(*document, kind)->size());
    undo_.clear();
    document_.swap(document);
    for (int kind = 0; kind < kindCount; ++kind) {
        models_[kind].show(*listOf(*document_, kind));
        noteChange(kind, 0);
    }
    path_ = path;
    setWindowFilePath(path.isEmpty() ? "untitled" : path);
    showRow(kind_, 0);
}

bool EditorWindow::save(QString path) {
    if (path.isEmpty()) path = QFileDialog::getSaveFileName(this, "Save constraints", path_);
    return !path.isEmpty() && withMemory([this, &path] {
        std::string error;
        if (!document_->saveAtomically(QFile::encodeName(path).constData(), &error))
            return refuse("The document was not saved: " + QString::fromStdString(error));
        path_ = path;
        setWindowFilePath(path);
        undo_.setClean();
        return true;
    });
}

// Whether the document may go: it is as its file is, or the user saves it or gives it up.
bool EditorWindow::mayDiscard() {
    if (!takeTyped()) return false;
    if (undo_.isClean()) return true;
    QMessageBox::StandardButton const answer = ask("The document has changes that are not saved. Save them?");
    return answer == QMessageBox::Save ? save(path_) : answer == QMessageBox::Discard;
}

void EditorWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(mayDiscard());
}
