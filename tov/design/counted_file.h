#pragma once

#include <QFile>

#include "tov/io/file.h"
#include "tov/io/progress_meter.h"

namespace kiri::tov::impl_detail {

/// An open file as Qt reads it, counted meanwhile. It ends where the caller stops the reading.
class CountedFile : public QFile {
public:
    /// `input` and `meter` outlive the object.
    CountedFile(File const& input, ProgressMeter& meter);

protected:
    qint64 readData(char* data, qint64 size) override;

private:
    ProgressMeter& meter_;
};

}  // namespace kiri::tov::impl_detail
