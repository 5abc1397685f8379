// What the formats have in common.
#include <filesystem>

#include "imaging/formats/bmp.h"
#include "imaging/formats/jpeg.h"
#include "imaging/formats/tiff.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

namespace host = platform::host;

constexpr char kPath[] = R"(C:\out\picture)";

struct Format {
  const char* name;
  uint32_t code;
  uint32_t cannotOpenCode;
  const char* cannotOpen;
  double firstFraction;  // for the first of 4 rows
  bool (*save)(const std::string& path, CKIPImage* image);
};

class ImageFilesTest : public ImagingTest, public testing::WithParamInterface<Format> {
 protected:
  bool Save(const std::string& path, CKIPImage* image) { return GetParam().save(path, image); }
};

TEST_P(ImageFilesTest, SavingTellsTheImageAboutTheFile) {
  const auto image = RandomGrey(31, 4);
  host::PressEscape();  // before the save: forgotten
  ASSERT_TRUE(Save(kPath, image.get()));
  EXPECT_EQ(image->fileFormat, GetParam().code);
  EXPECT_EQ(image->fileSize, host::FileBytes(kPath)->size());
  const double first = GetParam().firstFraction;
  EXPECT_EQ(g_fractions, (std::vector<double>{first, first + 0.25, first + 0.5, first + 0.75}));
}

TEST_P(ImageFilesTest, EscapeEndsTheSaveAndDeletesTheFile) {
  for (int row = 1; row <= 4; ++row) {
    host::PutFile(kPath, "old");
    host::PressEscapeAtQuestion(row);
    EXPECT_FALSE(Save(kPath, RandomGrey(31, 4).get()));
    ExpectError(3, "User abort");
    EXPECT_FALSE(host::FileBytes(kPath).has_value());
  }
}

TEST_P(ImageFilesTest, FailsWithoutFolderOrImage) {
  EXPECT_FALSE(Save(R"(C:\missing\picture)", RandomGrey(3, 3).get()));
  ExpectError(GetParam().cannotOpenCode, GetParam().cannotOpen);
  EXPECT_EQ(CKIPImageFile::LastFileName(), R"(C:\missing\picture)");
  CKIPImage empty;
  EXPECT_FALSE(Save(kPath, &empty));
  ExpectError(0x20000005, "Invalid image specified");
  EXPECT_FALSE(Save(kPath, nullptr));
  EXPECT_FALSE(host::FileBytes(kPath).has_value());
}

TEST_P(ImageFilesTest, DiskFullDeletesTheFile) {
  // The libraries write past the double; this device is as full as a disk can be. Windows has none.
  if (!std::filesystem::exists("/dev/full")) return;
  const std::filesystem::path link = host::NativeOf(kPath);
  for (const uint32_t height : {2u, 3000u}) {  // found out at the end, and on the way
    std::filesystem::create_symlink("/dev/full", link);
    const auto image = RandomGrey(300, height);
    EXPECT_FALSE(Save(kPath, image.get()));
    const bool failsToOpen = std::string(GetParam().name) == "Tiff";  // writes as it opens
    EXPECT_EQ(LastImageErrorCode(), failsToOpen ? 0x10000006u : 0x10000007u);
    EXPECT_EQ(std::filesystem::remove(link), failsToOpen);  // the others have removed it
    EXPECT_EQ(image->fileSize, 0u);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, ImageFilesTest,
    testing::Values(
        Format{"Bmp", 1, 0x10000006, R"(Unable to save BMP file 'C:\missing\picture')", 0,
               [](const std::string& path, CKIPImage* image) {
                 return CKIPBmpSaver().Save(path, image, RecordProgress);
               }},
        Format{"Jpeg", 3, 0x10000005, R"(Unable to open JPEG file 'C:\missing\picture')", 0.25,
               [](const std::string& path, CKIPImage* image) {
                 return CKIPJpegSaver().Save(path, image, 90, RecordProgress);
               }},
        Format{"Tiff", 5, 0x10000006, R"(Unable to save TIFF file 'C:\missing\picture')", 0,
               [](const std::string& path, CKIPImage* image) {
                 return CKIPTiffSaver().Save(path, image, RecordProgress);
               }}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace zyr
