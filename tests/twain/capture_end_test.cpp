// The application ends a session in the midst of a capture.
#include "hardware/device/sensor_settings.h"
#include "tests/support/simulated_sensor.h"
#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

class CaptureEndTest : public SourceTest {
 protected:
  void SetUp() override {
    SourceTest::SetUp();
    host::HoldThreads(true);
    SensorSettings() = {};
    test::PutSensorSettings("capture_timeout=\"15000\" flush_time=\"400\"");
    SetAlwaysPromptForSensor(false);
    source_.reset();
    test::SensorToPlug plug;
    plug.timing.exposureAfter = 0;
    sensor_.emplace(plug);
    source_ = std::make_unique<OpenedSource>(images_, sensors_, test::RecordIn(view_));
  }
  void TearDown() override {
    source_.reset();
    host::ResetThreads();
    SourceTest::TearDown();
  }

  std::optional<test::SimulatedSensor> sensor_;
  DevMgr manager_;
  IFace sensors_{&manager_};
};

TEST_F(CaptureEndTest, EndsTheCaptureWithTheSession) {
  for (const bool close : {false, true}) {
    GoTo(5);
    bool isWaiting = false;
    view_->onStatus = [&](const test::StatusLine& line) {
      if (line.title != "Waiting for exposure" || isWaiting) return;
      isWaiting = true;
      EXPECT_TRUE(sensors_.IsCapturing());
      EXPECT_EQ(close ? Close() : Disable(), TWRC_SUCCESS);
    };
    view_->Press(kCommandAcquireSeries);
    ASSERT_TRUE(host::RunHeldThread());
    EXPECT_TRUE(isWaiting);
    EXPECT_EQ(source_->state(), close ? 3 : 4);
    EXPECT_FALSE(view_->windowAlive());
    EXPECT_FALSE(sensors_.IsCapturing());
    EXPECT_TRUE(sensors_.WaitForCaptureThread(0));
    EXPECT_EQ(host::HeldThreads(), 0u) << "nor does the series go on";
    EXPECT_EQ(images_.GetCount(), 0u);
    EXPECT_TRUE(host::ManagerCalls().empty());
    view_->onStatus = nullptr;
    Close();
  }
}

}  // namespace
}  // namespace zyr
