// What is inside a simulated sensor. That its memory tells the truth about its frames is seen where
// the device corrects them.
#include "simulator/physics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "simulator/memory_2000.h"
#include "tests/support/simulated_sensor.h"

namespace zyr::test {
namespace {

using namespace simulator;

template <typename Number>
uint64_t Hash(const std::vector<Number>& numbers, uint64_t hash = 14695981039346656037u) {
  for (const Number number : numbers) hash = (hash ^ number) * 1099511628211u;
  return hash;
}

uint64_t Hash(const Detector& detector) {
  return Hash(detector.memory, Hash(detector.normal, Hash(detector.dark)));
}

DetectorOptions Options(Family family, Size size) {
  DetectorOptions options;
  options.family = family;
  options.size = size;
  return options;
}

// The numbers were noted on one machine and hold on all.
TEST(Physics, IsTheSameOnEveryMachine) {
  DetectorOptions options = Options(kFamily2000, kSizeA);
  const Detector& first = *TestDetector(options);
  EXPECT_EQ(first.identity, "CCD8073681A");
  EXPECT_EQ(Hash(first), 6454013520056188395u);
  options = Options(kFamily303, kSizeC);
  EXPECT_EQ(TestDetector(options)->identity, "LR0912713C");
  EXPECT_EQ(Hash(*TestDetector(options)), 6481507944391763668u);
  options.gain = true;
  EXPECT_EQ(Hash(*TestDetector(options)), 14903078616953953733u);
}

TEST(Physics, AnotherExposureHasNothingNewButItsNoise) {
  DetectorOptions options = Options(kFamily2000, kSizeA);
  const Detector& first = *TestDetector(options);
  options.exposure = 1;
  const Detector& later = *TestDetector(options);
  EXPECT_EQ(later.memory, first.memory);
  int largest = 0;
  for (size_t i = 0; i < later.dark.size(); ++i) {
    largest = std::max(largest, std::abs(later.dark[i] - first.dark[i]));
  }
  EXPECT_GT(largest, 4);
  EXPECT_LT(largest, 20);
}

TEST(Physics, TakesWhateverItIsGiven) {
  const Detector none = MakeDetector(Options(kFamily303, kSizeA), TestScene({4, 4}));
  EXPECT_TRUE(none.normal.empty());
  EXPECT_EQ(none.memory, std::vector<uint8_t>(kMemorySize, 0xFF));
  EXPECT_EQ(SetupOf(Options(kFamily303, kSizeA), none).normal, nullptr);

  // A scene that is too small, and shorter than it says.
  Scene scene = TestScene({100, 100});
  scene.height = 200;
  DetectorOptions options = Options(kFamily2000, kSizeA);
  options.memory = false;
  const Detector detector = MakeDetector(options, scene);
  EXPECT_EQ(detector.normal.size(), 468u * 578);
  EXPECT_LT(detector.normal[468 * 150 + 50], 300);
  EXPECT_EQ(detector.identity, "");
  EXPECT_EQ(detector.memory, std::vector<uint8_t>(kMemorySize, 0xFF));
  EXPECT_EQ(SetupOf(options, detector).hasMemory, 0u);
}

// The list counts from the lower left, and one too low except at the edges.
TEST(Physics, ListsDefectsAsTheFactoryDoes) {
  const Geometry geometry{468, 578};
  EXPECT_EQ(DefectText({{kBadPixel, 11, 556}, {kBadPixel, 0, 3}, {kBadPixel, 9, 577}}, geometry),
            "10 20 0\n");
  EXPECT_EQ(DefectText({{kBadColumn, 2, 0},
                        {kBadColumn, 4, 0},
                        {kBadColumn, 466, 0},
                        {kBadColumn, 467, 0},
                        {kBadRow, 0, 0},
                        {kBadRow, 0, 573}},
                       geometry),
            "2 0 2\n3 0 2\n465 0 2\n467 0 2\n0 577 3\n0 3 3\n");
}

TEST(Physics, CutsAListThatOutgrowsTheDirectory) {
  std::vector<uint8_t> memory(kMemorySize, 0xFF);
  WriteMemory2000("CCD1234567D-and-on", std::string(20'000, '7'), &memory);
  EXPECT_EQ(std::string(memory.begin() + 0x40, memory.begin() + 0x50), "XCCD1234567D-and");
  EXPECT_EQ(std::count(memory.begin(), memory.end(), '7'), 0x1C20 - 0x66 + 1);
  EXPECT_EQ(memory[0x1C1F], '7');
  EXPECT_EQ(memory[0x1C20], 0xFF);
}

}  // namespace
}  // namespace zyr::test
