// The identity of the sensor, and all that its memory knows for the corrections.
#include <algorithm>
#include <vector>

#include "foundation/support/phrase_lookup.h"
#include "hardware/device/device_303.h"
#include "hardware/device/gain_record.h"
#include "hardware/device/logged_operation.h"
#include "hardware/device/sensor_commands.h"
#include "hardware/failure.h"
#include "platform/ascii.h"

namespace zyr {
namespace {

constexpr char kNoIdentity[] = "LUMORAY";
constexpr uint16_t kIdentityAddress = 0x10;
constexpr uint16_t kIdentitySize = 0x10;
constexpr uint16_t kAreaAddress = 0x20;
constexpr uint16_t kAreaSize = 0x4000;

constexpr uint32_t kSizeC = 0;
constexpr uint32_t kSizeD = 1;

constexpr const char* kNotLoaded = PhraseKey("Unable to load the LumoRay memory from the sensor");
constexpr const char* kNoMemory = PhraseKey(
    "Could not read from the memory on the hardware.  Please check the hardware connection and "
    "then retry the operation.");
constexpr const char* kNoSize = PhraseKey(
    "Unable to determine the size of the sensor attached to the hardware.  Please check the "
    "hardware connection and then retry the operation.");
constexpr const char* kNoCorrectionData = PhraseKey(
    "The hardware correction data could not be downloaded from the hardware.  Please check the "
    "hardware connection and then retry the operation.");

std::string IdentityIn(const std::vector<uint8_t>& memory) {
  const auto end = std::find_if(memory.begin(), memory.begin() + kIdentitySize,
                                [](uint8_t c) { return c <= ' ' || c == 0xFF; });
  return {memory.begin(), end};
}

// A kind of sensor without any correction data.
bool HasNoBlocks(const std::string& identity) {
  return identity.size() == 3 && identity.starts_with("K3");
}

std::string WithoutTrailingBlanks(const std::string& text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

Result DeviceZYR303::GetSettingsFrom1WireMemory(bool* valid) {
  const LoggedOperation operation("DeviceZYR303::GetSettingsFrom1WireMemory()");
  *valid = true;
  std::vector<uint8_t> memory(kAreaSize);
  const Result read = ReadSensorMemory(*port_, memory.data(), kIdentitySize, kIdentityAddress);
  if (Failed(read)) return FailWith(read, kNoMemory);
  std::string identity = IdentityIn(memory);
  if (identity.empty()) {
    identity = kNoIdentity;
    SetSensorSize(kSizeD);
  }
  if (identity == sensor_id_) return kOk;
  const Result taken = TakeIdentity(identity);
  if (Failed(taken) || HasNoBlocks(identity)) return taken;
  return LoadCorrections(memory);
}

// What belonged to the sensor before goes. A sensor without an identity fails here, and only once:
// the next time it is the one in hand, and works without corrections.
Result DeviceZYR303::TakeIdentity(const std::string& identity) {
  sensor_id_ = identity;
  properties_.Set("sensor_id", identity);
  defect_map_.reset();
  calibration_map_.reset();
  pdi_ = {};
  if (identity == kNoIdentity) return FailWith(kUnspecifiedFailure, kNotLoaded);
  SensorReset();
  const char letter = LowerAscii(identity.back());
  if (letter != 'c' && letter != 'd') return FailWith(DEV_E_BAD_SIZE, kNoSize);
  SetSensorSize(letter == 'c' ? kSizeC : kSizeD);
  return kOk;
}

Result DeviceZYR303::LoadCorrections(std::span<uint8_t> memory) {
  const Result read = ReadSensorMemory(*port_, memory.data(), kAreaSize, kAreaAddress);
  if (Failed(read)) return FailWith(read, kNoMemory);
  std::vector<MemoryBlock> blocks;
  Result result = ParseBlockChain(memory, &blocks);
  if (!Failed(result)) result = TakeBlocks(blocks);
  if (Failed(result) && result != DEV_E_BLOCKS_PARTIAL) return FailWith(result, kNoCorrectionData);
  if (blocks.empty()) return FailWith(DEV_E_NO_BLOCKS, kNoCorrectionData);
  properties_.Set("description", WithoutTrailingBlanks(blocks.front().description));
  pdi_ = ParseGainRecord(memory);
  return kOk;
}

// All of them or none. Of two blocks of a kind the later one counts.
Result DeviceZYR303::TakeBlocks(const std::vector<MemoryBlock>& blocks) {
  std::unique_ptr<SensorDefects> defects;
  std::unique_ptr<SensorDefects> calibration;
  for (const MemoryBlock& block : blocks) {
    Log().WriteLine("   Memory block %lu: '%s', %lu bytes%s", Lu(block.kind),
                    block.description.c_str(), Lu(static_cast<uint32_t>(block.payload.size())),
                    block.isIntact ? "" : ", checksum wrong");
    auto loaded = MakeBinaryDefects();
    const Result result = loaded->LoadBinary(block.payload.data(), block.payload.size(), 0, 0);
    if (Failed(result)) return result;
    if (block.kind == kDefectBlock)
      defects = std::move(loaded);
    else if (block.kind == kCalibrationBlock)
      calibration = std::move(loaded);
  }
  defect_map_ = std::move(defects);
  TakeCalibration(std::move(calibration));
  return kOk;
}

// A calibration must know every column of the sensor: without it the image stays as it is, which is
// better than one that is half corrected.
void DeviceZYR303::TakeCalibration(std::unique_ptr<SensorDefects> calibration) {
  if (calibration != nullptr && calibration->calibration().size() < sensor_width_) {
    Log().WriteLine("   Calibration of %lu columns for a sensor of %lu: refused",
                    Lu(static_cast<uint32_t>(calibration->calibration().size())),
                    Lu(sensor_width_));
    calibration.reset();
  }
  calibration_map_ = std::move(calibration);
}

}  // namespace zyr
