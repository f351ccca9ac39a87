#include "tov/design/metered_file_p.h"

namespace kiri::tov::impl_detail {

MeteredFile::MeteredFile(File const& input, ProgressMeter& meter) : meter_(meter) {
    open(input.descriptor(), QIODevice::ReadOnly);
}

qint64 MeteredFile::readData(char* data, qint64 size) {
    if (meter_.stopped()) return -1;
    qint64 const got = QFile::readData(data, size);
    return got > 0 && !meter_.add(static_cast<std::size_t>(got)) ? -1 : got;
}

}  // namespace kiri::tov::impl_detail
