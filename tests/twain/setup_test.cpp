// The triplets that set a transfer up, and those about colour.
#include <algorithm>
#include <array>
#include <cstddef>

#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

class SetupTest : public SourceTest {
 protected:
  TW_UINT16 SetFile(const std::string& name) {
    TW_SETUPFILEXFER setup{};
    name.copy(setup.FileName, sizeof setup.FileName);
    return Send(DG_CONTROL, DAT_SETUPFILEXFER, MSG_SET, &setup);
  }
};

TEST_F(SetupTest, TakesTheTransferFile) {
  GoTo(4);
  EXPECT_EQ(SetFile("C:\\made.bmp"), TWRC_SUCCESS);
  EXPECT_EQ(source_->transferFileName_, "C:\\made.bmp");
  EXPECT_EQ(host::FileBytes("C:\\made.bmp"), "") << "created empty";
  host::PutFile("C:\\kept.bmp", "kept");
  EXPECT_EQ(SetFile("C:\\kept.bmp"), TWRC_SUCCESS);
  EXPECT_EQ(host::FileBytes("C:\\kept.bmp"), "kept");
  EXPECT_EQ(host::CountsOfFiles().openHandles, 0);
  TW_SETUPFILEXFER setup;
  std::memset(&setup, 0x77, sizeof setup);
  EXPECT_EQ(Send(DG_CONTROL, DAT_SETUPFILEXFER, MSG_GETCURRENT, &setup), TWRC_SUCCESS);
  EXPECT_STREQ(setup.FileName, "C:\\TWAIN.BMP") << "whatever has been set";
  EXPECT_EQ(setup.Format, TWFF_BMP);
  EXPECT_EQ(setup.VRefNum, 0);

  Boxes();
  host::DenyWriting("C:\\locked");
  for (const char* path : {"C:\\none\\image.bmp", "C:\\locked.bmp", "", "C:\\"}) {
    EXPECT_EQ(SetFile(path), TWRC_FAILURE) << path;
    EXPECT_EQ(Boxes(), Lines{Box("Unable to create file <<DAT_SETUPFILEXFER>>", TWCC_BADVALUE)});
  }
}

// Applications pass longer names than the record's field holds.
TEST_F(SetupTest, ReadsNamesAsFarAsTheyCanBeRead) {
  GoTo(4);
  for (const size_t readable : {size_t{2000}, sizeof(TW_SETUPFILEXFER)}) {
    std::vector<char> name(2000, 'x');
    host::DenyReading(name.data() + readable, 16);
    Send(DG_CONTROL, DAT_SETUPFILEXFER, MSG_SET, name.data());
    EXPECT_EQ(source_->transferFileName_, std::string(std::min<size_t>(readable, 1024), 'x'));
  }
}

TEST_F(SetupTest, AnswersInPartsOfRecords) {
  GoTo(4);
  source_->memYOffset_ = 5;
  TW_SETUPMEMXFER setup{};
  EXPECT_EQ(Send(DG_CONTROL, DAT_SETUPMEMXFER, MSG_GET, &setup), TWRC_SUCCESS);
  EXPECT_EQ(+setup.MinBufSize, 2048u);
  EXPECT_EQ(+setup.MaxBufSize, 1048576u);
  EXPECT_EQ(+setup.Preferred, 1048576u);
  EXPECT_EQ(source_->memYOffset_, 0u);

  TW_UINT32 group = 0xFFFFFFFF;
  EXPECT_EQ(Send(DG_CONTROL, DAT_XFERGROUP, MSG_SET, &group), TWRC_SUCCESS);
  EXPECT_EQ(group, 0xFFFFFFFF);
  EXPECT_EQ(Send(DG_CONTROL, DAT_XFERGROUP, MSG_GET, &group), TWRC_SUCCESS);
  EXPECT_EQ(group, 0xFFFF0002);

  pending_ = {0xFFFF, {0xABCD1234}};
  EXPECT_EQ(Pending(MSG_GET), TWRC_SUCCESS);
  EXPECT_EQ(pending_.Count, 0);
  EXPECT_EQ(+pending_.EOJ, 0xABCD1234);

  TW_PALETTE8 palette;
  std::memset(&palette, 0x33, sizeof palette);
  EXPECT_EQ(Send(DG_IMAGE, DAT_PALETTE8, MSG_SET, &palette), TWRC_SUCCESS);
  EXPECT_EQ(palette.NumColors, 0x3333);
  EXPECT_EQ(Send(DG_IMAGE, DAT_PALETTE8, MSG_GET, &palette), TWRC_SUCCESS);
  EXPECT_EQ(palette.NumColors, 256);
  EXPECT_EQ(palette.PaletteType, TWPA_GRAY);
  EXPECT_EQ(palette.Colors[200].Channel3, 200);

  TW_EXTIMAGEINFO info{3, {{1, 2, 3, 4, 5}}};
  EXPECT_EQ(Send(DG_IMAGE, DAT_EXTIMAGEINFO, MSG_GET, &info), TWRC_SUCCESS);
  EXPECT_EQ(+info.NumInfos, 0u);
  EXPECT_EQ(info.Info[0].CondCode, TWRC_INFONOTSUPPORTED);
  host::DenyWritingTo(&info.Info[0], sizeof info.Info[0]);  // an empty list ends behind its count
  info = {9, {{1, 2, 3, 4, 5}}};
  EXPECT_EQ(Send(DG_IMAGE, DAT_EXTIMAGEINFO, MSG_GET, &info), TWRC_SUCCESS);
  EXPECT_EQ(+info.NumInfos, 0u);
  EXPECT_EQ(info.Info[0].CondCode, 4);
}

