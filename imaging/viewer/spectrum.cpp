// The colours of the spectrums. A spectrum is a path of hues; the perceived brightness (the
// lightness of CIE 1976) always rises evenly from black to white, so that what was visible in grey
// stays visible, and hue comes on top of it.
#include <cmath>
#include <cstddef>
#include <vector>

#include "foundation/math/portable_math.h"
#include "imaging/viewer/spot_tools.h"

namespace zyr {
namespace {

// Amounts of light, 0 to 1: not the encoded values of a pixel.
struct Light {
  double red;
  double green;
  double blue;

  double Luminance() const { return 0.2126 * red + 0.7152 * green + 0.0722 * blue; }
};

using Hues = std::vector<Light>;  // evenly spaced from dark to bright

Light Mix(const Light& a, const Light& b, double part) {
  return {a.red + (b.red - a.red) * part, a.green + (b.green - a.green) * part,
          a.blue + (b.blue - a.blue) * part};
}

double LuminanceOfLightness(double lightness) {
  const double root = (lightness + 16) / 116;
  return lightness > 8 ? root * root * root : lightness / 903.3;
}

// The hue darkened, or mixed with white, to the luminance.
Light AtLuminance(const Light& hue, double luminance) {
  const double own = hue.Luminance();
  if (luminance <= own) return Mix({0, 0, 0}, hue, luminance / own);
  return Mix(hue, {1, 1, 1}, (luminance - own) / (1 - own));
}

uint32_t Encode(double light) {
  const double encoded =
      light <= 0.0031308 ? 12.92 * light : 1.055 * math::Pow(light, 1 / 2.4) - 0.055;
  return static_cast<uint32_t>(encoded * 255 + 0.5);
}

std::array<uint32_t, 256> MakeColors(const Hues& hues) {
  std::array<uint32_t, 256> colors;
  for (size_t i = 0; i < colors.size(); ++i) {
    const double part = static_cast<double>(i) / 255;
    const double place = part * static_cast<double>(hues.size() - 1);
    const size_t at = i == 255 ? hues.size() - 2 : static_cast<size_t>(place);
    const Light hue = Mix(hues[at], hues[at + 1], place - static_cast<double>(at));
    const Light light = AtLuminance(hue, LuminanceOfLightness(part * 100));
    colors[i] = Encode(light.red) << 16 | Encode(light.green) << 8 | Encode(light.blue);
  }
  return colors;
}

Hues HuesOf(Spectrum spectrum) {
  const Light red{1, 0, 0};
  const Light orange{1, 0.3, 0};
  const Light yellow{1, 0.9, 0};
  const Light green{0, 1, 0};
  const Light cyan{0, 0.9, 1};
  const Light azure{0, 0.25, 1};
  const Light blue{0.02, 0.03, 1};
  const Light violet{0.35, 0, 1};
  const Light white{1, 1, 1};
  switch (spectrum) {
    case Spectrum::kFire:
      return {red, red, orange, yellow, white};
    case Spectrum::kIce:
      return {blue, blue, azure, cyan, white};
    case Spectrum::kRedGreenBlue:
      return {red, green, blue};
    case Spectrum::kGreenRedBlue:
      return {green, red, blue};
    case Spectrum::kStandard:
      break;
  }
  return {violet, blue, cyan, green, yellow, orange};
}

}  // namespace

const std::array<uint32_t, 256>& SpectrumColors(Spectrum spectrum) {
  static const std::array<std::array<uint32_t, 256>, 5> all = {
      MakeColors(HuesOf(Spectrum::kStandard)), MakeColors(HuesOf(Spectrum::kFire)),
      MakeColors(HuesOf(Spectrum::kIce)), MakeColors(HuesOf(Spectrum::kRedGreenBlue)),
      MakeColors(HuesOf(Spectrum::kGreenRedBlue))};
  const auto index = static_cast<size_t>(spectrum) - static_cast<size_t>(Spectrum::kStandard);
  return all[index < all.size() ? index : 0];
}

}  // namespace zyr
