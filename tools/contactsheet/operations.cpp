#include "tools/contactsheet/operations.h"

#include <algorithm>
#include <utility>

#include "imaging/image/grey.h"
#include "imaging/image/raw_pixels.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/geometry/shrink.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/levels/stamp.h"
#include "imaging/operations/levels/stretch.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/operations/masks/mask.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "tools/contactsheet/font.h"
#include "tools/makephantom/phantom.h"

namespace zyr {
namespace {

using Picture = std::unique_ptr<CKIPImage>;
using DeepPicture = std::unique_ptr<CKIPDeepImage>;

constexpr uint32_t kBits = 12;
constexpr uint32_t kWhite = (1u << kBits) - 1;

// A part of the picture. Rows from the top, as the phantom is drawn, to rows from the bottom.
DeepPicture PartOf(const PhantomSettings& settings, uint32_t left, uint32_t top, uint32_t width,
                   uint32_t height) {
  const std::vector<uint16_t> samples = DrawPhantom(settings);
  auto image = std::make_unique<CKIPDeepImage>();
  image->Create(width, height, kBits);
  for (uint32_t y = 0; y < height; ++y) {
    std::copy_n(samples.data() + size_t{top + y} * settings.width + left, width,
                image->GetRow(height - 1 - y));
  }
  return image;
}

DeepPicture Whole(uint32_t width, uint32_t height) {
  PhantomSettings settings;
  settings.micrometresPerPixel *= static_cast<double>(settings.height) / height;
  settings.width = width;
  settings.height = height;
  return PartOf(settings, 0, 0, width, height);
}

DeepPicture Detail() {
  PhantomSettings settings;
  settings.micrometresPerPixel *= 2;
  settings.width /= 2;
  settings.height /= 2;
  return PartOf(settings, 290, 100, kTileWidth, kTileHeight);
}

template <typename Change>
DeepPicture Changed(const CKIPDeepImage& image, Change change) {
  DeepPicture changed = image.Clone();
  for (uint32_t y = 0; y < image.GetHeight(); ++y) {
    for (uint32_t x = 0; x < image.GetWidth(); ++x) {
      uint16_t* pixel = changed->GetPixelPtr(x, y);
      *pixel = static_cast<uint16_t>(change(*pixel));
    }
  }
  return changed;
}

DeepPicture Faint(const CKIPDeepImage& image) {
  return Changed(image, [](uint32_t sample) { return 1100 + sample / 4; });
}

// One pixel in twelve is black or white.
DeepPicture Spotted(const CKIPDeepImage& image) {
  uint32_t random = 1;
  return Changed(image, [&](uint32_t sample) {
    random = random * 1664525 + 1013904223;
    return random >> 24 < 11 ? 0 : random >> 24 > 244 ? kWhite : sample;
  });
}

// Shows the whole depth, whatever part of it is used.
Picture Shown(const CKIPDeepImage& image) {
  DepthMapping mapping;
  mapping.detectDepth = false;
  return ImageFromDeepImage(image, mapping);
}

struct Scene {
  DeepPicture whole = Whole(kTileWidth, kTileHeight);
  DeepPicture small = Whole(108, kTileWidth);  // fits into a tile lying down too
  DeepPicture faint = Faint(*whole);
  DeepPicture detail = Detail();
  DeepPicture spotted = Spotted(*detail);
};

template <typename Work, typename DeepWork>
Entry Both(const char* title, const DeepPicture& before, Work work, DeepWork deepWork) {
  Entry entry{title, {}};
  Picture picture = Shown(*before);
  Picture after = work(picture.get());
  entry.tiles.push_back({"before", std::move(picture)});
  entry.tiles.push_back({"8 bit", std::move(after)});
  entry.tiles.push_back({"deep", Shown(*deepWork(before.get()))});
  return entry;
}

Entry One(const char* title, Picture before, const char* caption, Picture after) {
  Entry entry{title, {}};
  entry.tiles.push_back({"before", std::move(before)});
  entry.tiles.push_back({caption, std::move(after)});
  return entry;
}

using Image = const CKIPImage*;
using Deep = const CKIPDeepImage*;

void ShowLevels(const Scene& scene, std::vector<Entry>* list) {
  list->push_back(Both(
      "Brightness + 15 %, contrast + 30 %", scene.whole,
      [](Image i) { return AdjustBrightnessContrast(i, 15, 30, kKeepNoColor, nullptr); },
      [](Deep d) { return DeepAdjustBrightnessContrast(d, 15, 30, nullptr); }));
  list->push_back(Both(
      "Gamma 0.5", scene.whole,
      [](Image i) { return AdjustGamma(i, 0.5, 0.5, 0.5, kKeepNoColor, nullptr); },
      [](Deep d) { return DeepAdjustGamma(d, 0.5, nullptr); }));
  list->push_back(Both(
      "Gamma 2", scene.whole,
      [](Image i) { return AdjustGamma(i, 2, 2, 2, kKeepNoColor, nullptr); },
      [](Deep d) { return DeepAdjustGamma(d, 2, nullptr); }));
  list->push_back(Both(
      "Invert", scene.whole, [](Image i) { return Invert(i, nullptr); },
      [](Deep d) { return DeepInvert(d, nullptr); }));
  list->push_back(Both(
      "Normalize", scene.faint, [](Image i) { return Normalize(i, nullptr, nullptr); },
      [](Deep d) { return DeepNormalize(d, nullptr); }));
  list->push_back(Both(
      "Equalize", scene.faint, [](Image i) { return Equalize(i, nullptr, nullptr); },
      [](Deep d) { return DeepEqualize(d, nullptr); }));
  list->push_back(Both(
      "Automatic brightness, contrast", scene.faint,
      [](Image i) { return AutoBrightnessContrast(i, 2, 2, nullptr, nullptr); },
      [](Deep d) { return DeepAutoBrightnessContrast(d, 2, 2, nullptr); }));
}

// Black letters on white.
void DrawLetters(const std::string& text, uint32_t scale, CKIPImage* image) {
  constexpr uint32_t kEdge = 4;
  constexpr uint32_t kPitch = kGlyphWidth + 1;
  for (uint32_t y = 0; y < kGlyphHeight * scale; ++y) {
    for (uint32_t x = 0; x < text.size() * kPitch * scale; ++x) {
      const uint32_t column = x / scale;
      const bool dot = column % kPitch < kGlyphWidth &&
                       GlyphDot(text[column / kPitch], column % kPitch, y / scale);
      image->SetBit(kEdge + x, kEdge + y, !dot);
    }
  }
}

void ShowDepths(const Scene& scene, std::vector<Entry>* list) {
  const DeepPicture twelveOf16 = scene.whole->Clone();
  twelveOf16->SetBits(16);
  const DeepPicture stretched = twelveOf16->Clone();
  StretchTo16Bit(stretched->GetPixels(), size_t{kTileWidth} * kTileHeight);
  list->push_back(One("Stretch of 12 bits to 16", Shown(*twelveOf16), "deep", Shown(*stretched)));
  list->push_back(
      One("Depth mapper", Shown(*twelveOf16), "depth found", ImageFromDeepImage(*twelveOf16, {})));

  CKIPImage stamp;
  stamp.Create(55, 22, 1);
  DrawLetters("ZYR", 2, &stamp);
  const DeepPicture stamped = scene.whole->Clone();
  StampInverted(&stamp, stamped.get(), 6, kTileHeight - 24, nullptr);
  list->push_back(One("Stamp", Shown(*scene.whole), "deep", Shown(*stamped)));
}

void ShowMasks(const Scene& scene, std::vector<Entry>* list) {
  CKIPMask smooth;
  smooth.MakeSmooth(5, 90);
  CKIPMask sharpen;
  sharpen.MakeSharpen(3, 50);
  CKIPMask edge;
  edge.MakeEdge(3, 3, 3);
  list->push_back(Both(
      "Smooth 5 x 5, 90 %", scene.detail, [&](Image i) { return ApplyMask(i, smooth, nullptr); },
      [](Deep d) { return DeepSmooth(d, 5, 90, nullptr); }));
  list->push_back(Both(
      "Sharpen 3 x 3, 50 %", scene.detail, [&](Image i) { return ApplyMask(i, sharpen, nullptr); },
      [](Deep d) { return DeepSharpen(d, 3, 50, nullptr); }));
  list->push_back(Both(
      "Edge enhancement 3 x 3, 3", scene.detail,
      [&](Image i) { return EdgeEnhance(i, edge, nullptr); },
      [](Deep d) { return DeepEdgeEnhance(d, 3, 3, nullptr); }));
  for (const uint32_t size : {3u, 5u}) {
    CKIPMask window;
    window.MakeIdentity(size);
    list->push_back(Both(
        size == 3 ? "Median 3 x 3" : "Median 5 x 5", scene.spotted,
        [&](Image i) { return MedianFilter(i, window, nullptr); },
        [&](Deep d) { return DeepMedianFilter(d, size, nullptr); }));
  }
  list->push_back(Both(
      "Fast noise reduction", scene.spotted, [](Image i) { return FastNoiseReduction(i, nullptr); },
      [](Deep d) { return DeepFastNoiseReduction(d, nullptr); }));
  Picture detail = Shown(*scene.detail);
  Picture embossed = Emboss(detail.get(), 135, 45, 0.85, nullptr);
  list->push_back(One("Emboss", std::move(detail), "8 bit", std::move(embossed)));
}

void ShowTurns(const Scene& scene, std::vector<Entry>* list) {
  const auto add = [&](const char* title, Picture (*work)(Image, ProgressCallback),
                       DeepPicture (*deepWork)(Deep, ProgressCallback)) {
    list->push_back(Both(
        title, scene.small, [&](Image i) { return work(i, nullptr); },
        [&](Deep d) { return deepWork(d, nullptr); }));
  };
  add("Flip horizontal", FlipHorizontal, DeepFlipHorizontal);
  add("Flip vertical", FlipVertical, DeepFlipVertical);
  add("Rotate 90", Rotate90, DeepRotate90);
  add("Rotate 180", Rotate180, DeepRotate180);
  add("Rotate 270", Rotate270, DeepRotate270);
  Picture whole = Shown(*scene.whole);
  Picture small = ShrinkToLimit(whole.get(), 80, nullptr);
  list->push_back(One("Shrink to 80", std::move(whole), "24 bit", std::move(small)));
}

}  // namespace

std::vector<Entry> ShowOperations() {
  const Scene scene;
  std::vector<Entry> list;
  ShowLevels(scene, &list);
  ShowDepths(scene, &list);
  ShowMasks(scene, &list);
  ShowTurns(scene, &list);
  return list;
}

}  // namespace zyr
