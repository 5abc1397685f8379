// Every byte, order and wait of a bring-up and a capture, held against what was once looked
// through.
#include <string>

#include "tests/hardware/golden_text.h"
#include "tests/hardware/sensor_session.h"

namespace zyr {
namespace {

struct GoldenCapture {
  const char* name;
  simulator::Family family;
  simulator::Size size;
  const char* binned;
  simulator::Generation generation;
  const char* golden;
};

// Each begins with a line break, which the raw string needs to look tidy.
const GoldenCapture kCaptures[] = {
    {
        "2000-a.inc",
        simulator::kFamily2000,
        simulator::kSizeA,
        "false",
        simulator::kPipeDriver,
#include "tests/hardware/golden/2000-a.inc"
    },
    {
        "2000-b.inc",
        simulator::kFamily2000,
        simulator::kSizeB,
        "false",
        simulator::kEndpointDriver,
#include "tests/hardware/golden/2000-b.inc"
    },
    {
        "2000-c.inc",
        simulator::kFamily2000,
        simulator::kSizeC,
        "false",
        simulator::kEndpointDriver,
#include "tests/hardware/golden/2000-c.inc"
    },
    {
        "2000-c-binned.inc",
        simulator::kFamily2000,
        simulator::kSizeC,
        "true",
        simulator::kPipeDriver,
#include "tests/hardware/golden/2000-c-binned.inc"
    },
    {
        "2000-d.inc",
        simulator::kFamily2000,
        simulator::kSizeD,
        "false",
        simulator::kPipeDriver,
#include "tests/hardware/golden/2000-d.inc"
    },
    {
        "2000-d-binned.inc",
        simulator::kFamily2000,
        simulator::kSizeD,
        "true",
        simulator::kEndpointDriver,
#include "tests/hardware/golden/2000-d-binned.inc"
    },
    {
        "303-c.inc",
        simulator::kFamily303,
        simulator::kSizeC,
        "false",
        simulator::kPipeDriver,
#include "tests/hardware/golden/303-c.inc"
    },
    {
        "303-d.inc",
        simulator::kFamily303,
        simulator::kSizeD,
        "false",
        simulator::kEndpointDriver,
#include "tests/hardware/golden/303-d.inc"
    },
};

TEST(Transcript, BringUpAndCaptureAreAsTheyWere) {
  for (const GoldenCapture& capture : kCaptures) {
    test::SensorToPlug what;
    what.detector.family = capture.family;
    what.detector.size = capture.size;
    what.generation = capture.generation;
    test::SensorSession session(what);
    ASSERT_EQ(session.BringUp(), "") << capture.name;
    ASSERT_EQ(session.Capture(capture.binned), "") << capture.name;
    test::ExpectGolden(capture.name, capture.golden, "\n" + session.sensor().Transcript());
  }
  platform::host::ResetAll();
}

}  // namespace
}  // namespace zyr
