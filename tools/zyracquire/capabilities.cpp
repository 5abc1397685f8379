#include "tools/zyracquire/capabilities.h"

#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/global_memory.h"
#include "tools/zyracquire/report.h"
#include "twain/names.h"

namespace zyr {
namespace {

constexpr size_t kTableWidth = 120;

// A container that the source made is ours to free.
class OwnedContainer {
 public:
  explicit OwnedContainer(const TW_CAPABILITY& capability) : handle_(capability.hContainer) {}
  ~OwnedContainer() {
    if (handle_ != nullptr) platform::FreeBlock(handle_);
  }
  OwnedContainer(const OwnedContainer&) = delete;
  OwnedContainer& operator=(const OwnedContainer&) = delete;

 private:
  platform::GlobalHandle handle_;
};

struct Answer {
  TW_UINT16 containerType = 0;
  std::optional<CapabilityValues> values;
};

// Null if the source refuses.
std::optional<Answer> Ask(OpenSource source, TW_UINT16 id, TW_UINT16 message) {
  TW_CAPABILITY capability{id, TWON_DONTCARE16, nullptr};
  if (source.Control(DAT_CAPABILITY, message, &capability) != TWRC_SUCCESS) return std::nullopt;
  const OwnedContainer owned(capability);
  const platform::LockedBlock block(capability.hContainer);
  if (block.address() == nullptr) return Answer{};
  return Answer{capability.ConType,
                ReadContainer(id, capability.ConType,
                              {static_cast<const uint8_t*>(block.address()), block.size()})};
}

TW_UINT16 Set(OpenSource source, TW_UINT16 id, TW_UINT16 itemType, uint32_t value) {
  TW_CAPABILITY capability{id, TWON_ONEVALUE, platform::AllocateMovable(sizeof(TW_ONEVALUE), true)};
  const OwnedContainer owned(capability);
  {
    const platform::LockedBlock block(capability.hContainer);
    if (block.address() == nullptr) return TWRC_FAILURE;
    const TW_ONEVALUE item{itemType, value};
    std::memcpy(block.address(), &item, sizeof item);
  }
  return source.Control(DAT_CAPABILITY, MSG_SET, &capability);
}

struct Wish {
  TW_UINT16 capability;
  TW_UINT16 itemType;
  uint32_t value;
  bool asked;  // by an option
};

std::vector<Wish> Wishes(const AcquireOptions& options) {
  const Mechanism mechanism = options.mechanism.value_or(Mechanism::kNative);
  std::vector<Wish> wishes = {{ICAP_XFERMECH, TWTY_UINT16, static_cast<uint32_t>(mechanism),
                               options.mechanism.has_value()}};
  if (options.depth) wishes.push_back({ICAP_BITDEPTH, TWTY_UINT16, *options.depth, true});
  // The limit is kept in any case.
  if (options.count != 0) wishes.push_back({CAP_XFERCOUNT, TWTY_INT16, options.count, false});
  if (mechanism == Mechanism::kFile) {
    wishes.push_back({ICAP_IMAGEFILEFORMAT, TWTY_UINT16, options.fileFormat.value_or(TWFF_BMP),
                      options.fileFormat.has_value()});
  }
  if (options.flavor) wishes.push_back({ICAP_PIXELFLAVOR, TWTY_UINT16, *options.flavor, true});
  if (options.units) wishes.push_back({ICAP_UNITS, TWTY_UINT16, *options.units, true});
  return wishes;
}

uint32_t CurrentNumber(OpenSource source, TW_UINT16 id, uint32_t fallback) {
  const std::optional<Answer> answer = Ask(source, id, MSG_GETCURRENT);
  if (!answer || !answer->values || answer->values->numbers.empty()) return fallback;
  return answer->values->numbers.front();
}

std::string Joined(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) text += (text.empty() ? "" : ", ") + item;
  return text;
}

// The value of a container that holds one, the chosen one of a list.
std::string Value(const std::optional<Answer>& answer,
                  std::optional<size_t> CapabilityValues::*choice) {
  if (!answer) return "-";
  if (!answer->values || answer->values->items.empty()) return "?";
  const CapabilityValues& values = *answer->values;
  if (answer->containerType == TWON_ONEVALUE) return values.items.front();
  const std::optional<size_t> index = values.*choice;
  return index ? values.items[*index] : "-";
}

CapabilityRow DescribeCapability(OpenSource source, TW_UINT16 id) {
  const std::optional<Answer> offered = Ask(source, id, MSG_GET);
  CapabilityRow row;
  row.name = CapabilityName(id);
  if (!offered) {
    row.type = "refused: " + ConditionCodeName(source.conditionCode());
    return row;
  }
  if (!offered->values) {
    row.type = "unreadable";
    return row;
  }
  const CapabilityValues& values = *offered->values;
  row.type = ContainerTypeName(offered->containerType) + " " + ItemTypeName(values.itemType);
  if (offered->containerType == TWON_ONEVALUE) {
    row.current = Value(Ask(source, id, MSG_GETCURRENT), &CapabilityValues::current);
    row.defaultValue = Value(Ask(source, id, MSG_GETDEFAULT), &CapabilityValues::defaultItem);
    row.offered = values.items.front();
    return row;
  }
  // A list says itself which of its values are current and default.
  row.current = Value(offered, &CapabilityValues::current);
  row.defaultValue = Value(offered, &CapabilityValues::defaultItem);
  row.offered = values.range.empty() ? Joined(values.items) : values.range;
  return row;
}

}  // namespace

ExitStatus Negotiate(OpenSource source, const AcquireOptions& options, AgreedTerms* terms) {
  for (const Wish& wish : Wishes(options)) {
    if (Set(source, wish.capability, wish.itemType, wish.value) != TWRC_FAILURE) continue;
    std::fprintf(stderr, "zyracquire: %sthe source refuses the value %u for %s: %s\n",
                 wish.asked ? "" : "warning: ", static_cast<unsigned>(wish.value),
                 CapabilityName(wish.capability).c_str(),
                 DescribeConditionCode(source.conditionCode()).c_str());
    if (wish.asked) return kExitRefused;
  }
  terms->zeroIsWhite = CurrentNumber(source, ICAP_PIXELFLAVOR, TWPF_CHOCOLATE) == TWPF_VANILLA;
  terms->inches = CurrentNumber(source, ICAP_UNITS, TWUN_INCHES) == TWUN_INCHES;
  return kExitDone;
}

ExitStatus PrintCapabilities(OpenSource source) {
  const std::optional<Answer> supported = Ask(source, CAP_SUPPORTEDCAPS, MSG_GET);
  if (!supported || !supported->values) {
    std::fprintf(stderr, "zyracquire: the source does not tell its capabilities: %s\n",
                 DescribeConditionCode(source.conditionCode()).c_str());
    return kExitFailed;
  }
  std::vector<CapabilityRow> rows;
  for (const uint32_t id : supported->values->numbers) {
    rows.push_back(DescribeCapability(source, static_cast<TW_UINT16>(id)));
  }
  std::fputs(FormatTable(rows, kTableWidth).c_str(), stdout);
  return kExitDone;
}

}  // namespace zyr
