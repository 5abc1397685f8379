#include "tools/zyracquire/session.h"

#include <gtest/gtest.h>

#include "platform/host/host.h"
#include "tests/tools/fake_source.h"
#include "tools/images/picture_file.h"
#include "tools/zyracquire/report.h"

namespace zyr {
namespace {

using platform::host::FileBytes;
using platform::host::PutFile;

constexpr char kEnd[] =
    "DAT_USERINTERFACE MSG_DISABLEDS, DAT_IDENTITY MSG_CLOSEDS, DAT_PARENT MSG_CLOSEDSM";

class SessionTest : public testing::Test {
 protected:
  SessionTest() {
    platform::host::ResetAll();
    PutFile("C:\\out\\there", "");
    options_.outFolder = "C:\\out";
    source_.images = {{3, {1, 2, 3, 4, 5, 6}}, {3, {7, 8, 9, 10, 11, 12}}};
  }
  ~SessionTest() override {
    EXPECT_EQ(platform::host::LiveBlocks(), 0u) << "handles are the application's to free";
    platform::host::ResetAll();
  }

  ExitStatus Run(SourceEvent event = SourceEvent::kXferReady) {
    source_.calls.clear();
    Surroundings surroundings;
    surroundings.wait = [=](TW_IDENTITY*) { return event; };
    return Session(source_, options_, surroundings).Run();
  }

  // What stands in the file of an image, or nothing.
  std::string Saved(int number) {
    return FileBytes("C:\\out\\image-" + std::to_string(number) + ".png").value_or("");
  }
  static std::string Png(const std::vector<uint16_t>& samples, double dpi) {
    const std::vector<uint8_t> bytes = EncodePng({3, 2, 8, dpi, dpi, samples});
    return {bytes.begin(), bytes.end()};
  }

