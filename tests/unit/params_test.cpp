#include "frame/envelope.h"
#include "frame/params.h"
#include "test_support.h"

TEST(QueryParams, SplitAndLooseLookup) {
  struct Case { const char *query, *name, *value, *pieces; } cases[] = {
      {"ifNum=1&ifNum=2", "ifNum", "1", "[ifNum=1][ifNum=2]"},
      {"xifNum=7&ifNum=8", "ifNum", "7", "[xifNum=7][ifNum=8]"},  // any piece containing the name
      {"intfName=a&intf=3", "intf", "a", "[intfName=a][intf=3]"},
      {"a=%2F+b&&k=v=w", "k", "v=w", "[a=%2F+b][][k=v=w]"},  // undecoded; the first "=" splits
      {"ifNum=", "ifNum", "", "[ifNum=]"}, {"ifNum", "ifNum", nullptr, "[ifNum]"}, {"", "ifNum", nullptr, "[]"},
  };
  for (const Case &c : cases) {
    char **list = queryParamsSplit(c.query);
    std::string pieces;
    for (char **p = list; *p; ++p) pieces += std::string("[") + *p + "]";
    EXPECT_EQ(pieces, c.pieces) << c.query;
    EXPECT_STREQ(queryParamValue(c.name, list), c.value) << c.query;
    queryParamsFree(list);
  }
  char **list = queryParamsSplit(nullptr);
  EXPECT_EQ(list[0], nullptr);
  queryParamsFree(list);
}

TEST(QueryParams, ScanIsAnchoredAtSegmentStarts) {
  struct Case { const char *query; uint32_t value; } cases[] = {
      {"a=1&ifNum=7&b=2", 7}, {"ifNum=7x", 7}, {"ifNum", 0},    {"xifNum=5&ifNum=7", 7}, {"ifNum=abc", 0},
      {"ifNum=4294967297", 1}, {"IFNUM=3", 0}, {"&ifNum=6", 6}, {"ifNum=1&ifNum=2", 1},
      {"ifNumber=9&ifNum=4", 4},
  };
  for (const Case &c : cases) EXPECT_EQ(queryScanUintIn(c.query, "ifNum"), c.value) << c.query;
  EXPECT_EQ(queryScanUintIn(nullptr, "ifNum"), 0u);
  ScopedEnv env({{"QUERY_STRING", "ifNum=12"}});
  EXPECT_EQ(queryScanUint("ifNum"), 12u);
}

TEST(QueryParams, UrlDecodeInPlace) {
  struct Case { const char *in, *out; } cases[] = {
      {"a%2Fb", "a/b"}, {"a+b", "a b"}, {"100%", "100%"}, {"%4", "%4"}, {"%%41", "%A"}, {"%4g%g4", "%4g%g4"},
      {"%2f%Fa%af%A9%0f", "/\xfa\xaf\xa9\x0f"},
  };
  for (const Case &c : cases) {
    std::string buf = c.in;
    EXPECT_STREQ(urlDecode(buf.data()), c.out) << c.in;
  }
  EXPECT_EQ(urlDecode(nullptr), nullptr);
}

// Keys ignore case; numbers truncate and saturate; keywords match exactly.
TEST(BodyValues, NumbersWordsAndTexts) {
  struct Case { const char *json; uint32_t number, isEnable; const char *text; } cases[] = {
      {R"({"n":30.9})", 30, 0, nullptr},           {R"({"n":-5})", 0, 0, nullptr},
      {R"({"n":5000000000})", 4294967295u, 0, nullptr}, {R"({"n":4294967294.9})", 4294967294u, 0, nullptr},
      {R"({"N":7})", 7, 0, nullptr},               {R"({"n":"enable"})", 0, 1, "enable"},
      {R"({"n":"Enable"})", 0, 0, "Enable"},       {R"({"n":"enabled"})", 0, 0, "enabled"},
      {R"({"n":true})", 0, 0, nullptr},            {R"({})", 0, 0, nullptr},
  };
  for (const Case &c : cases) {
    JsonPtr body(cJSON_Parse(c.json));
    EXPECT_EQ(bodyU32(body.get(), "n"), c.number) << c.json;
    EXPECT_EQ(bodyWord(body.get(), "n", "enable"), c.isEnable) << c.json;
    EXPECT_STREQ(bodyText(body.get(), "n"), c.text) << c.json;
  }
}

TEST(RequestData, QueriesForGetAndDeleteBodiesForPostAndPut) {
  TempDir dir;
  std::string longQuery(10000, 'q');
  struct Case { const char *method, *length, *body, *query, *expected; } cases[] = {  // expected null: no data
      {"PUT", "7", "{\"a\":1}", "", "{\"a\":1}"}, {"POST", "3", "abcdef", "", "abc"},
      {"PUT", "0", "ignored", "", ""},            {"PUT", nullptr, "ignored", "", ""},
      {"PUT", "-4", "ignored", "", ""},           {"PUT", "5", "ab", "", "ab\xff"},  // ends early: the EOF byte stays
      {"PUT", "16777216", "x", "", "x\xff"},     {"PUT", "16777217", "x", "", nullptr},
      {"get", "3", "abc", "", nullptr},           {"PATCH", "3", "abc", "", nullptr},
      {nullptr, "3", "abc", "", nullptr},         {"GET", "3", "abc", "ifNum=3", "ifNum=3"},
      {"DELETE", nullptr, "", nullptr, ""},       {"GET", nullptr, "", longQuery.c_str(), longQuery.c_str() + 1808},
  };
  for (const Case &c : cases) {
    writeText(dir.file("stdin"), c.body);
    ASSERT_NE(freopen(dir.file("stdin").c_str(), "r", stdin), nullptr);
    ScopedEnv env({{"REQUEST_METHOD", c.method}, {"CONTENT_LENGTH", c.length}, {"QUERY_STRING", c.query}});
    char *data = requestDataGet();
    EXPECT_STREQ(data, c.expected) << c.method << " " << c.length;  // the query is cut at 8192 characters
    free(data);
  }
}
