#include <algorithm>

#include "hardware/correction/offset_correction.h"
#include "tests/hardware/correction_test.h"

namespace zyr {
namespace {

TEST(SensorImageTest, CreationClearsAndRefusesWhatTooLittleMemoryCanHold) {
  SensorImage frame;
  for (const uint32_t width : {1u, 2u, 3u, 445u}) {
    ASSERT_TRUE(frame.Create(width, 5, 300, 150));
    EXPECT_EQ(frame.GetStride(), (2 * width + 3) / 4 * 4);
    EXPECT_EQ(SamplesOf(frame), std::vector<uint16_t>(frame.GetRowPixels() * 5));
    std::fill_n(frame.GetData(), frame.GetRowPixels() * 5, uint16_t{1});
  }
  EXPECT_EQ(frame.GetDpiY(), 150u);
  frame.SetPixel(444, 4, 7);
  for (const uint32_t x : {445u, UINT32_MAX}) frame.SetPixel(x, 4, 9);
  frame.SetPixel(0, 5, 9);
  EXPECT_EQ(frame.GetPixel(444, 4), 7);
  EXPECT_EQ(frame.GetPixel(445, 4), 0);
  EXPECT_EQ(frame.GetPixel(0, 5), 0);

  for (const uint32_t size : {0x10000u, 0x7FFFFFFFu, UINT32_MAX}) {
    EXPECT_FALSE(frame.Create(size, size, 1, 1));
    EXPECT_EQ(frame.GetWidth() + frame.GetHeight() + frame.GetStride(), 0u);
    EXPECT_EQ(frame.GetData(), nullptr);
  }
  EXPECT_NE(frame.Clone(), nullptr);
}

// Who lets go too early or never is caught by the sanitizer.
TEST(SensorImageTest, ReferencesAreCounted) {
  SensorImage onStack;
  EXPECT_EQ(onStack.Release(), 0u);
  SensorImage* const frame = RandomFrame(3, 2, 4096)->Clone().release();
  void* same = nullptr;
  for (const InterfaceId& id : {kUnknownInterface, kSensorImageInterface}) {
    EXPECT_EQ(frame->QueryInterface(id, &same), kOk);
    EXPECT_EQ(same, frame);
  }
  EXPECT_EQ(frame->QueryInterface(InterfaceId{1, 2, 3, {}}, &same), kNoInterface);
  EXPECT_EQ(same, nullptr);
  EXPECT_EQ(frame->AddRef(), 4u);
  for (const uint32_t left : {3u, 2u, 1u, 0u}) EXPECT_EQ(frame->Release(), left);
}

TEST(SensorImageTest, PixelsAreMaskedAndSubtracted) {
  for (const uint32_t width : {1u, 16u, 37u}) {
    for (const int32_t bias : {0, 100, -30000, 70000, INT32_MAX, INT32_MIN}) {
      const auto a = RandomFrame(width, 3, 65536);
      const auto b = RandomFrame(width, 3, 65536);
      const auto difference = a->Clone();
      difference->Subtract(*b, bias);
      const auto masked = a->Clone();
      masked->MaskPixels();
      for (uint32_t y = 0; y < 3; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
          const int64_t exact = int64_t{a->GetPixel(x, y)} - b->GetPixel(x, y) + bias;
          ASSERT_EQ(difference->GetPixel(x, y), std::clamp<int64_t>(exact, 0, 65535));
          ASSERT_EQ(masked->GetPixel(x, y), a->GetPixel(x, y) % 4096);
        }
      }
      difference->Subtract(*RandomFrame(width, 2, 9), 5);
      EXPECT_EQ(
          difference->GetPixel(0, 0),
          std::clamp<int64_t>(int64_t{a->GetPixel(0, 0)} - b->GetPixel(0, 0) + bias, 0, 65535));
    }
  }
}

TEST(SensorImageTest, CroppingTakesWhatLiesInsideTheMargins) {
  const auto frame = RandomFrame(13, 9, 4096);
  const auto part = frame->Crop(1, 3, 2, 4);
  ASSERT_EQ(part->GetWidth(), 9u);
  ASSERT_EQ(part->GetHeight(), 3u);
  EXPECT_EQ(part->GetDpiX(), 300u);
  for (uint32_t y = 0; y < 3; ++y) {
    for (uint32_t x = 0; x < 9; ++x) EXPECT_EQ(part->GetPixel(x, y), frame->GetPixel(x + 1, y + 2));
  }
  EXPECT_EQ(part->Row(1)[9], 0);  // padding
  EXPECT_EQ(frame->Crop(0, 0, 0, 0)->GetPixel(12, 8), frame->GetPixel(12, 8));
  EXPECT_EQ(frame->Crop(12, 0, 0, 8)->GetPixel(0, 0), frame->GetPixel(12, 0));
  EXPECT_EQ(frame->Crop(7, 6, 0, 0), nullptr);
  EXPECT_EQ(frame->Crop(0, 0, INT32_MAX, INT32_MAX), nullptr);
  EXPECT_EQ(frame->Crop(-1, 5, 0, 0), nullptr);
}

// The frames of the later rows are smaller than their corners.
TEST(SensorImageTest, CornersAreFilledWithTriangles) {
  constexpr uint32_t kCases[][4] = {{40, 50, 9, 9}, {41, 30, 9, 4}, {31, 17, 1, 6}, {12, 7, 20, 30},
                                    {1, 1, 90, 90}, {5, 4, 0, 9},   {5, 4, 9, 0}};
  for (const auto& [width, height, legX, legY] : kCases) {
    const auto frame = RandomFrame(width, height, 4096);
    const auto filled = frame->Clone();
    filled->FillCorners(legX, legY, 5000);
    for (uint32_t y = 0; y < height; ++y) {
      for (uint32_t x = 0; x < width; ++x) {
        const auto isIn = [&](uint32_t dx, uint32_t dy) {
          return dx < legX && dy < legY && dx * legY / legX + dy <= legY;
        };
        const uint32_t right = width - 1 - x;
        const uint32_t up = height - 1 - y;
        const bool inCorner = isIn(x, y) || isIn(right, y) || isIn(x, up) || isIn(right, up);
        ASSERT_EQ(filled->GetPixel(x, y), inCorner ? 5000 : frame->GetPixel(x, y)) << x << " " << y;
      }
    }
    EXPECT_EQ(filled->Row(0)[filled->GetRowPixels() - 1] == 0xABC, width % 2 == 1);
  }
}

TEST(OffsetCorrectionTest, RowsGiveTheirFirstPixelsToTheEndOfTheRowBefore) {
  for (const uint32_t lag : {0u, 3u, 6u}) {
    for (const uint32_t height : {1u, 2u, 4u}) {
      for (const uint32_t width : {2u, 6u, 7u, 20u}) {
        const auto before = RandomFrame(width, height, 4096);
        const auto after = before->Clone();
        CorrectOffset(after.get(), lag);
        for (uint32_t y = 0; y < height; ++y) {
          for (uint32_t x = 0; x < width; ++x) {
            const bool isEnd = x + lag >= width;
            uint16_t expected = before->GetPixel(x, y);
            if (isEnd && y + 1 < height) expected = before->GetPixel(x + lag - width, y + 1);
            if (!isEnd && y > 0) expected = before->GetPixel(x + lag, y);
            if (lag > width) expected = before->GetPixel(x, y);
            ASSERT_EQ(after->GetPixel(x, y), expected) << lag << " " << x << " " << y;
          }
        }
      }
    }
  }
  constexpr uint32_t kLags[][3] = {{0, 3, 3}, {1, 3, 3}, {2, 3, 6}, {3, 3, 6}, {4, 0, 0}};
  for (const auto& [size, binned, full] : kLags) {
    EXPECT_EQ(ReadOutLag(size, false), binned);
    EXPECT_EQ(ReadOutLag(size, true), full);
  }
}

}  // namespace
}  // namespace zyr
