#include "api/green/green_history.h"
#include "frame/envelope.h"
#include "test_support.h"

// A port's history as the platform hands it out, one record per call:
// `count` records numbered from `first` (wrapping at 16 bits).
// The call numbered `failAtCall` (from 1; 0: none) answers `failure`.
static struct { size_t count, calls, failAtCall; uint16_t first; int failure; } gHistory;

static open_pwr_sav_sample_t recordAt(size_t index) {
  open_pwr_sav_sample_t r = {};
  r.sampleNo = static_cast<uint16_t>(gHistory.first + index);
  r.next = index + 1 < gHistory.count ? index + 1 : 0;
  return r;
}

static int fakeNext(open_pwr_sav_sample_t *sample) {
  if (++gHistory.calls == gHistory.failAtCall) return gHistory.failure;
  if (sample->next == 0 || sample->next >= gHistory.count) return -29;
  *sample = recordAt(sample->next);
  return 0;
}

TEST(HistoryWalk, FindsTheSampleAfterTheOneNamed) {
  // answer: the sample number answered with code 0; calls: the next-entry calls made
  struct Case { size_t count; uint16_t first, wanted; size_t failAtCall; int failure; uint32_t code, answer, calls; };
  const Case cases[] = {
      {40, 1, 0, 0, 0, 0, 2, 1},                       // no number: the second sample
      {40, 1, 1, 0, 0, 0, 2, 1},                       // the first record already matches
      {40, 1, 7, 0, 0, 0, 8, 7},                       // found by the search
      {40, 1, 40, 0, 0, CODE_NOT_FOUND, 0, 39},        // the last sample has no successor
      {1, 1, 0, 0, 0, CODE_NOT_FOUND, 0, 0},           // a history of one sample
      {10, 65533, 1, 0, 0, 0, 2, 5},                   // 65533 .. 65535, 0, 1, 2
      {5000, 1, 4097, 0, 0, 0, 4098, 4097},            // found on the 4096th step
      {5000, 1, 4098, 0, 0, CODE_NOT_FOUND, 0, 4096},  // held, but beyond the bound
      {40, 1, 10, 3, -1, CODE_GENERAL_FAILED, 0, 3},   // a failure during the search
      {40, 1, 3, 3, -22, CODE_INVALID_ARGUMENT, 0, 3}, // in the final step
  };
  for (const Case &c : cases) {
    gHistory = {c.count, 0, c.failAtCall, c.first, c.failure};
    open_pwr_sav_sample_t sample = recordAt(0);
    EXPECT_EQ(historyEntryAfter(c.wanted, &sample, fakeNext), c.code) << c.count << "/" << c.wanted;
    EXPECT_EQ(gHistory.calls, c.calls) << c.count << "/" << c.wanted;
    EXPECT_EQ(c.code ? 0u : sample.sampleNo, c.answer) << c.count << "/" << c.wanted;
  }
}
