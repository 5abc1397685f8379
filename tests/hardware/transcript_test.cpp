// Every byte, order and wait of a bring-up and a capture, held against what was once looked
// through. What the other sizes change is their numbers, which are checked with their frames.
#include <string>

#include "tests/hardware/golden_text.h"
#include "tests/hardware/sensor_session.h"

namespace zyr {
namespace {

using namespace simulator;

TEST(Transcript, BringUpAndCaptureAreAsTheyWere) {
  // Each begins with a line break, which the raw string needs to look tidy.
  const struct {
    const char* name;
    test::SensorToPlug what;
    const char* binned;
    const char* golden;
  } kCaptures[] = {
      {
          "2000-a.inc",
          test::Sensor(kFamily2000, kSizeA, kPipeDriver),
          "false",
#include "tests/hardware/golden/2000-a.inc"
      },
      {
          "2000-c.inc",
          test::Sensor(kFamily2000, kSizeC, kEndpointDriver),
          "false",
#include "tests/hardware/golden/2000-c.inc"
      },
      {
          "2000-d-binned.inc",
          test::Sensor(kFamily2000, kSizeD, kEndpointDriver),
          "true",
#include "tests/hardware/golden/2000-d-binned.inc"
      },
      {
          "303-c.inc",
          test::Sensor(kFamily303, kSizeC, kPipeDriver),
          "false",
#include "tests/hardware/golden/303-c.inc"
      },
      {
          "303-d.inc",
          test::Sensor(kFamily303, kSizeD, kEndpointDriver),
          "false",
#include "tests/hardware/golden/303-d.inc"
      },
  };
  for (const auto& capture : kCaptures) {
    test::SensorSession session(capture.what);
    ASSERT_EQ(session.BringUp(), "") << capture.name;
    ASSERT_EQ(session.Capture(capture.binned), "") << capture.name;
    test::ExpectGolden(capture.name, capture.golden, "\n" + session.sensor().Transcript());
  }
  platform::host::ResetAll();
}

}  // namespace
}  // namespace zyr
