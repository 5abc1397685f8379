// A capture dialog with a recorded view, and the application that has opened it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/iface/status_sink.h"
#include "settings/directories.h"
#include "tests/acquire/acquire_test.h"
#include "tests/acquire/recorded_view.h"

namespace zyr::test {

class CaptureDialogFixture : public AcquireTest, public CaptureDialogOwner {
 protected:
  void SetUp() override {
    AcquireTest::SetUp();
    host::PutFile(required_, "<settings/>");
    sensors_.emplace(nullptr);
  }
  void TearDown() override {
    dialog_.reset();
    CaptureStatus().SetTarget(nullptr, 0);
    EXPECT_EQ(host::WaitCursorsStanding(), 0u);
    AcquireTest::TearDown();
  }

  void NotifyXferReady() override { Notified(&xferReadies_); }
  void NotifyCloseDSReq() override { Notified(&closeRequests_); }
  bool IsDelivering() const override { return isDelivering_; }
  void SetGrayscaleDepth(uint32_t bits) override { depth_ = bits; }
  void FillSettingsList(SettingsListControl*) const override {}
  void Notified(int* count) {
    ++*count;
    if (onNotify_) onNotify_();
  }

  bool Open() {
    dialog_ = std::make_shared<CaptureDialog>(*this, images_, *sensors_, RecordIn(view_));
    return dialog_->Create(nullptr);
  }
  void OpenWithImages() {
    PutCacheFile("CACHEDRAW.RAW", 1);
    PutCacheFile("CACHEDRAW_1.RAW", 2);
    ASSERT_TRUE(Open());
  }
  bool Enabled(uint32_t command) const { return view_->enabled.at(command); }
  std::string LastTitle() const { return view_->lines.back().title; }
  std::string LastPrompt() const {
    return host::ShownPrompts().empty() ? "" : host::ShownPrompts().back().title;
  }

  const std::string required_ = GetSourceDirectory() + "\\Settings.XML";
  ImageCache images_;
  std::optional<IFace> sensors_;
  std::shared_ptr<ViewRecord> view_ = std::make_shared<ViewRecord>();
  std::shared_ptr<CaptureDialog> dialog_;
  std::function<void()> onNotify_;
  int xferReadies_ = 0;
  int closeRequests_ = 0;
  bool isDelivering_ = false;
  uint32_t depth_ = 0;
};

}  // namespace zyr::test
