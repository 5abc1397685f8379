// Texts as configuration: the bag, numbers, the settings file, and what a device makes of them.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/support/error.h"
#include "hardware/device/device.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/device/text_numbers.h"
#include "platform/host/host.h"
#include "tests/hardware/scripted_driver.h"

namespace zyr {
namespace {

namespace host = platform::host;
using namespace std::string_literals;

constexpr char kSettings[] = "C:\\Windows\\TWAIN_32\\ZYR\\settings.xml";

TEST(TextNumbers, TakeWhatIsANumberAndNoMore) {
  const struct {
    const char* text;
    int32_t decimal;
    double real;
  } kCases[] = {
      {"", 0, 0},
      {" \t+12x", 12, 12},
      {"-7.5e1 mm", -7, -75},
      {"+-3", 0, 0},
      {"0x10", 0, 0},
      {"22.5", 22, 22.5},
      {"nan", 0, 0},
      {"-inf", 0, 0},
      {"1e999", 1, 0},
      {".5", 0, 0.5},
      {"22,5", 22, 22},
      {"--1", 0, 0},
      {"99999999999", 2147483647, 99999999999.0},
      {"-99999999999", -2147483647 - 1, -99999999999.0},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(DecimalOf(c.text), c.decimal) << c.text;
    EXPECT_EQ(RealOf(c.text), c.real) << c.text;
  }
}

class SettingsFileTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }

  bool Load(const std::string& text) {
    host::PutFile(kSettings, text);
    return list_.Load();
  }
  std::string Value(const char* set, const char* property) {
    const PropertySet* found = list_.Find(set);
    return found == nullptr ? "(none)" : found->Get(property);
  }

  SensorSettingsList list_;
};

TEST_F(SettingsFileTest, GivesEachFamilyItsSet) {
  ASSERT_TRUE(
      Load("<?xml version='1.0'?><any><sensor ID='2000' Left_Margin='8' flush_time='9000'/>"
           "<SENSOR left_margin='1'/><other id='2000'/>text<!-- -->"
           "<SENSOR id='LUMORAY' left_margin='4'><SENSOR id='deep'/></SENSOR>"
           "<SENSOR id='lumoray' left_margin='5'/><DEBUG left_margin='6'/>"
           "<Debug flush_time='100' x='y'/><Debug X='z'/></any>"));
  EXPECT_EQ(Value("2000", "left_margin"), "8");
  EXPECT_EQ(Value("2000", "FLUSH_TIME"), "100");
  EXPECT_EQ(Value("2000", "x"), "z");
  EXPECT_EQ(Value("LumoRay", "left_margin"), "4");  // the first of two
  EXPECT_EQ(Value("LUMORAY", "flush_time"), "100");
  EXPECT_EQ(Value("deep", "id") + Value("", "id"), "(none)(none)");

  PropertySet bag("BASE");
  bag.Set("LEFT_MARGIN", "0");
  EXPECT_TRUE(list_.CopyTo("lumoray", &bag));
  EXPECT_EQ(bag.Get("left_margin") + bag.Get("id"), "4LUMORAY");
  EXPECT_FALSE(list_.CopyTo("303", &bag));
}

TEST_F(SettingsFileTest, IsReadAgainOnlyWhenItHasChanged) {
  host::SetClock(1'000'000);
  ASSERT_TRUE(list_.NeedsReload());
  ASSERT_TRUE(Load("<a><SENSOR id='2000' n='1'/></a>"));
  EXPECT_FALSE(list_.NeedsReload());
  const int opens = host::CountsOfFiles().opens;
  EXPECT_TRUE(list_.Load());
  EXPECT_EQ(host::CountsOfFiles().opens, opens);
  host::SetFileTimes(kSettings, 1'000'000, 1'000'009);
  EXPECT_TRUE(list_.NeedsReload());
  EXPECT_TRUE(Load("<a><SENSOR id='2000' n='22'/></a>"));
  EXPECT_EQ(Value("2000", "n"), "22");
  EXPECT_FALSE(Load("<a>"));
  EXPECT_EQ(list_.Find("2000"), nullptr);
  EXPECT_TRUE(list_.NeedsReload());
}

TEST_F(SettingsFileTest, SaysWhatIsWrongWithABadFile) {
  const std::string notFound = "The settings file '"s + kSettings +
                               "' could not be found.  Please check the installation and then "
                               "retry the operation.";
  const std::string notUnderstood = "The settings file '"s + kSettings +
                                    "' could not be properly interrupted.  Please check the "
                                    "installation and then retry the operation.";
  EXPECT_FALSE(list_.Load());
  EXPECT_EQ(LastErrorText(), notFound);

  std::string deep, wide, many;
  for (int i = 0; i < 100'000; ++i) deep += "<a>";
  for (int i = 0; i < 1200; ++i) {
    wide += " a" + std::to_string(i) + "=''";
    many += "<SENSOR id=''/>";
  }
  const std::string kBad[] = {"nonsense",
                              "<a><SENSOR id='2000'/>",
                              "<a><SENSOR id=2000/></a>",
                              "<a><SENSOR id='2000'/>\0</a>"s,
                              "\0"s,
                              deep,
                              "<a>" + many + "<Debug" + wide + "/></a>",  // too much when copied
                              "<a/>" + std::string(16 * 1024 * 1024, ' ')};
  for (const std::string& text : kBad) {
    SetErrorText(0, "");
    EXPECT_FALSE(Load(text)) << text.substr(0, 40);
    EXPECT_EQ(LastErrorText(), notUnderstood) << text.substr(0, 40);
    EXPECT_EQ(list_.Find(""), nullptr);
  }
  EXPECT_FALSE(Load(""));
  EXPECT_EQ(LastErrorText(), notFound);
  EXPECT_TRUE(Load("<a><SENSOR id='' " + wide + "/><Debug" + wide + "/></a>"));
  EXPECT_TRUE(Load("<none/>"));
  host::DenyOpening(kSettings);
  EXPECT_FALSE(Load("<other/>"));
  EXPECT_EQ(LastErrorText(), notFound);
}

// A device that nothing was ever opened for.
class DevicePropertyTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }

  Held<Device> Make(Device* device) {
    device->AddRef();
    return Held<Device>(device);
  }

  Held<Device> device_ = Make(NewDevice2000("none", MakeUsbPortPipe(), nullptr));
  Held<Device> device303_ = Make(NewDeviceZYR303("none", MakeUsbPortPipe(), nullptr));
};

