#include "imaging/formats/image_test_saver.h"

#include "foundation/support/error.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

namespace host = platform::host;
using namespace std::string_literals;

constexpr TestImageFields kFields = {2, 16, 0x01020304, 3, 2, 770, 769};
constexpr char kSamples[] = "a twelve-byte frame";

class ImageTestSaverTest : public ImagingTest {
 protected:
  ImageTestSaverTest() {
    saver_.folder = "C:\\out";
    saver_.SetBaseFilename("Base");
  }
  CKIPImageTestSaver saver_;
};

TEST_F(ImageTestSaverTest, FieldsStandAheadOfTheSamples) {
  saver_.SaveImage("Tag", kSamples, kFields, "text");
  EXPECT_EQ(host::FileBytes("C:\\out\\Base_Tag_0.RAW16"),
            "\x02\0\0\0\x10\0\0\0\x04\x03\x02\x01\x03\0\0\0\x02\0\0\0\x02\x03\0\0\x01\x03\0\0"
            "\x04\0\0\0text"
            "a twelve-byt"s);
  saver_.SaveImage("", kSamples, {1, 8, 0, 1, 1, 0, 0}, "");
  EXPECT_EQ(host::FileBytes("C:\\out\\Base_1.RAW8")->size(), 33u);
  EXPECT_EQ(saver_.counter, 2u);
}

TEST_F(ImageTestSaverTest, FirstFileClearsAwayTheOldOnes) {
  const auto names = {"Base_Tag_7.RAW16", "Base.RAW16", "Base_Tag_7.RAW8", "Other.RAW16"};
  for (const bool enabled : {false, true}) {
    for (const std::string name : names) host::PutFile("C:\\out\\" + name, "old");
    saver_.counter = 0;
    saver_.SetEnabled(enabled);
    saver_.SaveImage("Tag", kSamples, kFields, "");
    for (const std::string name : names) {
      const bool goes = enabled && name != "Base_Tag_7.RAW8" && name != "Other.RAW16";
      EXPECT_EQ(host::FileBytes("C:\\out\\" + name).has_value(), !goes) << name;
    }
  }
  host::PutFile("C:\\out\\Base.RAW16", "old");
  saver_.SaveImage("Tag", kSamples, kFields, "");
  EXPECT_TRUE(host::FileBytes("C:\\out\\Base.RAW16"));
}

TEST_F(ImageTestSaverTest, OnlyAShortWriteIsTold) {
  saver_.folder = "C:\\missing";
  saver_.SaveImage("Tag", kSamples, kFields, "");
  EXPECT_TRUE(host::ShownPrompts().empty());
  saver_.folder = "C:\\out";
  SetErrorText(0, "The disk is full.");
  host::FillDiskAfter(30);
  saver_.SaveImage("Tag", kSamples, kFields, "");
  ASSERT_EQ(host::ShownPrompts().size(), 1u);
  EXPECT_EQ(host::ShownPrompts()[0].title, "Unable To Save");
  EXPECT_EQ(host::ShownPrompts()[0].text,
            "CKIPImageTestSaver::SaveImage() could not save the image. The disk is full.");
}

}  // namespace
}  // namespace zyr
