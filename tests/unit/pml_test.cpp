#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "api/pml/pml_args.h"

namespace {

// The whole 18-byte buffer, so that bytes written after a decoded 0 count.
std::string decode(const char *query, size_t size = kPmlMacSize) {
  char buf[kPmlMacSize + 1];
  memset(buf, 'Z', sizeof buf);
  getQueryMacAddr(query, buf, size);
  std::string bytes(buf, size);
  return bytes.substr(0, bytes.find_last_not_of('Z') + 1);
}

std::string text(const std::string &bytes) { return bytes.substr(0, bytes.find('\0')); }

TEST(PmlQueryMac, DecodesTheMacFieldToTheLetter) {
  using namespace std::string_literals;
  struct Case {
    const char *query;
    std::string text;   // what the platform sees
    std::string bytes;  // the buffer up to its last written byte
  } cases[] = {
      {"macAddr=00%3A11%3A22%3A33%3A44%3A55", "00:11:22:33:44:55", "00:11:22:33:44:55\0"s},
      {"ifNum=3&macAddr=00%3a11%3a22%3A33%3A44%3A55&vlanId=1", "00:11:22:33:44:55", "00:11:22:33:44:55\0"s},
      {"macAddr=a+b", "a b", "a b\0"s},
      {"macAddr=ab%", "ab%", "ab%\0"s},
      {"macAddr=ab%4", "ab%4", "ab%4\0"s},
      {"macAddr=%zz01", "", "\0"s "01\0"s},
      {"macAddr=%4z", "\x04", "\x04\0"s},
      {"macAddr=%-1", "", "\0\0"s},  // a sign is no hex digit
      {"macAddr=a%41b", "aAb", "aAb\0"s},
      // "%" before "&" takes "&" and the next character; copying runs on.
      {"macAddr=ab%&c=1&d=2", "ab", "ab\0=1\0"s},
      {"macAddr=a%4&x=1", "a\x04x=1", "a\x04x=1\0"s},
      // Next-to-last or last character of the whole query: kept as "%".
      {"macAddr=ab%&", "ab%", "ab%\0"s},
      {"vlanId=1&macAddr=ab%", "ab%", "ab%\0"s},
      // Cut after 17 characters, counted after decoding.
      {"macAddr=00:11:22:33:44:55:66", "00:11:22:33:44:55", "00:11:22:33:44:55\0"s},
      {"macAddr=00%3A11%3A22%3A33%3A44%3A55%3A66", "00:11:22:33:44:55", "00:11:22:33:44:55\0"s},
      // The field starts a segment, spelled exactly; the first one wins.
      {"xmacAddr=00:11", "", "\0"s},
      {"xmacAddr=00:11&macAddr=aa", "aa", "aa\0"s},
      {"macaddr=aa", "", "\0"s},
      {"macAddr", "", "\0"s},
      {"macAddr=", "", "\0"s},
      {"macAddr=aa&macAddr=bb", "aa", "aa\0"s},
      {"", "", "\0"s},
  };
  for (const Case &c : cases) {
    std::string bytes = decode(c.query);
    EXPECT_EQ(text(bytes), c.text) << c.query;
    EXPECT_EQ(bytes, c.bytes) << c.query;
  }
}

TEST(PmlQueryMac, NoQueryAndSmallBuffers) {
  EXPECT_EQ(decode(nullptr), std::string(1, '\0'));
  EXPECT_EQ(text(decode("macAddr=abcdef", 4)), "abc");
  EXPECT_EQ(decode("macAddr=abcdef", 0), "");
}

TEST(PmlTexts, OnlyExactlyOneIsEnableOrTrue) {
  struct Case {
    uint32_t value;
    const char *enable, *boolean;
  } cases[] = {{0, "disable", "false"}, {1, "enable", "true"}, {2, "disable", "false"}, {0xFFFFFFFF, "disable", "false"}};
  for (const Case &c : cases) {
    EXPECT_STREQ(kEnable.text(c.value), c.enable) << c.value;
    EXPECT_STREQ(kTrue.text(c.value), c.boolean) << c.value;
  }
}

// The argument kinds the MAC routes add: body text cut into an 18-byte
// buffer, keys found without regard to case, values compared exactly.
struct Loaded {
  kit::Slot slot;
  kit::Request req;
};

void load(const kit::Arg &a, const char *body, Loaded &l) {
  l.req.body = cJSON_Parse(body);
  kit::loadArg(a, l.slot, l.req);
}

TEST(PmlArgs, BodyMacIsCutToSeventeenInAnEighteenByteDescriptor) {
  struct Case {
    const char *body;
    const char *text;
  } cases[] = {
      {R"({"macAddr":"00:11:22:33:44:55"})", "00:11:22:33:44:55"},
      {R"({"MACADDR":"aa:bb"})", "aa:bb"},
      {R"({"macAddr":"00:11:22:33:44:55:66:77"})", "00:11:22:33:44:55"},
      {R"({"macAddr":17})", ""},
      {R"({})", ""},
  };
  for (const Case &c : cases) {
    Loaded l;
    load(bodyMac("macAddr"), c.body, l);
    EXPECT_EQ(l.slot.desc.size, kPmlMacSize) << c.body;
    EXPECT_STREQ(l.slot.desc.pstart, c.text) << c.body;
    EXPECT_EQ(l.slot.buf[17], '\0') << c.body;
  }
}

TEST(PmlArgs, KeywordKeysIgnoreCaseValuesDoNot) {
  struct Case {
    const char *body;
    uint32_t value;
  } cases[] = {
      {R"({"intfMode":"enable"})", 1}, {R"({"INTFMODE":"enable"})", 1}, {R"({"intfMode":"Enable"})", 0},
      {R"({"mode":"enable"})", 0},     {R"({"intfMode":1})", 0},        {R"({})", 0},
  };
  for (const Case &c : cases) {
    Loaded l;
    load(kit::bodyIs("intfMode", "enable"), c.body, l);
    EXPECT_EQ(l.slot.num, c.value) << c.body;
  }
}

TEST(PmlArgs, QueryMacReadsTheQueryString) {
  setenv("QUERY_STRING", "ifNum=2&macAddr=00%3A0e%3AC6%3AA1%3AB2%3AC3&vlanId=10", 1);
  Loaded l;
  kit::loadArg(queryMac(), l.slot, l.req);
  EXPECT_EQ(l.slot.desc.size, kPmlMacSize);
  EXPECT_STREQ(l.slot.desc.pstart, "00:0e:C6:A1:B2:C3");
  unsetenv("QUERY_STRING");
  kit::loadArg(queryMac(), l.slot, l.req);
  EXPECT_STREQ(l.slot.desc.pstart, "");
}

}  // namespace
