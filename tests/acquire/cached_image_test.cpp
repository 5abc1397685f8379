#include <algorithm>
#include <functional>

#include "foundation/support/little_endian.h"
#include "imaging/formats/jpeg.h"
#include "platform/files.h"
#include "tests/acquire/acquire_test.h"

namespace zyr::test {
namespace {

constexpr char kPath[] = "C:\\ZYRTwain\\CACHEDRAW.RAW";
constexpr char kPreviewPath[] = "C:\\ZYRTwain\\CACHEDRAW.JPG";

using CachedImageTest = AcquireTest;

TEST_F(CachedImageTest, WritesAndReadsTheCacheFile) {
  for (const uint32_t bits : {8u, 10u, 12u}) {
    host::ResetScratch();
    const auto image = NewImage(7, 3, bits);
    image->isZyr303 = true;
    image->frameNumber = 2;
    const std::vector<uint8_t> pixels = PixelsOf(*image);
    ASSERT_TRUE(image->Save());
    EXPECT_EQ(host::FileBytes(kPath), CacheFileOf(*image, pixels));
    EXPECT_GE(host::CountsOfFiles().syncs, 1);
    EXPECT_EQ(platform::ListFiles(kFolder, "*").size(), 2u) << "the image and its preview";

    CachedImage loaded;
    ASSERT_TRUE(loaded.Load(kPath));
    EXPECT_EQ(loaded.fileName, kPath);
    EXPECT_EQ(static_cast<const ImageDescription&>(loaded), *image);
    EXPECT_EQ(CopyOf(loaded.PixelData()), pixels);
  }
}

TEST_F(CachedImageTest, TurnsTheRowsOverOnceAndNeverOnDisk) {
  const auto image = NewImage(3, 4, 12);
  const std::vector<uint8_t> pixels = PixelsOf(*image);
  std::vector<uint8_t> turned;
  for (size_t row = 4; row-- > 0;)
    turned.insert(turned.end(), &pixels[row * 6], &pixels[row * 6] + 6);

  image->TurnTopDown();
  EXPECT_EQ(CopyOf(image->PixelData()), turned);
  ASSERT_TRUE(image->Save());
  EXPECT_EQ(host::FileBytes(kPath), CacheFileOf(*image, pixels));

  CachedImage loaded;
  ASSERT_TRUE(loaded.Load(kPath));
  const uint64_t readBefore = host::CountsOfFiles().bytesRead;
  loaded.TurnTopDown();
  loaded.TurnTopDown();
  EXPECT_EQ(host::CountsOfFiles().bytesRead, readBefore)
      << "pixels on disk turn when they are read";
  EXPECT_EQ(CopyOf(loaded.PixelData()), turned);
  loaded.TurnTopDown();
  EXPECT_EQ(CopyOf(loaded.PixelData()), turned);
  loaded.DropPixels();
  EXPECT_EQ(CopyOf(loaded.PixelData()), turned);
}

TEST_F(CachedImageTest, RefusesAFileTornAtAnyLength) {
  const auto image = NewImage(7, 3, 12);
  const std::string whole = CacheFileOf(*image, PixelsOf(*image));
  for (size_t length = 0; length < whole.size(); ++length) {
    host::PutFile(kPath, whole.substr(0, length));
    CachedImage loaded;
    EXPECT_FALSE(loaded.Load(kPath)) << length;
  }
  host::PutFile(kPath, whole + "more");
  CachedImage loaded;
  EXPECT_TRUE(loaded.Load(kPath));
  host::PutFile(kPath, whole.substr(0, whole.size() - 1));  // torn later
  EXPECT_TRUE(loaded.PixelData().empty());
  EXPECT_EQ(loaded.PrepareImage(), nullptr);
  EXPECT_EQ(loaded.MakeNativeHandle({.is16BitGrayscale = [] { return true; }}), nullptr);
  EXPECT_FALSE(loaded.Save());
  EXPECT_FALSE(CachedImage().Load("C:\\ZYRTwain\\missing.RAW"));
}

TEST_F(CachedImageTest, RefusesAbsurdHeadersWithoutReadingOrAllocating) {
  const std::pair<size_t, uint32_t> cases[] = {{4, 0},           {4, 17},          {4, 0xFFFFFFFF},
                                               {8, 0},           {12, 0},          {8, 0xFFFFFFFF},
                                               {12, 0xFFFFFFFF}, {8, 0x80000000},  {12, 0x40000000},
                                               {32, 0xFFFFFFFF}, {32, 0x7FFFFFFF}, {32, 70'000}};
  const auto image = NewImage(8, 8, 12);
  for (const auto& [offset, value] : cases) {
    std::string bytes = CacheFileOf(*image, PixelsOf(*image)) + std::string(100'000, ' ');
    StoreLittleEndian(reinterpret_cast<uint8_t*>(bytes.data()) + offset, value);
    host::PutFile(kPath, bytes);
    EXPECT_FALSE(CachedImage().Load(kPath)) << offset << ": " << value;
  }
  ImageDescription overflowing = *image;
  overflowing.width = 0x8000'0000;
  for (overflowing.height = 0x8000'0000; overflowing.height > 1; overflowing.height >>= 1) {
    host::PutFile(kPath, CacheFileOf(overflowing, PixelsOf(*image)));
    EXPECT_FALSE(CachedImage().Load(kPath));
  }
}

// With one image on disk; a second one is about to be written.
class CachedImageFaultTest : public AcquireTest {
 protected:
  static void StartAnew() {
    host::ResetFiles();
    PutCacheFile("CACHEDRAW_9.RAW", 1);
  }
  // What a new start finds, by capture time.
  static std::vector<uint32_t> Found() {
    ImageCache cache;
    cache.LoadAll();
    std::vector<uint32_t> times;
    for (size_t i = 0; i < cache.GetCount(); ++i) {
      CachedImage& image = *cache.GetAt(i);
      EXPECT_EQ(CopyOf(image.PixelData()), PixelsOf(image)) << image.fileName;
      times.push_back(image.captureTime);
    }
    return times;
  }
};

// Each fault in turn: a new start finds the old images whole, and the new one whole or not at all,
// be it that the process died there or that it went on.
TEST_F(CachedImageFaultTest, SavesWholeOrNotAtAll) {
  const std::function<void(uint64_t)> faults[] = {
      [](uint64_t at) { host::FailChangesAfter(at); },
      [](uint64_t at) { host::FillDiskAfter(at * 257); }};
  for (const auto& setFault : faults) {
    for (uint64_t at = 0; at <= 10; ++at) {
      StartAnew();
      const auto image = NewImage(40, 30, 12);
      const std::vector<uint8_t> pixels = PixelsOf(*image);
      setFault(at);
      const bool saved = image->Save();
      EXPECT_TRUE(saved ? at >= 4 : at < 10) << at;
      const std::vector<uint32_t> oldSet = {1};
      const std::vector<uint32_t> newSet = {1, image->captureTime};
      EXPECT_EQ(Found(), saved ? newSet : oldSet) << at;
      EXPECT_EQ(CopyOf(image->PixelData()), pixels) << at;

      host::FillDiskAfter(std::nullopt);
      host::FailChangesAfter(std::nullopt);
      EXPECT_TRUE(image->Save()) << at;
      EXPECT_EQ(Found(), newSet) << at;
    }
  }
}

TEST_F(CachedImageFaultTest, ReplacesItsFileInOneStep) {
  for (uint64_t at = 0; at <= 6; ++at) {
    StartAnew();
    const auto image = NewImage(40, 30, 12);
    ASSERT_TRUE(image->Save());
    const std::string before = *host::FileBytes(kPath);
    std::vector<uint8_t> changed = PixelsOf(*image);
    std::reverse(changed.begin(), changed.end());
    image->SetPixelData(changed);
    host::FailChangesAfter(at);
    EXPECT_EQ(image->Save(), at >= 5) << "remove the preview, open, write, sync, move";
    EXPECT_EQ(host::FileBytes(kPath), at >= 5 ? CacheFileOf(*image, changed) : before) << at;
    EXPECT_EQ(CopyOf(image->PixelData()), changed);
  }
}

TEST_F(CachedImageFaultTest, LeavesNothingHalfWritten) {
  for (void (*fault)(bool) : {host::FailWrites, host::FailSyncs, host::FailMoves}) {
    StartAnew();
    fault(true);
    EXPECT_FALSE(NewImage(40, 30, 8)->Save());
    EXPECT_EQ(platform::ListFiles(kFolder, "*"), std::vector<std::string>{"CACHEDRAW_9.RAW"});
  }
}

TEST_F(CachedImageTest, LeavesAnImageAloneThatHasTakenItsName) {
  const auto image = NewImage(4, 4, 12);
  const ImageDescription other = PutCacheFile("CACHEDRAW.RAW", 5);
  const std::string otherBytes = *host::FileBytes(kPath);
  image->RemoveFiles();
  EXPECT_EQ(host::FileBytes(kPath), otherBytes) << "never saved, so nothing there is its own";
  ASSERT_TRUE(image->Save());
  EXPECT_EQ(image->fileName, "C:\\ZYRTwain\\CACHEDRAW_1.RAW");
  EXPECT_EQ(host::FileBytes(kPath), otherBytes);

  // Another process returns the image and puts a new one under its name.
  image->DropPixels();
  PutCacheFile("CACHEDRAW_1.RAW", 6);
  EXPECT_FALSE(image->HasPixels());
  EXPECT_TRUE(image->PixelData().empty());
  const std::string theirs = *host::FileBytes(image->fileName);

  // Edited and saved again, the image goes elsewhere.
  image->SetPixelData(PixelsOf(*image));
  ASSERT_TRUE(image->Save());
  EXPECT_EQ(image->fileName, "C:\\ZYRTwain\\CACHEDRAW_2.RAW");
  EXPECT_EQ(host::FileBytes("C:\\ZYRTwain\\CACHEDRAW_1.RAW"), theirs);

  PutCacheFile("CACHEDRAW_2.RAW", 7);
  image->RemoveFiles();
  EXPECT_TRUE(host::FileBytes(image->fileName).has_value());
}

TEST_F(CachedImageTest, TakesNoPreviewOfAnotherImage) {
  const auto image = NewImage(16, 16, 8);
  image->SetPixelData(std::vector<uint8_t>(256, 200));
  host::PutFile(kPreviewPath, "of an image that is gone");
  ASSERT_TRUE(image->Save());

  const std::string good = *host::FileBytes(kPreviewPath);
  const auto wide = NewImage(17, 16, 8);
  wide->fileName = "C:\\ZYRTwain\\CACHEDRAW_1.RAW";
  ASSERT_TRUE(wide->Save());
  const std::string lying = *host::FileBytes(wide->PreviewFileName());
  for (const std::string& bad : {std::string(), std::string("no picture"), lying,
                                 good.substr(0, good.size() - 3), good.substr(0, 200)}) {
    host::PutFile(kPreviewPath, bad);
    CachedImage loaded;
    ASSERT_TRUE(loaded.Load(kPath));
    ASSERT_TRUE(loaded.EnsurePreview());
    EXPECT_EQ(loaded.preview->width(), 16u);
    EXPECT_EQ(*loaded.preview->bits(), 200);
    EXPECT_EQ(host::FileBytes(kPreviewPath), good) << "written anew";
  }
  image->RemoveFiles();
  EXPECT_FALSE(host::FileBytes(kPath) || host::FileBytes(kPreviewPath));
}

TEST_F(CachedImageTest, PreviewIsUprightHoweverTheRowsRun) {
  const auto image = NewImage(16, 16, 8);
  std::vector<uint8_t> darkBelow(256, 250);  // rows run bottom-up
  std::fill_n(darkBelow.begin(), 128, uint8_t{5});
  image->SetPixelData(darkBelow);
  for (const bool turned : {false, true}) {
    if (turned) image->TurnTopDown();
    image->preview.reset();
    ASSERT_TRUE(image->EnsurePreview());
    EXPECT_LT(image->preview->PictureRow(15)[0], 20);
    EXPECT_GT(image->preview->PictureRow(0)[0], 230);
  }
}

}  // namespace
}  // namespace zyr::test
