// A short text in the pool, as the system takes it over.
#pragma once

#include "simulator/driver/ddk.h"

namespace zyr::simulator {

class UnicodeText {
 public:
  UnicodeText() : text_(AllocatePool<WCHAR>(kRoom * sizeof(WCHAR))) {}
  ~UnicodeText() {
    if (text_ != nullptr) ExFreePool(text_);
  }
  UnicodeText(const UnicodeText&) = delete;
  UnicodeText& operator=(const UnicodeText&) = delete;

  // Plain ASCII. False if there is no memory or no room.
  bool Append(const char* ascii) {
    for (; *ascii != 0; ++ascii) {
      if (!Put(static_cast<WCHAR>(*ascii))) return false;
    }
    return true;
  }
  // Ends one text of a list of them.
  bool EndOne() { return Put(0); }

  // Zero-terminated; the caller frees it. Null if there was no memory.
  WCHAR* Release() {
    WCHAR* text = text_;
    if (text != nullptr) text[length_] = 0;
    text_ = nullptr;
    return text;
  }

 private:
  static constexpr uint32_t kRoom = 64;

  bool Put(WCHAR c) {
    if (text_ == nullptr || length_ + 1 >= kRoom) return false;
    text_[length_++] = c;
    return true;
  }

  WCHAR* text_;
  uint32_t length_ = 0;
};

}  // namespace zyr::simulator
