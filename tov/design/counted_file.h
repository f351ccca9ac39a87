#ifndef TOVENG_TOV_DESIGN_COUNTED_FILE_H
#define TOVENG_TOV_DESIGN_COUNTED_FILE_H

#include <QFile>
#include <exception>

#include "tov/input_file.h"
#include "tov/progress_meter.h"

namespace kiri::tov::impl_detail {

/// An open file as Qt reads it, counted meanwhile. What the caller's function throws does not pass through Qt: it is
/// kept, and the file ends there, as it does when that function returns false.
class CountedFile : public QFile {
public:
    /// `input` and `progress` outlive the object.
    CountedFile(InputFile const& input, TovProgress const& progress);

    /// Tells that the file was read whole.
    void finish();

    /// Whether the caller stopped the reading; throws what the caller threw.
    bool wasStopped() const;

protected:
    qint64 readData(char* data, qint64 size) override;

private:
    ProgressMeter meter_;
    std::exception_ptr thrown_;
    bool stopped_ = false;
};

}  // namespace kiri::tov::impl_detail

#endif
