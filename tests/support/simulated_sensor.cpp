#include "tests/support/simulated_sensor.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <mutex>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/host/device_bus.h"
#include "platform/host/file_version.h"
#include "platform/host/files.h"
#include "platform/host/registry.h"
#include "platform/host/usb_driver.h"
#include "tests/support/transfer_log.h"

namespace zyr::test {
namespace {

namespace host = platform::host;
using simulator::Detector;
using simulator::DetectorOptions;

constexpr char kInterfaceClass[] = "#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
constexpr char kClassKeys[] = "system\\currentcontrolset\\control\\class\\";
constexpr char kUsbClass[] = "{36FC9E60-C465-11CF-8056-444553540000}\\";
constexpr char kSettingsFile[] = "C:\\Windows\\TWAIN_32\\ZYR\\settings.xml";

std::string LowerCase(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// "USB\VID_082E&PID_2000\0001" as the path of its interface.
std::string PathOf(std::string instanceId) {
  std::replace(instanceId.begin(), instanceId.end(), '\\', '#');
  return "\\\\?\\" + LowerCase(instanceId) + kInterfaceClass;
}

uint32_t ToAndFro(uint32_t position, uint32_t period) {
  const uint32_t phase = position % (2 * period);
  return phase < period ? phase : 2 * period - phase;
}

}  // namespace

simulator::Scene TestScene(const simulator::Geometry& geometry) {
  simulator::Scene scene{geometry.width, geometry.height, {}};
  scene.samples.reserve(size_t{geometry.width} * geometry.height);
  for (uint32_t y = 0; y < geometry.height; ++y) {
    for (uint32_t x = 0; x < geometry.width; ++x) {
      scene.samples.push_back(
          static_cast<uint16_t>(500 + 10 * ToAndFro(x, 150) + 10 * ToAndFro(y, 150)));
    }
  }
  return scene;
}

std::shared_ptr<const Detector> TestDetector(const DetectorOptions& options) {
  using Key = std::tuple<uint32_t, uint32_t, uint64_t, uint64_t, bool, bool>;
  static std::map<Key, std::shared_ptr<const Detector>> made;
  auto& detector = made[Key(options.family, options.size, options.seed, options.exposure,
                            options.memory, options.gain)];
  if (detector == nullptr) {
    const simulator::Geometry geometry = GeometryOf(options.family, options.size);
    detector = std::make_shared<Detector>(MakeDetector(options, TestScene(geometry)));
  }
  return detector;
}

// Transfers come on the thread of the code under test, a test's orders perhaps on another.
class SimulatedSensor::Driver : public host::FakeDriver {
 public:
  // `pullOut` takes the sensor off the bus.
  Driver(const SensorToPlug& what, std::shared_ptr<const Detector> detector,
         std::function<void()> pullOut)
      : detector_(std::move(detector)),
        pullOut_(std::move(pullOut)),
        pluggedAt_(platform::Ticks()) {
    simulator::Setup setup = SetupOf(what.detector, *detector_);
    setup.timing = what.timing;
    sensor_.Plug(setup, what.generation);
  }

  platform::DriverAnswer Control(uint32_t code, uint8_t* input, size_t inputSize, uint8_t* output,
                                 size_t outputSize) override {
    uint32_t sleep = 0;
    simulator::Answer answer{};
    {
      const std::lock_guard lock(mutex_);
      const std::vector<uint8_t> sent(input, input + inputSize);  // the answer may overwrite it
      answer = sensor_.Control(Now(), code, input, static_cast<uint32_t>(inputSize), output,
                               static_cast<uint32_t>(outputSize));
      LoggedTransfer call =
          DescribeCall(code, sent, {output, outputSize}, answer.error, answer.returned);
      call.milliseconds = platform::Ticks() - pluggedAt_;
      transfers_.push_back(std::move(call));
      owed_ += answer.delay;
      sleep = static_cast<uint32_t>(owed_ / 1000);
      owed_ %= 1000;
    }
    if (sleep > 0) platform::SleepFor(sleep);
    if (answer.unplug != 0) pullOut_();
    return {answer.error == 0, answer.error};
  }

  // `work` gets the sensor and the time.
  template <typename Work>
  auto WithSensor(Work work) {
    const std::lock_guard lock(mutex_);
    return work(sensor_, Now());
  }
  std::string Transcript() {
    const std::lock_guard lock(mutex_);
    return TranscriptOf(transfers_);
  }

