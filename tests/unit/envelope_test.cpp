#include <functional>

#include "frame/envelope.h"
#include "test_support.h"

TEST(Envelope, MessagesAndOpenResultCodes) {
  struct Message { int32_t code; const char *text; } messages[] = {
      {0, "Success"}, {10027, "Disable PTP Mode"}, {11000, ""}, {-7, "Failed to allocate memory"},
      {12345, "Error code unknown"}};
  for (const Message &m : messages) EXPECT_STREQ(errorMessageGet(m.code), m.text) << m.code;
  struct Result { int result; uint32_t code; } results[] = {
      {0, 0},      {-22, 10003}, {-24, 10011}, {-28, 17002},
      {-29, 10023}, {-1, 10000}, {1, 10000},   {-1000, 10000}};
  for (const Result &r : results) EXPECT_EQ(openResultToCode(r.result), r.code) << r.result;
}

static std::string envelope(const std::string &data, int code, const char *message) {
  return "{\n" + data + "\t\"resp\":\t{\n\t\t\"respCode\":\t" + std::to_string(code) + ",\n\t\t\"respMsg\":\t\"" +
         message + "\",\n\t\t\"status\":\t\"" + (code ? "fail" : "success") + "\"\n\t}\n}";
}

// Data goes first, and only with code 0; reads end without a newline,
// sets with one.
TEST(Envelope, ReplyShapes) {
  JsonPtr data(cJSON_Parse("{\"ifNum\":3}"));
  struct Case { std::function<void()> reply; std::string expected; } cases[] = {
      {[&] { replyRead(0, "if", nullptr); }, envelope("", 0, "Success")},
      {[&] { replyRead(10023, "if", data.get()); }, envelope("", 10023, "Request api not found")},
      {[] { replySetResult(0); }, envelope("", 0, "Success") + "\n"},
      {[] { replyInvalidArgument(); }, envelope("", 10003, "Invalid argument") + "\n"},
  };
  for (const Case &c : cases) {
    testing::internal::CaptureStdout();
    c.reply();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.expected);
  }
  char *reply = strdup("old");
  EXPECT_EQ(responseJsonRreallocStr(0, "if", "{not json", &reply), 10000u);
  EXPECT_STREQ(reply, "old");
  EXPECT_EQ(responseJsonRreallocStr(-200, "if", "{not json", &reply), 0u);  // failure: data unused
  EXPECT_EQ(reply, envelope("", -200, "Maximum user accounts reached"));
  free(reply);
}
