// What the user and the application may do while images go out.
#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

class DeliveryTest : public SourceTest {
 public:
  // The user returns images 1, 2 and 3 pixels wide and 3 high, each of its own shade.
  void ReturnThree() {
    Close();
    images_.DeleteAll();
    for (uint32_t width = 1; width <= 3; ++width) {
      AddImage(8, width, std::vector<uint16_t>(3 * width, static_cast<uint16_t>(width)));
    }
    GoTo(5);
    view_->Press(kCommandReturnImages);
    ASSERT_EQ(source_->state(), 6);
    Boxes();
  }
  // The user turns to the last image, takes another one, and deletes that of one width.
  void Meddle(uint32_t widthToDelete = 0) {
    AddImage(8, 9, std::vector<uint16_t>(9, 9));
    for (size_t i = images_.GetCount(); i-- > 0;) {
      images_.SetSelected(i, images_.GetAt(i)->width == 3);
      if (images_.GetAt(i)->width == widthToDelete) images_.Remove(images_.GetAt(i));
    }
  }
  std::vector<uint32_t> Widths() const {
    std::vector<uint32_t> widths;
    for (size_t i = 0; i < images_.GetCount(); ++i) widths.push_back(images_.GetAt(i)->width);
    return widths;
  }

  // Each gives the width of the image that it is about; 0 if it fails.
  uint32_t Info() {
    TW_IMAGEINFO info{};
    return Send(DG_IMAGE, DAT_IMAGEINFO, MSG_GET, &info) == TWRC_SUCCESS ? +info.ImageWidth : 0;
  }
  uint32_t Layout() {
    TW_IMAGELAYOUT layout{};
    const TW_UINT16 result = Send(DG_IMAGE, DAT_IMAGELAYOUT, MSG_GET, &layout);
    return result == TWRC_SUCCESS ? static_cast<uint32_t>(layout.Frame.Right.Whole) : 0;
  }
  uint32_t Native() {
    if (TransferNative() != TWRC_XFERDONE) return 0;
    const platform::LockedBlock block(received_.back());
    return static_cast<const uint8_t*>(block.address())[4];
  }
  uint32_t File() {
    source_->transferFileName_ = "C:\\image.bmp";
    if (Send(DG_IMAGE, DAT_IMAGEFILEXFER, MSG_GET, nullptr) != TWRC_XFERDONE) return 0;
    return static_cast<uint8_t>(host::FileBytes("C:\\image.bmp").value_or("").at(18));
  }
  // One row.
  uint32_t Strip() {
    uint8_t row[12] = {};
    TW_IMAGEMEMXFER transfer{};
    transfer.Memory = {TWMF_APPOWNS | TWMF_POINTER, 4, row};
    if (Send(DG_IMAGE, DAT_IMAGEMEMXFER, MSG_GET, &transfer) != TWRC_SUCCESS) return 0;
    EXPECT_EQ(row[0], transfer.Columns);
    return transfer.Columns;
  }
};

TEST_F(DeliveryTest, KeepsToTheImageUnderWay) {
  using Ask = uint32_t (DeliveryTest::*)();
  const Ask asks[] = {&DeliveryTest::Info, &DeliveryTest::Layout, &DeliveryTest::Native,
                      &DeliveryTest::File, &DeliveryTest::Strip};
  for (const Ask first : asks) {
    for (const Ask second : asks) {
      SCOPED_TRACE(testing::Message() << &first - asks << " " << &second - asks);
      ReturnThree();
      EXPECT_EQ((this->*first)(), 1u);
      Meddle();
      const uint32_t width = (this->*second)();
      if (width == 0) {
        EXPECT_EQ(Status(), TWCC_SEQERROR) << "not after a transfer";
      } else {
        EXPECT_EQ(width, 1u);
      }
      EXPECT_EQ(Layout(), 1u);
      Pending(MSG_ENDXFER);
      EXPECT_EQ(Widths(), (std::vector<uint32_t>{2, 3, 9}));
      EXPECT_EQ(Layout(), 3u) << "the selected one is next";
    }
  }
}

TEST_F(DeliveryTest, ContinuesTheStripsOfOneImage) {
  ReturnThree();
  EXPECT_EQ(Strip(), 1u);
  Meddle();
  EXPECT_EQ(Strip(), 1u);
  EXPECT_EQ(+source_->memYOffset_, 2u);
  view_->Press(kCommandReturnImages);
  EXPECT_EQ(source_->state(), 7) << "once more is too much now";
  EXPECT_EQ(Strip(), 1u);
  EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);
  EXPECT_EQ(Strip(), 3u) << "and from its first row";
  EXPECT_EQ(+source_->memYOffset_, 1u);
}

