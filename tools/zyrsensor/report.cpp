#include "tools/zyrsensor/report.h"

#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "hardware/device/device_303.h"

namespace zyr {
namespace {

constexpr size_t kDefectsToList = 200;

std::string Line(const std::string& name, const std::string& value) {
  return FormatText("  %-22s %s\n", name.c_str(), value.c_str());
}

std::string DescribeProperties(const PropertySet& properties) {
  std::string text = "Properties\n";
  for (const Property& property : properties.properties())
    text += Line(property.name, property.value);
  return text;
}

std::string DescribeDirectory(const MemoryDirectory& directory) {
  return "Identity memory\n" + Line("identity", directory.id) +
         Line("identity entry at", FormatText("0x%lX", Lu(directory.identity_entry_offset))) +
         Line("defect list at", FormatText("0x%lX", Lu(directory.defect_text_offset))) +
         Line("defect list length", FormatText("%lu bytes", Lu(directory.defect_text_length))) +
         Line("directory ends at", FormatText("0x%lX", Lu(directory.directory_end)));
}

std::string DescribeGain(const PdiRecord& pdi) {
  return Line("gain", pdi.enabled == 0 ? "off"
                                       : FormatText("%.2f + %.6f t + %.10f t^2", pdi.gain_0,
                                                    pdi.gain_1, pdi.gain_2));
}

std::string DescribeCalibration(const DeviceZYR303& device) {
  const SensorDefects* calibration = device.calibration();
  const size_t columns = calibration == nullptr ? 0 : calibration->calibration().size();
  return "Calibration\n" + Line("columns", FormatText("%lu", Lu(static_cast<uint32_t>(columns)))) +
         DescribeGain(device.gain());
}

std::string DescribeDefects(const SensorDefects* defects) {
  if (defects == nullptr) return "Defects: no list\n";
  const DefectList& list = defects->defects();
  const std::vector<DefectPixel> pixels = list.Pixels();
  std::string text = FormatText("Defects: %lu pixels, %lu rows, %lu columns; y from the bottom\n",
                                Lu(static_cast<uint32_t>(pixels.size())),
                                Lu(static_cast<uint32_t>(list.rows().size())),
                                Lu(static_cast<uint32_t>(list.columns().size())));
  for (const int32_t row : list.rows()) text += FormatText("  row    %ld\n", Ld(row));
  for (const int32_t column : list.columns()) text += FormatText("  column %ld\n", Ld(column));
  for (size_t i = 0; i < pixels.size() && i < kDefectsToList; ++i)
    text += FormatText("  pixel  %ld, %ld\n", Ld(pixels[i].x), Ld(pixels[i].y));
  if (pixels.size() > kDefectsToList) text += "  ...\n";
  return text;
}

}  // namespace

std::string DescribeSensor(const SensorEntry& sensor) {
  return FormatText("%-8s %-16s %s", sensor.name.c_str(), sensor.sensorId.c_str(),
                    sensor.instanceId.c_str());
}

std::string DescribeDevice(Device2000& device) {
  std::string text = DescribeProperties(device.properties());
  text += FormatText("  %-22s %ld x %ld dpi\n", "resolution", Ld(device.GetDpiX()),
                     Ld(device.GetDpiY()));
  if (device.IsDeviceZYR303Family() != 0) {
    text += DescribeCalibration(static_cast<const DeviceZYR303&>(device));
  } else {
    text += DescribeDirectory(device.directory());
  }
  return text + DescribeDefects(device.defects());
}

std::string DescribeFailure(const std::string& what, Result result) {
  return FormatText("%s (0x%08lX). %s", what.c_str(), Lu(static_cast<uint32_t>(result)),
                    LastErrorText().c_str());
}

std::string DescribeDifference(const Difference& difference) {
  return FormatText("mean %.2f, root mean square %.2f, largest %lu of 4095, %.2f %% off by more "
                    "than 40",
                    difference.mean, difference.rootMeanSquare, Lu(difference.largest),
                    difference.shareAbove40 * 100);
}

}  // namespace zyr
