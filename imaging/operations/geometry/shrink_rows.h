// Sums of weighted rows.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

void SetWeighted(float* sums, const uint8_t* values, float weight, size_t count);
void AddWeighted(float* sums, const uint8_t* values, float weight, size_t count);

}  // namespace zyr
