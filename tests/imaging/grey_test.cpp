#include "imaging/image/grey.h"

#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using GreyTest = ImagingTest;

TEST_F(GreyTest, ColorsComeOutDarkerThanGreys) {
  EXPECT_EQ(GreyFromRgb(255, 255, 255), 255);
  EXPECT_EQ(GreyFromRgb(255, 255, 254), 247);
  EXPECT_EQ(GreyFromRgb(0, 255, 0), 149);
  const uint8_t blue[] = {255, 0, 0};
  EXPECT_EQ(GreyFromColor(blue), 27);
}

TEST_F(GreyTest, ConversionsLookUpEachPixel) {
  for (const uint32_t bits : {1u, 8u, 24u}) {
    const auto image = RandomImage(21, 5, bits, bits == 24 ? Palette{} : ColoredPalette(256));
    const auto grey = ConvertToGrey8(*image, nullptr);
    const auto colored = ConvertTo24(*image, nullptr);
    ASSERT_TRUE(grey != nullptr && grey->IsGrey() && colored != nullptr);
    EXPECT_EQ(colored->xResolution(), 300u);
    for (uint32_t i = 0; i < 21 * 5; ++i) {
      PaletteEntry color;
      ASSERT_TRUE(image->GetColor(i % 21, i / 21, &color));
      EXPECT_EQ(std::memcmp(colored->PictureRow(i / 21) + i % 21 * 3, &color, 3), 0);
      const uint8_t level = GreyFromRgb(color.red, color.green, color.blue);
      EXPECT_EQ(grey->PictureRow(i / 21)[i % 21], level);
    }
  }
}

TEST_F(GreyTest, PixelsWithoutColor) {
  const auto image = RandomImage(4, 4, 8, ColoredPalette(10));
  std::memset(image->bits(), 5, 16);
  image->SetByte(1, 2, 10);
  EXPECT_EQ(ConvertTo24(*image, nullptr), nullptr);
  EXPECT_EQ(ConvertToGrey8(*image, nullptr)->PictureRow(2)[1], 255);
  platform::host::PressEscapeAtQuestion(3);
  EXPECT_EQ(ConvertToGrey8(*image, RecordProgress), nullptr);
  EXPECT_EQ(g_fractions, (std::vector<double>{0, 0.25, 0.5}));
}

}  // namespace
}  // namespace zyr
