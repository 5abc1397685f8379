// Every triplet in every state, with good and with bad data: its result, the state behind it, and
// what the user reads if it fails.
#include <array>

#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

#define GENERAL(name) "General failure in response to " name
#define UNSUPPORTED(name) GENERAL(name) ", not supported."
#define NO(command) "TWAIN source does not support the " command " command"
constexpr char kTransfer[] = "General failure in transfer.";
constexpr char kNative[] = GENERAL("DAT_IMAGENATIVEXFER.");
constexpr char kImageInfo[] = GENERAL("DAT_IMAGEINFO.");

enum Data { kLooks, kBlind };  // whether bad data makes it fail

struct Row {
  TW_UINT32 dataGroup;
  TW_UINT16 dataArgumentType;
  const char* text;      // of the box of a failure, null for none
  const char* outcomes;  // in the states from 3 to 7, see OutcomeOf; not in those with a blank
  Data data;
  std::vector<TW_UINT16> messages;
};

// With two images in the cache, so that one is left after MSG_ENDXFER.
// clang-format off
const std::vector<Row> kRows = {
    {DG_CONTROL, DAT_IDENTITY, GENERAL("DAT_IDENTITY."), ".....", kLooks, {MSG_GET}},
    {DG_CONTROL, DAT_IDENTITY, GENERAL("MSG_OPENDS."), "4qqqq", kLooks, {MSG_OPENDS}},
    {DG_CONTROL, DAT_IDENTITY, GENERAL("MSG_CLOSEDS."), "q3333", kBlind, {MSG_CLOSEDS}},
    {DG_CONTROL, DAT_IDENTITY, GENERAL("DAT_IDENTITY."), "ppppp", kBlind,
     {MSG_SET, MSG_USERSELECT}},
    {DG_CONTROL, DAT_USERINTERFACE, GENERAL("MSG_ENABLEDS."), "q5qqq", kLooks, {MSG_ENABLEDS}},
    {DG_CONTROL, DAT_USERINTERFACE, GENERAL("MSG_DISABLEDS."), "qq444", kBlind, {MSG_DISABLEDS}},
    {DG_CONTROL, DAT_USERINTERFACE, GENERAL("DAT_USERINTERFACE."), "ppppp", kBlind,
     {MSG_ENABLEDSUIONLY, MSG_GET}},
    {DG_CONTROL, DAT_STATUS, GENERAL("DAT_STATUS."), ".....", kLooks, {MSG_GET}},
    {DG_CONTROL, DAT_STATUS, GENERAL("DAT_STATUS."), "ppppp", kBlind, {MSG_SET}},
    {DG_CONTROL, DAT_EVENT, NO("Event"), "uuuuu", kBlind, {MSG_GET, MSG_NULL}},
    {DG_CONTROL, DAT_PARENT, NO("Parent"), "uuuuu", kBlind, {MSG_OPENDSM, MSG_CLOSEDSM}},
    {DG_CONTROL, DAT_PENDINGXFERS, GENERAL("DAT_PENDINGXFER."), "q....", kLooks, {MSG_GET}},
    {DG_CONTROL, DAT_PENDINGXFERS, GENERAL("DAT_PENDINGXFER."), "qq555", kLooks, {MSG_RESET}},
    {DG_CONTROL, DAT_PENDINGXFERS, GENERAL("DAT_PENDINGXFER."), "qqqq6", kLooks, {MSG_ENDXFER}},
    {DG_CONTROL, DAT_PENDINGXFERS, GENERAL("DAT_PENDINGXFER."), "ppppp", kBlind,
     {MSG_SET, MSG_GETCURRENT}},
    {DG_CONTROL, DAT_SETUPMEMXFER, UNSUPPORTED("DAT_SETUPMEMXFER"), "q...q", kLooks, {MSG_GET}},
    {DG_CONTROL, DAT_SETUPMEMXFER, UNSUPPORTED("DAT_SETUPMEMXFER"), "ppppp", kBlind,
     {MSG_SET, MSG_RESET}},
    {DG_CONTROL, DAT_SETUPFILEXFER, UNSUPPORTED("DAT_SETUPFILEXFER"), "q...q", kLooks,
     {MSG_GET, MSG_GETCURRENT, MSG_GETDEFAULT, MSG_SET}},
    {DG_CONTROL, DAT_SETUPFILEXFER, UNSUPPORTED("DAT_SETUPFILEXFER"), "ppppp", kBlind,
     {MSG_RESET, MSG_GETFIRST}},
    {DG_CONTROL, DAT_XFERGROUP, UNSUPPORTED("DAT_XFERGROUP"), "q...q", kLooks,
     {MSG_GET, MSG_GETCURRENT, MSG_GETDEFAULT, MSG_RESET}},
    {DG_CONTROL, DAT_XFERGROUP, UNSUPPORTED("DAT_XFERGROUP"), "q...q", kBlind, {MSG_SET}},
    {DG_CONTROL, DAT_XFERGROUP, UNSUPPORTED("DAT_XFERGROUP"), "ppppp", kBlind,
     {MSG_GETFIRST, MSG_GETNEXT, MSG_NULL}},
    {DG_IMAGE, DAT_IMAGEINFO, kTransfer, "qqq.q", kLooks, {MSG_GET}},
    {DG_IMAGE, DAT_IMAGEINFO, kTransfer, "ppppp", kBlind, {MSG_GETCURRENT, MSG_SET}},
    {DG_IMAGE, DAT_IMAGELAYOUT, kImageInfo, ".....", kLooks,
     {MSG_GET, MSG_GETCURRENT, MSG_GETDEFAULT}},
    {DG_IMAGE, DAT_IMAGELAYOUT, kImageInfo, ".....", kBlind, {MSG_SET, MSG_RESET}},
    {DG_IMAGE, DAT_IMAGELAYOUT, kImageInfo, "ppppp", kBlind, {MSG_GETFIRST, MSG_GETNEXT, MSG_NULL}},
    {DG_IMAGE, DAT_PALETTE8, GENERAL("DAT_PALETTE8."), "q...q", kLooks, {MSG_GET}},
    {DG_IMAGE, DAT_PALETTE8, GENERAL("DAT_PALETTE8."), "q...q", kBlind,
     {MSG_GETDEFAULT, MSG_SET, MSG_RESET}},
    {DG_IMAGE, DAT_PALETTE8, GENERAL("DAT_PALETTE8."), "qpppq", kBlind,
     {MSG_GETCURRENT, MSG_GETFIRST, MSG_GETNEXT, MSG_NULL}},
    {DG_IMAGE, DAT_IMAGENATIVEXFER, kNative, "qqqtq", kLooks, {MSG_GET}},
    {DG_IMAGE, DAT_IMAGENATIVEXFER, kNative, "qqqpq", kBlind, {MSG_SET}},
    {DG_IMAGE, DAT_IMAGEFILEXFER, kNative, "qqqtq", kBlind, {MSG_GET}},
    {DG_IMAGE, DAT_IMAGEFILEXFER, kNative, "qqq q", kBlind, {MSG_SET}},
    {DG_IMAGE, DAT_IMAGEFILEXFER, kImageInfo, "   p ", kBlind, {MSG_SET}},
    {DG_IMAGE, DAT_IMAGEMEMXFER, kImageInfo, "ttttt", kLooks, {MSG_GET}},
    {DG_IMAGE, DAT_IMAGEMEMXFER, kImageInfo, "ppppp", kBlind, {MSG_SET}},
    {DG_IMAGE, DAT_EXTIMAGEINFO, "", ".....", kLooks, {MSG_GET, MSG_SET}},
    {DG_IMAGE, DAT_CIECOLOR, "", ".....", kLooks, {MSG_GET, MSG_SET}},
    {DG_IMAGE, DAT_GRAYRESPONSE, "", ".....", kLooks, {MSG_SET}},
    {DG_IMAGE, DAT_GRAYRESPONSE, "", ".....", kBlind, {MSG_GET, MSG_RESET}},
    {DG_IMAGE, DAT_RGBRESPONSE, "", ".....", kLooks, {MSG_SET}},
    {DG_IMAGE, DAT_RGBRESPONSE, "", ".....", kBlind, {MSG_GET, MSG_RESET}},
    {DG_IMAGE, DAT_JPEGCOMPRESSION, "", ".....", kBlind, {MSG_GET, MSG_SET}},
    // No such pair: no box.
    {DG_CONTROL, DAT_IMAGEINFO, nullptr, "00000", kBlind, {MSG_GET}},
    {DG_CONTROL, DAT_CUSTOMDSDATA, nullptr, "00000", kBlind, {MSG_GET}},
    {DG_IMAGE, DAT_IDENTITY, nullptr, "00000", kBlind, {MSG_OPENDS}},
    {DG_AUDIO, DAT_STATUS, nullptr, "00000", kBlind, {MSG_GET}},
};
// clang-format on

