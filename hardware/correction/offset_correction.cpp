#include "hardware/correction/offset_correction.h"

#include <cstring>

namespace zyr {

uint32_t ReadOutLag(uint32_t sizeCode, bool fullResolution) {
  if (sizeCode > 3) return 0;
  return sizeCode >= 2 && fullResolution ? 6 : 3;
}

void CorrectOffset(SensorImage* image, uint32_t lag) {
  const uint32_t width = image->GetWidth();
  if (lag > width) return;
  for (uint32_t y = 1; y < image->GetHeight(); ++y) {
    uint16_t* const row = image->Row(y);
    std::memcpy(image->Row(y - 1) + (width - lag), row, lag * sizeof(uint16_t));
    std::memmove(row, row + lag, (width - lag) * sizeof(uint16_t));
  }
}

}  // namespace zyr
