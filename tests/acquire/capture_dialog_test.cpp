#include "acquire/capture_dialog/capture_dialog.h"

#include <functional>

#include "platform/files.h"
#include "settings/directories.h"
#include "settings/store.h"
#include "tests/acquire/acquire_test.h"
#include "tests/acquire/recorded_view.h"

namespace zyr::test {
namespace {

class CaptureDialogTest : public AcquireTest, public CaptureDialogOwner {
 protected:
  void SetUp() override {
    AcquireTest::SetUp();
    host::PutFile(required_, "<settings/>");
  }
  void TearDown() override {
    dialog_.reset();
    AcquireTest::TearDown();
  }

  void NotifyXferReady() override { Notified(&xferReadies_); }
  void NotifyCloseDSReq() override { Notified(&closeRequests_); }
  void Notified(int* count) {
    ++*count;
    if (onNotify_) onNotify_();
  }

  bool Open() {
    dialog_ = std::make_shared<CaptureDialog>(*this, images_, RecordIn(view_));
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
  std::shared_ptr<ViewRecord> view_ = std::make_shared<ViewRecord>();
  std::shared_ptr<CaptureDialog> dialog_;
  std::function<void()> onNotify_;
  int xferReadies_ = 0;
  int closeRequests_ = 0;
};

TEST_F(CaptureDialogTest, OpensWithItsFirstStepsAndCloses) {
  ASSERT_TRUE(Open());
  EXPECT_TRUE(view_->shown);
  ASSERT_EQ(view_->lines.size(), 2u);
  EXPECT_EQ(LastTitle(), "Step #1: Acquire New Image");
  for (const uint32_t command : {kCommandReturnImages, kCommandDeleteSelected, kCommandDeleteAll}) {
    EXPECT_FALSE(Enabled(command));
  }
  EXPECT_FALSE(view_->returnTimer);
  dialog_->ShowStatus(kStatusStep, "Step", "first");
  dialog_->ShowStatusDetail("second");
  dialog_->ShowStatusDetail("third");
  EXPECT_EQ(view_->lines.back(), (StatusLine{kStatusStep, "Step", "first\nsecond\nthird"}));
  view_->Press(kCommandReturnImages);
  EXPECT_EQ(LastPrompt(), "No Images Available");
  EXPECT_EQ(xferReadies_, 0);

  onNotify_ = [this] {
    EXPECT_TRUE(view_->windowAlive());
    view_->Press(kCommandCancel);  // an application that closes the window for its part
  };
  view_->Press(kCommandCancel);
  EXPECT_EQ(closeRequests_, 1);
  EXPECT_FALSE(view_->windowAlive());
  view_->canBeMade = false;
  EXPECT_FALSE(Open());
}

TEST_F(CaptureDialogTest, LooksForItsFiles) {
  host::PutFile("C:\\App\\Settings.XML", "of another program");
  ASSERT_TRUE(Open());
  EXPECT_EQ(LastPrompt(), "WARNING! Possible Conflicting Files");
  EXPECT_TRUE(view_->shown);
  host::OnPrompt([this](const host::ShownPrompt&) { platform::DestroyWindowOf(view_->window); });
  ASSERT_TRUE(Open()) << "the application closes the window behind the box";
  EXPECT_FALSE(view_->shown);
  host::OnPrompt({});

  platform::RemoveFile(required_);
  ASSERT_TRUE(Open());
  EXPECT_EQ(LastPrompt(), "Required ZYR Files Are Missing");
  EXPECT_TRUE(host::ShownPrompts().back().text.ends_with("\n\n" + required_));
  EXPECT_FALSE(view_->windowAlive());
  EXPECT_EQ(closeRequests_, 1);
  SetCheckForConflicts(false);
  ASSERT_TRUE(Open());
  EXPECT_TRUE(view_->windowAlive());
  EXPECT_EQ(host::ShownPrompts().size(), 3u);
}

TEST_F(CaptureDialogTest, ReturnsImagesUprightHoweverOften) {
  OpenWithImages();
  CachedImage& image = *images_.GetAt(0);
  const std::vector<uint8_t> bottomUp = CopyOf(image.PixelData());
  ASSERT_NE(image.PrepareImage(), nullptr);
  view_->Press(kCommandReturnImages);
  EXPECT_EQ(xferReadies_, 1);
  EXPECT_EQ(image.image8, nullptr);
  const std::vector<uint8_t> topDown = CopyOf(image.PixelData());
  EXPECT_NE(topDown, bottomUp);
  EXPECT_TRUE(images_.GetAt(1)->rowsTopDown());
  view_->Press(kCommandReturnImages);
  EXPECT_EQ(xferReadies_, 2);
  EXPECT_EQ(CopyOf(image.PixelData()), topDown);
  EXPECT_TRUE(view_->windowAlive());
}

TEST_F(CaptureDialogTest, ReturnsWhatIsThereByItself) {
  SetReturnImmediatelyIfAvailable(true);
  OpenWithImages();
  EXPECT_EQ(view_->returnTimer, 100u);
  view_->FireTimer();
  EXPECT_EQ(xferReadies_, 1);
  EXPECT_FALSE(view_->returnTimer);
}

TEST_F(CaptureDialogTest, FollowsTheListWhenTheSourceTakesImages) {
  OpenWithImages();
  for (const bool anyLeft : {true, false}) {
    images_.Remove(images_.GetAt(0));
    platform::SendToWindow(view_->window, CaptureDialog::kMessageRefreshThumbnails, 0, 0);
    EXPECT_EQ(Enabled(kCommandReturnImages), anyLeft);
    EXPECT_EQ(view_->lines.size(), anyLeft ? 2u : 3u) << "the first step is shown again";
  }
}

TEST_F(CaptureDialogTest, DeletesOnlyWhenConfirmed) {
  OpenWithImages();
  images_.SetSelected(1, true);
  dialog_->RefreshButtons();
  EXPECT_TRUE(Enabled(kCommandDeleteSelected));
  for (const uint32_t command : {kCommandDeleteSelected, kCommandDeleteAll}) {
    const size_t before = images_.GetCount();
    host::AnswerNextQuestion(false);
    view_->Press(command);
    EXPECT_EQ(images_.GetCount(), before);
    view_->Press(command);
    EXPECT_EQ(images_.GetCount(), before - 1);
  }
  EXPECT_FALSE(Enabled(kCommandDeleteAll));
}

// The application may end everything from inside a notification or behind a message box.
TEST_F(CaptureDialogTest, OutlivesItsOwnersLastReference) {
  const auto letGo = [this] {
    platform::DestroyWindowOf(view_->window);
    dialog_.reset();
  };
  for (const bool withImages : {true, false}) {
    for (const uint32_t command : {kCommandCancel, kCommandReturnImages, kCommandDeleteAll}) {
      onNotify_ = nullptr;
      host::OnPrompt({});
      OpenWithImages();
      if (!withImages) images_.DeleteAll();
      onNotify_ = letGo;
      host::OnPrompt([&](const host::ShownPrompt&) { letGo(); });
      view_->Press(command);
      EXPECT_EQ(view_->dialog.lock(), nullptr);
    }
  }
}

}  // namespace
}  // namespace zyr::test
