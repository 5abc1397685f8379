#include "twain/capabilities/capability_set.h"

#include <array>
#include <bit>
#include <optional>

#include "tests/twain/capability_fixture.h"

namespace zyr {
namespace {

namespace host = platform::host;
using test::EnumerationBytes;
using test::OneValueBytes;
using test::Raw;
using Lines = std::vector<std::string>;

class CapabilitiesTest : public test::CapabilityTest {
 protected:
  void SetUnits(TW_UINT16 units) {
    ASSERT_EQ(SetOne(ICAP_UNITS, TWTY_UINT16, units), TWCC_SUCCESS);
  }
};

struct Offered {
  TW_UINT16 id;
  bool writable;
  std::string get;
  std::string getDefault;
  std::string getCurrent;  // and what Reset answers
};

// In the order of CAP_SUPPORTEDCAPS.
std::vector<Offered> WhatIsOffered() {
  const std::string boolean = "OneValue BOOL -, 6 bytes";
  const auto number = [](int value) { return FormatText("OneValue UINT16 %d, 8 bytes", value); };
  const auto same = [](TW_UINT16 id, bool writable, const std::string& text) {
    return Offered{id, writable, text, text, text};
  };
  const std::string all =
      "Array UINT16 4101 4098 4383 259 4384 256 4369 4370 258 4111 4103 4099 4395 257 4380 4376 "
      "4377 1 4364 4107 4110 4365 4382 4096, 55 bytes";
  const std::string resolutions =
      "Enumeration FIX32 100.0000 200.0000 300.0000 400.0000 500.0000 600.0000 700.0000 800.0000 "
      "900.0000 1000.0000, current #2, default #2, 55 bytes";
  return {
      same(CAP_SUPPORTEDCAPS, false, all),
      same(CAP_FEEDERENABLED, true, boolean),
      same(ICAP_PIXELFLAVOR, true, number(0)),
      {ICAP_XFERMECH, true, "Enumeration UINT16 0 1 2, current #2, default #2, 21 bytes", number(2),
       number(2)},
      {ICAP_PLANARCHUNKY, true, "Enumeration UINT16 0, current #0, default #0, 17 bytes", number(0),
       number(0)},
      {ICAP_COMPRESSION, true, "Enumeration UINT16 0, current #0, default #0, 17 bytes", number(0),
       number(0)},
      same(ICAP_PHYSICALWIDTH, false, "OneValue FIX32 8.0000, 10 bytes"),
      same(ICAP_PHYSICALHEIGHT, false, "OneValue FIX32 11.0000, 10 bytes"),
      {ICAP_UNITS, true, "Enumeration UINT16 0 1 5, current #0, default #0, 21 bytes", number(0),
       number(0)},
      same(CAP_DEVICEONLINE, false, boolean),
      same(CAP_AUTOFEED, true, boolean),
      same(CAP_FEEDERLOADED, false, boolean),
      {ICAP_BITDEPTH, true, "Enumeration UINT16 8 16, current #0, default #0, 19 bytes", number(8),
       number(8)},
      {ICAP_PIXELTYPE, true, "Enumeration UINT16 1 2, current #0, default #0, 19 bytes", number(1),
       number(1)},
      same(ICAP_BITORDER, true, number(1)),
      {ICAP_XRESOLUTION, true, resolutions, number(0), number(0)},
      {ICAP_YRESOLUTION, true, resolutions, number(0), number(0)},
      same(CAP_XFERCOUNT, true, "OneValue INT16 -1, 8 bytes"),
      {ICAP_IMAGEFILEFORMAT, true, "Enumeration UINT16 0 2 4, current #1, default #1, 21 bytes",
       number(2), number(2)},
      same(CAP_INDICATORS, true, boolean),
      same(CAP_UICONTROLLABLE, false, boolean),
      same(ICAP_LAMPSTATE, true, boolean),
      same(ICAP_LIGHTPATH, true, number(0)),
      same(CAP_AUTHOR, true, "OneValue STR128 Korvida, Inc., 40 bytes"),
  };
}

TEST_F(CapabilitiesTest, AnswersEachQuestionAboutEachCapability) {
  const std::vector<Offered> offered = WhatIsOffered();
  EXPECT_EQ(offered.size(), 24u);
  for (const Offered& c : offered) {
    SCOPED_TRACE(CapabilityName(c.id));
    EXPECT_EQ(Ask(MSG_GET, c.id), c.get);
    EXPECT_EQ(Ask(MSG_GETDEFAULT, c.id), c.getDefault);
    EXPECT_EQ(Ask(MSG_GETCURRENT, c.id), c.getCurrent);
    EXPECT_EQ(Ask(MSG_QUERYSUPPORT, c.id),
              FormatText("OneValue UINT32 %d, 10 bytes", c.writable ? 31 : 13));
    EXPECT_EQ(Ask(MSG_RESET, c.id), c.writable ? c.getCurrent : "TWCC_CAPBADOPERATION");
    if (!c.writable) {
      for (const TW_UINT16 type : {TWTY_BOOL, TWTY_UINT16, TWTY_FIX32}) {
        EXPECT_EQ(SetOne(c.id, type, 1), TWCC_CAPBADOPERATION);
      }
    }
  }
}

TEST_F(CapabilitiesTest, GivesNothingWithoutMemory) {
  for (const Offered& c : WhatIsOffered()) {
    for (const TW_UINT16 message : {MSG_GET, MSG_GETDEFAULT, MSG_GETCURRENT, MSG_QUERYSUPPORT}) {
      host::FailNextAllocations(1);
      EXPECT_EQ(Ask(message, c.id), "TWCC_LOWMEMORY") << CapabilityName(c.id);
    }
  }
}

struct Setting {
  TW_UINT16 id;
  std::string block;  // a OneValue, or an enumeration if it lists several
  TW_UINT16 conType;
  std::optional<std::string> described;  // nothing: refused with TWCC_BADVALUE
};

Setting One(TW_UINT16 id, TW_UINT16 type, double value, std::optional<std::string> described) {
  return {id, OneValueBytes(type, value), TWON_ONEVALUE, described};
}

Setting List(TW_UINT16 id, TW_UINT16 type, const std::vector<double>& items,
             std::optional<std::string> described) {
  return {id, EnumerationBytes(type, items), TWON_ENUMERATION, described};
}

TEST_F(CapabilitiesTest, SetsWhatItAcceptsAndKeepsTheRestAsItWas) {
  const auto none = std::nullopt;
  const Setting settings[] = {
      One(CAP_FEEDERENABLED, TWTY_BOOL, 1, none),
      One(ICAP_PIXELFLAVOR, TWTY_UINT16, 1, "Vanilla"),
      One(ICAP_PIXELFLAVOR, TWTY_INT16, 7, "<Unknown (7)>"),
      One(ICAP_PIXELFLAVOR, TWTY_BOOL, 1, none),
      One(ICAP_XFERMECH, TWTY_UINT16, 1, "File"),
      One(ICAP_XFERMECH, TWTY_UINT16, 3, none),
      One(ICAP_XFERMECH, TWTY_BOOL, 1, none),
      List(ICAP_XFERMECH, TWTY_UINT16, {0, 1}, "Native"),
      List(ICAP_XFERMECH, TWTY_UINT16, {1, 2}, "Memory"),
      {ICAP_XFERMECH, EnumerationBytes(TWTY_UINT16, {0}, 99, 99), TWON_ENUMERATION, "Native"},
      List(ICAP_XFERMECH, TWTY_INT16, {3, 9, 1, 0}, "File"),
      List(ICAP_XFERMECH, TWTY_UINT16, {3}, none),
      One(ICAP_PLANARCHUNKY, TWTY_UINT16, 1, none),
      One(ICAP_COMPRESSION, TWTY_UINT16, 6, none),
      One(ICAP_UNITS, TWTY_UINT16, 5, "Pixels"),
      One(ICAP_UNITS, TWTY_UINT16, 3, none),
      List(ICAP_UNITS, TWTY_UINT16, {2, 1, 0}, "Centimeters"),
      List(ICAP_UNITS, TWTY_INT16, {3, 0, 1}, "Inches"),  // as the resolutions below need
      List(ICAP_BITDEPTH, TWTY_UINT16, {8}, "Grayscale (8) / RGB (8)"),
      List(ICAP_BITDEPTH, TWTY_UINT16, {4, 8, 16}, "Grayscale (16) / RGB (8)"),
      One(ICAP_BITDEPTH, TWTY_UINT16, 8, "Grayscale (8) / RGB (8)"),
      List(ICAP_BITDEPTH, TWTY_UINT16, {16, 8}, "Grayscale (16) / RGB (8)"),
      One(ICAP_BITDEPTH, TWTY_UINT16, 12, none),
      One(ICAP_BITDEPTH, TWTY_UINT16, 0, none),  // stands in the unused places of the list
      List(ICAP_BITDEPTH, TWTY_UINT16, {1, 0}, none),
      List(ICAP_PIXELTYPE, TWTY_UINT16, {0, 2, 1}, "RGB"),
      One(ICAP_BITORDER, TWTY_UINT16, 0, "LSB"),
      One(ICAP_XRESOLUTION, TWTY_FIX32, 400, "400.00"),
      One(ICAP_XRESOLUTION, TWTY_FIX32, 350, none),
      One(ICAP_XRESOLUTION, TWTY_UINT16, 400, none),
      List(ICAP_YRESOLUTION, TWTY_FIX32, {350, 1000, 100}, "1000.00"),
      List(ICAP_YRESOLUTION, TWTY_FIX32, {350}, none),
      One(CAP_XFERCOUNT, TWTY_INT16, -5, "-5"),
      One(CAP_XFERCOUNT, TWTY_UINT16, 0, "0"),
      One(ICAP_IMAGEFILEFORMAT, TWTY_UINT16, 4, "JFIF"),
      List(ICAP_IMAGEFILEFORMAT, TWTY_UINT16, {7, 0}, "TIFF"),
      One(CAP_INDICATORS, TWTY_BOOL, 0, "FALSE"),
      One(CAP_INDICATORS, TWTY_UINT16, 1, none),
      One(ICAP_LAMPSTATE, TWTY_BOOL, 1, "Off"),
      One(ICAP_LIGHTPATH, TWTY_UINT16, 1, "Transmissive"),
      One(CAP_AUTHOR, TWTY_UINT16, 1, none),
  };
  for (const Setting& c : settings) {
    SCOPED_TRACE(CapabilityName(c.id) + " " + c.described.value_or("refused"));
    const std::string before = Described(c.id);
    EXPECT_EQ(Set(c.id, c.conType, c.block), c.described ? TWCC_SUCCESS : TWCC_BADVALUE);
    EXPECT_EQ(Described(c.id), c.described.value_or(before));
  }
  EXPECT_EQ(Ask(MSG_GET, ICAP_IMAGEFILEFORMAT),
            "Enumeration UINT16 0 2 4, current #0, default #1, 21 bytes")
      << "a list does not narrow the own one";
  EXPECT_EQ(Ask(MSG_GETDEFAULT, CAP_XFERCOUNT), "OneValue INT16 -1, 8 bytes");

  // And all of it comes back.
  for (const Offered& c : WhatIsOffered()) {
    if (!c.writable) continue;
    EXPECT_EQ(Ask(MSG_RESET, c.id), c.getCurrent) << CapabilityName(c.id);
  }
  for (const Offered& c : WhatIsOffered()) EXPECT_EQ(Ask(MSG_GET, c.id), c.get);
  EXPECT_EQ(Described(CAP_INDICATORS), "TRUE");
  EXPECT_EQ(Described(ICAP_LAMPSTATE), "On");
}

TEST_F(CapabilitiesTest, RefusesHostileContainersEverywhere) {
  for (const Offered& c : WhatIsOffered()) {
    // These two answer before they look.
    if (!c.writable || c.id == CAP_FEEDERENABLED || c.id == CAP_AUTOFEED) continue;
    SCOPED_TRACE(CapabilityName(c.id));
    const std::string before = Described(c.id);
    const bool takesLists = c.get.find("Enumeration") == 0;
    for (TW_UINT16 conType = 0; conType <= TWON_RANGE + 1; ++conType) {
      TW_CAPABILITY capability{c.id, conType, nullptr};
      EXPECT_EQ(Send(MSG_SET, &capability), TWRC_FAILURE);
      const bool looks = conType == TWON_ONEVALUE || (takesLists && conType == TWON_ENUMERATION);
      EXPECT_EQ(code_, looks ? TWCC_LOWMEMORY : TWCC_BADVALUE) << conType;
    }
    for (const TW_UINT16 type : {TWTY_BOOL, TWTY_UINT16, TWTY_FIX32, TWTY_STR32}) {
      EXPECT_EQ(Set(c.id, TWON_ONEVALUE, Raw(type) + "x"), TWCC_BADVALUE);
      EXPECT_EQ(Set(c.id, TWON_ARRAY, EnumerationBytes(type, {1})), TWCC_BADVALUE);
      std::string endless = EnumerationBytes(type, {0, 1, 8, 100});
      endless.replace(2, 4, 4, '\xff');
      EXPECT_EQ(Set(c.id, TWON_ENUMERATION, endless), TWCC_BADVALUE);
    }
    EXPECT_EQ(Described(c.id), before);
  }
}

TEST_F(CapabilitiesTest, FeedersTakeValuesOnlyWhereThereIsOne) {
  EXPECT_EQ(SetOne(CAP_AUTOFEED, TWTY_BOOL, 1), TWCC_CAPUNSUPPORTED);
  store_.Find<FeederEnabledCapability>(CAP_FEEDERENABLED)->feederAvailable = 1;
  EXPECT_EQ(SetOne(CAP_FEEDERENABLED, TWTY_UINT16, 1), TWCC_BADVALUE);
  EXPECT_EQ(SetOne(CAP_FEEDERENABLED, TWTY_BOOL, 1), TWCC_SUCCESS);
  EXPECT_EQ(SetOne(CAP_AUTOFEED, TWTY_BOOL, 1), TWCC_SUCCESS);
  EXPECT_EQ(Described(CAP_AUTOFEED), "Enabled");
  store_.RemoveCapability(CAP_FEEDERENABLED);
  EXPECT_EQ(SetOne(CAP_AUTOFEED, TWTY_BOOL, 0), TWCC_CAPUNSUPPORTED);
}

TEST_F(CapabilitiesTest, TheAuthorIsAText) {
  const std::string name(40, 'n');
  const bool addressFitsItem = sizeof(void*) == 4;
  const std::string item =
      addressFitsItem ? Raw(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(name.c_str())))
                      : name + '\0';
  EXPECT_EQ(Set(CAP_AUTHOR, TWON_ONEVALUE, Raw(TWTY_STR64) + item), TWCC_SUCCESS);
  EXPECT_EQ(Described(CAP_AUTHOR), name);
  EXPECT_EQ(Ask(MSG_GET, CAP_AUTHOR), "OneValue STR128 " + name.substr(0, 34) + ", 40 bytes")
      << "34 bytes whatever its type";
  EXPECT_EQ(Ask(MSG_RESET, CAP_AUTHOR), "OneValue STR128 Korvida, Inc., 40 bytes");
}

TEST_F(CapabilitiesTest, SizesAndResolutionsGoByTheUnits) {
  SetUnits(TWUN_CENTIMETERS);
  EXPECT_EQ(Ask(MSG_GET, ICAP_PHYSICALWIDTH), "OneValue FIX32 20.3200, 10 bytes");
  EXPECT_EQ(Ask(MSG_GETDEFAULT, ICAP_PHYSICALHEIGHT), "OneValue FIX32 27.9400, 10 bytes");
  const std::string centimeters = Ask(MSG_GET, ICAP_XRESOLUTION);
  EXPECT_EQ(centimeters.find("Enumeration FIX32 39.3701 78.7402 118.1102 "), 0u) << centimeters;
  EXPECT_NE(centimeters.find("current #2, default #2"), std::string::npos) << centimeters;
  const auto lowest = static_cast<uint16_t>(std::bit_cast<uint64_t>(300 * 0.39370078740157477));
  EXPECT_NE(lowest, 0);
  EXPECT_EQ(Ask(MSG_GETCURRENT, ICAP_XRESOLUTION),
            FormatText("OneValue UINT16 %d, 8 bytes", lowest));
  EXPECT_EQ(store_.Find<UnitsCapability>(ICAP_UNITS)->ResolutionFromUnits(100), 254);
  // None of the numbers that are offered comes back to a member exactly.
  EXPECT_EQ(SetList(ICAP_XRESOLUTION, TWTY_FIX32, {39.3701, 78.7402, 118.1102}), TWCC_BADVALUE);
  EXPECT_EQ(Described(ICAP_XRESOLUTION), "300.00");

  SetUnits(TWUN_PIXELS);
  EXPECT_EQ(Ask(MSG_GET, ICAP_PHYSICALWIDTH), "OneValue FIX32 800.0000, 10 bytes");
  const std::string pixels = Ask(MSG_GET, ICAP_YRESOLUTION);
  EXPECT_EQ(pixels.find("Enumeration FIX32 1.0000 1.0000"), 0u) << pixels;
  EXPECT_NE(pixels.find("current #0, default #0"), std::string::npos) << pixels;
  EXPECT_EQ(SetList(ICAP_YRESOLUTION, TWTY_FIX32, {300, 1}), TWCC_BADVALUE);

  store_.RemoveCapability(ICAP_UNITS);
  EXPECT_EQ(Ask(MSG_GET, ICAP_PHYSICALWIDTH), "OneValue FIX32 8.0000, 10 bytes");
  EXPECT_EQ(SetOne(ICAP_YRESOLUTION, TWTY_FIX32, 500), TWCC_SUCCESS);
}

TEST_F(CapabilitiesTest, DepthsFollowThePixelTypes) {
  // RGB is offered at first.
  EXPECT_EQ(SetOne(ICAP_PIXELTYPE, TWTY_UINT16, TWPT_RGB), TWCC_SUCCESS);
  EXPECT_EQ(Ask(MSG_GET, ICAP_BITDEPTH), "Enumeration UINT16 8, current #0, default #0, 17 bytes");
  EXPECT_EQ(SetOne(ICAP_BITDEPTH, TWTY_UINT16, 16), TWCC_BADVALUE);
  store_.Find<ListCapability>(ICAP_PIXELTYPE)->SetOnly(TWPT_GRAY);
  EXPECT_EQ(SetOne(ICAP_PIXELTYPE, TWTY_UINT16, TWPT_RGB), TWCC_BADVALUE);
  EXPECT_EQ(Ask(MSG_RESET, ICAP_PIXELTYPE), "OneValue UINT16 1, 8 bytes");
  EXPECT_EQ(Ask(MSG_GET, ICAP_PIXELTYPE), "Enumeration UINT16 1, current #0, default #0, 17 bytes");

  EXPECT_EQ(SetOne(ICAP_BITDEPTH, TWTY_UINT16, 16), TWCC_SUCCESS);
  EXPECT_EQ(Described(ICAP_BITDEPTH), "Grayscale (16)") << "no RGB any more";
  EXPECT_EQ(Ask(MSG_GETDEFAULT, ICAP_BITDEPTH), "OneValue UINT16 8, 8 bytes");
  EXPECT_EQ(Ask(MSG_GET, ICAP_BITDEPTH),
            "Enumeration UINT16 8 16, current #1, default #0, 19 bytes");
  EXPECT_EQ(Ask(MSG_RESET, ICAP_BITDEPTH), "OneValue UINT16 8, 8 bytes");
  EXPECT_EQ(Described(ICAP_BITDEPTH), "Grayscale (8) / RGB (8)") << "back until the next operation";
  Ask(MSG_GETCURRENT, ICAP_BITDEPTH);
  EXPECT_EQ(Described(ICAP_BITDEPTH), "Grayscale (8)");

  auto* depths = store_.Find<BitDepthCapability>(ICAP_BITDEPTH);
  std::array<uint16_t, 8> bits{9, 9};
  depths->GetBitsPerSample(TWPT_RGB, &bits);
  EXPECT_EQ(bits[1], 9) << "as it was";
  depths->FillEntries();
  EXPECT_EQ(depths->GetBitsPerPixel(TWPT_RGB), 24);
  EXPECT_EQ(depths->GetSamplesPerPixel(TWPT_RGB), 3);
  depths->GetBitsPerSample(TWPT_RGB, &bits);
  EXPECT_EQ(bits, (std::array<uint16_t, 8>{8, 8, 8}));
  depths->KeepPixelType(TWPT_RGB);
  EXPECT_EQ(Ask(MSG_GET, ICAP_BITDEPTH), "TWCC_BADVALUE");
  EXPECT_EQ(Described(ICAP_BITDEPTH), "None");
}

TEST_F(CapabilitiesTest, DepthsNeedThePixelType) {
  store_.RemoveCapability(ICAP_PIXELTYPE);
  StartTrace();
  for (const TW_UINT16 message : {MSG_GET, MSG_GETDEFAULT, MSG_GETCURRENT, MSG_RESET}) {
    EXPECT_EQ(Ask(message, ICAP_BITDEPTH), "TWCC_BADVALUE");
  }
  Trace();
  EXPECT_EQ(SetOne(ICAP_BITDEPTH, TWTY_UINT16, 8), TWCC_BADVALUE);
  EXPECT_EQ(
      Trace(),
      (Lines{"HandleCapMessage: ICAP_BITDEPTH  MSG_SET", "   Container Type: OneValue",
             "      Could not find ICAP_PIXELTYPE capability",
             "      Could not find the current pixel depth", "     TWRC_FAILURE / TWCC_BADVALUE"}));
}

TEST_F(CapabilitiesTest, TracesWhatIsOfferedAndChosen) {
  StartTrace();
  // The lines between those that every message has.
  const auto traced = [&] {
    Lines lines = Trace();
    EXPECT_GE(lines.size(), 3u);
    return Lines(lines.begin() + 1, lines.end() - 1);
  };
  Ask(MSG_GET, ICAP_XFERMECH);
  EXPECT_EQ(traced(), Lines{"Returning XFERMECH: Memory"});
  SetList(ICAP_XFERMECH, TWTY_UINT16, {0, 3, 2});
  EXPECT_EQ(traced(), (Lines{"   Container Type: Enumeration", "           1: Native",
                             "           2: Enumeration", "           3: Memory",
                             "   Value Set To: Memory"}));
  SetList(ICAP_PIXELTYPE, TWTY_UINT16, {5, 1});
  EXPECT_EQ(traced(), (Lines{"   Container Type: Enumeration", "           1: CMYK",
                             "           2: Grayscale", "      Pixel type selected: Grayscale",
                             "   Value Set To: Grayscale"}));
  SetList(ICAP_XRESOLUTION, TWTY_FIX32, {300 + 1.0 / 65536.0, 300, 200});
  EXPECT_EQ(traced(), (Lines{"   Container Type: Enumeration", "           1: 268435456",
                             "           2: 0", "           3: 0", "   Value Set To: 300.00"}))
      << "the low half of the double";
  SetList(ICAP_YRESOLUTION, TWTY_FIX32, {350.5, 200});
  EXPECT_EQ(traced(), (Lines{"   Container Type: Enumeration", "           1: 350.500000",
                             "           2: 200.000000", "   Value Set To: 200.00"}));
  SetList(ICAP_BITDEPTH, TWTY_UINT16, {8, 16});
  EXPECT_EQ(traced(), (Lines{"   Container Type: Enumeration", "      Current bit depth: Grayscale",
                             "           1: Grayscale 8", "           2: Grayscale 16",
                             "      Preferred Bit depth selected: Grayscale 16",
                             "   Value Set To: Grayscale (16) / RGB (8)"}));
  SetList(ICAP_BITDEPTH, TWTY_UINT16, {4, 8});
  EXPECT_EQ(traced(), (Lines{"   Container Type: Enumeration", "      Current bit depth: Grayscale",
                             "           1: Grayscale 4", "           2: Grayscale 8",
                             "      Bit depth selected: Grayscale 8",
                             "   Value Set To: Grayscale (8) / RGB (8)"}));
  SetOne(ICAP_BITDEPTH, TWTY_UINT16, 12);
  EXPECT_EQ(traced(), (Lines{"   Container Type: OneValue", "      Current bit depth: Grayscale",
                             "      Bit depth specified: Grayscale 12"}));
}

}  // namespace
}  // namespace zyr
