#include "tov/cmd/missing_value.h"

namespace kiri::tov {

// Programs rely on this text.
TovMissingValue::TovMissingValue() : std::out_of_range("vector::_M_range_check") {}

TovMissingValue::~TovMissingValue() = default;

}  // namespace kiri::tov
