// From the raw frames of a capture to the image that leaves the device, beside the same steps
// written with OpenCV on one thread.
#include <benchmark/benchmark.h>

#include "bench/sensor_correction.h"

namespace {

using namespace zyr;
using namespace zyr::bench;

void Image2000D(benchmark::State& state) {
  const Sensor& sensor = Sensor2000D();
  const auto defects = TextDefectsOf(sensor);
  for (auto _ : state) {
    benchmark::DoNotOptimize(Correct2000D(sensor, defects.get())->GetData());
  }
}
BENCHMARK(Image2000D)->Unit(benchmark::kMillisecond);

void Image303D(benchmark::State& state, bool withGain) {
  const Sensor& sensor = Sensor303D();
  const auto defects = BinaryDefectsOf(sensor);
  const auto calibration = CalibrationOf(sensor);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Correct303D(sensor, defects.get(), calibration.get(), withGain)->GetData());
  }
}
BENCHMARK_CAPTURE(Image303D, seam, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Image303D, gain, true)->Unit(benchmark::kMillisecond);

void Image2000DByOpenCv(benchmark::State& state) {
  cv::setNumThreads(1);
  for (auto _ : state) benchmark::DoNotOptimize(Correct2000DByOpenCv(Sensor2000D()).data);
}
BENCHMARK(Image2000DByOpenCv)->Unit(benchmark::kMillisecond);

void Image303DByOpenCv(benchmark::State& state, bool withGain) {
  cv::setNumThreads(1);
  const Sensor& sensor = Sensor303D();
  const CoefficientsForOpenCv coefficients(sensor);
  for (auto _ : state) {
    benchmark::DoNotOptimize(Correct303DByOpenCv(sensor, coefficients, withGain).data);
  }
}
BENCHMARK_CAPTURE(Image303DByOpenCv, seam, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Image303DByOpenCv, gain, true)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
