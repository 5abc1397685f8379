#include "tests/support/transfer_log.h"

#include <algorithm>
#include <cstdio>

#include "simulator/sensor.h"

namespace zyr::test {
namespace {

constexpr size_t kWholeBytes = 64;   // up to so many are shown one by one
constexpr size_t kCommandBytes = 8;  // of more than so many the zeros at the end are left out

constexpr size_t kEndpointAt = 0x0D;
constexpr size_t kReservedEnd = 0x1E;

std::string Format(const char* format, auto... values) {
  char text[160];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

uint32_t Crc32(std::span<const uint8_t> bytes) {
  uint32_t crc = ~0u;
  for (const uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0);
  }
  return ~crc;
}

std::string Content(const std::vector<uint8_t>& bytes) {
  if (bytes.size() > kWholeBytes) return Format(" crc %08X", Crc32(bytes));
  size_t shown = bytes.size();
  while (bytes.size() > kCommandBytes && shown > 0 && bytes[shown - 1] == 0) --shown;
  std::string text;
  for (size_t i = 0; i < shown; ++i) text += Format(" %02X", unsigned{bytes[i]});
  return text;
}

void FillFromPipe(std::span<const uint8_t> input, std::span<const uint8_t> output, size_t arrived,
                  LoggedTransfer* call) {
  if (input.size() != 4) {
    call->direction = "no pipe";
    return;
  }
  const bool isRead = input[0] == 1 || input[0] == 3;
  call->direction = Format("%-3s %u", isRead ? "in" : "out", unsigned{input[0]});
  call->isBulk = input[0] == 3;
  call->length = output.size();
  const auto bytes = isRead ? output.first(arrived) : output;
  call->bytes.assign(bytes.begin(), bytes.end());
}

void FillFromRecord(std::span<const uint8_t> input, std::span<const uint8_t> output,
                    size_t arrived, LoggedTransfer* call) {
  if (input.size() < simulator::kRecordSize) {
    call->direction = "no record";
    return;
  }
  const uint8_t endpoint = input[kEndpointAt];
  const bool isRead = (endpoint & 0x80) != 0;
  call->direction = Format("%-3s %02X", isRead ? "in" : "out", unsigned{endpoint});
  for (size_t i = 0; i < kReservedEnd; ++i) {
    if (i != kEndpointAt && input[i] != 0) call->direction += " reserved!";
  }
  call->isBulk = endpoint == 0x86;
  call->length = input.size() - simulator::kRecordSize;
  const auto bytes = isRead ? output.first(arrived) : input;
  if (bytes.size() < simulator::kRecordSize) return;
  call->bytes.assign(bytes.begin() + simulator::kRecordSize, bytes.end());
}

bool BelongTogether(const LoggedTransfer& a, const LoggedTransfer& b) {
  return a.isBulk && b.isBulk && a.length == b.length && a.bytes.size() == a.length &&
         b.bytes.size() == b.length && a.error == 0 && b.error == 0 &&
         a.direction == b.direction;
}

std::string Line(const LoggedTransfer& call, size_t count, const std::vector<uint8_t>& bytes) {
  std::string line = Format("%7lu  %06X %s", static_cast<unsigned long>(call.milliseconds),
                            call.code, call.direction.c_str());
  if (call.length > 0) line += Format(" %u", static_cast<unsigned>(call.length));
  if (count > 1) line += Format(" x %u", static_cast<unsigned>(count));
  if (!bytes.empty()) line += ":" + Content(bytes);
  if (call.error != 0) line += Format(" error %u", call.error);
  if (call.error == 0 && bytes.size() < call.length) {
    line += Format(" (%u came)", static_cast<unsigned>(bytes.size()));
  }
  return line + '\n';
}

}  // namespace

LoggedTransfer DescribeCall(uint32_t code, std::span<const uint8_t> input,
                            std::span<const uint8_t> output, uint32_t error, size_t arrived) {
  LoggedTransfer call;
  call.code = code;
  call.error = error;
  if (code == simulator::kPipeTransfer) {
    FillFromPipe(input, output, arrived, &call);
  } else if (code == simulator::kEndpointTransfer) {
    FillFromRecord(input, output, arrived, &call);
  } else {
    const bool isReset = code == simulator::kPipeReset || code == simulator::kEndpointReset;
    call.direction = isReset ? "reset" : "unknown";
  }
  return call;
}

std::string TranscriptOf(const std::vector<LoggedTransfer>& transfers) {
  std::string text;
  for (size_t i = 0; i < transfers.size();) {
    const LoggedTransfer& first = transfers[i];
    std::vector<uint8_t> bytes = first.bytes;
    size_t next = i + 1;
    for (; next < transfers.size() && BelongTogether(first, transfers[next]); ++next) {
      bytes.insert(bytes.end(), transfers[next].bytes.begin(), transfers[next].bytes.end());
    }
    text += Line(first, next - i, bytes);
    i = next;
  }
  return text;
}

}  // namespace zyr::test
