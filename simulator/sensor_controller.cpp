// The sensor behind the driver: its commands, its data and the life of an exposure.
#include "simulator/sensor.h"
#include "simulator/sensor_read_out.h"

namespace zyr::simulator {
namespace {

constexpr uint32_t kMemorySize2000 = 0x2000;
constexpr uint32_t kMacSize = 8;

constexpr uint8_t kEcho = 0x8E;
constexpr uint8_t kCcd = 0x83;
constexpr uint8_t kCcdOtherBits = 0x05;  // below the state, without meaning

struct SizeCommand {
  uint8_t command;
  Size size;
  bool binned;
};
constexpr SizeCommand kSizes2000[] = {
    {0x25, kSizeA, false}, {0x27, kSizeA, true}, {0x29, kSizeB, false}, {0x2B, kSizeB, true},
    {0x2D, kSizeC, false}, {0x2F, kSizeC, true}, {0x21, kSizeD, false}, {0x23, kSizeD, true},
};
constexpr SizeCommand kSizes303[] = {{0x25, kSizeC, false}, {0x29, kSizeD, false}};

template <uint32_t kCount>
const SizeCommand* FindIn(const SizeCommand (&commands)[kCount], uint32_t command) {
  for (const SizeCommand& entry : commands) {
    if (entry.command == command) return &entry;
  }
  return nullptr;
}

const SizeCommand* FindSize(Family family, uint32_t command) {
  return family == kFamily303 ? FindIn(kSizes303, command) : FindIn(kSizes2000, command);
}

// As the host has chosen it, which need not be what the sensor is.
ReadOut ReadOutOf(const Setup& setup, const Commanded& commanded) {
  const SizeCommand* chosen = FindSize(setup.family, commanded.sizeCommand);
  return chosen == nullptr ? ReadOutOf(setup.family, setup.size, false)
                           : ReadOutOf(setup.family, chosen->size, chosen->binned);
}

uint32_t Word(const uint8_t* bytes) { return uint32_t{bytes[0]} << 8 | bytes[1]; }

uint32_t Smaller(uint32_t a, uint32_t b) { return a < b ? a : b; }
uint64_t Later(uint64_t a, uint64_t b) { return a > b ? a : b; }

}  // namespace

// Commands have no frame: the bytes of one write are one command, and what is not understood has no
// effect.
void Sensor::Command(uint64_t now, const uint8_t* bytes, uint32_t length) {
  if (length == 0) return;
  const bool is303 = setup_.family == kFamily303;
  switch (bytes[0]) {
    case 0x02:
      if (length >= 2) ControllerCommand(now, bytes, length);
      break;
    case 0x04:
      if (length >= 3) commanded_.integrationTime = Word(bytes + 1);
      break;
    case 0x05:
      if (length >= 2) commanded_.threshold = bytes[1];
      break;
    case 0x06:
      AskFor(kMacReply, 0, kMacSize);
      break;
    case 0x08:
      if (length >= 2) commanded_.power = bytes[1];
      break;
    case 0x0B:
    case 0x0C:
      if (length >= 5 && (bytes[0] == 0x0B) == is303) {
        AskFor(kMemoryReply, Word(bytes + 3), Word(bytes + 1));
      }
      break;
    case 0x0E:
      if (length >= 3) nextStatus_ = kEchoStatus;
      break;
    case 0x0F:
      ResetSensor();
      break;
    default:
      break;
  }
}

void Sensor::ControllerCommand(uint64_t now, const uint8_t* bytes, uint32_t length) {
  switch (bytes[1]) {
    case 0x20:
      if (length < 3) break;
      commanded_.sensitivity = bytes[2];
      DropData();
      Enter(kArmed, now);
      break;
    case 0x70:
      DropData();
      Enter(kIdle, now);
      break;
    case 0xC0:
      nextStatus_ = kMemoryStatus;
      break;
    case 0xF0:
      if (phase_ != kArmed) break;
      Enter(kExposed, now);
      byHand_ = 1;
      break;
    default:
      SelectSize(bytes[1]);
      break;
  }
}

void Sensor::SelectSize(uint8_t command) {
  if (FindSize(setup_.family, command) == nullptr) return;
  commanded_.sizeCommand = command;
  framePosition_ = 0;
}

void Sensor::AskFor(ReplySource source, uint32_t position, uint32_t size) {
  reply_.source = source;
  reply_.position = position;
  reply_.end = position + size;
}

void Sensor::DropData() { reply_ = {}; }

void Sensor::ResetSensor() {
  const uint32_t power = commanded_.power;
  commanded_ = {};
  commanded_.power = power;
  nextStatus_ = kCcdStatus;
  DropData();
  Enter(kIdle, 0);
}

uint8_t Sensor::ReplyByte(uint32_t position) const {
  constexpr uint8_t kErased = 0xFF;
  if (!setup_.hasMemory) return kErased;
  if (reply_.source == kMacReply) return setup_.macId[position];
  const uint32_t size = setup_.family == kFamily303 ? kMemorySize : kMemorySize2000;
  return setup_.memory != nullptr && position < size ? setup_.memory[position] : kErased;
}

// An answer that was asked for goes first, once; otherwise the packet tells of the CCD.
void Sensor::MakeStatus(uint64_t now, uint8_t* packet) {
  switch (nextStatus_) {
    case kEchoStatus:
      packet[0] = kEcho;
      packet[1] = 0xAA;
      packet[2] = 0x55;
      break;
    case kMemoryStatus:
      packet[0] = setup_.hasMemory ? 1 : 0;
      break;
    case kCcdStatus:
      packet[0] = kCcd;
      packet[1] = static_cast<uint8_t>(CcdState(now) | kCcdOtherBits);
      break;
  }
  nextStatus_ = kCcdStatus;
}

// Gives up to `length` bytes, of which only the first `visible` are written; 0 is nothing to give.
uint32_t Sensor::ReadBulk(uint64_t now, uint8_t* target, uint32_t length, uint32_t visible) {
  if (reply_.position == reply_.end) return ReadFrame(now, target, length, visible);
  const uint32_t given = Smaller(length, reply_.end - reply_.position);
  for (uint32_t i = 0; i < Smaller(given, visible); ++i) {
    target[i] = ReplyByte(reply_.position + i);
  }
  reply_.position += given;
  return given;
}

uint32_t Sensor::ReadFrame(uint64_t now, uint8_t* target, uint32_t length, uint32_t visible) {
  if ((phase_ != kExposed && phase_ != kDark) || now < FrameReadyAt()) return 0;
  const ReadOut readOut = ReadOutOf(setup_, commanded_);
  const uint32_t size = FrameBytes(readOut);
  const uint32_t given = Smaller(length, size - framePosition_);
  const uint16_t* samples = phase_ == kDark || byHand_ ? setup_.dark : setup_.normal;
  PackFrame(readOut, samples, GeometryOf(setup_.family, setup_.size), framePosition_, target,
            Smaller(given, visible));
  framePosition_ += given;
  lastRead_ = now;
  if (framePosition_ == size) {
    ++statistics_.framesRead;
    EndFrame(now + setup_.timing.transfer);
  }
  return given;
}

void Sensor::Expose(uint64_t now) {
  Advance(now);
  if (phase_ == kArmed) Enter(kExposed, now);
}

bool Sensor::IsArmed(uint64_t now) const {
  uint64_t end = 0;
  return plugged_ && phase_ == kArmed && !(PhaseEnd(&end) && now >= end);
}

void Sensor::Enter(Phase phase, uint64_t at) {
  phase_ = phase;
  phaseSince_ = at;
  framePosition_ = 0;
  lastRead_ = 0;
  if (phase != kExposed) return;
  byHand_ = 0;
  ++statistics_.exposures;
}

// The first frame is followed by a dark one.
void Sensor::EndFrame(uint64_t at) { Enter(phase_ == kExposed ? kDark : kIdle, at); }

// What time alone brings about.
void Sensor::Advance(uint64_t now) {
  uint64_t end = 0;
  while (PhaseEnd(&end) && now >= end) {
    if (phase_ == kArmed) {
      Enter(kExposed, end);
    } else {
      EndFrame(end);
    }
  }
}

uint64_t Sensor::FrameReadyAt() const {
  const Timing& timing = setup_.timing;
  return phaseSince_ + (phase_ == kDark ? timing.darkIntegration : timing.integration);
}

// Until when the phase lasts if nothing happens; false if for ever.
bool Sensor::PhaseEnd(uint64_t* end) const {
  const Timing& timing = setup_.timing;
  switch (phase_) {
    case kArmed:
      *end = phaseSince_ + timing.exposureAfter;
      return timing.exposureAfter != 0;
    case kExposed:
      *end = Later(FrameReadyAt(), lastRead_) + timing.driverTimeout + setup_.patience;
      return setup_.patience != 0;
    default:
      return false;
  }
}

bool Sensor::IsBinned() const { return ReadOutOf(setup_, commanded_).binned != 0; }

// In the upper four bits.
uint8_t Sensor::CcdState(uint64_t now) const {
  switch (phase_) {
    case kArmed:
      return 0x10;
    case kExposed:
      if (now < FrameReadyAt()) return 0x20;
      return IsBinned() ? 0x30 : 0x40;
    case kDark:
      if (now < FrameReadyAt()) return 0x20;
      return IsBinned() ? 0x50 : 0x60;
    default:
      return 0;
  }
}

}  // namespace zyr::simulator
