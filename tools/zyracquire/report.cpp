#include "tools/zyracquire/report.h"

#include <algorithm>
#include <cstdio>

#include "twain/names.h"

namespace zyr {
namespace {

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

template <typename... Values>
std::string Print(const char* format, Values... values) {
  char text[400];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

}  // namespace

const char* MechanismName(Mechanism mechanism) {
  switch (mechanism) {
    case Mechanism::kFile:
      return "file";
    case Mechanism::kMemory:
      return "memory";
    default:
      return "native";
  }
}

std::string DescribeImage(const ImageReport& report) {
  const std::string resolution = report.xDpi > 0 && report.yDpi > 0
                                     ? Print("%.0f x %.0f dpi", report.xDpi, report.yDpi)
                                     : "resolution unknown";
  const double speed = report.seconds > 0 ? static_cast<double>(report.bytes) / report.seconds : 0;
  return Print("image %u: %u x %u, %u bit, ", report.number, report.width, report.height,
               report.bits) +
         resolution + ", " + MechanismName(report.mechanism) +
         Print(", %llu bytes in %.1f ms (%.1f MB/s), ",
               static_cast<unsigned long long>(report.bytes), report.seconds * 1000, speed / 1e6) +
         report.path;
}

std::string DescribeConditionCode(TW_UINT16 code) {
  return ConditionCodeName(code) + " (" + std::to_string(code) +
         "): " + ConditionCodeSentence(code);
}

std::string DescribeTriplet(const TripletName& triplet) {
  const std::string names = DataGroupName(triplet.dataGroup) + " / " +
                            DataArgumentTypeName(triplet.dataArgumentType) + " / " +
                            MessageName(triplet.message);
  if (triplet.dataArgumentType != DAT_CAPABILITY) return names;
  return names + " (" + CapabilityName(triplet.capability) + ")";
}

std::string DescribeMessage(TW_UINT16 message) { return MessageName(message); }

std::string DescribeCall(const TripletName& triplet, TW_UINT16 result, double at, double took) {
  return Print("%9.3f s  ", at) + DescribeTriplet(triplet) + "  " + ResultName(result) +
         Print("  %.1f ms", took * 1000);
}

std::string DescribeSource(const TW_IDENTITY& identity) {
  return FieldText(identity.ProductName) + " (" + FieldText(identity.Manufacturer) + ", " +
         FieldText(identity.ProductFamily) +
         Print(", version %u.%u, TWAIN %u.%u)", identity.Version.MajorNum,
               identity.Version.MinorNum, identity.ProtocolMajor, identity.ProtocolMinor);
}

bool ContainsIgnoringCase(const std::string& text, const std::string& part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [](char a, char b) { return Lower(a) == Lower(b); }) != text.end();
}

}  // namespace zyr
