// A sensor system as its kernel driver shows it: answers to control codes, byte by byte. Needs no
// library, allocates nothing and knows no clock, so that a kernel driver can hold it. No lock: its
// owner serves one call at a time.
#pragma once

#include <stdint.h>

namespace zyr::simulator {

enum Family : uint32_t { kFamily2000 = 0x2000, kFamily303 = 0x1005 };  // the USB product numbers
enum Size : uint32_t { kSizeA, kSizeB, kSizeC, kSizeD };               // 303: C and D only

struct Geometry {
  uint32_t width;  // pixels at full resolution; 0 if the family has no such size
  uint32_t height;
};
Geometry GeometryOf(Family family, Size size);

inline constexpr uint32_t kMemorySize = 0x4020;  // bytes, of the larger family

// Times in microseconds.
struct Timing {
  uint64_t transfer = 0;        // of every transfer
  uint64_t exposureAfter = 0;   // X-rays this long after arming; 0: only Expose()
  uint64_t integration = 0;     // from the X-rays to the first frame
  uint64_t darkIntegration = 0; // from the end of the first frame to the second
  uint64_t driverTimeout = 0;   // after which a read without data fails
};

// What is plugged in. The owner keeps the blocks alive and may change their content between calls.
// Frames are clean rows of 12-bit samples at full resolution, in the order of an ideal read-out
// would give them: the sensor bins them, delays them by its read-out lag and packs them.
struct Setup {
  Family family = kFamily2000;
  Size size = kSizeD;
  uint32_t hasMemory = 1;  // 0: its memory reads as erased
  uint8_t macId[8] = {};
  const uint8_t* memory = nullptr;  // kMemorySize bytes, by the sensor's own addresses
  const uint16_t* normal = nullptr;
  const uint16_t* dark = nullptr;
  Timing timing;
  // Microseconds, on top of the driver's time-out, after which the sensor goes on to the dark frame
  // if nobody reads the first one (any further); 0: never. A host that could not read a row waits
  // for the dark frame without a limit.
  uint64_t patience = 2'000'000;
};

enum FaultKind : uint32_t {
  kNoFault,
  kFaultError,      // the transfer fails with `value`, a system error number (0: kDriverFailed)
  kFaultShort,      // only the first `value` bytes arrive, and success is told; the rest is lost
  kFaultWrongByte,  // the byte at `value` (modulo the length) arrives inverted
  kFaultSilence,    // no answer until the driver's time-out
  kFaultUnplug,     // the sensor is pulled out during the transfer
};

// Strikes at the `transfer`-th transfer from now on, 0 being the next, and then is spent. Every
// control call counts as one. What fails or is met by silence has not reached the sensor.
struct Fault {
  FaultKind kind = kNoFault;
  uint32_t transfer = 0;
  uint32_t value = 0;
};

struct Statistics {
  uint32_t transfers;  // control calls of every kind
  uint32_t resets;
  uint32_t exposures;
  uint32_t framesRead;  // to their last byte
  uint64_t bytesIn;     // payload from the device
  uint64_t bytesOut;    // payload to the device
};

// System error numbers that a driver gives.
enum DriverError : uint32_t {
  kDriverOk = 0,
  kDriverInvalidFunction = 1,
  kDriverFailed = 31,
  kDriverInvalidParameter = 87,
  kDriverTimedOut = 121,
  kDriverNotConnected = 1167,
};

struct Answer {
  uint32_t error;     // 0 or a system error number
  uint32_t returned;  // bytes that were written to `output`
  uint64_t delay;     // microseconds until the caller shall have the answer
  uint32_t unplug;    // 1: the owner must pull the sensor out now
};

// Which control codes the installed driver knows.
enum Generation : uint32_t { kPipeDriver = 1, kEndpointDriver = 3 };

inline constexpr uint32_t kPipeReset = 0x222031;
inline constexpr uint32_t kPipeTransfer = 0x22204E;
inline constexpr uint32_t kEndpointReset = 0x220030;
inline constexpr uint32_t kEndpointTransfer = 0x220024;
inline constexpr uint32_t kRecordSize = 38;  // ahead of the payload of kEndpointTransfer

// What the host has commanded since the last reset of the sensor, for whoever watches.
struct Commanded {
  uint32_t power;            // 1: switched on; outlives a reset
  uint32_t threshold;        // as sent
  uint32_t sensitivity;      // as sent: 0x10 to 0x70
  uint32_t integrationTime;  // milliseconds
  uint32_t sizeCommand;      // 0x21 to 0x2F; 0 is none, the sensor's own size at full resolution
};

class Sensor {
 public:
  // Takes its place on the bus, cold.
  void Plug(const Setup& setup, Generation generation);
  // Every call fails with kDriverNotConnected from now on.
  void Unplug() { plugged_ = 0; }
  bool IsPlugged() const { return plugged_ != 0; }

