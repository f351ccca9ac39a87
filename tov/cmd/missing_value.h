#pragma once

#include <stdexcept>

#include "platform/export.h"

namespace kiri::tov {

/// Thrown if a line ends in an option that requires a value. The only such option is "-waveform" of "create_clock".
class TOVENG_API TovMissingValue : public std::out_of_range {
public:
    TovMissingValue();
    TovMissingValue(TovMissingValue const&) = default;
    TovMissingValue& operator=(TovMissingValue const&) = default;
    ~TovMissingValue() override;
};

}  // namespace kiri::tov
