#include "imaging/operations/geometry/flip_pixels.h"

#include "foundation/support/cpu.h"

namespace zyr {

namespace flip_base {
void ReverseRow8(const uint8_t* source, uint8_t* target, size_t width);
void ReverseRow16(const uint8_t* source, uint8_t* target, size_t width);
void ReverseRow24(const uint8_t* source, uint8_t* target, size_t width);
}  // namespace flip_base

namespace flip_avx2 {
void ReverseRow8(const uint8_t* source, uint8_t* target, size_t width);
void ReverseRow16(const uint8_t* source, uint8_t* target, size_t width);
void ReverseRow24(const uint8_t* source, uint8_t* target, size_t width);
}  // namespace flip_avx2

void ReversePixels(const uint8_t* source, uint8_t* target, size_t width, size_t pixelBytes) {
  const bool avx2 = HasAvx2();
  if (pixelBytes == 1) {
    (avx2 ? flip_avx2::ReverseRow8 : flip_base::ReverseRow8)(source, target, width);
  } else if (pixelBytes == 2) {
    (avx2 ? flip_avx2::ReverseRow16 : flip_base::ReverseRow16)(source, target, width);
  } else {
    (avx2 ? flip_avx2::ReverseRow24 : flip_base::ReverseRow24)(source, target, width);
  }
}

}  // namespace zyr
