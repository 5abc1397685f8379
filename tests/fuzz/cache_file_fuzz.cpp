// A cache file of any content, opened and delivered in every way.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "acquire/image_cache/cached_image.h"
#include "platform/host/host.h"

namespace {

using namespace zyr;
namespace host = platform::host;

constexpr char kPath[] = "C:\\ZYRTwain\\CACHEDRAW.RAW";

void DeliverInStrips(CachedImage& image, const TransferTerms& terms, uint32_t length) {
  std::vector<uint8_t> memory(length);
  MemoryStrip strip{.isPointer = true, .length = length, .memory = memory.data()};
  const uint32_t xOffset = 0;
  uint32_t yOffset = 0;
  for (bool done = false; !done;) {
    if (!image.CopyToMemoryBuffer(&strip, &xOffset, &yOffset, &done, terms)) return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  host::PutFile(kPath, {reinterpret_cast<const char*>(data), size});
  CachedImage image;
  if (!image.Load(kPath)) return 0;
  for (const bool turned : {false, true}) {
    if (turned) image.TurnTopDown();
    for (const bool deep : {false, true}) {
      for (const uint16_t flavor : {0, 1}) {
        const TransferTerms terms = {.is16BitGrayscale = [=] { return deep; },
                                     .pixelFlavor = flavor};
        platform::FreeBlock(image.MakeNativeHandle(terms));
        DeliverInStrips(image, terms, 4096);
      }
    }
    image.DropPixels();
  }
  image.SaveToFile("C:\\out", {.imageFileFormat = static_cast<uint16_t>(size % 3)});
  if (!image.Save() || host::LiveBlocks() != 0) __builtin_trap();
  image.RemoveFiles();
  return 0;
}
