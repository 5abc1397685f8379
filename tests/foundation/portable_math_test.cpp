#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "foundation/math/portable_math.h"

namespace zyr {
namespace {

// FNV-1a over the bits of doubles.
class Hash {
 public:
  void Add(double value) {
    const uint64_t bits = std::isnan(value) ? 0x7FF8000000000000 : std::bit_cast<uint64_t>(value);
    for (int shift = 0; shift < 64; shift += 8) {
      hash_ = (hash_ ^ (bits >> shift & 0xFF)) * 0x100000001B3;
    }
  }
  uint64_t value() const { return hash_; }

 private:
  uint64_t hash_ = 0xCBF29CE484222325;
};

// From -limit to limit, the same on every build.
double Uniform(std::mt19937_64& random, double limit) {
  return (static_cast<double>(random() >> 11) * 0x1p-52 - 1) * limit;
}

// One constant for all builds: whoever calculates differently anywhere fails.
TEST(PortableMathTest, GivesTheSameBitsEverywhere) {
  std::mt19937_64 random(1);
  Hash hash;
  for (int i = 0; i < 20000; ++i) {
    const double x = Uniform(random, 700);
    const double y = Uniform(random, 20);
    hash.Add(math::Pow(std::fabs(x) / 700, std::fabs(y)));
    hash.Add(math::Pow(std::fabs(x), y));
    hash.Add(math::Exp(x));
    hash.Add(math::Log(std::fabs(x)));
    hash.Add(math::Sin(x));
    hash.Add(math::Cos(x * 1e12));  // far out the argument's reduction takes its long way
    hash.Add(math::Sin(y * 1e-3));
    hash.Add(math::Hypot(x, y));
  }
  EXPECT_EQ(hash.value(), 4877884706295686991u);
}

TEST(PortableMathTest, AgreesWithTheSystemsToTheLastBits) {
  std::mt19937_64 random(2);
  const auto expectNear = [](double ours, double systems) {
    EXPECT_NEAR(ours, systems, std::fabs(systems) * 4 * std::numeric_limits<double>::epsilon());
  };
  for (int i = 0; i < 2000; ++i) {
    const double x = Uniform(random, 100);
    const double y = Uniform(random, 10);
    expectNear(math::Pow(std::fabs(x), y), std::pow(std::fabs(x), y));
    expectNear(math::Exp(x), std::exp(x));
    expectNear(math::Log(std::fabs(x)), std::log(std::fabs(x)));
    expectNear(math::Sin(x), std::sin(x));
    expectNear(math::Cos(x), std::cos(x));
    expectNear(math::Hypot(x, y), std::hypot(x, y));
  }
}

TEST(PortableMathTest, KnowsTheEndsOfTheRange) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(math::Pow(0, 0.5), 0);
  EXPECT_EQ(math::Pow(0, 0), 1);
  EXPECT_EQ(math::Pow(1, kInfinity), 1);
  EXPECT_EQ(math::Pow(0, -1), kInfinity);
  EXPECT_EQ(math::Exp(1000), kInfinity);
  EXPECT_EQ(math::Exp(-1000), 0);
  EXPECT_EQ(math::Log(0), -kInfinity);
  EXPECT_TRUE(std::isnan(math::Log(-1)));
  EXPECT_TRUE(std::isnan(math::Sin(kInfinity)));
  EXPECT_EQ(math::Cos(0), 1);
  EXPECT_DOUBLE_EQ(math::Hypot(3e200, 4e200), 5e200);
}

}  // namespace
}  // namespace zyr
