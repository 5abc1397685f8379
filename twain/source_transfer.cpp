// The triplets around a transfer that need no image: how many are pending, how they are set up, and
// what the descriptions of an image hold before an image fills them in.
#include <cstring>
#include <string>

#include "foundation/support/phrase_lookup.h"
#include "platform/files.h"
#include "twain/source.h"

namespace zyr {
namespace {

constexpr const char* kPendingFailure =
    PhraseKey("General failure in response to DAT_PENDINGXFER.");
constexpr const char* kSetupMemFailure =
    PhraseKey("General failure in response to DAT_SETUPMEMXFER, not supported.");
constexpr const char* kSetupFileFailure =
    PhraseKey("General failure in response to DAT_SETUPFILEXFER, not supported.");
constexpr const char* kGroupFailure =
    PhraseKey("General failure in response to DAT_XFERGROUP, not supported.");
constexpr const char* kImageInfoFailure = PhraseKey("General failure in transfer.");
constexpr const char* kImageLayoutFailure =
    PhraseKey("General failure in response to DAT_IMAGEINFO.");

constexpr TW_UINT32 kSmallestBuffer = 2048;
constexpr TW_UINT32 kLargestBuffer = 1'048'576;
constexpr size_t kLongestFileName = 1024;
constexpr char kProposedFileName[] = "C:\\TWAIN.BMP";

bool IsSetUpState(int32_t state) { return state >= 4 && state <= 6; }

// The text at `address`, as far as it goes and as far as it can be read: applications pass longer
// names than the record's field holds.
std::string ReadText(const void* address, size_t limit) {
  const char* characters = static_cast<const char*>(address);
  std::string text;
  while (text.size() < limit && platform::IsReadable(characters + text.size(), 1) &&
         characters[text.size()] != '\0') {
    text += characters[text.size()];
  }
  return text;
}

bool EnsureFile(const std::string& path) {
  const auto status = platform::StatusOf(path);
  if (status) return !status->isDirectory;
  const int file = platform::OpenFile(path, platform::OpenMode::kCreateNew);
  if (file < 0) return false;
  platform::CloseFile(file);
  return true;
}

}  // namespace

TW_UINT16 TwainSource::DISPATCHMSG_PendingXfers(const Triplet& triplet) {
  auto* pending = WritableRecord<TW_PENDINGXFERS>(triplet);
  switch (triplet.message) {
    case MSG_GET:
      if (state_ < 4) return Fail(kPendingFailure, TWCC_SEQERROR);
      if (pending == nullptr) return Fail(kPendingFailure, TWCC_BADVALUE);
      pending->Count = GetNumberOfTransfersAvailable();
      return TWRC_SUCCESS;
    case MSG_RESET:
      if (state_ < 5) return Fail(kPendingFailure, TWCC_SEQERROR);
      if (pending == nullptr) return Fail(kPendingFailure, TWCC_BADVALUE);
      pending->Count = 0;
      if (state_ > 5) AbortTransfers();
      state_ = 5;
      return TWRC_SUCCESS;
    case MSG_ENDXFER:
      if (pending == nullptr) return Fail(kPendingFailure, TWCC_BADVALUE);
      return EndTransfer(pending);
    default:
      return Fail(kPendingFailure, TWCC_BADPROTOCOL);
  }
}

// In whatever state it comes, it takes the current image away.
TW_UINT16 TwainSource::EndTransfer(TW_PENDINGXFERS* pending) {
  const int32_t stateBefore = state_;
  ClearCurrentImage();
  pending->Count = GetNumberOfTransfersAvailable();
  // Without images left the application has been asked to close the source, and may have done so at
  // once.
  if (state_ != stateBefore) return TWRC_SUCCESS;
  if (pending->Count == 0) {
    state_ = 5;
    return TWRC_SUCCESS;
  }
  if (state_ != 7) return Fail(kPendingFailure, TWCC_SEQERROR);
  state_ = 6;
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_SetupMemXfer(const Triplet& triplet) {
  if (triplet.message != MSG_GET) return Fail(kSetupMemFailure, TWCC_BADPROTOCOL);
  if (!IsSetUpState(state_)) return Fail(kSetupMemFailure, TWCC_SEQERROR);
  auto* setup = WritableRecord<TW_SETUPMEMXFER>(triplet);
  if (setup == nullptr) return Fail(kSetupMemFailure, TWCC_BADVALUE);
  setup->MinBufSize = kSmallestBuffer;
  setup->MaxBufSize = kLargestBuffer;
  setup->Preferred = kLargestBuffer;
  memXOffset_ = 0;
  memYOffset_ = 0;
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_SetupFileXfer(const Triplet& triplet) {
  const bool isReading = triplet.message == MSG_GET || triplet.message == MSG_GETCURRENT ||
                         triplet.message == MSG_GETDEFAULT;
  if (!isReading && triplet.message != MSG_SET) return Fail(kSetupFileFailure, TWCC_BADPROTOCOL);
  if (!IsSetUpState(state_)) return Fail(kSetupFileFailure, TWCC_SEQERROR);
  if (!isReading) return SetTransferFile(triplet);
  auto* setup = WritableRecord<TW_SETUPFILEXFER>(triplet);
  if (setup == nullptr) return Fail(kSetupFileFailure, TWCC_BADVALUE);
  // A proposal, whatever name has been set.
  *setup = {};
  std::memcpy(setup->FileName, kProposedFileName, sizeof kProposedFileName);
  setup->Format = TWFF_BMP;
  return TWRC_SUCCESS;
}

// The format in the record is not read: the negotiated one counts.
TW_UINT16 TwainSource::SetTransferFile(const Triplet& triplet) {
  if (ReadableRecord<TW_SETUPFILEXFER>(triplet) == nullptr) {
    return Fail(kSetupFileFailure, TWCC_BADVALUE);
  }
  transferFileName_ = ReadText(triplet.data, kLongestFileName);
  if (!EnsureFile(transferFileName_)) {
    return Fail(PhraseKey("Unable to create file <<DAT_SETUPFILEXFER>>"), TWCC_BADVALUE);
  }
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_SetupNativeXfer(const Triplet&) {
  return Fail(PhraseKey("TWAIN source does not support Native transfers"), TWCC_CAPUNSUPPORTED);
}

// Only the low half of the group's 32 bits is written, the other stays as the application left it.
TW_UINT16 TwainSource::DISPATCHMSG_XferGroup(const Triplet& triplet) {
  switch (triplet.message) {
    case MSG_GET:
    case MSG_GETCURRENT:
    case MSG_GETDEFAULT:
    case MSG_RESET:
    case MSG_SET:
      break;
    default:
      return Fail(kGroupFailure, TWCC_BADPROTOCOL);
  }
  if (!IsSetUpState(state_)) return Fail(kGroupFailure, TWCC_SEQERROR);
  if (triplet.message == MSG_SET) return TWRC_SUCCESS;
  auto* group = WritableRecord<TW_UINT16>(triplet);
  if (group == nullptr) return Fail(kGroupFailure, TWCC_BADVALUE);
  *group = static_cast<TW_UINT16>(DG_IMAGE);
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_ImageInfo(const Triplet& triplet) {
  if (triplet.message != MSG_GET) return Fail(kImageInfoFailure, TWCC_BADPROTOCOL);
  if (state_ != 6) return Fail(kImageInfoFailure, TWCC_SEQERROR);
  auto* info = WritableRecord<TW_IMAGEINFO>(triplet);
  if (info == nullptr) return Fail(kImageInfoFailure, TWCC_BADVALUE);
  info->XResolution = {1, 0};
  info->YResolution = {1, 0};
  info->ImageWidth = 1;
  info->ImageLength = 1;
  info->PixelType = TWPT_BW;
  info->Planar = 0;
  info->Compression = TWCP_NONE;
  info->BitsPerPixel = 8;
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_ImageLayout(const Triplet& triplet) {
  switch (triplet.message) {
    case MSG_GET:
    case MSG_GETCURRENT:
    case MSG_GETDEFAULT:
      if (auto* layout = WritableRecord<TW_IMAGELAYOUT>(triplet)) {
        constexpr TW_FIX32 kNowhere{22, 33};
        *layout = {{kNowhere, kNowhere, kNowhere, kNowhere}, 1, 1, 1};
        return TWRC_SUCCESS;
      }
      return Fail(kImageLayoutFailure, TWCC_BADVALUE);
    case MSG_SET:
    case MSG_RESET:
      return TWRC_SUCCESS;
    default:
      return Fail(kImageLayoutFailure, TWCC_BADPROTOCOL);
  }
}

}  // namespace zyr
