// What zyrsim says to the simulated bus, through the control device of its driver: control codes,
// and what goes in and comes out with them. Little-endian. Every gap is spelled out, so that both
// bitnesses have the same records.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "simulator/sensor.h"

namespace zyr::simulator {

inline constexpr char kBusPath[] = "\\\\.\\ZyrSimBus";

// All are buffered. Beside the records' own, a code fails with one of the errors below.
enum BusCode : uint32_t {
  kBusPlug = 0x222400,    // in: PlugRecord, kMemorySize bytes of memory, both frames
  kBusUnplug = 0x222404,  // in: InstanceRecord
  kBusLoad = 0x222408,    // in: LoadRecord, both frames; the sensor shows these from now on
  kBusExpose = 0x22240C,  // in: InstanceRecord; without effect unless the sensor is armed
  kBusFault = 0x222410,   // in: FaultRecord
  kBusStat = 0x222414,    // out: a StatRecord of every sensor, as many as there is room for
};

// System error numbers, as GetLastError tells them.
enum BusError : uint32_t {
  kBusBadRecord = 87,        // too short, or with impossible values
  kBusStillLeaving = 170,    // the last sensor of that instance is not quite gone
  kBusAlreadyPlugged = 183,  // that instance is taken
  kBusNoSuchSensor = 1168,
  kBusNoMemory = 1450,
};

// A sensor is known by the last part of its instance identity: up to 15 capital letters and digits,
// then zeros.
inline constexpr uint32_t kInstanceSize = 16;
struct InstanceRecord {
  char instance[kInstanceSize];
};

// The two frames follow each other: 2 x width x height bytes each, by Setup's rules.
struct PlugRecord {
  char instance[kInstanceSize];
  uint32_t family;
  uint32_t size;
  uint32_t hasMemory;
  uint32_t generation;
  uint8_t macId[8];
  uint64_t seed;  // told again by StatRecord, like the exposure; of no meaning to the driver
  uint64_t exposure;
  uint64_t patience;  // of Setup
  Timing timing;
};

struct LoadRecord {
  char instance[kInstanceSize];
  uint64_t exposure;
};

struct FaultRecord {
  char instance[kInstanceSize];
  Fault fault;
  uint32_t reserved;
};

enum PlugState : uint32_t {
  kPlugged,  // the system does not show it yet
  kStarted,  // programs can find and open it
  kLeaving,  // unplugged, and the system has not quite noticed
};

struct StatRecord {
  char instance[kInstanceSize];
  uint32_t family;
  uint32_t size;
  uint32_t hasMemory;
  uint32_t generation;
  uint64_t seed;
  uint64_t exposure;
  uint32_t state;
  uint32_t armed;
  uint32_t handles;  // that programs hold open
  uint32_t reserved;
  Statistics statistics;
  Commanded commanded;
  uint32_t reserved2;
};

// No hidden gaps.
static_assert(sizeof(Timing) == 40 && sizeof(Fault) == 12 && sizeof(Statistics) == 32);
static_assert(sizeof(PlugRecord) == 104 && offsetof(PlugRecord, timing) == 64);
static_assert(sizeof(LoadRecord) == 24 && sizeof(FaultRecord) == 32);
static_assert(sizeof(StatRecord) == 120 && offsetof(StatRecord, statistics) == 64);

}  // namespace zyr::simulator
