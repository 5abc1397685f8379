// An application may send anything, in any order, from anywhere: whatever it sends, the source
// keeps to its states, and all the memory that it hands out can be given back.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "imaging/image/packed_dib.h"
#include "platform/host/host.h"
#include "settings/store.h"
#include "tests/acquire/recorded_view.h"
#include "twain/entry.h"
#include "twain/zyr_source.h"

namespace {

using namespace zyr;
namespace host = platform::host;

constexpr int kDeepest = 3;  // triplets inside triplets

constexpr TW_UINT16 kTypes[] = {
    DAT_CAPABILITY,   DAT_EVENT,         DAT_IDENTITY,     DAT_PARENT,          DAT_PENDINGXFERS,
    DAT_SETUPMEMXFER, DAT_SETUPFILEXFER, DAT_STATUS,       DAT_USERINTERFACE,   DAT_XFERGROUP,
    DAT_IMAGEINFO,    DAT_IMAGELAYOUT,   DAT_IMAGEMEMXFER, DAT_IMAGENATIVEXFER, DAT_IMAGEFILEXFER,
    DAT_CIECOLOR,     DAT_GRAYRESPONSE,  DAT_RGBRESPONSE,  DAT_JPEGCOMPRESSION, DAT_PALETTE8,
    DAT_EXTIMAGEINFO, DAT_CUSTOMDSDATA};
constexpr TW_UINT16 kMessages[] = {
    MSG_GET,    MSG_GETCURRENT, MSG_GETDEFAULT, MSG_SET,       MSG_RESET,   MSG_QUERYSUPPORT,
    MSG_OPENDS, MSG_CLOSEDS,    MSG_ENABLEDS,   MSG_DISABLEDS, MSG_ENDXFER, MSG_PROCESSEVENT};

void Require(bool holds) {
  if (!holds) std::abort();
}

class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool empty() const { return size_ == 0; }
  uint8_t Byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  uint16_t Word() { return static_cast<uint16_t>(Byte() | Byte() << 8); }
  std::vector<uint8_t> Bytes(size_t count) {
    std::vector<uint8_t> bytes(data_, data_ + std::min(count, size_));
    data_ += bytes.size();
    size_ -= bytes.size();
    return bytes;
  }

 private:
  const uint8_t* data_;
  size_t size_;
};

// What an application owns for the time of a triplet: a record of any size, mostly filled with
// sense.
class Data {
 public:
  Data(TW_UINT16 type, TW_UINT16 message, Input& input) : type_(type), message_(message) {
    record_ = input.Bytes(input.Byte());
    if (input.Byte() % 4 != 0) record_.resize(1100);
    if (type == DAT_SETUPFILEXFER) Tame();
    if (type == DAT_CAPABILITY) PutContainer(input);
    if (type == DAT_IMAGEMEMXFER) PutBuffer(input);
    kind_ = input.Byte() % 8;
  }
  // What was handed out belongs to the application.
  ~Data() {
    if (type_ == DAT_CAPABILITY && message_ != MSG_SET) {
      platform::FreeBlock(Handle(offsetof(TW_CAPABILITY, hContainer)));
    }
    if (type_ == DAT_IMAGENATIVEXFER && delivered_) platform::FreeBlock(Handle(0));
    platform::FreeBlock(block_);
  }
  void* address() {
    if (kind_ == 0) return nullptr;
    return kind_ == 1 ? reinterpret_cast<void*>(64) : record_.data();
  }
  void SetResult(TW_UINT16 result) { delivered_ = result == TWRC_XFERDONE && kind_ > 1; }

 private:
  // A name on the test's own drive.
  void Tame() {
    for (uint8_t& byte : record_) {
      if (byte != 0) byte = static_cast<uint8_t>('a' + byte % 26);
    }
    if (record_.size() < 4) record_.assign(4, 0);
    std::memcpy(record_.data(), "C:\\", 3);
  }

  void PutContainer(Input& input) {
    const std::vector<uint8_t> bytes = input.Bytes(input.Byte() % 64);
    block_ = platform::AllocateMovable(bytes.size(), true);
    if (void* address = platform::LockBlock(block_)) {
      std::copy(bytes.begin(), bytes.end(), static_cast<uint8_t*>(address));
      platform::UnlockBlock(block_);
    }
    // A block, or one that is gone.
    Put(offsetof(TW_CAPABILITY, hContainer), block_);
    if (input.Byte() % 4 == 0) platform::FreeBlock(std::exchange(block_, nullptr));
    if (message_ != MSG_SET) Put(offsetof(TW_CAPABILITY, hContainer), TW_HANDLE{});  // none yet
  }

