// A loaded capability store, driven by triplets as an application drives it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/log/log.h"
#include "platform/host/host.h"
#include "tests/twain/container_blocks.h"
#include "twain/capabilities/capability_set.h"
#include "twain/capabilities/capability_store.h"
#include "twain/names.h"

namespace zyr::test {

class CapabilityTest : public testing::Test {
 protected:
  static constexpr TW_UINT16 kUntouched = 0x7777;  // what stands in the condition code beforehand
  static constexpr char kLogPath[] = "C:\\ZYRTWAIN.Log";

  void SetUp() override {
    platform::host::ResetAll();
    store_.Load();
  }
  void TearDown() override {
    Log().Close();
    Log().SetFlushEachLine(false);
    Log().SetTimeStamps(true);
    EXPECT_EQ(platform::host::HeldLocks(), 0u);
    EXPECT_EQ(platform::host::LiveBlocks(), 0u);
    EXPECT_EQ(platform::host::MemoryMisuses(), 0u);
    platform::host::ResetAll();
  }

  TW_UINT16 Send(TW_UINT16 message, void* data) {
    Triplet triplet;
    triplet.dataGroup = DG_CONTROL;
    triplet.dataArgumentType = DAT_CAPABILITY;
    triplet.message = message;
    triplet.data = data;
    code_ = kUntouched;
    return store_.HandleCapMessage(triplet, &code_);
  }

  // The container that comes back, in words, or the condition code's name.
  std::string Ask(TW_UINT16 message, TW_UINT16 id) {
    TW_CAPABILITY capability{id, 0, nullptr};
    const TW_UINT16 result = Send(message, &capability);
    EXPECT_EQ(result, code_ == TWCC_SUCCESS ? TWRC_SUCCESS : TWRC_FAILURE);
    const std::string text =
        result == TWRC_SUCCESS ? ContainerText(capability) : ConditionCodeName(code_);
    platform::FreeBlock(capability.hContainer);
    return text;
  }

  // Sets from a block of these bytes, which must be left alone; gives the condition code.
  TW_UINT16 Set(TW_UINT16 id, TW_UINT16 conType, const std::string& bytes) {
    TW_CAPABILITY capability{id, conType, BlockOf(bytes)};
    const TW_HANDLE handle = capability.hContainer;
    const TW_UINT16 result = Send(MSG_SET, &capability);
    EXPECT_EQ(result, code_ == TWCC_SUCCESS ? TWRC_SUCCESS : TWRC_FAILURE);
    EXPECT_EQ(TW_HANDLE{capability.hContainer}, handle);
    EXPECT_EQ(int{capability.ConType}, conType);
    EXPECT_EQ(BytesOf(handle), bytes);
    platform::FreeBlock(handle);
    return code_;
  }
  TW_UINT16 SetOne(TW_UINT16 id, TW_UINT16 type, double value) {
    return Set(id, TWON_ONEVALUE, OneValueBytes(type, value));
  }
  TW_UINT16 SetList(TW_UINT16 id, TW_UINT16 type, const std::vector<double>& items) {
    return Set(id, TWON_ENUMERATION, EnumerationBytes(type, items));
  }

  std::string Described(TW_UINT16 id) const {
    std::string name;
    std::string value;
    store_.FindCapStorageItem(id)->Describe(&name, &value);
    EXPECT_EQ(name, CapabilityName(id));
    return value;
  }

  // From here on the trace is kept, without time stamps.
  void StartTrace() {
    Log().SetTimeStamps(false);
    Log().SetFlushEachLine(true);
    Log().Open("C:\\", "ZYRTWAIN.Log");
    Trace();
  }
  // Its lines since the last call.
  std::vector<std::string> Trace() {
    const std::string text = platform::host::FileBytes(kLogPath).value_or("");
    std::vector<std::string> lines;
    while (traceSeen_ < text.size()) {
      const size_t end = text.find("\r\n", traceSeen_);
      lines.push_back(text.substr(traceSeen_, end - traceSeen_));
      traceSeen_ = end == std::string::npos ? text.size() : end + 2;
    }
    return lines;
  }

  CapabilityStore store_;
  TW_UINT16 code_ = kUntouched;

 private:
  size_t traceSeen_ = 0;
};

}  // namespace zyr::test
