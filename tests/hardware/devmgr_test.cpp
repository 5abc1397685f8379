#include "hardware/devmgr/dev_mgr.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "foundation/support/error.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/devmgr/device_path.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

using platform::host::BusDevice;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kDriverKey[] = "{36FC9E60-C465-11CF-8056-444553540000}\\0000";
constexpr char kDriverRegistryPath[] =
    "SYSTEM\\CurrentControlSet\\Control\\Class\\{36FC9E60-C465-11CF-8056-444553540000}\\0000";
constexpr char kId2000[] = "USB\\VID_082E&PID_2000\\0001";
constexpr char kId303[] = "USB\\VID_082E&PID_1005\\0001";

// As the system makes one of an instance identity.
std::string PathOf(std::string instanceId) {
  for (char& c : instanceId) c = c == '\\' ? '#' : static_cast<char>(std::tolower(c));
  return "\\\\?\\" + instanceId + "#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
}

// How the sensor behind a path behaves, and what was done to it.
struct Sensor {
  std::function<Result()> open = [] { return kOk; };
  std::string sensorId = "00010001A";
  std::function<void()> whileAsked = [] {};
  std::vector<std::string> calls;
  int devices = 0;  // that exist
};

// Where it counts: opened, closed and asked for its identity as the script has it.
class ScriptedDevice : public Device {
 public:
  ScriptedDevice(Sensor& sensor, const std::string& path, std::unique_ptr<UsbPort> port)
      : sensor_(sensor), path_(path), port_(std::move(port)) {
    ++sensor_.devices;
  }
  ~ScriptedDevice() override { --sensor_.devices; }

  uint32_t AddRef() override { return ++references_; }
  uint32_t Release() override {
    const uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  Result Open() override {
    sensor_.calls.push_back("open");
    port_->Open(path_);
    port_->Reset();
    return sensor_.open();
  }
  void Close() override { sensor_.calls.push_back("close"); }
  std::string GetProperty(const std::string&) override {
    sensor_.whileAsked();
    return sensor_.sensorId;
  }

  Result QueryInterface(const InterfaceId&, void**) override { return kNoInterface; }
  Result CaptureImage() override { return kNotImplemented; }
  void ManualTrigger() override {}
  Result GetImage(int32_t, float, SensorImage**) override { return kNotImplemented; }
  Result GetImage(int32_t, SensorImage**) override { return kNotImplemented; }
  Result GetImage(SensorImage**) override { return kNotImplemented; }
  int32_t GetDpiX() override { return 0; }
  int32_t GetDpiY() override { return 0; }
  Result SetProperty(const std::string&, const std::string&) override { return kNotImplemented; }
  int32_t IsDevice2000Family() override { return 0; }
  int32_t IsDeviceZYR303Family() override { return 0; }
  void Notify(const std::string&, int32_t, int32_t) override {}

 private:
  Sensor& sensor_;
  std::string path_;
  std::unique_ptr<UsbPort> port_;
  uint32_t references_ = 0;
};

struct RecordingDriver : platform::host::FakeDriver {
  explicit RecordingDriver(std::vector<uint32_t>* all) : codes(all) {}
  platform::DriverAnswer Control(uint32_t code, uint8_t*, size_t, uint8_t*, size_t) override {
    codes->push_back(code);
    return {true, 0};
  }
  std::vector<uint32_t>* codes;
};

class DevMgrTest : public ::testing::Test {
 protected:
  DevMgrTest() {
    platform::host::ResetAll();
    SetErrorText(0, "");
    LoadSettings("<settings><SENSOR id=\"2000\"/><SENSOR id=\"LumoRay\"/></settings>");
    InstallDriver(1);
  }
  ~DevMgrTest() override {
    manager.reset();
    for (const auto& [path, sensor] : sensors) EXPECT_EQ(sensor.devices, 0) << path;
    EXPECT_EQ(platform::host::OpenDriverHandles(), 0u);
    EXPECT_EQ(platform::host::ActiveMonitors(), 0u);
    EXPECT_EQ(platform::host::WaitCursorsStanding(), 0u);
    platform::host::ResetAll();
  }

