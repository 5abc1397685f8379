#include "tools/zyracquire/options.h"

#include <gtest/gtest.h>

#include "tests/tools/words.h"
#include "twain/twain_constants.h"

namespace zyr {
namespace {

using test::Words;

TEST(AcquireOptions, TakesWhatTheHelpNames) {
  const AcquireOptions plain = ParseAcquireOptions({});
  EXPECT_EQ(plain.error, "");
  EXPECT_FALSE(plain.mechanism || plain.depth || plain.fileFormat || plain.units || plain.flavor);
  EXPECT_EQ(plain.timeoutSeconds, 300u);

  const AcquireOptions full = ParseAcquireOptions(
      Words("--source zyr --mechanism=file --depth 8 --format=jpeg --count 3 --units centimeters "
            "--flavor=vanilla --out C:\\a=b --save tiff --timeout=0 --trace --unattended --dsm x"));
  EXPECT_EQ(full.error, "");
  EXPECT_EQ(full.source + " " + full.outFolder + " " + full.dsm, "zyr C:\\a=b x");
  EXPECT_EQ(full.mechanism, Mechanism::kFile);
  EXPECT_EQ(full.fileFormat, TWFF_JFIF);
  EXPECT_TRUE(full.depth == 8 && full.count == 3 && full.timeoutSeconds == 0);
  EXPECT_TRUE(full.units == TWUN_CENTIMETERS && full.flavor == TWPF_VANILLA);
  EXPECT_EQ(full.save, PictureFormat::kTiff);
  EXPECT_TRUE(full.trace && full.unattended && !full.list && !full.caps);
}

TEST(AcquireOptions, EveryOptionStandsInTheHelp) {
  const std::string help = kAcquireHelp;
  for (const std::string& name :
       Words("--list --source --dsm --caps --mechanism --depth --count --format --buffer --units "
             "--flavor --out --save --timeout --unattended --trace --help")) {
    EXPECT_NE(help.find("\n  " + name + " "), std::string::npos) << name;
    // And it is one: a name that was not would be an error of its own.
    EXPECT_EQ(ParseAcquireOptions({name}).error.find("There is no option"), std::string::npos);
  }
}

TEST(AcquireOptions, SaysWhatIsWrong) {
  for (const auto& [line, error] :
       {std::pair{"--depht 8", "There is no option '--depht'."},
        {"picture.png", "There is no option 'picture.png'."},
        {"--depth", "--depth needs a value."},
        {"--depth 12", "--depth does not take '12'."},
        {"--depth=", "--depth does not take ''."},
        {"--count 0", "--count does not take '0'."},
        {"--count 2x", "--count does not take '2x'."},
        {"--count -1", "--count does not take '-1'."},
        {"--buffer 99999999999", "--buffer does not take '99999999999'."},
        {"--out ''", "--out does not take ''."},
        {"--trace=1", "--trace takes no value."},
        {"--buffer 65536", "--buffer is that of a memory transfer: add --mechanism memory."}})
    EXPECT_EQ(ParseAcquireOptions(Words(line)).error, error);
  EXPECT_NE(ParseAcquireOptions({"--format", "bmp"}).error, "");
  EXPECT_TRUE(ParseAcquireOptions({"--format", "bmp", "--help"}).help);
}

TEST(AcquireOptions, FileNamesJoinTheFolderOnce) {
  AcquireOptions options;
  options.outFolder = "C:\\out";
  EXPECT_EQ(PictureFileName(options, 1, "png"), "C:\\out\\image-1.png");
  options.outFolder = "C:\\";
  EXPECT_EQ(PictureFileName(options, 12, "tif"), "C:\\image-12.tif");
}

}  // namespace
}  // namespace zyr
