#include "imaging/operations/levels/stretch.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using StretchTest = ImagingTest;

TEST_F(StretchTest, FollowsItsFormulaForEverySample) {
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

}  // namespace
}  // namespace zyr
