// What all operations have in common: what they refuse, keep, tell and ask, and how they end.
#include <gmock/gmock.h>

#include <array>

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

using OperationsTest = ImagingTest;

constexpr uint32_t kWidth = 21;
constexpr uint32_t kHeight = 10;

// At 1 bit, of a grey image, of 8 bits in colour, of 24 bits.
using Questions = std::array<int, 4>;
constexpr int kRefused = -1;
constexpr Questions kEachRow = {10, 10, 10, 10};
constexpr Questions kEachPair = {5, 5, 5, 5};
constexpr Questions kTwiceIfGrey = {kRefused, 20, kRefused, kRefused};
constexpr Questions kIfSamples = {kRefused, 10, kRefused, 10};

enum class Padding { kKept, kNew, kAny };
using enum Padding;

struct Operation {
  const char* name;
  std::unique_ptr<CKIPImage> (*run)(const CKIPImage*, ProgressCallback);
  Questions questions;
  Padding padding = kKept;
  bool isClone = true;
};

CKIPMask MaskOf(uint32_t size) {
  CKIPMask mask;
  mask.MakeIdentity(size, size);
  return mask;
}

#define IMAGE(call) [](const CKIPImage* image, ProgressCallback p) { return call; }
#define DEEP(call) [](const CKIPDeepImage* image, ProgressCallback p) { return call; }

const Operation kOperations[] = {
    {"FlipHorizontal", FlipHorizontal, kEachRow},
    {"FlipVertical", FlipVertical, kEachPair},
    {"Rotate90", Rotate90, kEachRow, kNew, false},
    {"Rotate180", Rotate180, kEachRow, kNew, false},
    {"Rotate270", Rotate270, kEachRow, kNew, false},
    {"Shrink", IMAGE(ShrinkToLimit(image, 11, p)), kEachPair, kAny, false},
    {"Shrink none", IMAGE(ShrinkToLimit(image, 0, p)), {0, 0, 0, 0}},
    {"Invert", Invert, {10, 10, 0, 10}},
    {"Gamma", IMAGE(AdjustGamma(image, 1, 2, 3, kKeepNoColor, p)), {0, 10, 20, 10}},
    {"Contrast",
     IMAGE(AdjustBrightnessContrast(image, 9, 9, kKeepNoColor, p)),
     {kRefused, 10, 10, 10},
     kNew},
    {"Normalize", IMAGE(Normalize(image, nullptr, p)), kTwiceIfGrey, kAny},
    {"Equalize", IMAGE(Equalize(image, nullptr, p)), kTwiceIfGrey, kAny},
    {"Auto", IMAGE(AutoBrightnessContrast(image, 1, 1, nullptr, p)), kTwiceIfGrey, kAny},
    {"ApplyMask", IMAGE(ApplyMask(image, CKIPMask(), p)), kIfSamples, kNew},
    {"EdgeEnhance", IMAGE(EdgeEnhance(image, CKIPMask(), p)), kIfSamples, kNew},
    {"Emboss", IMAGE(Emboss(image, 135, 45, 0.85, p)), kEachRow, kAny},
    {"Median 3", IMAGE(MedianFilter(image, MaskOf(3), p)), kIfSamples, kNew},
    {"Median 5", IMAGE(MedianFilter(image, MaskOf(5), p)), kIfSamples, kNew},
    {"Median 7", IMAGE(MedianFilter(image, MaskOf(7), p)), kIfSamples, kNew},
    {"Median 13", IMAGE(MedianFilter(image, MaskOf(13), p)), kIfSamples, kNew},
    {"FastNoiseReduction", FastNoiseReduction, kIfSamples},
};

struct DeepOperation {
  const char* name;
  std::unique_ptr<CKIPDeepImage> (*run)(const CKIPDeepImage*, ProgressCallback);
  int questions = 10;
  bool isSideways = false;
};

