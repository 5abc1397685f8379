// A hundred steps of an editing session on the largest image: what the history keeps of it, and how
// long its user waits for the slowest undo, display included.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

#include "acquire/image_dialog/image_version.h"
#include "platform/host/host.h"

namespace {

using namespace zyr;

constexpr size_t kSteps = 100;

// A radiograph's gradients and noise.
std::unique_ptr<CachedImage> Radiograph() {
  auto image = std::make_unique<CachedImage>();
  image->bitsPerPixel = 12;
  image->width = 1156;
  image->height = 1600;
  image->xResolution = image->yResolution = 600;
  std::vector<uint8_t> pixels;
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0, 20);
  for (uint32_t y = 0; y < image->height; ++y) {
    for (uint32_t x = 0; x < image->width; ++x) {
      const double level = 400 + x + (y / 100 % 2) * 900 + noise(random);
      const auto sample = static_cast<uint16_t>(std::clamp(level, 0.0, 4095.0));
      pixels.push_back(static_cast<uint8_t>(sample));
      pixels.push_back(static_cast<uint8_t>(sample >> 8));
    }
  }
  image->SetPixelData(std::move(pixels));
  return image;
}

const ImageOperations kMixed = {
    ImageOperation::Invert(),           ImageOperation::Rotate(90),
    ImageOperation::RemoveNoise(3),     ImageOperation::Sharpen(3, 50),
    ImageOperation::EnhanceEdges(3, 3), ImageOperation::Equalize(),
    ImageOperation::Smooth(3, 100),     ImageOperation::RemoveNoiseFast(),
    ImageOperation::Normalize(),
};

void SlowestUndoOf100Steps(benchmark::State& state, const ImageOperations& operations) {
  platform::host::ResetAll();
  const auto image = Radiograph();
  std::vector<std::shared_ptr<ImageVersion>> versions = {ImageVersion::Of(*image)};
  for (size_t i = 0; i < kSteps; ++i) {
    const auto before = image->Clone();
    const ImageOperations done = Apply({operations[i % operations.size()]}, *image);
    versions.push_back(ImageVersion::Of(versions.back(), *before, done));
  }
  size_t bytes = 0;
  for (const auto& version : versions) bytes += version->KeptBytes();
  for (auto _ : state) {
    std::chrono::duration<double> longest{};
    for (size_t i = kSteps; i-- > 0;) {
      const auto start = std::chrono::steady_clock::now();
      const auto restored = versions[i]->Restore();
      benchmark::DoNotOptimize(restored->PrepareImage());
      longest = std::max<decltype(longest)>(longest, std::chrono::steady_clock::now() - start);
    }
    state.SetIterationTime(longest.count());
    platform::host::ResetAll();
  }
  state.counters["keptMegabytes"] = static_cast<double>(bytes) / 1e6;
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peakMegabytes"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

#define ZYR_UNDO(name, ...)                                   \
  BENCHMARK_CAPTURE(SlowestUndoOf100Steps, name, __VA_ARGS__) \
      ->UseManualTime()                                       \
      ->Iterations(3)                                         \
      ->Unit(benchmark::kMillisecond)
ZYR_UNDO(mixed, kMixed);
ZYR_UNDO(noise, {ImageOperation::RemoveNoise(3)});
ZYR_UNDO(edges, {ImageOperation::EnhanceEdges(3, 3)});
ZYR_UNDO(sharpen, {ImageOperation::Sharpen(3, 50)});
ZYR_UNDO(gamma, {ImageOperation::AdjustGamma(0.9)});
ZYR_UNDO(equalize, {ImageOperation::Equalize()});
ZYR_UNDO(rotate, {ImageOperation::Rotate(90)});

}  // namespace

BENCHMARK_MAIN();