  FakeSource source_;
  AcquireOptions options_;
};

TEST_F(SessionTest, EachMechanismSavesTheSamePicturesInOrder) {
  const std::deque<FakeImage> images = source_.images;
  for (const auto& [mechanism, emptyLastStrip] : {std::pair{Mechanism::kNative, false},
                                                  {Mechanism::kMemory, false},
                                                  {Mechanism::kMemory, true}}) {
    source_.images = images;
    source_.emptyLastStrip = emptyLastStrip;
    options_.mechanism = mechanism;
    EXPECT_EQ(Run(), kExitDone);
    EXPECT_TRUE(Saved(1) == Png({1, 2, 3, 4, 5, 6}, 100)) << MechanismName(mechanism);
    EXPECT_TRUE(Saved(2) == Png({7, 8, 9, 10, 11, 12}, 100)) << MechanismName(mechanism);
    EXPECT_TRUE(source_.images.empty());
    EXPECT_EQ(source_.capabilities[ICAP_XFERMECH], static_cast<uint32_t>(mechanism));
  }
}

TEST_F(SessionTest, ClosesWhateverItHasOpened) {
  for (const auto& [event, status] : {std::pair{SourceEvent::kXferReady, kExitDone},
                                      {SourceEvent::kTimeout, kExitTimeout},
                                      {SourceEvent::kCloseRequest, kExitNoImage}}) {
    EXPECT_EQ(Run(event), status);
    EXPECT_EQ(source_.CallsFrom("DAT_USERINTERFACE MSG_DISABLEDS"), kEnd);
  }
  const struct {
    const char* failing;
    ExitStatus status;
    const char* rest;
  } kCases[] = {
      {"DAT_PARENT MSG_OPENDSM", kExitNoSource, "DAT_PARENT MSG_OPENDSM"},
      {"DAT_IDENTITY MSG_GETDEFAULT", kExitNoSource,
       "DAT_IDENTITY MSG_GETDEFAULT, DAT_PARENT MSG_CLOSEDSM"},
      {"DAT_IDENTITY MSG_OPENDS", kExitNoSource,
       "DAT_IDENTITY MSG_OPENDS, DAT_PARENT MSG_CLOSEDSM"},
      {"DAT_USERINTERFACE MSG_ENABLEDS", kExitFailed,
       "DAT_USERINTERFACE MSG_ENABLEDS, DAT_IDENTITY MSG_CLOSEDS, DAT_PARENT MSG_CLOSEDSM"},
  };
  for (const auto& one : kCases) {
    source_.failWith = {{one.failing, TWCC_SEQERROR}};
    EXPECT_EQ(Run(), one.status) << one.failing;
    EXPECT_EQ(source_.CallsFrom(one.failing), one.rest);
  }
}

TEST_F(SessionTest, AnImageThatIsNotSafeStaysWithTheSource) {
  const auto expectKept = [&](ExitStatus expected, const std::string& what) {
    EXPECT_EQ(Run(), expected) << what;
    EXPECT_EQ(source_.images.size(), 2u) << what;
    EXPECT_EQ(source_.CallsFrom("DAT_PENDINGXFERS MSG_RESET"),
              std::string("DAT_PENDINGXFERS MSG_RESET, ") + kEnd)
        << what;
  };
  const struct {
    Mechanism mechanism;
    const char* failing;
  } kCases[] = {
      {Mechanism::kNative, "DAT_IMAGEINFO MSG_GET"},
      {Mechanism::kNative, "DAT_IMAGENATIVEXFER MSG_GET"},
      {Mechanism::kMemory, "DAT_SETUPMEMXFER MSG_GET"},
      {Mechanism::kMemory, "DAT_IMAGEMEMXFER MSG_GET"},
      {Mechanism::kFile, "DAT_SETUPFILEXFER MSG_SET"},
      {Mechanism::kFile, "DAT_IMAGEFILEXFER MSG_GET"},
  };
  for (const auto& one : kCases) {
    options_.mechanism = one.mechanism;
    source_.failWith = {{one.failing, TWCC_OPERATIONERROR}};
    expectKept(kExitFailed, one.failing);
  }
  source_.failWith.clear();
  options_.mechanism = Mechanism::kFile;
  expectKept(kExitFailed, "a file transfer is reported as done, and there is no file");
  EXPECT_EQ(source_.fileName, "C:\\out\\image-1.bmp");
  options_.mechanism = Mechanism::kNative;
  source_.nullHandle = true;
  expectKept(kExitFailed, "a native transfer is reported as done, and there is no handle");
  source_.nullHandle = false;
  options_.outFolder = "C:\\no such folder";
  expectKept(kExitNotWritten, options_.outFolder);
}

TEST_F(SessionTest, CountLeavesTheOthersWhereTheyAre) {
  options_.count = 1;
  EXPECT_EQ(Run(), kExitDone);
  EXPECT_EQ(source_.images.size(), 1u);
  EXPECT_EQ(source_.capabilities[CAP_XFERCOUNT], 1u);
  EXPECT_NE(Saved(1), "");
  EXPECT_EQ(Saved(2), "");
  EXPECT_TRUE(source_.Called("DAT_PENDINGXFERS MSG_RESET"));
}

TEST_F(SessionTest, OnlyARefusalOfWhatWasAskedForEndsIt) {
  source_.failWith = {{"ICAP_XFERMECH", TWCC_CAPUNSUPPORTED}, {"ICAP_BITDEPTH", TWCC_BADVALUE}};
  EXPECT_EQ(Run(), kExitDone);
  options_.depth = 16;
  EXPECT_EQ(Run(), kExitRefused);
  EXPECT_FALSE(source_.Called("DAT_USERINTERFACE MSG_ENABLEDS"));
}

TEST_F(SessionTest, FlavorAndUnitsAreAllowedFor) {
  options_.mechanism = Mechanism::kMemory;
  options_.flavor = TWPF_VANILLA;
  options_.units = TWUN_CENTIMETERS;
  EXPECT_EQ(Run(), kExitDone);
  // 0 is white, and whether the resolution is that of inches nobody knows.
  EXPECT_TRUE(Saved(1) == Png({254, 253, 252, 251, 250, 249}, 0));
}

TEST_F(SessionTest, FindsASourceByPartOfItsName) {
  options_.source = "zyr tw";
  EXPECT_EQ(Run(), kExitDone);
  options_.source = "ZYRX";
  EXPECT_EQ(Run(), kExitNoSource);
  EXPECT_FALSE(source_.Called("DAT_IDENTITY MSG_OPENDS"));
}

}  // namespace
}  // namespace zyr
