// The numbers of the TWAIN protocol 1.9.
#pragma once

#include <cstdint>

namespace zyr {

using TW_UINT16 = uint16_t;
using TW_UINT32 = uint32_t;

// Data groups.
inline constexpr TW_UINT32 DG_CONTROL = 1;
inline constexpr TW_UINT32 DG_IMAGE = 2;
inline constexpr TW_UINT32 DG_AUDIO = 4;

// Data argument types.
inline constexpr TW_UINT16 DAT_NULL = 0;
inline constexpr TW_UINT16 DAT_CAPABILITY = 1;
inline constexpr TW_UINT16 DAT_EVENT = 2;
inline constexpr TW_UINT16 DAT_IDENTITY = 3;
inline constexpr TW_UINT16 DAT_PARENT = 4;
inline constexpr TW_UINT16 DAT_PENDINGXFERS = 5;
inline constexpr TW_UINT16 DAT_SETUPMEMXFER = 6;
inline constexpr TW_UINT16 DAT_SETUPFILEXFER = 7;
inline constexpr TW_UINT16 DAT_STATUS = 8;
inline constexpr TW_UINT16 DAT_USERINTERFACE = 9;
inline constexpr TW_UINT16 DAT_XFERGROUP = 10;
inline constexpr TW_UINT16 DAT_TWUNKIDENTITY = 11;
inline constexpr TW_UINT16 DAT_CUSTOMDSDATA = 12;
inline constexpr TW_UINT16 DAT_DEVICEEVENT = 13;
inline constexpr TW_UINT16 DAT_FILESYSTEM = 14;
inline constexpr TW_UINT16 DAT_PASSTHRU = 15;
inline constexpr TW_UINT16 DAT_IMAGEINFO = 0x0101;
inline constexpr TW_UINT16 DAT_IMAGELAYOUT = 0x0102;
inline constexpr TW_UINT16 DAT_IMAGEMEMXFER = 0x0103;
inline constexpr TW_UINT16 DAT_IMAGENATIVEXFER = 0x0104;
inline constexpr TW_UINT16 DAT_IMAGEFILEXFER = 0x0105;
inline constexpr TW_UINT16 DAT_CIECOLOR = 0x0106;
inline constexpr TW_UINT16 DAT_GRAYRESPONSE = 0x0107;
inline constexpr TW_UINT16 DAT_RGBRESPONSE = 0x0108;
inline constexpr TW_UINT16 DAT_JPEGCOMPRESSION = 0x0109;
inline constexpr TW_UINT16 DAT_PALETTE8 = 0x010a;
inline constexpr TW_UINT16 DAT_EXTIMAGEINFO = 0x010b;
inline constexpr TW_UINT16 DAT_AUDIOFILEXFER = 0x0201;
inline constexpr TW_UINT16 DAT_AUDIOINFO = 0x0202;
inline constexpr TW_UINT16 DAT_AUDIONATIVEXFER = 0x0203;
inline constexpr TW_UINT16 DAT_SETUPFILEXFER2 = 0x0301;
inline constexpr TW_UINT16 DAT_CUSTOMBASE = 0x8000;

// Messages.
inline constexpr TW_UINT16 MSG_NULL = 0;
inline constexpr TW_UINT16 MSG_GET = 1;
inline constexpr TW_UINT16 MSG_GETCURRENT = 2;
inline constexpr TW_UINT16 MSG_GETDEFAULT = 3;
inline constexpr TW_UINT16 MSG_GETFIRST = 4;
inline constexpr TW_UINT16 MSG_GETNEXT = 5;
inline constexpr TW_UINT16 MSG_SET = 6;
inline constexpr TW_UINT16 MSG_RESET = 7;
inline constexpr TW_UINT16 MSG_QUERYSUPPORT = 8;
inline constexpr TW_UINT16 MSG_XFERREADY = 0x0101;
inline constexpr TW_UINT16 MSG_CLOSEDSREQ = 0x0102;
inline constexpr TW_UINT16 MSG_CLOSEDSOK = 0x0103;
inline constexpr TW_UINT16 MSG_DEVICEEVENT = 0x0104;
inline constexpr TW_UINT16 MSG_CHECKSTATUS = 0x0201;
inline constexpr TW_UINT16 MSG_OPENDSM = 0x0301;
inline constexpr TW_UINT16 MSG_CLOSEDSM = 0x0302;
inline constexpr TW_UINT16 MSG_OPENDS = 0x0401;
inline constexpr TW_UINT16 MSG_CLOSEDS = 0x0402;
inline constexpr TW_UINT16 MSG_USERSELECT = 0x0403;
inline constexpr TW_UINT16 MSG_DISABLEDS = 0x0501;
inline constexpr TW_UINT16 MSG_ENABLEDS = 0x0502;
inline constexpr TW_UINT16 MSG_ENABLEDSUIONLY = 0x0503;
inline constexpr TW_UINT16 MSG_PROCESSEVENT = 0x0601;
inline constexpr TW_UINT16 MSG_ENDXFER = 0x0701;
inline constexpr TW_UINT16 MSG_STOPFEEDER = 0x0702;
inline constexpr TW_UINT16 MSG_CHANGEDIRECTORY = 0x0801;
inline constexpr TW_UINT16 MSG_CREATEDIRECTORY = 0x0802;
inline constexpr TW_UINT16 MSG_DELETE = 0x0803;
inline constexpr TW_UINT16 MSG_FORMATMEDIA = 0x0804;
inline constexpr TW_UINT16 MSG_GETCLOSE = 0x0805;
inline constexpr TW_UINT16 MSG_GETFIRSTFILE = 0x0806;
inline constexpr TW_UINT16 MSG_GETINFO = 0x0807;
inline constexpr TW_UINT16 MSG_GETNEXTFILE = 0x0808;
inline constexpr TW_UINT16 MSG_RENAME = 0x0809;
inline constexpr TW_UINT16 MSG_COPY = 0x080a;
inline constexpr TW_UINT16 MSG_AUTOMATICCAPTUREDIRECTORY = 0x080b;
inline constexpr TW_UINT16 MSG_PASSTHRU = 0x0901;
inline constexpr TW_UINT16 MSG_CUSTOMBASE = 0x8000;

// Results.
inline constexpr TW_UINT16 TWRC_SUCCESS = 0;
inline constexpr TW_UINT16 TWRC_FAILURE = 1;
inline constexpr TW_UINT16 TWRC_CHECKSTATUS = 2;
inline constexpr TW_UINT16 TWRC_CANCEL = 3;
inline constexpr TW_UINT16 TWRC_DSEVENT = 4;
inline constexpr TW_UINT16 TWRC_NOTDSEVENT = 5;
inline constexpr TW_UINT16 TWRC_XFERDONE = 6;
inline constexpr TW_UINT16 TWRC_ENDOFLIST = 7;
inline constexpr TW_UINT16 TWRC_INFONOTSUPPORTED = 8;
inline constexpr TW_UINT16 TWRC_DATANOTAVAILABLE = 9;
inline constexpr TW_UINT16 TWRC_CUSTOMBASE = 0x8000;

// Condition codes.
inline constexpr TW_UINT16 TWCC_SUCCESS = 0;
inline constexpr TW_UINT16 TWCC_BUMMER = 1;
inline constexpr TW_UINT16 TWCC_LOWMEMORY = 2;
inline constexpr TW_UINT16 TWCC_NODS = 3;
inline constexpr TW_UINT16 TWCC_MAXCONNECTIONS = 4;
inline constexpr TW_UINT16 TWCC_OPERATIONERROR = 5;
inline constexpr TW_UINT16 TWCC_BADCAP = 6;
inline constexpr TW_UINT16 TWCC_BADPROTOCOL = 9;
inline constexpr TW_UINT16 TWCC_BADVALUE = 10;
inline constexpr TW_UINT16 TWCC_SEQERROR = 11;
inline constexpr TW_UINT16 TWCC_BADDEST = 12;
inline constexpr TW_UINT16 TWCC_CAPUNSUPPORTED = 13;
inline constexpr TW_UINT16 TWCC_CAPBADOPERATION = 14;
inline constexpr TW_UINT16 TWCC_CAPSEQERROR = 15;
inline constexpr TW_UINT16 TWCC_DENIED = 16;
inline constexpr TW_UINT16 TWCC_FILEEXISTS = 17;
inline constexpr TW_UINT16 TWCC_FILENOTFOUND = 18;
inline constexpr TW_UINT16 TWCC_NOTEMPTY = 19;
inline constexpr TW_UINT16 TWCC_PAPERJAM = 20;
inline constexpr TW_UINT16 TWCC_PAPERDOUBLEFEED = 21;
inline constexpr TW_UINT16 TWCC_FILEWRITEERROR = 22;
inline constexpr TW_UINT16 TWCC_CHECKDEVICEONLINE = 23;
inline constexpr TW_UINT16 TWCC_CUSTOMBASE = 0x8000;

// Types of items.
inline constexpr TW_UINT16 TWTY_INT8 = 0;
inline constexpr TW_UINT16 TWTY_INT16 = 1;
inline constexpr TW_UINT16 TWTY_INT32 = 2;
inline constexpr TW_UINT16 TWTY_UINT8 = 3;
inline constexpr TW_UINT16 TWTY_UINT16 = 4;
inline constexpr TW_UINT16 TWTY_UINT32 = 5;
inline constexpr TW_UINT16 TWTY_BOOL = 6;
inline constexpr TW_UINT16 TWTY_FIX32 = 7;
inline constexpr TW_UINT16 TWTY_FRAME = 8;
inline constexpr TW_UINT16 TWTY_STR32 = 9;
inline constexpr TW_UINT16 TWTY_STR64 = 10;
inline constexpr TW_UINT16 TWTY_STR128 = 11;
inline constexpr TW_UINT16 TWTY_STR255 = 12;
inline constexpr TW_UINT16 TWTY_STR1024 = 13;
inline constexpr TW_UINT16 TWTY_UNI512 = 14;

// Containers, and values with a meaning of their own.
inline constexpr TW_UINT16 TWON_PROTOCOLMAJOR = 1;
inline constexpr TW_UINT16 TWON_ARRAY = 3;
inline constexpr TW_UINT16 TWON_ENUMERATION = 4;
inline constexpr TW_UINT16 TWON_ONEVALUE = 5;
inline constexpr TW_UINT16 TWON_RANGE = 6;
inline constexpr TW_UINT16 TWON_PROTOCOLMINOR = 9;
inline constexpr TW_UINT16 TWON_DSMCODEID = 63;
inline constexpr TW_UINT16 TWON_DONTCARE8 = 255;
inline constexpr TW_UINT16 TWON_DSMID = 461;
inline constexpr TW_UINT16 TWON_ICONID = 962;
inline constexpr TW_UINT16 TWON_DONTCARE16 = 0xffff;
inline constexpr TW_UINT32 TWON_DONTCARE32 = 0xffffffff;

// What MSG_QUERYSUPPORT answers, or-ed.
inline constexpr TW_UINT32 TWQC_GET = 1;
inline constexpr TW_UINT32 TWQC_SET = 2;
inline constexpr TW_UINT32 TWQC_GETDEFAULT = 4;
inline constexpr TW_UINT32 TWQC_GETCURRENT = 8;
inline constexpr TW_UINT32 TWQC_RESET = 16;

// Owner and kind of a TW_MEMORY, or-ed.
inline constexpr TW_UINT32 TWMF_APPOWNS = 1;
inline constexpr TW_UINT32 TWMF_DSMOWNS = 2;
inline constexpr TW_UINT32 TWMF_DSOWNS = 4;
inline constexpr TW_UINT32 TWMF_POINTER = 8;
inline constexpr TW_UINT32 TWMF_HANDLE = 16;

// ICAP_XFERMECH.
inline constexpr TW_UINT16 TWSX_NATIVE = 0;
inline constexpr TW_UINT16 TWSX_FILE = 1;
inline constexpr TW_UINT16 TWSX_MEMORY = 2;
inline constexpr TW_UINT16 TWSX_FILE2 = 3;

// ICAP_IMAGEFILEFORMAT.
inline constexpr TW_UINT16 TWFF_TIFF = 0;
inline constexpr TW_UINT16 TWFF_PICT = 1;
inline constexpr TW_UINT16 TWFF_BMP = 2;
inline constexpr TW_UINT16 TWFF_XBM = 3;
inline constexpr TW_UINT16 TWFF_JFIF = 4;
inline constexpr TW_UINT16 TWFF_FPX = 5;
inline constexpr TW_UINT16 TWFF_TIFFMULTI = 6;
inline constexpr TW_UINT16 TWFF_PNG = 7;
inline constexpr TW_UINT16 TWFF_SPIFF = 8;
inline constexpr TW_UINT16 TWFF_EXIF = 9;

// ICAP_PIXELTYPE.
inline constexpr TW_UINT16 TWPT_BW = 0;
inline constexpr TW_UINT16 TWPT_GRAY = 1;
inline constexpr TW_UINT16 TWPT_RGB = 2;
inline constexpr TW_UINT16 TWPT_PALETTE = 3;
inline constexpr TW_UINT16 TWPT_CMY = 4;
inline constexpr TW_UINT16 TWPT_CMYK = 5;
inline constexpr TW_UINT16 TWPT_YUV = 6;
inline constexpr TW_UINT16 TWPT_YUVK = 7;
inline constexpr TW_UINT16 TWPT_CIEXYZ = 8;

// ICAP_PLANARCHUNKY.
inline constexpr TW_UINT16 TWPC_CHUNKY = 0;
inline constexpr TW_UINT16 TWPC_PLANAR = 1;

// ICAP_PIXELFLAVOR.
inline constexpr TW_UINT16 TWPF_CHOCOLATE = 0;
inline constexpr TW_UINT16 TWPF_VANILLA = 1;

// ICAP_COMPRESSION.
inline constexpr TW_UINT16 TWCP_NONE = 0;
inline constexpr TW_UINT16 TWCP_PACKBITS = 1;
inline constexpr TW_UINT16 TWCP_GROUP31D = 2;
inline constexpr TW_UINT16 TWCP_GROUP31DEOL = 3;
inline constexpr TW_UINT16 TWCP_GROUP32D = 4;
inline constexpr TW_UINT16 TWCP_GROUP4 = 5;
inline constexpr TW_UINT16 TWCP_JPEG = 6;
inline constexpr TW_UINT16 TWCP_LZW = 7;
inline constexpr TW_UINT16 TWCP_JBIG = 8;
inline constexpr TW_UINT16 TWCP_PNG = 9;
inline constexpr TW_UINT16 TWCP_RLE4 = 10;
inline constexpr TW_UINT16 TWCP_RLE8 = 11;
inline constexpr TW_UINT16 TWCP_BITFIELDS = 12;

// ICAP_UNITS.
inline constexpr TW_UINT16 TWUN_INCHES = 0;
inline constexpr TW_UINT16 TWUN_CENTIMETERS = 1;
inline constexpr TW_UINT16 TWUN_PICAS = 2;
inline constexpr TW_UINT16 TWUN_POINTS = 3;
inline constexpr TW_UINT16 TWUN_TWIPS = 4;
inline constexpr TW_UINT16 TWUN_PIXELS = 5;

// ICAP_BITORDER.
inline constexpr TW_UINT16 TWBO_LSBFIRST = 0;
inline constexpr TW_UINT16 TWBO_MSBFIRST = 1;

// ICAP_LIGHTPATH.
inline constexpr TW_UINT16 TWLP_REFLECTIVE = 0;
inline constexpr TW_UINT16 TWLP_TRANSMISSIVE = 1;

// PaletteType of TW_PALETTE8.
inline constexpr TW_UINT16 TWPA_RGB = 0;
inline constexpr TW_UINT16 TWPA_GRAY = 1;
inline constexpr TW_UINT16 TWPA_CMY = 2;

// Language and country of an identity.
inline constexpr TW_UINT16 TWLG_ENGLISH_USA = 13;
inline constexpr TW_UINT16 TWLG_USA = 13;
inline constexpr TW_UINT16 TWCY_USA = 1;

// Capabilities. 1.9 withdrew those marked 1.8, but applications still ask for them.
inline constexpr TW_UINT16 CAP_XFERCOUNT = 1;
inline constexpr TW_UINT16 CAP_AUTHOR = 0x1000;
inline constexpr TW_UINT16 CAP_CAPTION = 0x1001;
inline constexpr TW_UINT16 CAP_FEEDERENABLED = 0x1002;
inline constexpr TW_UINT16 CAP_FEEDERLOADED = 0x1003;
inline constexpr TW_UINT16 CAP_TIMEDATE = 0x1004;
inline constexpr TW_UINT16 CAP_SUPPORTEDCAPS = 0x1005;
inline constexpr TW_UINT16 CAP_EXTENDEDCAPS = 0x1006;
inline constexpr TW_UINT16 CAP_AUTOFEED = 0x1007;
inline constexpr TW_UINT16 CAP_CLEARPAGE = 0x1008;
inline constexpr TW_UINT16 CAP_FEEDPAGE = 0x1009;
inline constexpr TW_UINT16 CAP_REWINDPAGE = 0x100a;
inline constexpr TW_UINT16 CAP_INDICATORS = 0x100b;
inline constexpr TW_UINT16 CAP_SUPPORTEDCAPSEXT = 0x100c;
inline constexpr TW_UINT16 CAP_PAPERDETECTABLE = 0x100d;
inline constexpr TW_UINT16 CAP_UICONTROLLABLE = 0x100e;
inline constexpr TW_UINT16 CAP_DEVICEONLINE = 0x100f;
inline constexpr TW_UINT16 CAP_AUTOSCAN = 0x1010;
inline constexpr TW_UINT16 CAP_THUMBNAILSENABLED = 0x1011;
inline constexpr TW_UINT16 CAP_DUPLEX = 0x1012;
inline constexpr TW_UINT16 CAP_DUPLEXENABLED = 0x1013;
inline constexpr TW_UINT16 CAP_ENABLEDSUIONLY = 0x1014;
inline constexpr TW_UINT16 CAP_CUSTOMDSDATA = 0x1015;
inline constexpr TW_UINT16 CAP_ENDORSER = 0x1016;
inline constexpr TW_UINT16 CAP_JOBCONTROL = 0x1017;
inline constexpr TW_UINT16 CAP_ALARMS = 0x1018;
inline constexpr TW_UINT16 CAP_ALARMVOLUME = 0x1019;
inline constexpr TW_UINT16 CAP_AUTOMATICCAPTURE = 0x101a;
inline constexpr TW_UINT16 CAP_TIMEBEFOREFIRSTCAPTURE = 0x101b;
inline constexpr TW_UINT16 CAP_TIMEBETWEENCAPTURES = 0x101c;
inline constexpr TW_UINT16 CAP_CLEARBUFFERS = 0x101d;
inline constexpr TW_UINT16 CAP_MAXBATCHBUFFERS = 0x101e;
inline constexpr TW_UINT16 CAP_DEVICETIMEDATE = 0x101f;
inline constexpr TW_UINT16 CAP_POWERSUPPLY = 0x1020;
inline constexpr TW_UINT16 CAP_CAMERAPREVIEWUI = 0x1021;
inline constexpr TW_UINT16 CAP_DEVICEEVENT = 0x1022;
inline constexpr TW_UINT16 CAP_PAGEMULTIPLEACQUIRE = 0x1023;  // 1.8
inline constexpr TW_UINT16 CAP_SERIALNUMBER = 0x1024;
inline constexpr TW_UINT16 CAP_FILESYSTEM = 0x1025;  // 1.8
inline constexpr TW_UINT16 CAP_PRINTER = 0x1026;
inline constexpr TW_UINT16 CAP_PRINTERENABLED = 0x1027;
inline constexpr TW_UINT16 CAP_PRINTERINDEX = 0x1028;
inline constexpr TW_UINT16 CAP_PRINTERMODE = 0x1029;
inline constexpr TW_UINT16 CAP_PRINTERSTRING = 0x102a;
inline constexpr TW_UINT16 CAP_PRINTERSUFFIX = 0x102b;
inline constexpr TW_UINT16 CAP_LANGUAGE = 0x102c;
inline constexpr TW_UINT16 CAP_FEEDERALIGNMENT = 0x102d;
inline constexpr TW_UINT16 CAP_FEEDERORDER = 0x102e;
inline constexpr TW_UINT16 CAP_PAPERBINDING = 0x102f;  // 1.8
inline constexpr TW_UINT16 CAP_REACQUIREALLOWED = 0x1030;
inline constexpr TW_UINT16 CAP_PASSTHRU = 0x1031;  // 1.8
inline constexpr TW_UINT16 CAP_BATTERYMINUTES = 0x1032;
inline constexpr TW_UINT16 CAP_BATTERYPERCENTAGE = 0x1033;
inline constexpr TW_UINT16 CAP_POWERDOWNTIME = 0x1034;  // 1.8
inline constexpr TW_UINT16 CAP_CUSTOMBASE = 0x8000;
inline constexpr TW_UINT16 ICAP_COMPRESSION = 0x0100;
inline constexpr TW_UINT16 ICAP_PIXELTYPE = 0x0101;
inline constexpr TW_UINT16 ICAP_UNITS = 0x0102;
inline constexpr TW_UINT16 ICAP_XFERMECH = 0x0103;
inline constexpr TW_UINT16 ICAP_AUTOBRIGHT = 0x1100;
inline constexpr TW_UINT16 ICAP_BRIGHTNESS = 0x1101;
inline constexpr TW_UINT16 ICAP_CONTRAST = 0x1103;
inline constexpr TW_UINT16 ICAP_CUSTHALFTONE = 0x1104;
inline constexpr TW_UINT16 ICAP_EXPOSURETIME = 0x1105;
inline constexpr TW_UINT16 ICAP_FILTER = 0x1106;
inline constexpr TW_UINT16 ICAP_FLASHUSED = 0x1107;
inline constexpr TW_UINT16 ICAP_GAMMA = 0x1108;
inline constexpr TW_UINT16 ICAP_HALFTONES = 0x1109;
inline constexpr TW_UINT16 ICAP_HIGHLIGHT = 0x110a;
inline constexpr TW_UINT16 ICAP_IMAGEFILEFORMAT = 0x110c;
inline constexpr TW_UINT16 ICAP_LAMPSTATE = 0x110d;
inline constexpr TW_UINT16 ICAP_LIGHTSOURCE = 0x110e;
inline constexpr TW_UINT16 ICAP_ORIENTATION = 0x1110;
inline constexpr TW_UINT16 ICAP_PHYSICALWIDTH = 0x1111;
inline constexpr TW_UINT16 ICAP_PHYSICALHEIGHT = 0x1112;
inline constexpr TW_UINT16 ICAP_SHADOW = 0x1113;
inline constexpr TW_UINT16 ICAP_FRAMES = 0x1114;
inline constexpr TW_UINT16 ICAP_XNATIVERESOLUTION = 0x1116;
inline constexpr TW_UINT16 ICAP_YNATIVERESOLUTION = 0x1117;
inline constexpr TW_UINT16 ICAP_XRESOLUTION = 0x1118;
inline constexpr TW_UINT16 ICAP_YRESOLUTION = 0x1119;
inline constexpr TW_UINT16 ICAP_MAXFRAMES = 0x111a;
inline constexpr TW_UINT16 ICAP_TILES = 0x111b;
inline constexpr TW_UINT16 ICAP_BITORDER = 0x111c;
inline constexpr TW_UINT16 ICAP_CCITTKFACTOR = 0x111d;
inline constexpr TW_UINT16 ICAP_LIGHTPATH = 0x111e;
inline constexpr TW_UINT16 ICAP_PIXELFLAVOR = 0x111f;
inline constexpr TW_UINT16 ICAP_PLANARCHUNKY = 0x1120;
inline constexpr TW_UINT16 ICAP_ROTATION = 0x1121;
inline constexpr TW_UINT16 ICAP_SUPPORTEDSIZES = 0x1122;
inline constexpr TW_UINT16 ICAP_THRESHOLD = 0x1123;
inline constexpr TW_UINT16 ICAP_XSCALING = 0x1124;
inline constexpr TW_UINT16 ICAP_YSCALING = 0x1125;
inline constexpr TW_UINT16 ICAP_BITORDERCODES = 0x1126;
inline constexpr TW_UINT16 ICAP_PIXELFLAVORCODES = 0x1127;
inline constexpr TW_UINT16 ICAP_JPEGPIXELTYPE = 0x1128;
inline constexpr TW_UINT16 ICAP_TIMEFILL = 0x112a;
inline constexpr TW_UINT16 ICAP_BITDEPTH = 0x112b;
inline constexpr TW_UINT16 ICAP_BITDEPTHREDUCTION = 0x112c;
inline constexpr TW_UINT16 ICAP_UNDEFINEDIMAGESIZE = 0x112d;
inline constexpr TW_UINT16 ICAP_IMAGEDATASET = 0x112e;
inline constexpr TW_UINT16 ICAP_EXTIMAGEINFO = 0x112f;
inline constexpr TW_UINT16 ICAP_MINIMUMHEIGHT = 0x1130;
inline constexpr TW_UINT16 ICAP_MINIMUMWIDTH = 0x1131;
inline constexpr TW_UINT16 ICAP_AUTODISCARDBLANKPAGES = 0x1134;  // 1.8
inline constexpr TW_UINT16 ICAP_FLIPROTATION = 0x1136;
inline constexpr TW_UINT16 ICAP_BARCODEDETECTIONENABLED = 0x1137;
inline constexpr TW_UINT16 ICAP_SUPPORTEDBARCODETYPES = 0x1138;
inline constexpr TW_UINT16 ICAP_BARCODEMAXSEARCHPRIORITIES = 0x1139;
inline constexpr TW_UINT16 ICAP_BARCODESEARCHPRIORITIES = 0x113a;
inline constexpr TW_UINT16 ICAP_BARCODESEARCHMODE = 0x113b;
inline constexpr TW_UINT16 ICAP_BARCODEMAXRETRIES = 0x113c;
inline constexpr TW_UINT16 ICAP_BARCODETIMEOUT = 0x113d;
inline constexpr TW_UINT16 ICAP_ZOOMFACTOR = 0x113e;
inline constexpr TW_UINT16 ICAP_PATCHCODEDETECTIONENABLED = 0x113f;
inline constexpr TW_UINT16 ICAP_SUPPORTEDPATCHCODETYPES = 0x1140;
inline constexpr TW_UINT16 ICAP_PATCHCODEMAXSEARCHPRIORITIES = 0x1141;
inline constexpr TW_UINT16 ICAP_PATCHCODESEARCHPRIORITIES = 0x1142;
inline constexpr TW_UINT16 ICAP_PATCHCODESEARCHMODE = 0x1143;
inline constexpr TW_UINT16 ICAP_PATCHCODEMAXRETRIES = 0x1144;
inline constexpr TW_UINT16 ICAP_PATCHCODETIMEOUT = 0x1145;
inline constexpr TW_UINT16 ICAP_FLASHUSED2 = 0x1146;
inline constexpr TW_UINT16 ICAP_IMAGEFILTER = 0x1147;
inline constexpr TW_UINT16 ICAP_NOISEFILTER = 0x1148;
inline constexpr TW_UINT16 ICAP_OVERSCAN = 0x1149;
inline constexpr TW_UINT16 ICAP_AUTOMATICBORDERDETECTION = 0x1150;
inline constexpr TW_UINT16 ICAP_AUTOMATICDESKEW = 0x1151;
inline constexpr TW_UINT16 ICAP_AUTOMATICROTATE = 0x1152;
inline constexpr TW_UINT16 ICAP_JPEGQUALITY = 0x1153;
inline constexpr TW_UINT16 ACAP_AUDIOFILEFORMAT = 0x1201;
inline constexpr TW_UINT16 ACAP_XFERMECH = 0x1202;

}  // namespace zyr
