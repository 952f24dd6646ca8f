#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "frame/envelope.h"

namespace {

std::string build(int32_t code, const char *key, const char *data) {
  char *reply = nullptr;
  EXPECT_EQ(responseJsonRreallocStr(code, key, data, &reply), 0u);
  std::string s = reply ? reply : "";
  free(reply);
  return s;
}

TEST(Envelope, MessagesComeFromTheTableInItsOrder) {
  struct Case {
    int32_t code;
    const char *message;
  } cases[] = {
      {0, "Success"},       {10000, "General Failed"}, {10003, "Invalid argument"},    {10011, "Object exist"},
      {10023, "Request api not found"}, {17002, "Unsupported Feature"}, {10027, "Disable PTP Mode"},
      {11000, ""},          {12345, "Error code unknown"}, {-200, "Maximum user accounts reached"},
      {-7, "Failed to allocate memory"}, {26001, "Kernel upgrade required, please upload ONIE file"},
  };
  for (const Case &c : cases) EXPECT_STREQ(errorMessageGet(c.code), c.message) << c.code;
}

TEST(Envelope, OpenResultsMapToReplyCodes) {
  struct Case {
    int result;
    uint32_t code;
  } cases[] = {{0, 0},      {-22, 10003}, {-24, 10011}, {-28, 17002}, {-29, 10023}, {-1, 10000},
               {-27, 10000}, {-30, 10000}, {5, 10000},   {-23, 10000}, {-1000, 10000}};
  for (const Case &c : cases) EXPECT_EQ(openResultToCode(c.result), c.code) << c.result;
}

TEST(Envelope, DataComesFirstAndOnlyOnSuccess) {
  EXPECT_EQ(build(0, "if", "{\"ifNum\":3}"),
            "{\n\t\"if\":\t{\n\t\t\"ifNum\":\t3\n\t},\n\t\"resp\":\t{\n\t\t\"respCode\":\t0,\n"
            "\t\t\"respMsg\":\t\"Success\",\n\t\t\"status\":\t\"success\"\n\t}\n}");
  EXPECT_EQ(build(10003, "if", "{\"ifNum\":3}"),
            "{\n\t\"resp\":\t{\n\t\t\"respCode\":\t10003,\n\t\t\"respMsg\":\t\"Invalid argument\",\n"
            "\t\t\"status\":\t\"fail\"\n\t}\n}");
  EXPECT_NE(build(-200, nullptr, nullptr).find("\"respCode\":\t-200,"), std::string::npos);
  EXPECT_NE(build(11000, nullptr, nullptr).find("\"respMsg\":\t\"\","), std::string::npos);
}

TEST(Envelope, UnparsableDataFailsAndKeepsTheOldText) {
  char *reply = strdup("old");
  EXPECT_EQ(responseJsonRreallocStr(0, "if", "{not json", &reply), 10000u);
  EXPECT_STREQ(reply, "old");
  EXPECT_EQ(responseJsonRreallocStr(0, nullptr, "{not json", &reply), 0u);  // no key: data unused
  EXPECT_NE(std::string(reply).find("Success"), std::string::npos);
  free(reply);
}

TEST(Envelope, ReadsEndWithoutNewlineSetsWithOne) {
  testing::internal::CaptureStdout();
  replyWithCode(17002);
  std::string read = testing::internal::GetCapturedStdout();
  testing::internal::CaptureStdout();
  replyInvalidArgument();
  std::string set = testing::internal::GetCapturedStdout();
  EXPECT_EQ(read.back(), '}');
  EXPECT_NE(read.find("Unsupported Feature"), std::string::npos);
  EXPECT_EQ(set.substr(set.size() - 2), "}\n");
  EXPECT_NE(set.find("\"respCode\":\t10003"), std::string::npos);
}

}  // namespace
