// A simulated sensor on the host's USB bus: found, opened and spoken to as a real one would be.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "simulator/physics.h"
#include "simulator/sensor.h"

namespace zyr::test {

// Times as short as they can be while every phase of an exposure is still seen. With the clock
// stopped (host::SetClock) they pass without waiting: a transfer's delay is slept on that clock.
inline constexpr simulator::Timing kQuickTiming{
    /*transfer=*/0, /*exposureAfter=*/250'000, /*integration=*/150'000,
    /*darkIntegration=*/150'000, /*driverTimeout=*/5'000'000};

struct SensorToPlug {
  simulator::DetectorOptions detector;
  simulator::Timing timing = kQuickTiming;
  simulator::Generation generation = simulator::kPipeDriver;
  uint16_t driverVersion = 0;     // major version of the driver's file; 0: as its generation
  std::string instance = "0001";  // last part of the instance identity
  std::shared_ptr<const simulator::Detector> made = nullptr;  // null: TestDetector(detector)
};

// A smooth picture of that size with levels from 500 to 3500.
simulator::Scene TestScene(const simulator::Geometry& geometry);
// A detector that sees TestScene. Made once for every set of options.
std::shared_ptr<const simulator::Detector> TestDetector(const simulator::DetectorOptions& options);

// Plugged in, silently, as long as it lives. Fails every transfer once it is unplugged.
class SimulatedSensor {
 public:
  explicit SimulatedSensor(const SensorToPlug& what);
  ~SimulatedSensor();
  SimulatedSensor(const SimulatedSensor&) = delete;
  SimulatedSensor& operator=(const SimulatedSensor&) = delete;

  const std::string& path() const { return path_; }
  const std::string& instanceId() const { return instanceId_; }
  const simulator::Detector& detector() const { return *detector_; }

  // Tells the monitors of the bus, on this thread. A sensor that a fault has pulled out is off the
  // bus, and nobody has been told.
  void AnnounceArrival() const;
  void AnnounceRemoval() const;
  // Silently, too; harmless when done before.
  void Unplug();
  // Back in its place, cold, with the same content and an empty transcript.
  void Replug();
  bool IsPlugged() const;

  void Expose();
  bool IsArmed() const;
  void SetFault(simulator::FaultKind kind, uint32_t transfer, uint32_t value = 0);
  simulator::Statistics Statistics() const;
  simulator::Commanded Commanded() const;

  // All transfers since the sensor was plugged in, a line each: milliseconds since then, the code,
  // direction and pipe (or endpoint), length, and the bytes: of more than 8 without the zeros at
  // their end, of more than 64 the CRC-32. Bulk reads of equal length that follow each other make
  // one line with their number and the CRC of it all.
  std::string Transcript() const;

 private:
  class Driver;

  void PutInPlace();

  SensorToPlug what_;
  std::shared_ptr<const simulator::Detector> detector_;
  std::string path_;
  std::string instanceId_;
  std::string driverKey_;
  std::shared_ptr<Driver> driver_;
};

// Writes a settings file that knows both families. `attributes` stand in each element after its
// identity: "flush_time=\"400\"".
void PutSensorSettings(const std::string& attributes = "");

}  // namespace zyr::test
