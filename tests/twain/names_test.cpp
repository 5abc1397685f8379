#include "twain/names.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "foundation/support/phrase_lookup.h"
#include "twain/twain_types.h"

namespace zyr {
namespace {

// Mostly the last of each table, where a row too few or too many before it shows. The words of the
// short tables stand in the tests of their capabilities.
TEST(NamesTest, NamesKnownNumbersAndTellsTheOthers) {
  const struct {
    std::string (*name)(uint32_t);
    uint32_t value;
    const char* text;
  } cases[] = {{DataGroupName, 3, "<Unknown (3)>"},
               {DataArgumentTypeName, 0x0203, "DAT_AUDIONATIVEXFER"},
               {DataArgumentTypeName, 0x0301, "<Unknown (769)>"},
               {MessageName, 0x0502, "MSG_ENABLEDS"},
               {MessageName, 0x0702, "<Unknown (1794)>"},  // the standard's, but not the trace's
               {ResultName, 10, "<Unknown (10)>"},
               {ConditionCodeName, 8, "<Unknown (8)>"},
               {CapabilityName, 1, "CAP_XFERCOUNT"},
               {CapabilityName, 0x1034, "CAP_POWERDOWNTIME"},
               {CapabilityName, 0x1153, "<Unknown (4435)>"},
               {CapabilityName, 0x1202, "ACAP_XFERMECH"},
               {BooleanName, 2, "<Unknown (2)>"},
               {XferMechName, 3, "Enumeration"},
               {XferMechName, 0xffffffff, "Enumeration"},
               {PlanarChunkyName, 1, "Planar"},
               {CompressionName, 12, "BITFIELDS"},
               {CompressionName, 13, "<Unknown (13)>"},
               {UnitsName, 5, "Pixels"},
               {PixelTypeName, 8, "CIEXYZ"},
               {BitOrderName, 1, "MSB"},
               {ImageFileFormatName, 9, "EXIF"},
               {ContainerTypeName, 2, "<Unknown (2)>"},
               {ContainerTypeName, 6, "Range"}};
  for (const auto& c : cases) EXPECT_EQ(c.name(c.value), c.text);
}

TEST(NamesTest, KnowsAsManyConstantsAsTheTraceWritesByName) {
  const struct {
    std::string (*name)(uint32_t);
    int count;
  } tables[] = {{DataGroupName, 3},    {DataArgumentTypeName, 30}, {MessageName, 35},
                {ResultName, 10},      {ConditionCodeName, 22},    {CapabilityName, 129},
                {ContainerTypeName, 4}};
  for (const auto& table : tables) {
    int known = table.name(0x8000).front() != '<';
    for (uint32_t value = 0; value <= 0x1300; ++value) known += table.name(value).front() != '<';
    EXPECT_EQ(known, table.count);
  }
}

TEST(NamesTest, TranslatesWordsAndNotConstants) {
  SetPhraseLookup([](const char* text) -> std::string {
    if (std::strcmp(text, "<Unknown (%lu)>") == 0) return "<Unbekannt (%lu)>";
    return std::string("~") + text;
  });
  EXPECT_EQ(MessageName(MSG_GET), "MSG_GET");
  EXPECT_EQ(MessageName(99), "<Unbekannt (99)>");
  EXPECT_EQ(UnitsName(TWUN_PIXELS), "~Pixels");
  EXPECT_EQ(XferMechName(77), "~Enumeration");
  EXPECT_EQ(ContainerTypeName(TWON_RANGE), "~Range");
  // A translation that takes other arguments must not reach the formatter.
  SetPhraseLookup([](const char*) -> std::string { return "%s%s%n"; });
  EXPECT_EQ(MessageName(99), "<Unknown (99)>");
  SetPhraseLookup(nullptr);
}

TEST(NamesTest, HasASentenceForEachConditionCode) {
  EXPECT_STREQ(ConditionCodeSentence(9), "Bad protocol error.");
  EXPECT_STREQ(ConditionCodeSentence(23),
               "The device went offline prior to or during this operation.");
  for (const uint32_t unknown : {7u, 8u, 24u, 0xffffffffu}) {
    EXPECT_STREQ(ConditionCodeSentence(unknown), "Unknown Error value in condition code.");
  }
}

}  // namespace
}  // namespace zyr
