#include <gtest/gtest.h>

#include <string>

#include "frame/params.h"
#include "test_support.h"

namespace {

std::string split(const char *text) {
  char **list = queryParamsSplit(text);
  std::string joined;
  for (char **p = list; *p; ++p) joined += std::string("[") + *p + "]";
  queryParamsFree(list);
  return joined;
}

TEST(QueryParams, SplitKeepsEveryPieceUndecoded) {
  EXPECT_EQ(split("ifNum=3&intIfNum=5"), "[ifNum=3][intIfNum=5]");
  EXPECT_EQ(split(""), "[]");
  EXPECT_EQ(split("a=%2F+b&&c"), "[a=%2F+b][][c]");
  EXPECT_EQ(split(nullptr), "");
  std::string many;
  for (int i = 0; i < 25; ++i) many += "k" + std::to_string(i) + "=" + std::to_string(i) + "&";
  char **list = queryParamsSplit(many.c_str());
  int count = 0;
  while (list[count]) ++count;
  EXPECT_EQ(count, 26);  // grows past its first ten entries; the last is empty
  queryParamsFree(list);
}

TEST(QueryParams, ValueMatchesTheFirstPieceContainingTheName) {
  struct Case {
    const char *query, *name, *value;
  } cases[] = {
      {"ifNum=1&ifNum=2", "ifNum", "1"},        {"xifNum=7&ifNum=8", "ifNum", "7"},
      {"ifNum=", "ifNum", ""},                   {"ifNum", "ifNum", nullptr},
      {"intfName=a&intf=3", "intf", "a"},        {"a=1", "ifNum", nullptr},
      {"intfName=a%2Fb", "intfName", "a%2Fb"},   {"k=v=w", "k", "v=w"},
  };
  for (const Case &c : cases) {
    char **list = queryParamsSplit(c.query);
    const char *v = queryParamValue(c.name, list);
    if (c.value) {
      EXPECT_STREQ(v, c.value) << c.query;
    } else {
      EXPECT_EQ(v, nullptr) << c.query;
    }
    queryParamsFree(list);
  }
}

TEST(QueryParams, ScanIsAnchoredAtSegmentStarts) {
  struct Case {
    const char *query, *name;
    uint32_t value;
  } cases[] = {
      {"a=1&ifNum=7&b=2", "ifNum", 7}, {"ifNum=7x", "ifNum", 7},       {"ifNum", "ifNum", 0},
      {"xifNum=5&ifNum=7", "ifNum", 7}, {"ifNum=", "ifNum", 0},        {"ifNum=abc", "ifNum", 0},
      {"", "ifNum", 0},                  {"ifNum=4294967297", "ifNum", 1}, {"IFNUM=3", "ifNum", 0},
      {"ifNum=1&ifNum=2", "ifNum", 1},   {"ifNumber=9&ifNum=4", "ifNum", 4},
  };
  for (const Case &c : cases) EXPECT_EQ(queryScanUintIn(c.query, c.name), c.value) << c.query;
  EXPECT_EQ(queryScanUintIn(nullptr, "ifNum"), 0u);
  ScopedEnv env({{"QUERY_STRING", "ifNum=12"}});
  EXPECT_EQ(queryScanUint("ifNum"), 12u);
}

TEST(QueryParams, UrlDecodeInPlace) {
  struct Case {
    const char *in, *out;
  } cases[] = {
      {"a%2Fb", "a/b"}, {"%41ll", "All"}, {"a+b", "a b"}, {"100%", "100%"}, {"%4", "%4"},
      {"%zz", "%zz"},   {"%2f%2F", "//"}, {"", ""},       {"%%41", "%A"},
  };
  for (const Case &c : cases) {
    std::string buf = c.in;
    EXPECT_STREQ(urlDecode(buf.data()), c.out) << c.in;
  }
  EXPECT_EQ(urlDecode(nullptr), nullptr);
}

TEST(BodyValues, NumbersSaturateIntoUnsigned32Bits) {
  struct Case {
    const char *json;
    uint32_t value;
  } cases[] = {
      {"{\"n\":30.9}", 30}, {"{\"n\":-5}", 0},       {"{\"n\":\"30\"}", 0},         {"{\"n\":5000000000}", 4294967295u},
      {"{}", 0},            {"{\"N\":7}", 7},        {"{\"n\":4294967295}", 4294967295u}, {"{\"n\":null}", 0},
  };
  for (const Case &c : cases) {
    cJSON *body = cJSON_Parse(c.json);
    EXPECT_EQ(bodyU32(body, "n"), c.value) << c.json;
    cJSON_Delete(body);
  }
}

TEST(BodyValues, KeywordsCompareExactlyKeysIgnoreCase) {
  cJSON *body = cJSON_Parse("{\"MODE\":\"enable\",\"other\":\"Enable\",\"num\":1}");
  EXPECT_EQ(bodyWord(body, "mode", "enable"), 1u);
  EXPECT_EQ(bodyWord(body, "other", "enable"), 0u);
  EXPECT_EQ(bodyWord(body, "num", "enable"), 0u);
  EXPECT_EQ(bodyWord(body, "missing", "enable"), 0u);
  EXPECT_EQ(bodyText(body, "num"), nullptr);
  cJSON_Delete(body);
}

class RequestData : public testing::Test {
 protected:
  // Feeds `body` on standard input for the duration of one read.
  std::string readWithBody(const char *method, const char *length, const std::string &body, bool *isNull) {
    std::string path = dir_.file("stdin");
    writeText(path, body);
    EXPECT_NE(freopen(path.c_str(), "r", stdin), nullptr);
    ScopedEnv env({{"REQUEST_METHOD", method}, {"CONTENT_LENGTH", length}});
    char *data = requestDataGet();
    *isNull = data == nullptr;
    std::string s = data ? data : "";
    free(data);
    return s;
  }
  TempDir dir_;
};

TEST_F(RequestData, BodiesAreReadToTheirLength) {
  struct Case {
    const char *method, *length, *body;
    std::string expected;
    bool null;
  } cases[] = {
      {"PUT", "7", "{\"a\":1}", "{\"a\":1}", false},
      {"POST", "3", "abcdef", "abc", false},
      {"PUT", "0", "ignored", "", false},
      {"PUT", nullptr, "ignored", "", false},
      {"PUT", "-4", "ignored", "", false},
      {"PUT", "5", "ab", "ab\xff", false},  // ends early: the end-of-file byte stays
      {"PUT", "99999999999", "x", "", true},
      {"get", "3", "abc", "", true},
      {"PATCH", "3", "abc", "", true},
  };
  for (const Case &c : cases) {
    bool isNull = false;
    EXPECT_EQ(readWithBody(c.method, c.length, c.body, &isNull), c.expected) << c.method << " " << c.body;
    EXPECT_EQ(isNull, c.null) << c.method << " " << c.body;
  }
}

TEST_F(RequestData, QueryStringsAreCutAt8192) {
  std::string longQuery(10000, 'q');
  ScopedEnv env({{"REQUEST_METHOD", "DELETE"}, {"QUERY_STRING", longQuery.c_str()}});
  char *data = requestDataGet();
  EXPECT_EQ(strlen(data), 8192u);
  free(data);
  ScopedEnv none({{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", nullptr}});
  data = requestDataGet();
  EXPECT_STREQ(data, "");
  free(data);
  ScopedEnv noMethod({{"REQUEST_METHOD", nullptr}});
  EXPECT_EQ(requestDataGet(), nullptr);
}

}  // namespace
