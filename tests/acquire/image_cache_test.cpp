#include "acquire/image_cache/image_cache.h"

#include "platform/files.h"
#include "tests/acquire/acquire_test.h"

namespace zyr::test {
namespace {

std::string Path(const std::string& name) { return std::string(kFolder) + "\\" + name; }

// A packed bitmap with the rows' bytes as they lie in the block.
platform::GlobalHandle DibOf(int32_t width, int32_t height, uint16_t bits,
                             const std::string& behindHeader) {
  BitmapInfoHeader header;
  header.biWidth = width;
  header.biHeight = height;
  header.biBitCount = bits;
  header.biXPelsPerMeter = 23622;  // 600 dpi
  header.biYPelsPerMeter = 11811;
  std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
  return BlockOf(bytes + behindHeader);
}

std::string GreyTable() {
  std::string table;
  for (int i = 0; i < 256; ++i) table += std::string(3, static_cast<char>(i)) + '\0';
  return table;
}

class ImageCacheTest : public AcquireTest {
 protected:
  CachedImage* Add(uint32_t captureTime = 7) {
    return cache_.AddFromHandle("ZYR2000", DibOf(1, 1, 8, GreyTable() + "p   "), captureTime, 1,
                                "SN-1");
  }
  std::vector<uint32_t> Times() const {
    std::vector<uint32_t> times;
    for (size_t i = 0; i < cache_.GetCount(); ++i) times.push_back(cache_.GetAt(i)->captureTime);
    return times;
  }

