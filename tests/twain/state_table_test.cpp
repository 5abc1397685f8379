// Every triplet in every state, with good and with bad data: its result, the state behind it, and
// what the user reads if it fails.
#include <algorithm>
#include <array>

#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

struct Outcome {
  const char* states;  // in which it is so
  TW_UINT16 result;
  int32_t stateAfter;  // 0: as before
  TW_UINT16 code;      // of a failure
  const char* text;    // of its box, null for none
};

constexpr Outcome Succeeds(const char* states, int32_t stateAfter = 0) {
  return {states, TWRC_SUCCESS, stateAfter, 0, nullptr};
}
constexpr Outcome Delivers(const char* states) { return {states, TWRC_XFERDONE, 7, 0, nullptr}; }
constexpr Outcome Fails(const char* states, TW_UINT16 code, const char* text) {
  return {states, TWRC_FAILURE, 0, code, text};
}

struct Row {
  TW_UINT32 dataGroup;
  TW_UINT16 dataArgumentType;
  std::vector<TW_UINT16> messages;
  const char* badData;  // text of a failure for bad data, null if it is not looked at
  std::vector<Outcome> outcomes;
};

#define GENERAL(name) "General failure in response to " name
#define UNSUPPORTED(name) "General failure in response to " name ", not supported."
#define NO(command) "TWAIN source does not support the " command " command"
constexpr char kAll[] = "34567";
constexpr char kTransfer[] = "General failure in transfer.";
constexpr char kNative[] = GENERAL("DAT_IMAGENATIVEXFER.");

