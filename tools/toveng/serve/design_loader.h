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

/// A design that nothing changes any more.
class Design {
public:
    /// Loads a dump. Throws Trouble with the reason if it cannot be read whole, or if `progress` stops it.
    Design(std::string const& path, kiri::tov::TovProgress const& progress);

    kiri::tov::TovDesignNames const& names() const { return *names_; }
    /// The names of the objects of a type, in the form in which a constraint may hold them, in UTF-8.
    NameList const& list(taDciObjTyp type) const;

private:
    kiri::tov::TovDesign design_;
    std::unique_ptr<kiri::tov::TovDesignNames const> names_;
    std::vector<std::pair<taDciObjTyp, NameList>> lists_;
};

using DesignPtr = std::shared_ptr<Design const>;

/// What the loader reports of the dump that was asked for with that number.
struct DesignEvent {
    int number;
    int percent;        ///< below 100 while it is being read
    DesignPtr design;   ///< at 100; null if it cannot be read
    std::string error;  ///< then says why not
};

/// Loads dumps in a thread of its own, and frees them there.
class DesignLoader {
public:
    /// `report` is called in the loader's thread.
    explicit DesignLoader(std::function<void(DesignEvent event)> report);
    ~DesignLoader();
    DesignLoader(DesignLoader const&) = delete;
    DesignLoader& operator=(DesignLoader const&) = delete;

    /// Loads a dump. One that is being loaded is given up. Nothing more is reported of earlier numbers, except what is
    /// under way to the caller.
    void load(int number, std::string path);
    /// Gives up what is being loaded.
    void stop();
    /// Frees a design, unless others still have it.
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
    std::atomic<int> current_{0};  // the number that is wanted; a load with another one stops
    std::thread thread_;
};

}  // namespace tool::lsp