struct Outcome {
  TW_UINT16 result;
  int32_t stateAfter;
  TW_UINT16 code;
};

// '.' succeeds, a state's digit leads there, 't' transfers; the others are failures.
Outcome OutcomeOf(char letter, int32_t state) {
  switch (letter) {
    case 'q':
      return {TWRC_FAILURE, state, TWCC_SEQERROR};
    case 'p':
      return {TWRC_FAILURE, state, TWCC_BADPROTOCOL};
    case 'u':
      return {TWRC_FAILURE, state, TWCC_CAPUNSUPPORTED};
    case '0':
      return {TWRC_FAILURE, state, TWCC_SUCCESS};
    case 't':
      return {TWRC_XFERDONE, 7, TWCC_SUCCESS};
    default:
      return {TWRC_SUCCESS, letter == '.' ? state : letter - '0', TWCC_SUCCESS};
  }
}

class StateTableTest : public SourceTest {
 protected:
  void* GoodData(TW_UINT16 dataArgumentType) {
    record_.fill(0);
    if (dataArgumentType == DAT_IDENTITY) return &given_;
    if (dataArgumentType == DAT_SETUPFILEXFER) std::strcpy(record_.data(), "C:\\image.bmp");
    TW_IMAGEMEMXFER transfer{};
    transfer.Memory = {TWMF_APPOWNS | TWMF_POINTER, sizeof strip_, &strip_};
    if (dataArgumentType == DAT_IMAGEMEMXFER) {
      std::memcpy(record_.data(), &transfer, sizeof transfer);
    }
    return record_.data();
  }

