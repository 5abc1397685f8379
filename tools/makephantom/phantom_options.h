// The command line of makephantom.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr {

struct PhantomOptions {
  bool help = false;
  std::string error;  // not empty: what is wrong with the command line

  // Cache files.
  std::string outFolder;
  uint32_t count = 1;
  uint32_t width = 1156;
  uint32_t height = 1600;
  double micrometresPerPixel = 22.5;
  bool isZyr303 = false;
  uint32_t depth = 12;  // or 8
  uint64_t seed = 1;
  uint32_t captureTime = 1'700'000'000;  // of the first; the others follow a minute apart
  std::string png;                       // where to put the pictures too

  // What an imaging program must get of a cache file.
  std::string expect;
  uint32_t expectBits = 16;
  std::string pgm;
};

PhantomOptions ParsePhantomOptions(const std::vector<std::string>& arguments);
extern const char kPhantomHelp[];

}  // namespace zyr
