// Whatever an application puts into its containers: every message to every capability is answered,
// no byte outside a block is read, no block is changed, kept, leaked or left locked, and no
// capability ends up with a value that it does not offer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

#include "foundation/log/log.h"
#include "platform/host/host.h"
#include "tests/twain/container_blocks.h"
#include "twain/capabilities/capability_set.h"
#include "twain/capabilities/capability_store.h"

namespace {

using namespace zyr;
using test::BlockOf;
using test::BytesOf;

constexpr TW_UINT16 kCapabilities[] = {
    CAP_SUPPORTEDCAPS, CAP_FEEDERENABLED, ICAP_PIXELFLAVOR,   ICAP_XFERMECH,
    ICAP_PLANARCHUNKY, ICAP_COMPRESSION,  ICAP_PHYSICALWIDTH, ICAP_PHYSICALHEIGHT,
    ICAP_UNITS,        CAP_DEVICEONLINE,  CAP_AUTOFEED,       CAP_FEEDERLOADED,
    ICAP_BITDEPTH,     ICAP_PIXELTYPE,    ICAP_BITORDER,      ICAP_XRESOLUTION,
    ICAP_YRESOLUTION,  CAP_XFERCOUNT,     CAP_INDICATORS,     ICAP_IMAGEFILEFORMAT,
    ICAP_LAMPSTATE,    ICAP_LIGHTPATH,    CAP_UICONTROLLABLE, CAP_AUTHOR,
    CAP_DUPLEX};

constexpr TW_UINT16 kMessages[] = {MSG_SET,   MSG_GET,      MSG_GETCURRENT,  MSG_GETDEFAULT,
                                   MSG_RESET, MSG_GETFIRST, MSG_QUERYSUPPORT};

void Require(bool holds) {
  if (!holds) std::abort();
}

// Takes the input apart: each value is 0 once it has run out.
class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool IsEmpty() const { return size_ == 0; }
  uint8_t Byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::string Bytes(size_t count) {
    std::string bytes;
    while (count-- != 0 && size_ != 0) bytes.push_back(static_cast<char>(Byte()));
    return bytes;
  }

 private:
  const uint8_t* data_;
  size_t size_;
};

void RequireOfferedValues(const CapabilityStore& store) {
  for (const TW_UINT16 id : kCapabilities) {
    if (const auto* list = store.Find<ListCapability>(id)) {
      Require(list->IsSupported(list->currentValue));
    }
    if (const auto* resolution = store.Find<ResolutionCapability>(id)) {
      Require(resolution->IsSupported(resolution->currentValue));
    }
  }
  BitDepthEntry* entry = store.Find<BitDepthCapability>(ICAP_BITDEPTH)->GetCurrentEntry();
  Require(entry == nullptr || entry->Supports(entry->currentDepth));
}

// One message with a container of its own, most often a sound handle.
void Send(CapabilityStore& store, Input& input) {
  const TW_UINT16 message = kMessages[input.Byte() % std::size(kMessages)];
  TW_CAPABILITY capability{};
  capability.Cap = kCapabilities[input.Byte() % std::size(kCapabilities)];
  capability.ConType = input.Byte() % 8;
  const uint8_t kind = input.Byte();
  const std::string bytes = input.Bytes(input.Byte());
  const TW_HANDLE block = BlockOf(bytes);
  const bool isOwn = kind < 240;
  capability.hContainer = isOwn ? block : reinterpret_cast<TW_HANDLE>(uintptr_t{kind} - 240u);

  Triplet triplet;
  triplet.dataGroup = DG_CONTROL;
  triplet.dataArgumentType = DAT_CAPABILITY;
  triplet.message = message;
  triplet.data = &capability;
  TW_UINT16 code = 0x7777;
  const TW_UINT16 result = store.HandleCapMessage(triplet, &code);

  const bool answers = message != MSG_SET && result == TWRC_SUCCESS;
  Require((result == TWRC_SUCCESS) == (code == TWCC_SUCCESS));
  Require(BytesOf(block) == bytes);
  if (answers) {
    Require(capability.hContainer != block && !BytesOf(capability.hContainer).empty());
    platform::FreeBlock(capability.hContainer);
  }
  platform::FreeBlock(block);
  Require(platform::host::LiveBlocks() == 0);
  Require(platform::host::HeldLocks() == 0);
  Require(platform::host::MemoryMisuses() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  CapabilityStore store;
  store.Load();
  Input input(data, size);
  const uint8_t options = input.Byte();
  if ((options & 1) != 0) store.Find<ListCapability>(ICAP_PIXELTYPE)->SetOnly(TWPT_GRAY);
  // The trace shows lists and values too, but takes most of the time.
  if ((options & 2) != 0) Log().Open("C:\\", "ZYRTWAIN.Log");
  for (int messages = 0; messages < 32 && !input.IsEmpty(); ++messages) Send(store, input);
  RequireOfferedValues(store);
  Log().Close();
  return 0;
}
