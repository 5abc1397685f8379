#include "simulator/tool/commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <map>

#include "simulator/physics.h"
#include "simulator/tool/scene.h"
#include "tests/tools/words.h"
#include "tools/images/picture_file.h"
#include "tools/images/read_picture.h"

namespace zyr::simulator {
namespace {

using testing::HasSubstr;
using Bytes = std::vector<uint8_t>;

SimOptions Parse(const std::string& line) { return ParseSimOptions(test::Words(line)); }

template <typename Record>
Record RecordOf(const Bytes& bytes) {
  Record record = {};
  EXPECT_GE(bytes.size(), sizeof record);
  std::memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof record));
  return record;
}

// A machine with a bus that only takes down what it hears.
struct FakeMachine : Machine {
  struct Bus : BusControl {
    explicit Bus(FakeMachine* machine) : machine(machine) {}
    uint32_t Send(BusCode code, const Bytes& input, Bytes* output) override {
      if (code == kBusStat) {
        output->resize(machine->sensors.size() * sizeof(StatRecord));
        if (!output->empty()) std::memcpy(output->data(), machine->sensors.data(), output->size());
        return 0;
      }
      machine->sent[code].push_back(input);
      return machine->answer(code, input);
    }
    FakeMachine* machine;
  };

  std::unique_ptr<BusControl> OpenBus() override {
    return installed == 0 ? nullptr : std::make_unique<Bus>(this);
  }
  std::string Install(uint32_t driverVersion) override {
    installed = driverVersion;
    return {};
  }
  std::string Remove() override {
    installed = 0;
    return {};
  }
  uint32_t InstalledDriverVersion() override { return installed; }
  void Sleep(uint32_t milliseconds) override {
    slept += milliseconds;
    if (onSleep) onSleep();
  }

  StatRecord& AddSensor(const std::string& instance, Family family, Size size) {
    StatRecord record = {};
    instance.copy(record.instance, kInstanceSize - 1);
    record.family = family;
    record.size = size;
    record.hasMemory = 1;
    record.state = kStarted;
    return sensors.emplace_back(record);
  }
  std::string Run(const std::string& line) {
    const SimOptions options = Parse(line);
    EXPECT_EQ(options.error, "") << line;
    const SimOutcome outcome = RunSimCommand(options, this);
    return outcome.error + outcome.report;
  }

  uint32_t installed = 3;
  uint32_t slept = 0;
  std::vector<StatRecord> sensors;
  std::map<BusCode, std::vector<Bytes>> sent;
  std::function<uint32_t(BusCode, const Bytes&)> answer = [](BusCode, const Bytes&) { return 0; };
  std::function<void()> onSleep;
};

TEST(SimOptionsTest, WhatIsRefused) {
  const std::pair<const char*, const char*> cases[] = {
      {"plugin", "There is no command 'plugin'."},
      {"plug 2000", "plug needs SIZE."},
      {"plug 2001 D", "'2001' is no FAMILY."},
      {"plug 2000 E", "'E' is no SIZE."},
      {"plug 303 B", "303 sensors have size C or D."},
      {"plug 303 C D", "'D' is a word too many."},
      {"plug 2000 D --wait 1", "There is no option '--wait'."},
      {"plug 2000 D --instance 0123456789ABCDEF", "--instance does not take '0123456789ABCDEF'."},
      {"plug 2000 D --instance a&b", "--instance does not take 'a&b'."},
      {"plug 2000 D --timeout 3600001", "--timeout does not take '3600001'."},
      {"install --driver-version 4", "--driver-version does not take '4'."},
      {"fault error", "fault error needs --value with a system error number from 1 to 65535."},
      {"fault error --value 65536",
       "fault error needs --value with a system error number from 1 to 65535."},
      {"fault dust", "'dust' is no KIND."},
      {"scene 2000 A", "scene needs --out."},
  };
  for (const auto& [line, error] : cases) EXPECT_EQ(Parse(line).error, error) << line;
  EXPECT_EQ(Parse("plug 2000 D --help").command, SimCommand::kHelp);
  EXPECT_EQ(Parse("").command, SimCommand::kHelp);
}

