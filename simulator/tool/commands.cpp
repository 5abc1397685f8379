#include "simulator/tool/commands.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>

#include "simulator/physics.h"
#include "simulator/tool/record_text.h"
#include "simulator/tool/scene.h"
#include "tools/images/picture_file.h"
#include "tools/images/read_picture.h"

namespace zyr::simulator {
namespace {

constexpr uint32_t kStepMilliseconds = 10;
// The first sensor of its kind has Windows install a driver for it.
constexpr uint32_t kPatienceMilliseconds = 30'000;
constexpr size_t kMostSensors = 64;

SimOutcome Failed(std::string error) { return {std::move(error), {}}; }
SimOutcome Done(std::string report) { return {{}, std::move(report)}; }

using Bytes = std::vector<uint8_t>;

// A record and what follows it.
template <typename Record>
Bytes Message(const Record& record, const Bytes& content = {}) {
  Bytes bytes(sizeof record + content.size());
  std::memcpy(bytes.data(), &record, sizeof record);
  std::copy(content.begin(), content.end(), bytes.begin() + sizeof record);
  return bytes;
}

void AppendFrame(Bytes* bytes, const std::vector<uint16_t>& frame) {
  for (const uint16_t sample : frame) {
    bytes->push_back(static_cast<uint8_t>(sample));
    bytes->push_back(static_cast<uint8_t>(sample >> 8));
  }
}

template <typename Record>
Record RecordFor(const std::string& instance) {
  Record record = {};
  instance.copy(record.instance, kInstanceSize - 1);
  return record;
}

// The bus as long as a command runs.
class Session {
 public:
  Session(Machine* machine, BusControl* bus) : machine_(machine), bus_(bus) {}

  uint32_t Send(BusCode code, const Bytes& input) {
    Bytes nothing;
    return bus_->Send(code, input, &nothing);
  }
  template <typename Record>
  uint32_t SendRecord(BusCode code, const Record& record) {
    return Send(code, Message(record));
  }

  std::vector<StatRecord> Sensors() {
    Bytes output(kMostSensors * sizeof(StatRecord));
    std::vector<StatRecord> records;
    if (bus_->Send(kBusStat, {}, &output) != 0) return records;
    records.resize(output.size() / sizeof(StatRecord));
    if (!records.empty())
      std::memcpy(records.data(), output.data(), records.size() * sizeof(StatRecord));
    return records;
  }

  std::optional<StatRecord> Find(const std::string& instance) {
    for (const StatRecord& record : Sensors()) {
      if (instance == record.instance) return record;
    }
    return {};
  }

  // False if it did not come true within the time.
  bool WaitUntil(uint32_t milliseconds, const std::function<bool()>& condition) {
    for (uint32_t waited = 0; !condition(); waited += kStepMilliseconds) {
      if (waited >= milliseconds) return false;
      machine_->Sleep(kStepMilliseconds);
    }
    return true;
  }

