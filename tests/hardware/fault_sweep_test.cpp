// A fault of each kind at each transfer of a bring-up and a capture in turn. Rows of the frames are
// many and alike: their first and last ones are tried and every so many between, or, with
// ZYR_FULL_SWEEP=1 in the environment, all.
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/hardware/golden_text.h"
#include "tests/hardware/sensor_session.h"

namespace zyr {
namespace {

constexpr uint32_t kRowStep = 389;
constexpr uint64_t kPatience = 60'000;  // milliseconds that no life of a sensor may exceed

struct SweptFault {
  const char* name;
  simulator::FaultKind kind;
  uint32_t value;
};
const SweptFault kFaults[] = {
    {"error 31", simulator::kFaultError, 31},  {"nothing", simulator::kFaultShort, 0},
    {"byte 0", simulator::kFaultWrongByte, 0}, {"byte 1", simulator::kFaultWrongByte, 1},
    {"silence", simulator::kFaultSilence, 0},  {"unplug", simulator::kFaultUnplug, 0},
};

class Sweep {
 public:
  explicit Sweep(const test::SensorToPlug& what) : what_(what) {
    test::SensorSession session(what);
    EXPECT_EQ(session.BringUp(), "");
    EXPECT_EQ(session.Capture(), "");
    transfers_ = session.sensor().Statistics().transfers;
    pixels_ = PixelsOf(session);
  }

  // A line for each run of transfers at which a fault has the same outcome.
  std::string Run() {
    std::string report;
    for (const SweptFault& fault : kFaults) {
      uint32_t first = 0;
      std::string outcome;
      for (const uint32_t transfer : TransfersToTry()) {
        const std::string now = Try(fault, transfer);
        if (now == outcome) continue;
        report += Line(fault, first, outcome);
        first = transfer;
        outcome = now;
      }
      report += Line(fault, first, outcome);
    }
    return report;
  }

 private:
  static std::vector<uint16_t> PixelsOf(const test::SensorSession& session) {
    const SensorImage& image = *session.image();
    return {image.data(), image.data() + size_t{image.GetRowPixels()} * image.GetHeight()};
  }

  static std::string Line(const SweptFault& fault, uint32_t first, const std::string& outcome) {
    if (outcome.empty()) return {};
    return FormatText("%-8s from %4lu: ", fault.name, Lu(first)) + outcome + "\n";
  }

  std::vector<uint32_t> TransfersToTry() const {
    const bool isFull = std::getenv("ZYR_FULL_SWEEP") != nullptr;
    const uint32_t rows = what_.detector.family == simulator::kFamily303 ? 944 : 578;
    // The second frame ends the capture, and few transfers stand between the two.
    const uint32_t rowsBegin = transfers_ - 2 * rows - 8;
    std::vector<uint32_t> transfers;
    for (uint32_t transfer = 0; transfer < transfers_; ++transfer) {
      const bool isBetween = transfer + rows + 5 > transfers_ && transfer + rows < transfers_ + 3;
      if (isFull || transfer < rowsBegin + 8 || isBetween || transfer + 2 > transfers_ ||
          transfer % kRowStep == 0)
        transfers.push_back(transfer);
    }
    return transfers;
  }

  // One life of a sensor: the fault strikes, then it is pulled out, put back and used again.
  std::string Try(const SweptFault& fault, uint32_t transfer) {
    test::SensorSession session(what_);
    session.sensor().SetFault(fault.kind, transfer, fault.value);
    const uint64_t slept = platform::host::TimeSlept();
    std::string outcome = session.BringUp();
    if (!outcome.empty()) {
      outcome = "bring-up: " + outcome;
    } else {
      outcome = session.Capture();
      if (outcome.empty()) outcome = PixelsOf(session) == pixels_ ? "whole image" : "image";
    }
    for (char& c : outcome) c = c == '\n' ? '/' : c;
    EXPECT_LT(platform::host::TimeSlept() - slept, kPatience) << fault.name << " at " << transfer;

    session.sensor().SetFault(simulator::kNoFault, 0);
    const std::string again = session.BringUpAgain();
    EXPECT_EQ(again, "") << fault.name << " at " << transfer;
    // A whole capture takes most of the time of a try: one for each outcome will do.
    if (again.empty() && outcome != lastOutcome_) {
      EXPECT_EQ(session.Capture(), "") << fault.name << " at " << transfer;
      EXPECT_TRUE(PixelsOf(session) == pixels_) << fault.name << " at " << transfer;
    }
    lastOutcome_ = outcome;
    return outcome;
  }

  test::SensorToPlug what_;
  uint32_t transfers_ = 0;
  std::string lastOutcome_;
  std::vector<uint16_t> pixels_;
};

TEST(FaultSweep, EveryFaultEndsInItsTextAndASensorThatWorksAgain) {
  const struct {
    const char* name;
    test::SensorToPlug what;
    const char* golden;
  } kSweeps[] = {
      {
          "sweep-2000.inc",
          test::Sensor(simulator::kFamily2000, simulator::kSizeA, simulator::kPipeDriver),
#include "tests/hardware/golden/sweep-2000.inc"
      },
      {
          "sweep-303.inc",
          test::Sensor(simulator::kFamily303, simulator::kSizeC, simulator::kEndpointDriver),
#include "tests/hardware/golden/sweep-303.inc"
      },
  };
  for (const auto& swept : kSweeps) {
    Sweep sweep(swept.what);
    test::ExpectGolden(swept.name, swept.golden, "\n" + sweep.Run());
    EXPECT_EQ(platform::host::OpenDriverHandles(), 0u);
  }
  platform::host::ResetAll();
}

}  // namespace
}  // namespace zyr
