// The choice of the sensor among simulated ones, on a view that keeps what it is told.
#include "acquire/sensor_selection/sensor_selection.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

#include "hardware/device/sensor_settings.h"
#include "tests/acquire/acquire_test.h"
#include "tests/acquire/recorded_selection.h"
#include "tests/support/simulated_sensor.h"

namespace zyr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kNoDevices[] = "No ZYR devices detected. Please check your hardware connection.";

// Knows sensors of a family that this module does not.
class ForeignManager : public DevMgr {
 public:
  bool GetDevice(uint32_t index, std::string* name, std::string* instanceId,
                 std::string* sensorId) override {
    if (!DevMgr::GetDevice(index, name, instanceId, sensorId)) return false;
    *name = "2000X";
    return true;
  }
};

class SensorSelectionTest : public AcquireTest {
 protected:
  void SetUp() override {
    AcquireTest::SetUp();
    host::SetClock(1'700'000'000);
    SensorSettings() = {};
    PutSensorSettings();
  }
  void Plug(std::optional<SimulatedSensor>* sensor, simulator::Family family,
            const std::string& instance) {
    SensorToPlug what;
    what.detector.family = family;
    what.instance = instance;
    sensor->emplace(what);
  }
  void PlugBoth() {
    Plug(&first_, simulator::kFamily2000, "0001");
    Plug(&second_, simulator::kFamily303, "0002");
  }
  bool Run(DevMgr&& manager = DevMgr()) {
    IFace sensors(&manager);
    SensorSelection dialog(sensors, view_);
    dialog.selected = selected_;
    dialog.auto_close = autoClose_;
    const bool accepted = dialog.Run(nullptr);
    selected_ = dialog.selected;
    return accepted;
  }

  std::optional<SimulatedSensor> first_;
  std::optional<SimulatedSensor> second_;
  RecordedSelection view_;
  DeviceEntry selected_;
  bool autoClose_ = false;
};

TEST_F(SensorSelectionTest, MarksTheSelectedSensorAndTakesTheChosenOne) {
  PlugBoth();
  selected_ = {"", "", "usb\\vid_082e&pid_1005\\0002"};
  autoClose_ = true;
  view_.user = [this](SensorSelection& dialog) {
    EXPECT_THAT(view_.columns, ElementsAre("Device Name", "Sensor ID", "Device ID"));
    ASSERT_EQ(view_.rows.size(), 2u);
    EXPECT_EQ(view_.rows[0].name + view_.rows[1].name, "ZYR2000ZYR303");
    EXPECT_EQ(view_.selected, 1u);
    dialog.OnRefreshTimer();
    EXPECT_EQ(view_.fills, 1) << "nothing has changed";
    dialog.OnOK();
  };
  EXPECT_TRUE(Run());
  EXPECT_EQ(selected_.name, "LUMORAY");
  EXPECT_EQ(selected_.deviceId, second_->instanceId());
  EXPECT_EQ(view_.rows[1].sensorId, selected_.sensorId);

  selected_ = {"kept", "kept", "unplugged"};
  view_.user = [this](SensorSelection&) { EXPECT_EQ(view_.selected, 0u); };
  EXPECT_FALSE(Run());
  EXPECT_EQ(selected_.name, "kept");
}

TEST_F(SensorSelectionTest, TakesTheOnlySensorUnseen) {
  Plug(&first_, simulator::kFamily2000, "0001");
  for (const bool unseen : {true, false}) {
    autoClose_ = unseen;
    EXPECT_EQ(Run(), unseen);
    EXPECT_EQ(view_.wasSeen, !unseen);
    EXPECT_EQ(selected_.deviceId, first_->instanceId());
  }
}

TEST_F(SensorSelectionTest, SaysThatThereIsNothingToChoose) {
  selected_.name = "kept";
  view_.user = [this](SensorSelection& dialog) {
    EXPECT_EQ(view_.message, kNoDevices);
    EXPECT_EQ(view_.color, 0x80u);
    EXPECT_EQ(view_.secondColor, 0xFFFFu);
    EXPECT_FALSE(view_.listVisible);
    dialog.OnOK();
  };
  EXPECT_FALSE(Run());
  EXPECT_EQ(selected_.name, "kept");
  EXPECT_THAT(host::ShownPrompts(), IsEmpty());

  PlugBoth();
  host::FailEnumeration(13);
  view_.user = [this](SensorSelection& dialog) {
    EXPECT_EQ(view_.message, "Unable to initialize ZYR hardware interface.");
    EXPECT_TRUE(view_.rows.empty());
    dialog.OnRefreshTimer();
    dialog.OnOK();
  };
  EXPECT_FALSE(Run());
  EXPECT_EQ(host::ShownPrompts().size(), 1u) << "a failure is told once";
}

TEST_F(SensorSelectionTest, StaysOpenUntilTheChoiceIsOne) {
  Plug(&first_, simulator::kFamily2000, "0001");
  view_.user = [this](SensorSelection& dialog) {
    view_.selected.reset();
    dialog.OnOK();
    EXPECT_EQ(view_.ended, std::nullopt);
  };
  EXPECT_FALSE(Run());
  autoClose_ = true;
  view_.user = nullptr;
  EXPECT_FALSE(Run(ForeignManager()));
  ASSERT_EQ(host::ShownPrompts().size(), 2u);
  EXPECT_EQ(host::ShownPrompts()[0].title, "No Sensor System Selected");
  EXPECT_EQ(host::ShownPrompts()[0].owner, view_.window());
  EXPECT_EQ(host::ShownPrompts()[1].title, "Unsupported ZYR Sensor System Selected");
}

TEST_F(SensorSelectionTest, FollowsWhatIsPluggedIn) {
  autoClose_ = true;
  view_.user = [this](SensorSelection& dialog) {
    PlugBoth();
    first_->AnnounceArrival();
    dialog.OnRefreshTimer();
    EXPECT_EQ(view_.message, "Select that sensor that is to be used to capture the digital x-ray.");
    EXPECT_EQ(view_.color, 0x800000u);
    EXPECT_EQ(view_.secondColor, std::nullopt);
    EXPECT_TRUE(view_.listVisible);
    EXPECT_EQ(view_.rows.size(), 2u);

    view_.selected = 1;
    std::optional<SimulatedSensor> third;
    Plug(&third, simulator::kFamily2000, "0003");
    third->AnnounceArrival();
    EXPECT_EQ(view_.rows.size(), 2u) << "not behind the user's back";
    dialog.OnRefreshTimer();
    EXPECT_EQ(view_.rows.size(), 3u);
    EXPECT_EQ(view_.selected, 1u) << "as the user left it";

    for (const auto& sensor : {&first_, &third}) {
      (*sensor)->Unplug();
      (*sensor)->AnnounceRemoval();
    }
    dialog.OnRefreshTimer();
    EXPECT_EQ(view_.rows.size(), 1u);
    EXPECT_EQ(view_.selected, 0u);
    EXPECT_EQ(view_.ended, std::nullopt) << "the user was choosing";
    second_->Unplug();
    second_->AnnounceRemoval();
    dialog.OnRefreshTimer();
    EXPECT_EQ(view_.message, kNoDevices);
    EXPECT_FALSE(view_.listVisible);

    first_->Replug();
    first_->AnnounceArrival();
    dialog.OnRefreshTimer();
    EXPECT_EQ(view_.ended, true) << "what the user has just plugged in is the choice";
  };
  EXPECT_TRUE(Run());
  EXPECT_EQ(selected_.deviceId, first_->instanceId());
}

}  // namespace
}  // namespace zyr::test