 private:
  // In microseconds; what was too short to be slept has passed as well.
  uint64_t Now() const { return platform::Ticks() * 1000 + owed_; }

  std::mutex mutex_;
  std::shared_ptr<const Detector> detector_;
  std::function<void()> pullOut_;
  simulator::Sensor sensor_;
  uint64_t pluggedAt_;
  uint64_t owed_ = 0;  // microseconds of delay that are still to be slept
  std::vector<LoggedTransfer> transfers_;
};

SimulatedSensor::SimulatedSensor(const SensorToPlug& what)
    : what_(what), detector_(what.made != nullptr ? what.made : TestDetector(what.detector)) {
  const char* product = what.detector.family == simulator::kFamily303 ? "1005" : "2000";
  instanceId_ = std::string("USB\\VID_082E&PID_") + product + "\\" + what.instance;
  path_ = PathOf(instanceId_);
  driverKey_ = kUsbClass + what.instance;
  PutInPlace();
}

SimulatedSensor::~SimulatedSensor() { Unplug(); }

void SimulatedSensor::PutInPlace() {
  driver_ = std::make_shared<Driver>(what_, detector_, [path = path_, id = instanceId_] {
    host::TakeDriver(path);
    host::TakeFromBus(id);
  });
  const uint16_t version =
      what_.driverVersion != 0 ? what_.driverVersion : static_cast<uint16_t>(what_.generation);
  const std::string file = "zyrusb" + std::to_string(version) + ".sys";
  host::PokeString(platform::RootKey::kLocalMachine, kClassKeys + driverKey_, "NTMPDriver", file);
  host::VersionResource resource;
  resource.fixed = platform::VersionNumbers{version, 0, 0, 0};
  host::SetVersionResource("C:\\Windows\\System32\\Drivers\\" + file, resource);
  host::PutDriver(path_, driver_);
  host::PutOnBus({instanceId_, path_, "ZYR sensor", driverKey_});
}

// The driver's object survives: what it has seen can still be asked for.
void SimulatedSensor::Unplug() {
  driver_->WithSensor([](simulator::Sensor& sensor, uint64_t) { sensor.Unplug(); });
  host::TakeDriver(path_);
  host::TakeFromBus(instanceId_);
}

void SimulatedSensor::Replug() {
  Unplug();
  PutInPlace();
}

bool SimulatedSensor::IsPlugged() const {
  return driver_->WithSensor(
      [](simulator::Sensor& sensor, uint64_t) { return sensor.IsPlugged(); });
}

void SimulatedSensor::AnnounceArrival() const { host::AnnounceChange(path_, false); }
void SimulatedSensor::AnnounceRemoval() const { host::AnnounceChange(path_, true); }

void SimulatedSensor::Expose() {
  driver_->WithSensor([](simulator::Sensor& sensor, uint64_t now) { sensor.Expose(now); });
}

bool SimulatedSensor::IsArmed() const {
  return driver_->WithSensor(
      [](simulator::Sensor& sensor, uint64_t now) { return sensor.IsArmed(now); });
}

void SimulatedSensor::SetFault(simulator::FaultKind kind, uint32_t transfer, uint32_t value) {
  driver_->WithSensor([&](simulator::Sensor& sensor, uint64_t) {
    sensor.SetFault({kind, transfer, value});
  });
}

simulator::Statistics SimulatedSensor::Statistics() const {
  return driver_->WithSensor(
      [](simulator::Sensor& sensor, uint64_t) { return sensor.statistics(); });
}

simulator::Commanded SimulatedSensor::Commanded() const {
  return driver_->WithSensor(
      [](simulator::Sensor& sensor, uint64_t) { return sensor.commanded(); });
}

std::string SimulatedSensor::Transcript() const { return driver_->Transcript(); }

// Settings are read again only when the file's times differ.
void PutSensorSettings(const std::string& attributes) {
  static int64_t written = 1'000'000'000;
  host::PutFile(kSettingsFile, "<settings><SENSOR id=\"2000\" " + attributes +
                                   "/><SENSOR id=\"LUMORAY\" " + attributes + "/></settings>");
  ++written;
  host::SetFileTimes(kSettingsFile, written, written);
}

}  // namespace zyr::test
