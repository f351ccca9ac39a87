#pragma once

#include <stdexcept>

#include "platform/export.h"

namespace kiri::tov {

/// Thrown where a line ends in an option that requires a value: "-waveform" of "create_clock". No other option does.
class TOVENG_API TovMissingValue : public std::out_of_range {
public:
    TovMissingValue();
    TovMissingValue(TovMissingValue const&) = default;
    TovMissingValue& operator=(TovMissingValue const&) = default;
    ~TovMissingValue() override;
};

}  // namespace kiri::tov
