#include "platform/clock.h"

#include "platform/host/host.h"
#include "tests/platform/clock_contract.h"

namespace zyr::platform {
namespace {

TEST(ClockDouble, AStoppedClockMovesWithStepsAndSleep) {
  host::ResetAll();
  host::SetClock(86'400 * 3 + 3'723);
  const uint64_t ticks = Ticks();
  SleepFor(5'000);
  host::AdvanceClock(250);
  EXPECT_EQ(Now(), 86'400 * 3 + 3'728);
  const TimeOfDay time = UtcTimeOfDay();
  EXPECT_EQ(time.hour, 1u);
  EXPECT_EQ(time.minute, 2u);
  EXPECT_EQ(time.second, 8u);
  EXPECT_EQ(time.millisecond, 250u);
  EXPECT_EQ(Ticks() - ticks, 5'250u);
  EXPECT_EQ(host::TimeSlept(), 5'000u);
  host::ResetClock();
  EXPECT_GT(Now(), 1'000'000'000);
}

}  // namespace
}  // namespace zyr::platform
