// A manager with one source, for the flow of an acquisition. It keeps to the states of the
// standard, hands out what a test puts in, fails where a test says so, and notes every call.
#pragma once

#include <cstring>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "platform/global_memory.h"
#include "tools/zyracquire/manager_port.h"
#include "twain/names.h"

namespace zyr {

struct FakeImage {
  uint32_t width = 0;
  std::vector<uint8_t> rows;  // top-down, width bytes a row
};

class FakeSource : public ManagerPort {
 public:
  std::deque<FakeImage> images;
  // "DAT_IMAGEINFO MSG_GET" and the like, or the name of a capability that is refused.
  std::map<std::string, TW_UINT16> failWith;
  bool nullHandle = false;
  bool emptyLastStrip = false;
  std::vector<std::string> calls;
  std::map<TW_UINT16, uint32_t> capabilities;
  std::string fileName;

  bool Called(const std::string& call) const { return !CallsFrom(call).empty(); }
  // What was called from the given call on, joined.
  std::string CallsFrom(const std::string& first) const {
    std::string text;
    for (const std::string& made : calls) {
      if (text.empty() && made != first) continue;
      text += (text.empty() ? "" : ", ") + made;
    }
    return text;
  }

  TW_UINT16 Call(TW_IDENTITY*, TW_UINT32, TW_UINT16 dat, TW_UINT16 message, void* data) override {
    std::string name = DataArgumentTypeName(dat) + " " + MessageName(message);
    calls.push_back(name);
    if (dat == DAT_CAPABILITY && message == MSG_SET)
      name = CapabilityName(static_cast<TW_CAPABILITY*>(data)->Cap);
    if (const auto failure = failWith.find(name); failure != failWith.end()) {
      conditionCode_ = failure->second;
      return TWRC_FAILURE;
    }
    switch (dat) {
      case DAT_IDENTITY:
        return Identity(message, static_cast<TW_IDENTITY*>(data));
      case DAT_CAPABILITY:
        return CapabilityCall(message, static_cast<TW_CAPABILITY*>(data));
      case DAT_IMAGEINFO:
        return ImageInfo(static_cast<TW_IMAGEINFO*>(data));
      case DAT_IMAGENATIVEXFER:
        return Native(static_cast<TW_HANDLE*>(data));
      case DAT_IMAGEMEMXFER:
        return Memory(static_cast<TW_IMAGEMEMXFER*>(data));
      case DAT_SETUPFILEXFER:
        fileName = static_cast<TW_SETUPFILEXFER*>(data)->FileName;
        return TWRC_SUCCESS;
      case DAT_IMAGEFILEXFER:
        return TWRC_XFERDONE;
      case DAT_SETUPMEMXFER:
        *static_cast<TW_SETUPMEMXFER*>(data) = {2, 1000, 4};
        return TWRC_SUCCESS;
      case DAT_PENDINGXFERS:
        return Pending(message, static_cast<TW_PENDINGXFERS*>(data));
      default:
        return TWRC_SUCCESS;
    }
  }
  TW_UINT16 conditionCode() const override { return conditionCode_; }

 private:
  static TW_HANDLE HandOver(const void* bytes, size_t size) {
    const TW_HANDLE handle = platform::AllocateMovable(size, false);
    std::memcpy(platform::LockedBlock(handle).address(), bytes, size);
    return handle;
  }

  TW_UINT16 Identity(TW_UINT16 message, TW_IDENTITY* identity) {
    if (message == MSG_GETNEXT) return TWRC_ENDOFLIST;
    std::strcpy(identity->ProductName, "ZYR TWAIN");
    return TWRC_SUCCESS;
  }

  TW_UINT16 CapabilityCall(TW_UINT16 message, TW_CAPABILITY* capability) {
    TW_ONEVALUE value{TWTY_UINT16, 0};
    if (message == MSG_SET) {
      const platform::LockedBlock block(capability->hContainer);
      std::memcpy(&value, block.address(), sizeof value);
      capabilities[capability->Cap] = value.Item;
      return TWRC_SUCCESS;
    }
    value.Item = capabilities[capability->Cap];
    capability->ConType = TWON_ONEVALUE;
    capability->hContainer = HandOver(&value, sizeof value);
    return TWRC_SUCCESS;
  }

  uint32_t Height() const { return static_cast<uint32_t>(images[0].rows.size() / images[0].width); }

  TW_UINT16 ImageInfo(TW_IMAGEINFO* info) {
    *info = {};
    info->XResolution.Whole = info->YResolution.Whole = 100;
    info->ImageWidth = static_cast<TW_INT32>(images[0].width);
    info->ImageLength = static_cast<TW_INT32>(Height());
    info->BitsPerPixel = 8;
    rowsGiven_ = 0;
    return TWRC_SUCCESS;
  }

  TW_UINT16 Native(TW_HANDLE* handle) {
    if (nullHandle) return TWRC_XFERDONE;
    const uint32_t width = images[0].width;
    const uint32_t header[] = {40, width, Height(), 1 | 8 << 16, 0, 0, 3937, 3937, 0, 0};
    std::vector<uint8_t> block(sizeof header + 1024);
    std::memcpy(block.data(), header, sizeof header);
    for (uint32_t i = 0; i < 1024; ++i)
      block[sizeof header + i] = static_cast<uint8_t>(i % 4 == 3 ? 0 : i / 4);
    for (uint32_t y = Height(); y-- > 0;) {
      const auto row = images[0].rows.begin() + y * width;
      block.insert(block.end(), row, row + width);
      while (block.size() % 4 != 0) block.push_back(0);
    }
    *handle = HandOver(block.data(), block.size());
    return TWRC_XFERDONE;
  }

  TW_UINT16 Memory(TW_IMAGEMEMXFER* transfer) {
    const uint32_t width = images[0].width;
    const uint32_t left = Height() - rowsGiven_;
    const uint32_t rows = std::min<uint32_t>(transfer->Memory.Length / width, left);
    transfer->Compression = TWCP_NONE;
    transfer->BytesPerRow = transfer->Columns = width;
    transfer->Rows = rows;
    transfer->YOffset = rowsGiven_;
    transfer->BytesWritten = rows * width;
    std::memcpy(transfer->Memory.TheMem, images[0].rows.data() + rowsGiven_ * width, rows * width);
    rowsGiven_ += rows;
    if (emptyLastStrip) return rows == 0 ? TWRC_XFERDONE : TWRC_SUCCESS;
    return rowsGiven_ == Height() ? TWRC_XFERDONE : TWRC_SUCCESS;
  }

  TW_UINT16 Pending(TW_UINT16 message, TW_PENDINGXFERS* pending) {
    if (message == MSG_ENDXFER) images.pop_front();
    pending->Count = message == MSG_RESET ? 0 : static_cast<TW_UINT16>(images.size());
    return TWRC_SUCCESS;
  }

  TW_UINT16 conditionCode_ = TWCC_SUCCESS;
  uint32_t rowsGiven_ = 0;
};

}  // namespace zyr