 private:
  Machine* machine_;
  BusControl* bus_;
};

// The sensor that a command means; `error` tells why there is none.
std::optional<StatRecord> Meant(const SimOptions& options, Session* session, std::string* error) {
  std::vector<StatRecord> present = session->Sensors();
  std::erase_if(present, [&](const StatRecord& record) {
    return record.state == kLeaving ||
           (!options.instance.empty() && options.instance != record.instance);
  });
  if (present.size() == 1) return present[0];
  if (!options.instance.empty()) {
    *error = "No sensor " + options.instance + " is plugged in.";
  } else if (present.empty()) {
    *error = "No sensor is plugged in.";
  } else {
    *error = "Which sensor? --instance";
    for (const StatRecord& record : present) *error += std::string(" ") + record.instance;
  }
  return {};
}

std::string FirstFreeInstance(Session* session) {
  const std::vector<StatRecord> taken = session->Sensors();
  for (int number = 1;; ++number) {
    const std::string text = std::to_string(number);
    const std::string instance = std::string(4 - std::min<size_t>(4, text.size()), '0') + text;
    if (std::none_of(taken.begin(), taken.end(),
                     [&](const StatRecord& record) { return instance == record.instance; }))
      return instance;
  }
}

bool MakeScene(const SimOptions& options, Family family, Size size, uint64_t seed, Scene* scene,
               std::string* error) {
  if (options.frame.empty()) {
    *scene = SceneOfPhantom(family, size, seed);
    return true;
  }
  const std::optional<GreyPicture> picture = ReadPicture(options.frame, error);
  if (!picture) return false;
  *scene = SceneOfPicture(*picture, family, size, !options.signal);
  return true;
}

PlugRecord PlugRecordOf(const SimOptions& options, const DetectorOptions& detector,
                        const Setup& setup, uint32_t driverVersion) {
  auto record = RecordFor<PlugRecord>(options.instance);
  record.family = setup.family;
  record.size = setup.size;
  record.hasMemory = setup.hasMemory;
  record.generation = driverVersion < kEndpointDriver ? kPipeDriver : kEndpointDriver;
  std::copy(std::begin(setup.macId), std::end(setup.macId), record.macId);
  record.seed = detector.seed;
  record.exposure = detector.exposure;
  record.patience = options.patience;
  record.timing = options.timing;
  return record;
}

std::string WhyNotPlugged(uint32_t error, const std::string& instance) {
  if (error == kBusAlreadyPlugged) return "A sensor " + instance + " is plugged in already.";
  return "The bus refuses the sensor: " + SystemErrorText(error);
}

SimOutcome Plug(SimOptions options, Machine* machine, Session* session) {
  const uint32_t version = machine->InstalledDriverVersion();
  if (version == 0) return Failed("The sensors' driver file is missing. Try zyrsim install.");
  if (options.instance.empty()) options.instance = FirstFreeInstance(session);
  Scene scene;
  std::string why;
  if (!MakeScene(options, options.family, options.size, options.seed, &scene, &why))
    return Failed(why);
  const DetectorOptions terms = {options.family, options.size, options.seed,
                                 options.exposure.value_or(0), !options.noMemory};
  const Detector detector = MakeDetector(terms, scene);
  Bytes content = detector.memory;
  AppendFrame(&content, detector.normal);
  AppendFrame(&content, detector.dark);
  const Bytes message =
      Message(PlugRecordOf(options, terms, SetupOf(terms, detector), version), content);

  uint32_t error = 0;
  session->WaitUntil(kPatienceMilliseconds, [&] {
    error = session->Send(kBusPlug, message);
    return error != kBusStillLeaving;
  });
  if (error != 0) return Failed(WhyNotPlugged(error, options.instance));
  if (!session->WaitUntil(kPatienceMilliseconds, [&] {
        const std::optional<StatRecord> record = session->Find(options.instance);
        return record && record->state == kStarted;
      }))
    return Failed("Windows has not started the sensor within 30 seconds.");
  return Done(options.instance + ": " + IdentityText(options.family, options.instance) + ", " +
              detector.identity + "\n");
}

SimOutcome Unplug(const SimOptions&, const StatRecord& sensor, Session* session) {
  const uint32_t error =
      session->SendRecord(kBusUnplug, RecordFor<InstanceRecord>(sensor.instance));
  if (error != 0) return Failed("The sensor stays: " + SystemErrorText(error));
  if (!session->WaitUntil(kPatienceMilliseconds,
                          [&] { return !session->Find(sensor.instance).has_value(); }))
    return Failed("Windows has not noticed within 30 seconds.");
  return Done({});
}

SimOutcome Load(const SimOptions& options, const StatRecord& sensor, Session* session) {
  const auto family = static_cast<Family>(sensor.family);
  const auto size = static_cast<Size>(sensor.size);
  Scene scene;
  std::string why;
  if (!MakeScene(options, family, size, sensor.seed, &scene, &why)) return Failed(why);
  auto record = RecordFor<LoadRecord>(sensor.instance);
  record.exposure = options.exposure.value_or(sensor.exposure + 1);
  const Detector detector =
      MakeDetector({family, size, sensor.seed, record.exposure, sensor.hasMemory != 0}, scene);
  Bytes frames;
  AppendFrame(&frames, detector.normal);
  AppendFrame(&frames, detector.dark);
  const uint32_t error = session->Send(kBusLoad, Message(record, frames));
  return error == 0 ? Done({}) : Failed("The sensor does not take it: " + SystemErrorText(error));
}

SimOutcome Expose(const SimOptions& options, const StatRecord& sensor, Session* session) {
  if (!session->WaitUntil(options.waitSeconds * 1000, [&] {
        const std::optional<StatRecord> record = session->Find(sensor.instance);
        return record && record->armed != 0;
      }))
    return Failed("The sensor is not armed.");
  const uint32_t error =
      session->SendRecord(kBusExpose, RecordFor<InstanceRecord>(sensor.instance));
  return error == 0 ? Done({}) : Failed("No exposure: " + SystemErrorText(error));
}

SimOutcome SetFault(const SimOptions& options, const StatRecord& sensor, Session* session) {
  auto record = RecordFor<FaultRecord>(sensor.instance);
  record.fault = options.fault;
  const uint32_t error = session->SendRecord(kBusFault, record);
  return error == 0 ? Done({}) : Failed("No fault is set: " + SystemErrorText(error));
}

SimOutcome Stat(const SimOptions& options, Session* session) {
  std::string report;
  for (const StatRecord& record : session->Sensors()) {
    if (options.instance.empty() || options.instance == record.instance)
      report += StatusLine(record);
  }
  if (report.empty() && !options.instance.empty())
    return Failed("No sensor " + options.instance + " is plugged in.");
  return Done(report);
}

SimOutcome WriteScene(const SimOptions& options) {
  Scene scene;
  std::string why;
  if (!MakeScene(options, options.family, options.size, options.seed, &scene, &why))
    return Failed(why);
  const GreyPicture picture = PictureOfScene(scene);
  const auto ends = [&](const char* suffix) { return options.out.ends_with(suffix); };
  bool written = false;
  if (ends(".pgm")) {
    written = WriteBytes(EncodePgm(picture), options.out);
  } else if (ends(".tif")) {
    written = WritePicture(picture, PictureFormat::kTiff, options.out);
  } else {
    written = WritePicture(picture, PictureFormat::kPng, options.out);
  }
  return written ? Done({}) : Failed(options.out + " cannot be written.");
}

SimOutcome OnOneSensor(const SimOptions& options, Session* session,
                       SimOutcome (*run)(const SimOptions&, const StatRecord&, Session*)) {
  std::string why;
  const std::optional<StatRecord> sensor = Meant(options, session, &why);
  return sensor ? run(options, *sensor, session) : Failed(why);
}

SimOutcome OnBus(const SimOptions& options, Machine* machine) {
  const std::unique_ptr<BusControl> bus = machine->OpenBus();
  if (bus == nullptr) return Failed("The bus is not there. Try zyrsim install.");
  Session session(machine, bus.get());
  switch (options.command) {
    case SimCommand::kPlug:
      return Plug(options, machine, &session);
    case SimCommand::kUnplug:
      return OnOneSensor(options, &session, Unplug);
    case SimCommand::kLoad:
      return OnOneSensor(options, &session, Load);
    case SimCommand::kExpose:
      return OnOneSensor(options, &session, Expose);
    case SimCommand::kFault:
      return OnOneSensor(options, &session, SetFault);
    default:
      return Stat(options, &session);
  }
}

}  // namespace

SimOutcome RunSimCommand(const SimOptions& options, Machine* machine) {
  switch (options.command) {
    case SimCommand::kHelp:
      return Done(kSimHelp);
    case SimCommand::kInstall:
      return Failed(machine->Install(options.driverVersion));
    case SimCommand::kRemove:
      return Failed(machine->Remove());
    case SimCommand::kScene:
      return WriteScene(options);
    default:
      return OnBus(options, machine);
  }
}

}  // namespace zyr::simulator