  ImageCache cache_;
};

TEST_F(ImageCacheTest, TakesPixelsOfACaptureWithoutPadding) {
  using namespace std::string_literals;
  // Odd width: the block's rows end with a sample that belongs to nothing. 16 bits become 12.
  CachedImage* deep = cache_.AddFromHandle(
      "ZYR303 sensor", DibOf(1, 2, 16, "\x1F\x11\xEE\xEE\xF0\xFF\xEE\xEE"s), 100, 3, "SN-2");
  ASSERT_NE(deep, nullptr);
  EXPECT_EQ(deep->bitsPerPixel, 12u);
  EXPECT_EQ(CopyOf(deep->PixelData()), (std::vector<uint8_t>{0x11, 0x01, 0xFF, 0x0F}));
  EXPECT_TRUE(deep->isZyr303);
  EXPECT_EQ(deep->xResolution, 600u);
  EXPECT_EQ(deep->yResolution, 300u);

  CachedImage* grey = cache_.AddFromHandle(
      "A ZYR2000", DibOf(3, 2, 8, GreyTable() + "abc\xEE" + "def\xEE"), 101, 1, "SN-2");
  ASSERT_NE(grey, nullptr);
  EXPECT_FALSE(grey->isZyr303);
  EXPECT_EQ(grey->bitsPerPixel, 8u);
  EXPECT_EQ(CopyOf(grey->PixelData()), (std::vector<uint8_t>{'a', 'b', 'c', 'd', 'e', 'f'}));
  EXPECT_EQ(grey->fileName, Path("CACHEDRAW_1.RAW"))
      << "the first name is taken, though not on disk";

  CachedImage* coloured = cache_.AddFromHandle("", DibOf(1, 1, 24, "\x50\x50\x50 "), 102, 1, "");
  ASSERT_NE(coloured, nullptr);
  EXPECT_EQ(CopyOf(coloured->PixelData()), std::vector<uint8_t>{0x50});
}

TEST_F(ImageCacheTest, RefusesWhatIsNoCapture) {
  for (const platform::GlobalHandle block :
       {platform::GlobalHandle{}, BlockOf("no bitmap"), DibOf(9999, 9999, 16, "short"),
        DibOf(0, 1, 8, GreyTable())}) {
    EXPECT_EQ(cache_.AddFromHandle("ZYR2000", block, 1, 1, ""), nullptr);
  }
  EXPECT_EQ(cache_.GetCount(), 0u);
}

TEST_F(ImageCacheTest, FindsEarlierImagesInOrderOfCapture) {
  PutCacheFile("CACHEDRAW_1.RAW", 30);
  PutCacheFile("CACHEDRAW_2.RAW", 10, 2);
  PutCacheFile("CACHEDRAW_3.RAW", 10, 1);
  PutCacheFile("CACHEDRAW_4.RAW", 10, 1);
  PutCacheFile("cachedrawing.raw", 0x90000000);
  PutCacheFile("OTHER.RAW", 5);
  PutCacheFile("CACHEDRAW_6.TMP", 5);
  host::PutFile(Path("CACHEDRAW_5.RAW"), "no image");
  cache_.LoadAll();
  EXPECT_EQ(Times(), (std::vector<uint32_t>{10, 10, 10, 30, 0x90000000}));
  EXPECT_EQ(cache_.GetAt(0)->sensorId, "CACHEDRAW_3.RAW");
  EXPECT_EQ(cache_.GetAt(1)->sensorId, "CACHEDRAW_4.RAW")
      << "same capture: as the folder lists them";
  EXPECT_EQ(cache_.GetAt(2)->frameNumber, 2u);
  EXPECT_TRUE(host::FileBytes(Path("CACHEDRAW_5.RAW")).has_value());

  Add(20);
  PutCacheFile("CACHEDRAW_7.RAW", 15);
  platform::RemoveFile(Path("CACHEDRAW_3.RAW"));
  const CachedImage* kept = cache_.GetAt(1);
  cache_.LoadAll();
  EXPECT_EQ(Times(), (std::vector<uint32_t>{10, 10, 15, 20, 30, 0x90000000}));
  EXPECT_EQ(cache_.GetAt(0), kept) << "known images are not loaded again";
}

TEST_F(ImageCacheTest, OpensManyImagesWithoutReadingTheirPixels) {
  ImageDescription big;
  big.bitsPerPixel = 12;
  big.width = big.height = 400;
  const std::vector<uint8_t> pixels(big.PixelDataSize());
  for (uint32_t i = 0; i < 50; ++i) {
    big.captureTime = i;
    host::PutFile(Path("CACHEDRAW_" + std::to_string(i) + ".RAW"), CacheFileOf(big, pixels));
  }
  cache_.LoadAll();
  EXPECT_EQ(cache_.GetCount(), 50u);
  EXPECT_LE(host::CountsOfFiles().bytesRead, 50 * kCacheFileBuffer);
  EXPECT_EQ(host::CountsOfFiles().reads, 50);
  EXPECT_LE(host::CountsOfFiles().mostOpenHandles, 1);
}

TEST_F(ImageCacheTest, CurrentImageAndSelection) {
  EXPECT_EQ(cache_.GetCurrent(), nullptr);
  EXPECT_EQ(cache_.DescribeLast() + cache_.DescribeLastSensor(), "");
  for (uint32_t time : {1, 2, 3}) ASSERT_TRUE(Add(time)->Save());
  EXPECT_EQ(cache_.GetCurrent(), cache_.GetAt(0));
  cache_.SetSelected(3, true);
  EXPECT_FALSE(cache_.AnySelected());
  cache_.SetSelected(1, true);
  cache_.SetSelected(2, true);
  EXPECT_EQ(cache_.GetCurrent(), cache_.GetAt(1));
  EXPECT_EQ(cache_.CountSelected(), 2u);
  EXPECT_EQ(cache_.GetAt(3), nullptr);
  EXPECT_TRUE(cache_.ContainsFile("c:\\zyrtwain\\cachedraw_2.raw"));
  EXPECT_FALSE(cache_.ContainsFile(Path("CACHEDRAW_3.RAW")));

  cache_.DeleteSelected();
  EXPECT_EQ(Times(), std::vector<uint32_t>{1});
  EXPECT_EQ(platform::ListFiles(kFolder, "*"),
            (std::vector<std::string>{"CACHEDRAW.JPG", "CACHEDRAW.RAW"}));
  EXPECT_NE(cache_.DescribeLast().find("(600 DPI x 300 DPI)\nBits-Per-Pixel: 8\n"),
            std::string::npos);
  cache_.Remove(nullptr);
  cache_.Remove(cache_.GetAt(0));
  EXPECT_EQ(cache_.GetCount(), 0u);
  EXPECT_TRUE(platform::ListFiles(kFolder, "*").empty());
}

TEST_F(ImageCacheTest, ClearsTheFolderUp) {
  host::SetClock(1'000'000);
  for (const char* name : {"CACHEDRAW.TMP", "CACHEDRAW_1.TMP"}) host::PutFile(Path(name), "half");
  host::SetFileTimes(Path("CACHEDRAW.TMP"), 900'000, 900'000);
  host::SetFileTimes(Path("CACHEDRAW_1.TMP"), 900'000, 999'000);
  cache_.LoadAll();
  EXPECT_EQ(platform::ListFiles(kFolder, "*"), std::vector<std::string>{"CACHEDRAW_1.TMP"})
      << "another process may still be writing it";

  ASSERT_TRUE(Add()->Save());
  PutCacheFile("CACHEDRAW_8.RAW", 8);
  host::PutFile(Path("CACHEDRAW_8.JPG"), "preview");
  host::PutFile(Path("notes.txt"), "not ours");
  cache_.DeleteAll();
  EXPECT_EQ(cache_.GetCount(), 0u);
  EXPECT_EQ(platform::ListFiles(kFolder, "*"),
            (std::vector<std::string>{"CACHEDRAW_1.TMP", "notes.txt"}));
}

TEST_F(ImageCacheTest, PreviewsLeaveNoPixelsInMemory) {
  for (uint32_t time : {1, 2}) ASSERT_TRUE(Add(time)->Save());
  Add(3);
  platform::RemoveFile(Path("CACHEDRAW_1.JPG"));
  ImageCache later;
  later.LoadAll();
  later.EnsurePreviews();
  ASSERT_EQ(later.GetCount(), 2u);
  EXPECT_NE(later.GetAt(1)->preview, nullptr);
  EXPECT_EQ(later.GetAt(1)->image8, nullptr);
  platform::RemoveFile(Path("CACHEDRAW_1.RAW"));
  EXPECT_FALSE(later.GetAt(1)->HasPixels());
  cache_.EnsurePreviews();
  EXPECT_FALSE(cache_.GetAt(2)->PixelData().empty()) << "never saved: nowhere but in memory";
}

TEST_F(ImageCacheTest, ImagesOutliveTheirFolder) {
  for (uint32_t time : {1, 2}) ASSERT_TRUE(Add(time)->Save());
  cache_.LimitMemory();
  host::ResetScratch();
  host::FillDiskAfter(0);
  cache_.SaveRemaining();
  EXPECT_FALSE(cache_.GetAt(1)->IsSaved());
  host::FillDiskAfter(std::nullopt);
  ASSERT_TRUE(Add(3)->Save());
  cache_.SaveRemaining();
  for (size_t i = 0; i < 3; ++i) cache_.GetAt(i)->ForgetFile();  // a drive that is back again
  cache_.SaveRemaining();
  ImageCache later;
  later.LoadAll();
  EXPECT_EQ(later.GetCount(), 3u);

  later.Remove(later.GetAt(1));
  cache_.LoadAll();
  ASSERT_EQ(cache_.GetCount(), 2u) << "somebody else has returned one, which is another matter";
  EXPECT_EQ(cache_.GetAt(1)->captureTime, 3u);
}

TEST_F(ImageCacheTest, WarnsOfScarceDriveSpace) {
  const auto warningsAt = [this](std::optional<uint64_t> bytes) {
    host::SetFreeSpace(bytes);
    const size_t before = host::ShownPrompts().size();
    Add();
    Add();
    return host::ShownPrompts().size() - before;
  };
  EXPECT_EQ(warningsAt(52'428'801), 0u);
  EXPECT_EQ(warningsAt(std::nullopt), 0u);
  EXPECT_EQ(warningsAt(52'428'800), 1u);
  EXPECT_NE(host::ShownPrompts().back().text.find("less than 50 megs"), std::string::npos);
  EXPECT_EQ(warningsAt(26'214'401), 0u) << "once per process";
  EXPECT_EQ(warningsAt(26'214'400), 2u) << "each time";
  EXPECT_NE(host::ShownPrompts().back().text.find("less than 25 megs"), std::string::npos);
  host::OnPrompt([this](const host::ShownPrompt&) { cache_.DeleteAll(); });
  EXPECT_EQ(Add(), nullptr) << "deleted while the warning stood";
}

}  // namespace
}  // namespace zyr::test
