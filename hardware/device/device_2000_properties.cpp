// Configuration: texts that take effect as they are set.
#include <algorithm>

#include "foundation/support/error.h"
#include "foundation/support/files.h"
#include "foundation/support/phrase_lookup.h"
#include "hardware/device/device_2000.h"
#include "hardware/device/text_numbers.h"
#include "platform/ascii.h"

namespace zyr {
namespace {

constexpr char kTrue[] = "true";
constexpr char kFalse[] = "false";

constexpr double kMicrometresPerInch = 25400;
constexpr double kPitch2000 = 45;
constexpr double kPitchOther = 33;
constexpr double kGreatestDpi = 65535;  // what a picture file can tell

struct Limits {
  int32_t least;
  int32_t most;
  const char* error;
};
constexpr Limits kSensitivity = {1, 7,
                                 PhraseKey("An invalid sensitivity value of %ld was specified")};
constexpr Limits kThreshold = {1, 255,
                               PhraseKey("An invalid threshold value of %ld was specified")};
constexpr Limits kIntegrationTime = {
    200, 1000, PhraseKey("An invalid integration time value of %ld was specified")};
constexpr Limits kCornerColor = {0, 65535,
                                 PhraseKey("An invalid corner color value of %ld was specified")};

// Leaves `field` alone if the number is refused.
template <typename Field>
Result TakeNumber(const std::string& value, const Limits& limits, Field* field) {
  const int32_t number = DecimalOf(value);
  if (number < limits.least || number > limits.most) {
    SetError(kErrorUnclassified, limits.error, Ld(number));
    return DEV_E_BAD_VALUE;
  }
  *field = static_cast<Field>(number);
  return kOk;
}

bool Is2000(const PropertySet& properties) {
  return EqualIgnoringCase(properties.Get("id"), "2000");
}

}  // namespace

Result Device2000::SetProperty(const std::string& name, const std::string& value) {
  const std::string key = LowerAscii(name);
  const std::string text = LowerAscii(value);
  const Result result = TakeEffect(key, text);
  if (Failed(result)) return result;
  properties_.Set(key, text);
  return kOk;
}

Result Device2000::TakeEffect(const std::string& name, const std::string& value) {
  if (name == "sensitivity") return TakeNumber(value, kSensitivity, &sensitivity_);
  if (name == "threshold") return TakeNumber(value, kThreshold, &threshold_);
  if (name == "integration_time") return TakeNumber(value, kIntegrationTime, &integration_time_);
  if (name == "corner_color") return TakeNumber(value, kCornerColor, &corner_color_);
  if (name == "capture_timeout") capture_timeout_ = DecimalOf(value);
  if (name == "flush_time") flush_time_ = DecimalOf(value);
  if (name == "cropping_on") cropping_on_ = value != kFalse;
  if (name == "corner_fill") corner_fill_ = value != kFalse;
  if (name == "binned") {
    binned_ = value == kTrue ? 1 : 0;
    if (!sensor_id_.empty()) GetSensorSize();
  }
  if (name == "sensor_id") {
    // What the sensor's own memory tells goes before what the user says.
    if (IsHardwareCorrection()) return DEV_E_BAD_VALUE;
    sensor_id_ = value;
    GetSensorSize();
  }
  return kOk;
}

std::string Device2000::GetProperty(const std::string& name) {
  const bool isIdentity = name == "sensor_id";
  if ((isIdentity || name == "hw_correction_data") && Is2000(properties_)) {
    RefreshIfSensorChanged();
    if (isIdentity) {
      if (IsHardwareCorrection()) return sensor_id_;
      if (properties_.Find(name) == nullptr) properties_.Set(name, "");
    }
  }
  return properties_.Get(name);
}

void Device2000::SetDefaultProperty(const std::string& name, const std::string& value) {
  const std::string present = GetProperty(name);
  SetProperty(name, present.empty() ? value : present);
}

void Device2000::SetProperties(std::span<const PropertyValue> properties) {
  for (const PropertyValue& property : properties) SetProperty(property.name, property.value);
}

void Device2000::SetDefaultProperties(std::span<const PropertyValue> properties) {
  for (const PropertyValue& property : properties) {
    SetDefaultProperty(property.name, property.value);
  }
}

int32_t Device2000::GetDpiX() { return Dpi("micron_resX"); }
int32_t Device2000::GetDpiY() { return Dpi("micron_resY"); }

int32_t Device2000::Dpi(const char* pitchProperty) const {
  double pitch = RealOf(properties_.Get(pitchProperty));  // micrometres
  if (!(pitch > 0)) pitch = Is2000(properties_) ? kPitch2000 : kPitchOther;
  if (Is2000(properties_) && full_resolution_ == 0) pitch *= 2;
  // Held within what a resolution can be, for the texts come from outside.
  return static_cast<int32_t>(std::clamp(kMicrometresPerInch / pitch + 0.5, 1.0, kGreatestDpi));
}

bool Device2000::IsHardwareCorrection() const {
  return properties_.Get("hw_correction_data") == kTrue;
}

}  // namespace zyr