TEST_F(DevicePropertyTest, RefusesNumbersOutOfRange) {
  const struct {
    const char* name;
    std::vector<const char*> good;
    std::vector<const char*> bad;
    const char* text;
  } kCases[] = {
      {"sensitivity", {"1", "7"}, {"0", "8", "-1", "x"}, "An invalid sensitivity value of "},
      {"Threshold", {"1", "255"}, {"0", "256", ""}, "An invalid threshold value of "},
      {"integration_time",
       {"200", "1000"},
       {"199", "1001"},
       "An invalid integration time value of "},
      {"corner_color",
       {"0", "65535", "red"},
       {"-1", "65536", "4294967296"},
       "An invalid corner color value of "},
      {"capture_timeout", {"-1", "x", "99999999999"}, {}, ""},
      {"flush_time", {"-1", ""}, {}, ""},
  };
  for (const auto& c : kCases) {
    for (const char* value : c.good) {
      EXPECT_EQ(device_->SetProperty(c.name, value), kOk) << c.name << " " << value;
      EXPECT_EQ(device_->GetProperty(c.name), value);
    }
    for (const char* value : c.bad) {
      EXPECT_EQ(device_->SetProperty(c.name, value), DEV_E_BAD_VALUE) << c.name << " " << value;
      EXPECT_EQ(LastErrorText(), c.text + std::to_string(DecimalOf(value)) + " was specified");
      EXPECT_EQ(device_->GetProperty(c.name), c.good.back());
    }
  }
}

TEST_F(DevicePropertyTest, StartsWithWhatAcceptsToBeEmpty) {
  EXPECT_EQ(device_->SetProperty("Device_Name", "USB-2000"), kOk);
  EXPECT_EQ(device_->GetProperty("device_NAME"), "usb-2000");
  EXPECT_EQ(device_->GetProperty("sensitivity") + device_->GetProperty("nothing"), "");
  EXPECT_EQ(device_->SetProperty("sensor_id", "Hand_B"), kOk);  // though no command can be sent
  EXPECT_EQ(device_->GetProperty("sensor_size") + device_->GetProperty("sensor_id"), "Bhand_b");
  EXPECT_EQ(device_->SetProperty("hw_correction_data", "TRUE"), kOk);
  EXPECT_EQ(device_->SetProperty("sensor_id", "x"), DEV_E_BAD_VALUE);
}

TEST_F(DevicePropertyTest, Of303AreTheSensorsOwn) {
  for (const char* name : {"binned", "Sensor_ID", "hw_correction_data"}) {
    EXPECT_EQ(device303_->SetProperty(name, "true"), kOk);
  }
  EXPECT_EQ(device303_->GetProperty("sensor_id") + device303_->GetProperty("binned"), "");
  EXPECT_EQ(device303_->GetProperty("hw_correction_data"), "true");
  EXPECT_EQ(device303_->SetProperty("threshold", "0"), DEV_E_BAD_VALUE);
  EXPECT_EQ(device_->IsDevice2000Family() * 10 + device_->IsDeviceZYR303Family(), 10);
  EXPECT_EQ(device303_->IsDevice2000Family() * 10 + device303_->IsDeviceZYR303Family(), 1);
}

TEST_F(DevicePropertyTest, PixelPitchGivesTheResolution) {
  const auto dpi = [this](const char* id, const char* pitch) {
    device_->SetProperty("id", id);
    device_->SetProperty("micron_resX", pitch);
    device_->SetProperty("micron_resY", "33");
    return device_->GetDpiX();
  };
  // Size B is never read at full resolution.
  device_->SetProperty("sensor_id", "b");
  EXPECT_EQ(dpi("2000", "22.5"), 564);
  EXPECT_EQ(device_->GetDpiY(), 385);
  for (const char* none : {"", "0", "-22.5", "nan", "inf", "1e999", "pitch"}) {
    EXPECT_EQ(dpi("2000", none), 282) << none;
    EXPECT_EQ(dpi("LUMORAY", none), 770) << none;
  }
  EXPECT_EQ(dpi("x", "1e-300"), 65535);
  EXPECT_EQ(dpi("x", "1e300"), 1);
  device_->SetProperty("sensor_id", "d");
  EXPECT_EQ(dpi("2000", "22.5"), 1129);
}

TEST_F(DevicePropertyTest, AnswersForItsInterfacesAndOutlivesAnUnheldRelease) {
  void* same = nullptr;
  EXPECT_EQ(device_->QueryInterface(kDeviceInterface, &same), kOk);
  EXPECT_EQ(same, device_.get());
  EXPECT_EQ(device_->Release(), 1u);
  EXPECT_EQ(device_->QueryInterface(kSensorImageInterface, &same), kNoInterface);
  Device* unheld = NewDevice2000("none", MakeUsbPortPipe(), nullptr);
  EXPECT_EQ(unheld->Release(), 0u);
  Make(unheld);
}

}  // namespace
}  // namespace zyr
