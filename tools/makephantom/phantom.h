// A dental radiograph drawn from a model: lower teeth in their bone, the film behind them.
#pragma once

#include <cstdint>
#include <vector>

namespace zyr {

struct PhantomSettings {
  uint32_t width = 1156;  // pixels
  uint32_t height = 1600;
  double micrometresPerPixel = 22.5;
  uint64_t seed = 1;  // teeth, their state and the noise
};

// The picture from its top row down, `width` x `height` samples of 12 bits. As in a film that is
// looked at against the light, what stops the rays is bright: 0 is black. The view is 26 x 36 mm in
// the middle of the picture. The same settings give the same samples on every machine.
std::vector<uint16_t> DrawPhantom(const PhantomSettings& settings);

}  // namespace zyr