  // A source in that state with two images: the one at hand if it still is there.
  void Prepare(int32_t state) {
    if (source_->state() == state && images_.GetCount() == 2) return;
    TearDown();
    images_.DeleteAll();
    SetUp();
    for (int i = 0; i < 2; ++i) AddImage(12, 2, {1, 2, 3, 4, 5, 6});
    source_->transferFileName_ = "C:\\image.bmp";
    GoTo(state);
  }

  void Check(const Row& row, TW_UINT16 message, int32_t state, void* data,
             const Outcome& expected) {
    SCOPED_TRACE(DataGroupName(row.dataGroup) + " / " + DataArgumentTypeName(row.dataArgumentType) +
                 " / " + MessageName(message) + " in state " + std::to_string(state));
    Prepare(state);
    Boxes();
    source_->SetConditionCode(TWCC_SUCCESS);
    EXPECT_EQ(Send(row.dataGroup, row.dataArgumentType, message, data), expected.result);
    EXPECT_EQ(source_->state(), expected.stateAfter);
    EXPECT_EQ(source_->conditionCode_.ConditionCode, expected.code);
    Lines boxes;
    if (expected.result == TWRC_FAILURE && row.text != nullptr) {
      boxes.push_back(Box(row.text, expected.code));
    }
    EXPECT_EQ(Boxes(), boxes);
    if (expected.result == TWRC_XFERDONE && row.dataArgumentType == DAT_IMAGENATIVEXFER) {
      received_.push_back(*static_cast<TW_HANDLE*>(data));
    }
  }

 private:
  alignas(8) std::array<char, 2048> record_{};
  std::array<char, 256> strip_{};
};

TEST_F(StateTableTest, Holds) {
  for (const int32_t state : {3, 4, 5, 6, 7}) {
    for (const Row& row : kRows) {
      const char letter = row.outcomes[state - 3];
      if (letter == ' ') continue;
      const Outcome good = OutcomeOf(letter, state);
      for (const TW_UINT16 message : row.messages) {
        // Bad data counts where good data would have led to something.
        const bool isUsed = good.result != TWRC_FAILURE || message == MSG_ENDXFER;
        const Outcome bad =
            row.data == kLooks && isUsed ? Outcome{TWRC_FAILURE, state, TWCC_BADVALUE} : good;
        Check(row, message, state, GoodData(row.dataArgumentType), good);
        for (void* data : {static_cast<void*>(nullptr), kNowhere}) {
          Check(row, message, state, data, bad);
        }
        if (HasFailure()) return;
      }
    }
  }
}

}  // namespace
}  // namespace zyr