// With two images in the cache, so that one is left after MSG_ENDXFER.
// clang-format off
const std::vector<Row> kRows = {
    {DG_CONTROL, DAT_IDENTITY, {MSG_GET}, GENERAL("DAT_IDENTITY."), {Succeeds(kAll)}},
    {DG_CONTROL, DAT_IDENTITY, {MSG_OPENDS}, GENERAL("MSG_OPENDS."),
     {Succeeds("3", 4), Fails("4567", TWCC_SEQERROR, GENERAL("MSG_OPENDS."))}},
    {DG_CONTROL, DAT_IDENTITY, {MSG_CLOSEDS}, nullptr,
     {Succeeds("4567", 3), Fails("3", TWCC_SEQERROR, GENERAL("MSG_CLOSEDS."))}},
    {DG_CONTROL, DAT_IDENTITY, {MSG_SET, MSG_USERSELECT}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, GENERAL("DAT_IDENTITY."))}},
    {DG_CONTROL, DAT_USERINTERFACE, {MSG_ENABLEDS}, GENERAL("MSG_ENABLEDS."),
     {Succeeds("4", 5), Fails("3567", TWCC_SEQERROR, GENERAL("MSG_ENABLEDS."))}},
    {DG_CONTROL, DAT_USERINTERFACE, {MSG_DISABLEDS}, nullptr,
     {Succeeds("567", 4), Fails("34", TWCC_SEQERROR, GENERAL("MSG_DISABLEDS."))}},
    {DG_CONTROL, DAT_USERINTERFACE, {MSG_ENABLEDSUIONLY, MSG_GET}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, GENERAL("DAT_USERINTERFACE."))}},
    {DG_CONTROL, DAT_STATUS, {MSG_GET}, GENERAL("DAT_STATUS."), {Succeeds(kAll)}},
    {DG_CONTROL, DAT_STATUS, {MSG_SET}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, GENERAL("DAT_STATUS."))}},
    {DG_CONTROL, DAT_EVENT, {MSG_GET, MSG_NULL}, nullptr,
     {Fails(kAll, TWCC_CAPUNSUPPORTED, NO("Event"))}},
    {DG_CONTROL, DAT_PARENT, {MSG_OPENDSM, MSG_CLOSEDSM}, nullptr,
     {Fails(kAll, TWCC_CAPUNSUPPORTED, NO("Parent"))}},
    {DG_CONTROL, DAT_PENDINGXFERS, {MSG_GET}, GENERAL("DAT_PENDINGXFER."),
     {Succeeds("4567"), Fails("3", TWCC_SEQERROR, GENERAL("DAT_PENDINGXFER."))}},
    {DG_CONTROL, DAT_PENDINGXFERS, {MSG_RESET}, GENERAL("DAT_PENDINGXFER."),
     {Succeeds("567", 5), Fails("34", TWCC_SEQERROR, GENERAL("DAT_PENDINGXFER."))}},
    {DG_CONTROL, DAT_PENDINGXFERS, {MSG_ENDXFER}, GENERAL("DAT_PENDINGXFER."),
     {Succeeds("7", 6), Fails("3456", TWCC_SEQERROR, GENERAL("DAT_PENDINGXFER."))}},
    {DG_CONTROL, DAT_PENDINGXFERS, {MSG_SET, MSG_GETCURRENT}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, GENERAL("DAT_PENDINGXFER."))}},
    {DG_CONTROL, DAT_SETUPMEMXFER, {MSG_GET}, UNSUPPORTED("DAT_SETUPMEMXFER"),
     {Succeeds("456"), Fails("37", TWCC_SEQERROR, UNSUPPORTED("DAT_SETUPMEMXFER"))}},
    {DG_CONTROL, DAT_SETUPMEMXFER, {MSG_SET, MSG_RESET}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, UNSUPPORTED("DAT_SETUPMEMXFER"))}},
    {DG_CONTROL, DAT_SETUPFILEXFER, {MSG_GET, MSG_GETCURRENT, MSG_GETDEFAULT, MSG_SET},
     UNSUPPORTED("DAT_SETUPFILEXFER"),
     {Succeeds("456"), Fails("37", TWCC_SEQERROR, UNSUPPORTED("DAT_SETUPFILEXFER"))}},
    {DG_CONTROL, DAT_SETUPFILEXFER, {MSG_RESET, MSG_GETFIRST}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, UNSUPPORTED("DAT_SETUPFILEXFER"))}},
    {DG_CONTROL, DAT_XFERGROUP, {MSG_GET, MSG_GETCURRENT, MSG_GETDEFAULT, MSG_RESET},
     UNSUPPORTED("DAT_XFERGROUP"),
     {Succeeds("456"), Fails("37", TWCC_SEQERROR, UNSUPPORTED("DAT_XFERGROUP"))}},
    {DG_CONTROL, DAT_XFERGROUP, {MSG_SET}, nullptr,
     {Succeeds("456"), Fails("37", TWCC_SEQERROR, UNSUPPORTED("DAT_XFERGROUP"))}},
    {DG_CONTROL, DAT_XFERGROUP, {MSG_GETFIRST, MSG_GETNEXT, MSG_NULL}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, UNSUPPORTED("DAT_XFERGROUP"))}},
    {DG_IMAGE, DAT_IMAGEINFO, {MSG_GET}, kTransfer,
     {Succeeds("6"), Fails("3457", TWCC_SEQERROR, kTransfer)}},
    {DG_IMAGE, DAT_IMAGEINFO, {MSG_GETCURRENT, MSG_SET}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, kTransfer)}},
    {DG_IMAGE, DAT_IMAGELAYOUT, {MSG_GET, MSG_GETCURRENT, MSG_GETDEFAULT},
     GENERAL("DAT_IMAGEINFO."),
     {Succeeds(kAll)}},
    {DG_IMAGE, DAT_IMAGELAYOUT, {MSG_SET, MSG_RESET}, nullptr, {Succeeds(kAll)}},
    {DG_IMAGE, DAT_IMAGELAYOUT, {MSG_GETFIRST, MSG_GETNEXT, MSG_NULL}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, GENERAL("DAT_IMAGEINFO."))}},
    {DG_IMAGE, DAT_PALETTE8, {MSG_GET}, GENERAL("DAT_PALETTE8."),
     {Succeeds("456"), Fails("37", TWCC_SEQERROR, GENERAL("DAT_PALETTE8."))}},
    {DG_IMAGE, DAT_PALETTE8, {MSG_GETDEFAULT, MSG_SET, MSG_RESET}, nullptr,
     {Succeeds("456"), Fails("37", TWCC_SEQERROR, GENERAL("DAT_PALETTE8."))}},
    {DG_IMAGE, DAT_PALETTE8, {MSG_GETCURRENT, MSG_GETFIRST, MSG_GETNEXT, MSG_NULL}, nullptr,
     {Fails("456", TWCC_BADPROTOCOL, GENERAL("DAT_PALETTE8.")),
      Fails("37", TWCC_SEQERROR, GENERAL("DAT_PALETTE8."))}},
    {DG_IMAGE, DAT_IMAGENATIVEXFER, {MSG_GET}, kNative,
     {Delivers("6"), Fails("3457", TWCC_SEQERROR, kNative)}},
    {DG_IMAGE, DAT_IMAGENATIVEXFER, {MSG_SET}, nullptr,
     {Fails("6", TWCC_BADPROTOCOL, kNative), Fails("3457", TWCC_SEQERROR, kNative)}},
    {DG_IMAGE, DAT_IMAGEFILEXFER, {MSG_GET}, nullptr,
     {Delivers("6"), Fails("3457", TWCC_SEQERROR, kNative)}},
    {DG_IMAGE, DAT_IMAGEFILEXFER, {MSG_SET}, nullptr,
     {Fails("6", TWCC_BADPROTOCOL, GENERAL("DAT_IMAGEINFO.")),
      Fails("3457", TWCC_SEQERROR, kNative)}},
    {DG_IMAGE, DAT_IMAGEMEMXFER, {MSG_GET}, GENERAL("DAT_IMAGEINFO."), {Delivers(kAll)}},
    {DG_IMAGE, DAT_IMAGEMEMXFER, {MSG_SET}, nullptr,
     {Fails(kAll, TWCC_BADPROTOCOL, GENERAL("DAT_IMAGEINFO."))}},
    {DG_IMAGE, DAT_EXTIMAGEINFO, {MSG_GET, MSG_SET}, "", {Succeeds(kAll)}},
    {DG_IMAGE, DAT_CIECOLOR, {MSG_GET, MSG_SET}, "", {Succeeds(kAll)}},
    {DG_IMAGE, DAT_GRAYRESPONSE, {MSG_SET}, "", {Succeeds(kAll)}},
    {DG_IMAGE, DAT_GRAYRESPONSE, {MSG_GET, MSG_RESET}, nullptr, {Succeeds(kAll)}},
    {DG_IMAGE, DAT_RGBRESPONSE, {MSG_SET}, "", {Succeeds(kAll)}},
    {DG_IMAGE, DAT_RGBRESPONSE, {MSG_GET, MSG_RESET}, nullptr, {Succeeds(kAll)}},
    {DG_IMAGE, DAT_JPEGCOMPRESSION, {MSG_GET, MSG_SET}, nullptr, {Succeeds(kAll)}},
    // No such pair: no box.
    {DG_CONTROL, DAT_IMAGEINFO, {MSG_GET}, nullptr, {Fails(kAll, 0, nullptr)}},
    {DG_CONTROL, DAT_CUSTOMDSDATA, {MSG_GET}, nullptr, {Fails(kAll, 0, nullptr)}},
    {DG_IMAGE, DAT_IDENTITY, {MSG_OPENDS}, nullptr, {Fails(kAll, 0, nullptr)}},
    {DG_AUDIO, DAT_STATUS, {MSG_GET}, nullptr, {Fails(kAll, 0, nullptr)}},
};

