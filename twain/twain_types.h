// The records of the TWAIN protocol 1.9 as they lie in memory on Windows: packed to two bytes, so
// that handles and pointers, 4 or 8 bytes wide, stand on even addresses. twain_types.cpp proves it.
// Bind no reference to a field wider than two bytes: copy it.
#pragma once

#include <cstdint>

#include "twain/twain_constants.h"

// How manager and source call each other: stdcall where the platform has it.
#ifdef __i386__
#define ZYR_PASCAL __attribute__((stdcall))
#else
#define ZYR_PASCAL
#endif

namespace zyr {

using TW_INT8 = int8_t;
using TW_INT16 = int16_t;
using TW_INT32 = int32_t;
using TW_UINT8 = uint8_t;
using TW_BOOL = uint16_t;
using TW_HANDLE = void*;
using TW_MEMREF = void*;

// Texts, with the terminating zero.
using TW_STR32 = char[34];
using TW_STR64 = char[66];
using TW_STR128 = char[130];
using TW_STR255 = char[256];
using TW_STR1024 = char[1026];
using TW_UNI512 = char16_t[512];

#pragma pack(push, 2)

// Whole + Frac / 65536.
struct TW_FIX32 {
  TW_INT16 Whole;
  TW_UINT16 Frac;
};

struct TW_FRAME {
  TW_FIX32 Left;
  TW_FIX32 Top;
  TW_FIX32 Right;
  TW_FIX32 Bottom;
};

// --- Control

struct TW_VERSION {
  TW_UINT16 MajorNum;
  TW_UINT16 MinorNum;
  TW_UINT16 Language;
  TW_UINT16 Country;
  TW_STR32 Info;
};

struct TW_IDENTITY {
  TW_UINT32 Id;
  TW_VERSION Version;
  TW_UINT16 ProtocolMajor;
  TW_UINT16 ProtocolMinor;
  TW_UINT32 SupportedGroups;
  TW_STR32 Manufacturer;
  TW_STR32 ProductFamily;
  TW_STR32 ProductName;
};
using pTW_IDENTITY = TW_IDENTITY*;

struct TW_USERINTERFACE {
  TW_BOOL ShowUI;
  TW_BOOL ModalUI;
  TW_HANDLE hParent;
};

struct TW_STATUS {
  TW_UINT16 ConditionCode;
  TW_UINT16 Reserved;
};

struct TW_EVENT {
  TW_MEMREF pEvent;
  TW_UINT16 TWMessage;
};

struct TW_PENDINGXFERS {
  TW_UINT16 Count;
  union {
    TW_UINT32 EOJ;
    TW_UINT32 Reserved;
  };
};

struct TW_SETUPMEMXFER {
  TW_UINT32 MinBufSize;
  TW_UINT32 MaxBufSize;
  TW_UINT32 Preferred;
};

struct TW_SETUPFILEXFER {
  TW_STR255 FileName;
  TW_UINT16 Format;
  TW_INT16 VRefNum;
};

struct TW_SETUPFILEXFER2 {
  TW_MEMREF FileName;
  TW_UINT16 FileNameType;
  TW_UINT16 Format;
  TW_INT16 VRefNum;
  TW_UINT32 parID;
};

struct TW_CUSTOMDSDATA {
  TW_UINT32 InfoLength;
  TW_HANDLE hData;
};

struct TW_DEVICEEVENT {
  TW_UINT32 Event;
  TW_STR255 DeviceName;
  TW_UINT32 BatteryMinutes;
  TW_INT16 BatteryPercentage;
  TW_INT32 PowerSupply;
  TW_FIX32 XResolution;
  TW_FIX32 YResolution;
  TW_UINT32 FlashUsed2;
  TW_UINT32 AutomaticCapture;
  TW_UINT32 TimeBeforeFirstCapture;
  TW_UINT32 TimeBetweenCaptures;
};

struct TW_PASSTHRU {
  TW_MEMREF pCommand;
  TW_UINT32 CommandBytes;
  TW_INT32 Direction;
  TW_MEMREF pData;
  TW_UINT32 DataBytes;
  TW_UINT32 DataBytesXfered;
};

struct TW_FILESYSTEM {
  TW_STR255 InputName;
  TW_STR255 OutputName;
  TW_MEMREF Context;
  int32_t Recursive;
  TW_INT32 FileType;
  TW_UINT32 Size;
  TW_STR32 CreateTimeDate;
  TW_STR32 ModifiedTimeDate;
  TW_UINT32 FreeSpace;
  TW_INT32 NewImageSize;
  TW_UINT32 NumberOfFiles;
  TW_UINT32 NumberOfSnippets;
  TW_UINT32 DeviceGroupMask;
  char Reserved[508];
};

struct TW_AUDIOINFO {
  TW_STR255 Name;
  TW_UINT32 Reserved;
};

// --- Capabilities and their containers

struct TW_CAPABILITY {
  TW_UINT16 Cap;
  TW_UINT16 ConType;
  TW_HANDLE hContainer;
};

struct TW_CAPEXT {
  TW_UINT16 Cap;
  TW_UINT16 Properties;
};

// An item wider than Item runs on behind the record.
struct TW_ONEVALUE {
  TW_UINT16 ItemType;
  TW_UINT32 Item;
};

// The items begin at ItemList, which is not at the record's end: packing pads it.
struct TW_ARRAY {
  TW_UINT16 ItemType;
  TW_UINT32 NumItems;
  TW_UINT8 ItemList[1];
};

// The items as in TW_ARRAY. The indices count items.
struct TW_ENUMERATION {
  TW_UINT16 ItemType;
  TW_UINT32 NumItems;
  TW_UINT32 CurrentIndex;
  TW_UINT32 DefaultIndex;
  TW_UINT8 ItemList[1];
};

// Each value 32 bits wide, whatever the type.
struct TW_RANGE {
  TW_UINT16 ItemType;
  TW_UINT32 MinValue;
  TW_UINT32 MaxValue;
  TW_UINT32 StepSize;
  TW_UINT32 DefaultValue;
  TW_UINT32 CurrentValue;
};

// --- Images

struct TW_MEMORY {
  TW_UINT32 Flags;
  TW_UINT32 Length;
  TW_MEMREF TheMem;
};

struct TW_IMAGEMEMXFER {
  TW_UINT16 Compression;
  TW_UINT32 BytesPerRow;
  TW_UINT32 Columns;
  TW_UINT32 Rows;
  TW_UINT32 XOffset;
  TW_UINT32 YOffset;
  TW_UINT32 BytesWritten;
  TW_MEMORY Memory;
};

struct TW_IMAGEINFO {
  TW_FIX32 XResolution;
  TW_FIX32 YResolution;
  TW_INT32 ImageWidth;
  TW_INT32 ImageLength;
  TW_INT16 SamplesPerPixel;
  TW_INT16 BitsPerSample[8];
  TW_INT16 BitsPerPixel;
  TW_BOOL Planar;
  TW_INT16 PixelType;
  TW_UINT16 Compression;
};

struct TW_IMAGELAYOUT {
  TW_FRAME Frame;
  TW_UINT32 DocumentNumber;
  TW_UINT32 PageNumber;
  TW_UINT32 FrameNumber;
};

struct TW_INFO {
  TW_UINT16 InfoID;
  TW_UINT16 ItemType;
  TW_UINT16 NumItems;
  TW_UINT16 CondCode;
  TW_UINT32 Item;
};

// NumInfos elements follow.
struct TW_EXTIMAGEINFO {
  TW_UINT32 NumInfos;
  TW_INFO Info[1];
};

struct TW_JPEGCOMPRESSION {
  TW_UINT16 ColorSpace;
  TW_UINT32 SubSampling;
  TW_UINT16 NumComponents;
  TW_UINT16 RestartFrequency;
  TW_UINT16 QuantMap[4];
  TW_MEMORY QuantTable[4];
  TW_UINT16 HuffmanMap[4];
  TW_MEMORY HuffmanDC[2];
  TW_MEMORY HuffmanAC[2];
};

// --- Colours

struct TW_ELEMENT8 {
  TW_UINT8 Index;
  TW_UINT8 Channel1;
  TW_UINT8 Channel2;
  TW_UINT8 Channel3;
};

struct TW_PALETTE8 {
  TW_UINT16 NumColors;
  TW_UINT16 PaletteType;
  TW_ELEMENT8 Colors[256];
};

// Of both responses 256 elements follow.
struct TW_GRAYRESPONSE {
  TW_ELEMENT8 Response[1];
};

struct TW_RGBRESPONSE {
  TW_ELEMENT8 Response[1];
};

struct TW_CIEPOINT {
  TW_FIX32 X;
  TW_FIX32 Y;
  TW_FIX32 Z;
};

struct TW_DECODEFUNCTION {
  TW_FIX32 StartIn;
  TW_FIX32 BreakIn;
  TW_FIX32 EndIn;
  TW_FIX32 StartOut;
  TW_FIX32 BreakOut;
  TW_FIX32 EndOut;
  TW_FIX32 Gamma;
  TW_FIX32 SampleCount;
};

struct TW_TRANSFORMSTAGE {
  TW_DECODEFUNCTION Decode[3];
  TW_FIX32 Mix[3][3];
};

// As many samples follow as the decode functions call for.
struct TW_CIECOLOR {
  TW_UINT16 ColorSpace;
  TW_INT16 LowEndian;
  TW_INT16 DeviceDependent;
  TW_INT32 VersionNumber;
  TW_TRANSFORMSTAGE StageABC;
  TW_TRANSFORMSTAGE StageLMN;
  TW_CIEPOINT WhitePoint;
  TW_CIEPOINT BlackPoint;
  TW_CIEPOINT WhitePaper;
  TW_CIEPOINT BlackInk;
  TW_FIX32 Samples[1];
};

#pragma pack(pop)

// The entry of a source, and that of the manager.
using DsEntryProc = TW_UINT16(ZYR_PASCAL*)(pTW_IDENTITY origin, TW_UINT32 dataGroup,
                                           TW_UINT16 dataArgumentType, TW_UINT16 message,
                                           TW_MEMREF data);
using DsmEntryProc = TW_UINT16(ZYR_PASCAL*)(pTW_IDENTITY origin, pTW_IDENTITY destination,
                                            TW_UINT32 dataGroup, TW_UINT16 dataArgumentType,
                                            TW_UINT16 message, TW_MEMREF data);

}  // namespace zyr
