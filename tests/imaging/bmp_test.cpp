#include "imaging/formats/bmp.h"

#include "tests/imaging/imaging_test.h"

namespace zyr {
namespace {

using BmpTest = ImagingTest;
namespace host = platform::host;

constexpr char kPath[] = R"(C:\out\picture.bmp)";

TEST_F(BmpTest, EveryFieldHasItsPlace) {
  for (const uint32_t bits : {1u, 8u, 24u}) {
    const uint32_t colors = bits == 24 ? 0 : bits == 8 ? 256 : 2;
    const auto image = RandomImage(13, 5, bits, ColoredPalette(colors));
    host::PutFile(kPath, std::string(10000, 'x'));
    ASSERT_TRUE(CKIPBmpSaver().Save(kPath, image.get(), nullptr));
    const std::string bytes = *host::FileBytes(kPath);
    const uint32_t pixels = 54 + 4 * colors;
    ASSERT_EQ(bytes.size(), pixels + image->dataSize());
    EXPECT_EQ(bytes.substr(0, 2), "BM");
    const uint32_t fields[] = {image->fileSize, 0,    pixels, 40,    13, 5, 1 | bits << 16, 0, 0,
                               11811,           5906, colors, colors};
    EXPECT_EQ(std::memcmp(bytes.data() + 2, fields, sizeof(fields)), 0);
    const std::string palette(reinterpret_cast<const char*>(image->palette().data()), 4 * colors);
    EXPECT_EQ(bytes.substr(54, 4 * colors), palette);
    EXPECT_EQ(std::memcmp(bytes.data() + pixels, image->bits(), image->dataSize()), 0);
  }
}

TEST_F(BmpTest, AFullDiskIsReportedWhereItShows) {
  const std::string header = R"(Unable to write the image header in file 'C:\out\picture.bmp')";
  const std::string palette =
      R"(Unable to write color palette data to the file 'C:\out\picture.bmp')";
  const std::string pixels = R"(Unable to write the image to the file 'C:\out\picture.bmp')";
  constexpr uint64_t kAll = 1078 + 700 * 500;
  const std::pair<uint64_t, std::string> cases[] = {
      {0, header},    {53, header},       {54, palette},     {1077, palette}, {1078, pixels},
      {9999, pixels}, {kAll - 1, pixels}, {kAll + 7, pixels}};  // the last while patching
  const auto image = RandomGrey(700, 500);
  for (const auto& [room, text] : cases) {
    host::PutFile(kPath, "old");
    host::FillDiskAfter(room);
    EXPECT_FALSE(CKIPBmpSaver().Save(kPath, image.get(), nullptr)) << room;
    ExpectError(0x10000007, text);
    EXPECT_FALSE(host::FileBytes(kPath).has_value());
    EXPECT_EQ(image->fileSize, 0u);
  }
}

}  // namespace
}  // namespace zyr
