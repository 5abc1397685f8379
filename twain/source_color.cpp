// The triplets about colour. They are answered for applications that insist on them; no image
// depends on what they set.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "twain/containers.h"
#include "twain/source.h"

namespace zyr {
namespace {

// These triplets know no failure of their own, so the user reads the code's sentence alone.
constexpr char kNoText[] = "";

constexpr double kMix[3][3] = {{0, 0.1, 0.2}, {1.0, 1.1, 1.2}, {2.0, 2.1, 2.2}};
constexpr double kSamples[] = {99.99, 98.98, 97.97, 96.96};

void FillStage(TW_TRANSFORMSTAGE* stage, double firstStart) {
  stage->Decode[0].StartIn = ToFix32(firstStart);
  for (size_t row = 0; row < 3; ++row) {
    for (size_t column = 0; column < 3; ++column) {
      stage->Mix[row][column] = ToFix32(kMix[row][column]);
    }
  }
}

TW_CIEPOINT Point(double x) { return {ToFix32(x), ToFix32(5.5), ToFix32(6.6)}; }

// The record's last field is the first of an array whose length only the application knows: what
// lies behind the record is written if it is memory at all.
void FillSamples(TW_CIECOLOR* color) {
  auto* samples = reinterpret_cast<uint8_t*>(color) + offsetof(TW_CIECOLOR, Samples);
  const bool hasAll = platform::IsWritable(samples, std::size(kSamples) * sizeof(TW_FIX32));
  const size_t count = hasAll ? std::size(kSamples) : 1;
  for (size_t i = 0; i < count; ++i) {
    const TW_FIX32 sample = ToFix32(kSamples[i]);
    std::memcpy(samples + i * sizeof sample, &sample, sizeof sample);
  }
}

}  // namespace

// A sample record, whatever the message. Fields that are not named here stay the application's.
TW_UINT16 TwainSource::DISPATCHMSG_CieColor(const Triplet& triplet) {
  auto* color = WritableRecord<TW_CIECOLOR>(triplet);
  if (color == nullptr) return Fail(kNoText, TWCC_BADVALUE);
  color->ColorSpace = 2;
  color->LowEndian = 0;
  color->DeviceDependent = 1;
  color->VersionNumber = 0;
  FillStage(&color->StageABC, 0.1);
  FillStage(&color->StageLMN, 1.1);
  color->WhitePoint = Point(4.4);
  color->BlackPoint = Point(1.1);
  color->WhitePaper = Point(1.1);
  color->BlackInk = Point(1.1);
  FillSamples(color);
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_GrayResponse(const Triplet& triplet) {
  return Response(triplet, grayResponse_);
}

TW_UINT16 TwainSource::DISPATCHMSG_RgbResponse(const Triplet& triplet) {
  return Response(triplet, rgbResponse_);
}

TW_UINT16 TwainSource::Response(const Triplet& triplet, std::span<TW_ELEMENT8> table) {
  if (triplet.message == MSG_RESET) FillIdentityRamp(table);
  if (triplet.message == MSG_SET) {
    if (!platform::IsReadable(triplet.data, table.size_bytes())) {
      return Fail(kNoText, TWCC_BADVALUE);
    }
    std::memcpy(table.data(), triplet.data, table.size_bytes());
  }
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_JpegCompression(const Triplet&) { return TWRC_SUCCESS; }

}  // namespace zyr
