#include "imaging/image/deep_image.h"

#include <array>
#include <numeric>

#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

TEST(DeepImageTest, CreateChecksItsArguments) {
  CKIPDeepImage image;
  ASSERT_TRUE(image.Create(10, 5, 12, 12, 0, 300));
  for (const auto& [width, height, stride, bits] : {std::array{0, 5, 8, 16},
                                                    {10, 0, 10, 16},
                                                    {10, 5, 8, 16},
                                                    {10, 5, 10, 0},
                                                    {10, 5, 10, 17}}) {
    EXPECT_FALSE(image.Create(width, height, stride, bits, 0, 0));
    EXPECT_EQ(image.LastMessage(), "Invalid image parameter specified.");
  }
  EXPECT_TRUE(image.IsValid());
  EXPECT_EQ(image.GetXResolution(), 0u);
  EXPECT_FALSE(image.Create(0xFFFFFFFF, 0xFFFFFFFF, 16));
  EXPECT_EQ(image.LastMessage(), "Out of memory.");
  EXPECT_FALSE(image.IsValid());
  EXPECT_FALSE(image.CopyFrom(nullptr, true));
}

// Who frees too much or too little is caught by the sanitizer.
TEST(DeepImageTest, PixelsAreCopiedOrChangeHands) {
  uint16_t borrowed[20];
  std::iota(borrowed, borrowed + 20, uint16_t{100});
  CKIPDeepImage image;
  ASSERT_TRUE(image.Create(2, 2, 8));
  image.Attach(borrowed, 3, 4, 5, 12, false);
  const auto clone = image.Clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(std::memcmp(clone->GetPixels(), borrowed, sizeof(borrowed)), 0);
  CKIPDeepImage other;
  ASSERT_TRUE(other.Create(4, 5, 16));  // as many samples
  EXPECT_TRUE(other.CopyPixelsFrom(image));
  EXPECT_EQ(*other.GetPixelPtr(3, 4), 119);
  ASSERT_TRUE(other.Create(4, 4, 16));
  EXPECT_FALSE(other.CopyPixelsFrom(image));
  other.TakeOver(image);
  EXPECT_EQ(other.GetPixels(), borrowed);
  EXPECT_FALSE(image.IsValid());

  auto* const own = static_cast<uint16_t*>(std::malloc(8));
  image.Attach(own, 2, 2, 2, 16, true);
  image.Attach(own, 4, 1, 4, 16, true);
  EXPECT_EQ(image.Detach(), own);
  other.Attach(own, 2, 2, 2, 16, true);
  image.TakeOver(other);
  EXPECT_EQ(image.GetPixels(), own);
}

}  // namespace
}  // namespace zyr