const DeepOperation kDeepOperations[] = {
    {"FlipHorizontal", DeepFlipHorizontal},
    {"FlipVertical", DeepFlipVertical, 5},
    {"Rotate90", DeepRotate90, 10, true},
    {"Rotate180", DeepRotate180},
    {"Rotate270", DeepRotate270, 10, true},
    {"Invert", DeepInvert},
    {"Gamma", DEEP(DeepAdjustGamma(image, 2, p))},
    {"BrightnessContrast", DEEP(DeepAdjustBrightnessContrast(image, 9, 9, p))},
    {"Normalize", DeepNormalize, 20},
    {"Equalize", DeepEqualize, 20},
    {"AutoBrightnessContrast", DEEP(DeepAutoBrightnessContrast(image, 1, 1, p)), 20},
    {"ApplyMask", DEEP(DeepApplyMask(image, CKIPMask(), p))},
    {"Sharpen", DEEP(DeepSharpen(image, 3, 50, p))},
    {"Smooth", DEEP(DeepSmooth(image, 3, 50, p))},
    {"EdgeEnhance", DEEP(DeepEdgeEnhance(image, 3, 1, p))},
    {"Median 3", DEEP(DeepMedianFilter(image, 3, p))},
    {"Median 5", DEEP(DeepMedianFilter(image, 5, p))},
    {"Median 6", DEEP(DeepMedianFilter(image, 6, p))},
    {"Median 13", DEEP(DeepMedianFilter(image, 13, p))},
    {"FastNoiseReduction", DeepFastNoiseReduction},
};

// Tells how far it is before each question, of which each but a later one ends it.
template <class Run>
void ExpectProgress(int questions, Run run) {
  std::vector<double> fractions;
  for (int i = 0; i < questions; ++i) fractions.push_back(static_cast<double>(i) / questions);
  g_fractions.clear();
  EXPECT_NE(run(RecordProgress), nullptr);
  EXPECT_THAT(g_fractions, testing::Pointwise(testing::DoubleEq(), fractions));
  for (int question = 1; question <= questions; ++question) {
    platform::host::PressEscapeAtQuestion(question);
    EXPECT_EQ(run(nullptr), nullptr) << question;
  }
  platform::host::ResetEscapeKey();
}

// Null without memory enough, no exception, and a result once there is: at the earliest with so
// many blocks.
template <class Run>
void ExpectNullUntilThereIsEnough(Run run, int fewestBlocks) {
  for (int blocks = 0; blocks < 100; ++blocks) {
    bool thrown = false;
    bool done = false;
    g_blocksLeft = blocks;
    try {
      done = run() != nullptr;
    } catch (...) {
      thrown = true;
    }
    g_blocksLeft = kEnough;
    ASSERT_FALSE(thrown) << blocks << " blocks";
    if (!done) continue;
    EXPECT_GE(blocks, fewestBlocks);
    return;
  }
  ADD_FAILURE() << "never worked";
}

Bytes PaddingOf(const CKIPImage& image) {
  Bytes padding;
  for (uint32_t y = 0; y < image.height(); ++y) {
    const uint8_t* const end = image.MemoryRow(y) + image.stride();
    padding.insert(padding.end(), end - image.rowPadding(), end);
  }
  return padding;
}

void ExpectPadding(const Operation& operation, const CKIPImage& image, const CKIPImage& result) {
  if (operation.padding == kAny) return;
  EXPECT_EQ(PaddingOf(result),
            PaddingOf(operation.padding == kKept ? image : *result.Clone(false)));
}

void ExpectClone(const CKIPImage& image, const CKIPImage& result) {
  EXPECT_EQ(result.name, image.name);
  EXPECT_EQ(result.palette(), image.palette());
  EXPECT_EQ(result.xResolution(), 300u);
  EXPECT_EQ(result.yResolution(), 150u);
  EXPECT_TRUE(result.flipped);
  EXPECT_EQ(result.fileFormat, 5u);
}

