// What the rest of the source reads and sets of the negotiated values.
#include "foundation/log/log.h"
#include "twain/source.h"

namespace zyr {
namespace {

constexpr uint16_t kFallbackDepth = 8;

// Lines of the log.
struct GrayscaleTexts {
  const char* noGrayscale;
  const char* depthUnsupported;
  const char* done;
};

constexpr GrayscaleTexts k8BitTexts = {
    "Set8BitGrayscaleCapture: GRAYSCALE is not a valid pixel type.",
    "Set8BitGrayscaleCapture: 8-bit grayscale is not a supported bit depth.",
    "Set8BitGrayscaleCapture: Grayscale set to 8-bit."};

// The second line has always named the other function.
constexpr GrayscaleTexts k16BitTexts = {
    "Set16BitGrayscaleCapture: GRAYSCALE is not a valid pixel type.",
    "Set8BitGrayscaleCapture: 16-bit grayscale is not a supported bit depth.",
    "Set16BitGrayscaleCapture: Grayscale set to 16-bit."};

bool SetGrayscaleCapture(const CapabilityStore& capabilities, uint16_t depth,
                         const GrayscaleTexts& texts) {
  auto* depths = capabilities.FindOrLog<BitDepthCapability>(ICAP_BITDEPTH);
  if (depths == nullptr) return false;
  auto* pixelTypes = capabilities.FindOrLog<ListCapability>(ICAP_PIXELTYPE);
  if (pixelTypes == nullptr) return false;
  if (!pixelTypes->IsSupported(TWPT_GRAY)) {
    Log().WriteLine("%s", texts.noGrayscale);
    return false;
  }
  pixelTypes->currentValue = TWPT_GRAY;
  BitDepthEntry* entry = depths->GetCurrentEntry();
  if (entry == nullptr || entry->pixelType != TWPT_GRAY) return false;
  if (!entry->Supports(depth)) {
    Log().WriteLine("%s", texts.depthUnsupported);
    return false;
  }
  entry->currentDepth = depth;
  Log().WriteLine("%s", texts.done);
  return true;
}

uint16_t CurrentListValue(const CapabilityStore& capabilities, TW_UINT16 id, uint16_t fallback) {
  const auto* list = capabilities.FindOrLog<ListCapability>(id);
  return list != nullptr ? list->currentValue : fallback;
}

bool IsGrayscaleOf(const BitDepthEntry* entry, uint16_t depth) {
  return entry != nullptr && entry->pixelType == TWPT_GRAY && entry->currentDepth == depth;
}

}  // namespace

int16_t TwainSource::GetXferCount() const {
  const auto* count = capabilities_.FindOrLog<ValueCapability>(CAP_XFERCOUNT);
  return count != nullptr ? static_cast<int16_t>(count->current) : int16_t{-1};
}

double TwainSource::ConvertFromInches(uint32_t inches, uint32_t pixels) const {
  const auto* units = capabilities_.FindOrLog<UnitsCapability>(ICAP_UNITS);
  return units != nullptr ? units->ConvertFromInches(inches, pixels) : pixels;
}

uint16_t TwainSource::GetPixelFlavor() const {
  const auto* flavor = capabilities_.FindOrLog<ValueCapability>(ICAP_PIXELFLAVOR);
  return flavor != nullptr ? flavor->current : TWPF_CHOCOLATE;
}

uint16_t TwainSource::GetBitsPerPixel(uint16_t pixelType) const {
  auto* depths = capabilities_.FindOrLog<BitDepthCapability>(ICAP_BITDEPTH);
  return depths != nullptr ? depths->GetBitsPerPixel(pixelType) : kFallbackDepth;
}

// Without the capability the depth stands in for the number of samples, and applications know it.
uint16_t TwainSource::GetSamplesPerPixel(uint16_t pixelType) const {
  auto* depths = capabilities_.FindOrLog<BitDepthCapability>(ICAP_BITDEPTH);
  return depths != nullptr ? depths->GetSamplesPerPixel(pixelType) : kFallbackDepth;
}

uint16_t TwainSource::GetPlanarChunky() const {
  return CurrentListValue(capabilities_, ICAP_PLANARCHUNKY, TWPC_CHUNKY);
}

uint16_t TwainSource::GetImageFileFormat() const {
  return CurrentListValue(capabilities_, ICAP_IMAGEFILEFORMAT, TWFF_BMP);
}

BitDepthEntry* TwainSource::GetCurrentBitDepthEntry() const {
  auto* depths = capabilities_.FindOrLog<BitDepthCapability>(ICAP_BITDEPTH);
  return depths != nullptr ? depths->GetCurrentEntry() : nullptr;
}

bool TwainSource::Is8BitGrayscale() const { return IsGrayscaleOf(GetCurrentBitDepthEntry(), 8); }

bool TwainSource::Is16BitGrayscale() const { return IsGrayscaleOf(GetCurrentBitDepthEntry(), 16); }

bool TwainSource::Set8BitGrayscaleCapture() {
  return SetGrayscaleCapture(capabilities_, 8, k8BitTexts);
}

bool TwainSource::Set16BitGrayscaleCapture() {
  return SetGrayscaleCapture(capabilities_, 16, k16BitTexts);
}

}  // namespace zyr
