#include "imaging/formats/image_test_saver.h"

#include <cstddef>

#include "foundation/support/buffered_file.h"
#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/files.h"
#include "platform/prompt.h"

namespace zyr {
namespace {

constexpr size_t kBufferSize = 51200;

void RemoveEarlierFiles(const std::string& folder, const std::string& base,
                        const std::string& extension) {
  const std::string pattern = FormatText("%s*.%s", base.c_str(), extension.c_str());
  for (const std::string& name : platform::ListFiles(folder, pattern)) {
    platform::RemoveFile(folder + '\\' + name);
  }
}

bool WriteFile(BufferedFile& file, const void* data, const TestImageFields& fields,
               const std::string& text) {
  const uint64_t size = uint64_t{fields.bytesPerSample} * fields.dimension1 * fields.dimension2;
  return file.WriteUint32(fields.bytesPerSample) && file.WriteUint32(fields.bitsPerSample) &&
         file.WriteUint32(fields.value1) && file.WriteUint32(fields.dimension1) &&
         file.WriteUint32(fields.dimension2) && file.WriteUint32(fields.value2) &&
         file.WriteUint32(fields.value3) && file.WriteString(text) &&
         file.Write(data, static_cast<size_t>(size)) == static_cast<int64_t>(size) && file.Close();
}

}  // namespace

void CKIPImageTestSaver::SaveImage(const std::string& tag, const void* data,
                                   const TestImageFields& fields, const std::string& text) {
  const std::string extension = FormatText("RAW%lu", Lu(fields.bitsPerSample));
  if (counter == 0 && enabled != 0) RemoveEarlierFiles(folder, baseName, extension);
  const std::string base =
      tag.empty() ? baseName : FormatText("%s_%s", baseName.c_str(), tag.c_str());
  const std::string path =
      FormatText("%s\\%s_%lu.%s", folder.c_str(), base.c_str(), Lu(counter), extension.c_str());
  ++counter;
  BufferedFile file(kBufferSize);
  if (!file.OpenWrite(path, true) || WriteFile(file, data, fields, text)) return;
  const std::string format =
      GetFormatPhrase("CKIPImageTestSaver::SaveImage() could not save the image. %s");
  platform::ShowPrompt(nullptr, FormatText(format.c_str(), LastErrorText().c_str()),
                       GetPhrase("Unable To Save"), platform::PromptKind::kError);
}

}  // namespace zyr
