#include "serve/design_loader.h"

#include <exception>
#include <new>
#include <utility>

#include "input.h"
#include "text.h"

using namespace kiri::tov;

namespace tool::lsp {

namespace {

// Reading the dump takes most of the time.
constexpr int percentRead = 60;
constexpr int percentIndexed = 90;

constexpr taDciObjTyp listed[] = {taDciObjPort, taDciObjPin, taDciObjNet, taDciObjCell, taDciObjClock};

NameList namesOf(TovDesignNames const& names, taDciObjTyp type) {
    NameList list;
    std::vector<TovNode const*> nodes;
    names.find(type, "*", nodes, TOVMATCH_FLAT);
    for (TovNode const* node : nodes) list.add(toText(names.nameOf(*node)).toStdString());
    list.sort();
    return list;
}

// Reports the progress of one part as progress of the whole.
TovProgress part(TovProgress const& progress, std::uint64_t from, std::uint64_t to) {
    return [&progress, from, to](std::uint64_t done, std::uint64_t size) {
        return progress(from + (size == 0 ? 0 : done * (to - from) / size), 100);
    };
}

}  // namespace

Design::Design(std::string const& path, TovProgress const& progress) {
    Input const input(path, Content::dump);
    std::string error;
    if (!design_.load(input.path(), part(progress, 0, percentRead), &error) || !error.empty()) {
        throw Trouble(path + ": " + error);
    }
    names_ = std::make_unique<TovDesignNames const>(design_, part(progress, percentRead, percentIndexed));
    if (!names_->complete()) throw Trouble("stopped");
    for (taDciObjTyp type : listed) {
        if (!progress(percentIndexed, 100)) throw Trouble("stopped");
        lists_.emplace_back(type, namesOf(*names_, type));
    }
}

NameList const& Design::list(taDciObjTyp type) const {
    static NameList const none;
    for (auto const& [known, list] : lists_) {
        if (known == type) return list;
    }
    return none;
}

DesignLoader::DesignLoader(std::function<void(DesignEvent event)> report)
    : report_(std::move(report)), thread_([this] { run(); }) {}

DesignLoader::~DesignLoader() {
    stop();
    {
        std::lock_guard const lock(mutex_);
        ends_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void DesignLoader::load(int number, std::string path) {
    current_ = number;
    {
        std::lock_guard const lock(mutex_);
        job_ = Job{number, std::move(path)};
    }
    wake_.notify_one();
}

void DesignLoader::stop() {
    current_ = 0;
    std::lock_guard const lock(mutex_);
    job_.reset();
}

void DesignLoader::dispose(DesignPtr design) {
    if (design == nullptr) return;
    {
        std::lock_guard const lock(mutex_);
        disposed_.push_back(std::move(design));
    }
    wake_.notify_one();
}

void DesignLoader::run() {
    for (;;) {
        std::vector<DesignPtr> disposed;
        std::optional<Job> job;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return ends_ || job_ || !disposed_.empty(); });
            if (ends_) return;
            job.swap(job_);
            disposed.swap(disposed_);
        }
        disposed.clear();
        if (job) load(*job);
    }
}

void DesignLoader::load(Job const& job) {
    int reported = -1;
    auto const progress = [&](std::uint64_t percent, std::uint64_t) {
        if (current_ != job.number) return false;
        if (static_cast<int>(percent) > reported) {
            reported = static_cast<int>(percent);
            report_({job.number, reported, nullptr, {}});
        }
        return true;
    };
    DesignEvent event{job.number, 100, nullptr, {}};
    try {
        event.design = std::make_shared<Design const>(job.path, progress);
    } catch (std::bad_alloc const&) {
        event.error = "out of memory";
    } catch (std::exception const& error) {
        event.error = error.what();
    }
    if (current_ == job.number) report_(std::move(event));
}

}  // namespace tool::lsp