// The transfer of a deleted image fails, and its end takes no other one.
TEST_F(DeliveryTest, FailsForADeletedImage) {
  const std::string box = Box("No images were available", TWCC_OPERATIONERROR);
  for (const auto transfer : {&DeliveryTest::Native, &DeliveryTest::File, &DeliveryTest::Strip}) {
    ReturnThree();
    EXPECT_EQ(Info(), 1u);
    Meddle(1);
    EXPECT_EQ(Layout(), 0u);
    EXPECT_EQ((this->*transfer)(), 0u);
    EXPECT_EQ(Boxes(), (Lines{box, box}));
    EXPECT_EQ(Status(), TWCC_OPERATIONERROR);
    EXPECT_EQ(source_->state(), 6);
    EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_FAILURE) << "nothing was handed over";
    EXPECT_EQ(Widths(), (std::vector<uint32_t>{2, 3, 9}));
    EXPECT_EQ((this->*transfer)(), 3u);
  }
  ReturnThree();
  EXPECT_EQ(Info(), 1u);
  Meddle(1);
  EXPECT_EQ(Info(), 3u) << "another transfer begins";
  EXPECT_EQ(Native(), 3u);

  ReturnThree();
  EXPECT_EQ(Strip(), 1u);
  Meddle(1);
  EXPECT_EQ(Strip(), 0u);
  EXPECT_EQ(source_->state(), 7);
  EXPECT_EQ(Strip(), 0u) << "and not half of another image";
  EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);
  EXPECT_EQ(source_->state(), 6);
  EXPECT_EQ(Widths(), (std::vector<uint32_t>{2, 3, 9}));

  // What the application has is returned, whatever became of it here.
  SetOnlyReturnOneImage(true);
  ReturnThree();
  EXPECT_EQ(Native(), 1u);
  Meddle(1);
  Pending(MSG_ENDXFER);
  EXPECT_EQ(pending_.Count, 0);
}

TEST_F(DeliveryTest, ForgetsTheImageWithTheDelivery) {
  const std::function<void()> ends[] = {
      [&] { Pending(MSG_RESET); },
      [&] { Disable(), Enable(); },
      [&] { Close(), GoTo(5); },
  };
  for (const auto& end : ends) {
    ReturnThree();
    EXPECT_TRUE(source_->IsDelivering());
    EXPECT_EQ(Info(), 1u);
    Meddle();
    end();
    EXPECT_FALSE(source_->IsDelivering());
    EXPECT_EQ(Layout(), 3u);
    images_.SetSelected(1, true);
    EXPECT_EQ(Layout(), 2u) << "nothing is under way";
    view_->Press(kCommandReturnImages);
    EXPECT_EQ(Info(), 2u);
  }
}

TEST_F(DeliveryTest, BearsAnyAnswerToItsNotification) {
  struct Case {
    std::function<TW_UINT16()> answer;
    TW_UINT16 result;
    int32_t state;
    size_t images;
  };
  const auto take = [&](TW_UINT16 end) {
    EXPECT_NE(Info(), 0u);
    EXPECT_NE(Native(), 0u);
    return Pending(end);
  };
  const Case cases[] = {
      {[&] { return Pending(MSG_ENDXFER); }, TWRC_FAILURE, 6, 2},
      {[&] { return Pending(MSG_RESET); }, TWRC_SUCCESS, 5, 3},
      {[&] { return Disable(); }, TWRC_SUCCESS, 4, 3},
      {[&] { return Close(); }, TWRC_SUCCESS, 3, 3},
      {[&] { return Enable(); }, TWRC_FAILURE, 6, 3},
      {[&] { return Disable(), Enable(); }, TWRC_SUCCESS, 5, 3},
      {[&] { return Close(), Open(), Enable(); }, TWRC_SUCCESS, 5, 3},
      {[&] { return take(MSG_ENDXFER); }, TWRC_SUCCESS, 6, 2},
      {[&] { return take(MSG_RESET); }, TWRC_SUCCESS, 5, 3},
      {[&] { return take(MSG_ENDXFER), take(MSG_ENDXFER), take(MSG_ENDXFER); }, TWRC_SUCCESS, 5, 0},
      {[&] { return images_.DeleteAll(), Pending(MSG_ENDXFER); }, TWRC_SUCCESS, 5, 0},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(&each - cases);
    host::OnManagerCall({});
    Close();
    images_.DeleteAll();
    for (int i = 0; i < 3; ++i) AddImage(8, 1, {1});
    GoTo(5);
    host::OnManagerCall([&](const host::ManagerCall& call) {
      if (call.message != MSG_XFERREADY) return;
      EXPECT_TRUE(source_->IsDelivering());
      EXPECT_EQ(each.answer(), each.result);
    });
    view_->Press(kCommandReturnImages);
    EXPECT_EQ(source_->state(), each.state);
    EXPECT_EQ(images_.GetCount(), each.images);
    EXPECT_EQ(view_->windowAlive(), each.state > 4);
  }
}

}  // namespace
}  // namespace zyr