// clang-format on

const Outcome& OutcomeIn(int32_t state, const Row& row) {
  const auto digit = static_cast<char>('0' + state);
  return *std::find_if(row.outcomes.begin(), row.outcomes.end(), [&](const Outcome& outcome) {
    return std::strchr(outcome.states, digit) != nullptr;
  });
}

// Bad data counts where good data would have led to something.
Outcome WithBadData(const Outcome& good, const Row& row, TW_UINT16 message) {
  const bool isUsed = good.result != TWRC_FAILURE || message == MSG_ENDXFER;
  return row.badData != nullptr && isUsed ? Fails(kAll, TWCC_BADVALUE, row.badData) : good;
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
    EXPECT_EQ(source_->state(), expected.stateAfter != 0 ? expected.stateAfter : state);
    EXPECT_EQ(source_->conditionCode_.ConditionCode, expected.code);
    Lines boxes;
    if (expected.text != nullptr) boxes.push_back(Box(expected.text, expected.code));
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
      for (const TW_UINT16 message : row.messages) {
        const Outcome& good = OutcomeIn(state, row);
        Check(row, message, state, GoodData(row.dataArgumentType), good);
        for (void* data : {static_cast<void*>(nullptr), kNowhere}) {
          Check(row, message, state, data, WithBadData(good, row, message));
        }
        if (HasFailure()) return;
      }
    }
  }
}

}  // namespace
}  // namespace zyr