  void PutBuffer(Input& input) {
    TW_MEMORY memory{};
    memory.Flags = input.Byte();
    memory.Length = input.Word();
    buffer_.resize(input.Word() % 512);
    memory.TheMem = buffer_.data();
    if ((memory.Flags & TWMF_POINTER) == 0) {
      memory.TheMem = block_ = platform::AllocateMovable(buffer_.size(), true);
    }
    if (input.Byte() % 4 != 0) memory.Length = static_cast<uint32_t>(buffer_.size());
    Put(offsetof(TW_IMAGEMEMXFER, Memory), memory);
  }

  template <typename T>
  void Put(size_t offset, const T& value) {
    if (record_.size() >= offset + sizeof value) {
      std::memcpy(record_.data() + offset, &value, sizeof value);
    }
  }
  TW_HANDLE Handle(size_t offset) const {
    TW_HANDLE handle = nullptr;
    if (record_.size() >= offset + sizeof handle) {
      std::memcpy(&handle, record_.data() + offset, sizeof handle);
    }
    return handle == block_ ? nullptr : handle;
  }

  const TW_UINT16 type_;
  const TW_UINT16 message_;
  std::vector<uint8_t> record_;
  std::vector<uint8_t> buffer_;
  platform::GlobalHandle block_ = nullptr;
  int kind_ = 2;
  bool delivered_ = false;
};

class Session {
 public:
  explicit Session(Input& input) : input_(input) {
    application_.Id = 7;
    application_.ProtocolMajor = 1;
    application_.ProtocolMinor = input.Byte();
    const uint8_t settings = input.Byte();
    SetCheckForConflicts((settings & 1) != 0);
    SetOnlyReturnOneImage((settings & 2) != 0);
    SetHistStretch((settings & 4) != 0);
    SetDefaultBitDepth((settings & 8) != 0 ? 8 : 16);
    for (int i = settings >> 6; i > 0; --i) AddImage((settings & 16) != 0 ? 8 : 12);
    // The application comes back in wherever it can.
    host::OnManagerCall([this](const host::ManagerCall&) { RunInside(); });
    host::OnPrompt([this](const host::ShownPrompt&) { RunInside(); });
  }

  void Run() {
    for (int count = 0; count < 64 && !input_.empty(); ++count) Step();
  }

  void Close() {
    depth_ = kDeepest;
    RunEntry({nullptr, DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS, nullptr});
    Require(source_.state() == 3);
  }

 private:
  void AddImage(uint32_t bits) {
    CKIPDeepImage deep;
    CKIPImage grey;
    const bool made = bits == 8 ? grey.Create(5, 3, 8) : deep.Create(5, 3, bits);
    Require(made);
    for (uint32_t i = 0; bits != 8 && i < 15; ++i) deep.GetPixels()[i] = input_.Word();
    images_.AddFromHandle("ZYR2000",
                          bits == 8 ? PackedDibFromImage(grey) : PackedDibFromDeepImage(deep), 1, 1,
                          "sensor");
  }

  void RunInside() {
    if (depth_ >= kDeepest) return;
    ++depth_;
    if (input_.Byte() % 2 == 0) Step();
    --depth_;
  }

  // A step of the user, or a triplet, most of which are plausible.
  void Step() {
    const uint8_t choice = input_.Byte();
    if (choice % 16 == 0) return view_->Press(choice & 32 ? kCommandReturnImages : kCommandCancel);
    if (choice % 16 == 1) return images_.SetSelected(choice >> 6, (choice & 32) != 0);
    if (choice % 16 == 4) return images_.Remove(images_.GetAt(choice >> 6));
    if (choice % 16 == 5 && images_.GetCount() < 8) return AddImage((choice & 32) != 0 ? 8 : 12);
    const size_t type = input_.Byte() % (std::size(kTypes) + 1);
    const size_t message = input_.Byte() % (std::size(kMessages) + 1);
    Triplet triplet;
    triplet.origin = choice % 16 == 2 ? nullptr : &application_;
    triplet.dataArgumentType = type < std::size(kTypes) ? kTypes[type] : input_.Word();
    triplet.message = message < std::size(kMessages) ? kMessages[message] : input_.Word();
    triplet.dataGroup = triplet.dataArgumentType < 0x100 ? DG_CONTROL : DG_IMAGE;
    if (choice % 16 == 3) triplet.dataGroup = input_.Byte();
    Data data(triplet.dataArgumentType, triplet.message, input_);
    triplet.data = data.address();
    data.SetResult(RunEntry(triplet));
    Require(source_.state() >= 3 && source_.state() <= 7);
    Require(host::HeldLocks() == 0);
  }

  Input& input_;
  ImageCache images_;
  std::shared_ptr<test::ViewRecord> view_ = std::make_shared<test::ViewRecord>();
  IFace sensors_{nullptr};
  ZyrTwainSource source_{images_, sensors_, test::RecordIn(view_)};
  TW_IDENTITY application_{};
  int depth_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  host::ResetAll();
  Input input(data, size);
  {
    Session session(input);
    session.Run();
    session.Close();
  }
  Require(host::LiveBlocks() == 0);
  Require(host::MemoryMisuses() == 0);
  return 0;
}
