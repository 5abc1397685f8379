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

using ImageFilesTest = ImagingTest;

struct Format {
  uint32_t code;
  uint32_t cannotOpenCode;
  std::string cannotOpen;
  double firstFraction;  // for the first of 4 rows
  bool (*save)(const std::string& path, CKIPImage* image);
};
const Format kFormats[] = {
    {1, 0x10000006, R"(Unable to save BMP file 'C:\missing\picture')", 0,
     [](auto& path, auto* image) { return CKIPBmpSaver().Save(path, image, RecordProgress); }},
    {3, 0x10000005, R"(Unable to open JPEG file 'C:\missing\picture')", 0.25,
     [](auto& path, auto* image) { return CKIPJpegSaver().Save(path, image, 90, RecordProgress); }},
    {5, 0x10000006, R"(Unable to save TIFF file 'C:\missing\picture')", 0,
     [](auto& path, auto* image) { return CKIPTiffSaver().Save(path, image, RecordProgress); }}};

TEST_F(ImageFilesTest, SavingTellsTheImageAboutTheFile) {
  for (const Format& format : kFormats) {
    const auto image = RandomGrey(31, 4);
    host::PressEscape();  // before the save: forgotten
    ASSERT_TRUE(format.save(kPath, image.get())) << format.code;
    EXPECT_EQ(image->fileFormat, format.code);
    EXPECT_EQ(image->fileSize, host::FileBytes(kPath)->size());
    const double first = format.firstFraction;
    EXPECT_EQ(g_fractions, (std::vector<double>{first, first + 0.25, first + 0.5, first + 0.75}));
    g_fractions.clear();
  }
}

TEST_F(ImageFilesTest, EscapeEndsTheSaveAndDeletesTheFile) {
  for (const Format& format : kFormats) {
    for (int row = 1; row <= 4; ++row) {
      host::PutFile(kPath, "old");
      host::PressEscapeAtQuestion(row);
      EXPECT_FALSE(format.save(kPath, RandomGrey(31, 4).get())) << format.code;
      ExpectError(3, "User abort");
      EXPECT_FALSE(host::FileBytes(kPath).has_value());
    }
  }
}

TEST_F(ImageFilesTest, SavingFailsWithoutFolderOrImage) {
  for (const Format& format : kFormats) {
    EXPECT_FALSE(format.save(R"(C:\missing\picture)", RandomGrey(3, 3).get()));
    ExpectError(format.cannotOpenCode, format.cannotOpen);
    EXPECT_EQ(CKIPImageFile::LastFileName(), R"(C:\missing\picture)");
    CKIPImage empty;
    EXPECT_FALSE(format.save(kPath, &empty));
    ExpectError(0x20000005, "Invalid image specified");
    EXPECT_FALSE(format.save(kPath, nullptr));
    EXPECT_FALSE(host::FileBytes(kPath).has_value());
  }
}

TEST_F(ImageFilesTest, DiskFullDeletesTheFile) {
  // The libraries write past the double; this device is as full as a disk can be. Windows has none.
  if (!std::filesystem::exists("/dev/full")) return;
  const std::filesystem::path link = host::NativeOf(kPath);
  for (const Format& format : kFormats) {
    for (const uint32_t height : {2u, 3000u}) {  // found out at the end, and on the way
      std::filesystem::create_symlink("/dev/full", link);
      const auto image = RandomGrey(300, height);
      EXPECT_FALSE(format.save(kPath, image.get()));
      const bool failsToOpen = format.code == 5;  // writes as it opens
      EXPECT_EQ(LastImageErrorCode(), failsToOpen ? 0x10000006u : 0x10000007u);
      EXPECT_EQ(std::filesystem::remove(link), failsToOpen);  // the others have removed it
      EXPECT_EQ(image->fileSize, 0u);
    }
  }
}

}  // namespace
}  // namespace zyr
