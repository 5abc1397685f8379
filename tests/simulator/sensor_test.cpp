// The simulated sensor, byte by byte.
#include "simulator/sensor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "simulator/sensor_read_out.h"

namespace zyr::test {
namespace {

using namespace simulator;
using Bytes = std::vector<uint8_t>;

// A sensor on the end of either driver, spoken to in bytes.
class Wire {
 public:
  Wire(const Setup& setup, Generation generation) : generation_(generation) {
    sensor.Plug(setup, generation);
  }

  Answer Reset() {
    const bool pipes = generation_ == kPipeDriver;
    return sensor.Control(now, pipes ? kPipeReset : kEndpointReset, nullptr, 0, nullptr, 0);
  }
  Answer Send(std::initializer_list<uint8_t> command) {
    Bytes bytes(command);
    return Transfer(0, &bytes);
  }
  // What arrives; `answer` tells how.
  Bytes Receive(uint32_t pipe, size_t length) {
    Bytes bytes(length, kUntouched);
    answer = Transfer(pipe, &bytes);
    const uint32_t header = generation_ == kPipeDriver ? 0 : kRecordSize;
    bytes.resize(answer.returned < header ? 0 : answer.returned - header);
    return bytes;
  }
  Bytes Status() { return Receive(1, 64); }
  // Upper four bits of the CCD status, or the kind of another packet.
  int State() {
    const Bytes packet = Status();
    return packet[0] == 0x83 ? packet[1] & 0xF0 : 0x100 | packet[0];
  }
  Bytes Bulk(size_t length) { return Receive(3, length); }

  Sensor sensor;
  uint64_t now = 1'000'000;
  Answer answer{};

  static constexpr uint8_t kUntouched = 0xEE;

 private:
  Answer Transfer(uint32_t pipe, Bytes* payload) {
    const auto size = static_cast<uint32_t>(payload->size());
    if (generation_ == kPipeDriver) {
      const uint8_t name[] = {static_cast<uint8_t>(pipe), 0, 0, 0};
      return sensor.Control(now, kPipeTransfer, name, 4, payload->data(), size);
    }
    constexpr uint8_t kEndpoints[] = {0x01, 0x81, 0x02, 0x86};
    Bytes record(kRecordSize);
    record[0x0D] = kEndpoints[pipe];
    record[0x1E] = kRecordSize;
    for (int i = 0; i < 4; ++i) record[0x22 + i] = static_cast<uint8_t>(size >> 8 * i);
    record.insert(record.end(), payload->begin(), payload->end());
    const auto total = static_cast<uint32_t>(record.size());
    const Answer result =
        sensor.Control(now, kEndpointTransfer, record.data(), total, record.data(), total);
    payload->assign(record.begin() + kRecordSize, record.end());
    return result;
  }

  Generation generation_;
};

// A sensor whose every byte and pixel can be told from the others.
class SensorTest : public testing::Test {
 protected:
  SensorTest() : memory_(kMemorySize) {
    for (size_t i = 0; i < memory_.size(); ++i) memory_[i] = static_cast<uint8_t>(i * 37 >> 3);
  }

  simulator::Setup Of(Family family, Size size) {
    const Geometry geometry = GeometryOf(family, size);
    normal_.resize(size_t{geometry.width} * geometry.height);
    dark_.resize(normal_.size());
    for (size_t i = 0; i < normal_.size(); ++i) {
      normal_[i] = static_cast<uint16_t>(i * 2654435761u >> 12 & 0xFFF);
      dark_[i] = static_cast<uint16_t>(i * 40503u >> 7 & 0xFFF);
    }
    simulator::Setup setup;
    setup.family = family;
    setup.size = size;
    for (uint8_t i = 0; i < 8; ++i) setup.macId[i] = static_cast<uint8_t>(0xA0 + i);
    setup.memory = memory_.data();
    setup.normal = normal_.data();
    setup.dark = dark_.data();
    setup.timing = {10, 0, 300'000, 400'000, 5'000'000};
    return setup;
  }

