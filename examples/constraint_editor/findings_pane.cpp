#include "findings_pane.h"

#include "document.h"
#include "tov/names/name_check.h"
#include "widgets.h"

using namespace kiri::tov;

class FindingsPane::Model : public QAbstractTableModel {
public:
    enum Column { line, code, words, columns };
    explicit Model(std::vector<TovFinding>& findings) : findings_(findings) {}

    void replace(std::vector<TovFinding> findings) {
        beginResetModel();
        findings_.swap(findings);
        endResetModel();
    }

    int rowCount(QModelIndex const& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(findings_.size());
    }
    int columnCount(QModelIndex const&) const override { return columns; }

    QVariant data(QModelIndex const& index, int role) const override {
        if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
        TovFinding const& finding = findings_[static_cast<std::size_t>(index.row())];
        if (index.column() == line) return static_cast<qulonglong>(finding.line);
        return index.column() == code ? QString(findingCode(finding.kind)) : toText(finding.text);
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
        return QStringList{"Line of the file", "Finding", "Words"}.value(section);
    }

private:
    std::vector<TovFinding>& findings_;
};

FindingsPane::FindingsPane() : model_(std::make_unique<Model>(findings_)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(title_);
    layout->addWidget(list_);
    setNames(list_, "findings", "Findings in the file");
    showAsTable(list_, *model_);
    list_->setTabKeyNavigation(false);
    list_->header()->resizeSection(Model::line, 110);
    list_->header()->resizeSection(Model::code, 160);
    connect(list_, &QTreeView::activated, this,
            [this](QModelIndex const& index) { chosen(findings_[static_cast<std::size_t>(index.row())].line); });
    tell("none");
}

FindingsPane::~FindingsPane() {
    stop();
}

void FindingsPane::stop() {
    stopped_ = true;
    running_ = {};  // waits for the thread
    stopped_ = false;
}

void FindingsPane::tell(QString const& what) {
    title_->setText("Findings: " + what);
}

void FindingsPane::start(QString const& path, std::shared_ptr<Design const> design) {
    stop();
    model_->replace({});
    path_ = path;
    if (changed) changed();
    if (path.isEmpty() || !QFileInfo(path).isFile()) return tell("none");
    tell("looking for them...");
    auto const look = [this, run = ++run_, file = QFile::encodeName(path), design = std::move(design)] {
        Result result;
        TovCheckOptions options;
        if (design) options.names = design->names.get();
        int shown = 0;
        options.progress = [this, run, shown](std::uint64_t read, std::uint64_t size) mutable {
            int const percent = size == 0 ? 0 : static_cast<int>(read * 100 / size);
            if (percent >= shown + 5) {
                shown = percent;
                QMetaObject::invokeMethod(this, [this, run, percent] {
                    if (run == run_ && isRunning()) tell(QString("looking for them... %1 %").arg(percent));
                });
            }
            return !stopped_;
        };
        checkTovFile(file.constData(), options, result.findings, &result.error);
        QMetaObject::invokeMethod(this, [this, run] {
            if (run == run_) collect();
        });
        return result;
    };
    running_ = std::async(std::launch::async, look);
}

bool FindingsPane::wait(TovProgress const& progress) const {
    while (running_.valid() && running_.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready) {
        if (!progress(0, 0)) return false;
    }
    return true;
}

void FindingsPane::collect() {
    if (!running_.valid()) return;
    Result result;
    try {
        result = running_.get();
    } catch (std::bad_alloc const&) {
        result.error = "There is not enough memory";
    }
    model_->replace(std::move(result.findings));
    QString const name = QFileInfo(path_).fileName();
    QString const count = QString("%1 in %2").arg(findings_.size()).arg(name);
    tell(result.error.empty() ? count : count + "; " + QString::fromStdString(result.error));
    if (changed) changed();
}
