#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/green/green_history.h"
#include "api/green/green_texts.h"
#include "frame/envelope.h"
#include "frame/params.h"

namespace {

TEST(GreenTexts, OnlyExactlyOneIsOn) {
  struct Case {
    uint32_t value;
    const char *enable, *truth;
  } cases[] = {
      {1, "enable", "true"},
      {0, "disable", "false"},
      {2, "disable", "false"},
      {0xFFFFFFFF, "disable", "false"},
  };
  for (const Case &c : cases) {
    EXPECT_STREQ(enableText(c.value), c.enable) << c.value;
    EXPECT_STREQ(trueText(c.value), c.truth) << c.value;
  }
}

TEST(GreenTexts, ReasonsAndTheUnsetPreset) {
  const char *expected[] = {
      "greenethr_admin_down", "greenethr_fiber_port",  "greenethr_link_up",         "greenethr_link_down",
      "greenethr_long_cable", "greenethr_short_cable", "greenethr_unkwn_cable_len", "greenethr_no_energy",
      "greenethr_forced",     "greenethr_not1gig",     "greenethr_not_attached",
  };
  for (uint32_t r = 0; r < sizeof expected / sizeof expected[0]; ++r)
    EXPECT_STREQ(greenReasonText(r), expected[r]) << r;
  for (uint32_t r : {kGreenReasonUnset, 12u, 0xFFFFFFFFu})
    EXPECT_STREQ(greenReasonText(r), "greenethr_invalid_val") << r;
}

TEST(GreenBody, NumbersTruncateAndSaturate) {
  struct Case {
    const char *body;
    uint32_t value;
  } cases[] = {
      {"{\"eeeTxIdleTime\": 30.9}", 30},
      {"{\"eeeTxIdleTime\": -5}", 0},
      {"{\"eeeTxIdleTime\": \"30\"}", 0},
      {"{\"eeeTxIdleTime\": 5000000000}", 4294967295u},
      {"{\"eeeTxIdleTime\": 4294967295}", 4294967295u},
      {"{}", 0},
      {"{\"EEETXIDLETIME\": 17}", 17},
      {"{\"eeeTxIdleTime\": true}", 0},
  };
  for (const Case &c : cases) {
    JsonPtr body(cJSON_Parse(c.body));
    ASSERT_TRUE(body) << c.body;
    EXPECT_EQ(bodyU32(body.get(), "eeeTxIdleTime"), c.value) << c.body;
  }
}

TEST(GreenBody, KeywordsCompareExactly) {
  struct Case {
    const char *body, *word;
    uint32_t value;
  } cases[] = {
      {"{\"mode\": \"enable\"}", "enable", 1},
      {"{\"mode\": \"Enable\"}", "enable", 0},
      {"{\"mode\": \"true\"}", "enable", 0},
      {"{\"mode\": \"enable\"}", "true", 0},
      {"{\"mode\": \"true\"}", "true", 1},
      {"{\"mode\": true}", "true", 0},
      {"{}", "enable", 0},
      {"{\"MODE\": \"enable\"}", "enable", 1},
  };
  for (const Case &c : cases) {
    JsonPtr body(cJSON_Parse(c.body));
    ASSERT_TRUE(body) << c.body;
    EXPECT_EQ(bodyWord(body.get(), "mode", c.word), c.value) << c.body << " " << c.word;
  }
}

// A port's history as the platform would hand it out, one record per call.
struct FakeHistory {
  std::vector<uint16_t> numbers;
  size_t calls = 0;
  size_t failAtCall = 0;  // 1-based; 0 never
  int failure = 0;
};
FakeHistory gHistory;

open_pwr_sav_sample_t recordAt(size_t index) {
  open_pwr_sav_sample_t r = {};
  r.sampleNo = gHistory.numbers[index];
  r.sampleTime = 1000 + static_cast<uint32_t>(index);
  r.percentLpiTime = static_cast<uint16_t>(index % 100);
  r.next = index + 1 < gHistory.numbers.size() ? index + 1 : 0;
  return r;
}

int fakeNext(open_pwr_sav_sample_t *sample) {
  ++gHistory.calls;
  if (gHistory.calls == gHistory.failAtCall) return gHistory.failure;
  if (sample->next == 0 || sample->next >= gHistory.numbers.size()) return -29;
  *sample = recordAt(sample->next);
  return 0;
}

void useHistory(size_t count, uint16_t firstNo = 1) {
  gHistory = {};
  for (size_t i = 0; i < count; ++i) gHistory.numbers.push_back(static_cast<uint16_t>(firstNo + i));
}

TEST(HistoryWalk, FindsTheSampleAfterTheOneNamed) {
  struct Case {
    size_t count;
    uint16_t wanted;
    uint32_t code;
    uint16_t answer;  // sample number answered on success
    size_t calls;     // next-entry calls made
  } cases[] = {
      {40, 0, 0, 2, 1},  // no number: the second sample
      {40, 1, 0, 2, 1},  // the first record already matches
      {40, 7, 0, 8, 7},
      {40, 40, CODE_NOT_FOUND, 0, 39},  // the last sample has no successor
      {40, 99, CODE_NOT_FOUND, 0, 39},  // not held at all
      {1, 0, CODE_NOT_FOUND, 0, 0},     // a history of one sample
      {1, 1, CODE_NOT_FOUND, 0, 0},
      {5000, 4097, 0, 4098, 4097},                         // found on the 4096th step
      {5000, 4098, CODE_NOT_FOUND, 0, kHistoryWalkLimit},  // held, but beyond the bound
  };
  for (const Case &c : cases) {
    useHistory(c.count);
    open_pwr_sav_sample_t sample = recordAt(0);
    uint32_t code = historyEntryAfter(c.wanted, &sample, fakeNext);
    EXPECT_EQ(code, c.code) << c.count << "/" << c.wanted;
    EXPECT_EQ(gHistory.calls, c.calls) << c.count << "/" << c.wanted;
    if (c.code == CODE_SUCCESS) {
      EXPECT_EQ(sample.sampleNo, c.answer) << c.count << "/" << c.wanted;
    }
  }
}

TEST(HistoryWalk, SampleNumbersWrapAtSixteenBits) {
  useHistory(10, 65533);  // 65533 .. 65535, 0, 1, 2 ...
  open_pwr_sav_sample_t sample = recordAt(0);
  EXPECT_EQ(historyEntryAfter(1, &sample, fakeNext), CODE_SUCCESS);
  EXPECT_EQ(sample.sampleNo, 2);
  EXPECT_EQ(gHistory.calls, 5u);
}

TEST(HistoryWalk, PlatformFailuresAnswerTheirCode) {
  struct Case {
    uint16_t wanted;
    size_t failAtCall;
    int failure;
    uint32_t code;
  } cases[] = {
      {10, 3, -1, CODE_GENERAL_FAILED},  // during the search
      {10, 3, -28, CODE_UNSUPPORTED},
      {3, 3, -22, CODE_INVALID_ARGUMENT},  // the final step
      {0, 1, -24, CODE_OBJECT_EXIST},
  };
  for (const Case &c : cases) {
    useHistory(40);
    gHistory.failAtCall = c.failAtCall;
    gHistory.failure = c.failure;
    open_pwr_sav_sample_t sample = recordAt(0);
    EXPECT_EQ(historyEntryAfter(c.wanted, &sample, fakeNext), c.code) << c.wanted << " " << c.failure;
    EXPECT_EQ(gHistory.calls, c.failAtCall);
  }
}

TEST(HistoryWalk, RecordRendersItsFourFieldsInOrder) {
  open_pwr_sav_sample_t sample = {};
  sample.sampleNo = 65535;
  sample.sampleTime = 4000000000u;
  sample.percentLpiTime = 42;
  sample.percentLpiTimeTotal = 57;
  sample.next = 0x1234;
  JsonPtr json(historySampleJson(sample));
  char *text = cJSON_PrintUnformatted(json.get());
  EXPECT_STREQ(text, "{\"sampleNo\":65535,\"sampleTime\":4000000000,\"percentLpiTime\":42,\"percentLpiTimeTotal\":57}");
  cJSON_free(text);
}

}  // namespace
