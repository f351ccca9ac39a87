#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "serve/name_list.h"
#include "tov/design/design.h"
#include "tov/names/design_names.h"

namespace tool::lsp {

/// A design that no longer changes.
class Design {
public:
    /// Loads a dump. Throws Trouble with the reason if it cannot be read completely, or if `progress` stops it.
    Design(std::string const& path, kiri::tov::TovProgress const& progress);

    kiri::tov::TovDesignNames const& names() const { return *names_; }
    /// Returns the names of the objects of a type, in the form for constraints, in UTF-8.
    NameList const& list(taDciObjTyp type) const;

private:
    kiri::tov::TovDesign design_;
    std::unique_ptr<kiri::tov::TovDesignNames const> names_;
    std::vector<std::pair<taDciObjTyp, NameList>> lists_;
};

using DesignPtr = std::shared_ptr<Design const>;

/// A report of the loader about the dump requested with that number.
struct DesignEvent {
    int number;
    int percent;        ///< below 100 while it is being read
    DesignPtr design;   ///< at 100; null if it cannot be read
    std::string error;  ///< the reason, if `design` is null
};

/// Loads dumps in a separate thread, and frees them there.
class DesignLoader {
public:
    /// `report` is called in the loader's thread.
    explicit DesignLoader(std::function<void(DesignEvent event)> report);
    ~DesignLoader();
    DesignLoader(DesignLoader const&) = delete;
    DesignLoader& operator=(DesignLoader const&) = delete;

    /// Loads a dump and cancels a load in progress. Nothing more is reported about earlier numbers, except for events
    /// already on their way to the caller.
    void load(int number, std::string path);
    /// Cancels the load in progress.
    void stop();
    /// Frees a design, unless others still use it.
    void dispose(DesignPtr design);

private:
    struct Job {
        int number;
        std::string path;
    };

    void run();
    void load(Job const& job);

    std::function<void(DesignEvent event)> report_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::optional<Job> job_;  // the next one
    std::vector<DesignPtr> disposed_;
    bool ends_ = false;
    std::atomic<int> current_{0};  // the requested number; a load with another number stops
    std::thread thread_;
};

}  // namespace tool::lsp
