// Raw samples in numbered files, for looking at what a sensor delivered.
#pragma once

#include <cstdint>
#include <string>

namespace zyr {

// What a file of samples tells ahead of them.
struct TestImageFields {
  uint32_t bytesPerSample = 0;
  uint32_t bitsPerSample = 0;
  uint32_t value1 = 0;  // the device's affair, as the other values
  uint32_t dimension1 = 0;
  uint32_t dimension2 = 0;
  uint32_t value2 = 0;
  uint32_t value3 = 0;
};

// Files are "<folder>\<baseName>_<tag>_<counter>.RAW<bits>". One thread.
class CKIPImageTestSaver {
 public:
  void SetBaseFilename(const std::string& name) { baseName = name; }
  void SetEnabled(bool flag) { enabled = flag ? 1 : 0; }
  // `data` holds bytesPerSample * dimension1 * dimension2 bytes. The first call clears the folder
  // of what earlier ones left. The folder must exist: nothing happens otherwise. A message box
  // tells of a file that could not be written whole.
  void SaveImage(const std::string& tag, const void* data, const TestImageFields& fields,
                 const std::string& text);

  std::string baseName;
  std::string folder;
  uint32_t enabled = 1;  // for the caller to ask; here it only guards the clearing
  uint32_t counter = 0;  // files saved so far
};

}  // namespace zyr
