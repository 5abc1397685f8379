// A source as an application meets it: driven through the entry, with images in its cache and a
// dialog that shows nothing. Fields of records that are wider than two bytes stand in expectations
// as +field, a copy, since no reference may be bound to them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "foundation/log/log.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/host/host.h"
#include "settings/phrases.h"
#include "settings/store.h"
#include "tests/acquire/recorded_view.h"
#include "twain/containers.h"
#include "twain/entry.h"
#include "twain/names.h"
#include "twain/zyr_source.h"

namespace zyr {

namespace host = platform::host;
using Lines = std::vector<std::string>;

// An address at which there is nothing.
inline void* const kNowhere = reinterpret_cast<void*>(64);

// Opens what a test has to set or see and no triplet shows.
class OpenedSource : public ZyrTwainSource {
 public:
  using TwainSource::appIdentity_;
  using TwainSource::conditionCode_;
  using TwainSource::grayResponse_;
  using TwainSource::identity_;
  using TwainSource::memYOffset_;
  using TwainSource::rgbResponse_;
  using TwainSource::state_;
  using TwainSource::transferFileName_;
  using ZyrTwainSource::ZyrTwainSource;

  void LoadDefaultOptions() override {
    if (failToLoad) throw std::bad_alloc();
    ZyrTwainSource::LoadDefaultOptions();
  }
  bool failToLoad = false;
};

class SourceTest : public testing::Test {
 protected:
  void SetUp() override {
    source_.reset();
    host::ResetAll();
    host::SetClock(1'700'000'000);
    SetPhraseLookup([](const char* text) { return Phrases().Translate(text); });
    SetCheckForConflicts(false);
    source_ = std::make_unique<OpenedSource>(images_, sensors_, [this] {
      if (onMakeView_) onMakeView_();
      return std::make_unique<test::RecordedView>(view_);
    });
    application_.Id = 7;
    application_.ProtocolMajor = 1;
    application_.ProtocolMinor = 9;
    given_ = application_;
    given_.Id = 42;
    boxesSeen_ = traceSeen_ = 0;
  }

  void TearDown() override {
    source_.reset();
    Log().Close();
    Log().SetTimeStamps(true);
    Phrases().Reset();
    for (const TW_HANDLE handle : received_) platform::FreeBlock(handle);
    received_.clear();
    EXPECT_EQ(host::LiveBlocks(), 0u);
    EXPECT_EQ(host::MemoryMisuses(), 0u);
    host::ResetAll();
  }

  TW_UINT16 Send(TW_UINT32 dataGroup, TW_UINT16 dataArgumentType, TW_UINT16 message, void* data) {
    return RunEntry({&application_, dataGroup, dataArgumentType, message, data});
  }
  TW_UINT16 Open() { return Send(DG_CONTROL, DAT_IDENTITY, MSG_OPENDS, &given_); }
  TW_UINT16 Enable() { return Send(DG_CONTROL, DAT_USERINTERFACE, MSG_ENABLEDS, &userInterface_); }
  TW_UINT16 Disable() { return Send(DG_CONTROL, DAT_USERINTERFACE, MSG_DISABLEDS, nullptr); }
  TW_UINT16 Close() { return Send(DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS, kNowhere); }
  TW_UINT16 Pending(TW_UINT16 message) {
    return Send(DG_CONTROL, DAT_PENDINGXFERS, message, &pending_);
  }
  TW_UINT16 TransferNative() {
    TW_HANDLE handle = nullptr;
    const TW_UINT16 result = Send(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &handle);
    if (handle != nullptr) received_.push_back(handle);
    return result;
  }
  // The condition code, as an application asks for it.
  TW_UINT16 Status() {
    TW_STATUS status{0xFFFF, 0};
    EXPECT_EQ(Send(DG_CONTROL, DAT_STATUS, MSG_GET, &status), TWRC_SUCCESS);
    return status.ConditionCode;
  }
  void Negotiate(TW_UINT16 id, TW_UINT16 itemType, uint16_t value) {
    TW_CAPABILITY capability{id, 0, nullptr};
    ASSERT_EQ(BuildOneValue(&capability, itemType, &value), TWCC_SUCCESS);
    EXPECT_EQ(Send(DG_CONTROL, DAT_CAPABILITY, MSG_SET, &capability), TWRC_SUCCESS);
    platform::FreeBlock(capability.hContainer);
  }

  // Takes the source from state 3 there. State 7 needs an image.
  void GoTo(int32_t state) {
    if (state >= 4) Open();
    if (state >= 5) Enable();
    if (state >= 6) source_->NotifyXferReady();
    if (state >= 7) TransferNative();
    ASSERT_EQ(source_->state(), state);
  }

  // An image on disk, of 300 x 600 dpi, that the cache finds. The pixels begin at the bottom of the
  // picture.
  void AddImage(uint32_t bitsPerPixel, uint32_t width, const std::vector<uint16_t>& pixels) {
    CachedImage image;
    image.bitsPerPixel = bitsPerPixel;
    image.width = width;
    image.height = static_cast<uint32_t>(pixels.size()) / width;
    image.xResolution = 300;
    image.yResolution = 600;
    image.frameNumber = static_cast<uint32_t>(images_.GetCount()) + 1;
    std::vector<uint8_t> bytes;
    for (const uint16_t pixel : pixels) {
      bytes.push_back(static_cast<uint8_t>(pixel));
      if (bitsPerPixel > 8) bytes.push_back(static_cast<uint8_t>(pixel >> 8));
    }
    image.SetPixelData(bytes);
    image.fileName =
        FormatText("%s\\CACHEDRAW_%lu.RAW", GetScanToPath().c_str(), Lu(image.frameNumber));
    ASSERT_TRUE(image.Save());
    images_.LoadAll();
  }

  // Texts of the boxes since the last call.
  Lines Boxes() {
    Lines texts;
    const auto& shown = host::ShownPrompts();
    for (; boxesSeen_ < shown.size(); ++boxesSeen_) texts.push_back(shown[boxesSeen_].text);
    return texts;
  }
  static std::string Box(const std::string& text, TW_UINT16 code) {
    return (text.empty() ? text : text + "  ") + ConditionCodeSentence(code);
  }

  // From here on the trace is kept, without time stamps.
  void StartTrace() {
    source_->Start();
    Log().SetTimeStamps(false);
    Log().Open("C:\\", "ZYRTWAIN.Log");
    Trace();
  }
  // Its lines since the last call.
  Lines Trace() {
    const std::string text = host::FileBytes("C:\\ZYRTWAIN.Log").value_or("");
    Lines lines;
    for (size_t end; (end = text.find("\r\n", traceSeen_)) != std::string::npos;) {
      lines.push_back(text.substr(traceSeen_, end - traceSeen_));
      traceSeen_ = end + 2;
    }
    return lines;
  }

  ImageCache images_;
  IFace sensors_{nullptr};  // no sensor is to be had
  std::shared_ptr<test::ViewRecord> view_ = std::make_shared<test::ViewRecord>();
  std::function<void()> onMakeView_;
  std::unique_ptr<OpenedSource> source_;
  TW_IDENTITY application_{};
  TW_IDENTITY given_{};  // the source's own, with the number that the manager gave it
  TW_USERINTERFACE userInterface_{};
  TW_PENDINGXFERS pending_{};
  std::vector<TW_HANDLE> received_;

 private:
  size_t boxesSeen_ = 0;
  size_t traceSeen_ = 0;
};

}  // namespace zyr