// A picture in a file, quicker to have than a phantom.
class TinyFrame {
 public:
  TinyFrame() { WriteBytes(EncodePgm(picture), path); }
  ~TinyFrame() { std::filesystem::remove(path); }
  const GreyPicture picture{2, 3, 16, 0, 0, {100, 60000, 20000, 30000, 50000, 7}};
  const std::string path = (std::filesystem::temp_directory_path() / "zyr_sim_frame.pgm").string();
};

TEST(SimCommandsTest, PlugSendsTheWholeSensor) {
  const TinyFrame frame;
  FakeMachine machine;
  machine.installed = 2;
  machine.AddSensor("0001", kFamily2000, kSizeA).state = kLeaving;
  int refusals = 2;
  machine.answer = [&](BusCode, const Bytes&) {
    if (refusals-- > 0) return kBusStillLeaving;
    machine.AddSensor("0002", kFamily303, kSizeC).state = kPlugged;
    return BusError{};
  };
  machine.onSleep = [&] {
    if (machine.slept == 50) machine.sensors.back().state = kStarted;
  };
  const std::string said = machine.Run(
      "plug 303 c --seed 5 --exposure 3 --expose-after 20 --transfer 7 --patience 0 "
      "--frame " +
      frame.path);
  const Scene scene = SceneOfPicture(frame.picture, kFamily303, kSizeC, true);
  const Detector detector = MakeDetector({kFamily303, kSizeC, 5, 3, true}, scene);
  EXPECT_EQ(said, "0002: USB\\VID_082E&PID_1005\\0002, " + detector.identity + "\n");
  EXPECT_EQ(machine.slept, 50u);

  ASSERT_EQ(machine.sent[kBusPlug].size(), 3u);
  const Bytes& sent = machine.sent[kBusPlug].back();
  const auto record = RecordOf<PlugRecord>(sent);
  EXPECT_STREQ(record.instance, "0002");
  EXPECT_TRUE(record.family == kFamily303 && record.size == kSizeC && record.hasMemory == 1);
  EXPECT_EQ(record.generation, kPipeDriver);
  EXPECT_EQ(std::memcmp(record.macId, detector.macId, sizeof record.macId), 0);
  EXPECT_TRUE(record.seed == 5 && record.exposure == 3 && record.patience == 0);
  EXPECT_EQ(record.timing.exposureAfter, 20'000u);
  EXPECT_EQ(record.timing.transfer, 7u);
  EXPECT_EQ(record.timing.driverTimeout, 5'000'000u);
  Bytes content = detector.memory;
  for (const auto* pixels : {&detector.normal, &detector.dark}) {
    for (const uint16_t sample : *pixels) {
      content.push_back(static_cast<uint8_t>(sample % 256));
      content.push_back(static_cast<uint8_t>(sample / 256));
    }
  }
  EXPECT_EQ(content.size(), kMemorySize + size_t{4} * 616 * 944);
  EXPECT_TRUE(Bytes(sent.begin() + sizeof(PlugRecord), sent.end()) == content);
}

TEST(SimCommandsTest, WhyASensorIsNotPluggedIn) {
  const TinyFrame frame;
  FakeMachine machine;
  machine.answer = [](BusCode, const Bytes&) { return kBusAlreadyPlugged; };
  EXPECT_EQ(machine.Run("plug 303 C --instance ab1 --frame " + frame.path),
            "A sensor AB1 is plugged in already.");
  machine.answer = [](BusCode, const Bytes&) { return BusError{}; };
  EXPECT_EQ(machine.Run("plug 303 C --frame " + frame.path),
            "Windows has not started the sensor within 30 seconds.");
  EXPECT_EQ(machine.Run("plug 303 C --frame nowhere.png"), "nowhere.png cannot be opened.");
  machine.installed = 0;
  EXPECT_EQ(machine.Run("plug 303 C"), "The bus is not there. Try zyrsim install.");
}

TEST(SimCommandsTest, ACommandMeansOneSensor) {
  FakeMachine machine;
  EXPECT_EQ(machine.Run("unplug"), "No sensor is plugged in.");
  machine.AddSensor("0001", kFamily2000, kSizeA);
  machine.AddSensor("0002", kFamily303, kSizeC).state = kLeaving;
  EXPECT_EQ(machine.Run("fault wrong --at 4 --value 9"), "");
  machine.AddSensor("0003", kFamily303, kSizeC);
  EXPECT_EQ(machine.Run("fault short"), "Which sensor? --instance 0001 0003");
  EXPECT_EQ(machine.Run("fault short --instance 0002"), "No sensor 0002 is plugged in.");
  EXPECT_EQ(machine.Run("fault short --instance 0003"), "");
  ASSERT_EQ(machine.sent[kBusFault].size(), 2u);
  const auto wrong = RecordOf<FaultRecord>(machine.sent[kBusFault][0]);
  EXPECT_STREQ(wrong.instance, "0001");
  EXPECT_EQ(wrong.fault.kind, kFaultWrongByte);
  EXPECT_TRUE(wrong.fault.transfer == 4 && wrong.fault.value == 9);
  EXPECT_STREQ(RecordOf<FaultRecord>(machine.sent[kBusFault][1]).instance, "0003");

  // Unplugging waits until it is gone.
  machine.onSleep = [&] { machine.sensors.erase(machine.sensors.begin()); };
  EXPECT_EQ(machine.Run("unplug --instance 0001"), "");
  EXPECT_EQ(machine.slept, 10u);
}

TEST(SimCommandsTest, ExposureWaitsForAnArmedSensor) {
  FakeMachine machine;
  machine.AddSensor("0001", kFamily2000, kSizeA);
  EXPECT_EQ(machine.Run("expose --wait 2"), "The sensor is not armed.");
  EXPECT_EQ(machine.slept, 2000u);
  EXPECT_TRUE(machine.sent[kBusExpose].empty());
  machine.onSleep = [&] { machine.sensors[0].armed = 1; };
  EXPECT_EQ(machine.Run("expose --wait 2"), "");
  EXPECT_EQ(machine.sent[kBusExpose].size(), 1u);
}

TEST(SimCommandsTest, LoadIsTheNextExposureOfTheSameSensor) {
  const TinyFrame frame;
  FakeMachine machine;
  StatRecord& sensor = machine.AddSensor("0001", kFamily2000, kSizeA);
  sensor.seed = 8;
  sensor.exposure = 4;
  EXPECT_EQ(machine.Run("load --signal " + frame.path), "");
  const Bytes& sent = machine.sent[kBusLoad].back();
  EXPECT_EQ(RecordOf<LoadRecord>(sent).exposure, 5u);
  const Detector detector = MakeDetector({kFamily2000, kSizeA, 8, 5, true},
                                         SceneOfPicture(frame.picture, kFamily2000, kSizeA, false));
  ASSERT_EQ(sent.size(), sizeof(LoadRecord) + size_t{4} * 468 * 578);
  EXPECT_EQ(sent[sizeof(LoadRecord) + 2000], static_cast<uint8_t>(detector.normal[1000]));
}

TEST(SimCommandsTest, StatTellsAllSensors) {
  FakeMachine machine;
  EXPECT_EQ(machine.Run("stat"), "");
  StatRecord& sensor = machine.AddSensor("0001", kFamily2000, kSizeD);
  sensor.generation = kPipeDriver;
  sensor.statistics.bytesIn = 5'000'000'000;
  sensor.commanded.sizeCommand = 0x21;
  machine.AddSensor("0002", kFamily303, kSizeC).armed = 1;
  const std::string said = machine.Run("stat");
  EXPECT_THAT(said, HasSubstr("0001 family=2000 size=D calls=pipes memory=yes "));
  EXPECT_THAT(said, HasSubstr(" bytes-in=5000000000 "));
  EXPECT_THAT(said, HasSubstr(" size-command=0x21\n0002 family=303 size=C calls=endpoints "));
  EXPECT_THAT(said, HasSubstr(" state=started armed=yes "));
  EXPECT_EQ(machine.Run("stat --instance 0003"), "No sensor 0003 is plugged in.");
}

TEST(SimCommandsTest, SceneWritesWhatAPerfectSensorShows) {
  const TinyFrame frame;
  const std::string path = (std::filesystem::temp_directory_path() / "zyr_sim_scene.pgm").string();
  FakeMachine machine;
  machine.installed = 0;
  EXPECT_EQ(machine.Run("scene 2000 A --out " + path + " --frame " + frame.path), "");
  std::string error;
  const auto picture = ReadPicture(path, &error);
  std::filesystem::remove(path);
  ASSERT_TRUE(picture) << error;
  const Scene again = SceneOfPicture(*picture, kFamily2000, kSizeA, false);
  EXPECT_EQ(again.samples, SceneOfPicture(frame.picture, kFamily2000, kSizeA, true).samples);
  EXPECT_EQ(machine.Run("scene 2000 A --out /nowhere/at/all.png --frame " + frame.path),
            "/nowhere/at/all.png cannot be written.");
}

// The mean over the pixels that begin in the target pixel's share, one by one.
uint16_t SlowMean(const GreyPicture& picture, uint32_t left, uint32_t width, uint32_t x,
                  uint32_t targetWidth) {
  const uint32_t from = width * x / targetWidth;
  const uint32_t to = width * (x + 1) / targetWidth;
  double sum = 0;
  for (uint32_t i = from; i < to; ++i) sum += picture.samples[left + i];
  return static_cast<uint16_t>(static_cast<int>(sum / (to - from) + 0.5) >> 4);
}

TEST(SceneTest, PictureIsCutToShapeScaledAndTurnedOver) {
  // Its own geometry: only the depth changes.
  GreyPicture same{468, 578, 8, 0, 0, {}};
  for (uint32_t i = 0; i < 468 * 578; ++i) same.samples.push_back(static_cast<uint16_t>(i % 256));
  const Scene signal = SceneOfPicture(same, kFamily2000, kSizeA, false);
  const Scene film = SceneOfPicture(same, kFamily2000, kSizeA, true);
  ASSERT_EQ(signal.samples.size(), same.samples.size());
  for (size_t i = 0; i < 256; ++i) {
    const uint16_t inLastRow = same.samples[577 * 468 + i];
    EXPECT_EQ(signal.samples[i], (inLastRow * 4095 + 127) / 255) << "read from the bottom up";
    EXPECT_EQ(film.samples[i] + signal.samples[i], 4095);
  }

  // Wider than the sensor: what stands left and right of the middle is not seen.
  GreyPicture wide{3000, 1156, 16, 0, 0, {}};
  for (uint32_t i = 0; i < wide.width * wide.height; ++i)
    wide.samples.push_back(static_cast<uint16_t>(i % wide.width * 21));
  const Scene cut = SceneOfPicture(wide, kFamily2000, kSizeA, false);
  for (const uint32_t x : {0u, 1u, 233u, 466u, 467u}) {
    EXPECT_EQ(cut.samples[x], SlowMean(wide, (3000 - 936) / 2, 936, x, 468)) << x;
  }

  // Of a single pixel there is one value everywhere.
  const Scene one = SceneOfPicture({1, 1, 16, 0, 0, {0x1230}}, kFamily303, kSizeD, false);
  EXPECT_EQ(one.samples, std::vector<uint16_t>(size_t{798} * 1070, 0x123));
}

}  // namespace
}  // namespace zyr::simulator
