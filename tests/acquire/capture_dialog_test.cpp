#include "acquire/capture_dialog/capture_dialog.h"

#include "platform/files.h"
#include "settings/store.h"
#include "tests/acquire/capture_dialog_fixture.h"

namespace zyr::test {
namespace {

using CaptureDialogTest = CaptureDialogFixture;

TEST_F(CaptureDialogTest, OpensWithItsFirstStepsAndCloses) {
  ASSERT_TRUE(Open());
  EXPECT_TRUE(view_->shown);
  ASSERT_EQ(view_->lines.size(), 2u);
  EXPECT_EQ(LastTitle(), "Step #1: Acquire New Image");
  for (const uint32_t command : {kCommandReturnImages, kCommandDeleteSelected, kCommandDeleteAll}) {
    EXPECT_FALSE(Enabled(command));
  }
  EXPECT_FALSE(view_->returnTimer);
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
  view_->onStatus = [this](const StatusLine&) { view_->FireTimer(); };
  view_->Press(kCommandAcquireImage);
  EXPECT_EQ(xferReadies_, 0) << "the user was faster";
  EXPECT_FALSE(view_->returnTimer);
  view_->onStatus = nullptr;

  ASSERT_TRUE(Open());
  EXPECT_EQ(view_->returnTimer, 100u);
  view_->FireTimer();
  EXPECT_EQ(xferReadies_, 1);
  EXPECT_FALSE(view_->returnTimer);
}

TEST_F(CaptureDialogTest, FollowsTheListWhenTheSourceTakesImages) {
  OpenWithImages();
  for (const bool anyLeft : {true, false}) {
    images_.Remove(images_.GetAt(0));
    platform::SendToWindow(view_->window, kMessageRefreshThumbnails, 0, 0);
    EXPECT_EQ(Enabled(kCommandReturnImages), anyLeft);
    EXPECT_EQ(LastTitle(), anyLeft ? "Generating Displayable Image" : "Step #1: Acquire New Image");
    EXPECT_EQ(view_->panel, anyLeft ? CapturePanel::kThumbnails : CapturePanel::kStatus);
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

TEST_F(CaptureDialogTest, ListsTheLinesOfACapture) {
  ASSERT_TRUE(Open());
  const auto send = [this](uintptr_t kind, int32_t line, const std::string& text) {
    const StatusRecord record{line, "T", text};
    return platform::SendToWindow(view_->window, kMessageStatusLine, kind,
                                  reinterpret_cast<intptr_t>(&record));
  };
  EXPECT_EQ(send(0, -1, "a"), 2);
  EXPECT_EQ(send(1, -1, "b"), 3);
  EXPECT_EQ(send(4, 2, "A"), 2);
  dialog_->ShowStatusDetail("c");
  send(4, 1000, "nowhere");
  send(9, -1, "of no kind");
  EXPECT_EQ(platform::SendToWindow(view_->window, kMessageStatusLine, 3, 0), 0);
  const std::vector<StatusLine> expected = {{kStatusInformation, "T", "A"},
                                            {kStatusError, "T", "b\nc"}};
  EXPECT_EQ(std::vector(view_->lines.begin() + 2, view_->lines.end()), expected);
}

TEST_F(CaptureDialogTest, ShowsImagesAsThumbnails) {
  OpenWithImages();
  EXPECT_EQ(LastTitle(), "Generating Displayable Image");
  EXPECT_EQ(view_->panel, CapturePanel::kThumbnails);
  EXPECT_EQ(view_->refreshes, 1);
  EXPECT_EQ(host::WaitCursorsShown(), 1u);
  platform::SendToWindow(view_->window, kMessageRefreshThumbnails, 0, 0);
  EXPECT_EQ(view_->lines.size(), 3u) << "they are in view already";

  dialog_->OnThumbnailSelected(1, true);
  EXPECT_TRUE(dialog_->IsThumbnailSelected(1));
  EXPECT_FALSE(dialog_->IsThumbnailSelected(0) || dialog_->IsThumbnailSelected(2));
  EXPECT_TRUE(Enabled(kCommandDeleteSelected));
  dialog_->OnThumbnailSelected(1, false);
  EXPECT_FALSE(Enabled(kCommandDeleteSelected));

  images_.GetAt(1)->TurnTopDown();
  for (const size_t index : {0, 1}) {  // 5 x 4 pixels
    EXPECT_EQ(dialog_->Thumbnail(index, 100, 100)->width(), 5u);
    EXPECT_EQ(dialog_->Thumbnail(index, 4, 100)->height(), 3u);
    EXPECT_EQ(dialog_->Thumbnail(index, 100, 2)->width(), 2u);
    EXPECT_EQ(dialog_->Thumbnail(index, 0, 10), nullptr);
    EXPECT_FALSE(images_.GetAt(index)->preview || images_.GetAt(index)->image8);
  }
  EXPECT_EQ(dialog_->Thumbnail(2, 10, 10), nullptr);

  EXPECT_EQ(view_->grid.rows, 2u);
  view_->Press(kCommandThumbnails);
  EXPECT_EQ(GetThumbnailRows(), 2u) << "Cancel";
  view_->answers.grid = [](ThumbnailGridSize present) {
    return ThumbnailGridSize{present.rows + 1, 5};
  };
  view_->Press(kCommandThumbnails);
  EXPECT_EQ(GetThumbnailRows() * GetThumbnailCols(), 15u);
  EXPECT_EQ(view_->grid.rows * view_->grid.columns, 15u);
}

TEST_F(CaptureDialogTest, OpensAnImageForEditing) {
  OpenWithImages();
  const int refreshes = view_->refreshes;
  const auto pixels = [this] { return CopyOf(images_.GetAt(1)->PixelData()); };
  const std::vector<uint8_t> before = pixels();
  const auto open = [this](size_t index, bool accept, std::function<void()> meanwhile = nullptr) {
    int shown = 0;
    view_->answers.image = [&, accept](ImageDialog& dialog) {
      ++shown;
      dialog.OnCommand(kImageInvert);
      if (meanwhile) meanwhile();
      accept ? dialog.OnOK() : dialog.OnCancel();
    };
    dialog_->OnThumbnailOpened(index);
    return shown;
  };
  EXPECT_EQ(open(2, true), 0) << "there is none";
  for (const bool accept : {false, true}) {
    EXPECT_EQ(open(1, accept), 1);
    EXPECT_EQ(pixels() != before, accept);
    EXPECT_EQ(view_->refreshes - refreshes, accept);
  }
  host::FillDiskAfter(0);
  EXPECT_EQ(open(1, true), 1);
  EXPECT_EQ(LastTitle(), "Unable To Save Image!");
  host::FillDiskAfter(std::nullopt);

  EXPECT_EQ(open(1, true, [this] { images_.DeleteAll(); }), 1);
  EXPECT_EQ(images_.GetCount(), 0u);
  PutCacheFile("CACHEDRAW_2.RAW", 3);
  images_.LoadAll();
  EXPECT_EQ(open(0, true, [this] { view_->Press(kCommandCancel); }), 1);
  EXPECT_FALSE(view_->windowAlive());
  ASSERT_TRUE(Open());
  EXPECT_EQ(open(0, true, [this] { dialog_.reset(); }), 1);
}

TEST_F(CaptureDialogTest, OpensTheOptionsOnceAndShowsWhatTheyChanged) {
  OpenWithImages();
  const int refreshes = view_->refreshes;
  host::DenyRegistryWrites(true);
  host::AnswerNextQuestion(false);
  view_->Press(kCommandOptions);
  EXPECT_EQ(LastPrompt(), "Invalid Privileges!");
  EXPECT_EQ(view_->optionsShown, 0);
  host::AnswerNextQuestion(true);
  view_->answers.options = [](OptionsDialog& dialog, RecordedOptionsView& options) {
    dialog.OnOK();
    EXPECT_FALSE(options.ended) << "nothing could be saved";
    dialog.OnCancel();
  };
  view_->Press(kCommandOptions);
  EXPECT_EQ(LastPrompt(), "Error Saving Settings");
  EXPECT_EQ(view_->refreshes, refreshes);

  host::DenyRegistryWrites(false);
  SetSelectedSensorHWID("id");
  SetSelectedSensorNAME("LUMORAY");
  const std::string before = view_->tips[kCommandSelectSensor];
  view_->answers.options = [this](OptionsDialog& dialog, RecordedOptionsView& options) {
    for (const uint32_t command : {kCommandOptions, kCommandSelectSensor, kCommandReturnImages}) {
      view_->Press(command);
    }
    dialog.OnSelect(0, 2);  // the bit depth
    dialog.OnSelect(1, 0);  // the sensor
    options.pages.at(options.shown)->values[1] = 0;
    dialog.OnOK();
  };
  view_->Press(kCommandOptions);
  EXPECT_EQ(view_->optionsShown, 2) << "not twice";
  EXPECT_EQ(view_->selectionsShown + xferReadies_, 0);
  EXPECT_EQ(depth_, 16u);
  EXPECT_NE(view_->tips[kCommandSelectSensor], before);
  EXPECT_EQ(view_->refreshes, refreshes + 1);

  view_->answers.options = [this](OptionsDialog& dialog, RecordedOptionsView&) {
    platform::DestroyWindowOf(view_->window);  // by the application
    dialog.OnOK();
  };
  view_->Press(kCommandOptions);
  EXPECT_FALSE(view_->windowAlive());
}

TEST_F(CaptureDialogTest, OpensItsHelp) {
  ASSERT_TRUE(Open());
  view_->Press(kCommandHelp);
  EXPECT_EQ(host::OpenedDocuments().at(0), GetSourceDirectory() + "\\ZYRTWAIN.CHM");
  EXPECT_EQ(LastPrompt(), "");
  host::SetShellAnswer(32);
  view_->Press(kCommandHelp);
  EXPECT_EQ(LastPrompt(), "Unable To Open Help");
}

}  // namespace
}  // namespace zyr::test