  static void LoadSettings(const char* xml) {
    SensorSettings() = {};
    platform::host::PutFile("C:\\Windows\\TWAIN_32\\ZYR\\settings.xml", xml);
    EXPECT_TRUE(SensorSettings().Load()) << LastErrorText();
  }
  static void InstallDriver(uint16_t majorVersion) {
    platform::host::PokeString(platform::RootKey::kLocalMachine, kDriverRegistryPath, "NTMPDriver",
                               "zyrusb.sys");
    platform::host::VersionResource version;
    version.fixed = {majorVersion, 3, 0, 1};
    platform::host::SetVersionResource("C:\\Windows\\System32\\Drivers\\zyrusb.sys", version);
  }
  // On the bus, untold.
  Sensor& Plug(const std::string& instanceId) {
    const std::string path = PathOf(instanceId);
    platform::host::PutDriver(path, std::make_shared<RecordingDriver>(&codes));
    platform::host::PutOnBus({instanceId, path, "ZYR sensor", kDriverKey});
    return sensors[path];
  }
  static void Unplug(const std::string& instanceId) {
    platform::host::TakeDriver(PathOf(instanceId));
    platform::host::TakeFromBus(instanceId);
  }
  static void Tell(const std::string& instanceId, bool removed) {
    platform::host::AnnounceChange(PathOf(instanceId), removed);
  }
  std::unique_ptr<DevMgr> NewManager() {
    return std::make_unique<DevMgr>([this](uint16_t, const std::string& path,
                                           std::unique_ptr<UsbPort> port, const DeviceCallback&) {
      return new ScriptedDevice(sensors[path], path, std::move(port));
    });
  }
  // Instance identities that the manager lists.
  std::vector<std::string> Listed() {
    std::vector<std::string> listed;
    std::string name, instanceId, sensorId;
    for (uint32_t i = 0; manager->GetDevice(i, &name, &instanceId, &sensorId); ++i) {
      listed.push_back(instanceId);
    }
    EXPECT_EQ(manager->GetDeviceCount(), listed.size());
    return listed;
  }

