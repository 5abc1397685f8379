#include "tools/images/read_picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <tiffio.h>
#include <zlib.h>

#include "tools/images/picture_decoders.h"
#include "tools/images/picture_file.h"

namespace zyr {
namespace {

using Bytes = std::vector<uint8_t>;

std::string TestPath(const std::string& name) {
  return (std::filesystem::temp_directory_path() / ("zyr_read_picture_" + name)).string();
}

std::optional<GreyPicture> ReadBytes(const Bytes& bytes, std::string* error) {
  const std::string path = TestPath("file");
  WriteBytes(bytes, path);
  auto picture = ReadPicture(path, error);
  std::filesystem::remove(path);
  return picture;
}

void ExpectPicture(const Bytes& file, const GreyPicture& expected, const std::string& label) {
  SCOPED_TRACE(label);
  std::string error;
  const auto picture = ReadBytes(file, &error);
  ASSERT_TRUE(picture) << error;
  EXPECT_TRUE(picture->width == expected.width && picture->height == expected.height);
  EXPECT_EQ(picture->bits, expected.bits);
  EXPECT_TRUE(picture->samples == expected.samples);
}

// Smooth with a little noise, so that every filter has something to guess and ties to settle.
uint32_t PatternAt(uint32_t x, uint32_t y, uint32_t depth) {
  const uint32_t noise = (x * 73856093u ^ y * 19349663u) >> 7 & 7;
  const uint32_t value = x * 9 + y * 5 + noise;
  return depth == 16 ? value * 211 & 0xFFFF : value & ((1u << depth) - 1);
}

struct PngTerms {
  uint32_t width, height, depth;
  bool alpha, interlaced;
};

void PutBig32(Bytes* bytes, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes->push_back(static_cast<uint8_t>(value >> shift));
}

void PutChunk(Bytes* file, const std::string& type, const Bytes& data) {
  PutBig32(file, static_cast<uint32_t>(data.size()));
  Bytes body(type.begin(), type.end());
  body.insert(body.end(), data.begin(), data.end());
  file->insert(file->end(), body.begin(), body.end());
  PutBig32(file, static_cast<uint32_t>(crc32(0, body.data(), static_cast<uInt>(body.size()))));
}

// One row's bits, sample by sample, each alpha the complement of its grey.
Bytes PackRow(const std::vector<uint32_t>& samples, const PngTerms& terms) {
  std::vector<bool> bits;
  const auto put = [&](uint32_t value) {
    for (uint32_t bit = terms.depth; bit-- > 0;) bits.push_back((value >> bit & 1) != 0);
  };
  for (const uint32_t sample : samples) {
    put(sample);
    if (terms.alpha) put(~sample);
  }
  Bytes row((bits.size() + 7) / 8);
  for (size_t i = 0; i < bits.size(); ++i) row[i / 8] |= bits[i] ? 0x80 >> i % 8 : 0;
  return row;
}

// The five filters of the standard, from its formulas.
Bytes Filtered(int filter, const Bytes& row, const Bytes& above, size_t step) {
  Bytes line = {static_cast<uint8_t>(filter)};
  for (size_t i = 0; i < row.size(); ++i) {
    const int a = i < step ? 0 : row[i - step];
    const int b = above.empty() ? 0 : above[i];
    const int c = i < step || above.empty() ? 0 : above[i - step];
    const int p = a + b - c;
    const int pa = abs(p - a), pb = abs(p - b), pc = abs(p - c);
    const int guess[] = {0, a, b, (a + b) / 2, pa <= pb && pa <= pc ? a : pb <= pc ? b : c};
    line.push_back(static_cast<uint8_t>(row[i] - guess[filter]));
  }
  return line;
}

Bytes Scanlines(const PngTerms& terms, uint32_t x0, uint32_t y0, uint32_t dx, uint32_t dy) {
  Bytes lines;
  Bytes above;
  int filter = 0;
  for (uint32_t y = y0; y < terms.height; y += dy) {
    std::vector<uint32_t> samples;
    for (uint32_t x = x0; x < terms.width; x += dx) samples.push_back(PatternAt(x, y, terms.depth));
    if (samples.empty()) return {};
    const Bytes row = PackRow(samples, terms);
    const size_t step = std::max(1u, terms.depth * (terms.alpha ? 2 : 1) / 8);
    const Bytes line = Filtered(filter++ % 5, row, above, step);
    lines.insert(lines.end(), line.begin(), line.end());
    above = row;
  }
  return lines;
}

Bytes MakePng(const PngTerms& terms, uint8_t colour) {
  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  Bytes header;
  PutBig32(&header, terms.width);
  PutBig32(&header, terms.height);
  header.insert(header.end(), {static_cast<uint8_t>(terms.depth), colour, 0, 0,
                               static_cast<uint8_t>(terms.interlaced ? 1 : 0)});
  PutChunk(&file, "IHDR", header);
  Bytes lines;
  const uint32_t passes[][4] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
  for (const auto& p : passes) {
    const Bytes pass =
        terms.interlaced ? Scanlines(terms, p[0], p[1], p[2], p[3]) : Scanlines(terms, 0, 0, 1, 1);
    lines.insert(lines.end(), pass.begin(), pass.end());
    if (!terms.interlaced) break;
  }
  Bytes packed(compressBound(static_cast<uLong>(lines.size())));
  auto size = static_cast<uLongf>(packed.size());
  compress(packed.data(), &size, lines.data(), static_cast<uLong>(lines.size()));
  const auto middle = packed.begin() + static_cast<std::ptrdiff_t>(size / 2);
  PutChunk(&file, "tEXt", {'a', 0, 'b'});
  PutChunk(&file, "IDAT", {packed.begin(), middle});
  PutChunk(&file, "IDAT", {middle, packed.begin() + static_cast<std::ptrdiff_t>(size)});
  PutChunk(&file, "IEND", {});
  return file;
}

GreyPicture Pattern(const PngTerms& terms) {
  GreyPicture picture{terms.width, terms.height, terms.depth == 16 ? 16u : 8u, 0, 0, {}};
  for (uint32_t y = 0; y < terms.height; ++y) {
    for (uint32_t x = 0; x < terms.width; ++x) {
      const uint32_t value = PatternAt(x, y, terms.depth);
      picture.samples.push_back(
          static_cast<uint16_t>(terms.depth < 8 ? value * 255 / ((1u << terms.depth) - 1) : value));
    }
  }
  return picture;
}

TEST(ReadPictureTest, PngOfEveryDepthFilterAndInterlacing) {
  for (const auto& [width, height] : {std::pair{1u, 1u}, {3u, 2u}, {13u, 11u}, {40u, 33u}}) {
    for (const uint32_t depth : {1u, 2u, 4u, 8u, 16u}) {
      for (const uint32_t kind : {0u, 1u, 2u, 3u}) {
        const PngTerms terms = {width, height, depth, kind / 2 == 1 && depth >= 8, kind % 2 == 1};
        ExpectPicture(MakePng(terms, terms.alpha ? 4 : 0), Pattern(terms),
                      std::to_string(width) + " wide, depth " + std::to_string(depth) + ", kind " +
                          std::to_string(kind));
      }
    }
  }
}

Bytes Ascii(const std::string& text) { return {text.begin(), text.end()}; }

TEST(ReadPictureTest, Pgm) {
  using namespace std::string_literals;
  ExpectPicture(Ascii("P5\n# made\n 3 # wide\n2\n255\n\0\1\2\377\200\12"s),
                {3, 2, 8, 0, 0, {0, 1, 2, 255, 128, 10}}, "8 bits");
  ExpectPicture(Ascii("P5 2 1 65535\n\1\2\377\376"s), {2, 1, 16, 0, 0, {0x0102, 0xFFFE}},
                "16 bits");
  ExpectPicture(Ascii("P2 4 1\n3\n0 1 2\n9"), {4, 1, 8, 0, 0, {0, 85, 170, 255}}, "text, beyond");
  // The upper 12 of the 16 bits are the sample again.
  ExpectPicture(Ascii("P2 3 1 4095 1 2048 4095"), {3, 1, 16, 0, 0, {16, 32776, 65535}}, "12 bits");
}

TEST(ReadPictureTest, WhatIsWrittenHere) {
  for (const uint32_t depth : {8u, 16u}) {
    const GreyPicture picture = Pattern({301, 260, depth, false, false});
    ExpectPicture(EncodePng(picture), picture, "PNG");
    const std::string path = TestPath("tiff");
    ASSERT_TRUE(WritePicture(picture, PictureFormat::kTiff, path));
    std::string error;
    auto read = ReadPicture(path, &error);
    ASSERT_TRUE(read) << error;
    EXPECT_EQ(read->bits, depth);
    EXPECT_EQ(read->samples, picture.samples);

    // The same file, white and black changing places.
    TIFF* tiff = TIFFOpen(path.c_str(), "r+");
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFRewriteDirectory(tiff);
    TIFFClose(tiff);
    read = ReadPicture(path, &error);
    ASSERT_TRUE(read) << error;
    EXPECT_EQ(read->samples[5], (depth == 8 ? 255 : 65535) - picture.samples[5]);
    std::filesystem::remove(path);
  }
}

TEST(ReadPictureTest, SaysWhatIsWrong) {
  std::string error;
  const std::pair<Bytes, std::string> kCases[] = {
      {MakePng({3, 3, 8, false, false}, 2), "is no grey PNG."},
      {MakePng({3, 3, 8, false, false}, 3), "is no grey PNG."},
      {MakePng({0, 3, 8, false, false}, 0), "is no grey PNG."},
      // A head that promises more than the data gives, or less.
      {MakePng({3, 3, 8, false, false}, 4), "is torn."},
      {MakePng({3, 3, 8, true, false}, 0), "is torn."},
      {Ascii("P5 60000 60000 255\n"), "has no regular PGM head."},
      {Ascii("P5 3 3 70000\n"), "has no regular PGM head."},
      {Ascii("P2 2 1 255 7 x"), "is torn."},
      {Ascii("GIF89a"), "is no PNG, PGM or TIFF file."},
      {{}, "is no PNG, PGM or TIFF file."}};
  for (const auto& [bytes, reason] : kCases) {
    EXPECT_FALSE(ReadBytes(bytes, &error));
    EXPECT_EQ(error.substr(error.find(' ') + 1), reason);
  }
  EXPECT_FALSE(ReadPicture(TestPath("nowhere"), &error));
  EXPECT_EQ(error, TestPath("nowhere") + " cannot be opened.");
}

// Nothing but the sanitizers look at what comes of a changed byte; a short file is never a picture.
TEST(ReadPictureTest, TornAndTwistedFiles) {
  const std::string path = TestPath("whole");
  ASSERT_TRUE(WritePicture(Pattern({5, 7, 16, false, false}), PictureFormat::kTiff, path));
  std::ifstream stream(path, std::ios::binary);
  const Bytes tiff{std::istreambuf_iterator<char>(stream), {}};
  stream.close();
  std::filesystem::remove(path);
  auto decode = [error = std::string()](const Bytes& file) mutable {
    return IsPng(file)    ? DecodePng(file, &error)
           : IsTiff(file) ? DecodeTiff(file, &error)
           : IsPgm(file)  ? DecodePgm(file, &error)
                          : std::nullopt;
  };
  for (const Bytes& file :
       {MakePng({9, 9, 4, false, true}, 0), tiff, Ascii("P5 4 4 255\n0123456789abcdef")}) {
    ASSERT_TRUE(decode(file));
    // At the end of a TIFF file stands only that no other directory follows.
    const size_t needed = file.size() - (IsTiff(file) ? 4 : 0);
    for (size_t size = 0; size < needed; ++size) {
      EXPECT_FALSE(decode({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)}))
          << size << " of " << file.size();
    }
    for (size_t i = 0; i < file.size(); ++i) {
      for (const uint8_t change : {1, 0x80, 0xFF}) {
        Bytes twisted = file;
        twisted[i] ^= change;
        decode(twisted);
      }
    }
  }
}

}  // namespace
}  // namespace zyr
