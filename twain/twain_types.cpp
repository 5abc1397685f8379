// Proves the layout of every record for 32-bit and 64-bit modules. There is nothing to run.
#include "twain/twain_types.h"

#include <cstddef>

namespace zyr {
namespace {

constexpr size_t At(size_t on32, size_t on64) { return sizeof(void*) == 4 ? on32 : on64; }

static_assert(sizeof(TW_FIX32) == 4);
static_assert(offsetof(TW_FIX32, Whole) == 0);
static_assert(offsetof(TW_FIX32, Frac) == 2);

static_assert(sizeof(TW_FRAME) == 16);
static_assert(offsetof(TW_FRAME, Left) == 0);
static_assert(offsetof(TW_FRAME, Top) == 4);
static_assert(offsetof(TW_FRAME, Right) == 8);
static_assert(offsetof(TW_FRAME, Bottom) == 12);

static_assert(sizeof(TW_VERSION) == 42);
static_assert(offsetof(TW_VERSION, MajorNum) == 0);
static_assert(offsetof(TW_VERSION, MinorNum) == 2);
static_assert(offsetof(TW_VERSION, Language) == 4);
static_assert(offsetof(TW_VERSION, Country) == 6);
static_assert(offsetof(TW_VERSION, Info) == 8);

static_assert(sizeof(TW_IDENTITY) == 156);
static_assert(offsetof(TW_IDENTITY, Id) == 0);
static_assert(offsetof(TW_IDENTITY, Version) == 4);
static_assert(offsetof(TW_IDENTITY, ProtocolMajor) == 46);
static_assert(offsetof(TW_IDENTITY, ProtocolMinor) == 48);
static_assert(offsetof(TW_IDENTITY, SupportedGroups) == 50);
static_assert(offsetof(TW_IDENTITY, Manufacturer) == 54);
static_assert(offsetof(TW_IDENTITY, ProductFamily) == 88);
static_assert(offsetof(TW_IDENTITY, ProductName) == 122);

static_assert(sizeof(TW_USERINTERFACE) == At(8, 12));
static_assert(offsetof(TW_USERINTERFACE, ShowUI) == 0);
static_assert(offsetof(TW_USERINTERFACE, ModalUI) == 2);
static_assert(offsetof(TW_USERINTERFACE, hParent) == 4);

static_assert(sizeof(TW_STATUS) == 4);
static_assert(offsetof(TW_STATUS, ConditionCode) == 0);
static_assert(offsetof(TW_STATUS, Reserved) == 2);

static_assert(sizeof(TW_EVENT) == At(6, 10));
static_assert(offsetof(TW_EVENT, pEvent) == 0);
static_assert(offsetof(TW_EVENT, TWMessage) == At(4, 8));

static_assert(sizeof(TW_PENDINGXFERS) == 6);
static_assert(offsetof(TW_PENDINGXFERS, Count) == 0);
static_assert(offsetof(TW_PENDINGXFERS, EOJ) == 2);
static_assert(offsetof(TW_PENDINGXFERS, Reserved) == 2);

static_assert(sizeof(TW_SETUPMEMXFER) == 12);
static_assert(offsetof(TW_SETUPMEMXFER, MinBufSize) == 0);
static_assert(offsetof(TW_SETUPMEMXFER, MaxBufSize) == 4);
static_assert(offsetof(TW_SETUPMEMXFER, Preferred) == 8);

static_assert(sizeof(TW_SETUPFILEXFER) == 260);
static_assert(offsetof(TW_SETUPFILEXFER, FileName) == 0);
static_assert(offsetof(TW_SETUPFILEXFER, Format) == 256);
static_assert(offsetof(TW_SETUPFILEXFER, VRefNum) == 258);

static_assert(sizeof(TW_SETUPFILEXFER2) == At(14, 18));
static_assert(offsetof(TW_SETUPFILEXFER2, FileName) == 0);
static_assert(offsetof(TW_SETUPFILEXFER2, FileNameType) == At(4, 8));
static_assert(offsetof(TW_SETUPFILEXFER2, Format) == At(6, 10));
static_assert(offsetof(TW_SETUPFILEXFER2, VRefNum) == At(8, 12));
static_assert(offsetof(TW_SETUPFILEXFER2, parID) == At(10, 14));

static_assert(sizeof(TW_CUSTOMDSDATA) == At(8, 12));
static_assert(offsetof(TW_CUSTOMDSDATA, InfoLength) == 0);
static_assert(offsetof(TW_CUSTOMDSDATA, hData) == 4);

static_assert(sizeof(TW_DEVICEEVENT) == 294);
static_assert(offsetof(TW_DEVICEEVENT, Event) == 0);
static_assert(offsetof(TW_DEVICEEVENT, DeviceName) == 4);
static_assert(offsetof(TW_DEVICEEVENT, BatteryMinutes) == 260);
static_assert(offsetof(TW_DEVICEEVENT, BatteryPercentage) == 264);
static_assert(offsetof(TW_DEVICEEVENT, PowerSupply) == 266);
static_assert(offsetof(TW_DEVICEEVENT, XResolution) == 270);
static_assert(offsetof(TW_DEVICEEVENT, YResolution) == 274);
static_assert(offsetof(TW_DEVICEEVENT, FlashUsed2) == 278);
static_assert(offsetof(TW_DEVICEEVENT, AutomaticCapture) == 282);
static_assert(offsetof(TW_DEVICEEVENT, TimeBeforeFirstCapture) == 286);
static_assert(offsetof(TW_DEVICEEVENT, TimeBetweenCaptures) == 290);

static_assert(sizeof(TW_PASSTHRU) == At(24, 32));
static_assert(offsetof(TW_PASSTHRU, pCommand) == 0);
static_assert(offsetof(TW_PASSTHRU, CommandBytes) == At(4, 8));
static_assert(offsetof(TW_PASSTHRU, Direction) == At(8, 12));
static_assert(offsetof(TW_PASSTHRU, pData) == At(12, 16));
static_assert(offsetof(TW_PASSTHRU, DataBytes) == At(16, 24));
static_assert(offsetof(TW_PASSTHRU, DataBytesXfered) == At(20, 28));

static_assert(sizeof(TW_FILESYSTEM) == At(1124, 1128));
static_assert(offsetof(TW_FILESYSTEM, InputName) == 0);
static_assert(offsetof(TW_FILESYSTEM, OutputName) == 256);
static_assert(offsetof(TW_FILESYSTEM, Context) == 512);
static_assert(offsetof(TW_FILESYSTEM, Recursive) == At(516, 520));
static_assert(offsetof(TW_FILESYSTEM, FileType) == At(520, 524));
static_assert(offsetof(TW_FILESYSTEM, Size) == At(524, 528));
static_assert(offsetof(TW_FILESYSTEM, CreateTimeDate) == At(528, 532));
static_assert(offsetof(TW_FILESYSTEM, ModifiedTimeDate) == At(562, 566));
static_assert(offsetof(TW_FILESYSTEM, FreeSpace) == At(596, 600));
static_assert(offsetof(TW_FILESYSTEM, NewImageSize) == At(600, 604));
static_assert(offsetof(TW_FILESYSTEM, NumberOfFiles) == At(604, 608));
static_assert(offsetof(TW_FILESYSTEM, NumberOfSnippets) == At(608, 612));
static_assert(offsetof(TW_FILESYSTEM, DeviceGroupMask) == At(612, 616));
static_assert(offsetof(TW_FILESYSTEM, Reserved) == At(616, 620));

static_assert(sizeof(TW_AUDIOINFO) == 260);
static_assert(offsetof(TW_AUDIOINFO, Name) == 0);
static_assert(offsetof(TW_AUDIOINFO, Reserved) == 256);

static_assert(sizeof(TW_CAPABILITY) == At(8, 12));
static_assert(offsetof(TW_CAPABILITY, Cap) == 0);
static_assert(offsetof(TW_CAPABILITY, ConType) == 2);
static_assert(offsetof(TW_CAPABILITY, hContainer) == 4);

static_assert(sizeof(TW_CAPEXT) == 4);
static_assert(offsetof(TW_CAPEXT, Cap) == 0);
static_assert(offsetof(TW_CAPEXT, Properties) == 2);

static_assert(sizeof(TW_ONEVALUE) == 6);
static_assert(offsetof(TW_ONEVALUE, ItemType) == 0);
static_assert(offsetof(TW_ONEVALUE, Item) == 2);

static_assert(sizeof(TW_ARRAY) == 8);
static_assert(offsetof(TW_ARRAY, ItemType) == 0);
static_assert(offsetof(TW_ARRAY, NumItems) == 2);
static_assert(offsetof(TW_ARRAY, ItemList) == 6);

static_assert(sizeof(TW_ENUMERATION) == 16);
static_assert(offsetof(TW_ENUMERATION, ItemType) == 0);
static_assert(offsetof(TW_ENUMERATION, NumItems) == 2);
static_assert(offsetof(TW_ENUMERATION, CurrentIndex) == 6);
static_assert(offsetof(TW_ENUMERATION, DefaultIndex) == 10);
static_assert(offsetof(TW_ENUMERATION, ItemList) == 14);

static_assert(sizeof(TW_RANGE) == 22);
static_assert(offsetof(TW_RANGE, ItemType) == 0);
static_assert(offsetof(TW_RANGE, MinValue) == 2);
static_assert(offsetof(TW_RANGE, MaxValue) == 6);
static_assert(offsetof(TW_RANGE, StepSize) == 10);
static_assert(offsetof(TW_RANGE, DefaultValue) == 14);
static_assert(offsetof(TW_RANGE, CurrentValue) == 18);

static_assert(sizeof(TW_MEMORY) == At(12, 16));
static_assert(offsetof(TW_MEMORY, Flags) == 0);
static_assert(offsetof(TW_MEMORY, Length) == 4);
static_assert(offsetof(TW_MEMORY, TheMem) == 8);

static_assert(sizeof(TW_IMAGEMEMXFER) == At(38, 42));
static_assert(offsetof(TW_IMAGEMEMXFER, Compression) == 0);
static_assert(offsetof(TW_IMAGEMEMXFER, BytesPerRow) == 2);
static_assert(offsetof(TW_IMAGEMEMXFER, Columns) == 6);
static_assert(offsetof(TW_IMAGEMEMXFER, Rows) == 10);
static_assert(offsetof(TW_IMAGEMEMXFER, XOffset) == 14);
static_assert(offsetof(TW_IMAGEMEMXFER, YOffset) == 18);
static_assert(offsetof(TW_IMAGEMEMXFER, BytesWritten) == 22);
static_assert(offsetof(TW_IMAGEMEMXFER, Memory) == 26);

static_assert(sizeof(TW_IMAGEINFO) == 42);
static_assert(offsetof(TW_IMAGEINFO, XResolution) == 0);
static_assert(offsetof(TW_IMAGEINFO, YResolution) == 4);
static_assert(offsetof(TW_IMAGEINFO, ImageWidth) == 8);
static_assert(offsetof(TW_IMAGEINFO, ImageLength) == 12);
static_assert(offsetof(TW_IMAGEINFO, SamplesPerPixel) == 16);
static_assert(offsetof(TW_IMAGEINFO, BitsPerSample) == 18);
static_assert(offsetof(TW_IMAGEINFO, BitsPerPixel) == 34);
static_assert(offsetof(TW_IMAGEINFO, Planar) == 36);
static_assert(offsetof(TW_IMAGEINFO, PixelType) == 38);
static_assert(offsetof(TW_IMAGEINFO, Compression) == 40);

static_assert(sizeof(TW_IMAGELAYOUT) == 28);
static_assert(offsetof(TW_IMAGELAYOUT, Frame) == 0);
static_assert(offsetof(TW_IMAGELAYOUT, DocumentNumber) == 16);
static_assert(offsetof(TW_IMAGELAYOUT, PageNumber) == 20);
static_assert(offsetof(TW_IMAGELAYOUT, FrameNumber) == 24);

static_assert(sizeof(TW_INFO) == 12);
static_assert(offsetof(TW_INFO, InfoID) == 0);
static_assert(offsetof(TW_INFO, ItemType) == 2);
static_assert(offsetof(TW_INFO, NumItems) == 4);
static_assert(offsetof(TW_INFO, CondCode) == 6);
static_assert(offsetof(TW_INFO, Item) == 8);

static_assert(sizeof(TW_EXTIMAGEINFO) == 16);
static_assert(offsetof(TW_EXTIMAGEINFO, NumInfos) == 0);
static_assert(offsetof(TW_EXTIMAGEINFO, Info) == 4);

static_assert(sizeof(TW_JPEGCOMPRESSION) == At(122, 154));
static_assert(offsetof(TW_JPEGCOMPRESSION, ColorSpace) == 0);
static_assert(offsetof(TW_JPEGCOMPRESSION, SubSampling) == 2);
static_assert(offsetof(TW_JPEGCOMPRESSION, NumComponents) == 6);
static_assert(offsetof(TW_JPEGCOMPRESSION, RestartFrequency) == 8);
static_assert(offsetof(TW_JPEGCOMPRESSION, QuantMap) == 10);
static_assert(offsetof(TW_JPEGCOMPRESSION, QuantTable) == 18);
static_assert(offsetof(TW_JPEGCOMPRESSION, HuffmanMap) == At(66, 82));
static_assert(offsetof(TW_JPEGCOMPRESSION, HuffmanDC) == At(74, 90));
static_assert(offsetof(TW_JPEGCOMPRESSION, HuffmanAC) == At(98, 122));

static_assert(sizeof(TW_ELEMENT8) == 4);
static_assert(offsetof(TW_ELEMENT8, Index) == 0);
static_assert(offsetof(TW_ELEMENT8, Channel1) == 1);
static_assert(offsetof(TW_ELEMENT8, Channel2) == 2);
static_assert(offsetof(TW_ELEMENT8, Channel3) == 3);

static_assert(sizeof(TW_PALETTE8) == 1028);
static_assert(offsetof(TW_PALETTE8, NumColors) == 0);
static_assert(offsetof(TW_PALETTE8, PaletteType) == 2);
static_assert(offsetof(TW_PALETTE8, Colors) == 4);

static_assert(sizeof(TW_GRAYRESPONSE) == 4);
static_assert(offsetof(TW_GRAYRESPONSE, Response) == 0);

static_assert(sizeof(TW_RGBRESPONSE) == 4);
static_assert(offsetof(TW_RGBRESPONSE, Response) == 0);

static_assert(sizeof(TW_CIEPOINT) == 12);
static_assert(offsetof(TW_CIEPOINT, X) == 0);
static_assert(offsetof(TW_CIEPOINT, Y) == 4);
static_assert(offsetof(TW_CIEPOINT, Z) == 8);

static_assert(sizeof(TW_DECODEFUNCTION) == 32);
static_assert(offsetof(TW_DECODEFUNCTION, StartIn) == 0);
static_assert(offsetof(TW_DECODEFUNCTION, BreakIn) == 4);
static_assert(offsetof(TW_DECODEFUNCTION, EndIn) == 8);
static_assert(offsetof(TW_DECODEFUNCTION, StartOut) == 12);
static_assert(offsetof(TW_DECODEFUNCTION, BreakOut) == 16);
static_assert(offsetof(TW_DECODEFUNCTION, EndOut) == 20);
static_assert(offsetof(TW_DECODEFUNCTION, Gamma) == 24);
static_assert(offsetof(TW_DECODEFUNCTION, SampleCount) == 28);

static_assert(sizeof(TW_TRANSFORMSTAGE) == 132);
static_assert(offsetof(TW_TRANSFORMSTAGE, Decode) == 0);
static_assert(offsetof(TW_TRANSFORMSTAGE, Mix) == 96);

static_assert(sizeof(TW_CIECOLOR) == 326);
static_assert(offsetof(TW_CIECOLOR, ColorSpace) == 0);
static_assert(offsetof(TW_CIECOLOR, LowEndian) == 2);
static_assert(offsetof(TW_CIECOLOR, DeviceDependent) == 4);
static_assert(offsetof(TW_CIECOLOR, VersionNumber) == 6);
static_assert(offsetof(TW_CIECOLOR, StageABC) == 10);
static_assert(offsetof(TW_CIECOLOR, StageLMN) == 142);
static_assert(offsetof(TW_CIECOLOR, WhitePoint) == 274);
static_assert(offsetof(TW_CIECOLOR, BlackPoint) == 286);
static_assert(offsetof(TW_CIECOLOR, WhitePaper) == 298);
static_assert(offsetof(TW_CIECOLOR, BlackInk) == 310);
static_assert(offsetof(TW_CIECOLOR, Samples) == 322);

}  // namespace
}  // namespace zyr
