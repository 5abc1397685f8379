#include "twain/names.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "twain/twain_constants.h"

namespace zyr {
namespace {

struct Name {
  uint32_t value;
  const char* text;
};

#define ZYR_NAME(constant) \
  { constant, #constant }

// Sorted by value.
// clang-format off
constexpr Name kDataGroups[] = {
    ZYR_NAME(DG_CONTROL), ZYR_NAME(DG_IMAGE), ZYR_NAME(DG_AUDIO)};

constexpr Name kResults[] = {
    ZYR_NAME(TWRC_SUCCESS), ZYR_NAME(TWRC_FAILURE), ZYR_NAME(TWRC_CHECKSTATUS),
    ZYR_NAME(TWRC_CANCEL), ZYR_NAME(TWRC_DSEVENT), ZYR_NAME(TWRC_NOTDSEVENT),
    ZYR_NAME(TWRC_XFERDONE), ZYR_NAME(TWRC_ENDOFLIST), ZYR_NAME(TWRC_INFONOTSUPPORTED),
    ZYR_NAME(TWRC_DATANOTAVAILABLE)};

constexpr Name kDataArgumentTypes[] = {
    ZYR_NAME(DAT_NULL), ZYR_NAME(DAT_CAPABILITY), ZYR_NAME(DAT_EVENT), ZYR_NAME(DAT_IDENTITY),
    ZYR_NAME(DAT_PARENT), ZYR_NAME(DAT_PENDINGXFERS), ZYR_NAME(DAT_SETUPMEMXFER),
    ZYR_NAME(DAT_SETUPFILEXFER), ZYR_NAME(DAT_STATUS), ZYR_NAME(DAT_USERINTERFACE),
    ZYR_NAME(DAT_XFERGROUP), ZYR_NAME(DAT_TWUNKIDENTITY), ZYR_NAME(DAT_CUSTOMDSDATA),
    ZYR_NAME(DAT_DEVICEEVENT), ZYR_NAME(DAT_FILESYSTEM), ZYR_NAME(DAT_PASSTHRU),
    ZYR_NAME(DAT_IMAGEINFO), ZYR_NAME(DAT_IMAGELAYOUT), ZYR_NAME(DAT_IMAGEMEMXFER),
    ZYR_NAME(DAT_IMAGENATIVEXFER), ZYR_NAME(DAT_IMAGEFILEXFER), ZYR_NAME(DAT_CIECOLOR),
    ZYR_NAME(DAT_GRAYRESPONSE), ZYR_NAME(DAT_RGBRESPONSE), ZYR_NAME(DAT_JPEGCOMPRESSION),
    ZYR_NAME(DAT_PALETTE8), ZYR_NAME(DAT_EXTIMAGEINFO), ZYR_NAME(DAT_AUDIOFILEXFER),
    ZYR_NAME(DAT_AUDIOINFO), ZYR_NAME(DAT_AUDIONATIVEXFER)};

constexpr Name kMessages[] = {
    ZYR_NAME(MSG_NULL), ZYR_NAME(MSG_GET), ZYR_NAME(MSG_GETCURRENT), ZYR_NAME(MSG_GETDEFAULT),
    ZYR_NAME(MSG_GETFIRST), ZYR_NAME(MSG_GETNEXT), ZYR_NAME(MSG_SET), ZYR_NAME(MSG_RESET),
    ZYR_NAME(MSG_QUERYSUPPORT), ZYR_NAME(MSG_XFERREADY), ZYR_NAME(MSG_CLOSEDSREQ),
    ZYR_NAME(MSG_CLOSEDSOK), ZYR_NAME(MSG_DEVICEEVENT), ZYR_NAME(MSG_CHECKSTATUS),
    ZYR_NAME(MSG_OPENDSM), ZYR_NAME(MSG_CLOSEDSM), ZYR_NAME(MSG_OPENDS), ZYR_NAME(MSG_CLOSEDS),
    ZYR_NAME(MSG_USERSELECT), ZYR_NAME(MSG_DISABLEDS), ZYR_NAME(MSG_ENABLEDS),
    ZYR_NAME(MSG_ENABLEDSUIONLY), ZYR_NAME(MSG_PROCESSEVENT), ZYR_NAME(MSG_ENDXFER),
    ZYR_NAME(MSG_CHANGEDIRECTORY), ZYR_NAME(MSG_CREATEDIRECTORY), ZYR_NAME(MSG_DELETE),
    ZYR_NAME(MSG_FORMATMEDIA), ZYR_NAME(MSG_GETCLOSE), ZYR_NAME(MSG_GETFIRSTFILE),
    ZYR_NAME(MSG_GETINFO), ZYR_NAME(MSG_GETNEXTFILE), ZYR_NAME(MSG_RENAME), ZYR_NAME(MSG_PASSTHRU),
    ZYR_NAME(MSG_CUSTOMBASE)};

constexpr Name kConditionCodes[] = {
    ZYR_NAME(TWCC_SUCCESS), ZYR_NAME(TWCC_BUMMER), ZYR_NAME(TWCC_LOWMEMORY), ZYR_NAME(TWCC_NODS),
    ZYR_NAME(TWCC_MAXCONNECTIONS), ZYR_NAME(TWCC_OPERATIONERROR), ZYR_NAME(TWCC_BADCAP),
    ZYR_NAME(TWCC_BADPROTOCOL), ZYR_NAME(TWCC_BADVALUE), ZYR_NAME(TWCC_SEQERROR),
    ZYR_NAME(TWCC_BADDEST), ZYR_NAME(TWCC_CAPUNSUPPORTED), ZYR_NAME(TWCC_CAPBADOPERATION),
    ZYR_NAME(TWCC_CAPSEQERROR), ZYR_NAME(TWCC_DENIED), ZYR_NAME(TWCC_FILEEXISTS),
    ZYR_NAME(TWCC_FILENOTFOUND), ZYR_NAME(TWCC_NOTEMPTY), ZYR_NAME(TWCC_PAPERJAM),
    ZYR_NAME(TWCC_PAPERDOUBLEFEED), ZYR_NAME(TWCC_FILEWRITEERROR),
    ZYR_NAME(TWCC_CHECKDEVICEONLINE)};

constexpr Name kCapabilities[] = {
    ZYR_NAME(CAP_XFERCOUNT), ZYR_NAME(ICAP_COMPRESSION), ZYR_NAME(ICAP_PIXELTYPE),
    ZYR_NAME(ICAP_UNITS), ZYR_NAME(ICAP_XFERMECH), ZYR_NAME(CAP_AUTHOR), ZYR_NAME(CAP_CAPTION),
    ZYR_NAME(CAP_FEEDERENABLED), ZYR_NAME(CAP_FEEDERLOADED), ZYR_NAME(CAP_TIMEDATE),
    ZYR_NAME(CAP_SUPPORTEDCAPS), ZYR_NAME(CAP_EXTENDEDCAPS), ZYR_NAME(CAP_AUTOFEED),
    ZYR_NAME(CAP_CLEARPAGE), ZYR_NAME(CAP_FEEDPAGE), ZYR_NAME(CAP_REWINDPAGE),
    ZYR_NAME(CAP_INDICATORS), ZYR_NAME(CAP_SUPPORTEDCAPSEXT), ZYR_NAME(CAP_PAPERDETECTABLE),
    ZYR_NAME(CAP_UICONTROLLABLE), ZYR_NAME(CAP_DEVICEONLINE), ZYR_NAME(CAP_AUTOSCAN),
    ZYR_NAME(CAP_THUMBNAILSENABLED), ZYR_NAME(CAP_DUPLEX), ZYR_NAME(CAP_DUPLEXENABLED),
    ZYR_NAME(CAP_ENABLEDSUIONLY), ZYR_NAME(CAP_CUSTOMDSDATA), ZYR_NAME(CAP_ENDORSER),
    ZYR_NAME(CAP_JOBCONTROL), ZYR_NAME(CAP_ALARMS), ZYR_NAME(CAP_ALARMVOLUME),
    ZYR_NAME(CAP_AUTOMATICCAPTURE), ZYR_NAME(CAP_TIMEBEFOREFIRSTCAPTURE),
    ZYR_NAME(CAP_TIMEBETWEENCAPTURES), ZYR_NAME(CAP_CLEARBUFFERS), ZYR_NAME(CAP_MAXBATCHBUFFERS),
    ZYR_NAME(CAP_DEVICETIMEDATE), ZYR_NAME(CAP_POWERSUPPLY), ZYR_NAME(CAP_CAMERAPREVIEWUI),
    ZYR_NAME(CAP_DEVICEEVENT), ZYR_NAME(CAP_PAGEMULTIPLEACQUIRE), ZYR_NAME(CAP_SERIALNUMBER),
    ZYR_NAME(CAP_FILESYSTEM), ZYR_NAME(CAP_PRINTER), ZYR_NAME(CAP_PRINTERENABLED),
    ZYR_NAME(CAP_PRINTERINDEX), ZYR_NAME(CAP_PRINTERMODE), ZYR_NAME(CAP_PRINTERSTRING),
    ZYR_NAME(CAP_PRINTERSUFFIX), ZYR_NAME(CAP_LANGUAGE), ZYR_NAME(CAP_FEEDERALIGNMENT),
    ZYR_NAME(CAP_FEEDERORDER), ZYR_NAME(CAP_PAPERBINDING), ZYR_NAME(CAP_REACQUIREALLOWED),
    ZYR_NAME(CAP_PASSTHRU), ZYR_NAME(CAP_BATTERYMINUTES), ZYR_NAME(CAP_BATTERYPERCENTAGE),
    ZYR_NAME(CAP_POWERDOWNTIME), ZYR_NAME(ICAP_AUTOBRIGHT), ZYR_NAME(ICAP_BRIGHTNESS),
    ZYR_NAME(ICAP_CONTRAST), ZYR_NAME(ICAP_CUSTHALFTONE), ZYR_NAME(ICAP_EXPOSURETIME),
    ZYR_NAME(ICAP_FILTER), ZYR_NAME(ICAP_FLASHUSED), ZYR_NAME(ICAP_GAMMA), ZYR_NAME(ICAP_HALFTONES),
    ZYR_NAME(ICAP_HIGHLIGHT), ZYR_NAME(ICAP_IMAGEFILEFORMAT), ZYR_NAME(ICAP_LAMPSTATE),
    ZYR_NAME(ICAP_LIGHTSOURCE), ZYR_NAME(ICAP_ORIENTATION), ZYR_NAME(ICAP_PHYSICALWIDTH),
    ZYR_NAME(ICAP_PHYSICALHEIGHT), ZYR_NAME(ICAP_SHADOW), ZYR_NAME(ICAP_FRAMES),
    ZYR_NAME(ICAP_XNATIVERESOLUTION), ZYR_NAME(ICAP_YNATIVERESOLUTION), ZYR_NAME(ICAP_XRESOLUTION),
    ZYR_NAME(ICAP_YRESOLUTION), ZYR_NAME(ICAP_MAXFRAMES), ZYR_NAME(ICAP_TILES),
    ZYR_NAME(ICAP_BITORDER), ZYR_NAME(ICAP_CCITTKFACTOR), ZYR_NAME(ICAP_LIGHTPATH),
    ZYR_NAME(ICAP_PIXELFLAVOR), ZYR_NAME(ICAP_PLANARCHUNKY), ZYR_NAME(ICAP_ROTATION),
    ZYR_NAME(ICAP_SUPPORTEDSIZES), ZYR_NAME(ICAP_THRESHOLD), ZYR_NAME(ICAP_XSCALING),
    ZYR_NAME(ICAP_YSCALING), ZYR_NAME(ICAP_BITORDERCODES), ZYR_NAME(ICAP_PIXELFLAVORCODES),
    ZYR_NAME(ICAP_JPEGPIXELTYPE), ZYR_NAME(ICAP_TIMEFILL), ZYR_NAME(ICAP_BITDEPTH),
    ZYR_NAME(ICAP_BITDEPTHREDUCTION), ZYR_NAME(ICAP_UNDEFINEDIMAGESIZE),
    ZYR_NAME(ICAP_IMAGEDATASET), ZYR_NAME(ICAP_EXTIMAGEINFO), ZYR_NAME(ICAP_MINIMUMHEIGHT),
    ZYR_NAME(ICAP_MINIMUMWIDTH), ZYR_NAME(ICAP_AUTODISCARDBLANKPAGES), ZYR_NAME(ICAP_FLIPROTATION),
    ZYR_NAME(ICAP_BARCODEDETECTIONENABLED), ZYR_NAME(ICAP_SUPPORTEDBARCODETYPES),
    ZYR_NAME(ICAP_BARCODEMAXSEARCHPRIORITIES), ZYR_NAME(ICAP_BARCODESEARCHPRIORITIES),
    ZYR_NAME(ICAP_BARCODESEARCHMODE), ZYR_NAME(ICAP_BARCODEMAXRETRIES),
    ZYR_NAME(ICAP_BARCODETIMEOUT), ZYR_NAME(ICAP_ZOOMFACTOR),
    ZYR_NAME(ICAP_PATCHCODEDETECTIONENABLED), ZYR_NAME(ICAP_SUPPORTEDPATCHCODETYPES),
    ZYR_NAME(ICAP_PATCHCODEMAXSEARCHPRIORITIES), ZYR_NAME(ICAP_PATCHCODESEARCHPRIORITIES),
    ZYR_NAME(ICAP_PATCHCODESEARCHMODE), ZYR_NAME(ICAP_PATCHCODEMAXRETRIES),
    ZYR_NAME(ICAP_PATCHCODETIMEOUT), ZYR_NAME(ICAP_FLASHUSED2), ZYR_NAME(ICAP_IMAGEFILTER),
    ZYR_NAME(ICAP_NOISEFILTER), ZYR_NAME(ICAP_OVERSCAN), ZYR_NAME(ICAP_AUTOMATICBORDERDETECTION),
    ZYR_NAME(ICAP_AUTOMATICDESKEW), ZYR_NAME(ICAP_AUTOMATICROTATE), ZYR_NAME(ACAP_AUDIOFILEFORMAT),
    ZYR_NAME(ACAP_XFERMECH)};

// clang-format on
#undef ZYR_NAME

constexpr Name kContainerTypes[] = {{TWON_ARRAY, PhraseKey("Array")},
                                    {TWON_ENUMERATION, PhraseKey("Enumeration")},
                                    {TWON_ONEVALUE, PhraseKey("OneValue")},
                                    {TWON_RANGE, PhraseKey("Range")}};

// Words for the values 0, 1, 2 and so on.
constexpr const char* kBooleans[] = {PhraseKey("FALSE"), PhraseKey("TRUE")};
constexpr const char* kEnabled[] = {PhraseKey("Disabled"), PhraseKey("Enabled")};
// The wrong way round against the boolean; the settings listing has always read so.
constexpr const char* kLampStates[] = {PhraseKey("On"), PhraseKey("Off")};
constexpr const char* kPixelFlavors[] = {PhraseKey("Chocolate"), PhraseKey("Vanilla")};
constexpr const char* kXferMechs[] = {PhraseKey("Native"), PhraseKey("File"), PhraseKey("Memory")};
constexpr const char* kPlanarChunky[] = {PhraseKey("Chunky"), PhraseKey("Planar")};
constexpr const char* kCompressions[] = {
    PhraseKey("None"),        PhraseKey("Packed Bits"), PhraseKey("GROUP31D"),
    PhraseKey("GROUP31DEOL"), PhraseKey("GROUP32D"),    PhraseKey("GROUP4"),
    PhraseKey("JPEG"),        PhraseKey("LZW"),         PhraseKey("JBIG"),
    PhraseKey("PNG"),         PhraseKey("RLE4"),        PhraseKey("RLE8"),
    PhraseKey("BITFIELDS")};
constexpr const char* kUnits[] = {PhraseKey("Inches"), PhraseKey("Centimeters"),
                                  PhraseKey("Picas"),  PhraseKey("Points"),
                                  PhraseKey("Twips"),  PhraseKey("Pixels")};
constexpr const char* kPixelTypes[] = {
    PhraseKey("Monochrome"), PhraseKey("Grayscale"), PhraseKey("RGB"),
    PhraseKey("Paletted"),   PhraseKey("CMY"),       PhraseKey("CMYK"),
    PhraseKey("YUV"),        PhraseKey("YUVK"),      PhraseKey("CIEXYZ")};
constexpr const char* kBitOrders[] = {PhraseKey("LSB"), PhraseKey("MSB")};
constexpr const char* kImageFileFormats[] = {PhraseKey("TIFF"),
                                             PhraseKey("PICT"),
                                             PhraseKey("BMP"),
                                             PhraseKey("XBM"),
                                             PhraseKey("JFIF"),
                                             PhraseKey("FPX"),
                                             PhraseKey("Multi-page TIFF"),
                                             PhraseKey("PNG"),
                                             PhraseKey("SPIFF"),
                                             PhraseKey("EXIF")};
constexpr const char* kLightPaths[] = {PhraseKey("Reflective"), PhraseKey("Transmissive")};

constexpr const char* kUnknownSentence = PhraseKey("Unknown Error value in condition code.");
constexpr const char* kSentences[] = {
    PhraseKey("Success message from detailed error request ??"),
    PhraseKey("Failure due to unknown causes."),
    PhraseKey("Low Memory Condition encountered, free up some memory and try again."),
    PhraseKey("No Data Source found error."),
    PhraseKey("Source is connected to max possible apps."),
    PhraseKey("An operation error just occurred."),
    PhraseKey("Bad capabilities error."),
    kUnknownSentence,
    kUnknownSentence,
    PhraseKey("Bad protocol error."),
    PhraseKey("Bad value error."),
    PhraseKey("DG DAT MSG is out of expected sequence."),
    PhraseKey("An unknown destination Application/Source was specified in DSM_Entry."),
    PhraseKey("The specified capability is not support by this TWAIN source."),
    PhraseKey("The specified operation is not support by this TWAIN source."),
    PhraseKey("A capture sequence error was encountered."),
    PhraseKey("A file system operation was denied."),
    PhraseKey("The specified file already exists."),
    PhraseKey("The specified file could not be found."),
    PhraseKey("The specified directory was not empty."),
    PhraseKey("The paper feeder is jammed."),
    PhraseKey("The paper feeder detected multiple pages."),
    PhraseKey("The file could not be written."),
    PhraseKey("The device went offline prior to or during this operation.")};

std::string Unknown(uint32_t value) {
  return FormatText(GetFormatPhrase("<Unknown (%lu)>").c_str(), Lu(value));
}

const char* FindName(std::span<const Name> names, uint32_t value) {
  const auto found =
      std::lower_bound(names.begin(), names.end(), value,
                       [](const Name& name, uint32_t wanted) { return name.value < wanted; });
  return found != names.end() && found->value == value ? found->text : nullptr;
}

std::string ConstantName(std::span<const Name> names, uint32_t value) {
  const char* name = FindName(names, value);
  return name != nullptr ? name : Unknown(value);
}

std::string Word(std::span<const char* const> words, uint32_t value) {
  return value < words.size() ? GetPhrase(words[value]) : Unknown(value);
}

constexpr bool IsSorted(std::span<const Name> names) {
  return std::is_sorted(names.begin(), names.end(),
                        [](const Name& a, const Name& b) { return a.value < b.value; });
}

static_assert(IsSorted(kDataGroups) && IsSorted(kResults) && IsSorted(kDataArgumentTypes) &&
              IsSorted(kMessages) && IsSorted(kConditionCodes) && IsSorted(kCapabilities) &&
              IsSorted(kContainerTypes));

}  // namespace

std::string DataGroupName(uint32_t value) { return ConstantName(kDataGroups, value); }

std::string DataArgumentTypeName(uint32_t value) { return ConstantName(kDataArgumentTypes, value); }

std::string MessageName(uint32_t value) { return ConstantName(kMessages, value); }

std::string ResultName(uint32_t value) { return ConstantName(kResults, value); }

std::string ConditionCodeName(uint32_t value) { return ConstantName(kConditionCodes, value); }

std::string CapabilityName(uint32_t value) { return ConstantName(kCapabilities, value); }

std::string BooleanName(uint32_t value) { return Word(kBooleans, value); }

std::string EnabledName(uint32_t value) { return Word(kEnabled, value); }

std::string LampStateName(uint32_t value) { return Word(kLampStates, value); }

std::string PixelFlavorName(uint32_t value) { return Word(kPixelFlavors, value); }

std::string XferMechName(uint32_t value) {
  return value < std::size(kXferMechs) ? Word(kXferMechs, value) : GetPhrase("Enumeration");
}

std::string PlanarChunkyName(uint32_t value) { return Word(kPlanarChunky, value); }

std::string CompressionName(uint32_t value) { return Word(kCompressions, value); }

std::string UnitsName(uint32_t value) { return Word(kUnits, value); }

std::string PixelTypeName(uint32_t value) { return Word(kPixelTypes, value); }

std::string BitOrderName(uint32_t value) { return Word(kBitOrders, value); }

std::string ImageFileFormatName(uint32_t value) { return Word(kImageFileFormats, value); }

std::string LightPathName(uint32_t value) { return Word(kLightPaths, value); }

std::string ContainerTypeName(uint32_t value) {
  const char* name = FindName(kContainerTypes, value);
  return name != nullptr ? GetPhrase(name) : Unknown(value);
}

const char* ConditionCodeSentence(uint32_t value) {
  return value < std::size(kSentences) ? kSentences[value] : kUnknownSentence;
}

}  // namespace zyr
