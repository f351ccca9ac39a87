#include "tov/design/counted_file.h"

namespace kiri::tov::impl_detail {

CountedFile::CountedFile(InputFile const& input, TovProgress const& progress) : meter_(progress, input.remaining()) {
    open(input.descriptor(), QIODevice::ReadOnly);
}

void CountedFile::finish() {
    stopped_ = stopped_ || !meter_.finish();
}

bool CountedFile::wasStopped() const {
    if (thrown_) std::rethrow_exception(thrown_);
    return stopped_;
}

qint64 CountedFile::readData(char* data, qint64 size) {
    if (stopped_) return -1;
    qint64 const got = QFile::readData(data, size);
    try {
        stopped_ = got > 0 && !meter_.add(static_cast<std::size_t>(got));
    } catch (...) {
        thrown_ = std::current_exception();
        stopped_ = true;
    }
    return stopped_ ? -1 : got;
}

}  // namespace kiri::tov::impl_detail
