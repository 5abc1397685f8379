#include <numeric>

#include "imaging/operations/flip.h"
#include "imaging/operations/stretch.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using RowOperationsTest = ImagingTest;

TEST_F(RowOperationsTest, StretchFollowsItsFormulaForEverySample) {
  std::vector<uint16_t> samples(65536);
  std::vector<uint16_t> expected(65536);
  for (uint32_t p = 0; p < 65536; ++p) {
    samples[p] = p & 0xFFFF;
    expected[p] = static_cast<uint32_t>(p * 0.0002442002442002442 * 65535.0 + 0.5) & 0xFFFF;
  }
  std::vector<uint16_t> target(65536);
  StretchTo16Bit(samples.data(), target.data(), target.size());
  EXPECT_EQ(target, expected);
  for (size_t count = 0; count < 40; ++count) {  // not whole blocks
    std::vector<uint16_t> some = samples;
    std::vector<uint16_t> exact(count);
    StretchTo16Bit(samples.data(), exact.data(), count);
    StretchTo16Bit(some.data(), count);
    EXPECT_TRUE(std::equal(exact.begin(), exact.end(), expected.begin()));
    EXPECT_TRUE(std::equal(exact.begin(), exact.end(), some.begin()));
    EXPECT_EQ(some[count], count);
  }
}

TEST_F(RowOperationsTest, FlippedRowsKeepTheirPadding) {
  for (const uint32_t bits : {1u, 8u, 24u}) {
    for (const uint32_t height : {1u, 2u, 7u}) {
      const auto image = RandomImage(13, height, bits, ColoredPalette(2));
      const auto flipped = FlipVertical(*image, nullptr);
      ASSERT_NE(flipped, nullptr);
      EXPECT_EQ(flipped->name, "scan");
      EXPECT_EQ(flipped->yResolution(), 150u);
      for (uint32_t i = 0; i < image->dataSize(); ++i) {
        const uint32_t row = i / image->stride();
        const uint32_t column = i % image->stride();
        const bool isPadding = column >= image->stride() - image->rowPadding();
        const uint32_t from = isPadding ? row : height - 1 - row;
        ASSERT_EQ(flipped->bits()[i], image->MemoryRow(from)[column]) << bits << " " << i;
      }
    }
  }
  EXPECT_EQ(FlipVertical(CKIPImage(), nullptr), nullptr);
  platform::host::PressEscapeAtQuestion(3);
  EXPECT_EQ(FlipVertical(*RandomGrey(4, 10), RecordProgress), nullptr);
  EXPECT_EQ(g_fractions, (std::vector<double>{0, 0.2, 0.4}));
}

TEST_F(RowOperationsTest, DeepRowsKeepTheirPadding) {
  CKIPDeepImage image;
  ASSERT_TRUE(image.Create(2, 3, 3, 12, 300, 150));
  std::iota(image.GetPixels(), image.GetPixels() + 9, uint16_t{0});
  const auto flipped = DeepFlipVertical(image, nullptr);
  ASSERT_NE(flipped, nullptr);
  EXPECT_EQ(flipped->GetYResolution(), 150u);
  const uint16_t expected[] = {6, 7, 2, 3, 4, 5, 0, 1, 8};  // the last of a row is padding
  EXPECT_TRUE(std::equal(expected, expected + 9, flipped->GetPixels()));
  EXPECT_EQ(DeepFlipVertical(CKIPDeepImage(), nullptr), nullptr);
}

TEST_F(RowOperationsTest, RowsTurnOverInPlace) {
  for (const uint32_t rowBytes : {4u, 4096u, 9000u}) {
    const auto image = RandomImage(rowBytes, 5, 8);
    const Bytes flipped = PixelBytes(*FlipVertical(*image, nullptr));
    FlipRows(image->bits(), rowBytes, 5);
    EXPECT_EQ(PixelBytes(*image), flipped);
  }
}

}  // namespace
}  // namespace zyr
