#pragma once

#include <QFile>

#include "tov/io/file_p.h"
#include "tov/io/progress_meter_p.h"

namespace kiri::tov::impl_detail {

/// A QFile that reports its reads to a meter. If the caller stops the load, the file ends there.
class MeteredFile : public QFile {
public:
    /// `input` and `meter` outlive the object.
    MeteredFile(File const& input, ProgressMeter& meter);

protected:
    qint64 readData(char* data, qint64 size) override;

private:
    ProgressMeter& meter_;
};

}  // namespace kiri::tov::impl_detail
