#pragma once

#include <QtWidgets>
#include <atomic>
#include <future>
#include <vector>

#include "design.h"
#include "tov/check.h"
#include "tov/progress.h"

/// The findings in the file of the document: what a save would not keep, and names that the design lacks. A thread
/// looks for them, with objects of its own.
class FindingsPane : public QWidget {
public:
    FindingsPane();
    ~FindingsPane() override;

    /// Looks for the findings of a file, with names if there is a design. An empty path has none.
    void start(QString const& path, std::shared_ptr<Design const> design);
    bool isRunning() const { return running_.valid(); }
    /// Waits for the findings; any thread may. False if `progress` stops the waiting.
    bool wait(kiri::tov::TovProgress const& progress) const;
    /// Shows the findings, for which a wait() was made.
    void collect();
    std::vector<kiri::tov::TovFinding> const& findings() const { return findings_; }

    /// Called with the line of a finding that the user chooses, and when there are new findings.
    std::function<void(std::size_t line)> chosen;
    std::function<void()> changed;

private:
    class Model;
    struct Result {
        std::vector<kiri::tov::TovFinding> findings;
        std::string error;
    };

    void stop();
    void tell(QString const& what);

    QString path_;
    std::vector<kiri::tov::TovFinding> findings_;
    std::future<Result> running_;
    int run_ = 0;  // what earlier threads have to say is not heard
    std::atomic<bool> stopped_ = false;
    QLabel* title_ = new QLabel;
    QTreeView* list_ = new QTreeView;
    std::unique_ptr<Model> model_;
};