  // One call of the driver at the time `now` (microseconds of the owner's clock). `input` and
  // `output` may be the same block. The answer is complete in `output` at once; handing it to the
  // caller after `delay` is the owner's part.
  Answer Control(uint64_t now, uint32_t code, const uint8_t* input, uint32_t inputSize,
                 uint8_t* output, uint32_t outputSize);

  // X-rays. Without effect unless the sensor is armed.
  void Expose(uint64_t now);
  // False until the sensor is armed and after the exposure.
  bool IsArmed(uint64_t now) const;

  void SetFault(const Fault& fault) { fault_ = fault; }
  const Statistics& statistics() const { return statistics_; }
  const Commanded& commanded() const { return commanded_; }
  const Setup& setup() const { return setup_; }

 private:
  enum Phase : uint32_t { kIdle, kArmed, kExposed, kDark };
  enum StatusKind : uint32_t { kCcdStatus, kEchoStatus, kMemoryStatus };
  enum ReplySource : uint32_t { kNoReply, kMemoryReply, kMacReply };

  // Bytes on their way to the host that a command has asked for, by the addresses of their source.
  struct Reply {
    ReplySource source = kNoReply;
    uint32_t position = 0;
    uint32_t end = 0;
  };
  // A transfer as the driver has understood its caller.
  struct Transfer {
    uint32_t pipe = 0;
    const uint8_t* source = nullptr;  // of a write
    uint8_t* target = nullptr;        // of a read
    uint32_t length = 0;
  };

  // The driver (sensor.cpp).
  Fault TakeFault();
  Answer Fail(uint32_t error, uint64_t delay) const;
  uint32_t UnderstandPipe(const uint8_t* input, uint32_t inputSize, uint8_t* output,
                          uint32_t outputSize, Transfer* transfer) const;
  uint32_t UnderstandEndpoint(const uint8_t* input, uint32_t inputSize, uint8_t* output,
                              uint32_t outputSize, Transfer* transfer) const;
  void Write(uint64_t now, const Transfer& transfer, const Fault& fault);
  uint32_t Read(uint64_t now, const Transfer& transfer, const Fault& fault, uint32_t* arrived);

  // The controller (sensor_controller.cpp).
  void Command(uint64_t now, const uint8_t* bytes, uint32_t length);
  void ControllerCommand(uint64_t now, const uint8_t* bytes, uint32_t length);
  void SelectSize(uint8_t command);
  void AskFor(ReplySource source, uint32_t position, uint32_t size);
  void DropData();
  void ResetSensor();
  uint8_t ReplyByte(uint32_t position) const;
  void MakeStatus(uint64_t now, uint8_t* packet);
  uint32_t ReadBulk(uint64_t now, uint8_t* target, uint32_t length, uint32_t visible);
  uint32_t ReadFrame(uint64_t now, uint8_t* target, uint32_t length, uint32_t visible);

  // The life of an exposure (sensor_controller.cpp).
  void Enter(Phase phase, uint64_t at);
  void Advance(uint64_t now);
  uint64_t FrameReadyAt() const;
  bool PhaseEnd(uint64_t* end) const;
  void EndFrame(uint64_t at);
  uint8_t CcdState(uint64_t now) const;
  bool IsBinned() const;

  Setup setup_;
  Generation generation_ = kPipeDriver;
  uint32_t plugged_ = 0;
  Fault fault_;
  Statistics statistics_{};
  Commanded commanded_{};

  Phase phase_ = kIdle;
  uint64_t phaseSince_ = 0;
  uint32_t byHand_ = 0;         // the exposure under way saw no X-rays
  uint32_t framePosition_ = 0;  // bytes of the frame in hand that are read
  uint64_t lastRead_ = 0;
  StatusKind nextStatus_ = kCcdStatus;
  Reply reply_;
};

}  // namespace zyr::simulator
