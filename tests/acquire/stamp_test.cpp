// The maker's mark as it is drawn, on a picture as it is delivered.
#include <algorithm>
#include <string>
#include <vector>

#include "acquire/iface/iface.h"
#include "tests/acquire/acquire_test.h"
#include "tests/acquire/maker_mark.h"

namespace zyr::test {
namespace {

constexpr uint32_t kWidth = 55;
constexpr uint32_t kHeight = 22;

class StampTest : public AcquireTest {
 protected:
  std::unique_ptr<CKIPDeepImage> Deliver() {
    SensorImage frame;
    EXPECT_TRUE(frame.Create(80, 60, 600, 600));
    for (uint32_t y = 0; y < 60; ++y) {
      for (uint32_t x = 0; x < 80; ++x) frame.Row(y)[x] = static_cast<uint16_t>(50 * x + y);
    }
    const platform::GlobalHandle handle = IFace(nullptr).ProcessBitmapToImage(frame, 0);
    auto image = DeepImageFromPackedDibHandle(handle, nullptr);
    platform::FreeBlock(handle);
    return image;
  }
  // Marked pixels of the mark's columns from `left` to before `right`, rows counted from its top.
  std::vector<uint32_t> Marked(uint32_t left, uint32_t right, uint32_t top, uint32_t bottom) const {
    std::vector<uint32_t> columns;
    for (uint32_t y = top; y < bottom; ++y) {
      for (uint32_t x = left; x < right; ++x) {
        if (mark_[y][x] == '#') columns.push_back(x);
      }
    }
    return columns;
  }
  std::vector<std::string> mark_;
};

double Mean(const std::vector<uint32_t>& values) {
  double sum = 0;
  for (const uint32_t value : values) sum += value;
  return sum / static_cast<double>(values.size());
}

uint32_t Spread(const std::vector<uint32_t>& values) {
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  return *most - *least;
}

TEST_F(StampTest, StandsUprightInTheLowerLeftCornerAndTouchesNothingElse) {
  const auto plain = Deliver();
  UseMakerMark();
  const auto marked = Deliver();
  ASSERT_TRUE(plain != nullptr && marked != nullptr);
  mark_.assign(kHeight, std::string(kWidth, '.'));
  for (uint32_t y = 0; y < plain->GetHeight(); ++y) {
    for (uint32_t x = 0; x < plain->GetWidth(); ++x) {
      const uint16_t was = *plain->GetPixelPtr(x, y);
      const uint16_t is = *marked->GetPixelPtr(x, y);
      if (is == was) continue;
      ASSERT_TRUE(x < kWidth && y < kHeight) << x << " " << y;
      ASSERT_EQ(is, 0xFFFF - was);
      mark_[kHeight - 1 - y][x] = '#';  // rows of a bitmap begin at the bottom
    }
  }
  std::string picture;
  for (const std::string& row : mark_) picture += row + "\n";
  // Between its bars Z leans to the right, Y is wide above, R has its stem on the left.
  EXPECT_GT(Mean(Marked(0, 19, 6, 10)), Mean(Marked(0, 19, 12, 16)) + 2) << picture;
  EXPECT_GT(Spread(Marked(19, 36, 0, 7)), Spread(Marked(19, 36, 15, 22)) + 6) << picture;
  EXPECT_GT(Marked(36, 45, 0, 22).size(), Marked(45, 55, 0, 22).size() + 10) << picture;
}

}  // namespace
}  // namespace zyr::test
