// What the formats have in common, and the BMP file.
#include <filesystem>

#include "imaging/formats/bmp.h"
#include "imaging/formats/jpeg.h"
#include "imaging/formats/tiff.h"
#include "imaging/image/packed_dib.h"
#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

namespace host = platform::host;
using namespace std::string_literals;

constexpr char kPath[] = R"(C:\out\picture)";

using ImageFilesTest = ImagingTest;

struct Format {
  uint32_t code;
  uint32_t cannotOpenCode;
  const char* cannotOpen;
  double firstFraction;
  bool (*save)(const std::string& path, CKIPImage* image);
};
const Format kBmp = {1, 0x10000006, "Unable to save BMP", 0, [](auto& path, auto* image) {
                       return CKIPBmpSaver().Save(path, image, RecordProgress);
                     }};
const Format kJpeg = {3, 0x10000005, "Unable to open JPEG", 0.25, [](auto& path, auto* image) {
                        return CKIPJpegSaver().Save(path, image, 90, RecordProgress);
                      }};
const Format kTiff = {5, 0x10000006, "Unable to save TIFF", 0, [](auto& path, auto* image) {
                        return CKIPTiffSaver().Save(path, image, RecordProgress);
                      }};

TEST_F(ImageFilesTest, SavingTellsTheImageAboutTheFileOrWhyThereIsNone) {
  for (const Format& format : {kBmp, kJpeg, kTiff}) {
    const auto image = RandomGrey(31, 4);
    host::PressEscape();  // before the save: forgotten
    g_fractions.clear();
    ASSERT_TRUE(format.save(kPath, image.get())) << format.code;
    EXPECT_EQ(image->fileFormat, format.code);
    EXPECT_EQ(image->fileSize, host::FileBytes(kPath)->size());
    const double first = format.firstFraction;
    EXPECT_EQ(g_fractions, (std::vector<double>{first, first + 0.25, first + 0.5, first + 0.75}));
    for (int row = 1; row <= 4; ++row) {
      host::PutFile(kPath, "old");
      host::PressEscapeAtQuestion(row);
      EXPECT_FALSE(format.save(kPath, image.get())) << format.code;
      ExpectError(3, "User abort");
      EXPECT_FALSE(host::FileBytes(kPath).has_value());
    }
    EXPECT_FALSE(format.save(R"(C:\missing\picture)", image.get()));
    ExpectError(format.cannotOpenCode, format.cannotOpen + R"( file 'C:\missing\picture')"s);
    EXPECT_EQ(CKIPImageFile::LastFileName(), R"(C:\missing\picture)");
    CKIPImage empty;
    EXPECT_FALSE(format.save(kPath, &empty) || format.save(kPath, nullptr));
    EXPECT_FALSE(host::FileBytes(kPath).has_value());
  }
}

TEST_F(ImageFilesTest, AFullDiskIsReportedWhereItShowsAndDeletesTheFile) {
  const auto image = RandomGrey(700, 500);
  const auto expectFailure = [&](const Format& format, const std::string& text) {
    EXPECT_FALSE(format.save(kPath, image.get())) << format.code;
    if (!text.empty()) ExpectError(0x10000007, text + R"( file 'C:\out\picture')");
    EXPECT_FALSE(host::FileBytes(kPath).has_value());
  };
  const struct {
    const Format& format;
    std::vector<uint64_t> rooms;
    const char* text;
  } cases[] = {{kBmp, {0, 53}, "Unable to write the image header in"},
               {kBmp, {54, 1077}, "Unable to write color palette data to the"},
               // The last while patching the header.
               {kBmp, {1078, 9999, 351'077, 351'085}, "Unable to write the image to the"},
               {kTiff, {0, 8, 99'999, 353'257}, "Unable to write the image to the"}};
  for (const auto& [format, rooms, text] : cases) {
    for (const uint64_t room : rooms) {
      host::PutFile(kPath, "old");
      host::FillDiskAfter(room);
      expectFailure(format, text);
    }
  }
  EXPECT_EQ(image->fileSize, 0u);
  // libjpeg writes past the double; this device is as full as a disk can be. Windows has none.
  if (!std::filesystem::exists("/dev/full")) return;
  std::filesystem::create_symlink("/dev/full", host::NativeOf(kPath));
  expectFailure(kJpeg, "");
}

TEST_F(ImageFilesTest, EveryFieldOfABmpFileHasItsPlace) {
  for (const uint32_t bits : {1u, 8u, 24u}) {
    const uint32_t colors = bits == 24 ? 0 : bits == 8 ? 256 : 2;
    const auto image = RandomImage(13, 5, bits, ColoredPalette(colors));
    host::PutFile(kPath, std::string(10000, 'x'));
    ASSERT_TRUE(CKIPBmpSaver().Save(kPath, image.get(), nullptr));
    const std::string bytes = *host::FileBytes(kPath);
    const uint32_t fields[] = {image->fileSize, 0, 54 + 4 * colors};
    EXPECT_EQ(bytes.substr(0, 2), "BM");
    EXPECT_EQ(std::memcmp(bytes.data() + 2, fields, sizeof(fields)), 0);
    const platform::GlobalHandle dib = PackedDibFromImage(*image);
    {
      const platform::LockedBlock block(dib);
      ASSERT_EQ(bytes.size(), 14 + block.size());
      EXPECT_EQ(std::memcmp(bytes.data() + 14, block.address(), block.size()), 0);
    }
    platform::FreeBlock(dib);
  }
}

}  // namespace
}  // namespace zyr
