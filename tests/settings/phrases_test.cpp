#include "settings/phrases.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "foundation/support/error.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/host/host.h"
#include "settings/directories.h"
#include "tests/support/phrase_witness.h"

namespace zyr {
namespace {

namespace host = platform::host;
using namespace std::string_literals;

constexpr char kPath[] = "C:\\test.Phrases";

class PhrasesTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override { EXPECT_EQ(host::CountsOfFiles().openHandles, 0); }

  bool Load(const std::string& bytes) {
    host::PutFile(kPath, bytes);
    return table_.Load(kPath);
  }

  PhraseTable table_;
};

TEST_F(PhrasesTest, ReadsAPhraseFile) {
  ASSERT_TRUE(
      Load("  Deutsch (Deutschland)\r\n"
           " ; \"Cancel\" = comment\r\n"
           "\r\n"
           "\"Cancel\" = \"Verwerfen\"\r\n"
           "  \t\"OK\"\"In Ordnung\"  \"ignored\"; too\r\n"
           "stray \"two\\nlines\" \\n= \"zwei\\nZeilen\\\\n\"\r\n"
           "\"Cancel\" = \"Abbrechen\"\r\n"
           "\"\" = \"empty\"\r\n"
           "\"Last\" = \"Letzte\""));
  EXPECT_EQ(table_.languageName(), "Deutsch");
  EXPECT_EQ(table_.fileName(), kPath);
  EXPECT_TRUE(table_.IsActive());
  EXPECT_EQ(table_.Translate("Cancel"), "Abbrechen");
  EXPECT_EQ(table_.Translate("cancel"), "cancel");
  EXPECT_EQ(table_.Translate("OK"), "In Ordnung");
  EXPECT_EQ(table_.Translate("two\nlines"), "zwei\nZeilen\\\n");
  EXPECT_EQ(table_.Translate("Last"), "Letzte");
  EXPECT_EQ(table_.Translate(""), "");
  EXPECT_EQ(table_.Translate(nullptr), "");

  EXPECT_TRUE(table_.Load(""));
  EXPECT_FALSE(table_.IsActive());
  EXPECT_EQ(table_.languageName(), "American_English");
  EXPECT_EQ(table_.fileName(), "");
  EXPECT_EQ(table_.Translate("Cancel"), "Cancel");
}

TEST_F(PhrasesTest, ATornOrHostileFileCountsUpToTheTornLine) {
  for (const std::string& torn : {"\"b\" = \"2\n"s, "\"b\"\n"s, "no quotes\n"s, "\"\n"s, "\0\n"s}) {
    ASSERT_TRUE(Load(" \n\"a\" = \"1\"\n" + torn + "\"c\" = \"3\"\n"));
    EXPECT_EQ(table_.languageName(), "American_English");  // the first line has no word
    EXPECT_EQ(table_.Translate("a"), "1");
    EXPECT_EQ(table_.Translate("b"), "b");
    EXPECT_EQ(table_.Translate("c"), "c") << torn;
  }
  host::PutFile("C:\\empty", "");
  for (const char* path : {"C:\\empty", "C:\\none", "C:\\"}) {
    ASSERT_TRUE(Load("Old\n\"a\" = \"1\"\n"));
    EXPECT_FALSE(table_.Load(path) || table_.IsActive()) << path;
    EXPECT_EQ(table_.languageName(), "American_English");
  }
}

TEST_F(PhrasesTest, ALargeFileLoadsAndAnEnormousOneCountsAsUnreadable) {
  std::string bytes = "X\n";
  for (int i = 0; i < 100000; ++i) bytes += "\"key " + std::to_string(i) + "\" = \"x\"\n";
  ASSERT_TRUE(Load(bytes));
  EXPECT_EQ(table_.Translate("key 0") + table_.Translate("key 99999"), "xx");
  EXPECT_FALSE(Load(bytes + std::string(16 << 20, '\n')));
  EXPECT_EQ(table_.Translate("key 0"), "key 0");
}

// As the capture thread does, while the user changes the language.
TEST_F(PhrasesTest, TextsAreTranslatedWhileTheTableIsReplaced) {
  host::PutFile("C:\\one", "One\n\"a long enough key\" = \"the first long translation\"\n");
  host::PutFile("C:\\two", "Two\n\"a long enough key\" = \"the second long translation\"\n");
  std::atomic<bool> ended = false;
  std::thread reader([&] {
    while (!ended) {
      const std::string text = table_.Translate("a long enough key");
      EXPECT_TRUE(text == "a long enough key" || text.ends_with(" long translation")) << text;
    }
  });
  for (int i = 0; i < 300; ++i) {
    EXPECT_TRUE(table_.Load(i % 3 == 0 ? "C:\\one" : i % 3 == 1 ? "C:\\two" : ""));
    table_.Reset();
  }
  ended = true;
  reader.join();
}

TEST_F(PhrasesTest, LongLinesComeInPiecesOf2047Bytes) {
  for (const bool fits : {true, false}) {
    // One byte too long: its last quotation mark comes alone, in the next piece.
    const std::string value(fits ? 2041 : 2042, 'v');
    ASSERT_TRUE(Load("X\n\"k\"=\"" + value + "\"\n\"a\" = \"1\"\n"));
    EXPECT_EQ(table_.Translate("k"), fits ? value : "k");
    EXPECT_EQ(table_.Translate("a"), fits ? "1" : "a");
  }
}

TEST_F(PhrasesTest, TestModeAndProviderTakeTheTablesPlace) {
  ASSERT_TRUE(Load("X\n\"a\" = \"1\"\n"));
  table_.SetProvider([](const char* text, char* buffer, size_t size) {
    for (size_t i = 0; *text == 'l' && i < size; ++i) buffer[i] = 'L';
  });
  EXPECT_EQ(table_.Translate("long"), std::string(2024, 'L'));
  EXPECT_EQ(table_.Translate("a"), "");
  table_.SetTestMode(true);
  EXPECT_EQ(table_.Translate("Cancel"), "xxxxxx");
  table_.Reset();
  EXPECT_FALSE(table_.IsActive());
  EXPECT_EQ(table_.Translate("a"), "a");
}

TEST_F(PhrasesTest, TheGlobalTableServesErrorsAndKeepsHostileFormatsFromThem) {
  const test::MadeUpPhrases madeUp;
  host::PutFile(kPath,
                "X\n"
                "\"%lu of %s\" = \"%s%s%s%n\"\n"
                "\"Unable to open the key %s\" = \"Kein %s\"\n");
  ASSERT_TRUE(Phrases().Load(kPath));
  SetError(1, "%lu of %s", 3ul, "x");
  EXPECT_EQ(LastErrorText(), "3 of x");
  SetError(1, "Unable to open the key %s", "x");
  EXPECT_EQ(LastErrorText(), "Kein x");
  Phrases().Reset();
  EXPECT_EQ(GetPhrase("Unable to open the key %s"), "Unable to open the key %s");
}

TEST_F(PhrasesTest, FindsTheInstalledLanguages) {
  const std::string folder = GetLanguagesDirectory();
  host::PutFile(folder + "\\German.Phrases", "\tDeutsch neu\r\n\"a\" = \"b\"");
  host::PutFile(folder + "\\French.phrases", "Fran\xE7ois");
  host::PutFile(folder + "\\Readme.txt", "No");
  std::string names;
  for (const std::string& path : FindLanguageFiles()) names += GetLanguageName(path) + " ";
  EXPECT_EQ(names, "Fran\xE7ois Deutsch ");
  host::PutFile(folder + "\\Zeros.Phrases", std::string(5000, '\0'));
  EXPECT_EQ(GetLanguageName(folder + "\\Zeros.Phrases"), "");
  EXPECT_EQ(GetLanguageName(""), "");
  EXPECT_EQ(GetLanguageName(folder + "\\none"), "");
}

}  // namespace
}  // namespace zyr