  Bytes memory_;
  std::vector<uint16_t> normal_;
  std::vector<uint16_t> dark_;
};

class SensorByDriver : public SensorTest, public testing::WithParamInterface<Generation> {};
INSTANTIATE_TEST_SUITE_P(Drivers, SensorByDriver, testing::Values(kPipeDriver, kEndpointDriver));

// That it answers as it should is seen where a device brings it up.
TEST_P(SensorByDriver, AResetForgetsAllButThePower) {
  Wire wire(Of(kFamily2000, kSizeD), GetParam());
  wire.Send({0x08, 1});
  wire.Send({0x05, 0x99});
  wire.Send({0x02, 0x2F});
  wire.Send({0x0E, 0xAA, 0x55});
  EXPECT_EQ(wire.State(), 0x18E);
  EXPECT_EQ(wire.State(), 0x00) << "an answer is given once";
  const Commanded& commanded = wire.sensor.commanded();
  EXPECT_EQ(commanded.threshold + commanded.sizeCommand, 0x99u + 0x2F);
  wire.Send({0x0F});
  EXPECT_EQ(commanded.threshold + commanded.sizeCommand, 0u);
  EXPECT_EQ(commanded.power, 1u);
}

TEST_P(SensorByDriver, ReadsItsMemoryAsOneStream) {
  for (const Family family : {kFamily2000, kFamily303}) {
    Wire wire(Of(family, kSizeD), GetParam());
    const uint8_t code = family == kFamily2000 ? 0x0C : 0x0B;
    const uint32_t size = family == kFamily2000 ? 0x2000 : kMemorySize;
    const auto read = [&](int command) {
      wire.Send({static_cast<uint8_t>(command), 0, 9, static_cast<uint8_t>((size - 5) >> 8),
                 static_cast<uint8_t>(size - 5)});
      Bytes got = wire.Bulk(2);
      const Bytes rest = wire.Bulk(100);
      got.insert(got.end(), rest.begin(), rest.end());
      return got;
    };
    EXPECT_EQ(read(code ^ 0x07), Bytes()) << "the other family's";
    EXPECT_EQ(wire.answer.error, kDriverTimedOut);
    EXPECT_EQ(wire.answer.delay, 5'000'010u);
    Bytes expected(memory_.begin() + size - 5, memory_.begin() + size);
    expected.insert(expected.end(), 4, 0xFF);  // behind its end it reads as erased
    EXPECT_EQ(read(code), expected);

    simulator::Setup without = Of(family, kSizeD);
    without.hasMemory = 0;
    wire.sensor.Plug(without, GetParam());
    wire.Send({0x02, 0xC0});
    EXPECT_EQ(wire.Status()[0], 0);
    EXPECT_EQ(read(code), Bytes(9, 0xFF));
  }
}

// The whole life, and what of it the host sees.
TEST_P(SensorByDriver, LivesThroughAnExposure) {
  struct Case {
    Family family;
    uint8_t sizeCommand;
    uint32_t frameBytes;
    int first, second;
  };
  for (const Case& c : {Case{kFamily2000, 0x21, 1600 * 2312, 0x40, 0x60},
                        Case{kFamily2000, 0x23, 800 * 2312, 0x30, 0x50},
                        Case{kFamily303, 0x29, 1070 * 1596, 0x40, 0x60}}) {
    Wire wire(Of(c.family, kSizeD), GetParam());
    Sensor& sensor = wire.sensor;
    wire.Send({0x02, c.sizeCommand});
    sensor.Expose(wire.now);
    EXPECT_EQ(wire.State(), 0x00) << "only an armed sensor sees X-rays";
    wire.Send({0x02, 0x20, 0x40});
    EXPECT_TRUE(sensor.IsArmed(wire.now));
    EXPECT_EQ(sensor.commanded().sensitivity, 0x40u);
    wire.now += 3'600'000'000;
    EXPECT_EQ(wire.State(), 0x10) << "it waits as long as it must";

    sensor.Expose(wire.now);
    EXPECT_FALSE(sensor.IsArmed(wire.now));
    EXPECT_EQ(wire.State(), 0x20);
    EXPECT_TRUE(wire.Bulk(2).empty()) << "too early";
    wire.now += 300'000;
    EXPECT_EQ(wire.State(), c.first);
    EXPECT_EQ(wire.Bulk(c.frameBytes - 1).size(), c.frameBytes - 1);
    EXPECT_EQ(wire.State(), c.first);
    EXPECT_EQ(wire.Bulk(2).size(), 1u);
    EXPECT_EQ(wire.State(), 0x20);
    wire.now += 400'010;
    EXPECT_EQ(wire.State(), c.second);
    EXPECT_EQ(wire.Bulk(c.frameBytes).size(), c.frameBytes);
    EXPECT_EQ(wire.State(), 0x00);
    EXPECT_EQ(sensor.statistics().exposures, 1u);
    EXPECT_EQ(sensor.statistics().framesRead, 2u);
  }
}

TEST_F(SensorTest, ExposesByItselfAndByHand) {
  simulator::Setup setup = Of(kFamily303, kSizeC);
  setup.timing.exposureAfter = 1'000'000;
  Wire wire(setup, kPipeDriver);
  const auto begins = [&wire](const std::vector<uint16_t>& frame) {
    const Bytes bytes = wire.Bulk(100);
    size_t equal = 0;
    for (size_t i = 0; i < bytes.size() / 2; ++i) {
      equal += ((bytes[2 * i] | bytes[2 * i + 1] << 8) & 0xFFF) == frame[i];
    }
    return equal == 50;
  };
  wire.Send({0x02, 0x20, 0x70});
  wire.now += 999'999;
  EXPECT_TRUE(wire.sensor.IsArmed(wire.now));
  wire.now += 1;
  EXPECT_FALSE(wire.sensor.IsArmed(wire.now));
  wire.now += 300'000;
  EXPECT_TRUE(begins(normal_));

  wire.Send({0x02, 0x70});  // a flush takes the rest of the frame away
  EXPECT_EQ(wire.State(), 0x00);
  wire.Send({0x02, 0xF0});
  EXPECT_EQ(wire.State(), 0x00) << "not armed";
  wire.Send({0x02, 0x20, 0x70});
  wire.Send({0x02, 0xF0});
  wire.now += 300'000;
  EXPECT_TRUE(begins(dark_)) << "no X-rays";
  EXPECT_EQ(wire.sensor.statistics().exposures, 2u);
  EXPECT_EQ(wire.sensor.statistics().framesRead, 0u);

  // Nobody reads on: the first frame is given up, the second one stays.
  wire.now += setup.timing.driverTimeout + setup.patience - 1;
  EXPECT_EQ(wire.State(), 0x40);
  wire.now += 1;
  EXPECT_EQ(wire.State(), 0x20);
  wire.now += 400'000;
  EXPECT_EQ(wire.State(), 0x60);
  wire.now += 3'600'000'000;
  EXPECT_EQ(wire.State(), 0x60);
  EXPECT_TRUE(begins(dark_));
}

// What the frames hold is seen where the device corrects them; here, where they are cut.
TEST_F(SensorTest, AFrameComesInAnyPiecesAndAsTheHostWantsIt) {
  Wire wire(Of(kFamily2000, kSizeA), kPipeDriver);
  const auto frame = [&wire](size_t piece) {
    wire.Send({0x02, 0x20, 0x10});
    wire.sensor.Expose(wire.now);
    wire.now += 300'000;
    Bytes bytes;
    for (Bytes part(piece); part.size() == piece;) {
      part = wire.Bulk(piece);
      bytes.insert(bytes.end(), part.begin(), part.end());
    }
    return bytes;
  };
  const Bytes whole = frame(4'000'000);
  ASSERT_EQ(whole.size(), 578u * 1872);
  EXPECT_EQ(frame(4097), whole);  // ends of reads need not be ends of words or rows
  uint32_t junk = 0;
  for (size_t i = 1; i < whole.size(); i += 2) junk |= whole[i] & 0xF0;
  EXPECT_EQ(junk, 0xF0u);

  wire.Send({0x02, 0x21});  // of another sensor
  const Bytes large = frame(4'000'000);
  ASSERT_EQ(large.size(), 1600u * 2312);
  EXPECT_EQ((large[12] | large[13] << 8) & 0xFFF, normal_[0]);
  EXPECT_EQ((large[2 * 468 + 12] | large[2 * 468 + 13] << 8) & 0xFFF, 0) << "past its edge";
}

TEST_P(SensorByDriver, FailsAsToldOnce) {
  const simulator::Setup setup = Of(kFamily2000, kSizeD);
  Wire wire(setup, GetParam());
  const auto strike = [&](FaultKind kind, uint32_t transfer, uint32_t value) {
    wire.sensor.SetFault({kind, transfer, value});
  };
  strike(kFaultError, 1, 1117);
  EXPECT_EQ(wire.Send({0x05, 1}).error, 0u) << "the second one is meant";
  EXPECT_EQ(wire.Send({0x05, 2}).error, 1117u);
  strike(kFaultShort, 0, 1);
  EXPECT_EQ(wire.Send({0x05, 4}).error, 0u);
  EXPECT_EQ(wire.sensor.commanded().threshold, 1u) << "neither arrived";
  strike(kFaultWrongByte, 0, 5);  // the second of two bytes
  wire.Send({0x05, 0x0F});
  EXPECT_EQ(wire.sensor.commanded().threshold, 0xF0u);

  wire.Send({0x06});
  strike(kFaultSilence, 0, 0);
  EXPECT_TRUE(wire.Bulk(4).empty());
  EXPECT_EQ(wire.answer.error, kDriverTimedOut);
  strike(kFaultShort, 0, 3);
  EXPECT_EQ(wire.Bulk(4), (Bytes{0xA0, 0xA1, 0xA2}));
  strike(kFaultWrongByte, 0, 6);
  EXPECT_EQ(wire.Bulk(4), (Bytes{0xA4, 0xA5, 0xA6 ^ 0xFF, 0xA7})) << "what was cut off is lost";

  strike(kFaultUnplug, 0, 0);
  EXPECT_EQ(wire.Reset().unplug, 1u);
  EXPECT_EQ(wire.Reset().error, kDriverNotConnected);
  wire.sensor.Plug(setup, GetParam());
  EXPECT_EQ(wire.Reset().error, 0u);
}

TEST_F(SensorTest, RefusesWhatItsDriverDoesNotKnow) {
  Wire pipes(Of(kFamily2000, kSizeD), kPipeDriver);
  Wire endpoints(Of(kFamily2000, kSizeD), kEndpointDriver);
  const auto call = [](Wire& wire, uint32_t code, const Bytes& input, Bytes output) {
    return wire.sensor
        .Control(0, code, input.data(), static_cast<uint32_t>(input.size()), output.data(),
                 static_cast<uint32_t>(output.size()))
        .error;
  };
  EXPECT_EQ(call(pipes, kEndpointReset, {}, {}), kDriverInvalidFunction);
  EXPECT_EQ(call(endpoints, kPipeTransfer, {1, 0, 0, 0}, Bytes(4)), kDriverInvalidFunction);
  for (const Bytes& input : {Bytes{1, 0, 0}, Bytes{4, 0, 0, 0}}) {
    EXPECT_EQ(call(pipes, kPipeTransfer, input, Bytes(4)), kDriverInvalidParameter);
  }
  uint8_t pipe[] = {1, 0, 0, 0};
  EXPECT_EQ(pipes.sensor.Control(0, kPipeTransfer, pipe, 4, nullptr, 4).error,
            kDriverInvalidParameter);
  EXPECT_EQ(pipes.sensor.Control(0, kPipeTransfer, nullptr, 4, pipe, 4).error,
            kDriverInvalidParameter);

  const auto record = [&](size_t inputSize, size_t outputSize, uint8_t endpoint = 0x81,
                          uint8_t offset = kRecordSize) {
    Bytes input(kRecordSize + 4);
    input[0x0D] = endpoint;
    input[0x1E] = offset;
    input[0x22] = 4;
    input.resize(inputSize);
    return call(endpoints, kEndpointTransfer, input, Bytes(outputSize));
  };
  EXPECT_EQ(record(42, 42), 0u);
  EXPECT_EQ(record(37, 37), kDriverInvalidParameter);
  EXPECT_EQ(record(41, 41), kDriverInvalidParameter) << "shorter than the record says";
  EXPECT_EQ(record(42, 38), kDriverInvalidParameter);
  EXPECT_EQ(record(42, 42, 0x81, 0x27), kDriverInvalidParameter);
  EXPECT_EQ(record(42, 42, 0x83), kDriverInvalidParameter);
}

// Blocks of exactly the told size: the sanitizer sees every step beyond.
TEST_P(SensorByDriver, SurvivesAnything) {
  simulator::Setup setup = Of(kFamily2000, kSizeA);
  setup.timing = {1, 100, 100, 100, 100};
  setup.patience = 5'000;
  Wire wire(setup, GetParam());
  uint32_t state = 12345;
  const auto random = [&](uint32_t below) {
    state = state * 1664525 + 1013904223;
    return (state >> 8) % below;
  };
  constexpr uint32_t kCodes[] = {kPipeReset, kPipeTransfer, kEndpointReset, kEndpointTransfer, 0};
  for (int i = 0; i < 20'000; ++i) {
    wire.now += random(300);
    if (random(50) == 0) {
      wire.sensor.SetFault({static_cast<FaultKind>(random(5)), random(5), random(100)});
    }
    if (random(3) != 0) {  // something sensible, mostly
      constexpr uint8_t kBytes[] = {0x02, 0x20, 0x21, 0x2F, 0xF0, 0x0C, 0x06, 0x0E, 0xC0, 0x70};
      const auto byte = [&] { return kBytes[random(10)]; };
      wire.Send({byte(), byte(), byte(), byte(), byte()});
      wire.Receive(random(2) * 2 + 1, random(5000));
      continue;
    }
    Bytes input(random(60));
    Bytes output(random(60));
    for (uint8_t& byte : input) byte = static_cast<uint8_t>(random(3) == 0 ? random(256) : 0);
    const Answer answer = wire.sensor.Control(wire.now, kCodes[random(5)], input.data(),
                                              static_cast<uint32_t>(input.size()), output.data(),
                                              static_cast<uint32_t>(output.size()));
    ASSERT_LE(answer.returned, output.size());
  }
  EXPECT_GT(wire.sensor.statistics().exposures, 10u);
  EXPECT_TRUE(wire.sensor.IsPlugged());
}

}  // namespace
}  // namespace zyr::test
