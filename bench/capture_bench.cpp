// A whole capture beside the mere moving of its bytes: what the sensor's classes cost by
// themselves, with a driver that takes no time and a clock on which nothing is waited for.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <memory>
#include <vector>

#include "hardware/device/device.h"
#include "hardware/device/sensor_settings.h"
#include "platform/host/host.h"

namespace {

using namespace zyr;
namespace host = platform::host;

constexpr char kPath[] = "\\\\?\\usb#bench#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
constexpr uint32_t kWidth = 1156;  // of the 2000 family's D
constexpr uint32_t kHeight = 1600;
constexpr size_t kRowBytes = 2 * kWidth;
constexpr size_t kMemorySize = 0x2000;
constexpr uint8_t kReadMemory = 0x0C;

// Answers what a healthy D sensor would, from blocks that lie ready.
class InstantDriver : public host::FakeDriver {
 public:
  InstantDriver() : memory_(kMemorySize, 0xFF), row_(kRowBytes, 0x12) {
    std::memcpy(memory_.data() + 0x20, "XCCD0000001D\0\0\0", 16);
  }

  platform::DriverAnswer Control(uint32_t, uint8_t* input, size_t inputSize, uint8_t* output,
                                 size_t outputSize) override {
    if (inputSize != 4) return {true, 0};  // a reset
    if (input[0] == 0) {
      command_[0] = output[0];
      command_[1] = outputSize > 1 ? output[1] : 0;
    } else if (input[0] == 1) {
      AnswerStatus(output);
    } else {
      const std::vector<uint8_t>& source = command_[0] == kReadMemory ? memory_ : row_;
      std::memcpy(output, source.data(), std::min(outputSize, source.size()));
    }
    return {true, 0};
  }

 private:
  void AnswerStatus(uint8_t* packet) const {
    static constexpr uint8_t kEcho[] = {0x8E, 0xAA, 0x55};
    static constexpr uint8_t kReady[] = {0x83, 0x65};
    static constexpr uint8_t kPresent[] = {1};
    if (command_[0] == 0x0E) {
      std::memcpy(packet, kEcho, sizeof kEcho);
    } else if (command_ == std::array<uint8_t, 2>{2, 0xC0}) {
      std::memcpy(packet, kPresent, sizeof kPresent);
    } else {
      std::memcpy(packet, kReady, sizeof kReady);
    }
  }

  std::vector<uint8_t> memory_;
  std::vector<uint8_t> row_;
  std::array<uint8_t, 2> command_{};
};

void Capture(benchmark::State& state) {
  host::ResetAll();
  host::SetClock(1'700'000'000);
  host::PutDriver(kPath, std::make_shared<InstantDriver>());
  const Held<Device> device = [] {
    Device* made = NewDevice2000(kPath, MakeUsbPortPipe(), {});
    made->AddRef();
    return Held<Device>(made);
  }();
  if (Failed(device->Open())) state.SkipWithError("not opened");
  for (auto _ : state) {
    if (Failed(device->CaptureImage())) {
      state.SkipWithError("not captured");
      break;
    }
  }
  state.SetBytesProcessed(state.iterations() * int64_t{2} * kRowBytes * kHeight);
}

void MoveTheBytes(benchmark::State& state) {
  const std::vector<uint8_t> row(kRowBytes, 0x12);
  std::vector<uint8_t> frames(2 * kRowBytes * kHeight);
  for (auto _ : state) {
    for (size_t y = 0; y < 2 * kHeight; ++y)
      std::memcpy(frames.data() + y * kRowBytes, row.data(), kRowBytes);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(frames.size()));
}

BENCHMARK(Capture)->Unit(benchmark::kMillisecond);
BENCHMARK(MoveTheBytes)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
