#ifndef TOVENG_TOV_DESIGN_DUMP_FILE_H
#define TOVENG_TOV_DESIGN_DUMP_FILE_H

#include <QIODevice>

#include "tov/input_file.h"

namespace kiri::tov::impl_detail {

/// A dump as the XML reader gets it: the bytes of the file, less the attributes beyond the first ten thousand of an
/// element. That reader compares each attribute of an element with all others, so that a hostile element could keep it
/// busy for hours. A file in UTF-16 or UTF-32 passes as it is.
class DumpFile : public QIODevice {
public:
    explicit DumpFile(char const* path);

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(char const*, qint64) override { return -1; }

private:
    enum class State { start, text, opened, declared, skipped, tag, value, wide };

    bool isSurplus(char c);

    InputFile file_;
    State state_ = State::start;
    char last_[2] = {};   // in what is skipped: the two characters before this one
    char mark_ = '\0';    // the quote that ends the value, or the character before the ">" that ends what is skipped
    int attributes_ = 0;  // of the tag at hand
};

}  // namespace kiri::tov::impl_detail

#endif