  std::map<std::string, Sensor> sensors;  // by path
  std::vector<uint32_t> codes;            // that reached a driver
  std::unique_ptr<DevMgr> manager = NewManager();
};

TEST_F(DevMgrTest, OpensTheSensorsAmongOtherDevices) {
  Plug("USB\\VID_082E&PID_3030\\0001");
  Plug("USB\\VID_0820&PID_2000\\0001");
  Plug("USB\\ROOT_HUB20\\4&2");
  Plug(kId303);
  Plug("usb\\vid_082e&pid_2000\\lower").sensorId = "00010007D";
  for (const BusDevice& half : {BusDevice{"", PathOf("x"), "text", kDriverKey},
                                BusDevice{"USB\\VID_082E&PID_2000\\2", {}, "text", kDriverKey},
                                BusDevice{"USB\\VID_082E&PID_2000\\3", PathOf("y"), {}, kDriverKey},
                                BusDevice{"USB\\VID_082E&PID_2000\\4", PathOf("z"), "text", {}}}) {
    platform::host::PutOnBus(half);
  }
  EXPECT_EQ(manager->Initialize({}), 1);
  EXPECT_THAT(Listed(), ElementsAre(kId303, "usb\\vid_082e&pid_2000\\lower"));
  EXPECT_THAT(platform::host::ShownPrompts(), IsEmpty());
  EXPECT_EQ(platform::host::WaitCursorsShown(), 1u);

  std::string name = "untouched", instanceId, sensorId;
  EXPECT_FALSE(manager->GetDevice(2, &name, &instanceId, &sensorId));
  EXPECT_EQ(name, "untouched");
  ASSERT_TRUE(manager->GetDevice(0, &name, &instanceId, &sensorId));
  EXPECT_EQ(name, "LUMORAY");
  ASSERT_TRUE(manager->GetDevice(1, &name, &instanceId, &sensorId));
  EXPECT_EQ(name, "2000");
  EXPECT_EQ(sensorId, "00010007D");

  Plug("USB\\VID_082E&PID_2000\\late");
  EXPECT_EQ(manager->Initialize({}), 1);  // at once
  EXPECT_EQ(manager->GetDeviceCount(), 2u);

  LoadSettings("<settings><SENSOR id=\"LUMORAY\"/></settings>");
  manager = NewManager();
  EXPECT_EQ(manager->Initialize({}), 1);
  EXPECT_THAT(Listed(), ElementsAre(kId303));  // the other family is passed over silently
  EXPECT_THAT(platform::host::ShownPrompts(), IsEmpty());
}

TEST_F(DevMgrTest, TheDriversGenerationChoosesThePort) {
  constexpr uint32_t kPipeReset = 0x222031;
  constexpr uint32_t kEndpointReset = 0x220030;
  const auto resetCode = [&](std::optional<bool> wow64, std::function<void()> install) {
    platform::host::ClearRegistry();
    platform::host::ResetVersions();
    platform::host::SystemInfo info;
    info.wow64 = wow64;
    platform::host::SetSystemInfo(info);
    install();
    codes.clear();
    manager = NewManager();
    EXPECT_EQ(manager->Initialize({}), 1);
    return codes.empty() ? 0 : codes.at(0);
  };
  Plug(kId2000);
  const auto version = [](uint16_t major) { return [major] { InstallDriver(major); }; };
  EXPECT_EQ(resetCode(false, version(1)), kPipeReset);
  EXPECT_EQ(resetCode(false, version(3)), kEndpointReset);
  EXPECT_EQ(resetCode(std::nullopt, version(1)), kPipeReset);
  EXPECT_EQ(resetCode(true, version(1)), kEndpointReset);
  EXPECT_EQ(resetCode(true, [] {}), kEndpointReset);
  EXPECT_EQ(resetCode(false, version(2)), 0u);
  EXPECT_EQ(resetCode(false, version(0xFFFF)), 0u);
  EXPECT_EQ(resetCode(false, [] {}), 0u);
  EXPECT_EQ(resetCode(false, [] { InstallDriver(1), platform::host::ResetVersions(); }), 0u);
  EXPECT_THAT(platform::host::ShownPrompts(), IsEmpty());
}

TEST_F(DevMgrTest, ASensorThatFailsIsShownAndTheScanGoesOn) {
  Sensor& broken = Plug(kId303);
  broken.open = [] {
    SetErrorText(0, "No answer.");
    return DEV_E_HARDWARE;
  };
  Sensor& nameless = Plug("USB\\VID_082E&PID_2000\\0002");
  nameless.sensorId = "";
  Plug(kId2000);
  EXPECT_EQ(manager->Initialize({}), 1);
  EXPECT_THAT(Listed(), ElementsAre(kId2000));
  EXPECT_THAT(broken.calls, ElementsAre("open", "close"));
  EXPECT_THAT(nameless.calls, ElementsAre("open", "close"));
  EXPECT_EQ(broken.devices + nameless.devices, 0);
  const auto& shown = platform::host::ShownPrompts();
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(shown[0].title, "Unable To Use ZYR Hardware");
  EXPECT_EQ(shown[0].text, "The ZYR LUMORAY hardware could not be properly opened.\n\nNo answer.");
  EXPECT_EQ(shown[1].text,
            "The ZYR 2000 hardware could not be properly opened.  Please check the hardware and "
            "then retry the operation.");
}

TEST_F(DevMgrTest, FailuresOfTheSetUpCanBeTriedAgain) {
  using platform::MonitorStep;
  struct {
    MonitorStep step;
    const char* text;
  } const monitorFailures[] = {
      {MonitorStep::kRegisterClass,
       "The monitor class could not be registered with the operating system (OS error = 8)."},
      {MonitorStep::kCreateWindow, "The monitor class could not be created (OS error = 8)."},
      {MonitorStep::kRegisterNotification,
       "The monitor class could not be registered (OS error = 8)."},
  };
  for (const auto& failure : monitorFailures) {
    platform::host::FailMonitor({failure.step, 8});
    EXPECT_EQ(manager->Initialize({}), ResultOf(0x80070008));
    EXPECT_EQ(LastErrorText(), failure.text);
  }
  platform::host::FailEnumeration(5);
  EXPECT_EQ(manager->Initialize({}), ResultOf(0x80070005));
  EXPECT_EQ(LastErrorText(), "No devices could be located on this computer (OS error = 5).");
  platform::host::EndEnumerationWith(31);
  Plug(kId2000);
  EXPECT_EQ(manager->Initialize({}), ResultOf(0x8007001F));
  EXPECT_EQ(manager->GetDeviceCount(), 1u);
  EXPECT_EQ(platform::host::ActiveMonitors(), 1u);
  platform::host::EndEnumerationWith(0);
  EXPECT_EQ(manager->Initialize({}), 1);
}

TEST_F(DevMgrTest, FollowsPluggingAndUnplugging) {
  EXPECT_EQ(manager->Initialize({}), 1);
  Sensor& sensor = Plug(kId2000);
  Tell(kId2000, false);
  Tell(kId2000, false);
  EXPECT_THAT(Listed(), ElementsAre(kId2000));
  EXPECT_THAT(sensor.calls, ElementsAre("open"));
  Tell("USB\\VID_082E&PID_2000\\9999", true);
  platform::host::AnnounceChange("no path", true);
  platform::host::AnnounceChange("", false);
  platform::host::AnnounceChange("#", true);
  EXPECT_EQ(manager->GetDeviceCount(), 1u);

  Device* held = nullptr;
  EXPECT_EQ(manager->CreateDevice("usb\\vid_082e&pid_2000\\0001", &held), kOk);
  Unplug(kId2000);
  Tell(kId2000, true);
  EXPECT_EQ(manager->GetDeviceCount(), 0u);
  EXPECT_THAT(sensor.calls, ElementsAre("open", "close"));
  EXPECT_EQ(sensor.devices, 1);
  EXPECT_EQ(held->Release(), 0u);
  EXPECT_EQ(manager->CreateDevice(kId2000, &held), ResultOf(0x80004002));
  EXPECT_THAT(LastErrorText(), HasSubstr("Unable to find the interface to the selected hardware."));

  Plug(kId2000);
  Tell(kId2000, false);
  EXPECT_EQ(manager->Finalize(), 0);
  EXPECT_EQ(platform::host::ActiveMonitors(), 0u);
  EXPECT_EQ(manager->GetDeviceCount(), 1u);
  EXPECT_EQ(manager->Initialize({}), 1);
  EXPECT_EQ(platform::host::ActiveMonitors(), 0u);
}

TEST_F(DevMgrTest, ASensorThatComesDuringAScanIsFoundAfterIt) {
  Sensor& broken = Plug(kId303);
  broken.open = [] { return DEV_E_HARDWARE; };
  Plug(kId2000);
  bool inBox = false;
  platform::host::OnPrompt([&](const auto&) {
    EXPECT_FALSE(inBox) << "a scan within a scan";
    inBox = true;
    broken.open = [] { return kOk; };
    Plug("USB\\VID_082E&PID_2000\\0002");
    Tell("USB\\VID_082E&PID_2000\\0002", false);
    EXPECT_EQ(manager->GetDeviceCount(), 0u);
    inBox = false;
  });
  EXPECT_EQ(manager->Initialize({}), 1);
  EXPECT_THAT(Listed(), ElementsAre(kId2000, kId303, "USB\\VID_082E&PID_2000\\0002"));
  EXPECT_THAT(broken.calls, ElementsAre("open", "close", "open"));
  EXPECT_EQ(platform::host::WaitCursorsShown(), 1u);
}

TEST_F(DevMgrTest, ASensorThatGoesDuringAScanIsNotKept) {
  Sensor& early = Plug("USB\\VID_082E&PID_2000\\0000");
  Sensor& opening = Plug(kId2000);
  Sensor& later = Plug(kId303);
  opening.open = [&] {
    for (const char* gone : {"USB\\VID_082E&PID_2000\\0000", kId2000, kId303}) {
      Unplug(gone);
      Tell(gone, true);
    }
    return kOk;
  };
  EXPECT_EQ(manager->Initialize({}), 1);
  EXPECT_THAT(Listed(), IsEmpty());
  EXPECT_THAT(early.calls, ElementsAre("open", "close"));
  EXPECT_THAT(opening.calls, ElementsAre("open", "close"));
  EXPECT_THAT(later.calls, IsEmpty());
  EXPECT_THAT(platform::host::ShownPrompts(), IsEmpty());

  // Gone and back before the scan is over: opened anew.
  opening = {};
  opening.open = [&] {
    opening.open = [] { return kOk; };
    Tell(kId2000, true);
    Tell(kId2000, false);
    return kOk;
  };
  Plug(kId2000);
  Tell(kId2000, false);
  EXPECT_THAT(Listed(), ElementsAre(kId2000));
  EXPECT_THAT(opening.calls, ElementsAre("open", "close", "open"));
}

TEST_F(DevMgrTest, ASensorMayGoWhileItIsAskedForItsIdentity) {
  Sensor& sensor = Plug(kId2000);
  EXPECT_EQ(manager->Initialize({}), 1);
  sensor.whileAsked = [&] { Tell(kId2000, true); };
  std::string name, instanceId, sensorId;
  EXPECT_TRUE(manager->GetDevice(0, &name, &instanceId, &sensorId));
  EXPECT_EQ(instanceId, kId2000);
  EXPECT_EQ(sensor.devices, 0);
}

TEST_F(DevMgrTest, ReferencesAreOnlyCounted) {
  void* object = nullptr;
  EXPECT_EQ(manager->QueryInterface(kDevMgrInterface, &object), kOk);
  EXPECT_EQ(object, manager.get());
  EXPECT_EQ(manager->QueryInterface(kDeviceInterface, &object), kNoInterface);
  EXPECT_EQ(object, nullptr);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(manager->Release(), 0u);
}

TEST(DevicePath, UsbNumbersStandBehindTheirLabels) {
  const struct {
    const char* instanceId;
    uint16_t vendor, product;
  } cases[] = {
      {"USB\\VID_082E&PID_2000\\0001", 0x082E, 0x2000},
      {"usb\\vid_082e&pid_1005&mi_00\\5&1", 0x082E, 0x1005},
      {"USB\\PID_2000&VID_082E", 0x082E, 0x2000},
      {"USB\\VID_082E&PID_200", 0x082E, kNoUsbNumber},
      {"USB\\VID_08ZZ&PID_ZZZZ", 0x08, 0},
      {"VID", kNoUsbNumber, kNoUsbNumber},
      {"", kNoUsbNumber, kNoUsbNumber},
  };
  for (const auto& c : cases) {
    const UsbIdentity usb = UsbIdentityOf(c.instanceId);
    EXPECT_EQ(usb.vendor, c.vendor) << c.instanceId;
    EXPECT_EQ(usb.product, c.product) << c.instanceId;
  }
}

TEST(DevicePath, PathsNameTheirDevices) {
  EXPECT_EQ(InstanceIdOfPath("\\\\?\\usb#vid_082e&pid_2000#5&1f#{a5dcbf10}"),
            "USB\\VID_082E&PID_2000\\5&1F");
  EXPECT_EQ(InstanceIdOfPath("\\\\?\\usb#"), "USB");
  EXPECT_EQ(InstanceIdOfPath("ab#"), "");
  EXPECT_EQ(InstanceIdOfPath("#"), "");
  EXPECT_FALSE(InstanceIdOfPath("\\\\?\\usb"));
  EXPECT_FALSE(InstanceIdOfPath(""));
}

}  // namespace
}  // namespace zyr
