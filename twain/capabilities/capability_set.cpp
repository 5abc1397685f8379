#include "twain/capabilities/capability_set.h"

#include "foundation/support/format.h"
#include "twain/names.h"

namespace zyr {
namespace {

std::string SignedNumber(uint32_t value) {
  return FormatText("%ld", Ld(static_cast<int16_t>(value)));
}

constexpr ValueTerms kPixelFlavor = {
    .id = ICAP_PIXELFLAVOR, .defaultValue = TWPF_CHOCOLATE, .describe = PixelFlavorName};
constexpr ValueTerms kDeviceOnline = {.id = CAP_DEVICEONLINE,
                                      .querySupport = kQueryReadOnly,
                                      .itemType = TWTY_BOOL,
                                      .defaultValue = 1,
                                      .describe = BooleanName};
constexpr ValueTerms kFeederLoaded = {.id = CAP_FEEDERLOADED,
                                      .querySupport = kQueryReadOnly,
                                      .itemType = TWTY_BOOL,
                                      .describe = BooleanName};
constexpr ValueTerms kBitOrder = {
    .id = ICAP_BITORDER, .defaultValue = TWBO_MSBFIRST, .describe = BitOrderName};
constexpr ValueTerms kXferCount = {.id = CAP_XFERCOUNT,
                                   .itemType = TWTY_INT16,
                                   .defaultValue = 0xffff,  // -1: as many as there are
                                   .describe = SignedNumber};
constexpr ValueTerms kIndicators = {
    .id = CAP_INDICATORS, .itemType = TWTY_BOOL, .defaultValue = 1, .describe = BooleanName};
constexpr ValueTerms kUiControllable = {.id = CAP_UICONTROLLABLE,
                                        .querySupport = kQueryReadOnly,
                                        .itemType = TWTY_BOOL,
                                        .describe = BooleanName};
constexpr ValueTerms kLampState = {
    .id = ICAP_LAMPSTATE, .itemType = TWTY_BOOL, .describe = LampStateName};
constexpr ValueTerms kLightPath = {
    .id = ICAP_LIGHTPATH, .defaultValue = TWLP_REFLECTIVE, .describe = LightPathName};

ListTerms PlanarChunky() {
  return {.id = ICAP_PLANARCHUNKY,
          .values = {TWPC_CHUNKY},
          .defaultValue = TWPC_CHUNKY,
          .describe = PlanarChunkyName};
}

ListTerms Compression() {
  return {.id = ICAP_COMPRESSION,
          .values = {TWCP_NONE},
          .defaultValue = TWCP_NONE,
          .resetRefills = true,
          .describe = CompressionName};
}

ListTerms ImageFileFormat() {
  return {.id = ICAP_IMAGEFILEFORMAT,
          .values = {TWFF_TIFF, TWFF_BMP, TWFF_JFIF},
          .defaultValue = TWFF_BMP,
          .resetRefills = true,
          .describe = ImageFileFormatName};
}

}  // namespace

std::vector<std::unique_ptr<Capability>> MakeCapabilities() {
  std::vector<std::unique_ptr<Capability>> made;
  made.push_back(std::make_unique<FeederEnabledCapability>());
  made.push_back(std::make_unique<ValueCapability>(kPixelFlavor));
  made.push_back(std::make_unique<XferMechCapability>());
  made.push_back(std::make_unique<ListCapability>(PlanarChunky()));
  made.push_back(std::make_unique<ListCapability>(Compression()));
  made.push_back(std::make_unique<PhysicalSizeCapability>(ICAP_PHYSICALWIDTH, 8.0, 800.0));
  made.push_back(std::make_unique<PhysicalSizeCapability>(ICAP_PHYSICALHEIGHT, 11.0, 1100.0));
  made.push_back(std::make_unique<UnitsCapability>());
  made.push_back(std::make_unique<ValueCapability>(kDeviceOnline));
  made.push_back(std::make_unique<AutoFeedCapability>());
  made.push_back(std::make_unique<ValueCapability>(kFeederLoaded));
  made.push_back(std::make_unique<BitDepthCapability>());
  made.push_back(std::make_unique<PixelTypeCapability>());
  made.push_back(std::make_unique<ValueCapability>(kBitOrder));
  made.push_back(std::make_unique<ResolutionCapability>(ICAP_XRESOLUTION));
  made.push_back(std::make_unique<ResolutionCapability>(ICAP_YRESOLUTION));
  made.push_back(std::make_unique<ValueCapability>(kXferCount));
  made.push_back(std::make_unique<ListCapability>(ImageFileFormat()));
  made.push_back(std::make_unique<ValueCapability>(kIndicators));
  made.push_back(std::make_unique<ValueCapability>(kUiControllable));
  made.push_back(std::make_unique<ValueCapability>(kLampState));
  made.push_back(std::make_unique<ValueCapability>(kLightPath));
  made.push_back(std::make_unique<AuthorCapability>());
  return made;
}

}  // namespace zyr