TEST_F(OperationsTest, OnImages) {
  Palette reversed = NewIdentityPalette();
  std::reverse(reversed.begin(), reversed.end());
  const std::unique_ptr<CKIPImage> images[] = {
      RandomImage(kWidth, kHeight, 1, ColoredPalette(2)), RandomImage(kWidth, kHeight, 8, reversed),
      RandomImage(kWidth, kHeight, 8, ColoredPalette(20)), RandomImage(kWidth, kHeight, 24)};
  for (uint32_t i = 0; i < images[2]->dataSize(); ++i) images[2]->bits()[i] %= 20;
  const CKIPImage none;
  for (const Operation& operation : kOperations) {
    EXPECT_EQ(operation.run(nullptr, nullptr), nullptr) << operation.name;
    EXPECT_EQ(operation.run(&none, nullptr), nullptr) << operation.name;
    for (size_t i = 0; i < std::size(images); ++i) {
      SCOPED_TRACE(testing::Message() << operation.name << ", " << i);
      CKIPImage& image = *images[i];
      image.name = "a name too long to be held within the string";
      image.fileFormat = 5;
      image.flipped = i % 2 != 0;
      const Bytes before = PixelBytes(image);
      const auto result = operation.run(&image, nullptr);
      ASSERT_EQ(result == nullptr, operation.questions[i] == kRefused);
      if (result == nullptr) continue;
      if (i == 1 || i == 3) ExpectPadding(operation, image, *result);
      if (i == 1 && operation.isClone) ExpectClone(image, *result);
      ExpectProgress(operation.questions[i], [&](auto p) { return operation.run(&image, p); });
      ExpectNullUntilThereIsEnough([&] { return operation.run(&image, nullptr); }, 2);
      EXPECT_EQ(PixelBytes(image), before);
    }
  }
}

TEST_F(OperationsTest, OnDeepImages) {
  const auto image = DeepImageOf(Content::kRandom, kWidth, kHeight, 12);
  const CKIPDeepImage none;
  for (const DeepOperation& operation : kDeepOperations) {
    SCOPED_TRACE(operation.name);
    EXPECT_EQ(operation.run(nullptr, nullptr), nullptr);
    EXPECT_EQ(operation.run(&none, nullptr), nullptr);
    const auto result = operation.run(image.get(), nullptr);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->GetBits(), 12u);
    EXPECT_EQ(result->GetXResolution(), 300u);
    EXPECT_EQ(result->GetYResolution(), 150u);
    ASSERT_EQ(result->GetStride(), operation.isSideways ? kHeight : kWidth + 3);
    for (uint32_t y = 0; y < kHeight && !operation.isSideways; ++y) {
      EXPECT_TRUE(std::equal(image->GetRow(y) + kWidth, image->GetRow(y) + kWidth + 3,
                             result->GetRow(y) + kWidth));
    }
    ExpectProgress(operation.questions, [&](auto p) { return operation.run(image.get(), p); });
    ExpectNullUntilThereIsEnough([&] { return operation.run(image.get(), nullptr); }, 1);
  }
  ExpectNullUntilThereIsEnough([&] { return ImageFromDeepImage(*image, {.mode = 4}); }, 2);
}

TEST_F(OperationsTest, RefuseEmptyAndHugeWindowsAndSmallReferences) {
  const auto grey = RandomGrey(20, 3);
  CKIPMask empty;
  empty.rows = 0;
  EXPECT_EQ(ApplyMask(grey.get(), empty, nullptr), nullptr);
  EXPECT_EQ(MedianFilter(grey.get(), empty, nullptr), nullptr);
  const auto deep = DeepImageOf(Content::kRandom, 4, 4, 12);
  EXPECT_EQ(DeepMedianFilter(deep.get(), 0, nullptr), nullptr);
  EXPECT_EQ(DeepSharpen(deep.get(), 0xFFFFFFFF, 50, nullptr), nullptr);  // no memory for its mask
  const CKIPImage none;
  const auto narrow = RandomGrey(19, 3);
  const auto low = RandomGrey(20, 2);
  const auto lineArt = RandomImage(20, 3, 1, ColoredPalette(2));
  const CKIPImage* const references[] = {&none, narrow.get(), low.get(), lineArt.get()};
  for (const CKIPImage* reference : references) {
    EXPECT_EQ(Normalize(grey.get(), reference, nullptr), nullptr);
    EXPECT_EQ(Equalize(grey.get(), reference, nullptr), nullptr);
    EXPECT_EQ(AutoBrightnessContrast(grey.get(), 1, 1, reference, nullptr), nullptr);
  }
}

}  // namespace
}  // namespace zyr
