// The simulated sensor, byte by byte.
#include "simulator/sensor.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "simulator/sensor_read_out.h"
#include "tests/simulator/wire.h"

namespace zyr::test {
namespace {

using namespace simulator;

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

TEST_P(SensorByDriver, AnswersItsController) {
  Wire wire(Of(kFamily2000, kSizeD), GetParam());
  EXPECT_EQ(wire.Reset().error, 0u);
  wire.Send({0x08, 1});
  wire.Send({0x05, 0x99});
  wire.Send({0x04, 0x01, 0x2C});
  wire.Send({0x02, 0x2F});
  const Commanded& commanded = wire.sensor.commanded();
  EXPECT_EQ(commanded.power, 1u);
  EXPECT_EQ(commanded.threshold, 0x99u);
  EXPECT_EQ(commanded.integrationTime, 300u);
  EXPECT_EQ(commanded.sizeCommand, 0x2Fu);

  wire.Send({0x0E, 0xAA, 0x55});
  const Bytes echo = wire.Status();
  ASSERT_EQ(echo.size(), 64u);
  EXPECT_EQ(Bytes(echo.begin(), echo.begin() + 4), (Bytes{0x8E, 0xAA, 0x55, 0}));
  EXPECT_EQ(wire.State(), 0x00) << "an answer is given once";
  wire.Send({0x02, 0xC0});
  EXPECT_EQ(wire.State(), 0x101);

  wire.Send({0x06});
  EXPECT_EQ(wire.Bulk(8), (Bytes{0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7}));
  wire.Send({0x0F});
  EXPECT_EQ(commanded.sizeCommand, 0u);
  EXPECT_EQ(commanded.power, 1u);
  EXPECT_EQ(wire.sensor.statistics().resets, 1u);
}

TEST_P(SensorByDriver, ReadsItsMemoryAsOneStream) {
  struct Case {
    Family family;
    uint8_t command;
    uint32_t size;
  };
  for (const Case& c : {Case{kFamily2000, 0x0C, 0x2000}, Case{kFamily303, 0x0B, kMemorySize}}) {
    Wire wire(Of(c.family, kSizeD), GetParam());
    const uint32_t from = c.size - 5;
    const auto command = [&](uint8_t code) {
      wire.Send({code, 0, 9, static_cast<uint8_t>(from >> 8), static_cast<uint8_t>(from)});
    };
    command(static_cast<uint8_t>(c.command ^ 0x07));  // the other family's
    EXPECT_TRUE(wire.Bulk(9).empty());
    EXPECT_EQ(wire.answer.error, kDriverTimedOut);
    EXPECT_EQ(wire.answer.delay, 5'000'010u);

    command(c.command);
    Bytes expected(memory_.begin() + from, memory_.begin() + c.size);
    expected.insert(expected.end(), 4, 0xFF);  // behind its end it reads as erased
    Bytes got = wire.Bulk(2);
    const Bytes rest = wire.Bulk(100);
    EXPECT_EQ(rest.size(), 7u);
    got.insert(got.end(), rest.begin(), rest.end());
    EXPECT_EQ(got, expected);

    simulator::Setup without = Of(c.family, kSizeD);
    without.hasMemory = 0;
    wire.sensor.Plug(without, GetParam());
    wire.Send({0x02, 0xC0});
    EXPECT_EQ(wire.Status()[0], 0);
    command(c.command);
    EXPECT_EQ(wire.Bulk(9), Bytes(9, 0xFF));
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
  const auto pixels = [&](size_t count) {
    const Bytes bytes = wire.Bulk(2 * count);
    std::vector<uint16_t> values;
    for (size_t i = 0; i < bytes.size(); i += 2) {
      values.push_back(static_cast<uint16_t>((bytes[i] | bytes[i + 1] << 8) & 0xFFF));
    }
    return values;
  };
  const auto begins = [](const std::vector<uint16_t>& values, const std::vector<uint16_t>& frame) {
    return !values.empty() && std::equal(values.begin(), values.end(), frame.begin());
  };
  wire.Send({0x02, 0x20, 0x70});
  wire.now += 999'999;
  EXPECT_TRUE(wire.sensor.IsArmed(wire.now));
  wire.now += 1;
  EXPECT_FALSE(wire.sensor.IsArmed(wire.now));
  wire.now += 300'000;
  EXPECT_TRUE(begins(pixels(50), normal_));

  wire.Send({0x02, 0x70});  // a flush takes the rest of the frame away
  EXPECT_EQ(wire.State(), 0x00);
  wire.Send({0x02, 0xF0});
  EXPECT_EQ(wire.State(), 0x00) << "not armed";
  wire.Send({0x02, 0x20, 0x70});
  wire.Send({0x02, 0xF0});
  wire.now += 300'000;
  EXPECT_TRUE(begins(pixels(50), dark_)) << "no X-rays";
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
  EXPECT_TRUE(begins(pixels(50), dark_));
}

// As a host would undo it, pixel by pixel.
TEST_F(SensorTest, PacksEveryFrameForTheWire) {
  struct Case {
    Family family;
    Size size;
    uint8_t command;
    uint32_t width, height, wordsPerRow, lag, bin;
  };
  for (const Case& c : {Case{kFamily2000, kSizeA, 0x25, 468, 578, 936, 3, 1},
                        Case{kFamily2000, kSizeA, 0x27, 468, 578, 936, 3, 1},
                        Case{kFamily2000, kSizeB, 0x29, 578, 800, 1156, 3, 1},
                        Case{kFamily2000, kSizeB, 0x2B, 578, 800, 1156, 3, 1},
                        Case{kFamily2000, kSizeC, 0x2D, 890, 1420, 890, 6, 1},
                        Case{kFamily2000, kSizeC, 0x2F, 445, 710, 890, 3, 2},
                        Case{kFamily2000, kSizeD, 0x21, 1156, 1600, 1156, 6, 1},
                        Case{kFamily2000, kSizeD, 0x23, 578, 800, 1156, 3, 2},
                        Case{kFamily303, kSizeC, 0x25, 616, 944, 616, 0, 1},
                        Case{kFamily303, kSizeD, 0x29, 798, 1070, 798, 0, 1}}) {
    SCOPED_TRACE(testing::Message() << "family " << c.family << " command " << int{c.command});
    Wire wire(Of(c.family, c.size), kPipeDriver);
    wire.Send({0x02, c.command});
    wire.Send({0x02, 0x20, 0x10});
    wire.sensor.Expose(wire.now);
    wire.now += 300'000;
    Bytes bytes;
    for (size_t piece = 4097;;) {  // ends of reads need not be ends of words or rows
      const Bytes part = wire.Bulk(piece);
      bytes.insert(bytes.end(), part.begin(), part.end());
      if (part.size() < piece) break;
    }
    ASSERT_EQ(bytes.size(), 2 * c.wordsPerRow * c.height);

    const uint32_t step = c.wordsPerRow / c.width;
    const uint32_t fullWidth = c.width * c.bin;
    uint32_t wrong = 0;
    uint32_t junkSeen = 0;
    for (uint32_t i = c.lag; i < c.width * c.height; ++i) {
      const size_t word = (i / c.width * c.wordsPerRow) + (i % c.width) * step + step - 1;
      junkSeen |= bytes[2 * word + 1] & 0xF0;
      const uint32_t seen = (bytes[2 * word] | bytes[2 * word + 1] << 8) & 0xFFF;
      const uint32_t x = (i - c.lag) % c.width * c.bin;
      const uint32_t y = (i - c.lag) / c.width * c.bin;
      uint32_t sum = 0;
      for (uint32_t dy = 0; dy < c.bin; ++dy) {
        for (uint32_t dx = 0; dx < c.bin; ++dx) sum += normal_[(y + dy) * fullWidth + x + dx];
      }
      wrong += seen != (sum + c.bin * c.bin / 2) / (c.bin * c.bin);
    }
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(junkSeen, 0xF0u);
  }
}

TEST_F(SensorTest, FollowsAHostThatIsWrongAboutItsSize) {
  Wire wire(Of(kFamily2000, kSizeA), kPipeDriver);
  wire.Send({0x02, 0x21});
  wire.Send({0x02, 0x20, 0x10});
  wire.sensor.Expose(wire.now);
  wire.now += 300'000;
  const Bytes frame = wire.Bulk(1600 * 2312);
  ASSERT_EQ(frame.size(), 1600u * 2312);
  EXPECT_EQ((frame[12] | frame[13] << 8) & 0xFFF, normal_[0]);
  EXPECT_EQ((frame[2 * 468 + 12] | frame[2 * 468 + 13] << 8) & 0xFFF, 0) << "past its edge";
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
  EXPECT_EQ(wire.sensor.commanded().threshold, 1u) << "it did not arrive";
  EXPECT_EQ(wire.Send({0x05, 3}).error, 0u);

  strike(kFaultShort, 0, 1);
  EXPECT_EQ(wire.Send({0x05, 4}).error, 0u);
  EXPECT_EQ(wire.sensor.commanded().threshold, 3u);
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
  const Answer pulled = wire.Reset();
  EXPECT_EQ(pulled.error, kDriverNotConnected);
  EXPECT_EQ(pulled.unplug, 1u);
  EXPECT_EQ(wire.Reset().error, kDriverNotConnected);
  EXPECT_FALSE(wire.sensor.IsPlugged());
  wire.sensor.Plug(setup, GetParam());
  EXPECT_EQ(wire.Reset().error, 0u);
}

TEST_F(SensorTest, RefusesWhatItsDriverDoesNotKnow) {
  Bytes block(kRecordSize + 4);
  block[0x0D] = 0x81;
  block[0x1E] = kRecordSize;
  block[0x22] = 4;
  const auto call = [&](Sensor& sensor, uint32_t code, const uint8_t* input, uint32_t inputSize,
                        uint8_t* output, uint32_t outputSize) {
    return sensor.Control(0, code, input, inputSize, output, outputSize).error;
  };
  Wire pipes(Of(kFamily2000, kSizeD), kPipeDriver);
  EXPECT_EQ(call(pipes.sensor, kEndpointReset, nullptr, 0, nullptr, 0), kDriverInvalidFunction);
  const uint8_t pipe[] = {1, 0, 0, 0};
  const uint8_t noPipe[] = {4, 0, 0, 0};
  EXPECT_EQ(call(pipes.sensor, kPipeTransfer, pipe, 3, block.data(), 4), kDriverInvalidParameter);
  EXPECT_EQ(call(pipes.sensor, kPipeTransfer, pipe, 4, nullptr, 4), kDriverInvalidParameter);
  EXPECT_EQ(call(pipes.sensor, kPipeTransfer, nullptr, 4, block.data(), 4),
            kDriverInvalidParameter);
  EXPECT_EQ(call(pipes.sensor, kPipeTransfer, noPipe, 4, block.data(), 4),
            kDriverInvalidParameter);

  Wire endpoints(Of(kFamily2000, kSizeD), kEndpointDriver);
  Sensor& sensor = endpoints.sensor;
  EXPECT_EQ(call(sensor, kPipeTransfer, pipe, 4, block.data(), 4), kDriverInvalidFunction);
  const auto record = [&](uint32_t inputSize, uint32_t outputSize) {
    return call(sensor, kEndpointTransfer, block.data(), inputSize, block.data(), outputSize);
  };
  EXPECT_EQ(record(42, 42), 0u);
  block[0x22] = 4;
  EXPECT_EQ(record(37, 37), kDriverInvalidParameter);
  EXPECT_EQ(record(41, 41), kDriverInvalidParameter) << "shorter than the record says";
  EXPECT_EQ(record(42, 38), kDriverInvalidParameter);
  block[0x1E] = 0x27;
  EXPECT_EQ(record(42, 42), kDriverInvalidParameter);
  block[0x1E] = kRecordSize;
  block[0x0D] = 0x83;
  EXPECT_EQ(record(42, 42), kDriverInvalidParameter);
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
    const Answer answer = wire.sensor.Control(
        wire.now, kCodes[random(5)], input.data(), static_cast<uint32_t>(input.size()),
        output.data(), static_cast<uint32_t>(output.size()));
    ASSERT_LE(answer.returned, output.size());
  }
  EXPECT_GT(wire.sensor.statistics().exposures, 10u);
  EXPECT_TRUE(wire.sensor.IsPlugged());
}

}  // namespace
}  // namespace zyr::test
