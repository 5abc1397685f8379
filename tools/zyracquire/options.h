// The command line of zyracquire.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/images/picture_file.h"

namespace zyr {

// What the program ends with; the numbers stand in its help.
enum ExitStatus {
  kExitDone = 0,
  kExitFailed = 1,
  kExitUsage = 2,
  kExitNoSource = 3,
  kExitTimeout = 4,
  kExitNoImage = 5,
  kExitRefused = 6,
  kExitNotWritten = 7,
};

enum class Mechanism : uint16_t { kNative = 0, kFile = 1, kMemory = 2 };

// Values are those of the TWAIN capabilities. Null where the user did not ask for anything.
struct AcquireOptions {
  bool help = false;
  std::string error;  // not empty: what is wrong with the command line

  bool list = false;
  bool caps = false;
  std::string dsm;
  std::string source;
  std::optional<Mechanism> mechanism;
  std::optional<uint16_t> depth;
  std::optional<uint16_t> fileFormat;
  std::optional<uint16_t> units;
  std::optional<uint16_t> flavor;
  uint32_t count = 0;   // images at most, 0: all
  uint32_t buffer = 0;  // bytes of a memory strip, 0: what the source prefers
  std::string outFolder = ".";
  PictureFormat save = PictureFormat::kPng;
  uint32_t timeoutSeconds = 300;  // 0: none
  bool unattended = false;
  bool trace = false;
};

AcquireOptions ParseAcquireOptions(const std::vector<std::string>& arguments);
extern const char kAcquireHelp[];

// The file of the image with this number, counted from 1.
std::string PictureFileName(const AcquireOptions& options, uint32_t number,
                            const std::string& extension);

}  // namespace zyr
