#include <gtest/gtest.h>

#include <algorithm>

#include "imaging/image/grey.h"
#include "tools/contactsheet/sheet.h"

namespace zyr {
namespace {

std::unique_ptr<CKIPImage> Flat(uint32_t width, uint32_t height, uint8_t level) {
  auto image = std::make_unique<CKIPImage>();
  image->SetPalette(NewIdentityPalette());
  image->Create(width, height, 8);
  for (uint32_t i = 0; i < image->dataSize(); ++i) image->bits()[i] = level;
  return image;
}

size_t CountOf(const GreyPicture& sheet, uint16_t level) {
  return static_cast<size_t>(std::count(sheet.samples.begin(), sheet.samples.end(), level));
}

TEST(ContactSheetTest, EveryTileIsThereAndKeepsToItsPlace) {
  std::vector<Entry> entries(4);
  entries[0].title = "s\xE4me / much longer title than its tile has room for";
  entries[0].tiles.push_back({"small", Flat(10, 7, 33)});
  entries[1].tiles.push_back({"wide", Flat(3 * kTileWidth, 2, 44)});
  entries[3].title = "at the edge of the page and so cut off";
  entries[3].tiles.push_back({"", Flat(kTileWidth, kTileHeight, 55)});
  entries[3].tiles.push_back({"", Flat(1, 3 * kTileHeight, 66)});
  const GreyPicture sheet = LayOut("heading", entries, 3);
  EXPECT_EQ(sheet.samples.size(), size_t{sheet.width} * sheet.height);
  EXPECT_EQ(CountOf(sheet, 33), 70u);
  EXPECT_EQ(CountOf(sheet, 44), size_t{kTileWidth} * 2);
  EXPECT_EQ(CountOf(sheet, 55), size_t{kTileWidth} * kTileHeight);
  EXPECT_EQ(CountOf(sheet, 66), kTileHeight);
}

}  // namespace
}  // namespace zyr
