// Wherever memory runs out, operations give null and let no exception through.
#include <functional>
#include <new>

#include "imaging/image/raw_pixels.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/geometry/shrink.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "tests/imaging/imaging_test.h"
#include "tests/support/scarce_memory.h"

namespace zyr {
namespace {

class OutOfMemoryTest : public ImagingTest {};

// There is a result once there are blocks enough, and null before.
template <typename Operation>
void ExpectNullUntilThereIsEnough(const char* what, Operation operation) {
  constexpr int kMostBlocks = 100;
  for (int blocks = 0; blocks < kMostBlocks; ++blocks) {
    bool thrown = false;
    bool done = false;
    g_blocksLeft = blocks;
    try {
      done = operation() != nullptr;
    } catch (...) {
      thrown = true;
    }
    g_blocksLeft = kEnough;
    ASSERT_FALSE(thrown) << what << ", " << blocks << " blocks";
    if (!done) continue;
    EXPECT_GT(blocks, 1) << what;  // the image and its palette or what it works with
    return;
  }
  ADD_FAILURE() << what << " never worked";
}

#define EXPECT_NULL_UNTIL_ENOUGH(expression) \
  ExpectNullUntilThereIsEnough(#expression, [&] { return expression; })

TEST_F(OutOfMemoryTest, ImagesGiveNull) {
  const auto grey = RandomGrey(40, 20);
  const auto colored = RandomImage(40, 20, 8, ColoredPalette(256));
  const auto lineArt = RandomImage(40, 20, 1, ColoredPalette(2));
  for (CKIPImage* image : {grey.get(), colored.get(), lineArt.get()}) {
    image->name = "a name too long to be held within the string";
  }
  const CKIPMask mask;
  CKIPMask wide;
  ASSERT_TRUE(wide.Resize(13, 13));
  CKIPMask seven;
  ASSERT_TRUE(seven.Resize(7, 7));
  EXPECT_NULL_UNTIL_ENOUGH(AdjustBrightnessContrast(grey.get(), 10, 20, kKeepNoColor, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(AdjustGamma(grey.get(), 1, 2, 3, kKeepNoColor, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(AdjustGamma(colored.get(), 1, 2, 3, kKeepNoColor, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(Invert(grey.get(), nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(Invert(colored.get(), nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(Normalize(grey.get(), nullptr, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(Equalize(grey.get(), nullptr, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(AutoBrightnessContrast(grey.get(), 1, 1, nullptr, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(ApplyMask(grey.get(), mask, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(EdgeEnhance(grey.get(), mask, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(MedianFilter(grey.get(), mask, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(MedianFilter(grey.get(), seven, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(MedianFilter(grey.get(), wide, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(FastNoiseReduction(grey.get(), nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(Emboss(grey.get(), 135, 45, 0.85, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(Emboss(colored.get(), 135, 45, 0.85, nullptr));
  for (const CKIPImage* image : {grey.get(), lineArt.get()}) {
    EXPECT_NULL_UNTIL_ENOUGH(FlipHorizontal(image, nullptr));
    EXPECT_NULL_UNTIL_ENOUGH(FlipVertical(image, nullptr));
    EXPECT_NULL_UNTIL_ENOUGH(Rotate90(image, nullptr));
    EXPECT_NULL_UNTIL_ENOUGH(ShrinkToLimit(image, 10, nullptr));
    EXPECT_NULL_UNTIL_ENOUGH(ShrinkToLimit(image, 0, nullptr));
  }
}

TEST_F(OutOfMemoryTest, DeepImagesGiveNull) {
  CKIPDeepImage deep;
  ASSERT_TRUE(deep.Create(40, 20, 12));
  for (uint32_t i = 0; i < 40 * 20; ++i) deep.GetPixels()[i] = static_cast<uint16_t>(i);
  EXPECT_NULL_UNTIL_ENOUGH(DeepAdjustBrightnessContrast(&deep, 10, 20, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(DeepAdjustGamma(&deep, 2, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(DeepNormalize(&deep, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(DeepEqualize(&deep, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(DeepAutoBrightnessContrast(&deep, 1, 1, nullptr));
  EXPECT_NULL_UNTIL_ENOUGH(ImageFromDeepImage(deep, {.mode = 4}));
  for (const uint32_t size : {3u, 7u, 13u}) {
    EXPECT_NULL_UNTIL_ENOUGH(DeepMedianFilter(&deep, size, nullptr));
  }
}

}  // namespace
}  // namespace zyr