TEST_F(SetupTest, KeepsResponseTables) {
  std::array<TW_ELEMENT8, 256> ramp;
  FillIdentityRamp(ramp);
  EXPECT_EQ(std::memcmp(&ramp[255], "\xFF\xFF\xFF\xFF", 4), 0);
  std::array<TW_ELEMENT8, 256> given;
  given.fill({1, 2, 3, 4});
  const auto isEqual = [](const auto& a, const auto& b) {
    return std::memcmp(a.data(), b.data(), sizeof a) == 0;
  };
  for (const bool gray : {true, false}) {
    const TW_UINT16 type = gray ? DAT_GRAYRESPONSE : DAT_RGBRESPONSE;
    const auto& table = gray ? source_->grayResponse_ : source_->rgbResponse_;
    EXPECT_EQ(Send(DG_IMAGE, type, MSG_GET, &given), TWRC_SUCCESS);
    EXPECT_TRUE(isEqual(table, ramp));
    EXPECT_EQ(Send(DG_IMAGE, type, MSG_SET, &given), TWRC_SUCCESS);
    EXPECT_TRUE(isEqual(table, given));
    EXPECT_EQ(Send(DG_IMAGE, type, MSG_RESET, nullptr), TWRC_SUCCESS);
    EXPECT_TRUE(isEqual(table, ramp));
  }
}

std::string Text(const TW_FIX32* values, size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += FormatText("%.2f ", FromFix32(values[i]));
  return text;
}

TEST_F(SetupTest, DescribesASampleColour) {
  struct {
    TW_CIECOLOR color;
    TW_FIX32 more[4];
  } data;
  std::memset(&data, 0x11, sizeof data);
  EXPECT_EQ(Send(DG_IMAGE, DAT_CIECOLOR, MSG_SET, &data), TWRC_SUCCESS);
  const TW_CIECOLOR& color = data.color;
  EXPECT_EQ(color.ColorSpace, 2);
  EXPECT_EQ(color.LowEndian, 0);
  EXPECT_EQ(color.DeviceDependent, 1);
  EXPECT_EQ(+color.VersionNumber, 0);
  for (const TW_TRANSFORMSTAGE* stage : {&color.StageABC, &color.StageLMN}) {
    EXPECT_EQ(Text(&stage->Decode[0].StartIn, 1), stage == &color.StageABC ? "0.10 " : "1.10 ");
    EXPECT_EQ(stage->Decode[0].BreakIn.Whole, 0x1111) << "stays the caller's";
    EXPECT_EQ(Text(stage->Mix[0], 3) + Text(stage->Mix[1], 3) + Text(stage->Mix[2], 3),
              "0.00 0.10 0.20 1.00 1.10 1.20 2.00 2.10 2.20 ");
  }
  EXPECT_EQ(Text(&color.WhitePoint.X, 1) + Text(&color.BlackPoint.X, 1) +
                Text(&color.WhitePaper.X, 1) + Text(&color.BlackInk.Z, 1),
            "4.40 1.10 1.10 6.60 ");
  TW_FIX32 samples[5];
  std::memcpy(samples, reinterpret_cast<const char*>(&data) + offsetof(TW_CIECOLOR, Samples),
              sizeof samples);
  EXPECT_EQ(Text(samples, 4), "99.99 98.98 97.97 96.96 ");
  EXPECT_EQ(samples[4].Whole, 0x1111);
  // A record with nothing behind it gets one sample.
  std::vector<char> exact(sizeof(TW_CIECOLOR));
  host::DenyWritingTo(exact.data() + exact.size(), 16);
  EXPECT_EQ(Send(DG_IMAGE, DAT_CIECOLOR, MSG_GET, exact.data()), TWRC_SUCCESS);
}

}  // namespace
}  // namespace zyr
