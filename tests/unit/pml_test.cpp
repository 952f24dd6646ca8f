#include "api/pml/pml_args.h"
#include "test_support.h"

using namespace std::string_literals;

// The buffer up to its last written byte, so that bytes written after a
// decoded 0 count.
static std::string decode(const char *query, size_t size = kPmlMacSize) {
  char buf[kPmlMacSize + 1];
  memset(buf, 'Z', sizeof buf);
  getQueryMacAddr(query, buf, size);
  std::string bytes(buf, size);
  return bytes.substr(0, bytes.find_last_not_of('Z') + 1);
}

TEST(PmlQueryMac, DecodesTheMacFieldToTheLetter) {
  struct Case { const char *query; std::string bytes; } cases[] = {
      {"macAddr=00%3A11%3A22%3A33%3A44%3A55", "00:11:22:33:44:55\0"s},
      {"ifNum=3&macAddr=00%3a11%3a22%3A33%3A44%3A55&vlanId=1", "00:11:22:33:44:55\0"s},
      {"macAddr=a+b", "a b\0"s},          {"macAddr=ab%", "ab%\0"s},    {"macAddr=ab%4", "ab%4\0"s},
      {"macAddr=%zz01", "\0"s "01\0"s},  // no hex digit: a 0 byte, and copying runs on
      {"macAddr=%4z", "\x04\0"s},         {"macAddr=%g1%9g", "\0\x09\0"s},
      {"macAddr=a%41b%Fa%af%0f", "aAb\xfa\xaf\x0f\0"s},
      {"macAddr=ab%&c=1&d=2", "ab\0=1\0"s},  // "%" before "&" takes "&" and the next character
      {"macAddr=a%4&x=1", "a\x04x=1\0"s},
      {"macAddr=ab%&", "ab%\0"s},  // next-to-last or last character of the query: kept as "%"
      {"macAddr=00%3A11%3A22%3A33%3A44%3A55%3A66", "00:11:22:33:44:55\0"s},  // cut after 17, decoded
      {"xmacAddr=00:11", "\0"s},  // the field starts a segment, spelled exactly; the first one wins
      {"xmacAddr=00:11&macAddr=aa", "aa\0"s}, {"macaddr=aa", "\0"s}, {"macAddr", "\0"s},
      {"macAddr=aa&macAddr=bb", "aa\0"s},     {nullptr, "\0"s},
  };
  for (const Case &c : cases) EXPECT_EQ(decode(c.query), c.bytes) << c.query;
  EXPECT_EQ(decode("macAddr=abcdef", 4), "abc\0"s);
  EXPECT_EQ(decode("macAddr=abcdef", 0), "");
}
