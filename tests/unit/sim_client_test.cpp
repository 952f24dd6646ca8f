#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cjson/cJSON.h>
#include <string.h>

#include <string>
#include <vector>
#include <thread>

#include "open_api.h"
#include "test_support.h"

namespace {

TEST(SimClient, AnUnreachableServiceFailsItsChecksNotItsRegistration) {
  TempDir dir;
  std::string path = dir.file("nobody.sock");
  ScopedEnv env({{"OPEN_SIM_SOCKET", path.c_str()}});
  openapiClientHandle_t client = {};
  EXPECT_EQ(openapiClientRegister("unit", &client), OPEN_E_NONE);
  EXPECT_EQ(rpcclt_openapiConnectivityCheck(&client), OPEN_E_FAIL);
  uint32_t state = 7;
  EXPECT_EQ(openapiIfLinkStateGet(&client, 1, &state), OPEN_E_FAIL);
  EXPECT_EQ(state, 7u);
  EXPECT_EQ(openapiClientTearDown(&client), OPEN_E_NONE);
}

TEST(SimClient, AServiceThatDiesMidRequestFailsTheCall) {
  TempDir dir;
  std::string path = dir.file("dying.sock");
  int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un addr = {};
  addr.sun_family = AF_UNIX;
  snprintf(addr.sun_path, sizeof addr.sun_path, "%s", path.c_str());
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr *>(&addr), sizeof addr), 0);
  ASSERT_EQ(listen(listener, 1), 0);
  // Accepts, answers the registration, then reads the next request and
  // closes without a reply.
  std::thread dying([listener] {
    int fd = accept(listener, nullptr, nullptr);
    char buf[4096];
    recv(fd, buf, sizeof buf, 0);
    const char reply[] = {5, 0, 0, 0, 0, 0, 0, 0, 1};  // length 5: result 0, one argument, an input
    send(fd, reply, sizeof reply, 0);
    recv(fd, buf, sizeof buf, 0);
    close(fd);
  });
  ScopedEnv env({{"OPEN_SIM_SOCKET", path.c_str()}});
  openapiClientHandle_t client = {};
  EXPECT_EQ(openapiClientRegister("unit", &client), OPEN_E_NONE);
  uint32_t state = 7;
  EXPECT_EQ(openapiIfLinkStateGet(&client, 1, &state), OPEN_E_FAIL);
  EXPECT_EQ(state, 7u);
  dying.join();
  close(listener);
}

TEST(SimClient, OutputsTravelBackAndInputsDoNot) {
  InProcessSim sim;
  openapiClientHandle_t client = {};
  ASSERT_EQ(openapiClientRegister("unit", &client), OPEN_E_NONE);
  char name[8];
  memset(name, 'x', sizeof name);
  open_buffdesc desc = {sizeof name, name};
  EXPECT_EQ(openapiIfNameGet(&client, 25, &desc), OPEN_E_NONE);
  EXPECT_STREQ(name, "0/25");
  open_buffdesc tiny = {3, name};
  EXPECT_EQ(openapiIfNameGet(&client, 25, &tiny), OPEN_E_NONE);
  EXPECT_STREQ(name, "0/");  // cut to the buffer the caller described
  char lagName[] = "lag2";
  const open_buffdesc in = {sizeof lagName, lagName};
  uint32_t ifNum = 0;
  EXPECT_EQ(rpcclt_openapiIfNumGet(&client, &in, &ifNum), OPEN_E_NONE);
  EXPECT_EQ(ifNum, 651u);
  open_revision_data_t version = {};
  EXPECT_EQ(rpcclt_openapiApiVersionGet(&client, &version), OPEN_E_NONE);
  EXPECT_EQ(version.version, 27);
  EXPECT_EQ(openapiIfTypeGet(&client, 9999, &ifNum), OPEN_E_NOT_FOUND);
  openapiClientTearDown(&client);
}

// The journal is written by hand for speed; every text a call can carry
// must come back out of it unchanged.
TEST(SimClient, JournalLinesAreJsonThatGivesBackEveryInput) {
  InProcessSim sim;
  openapiClientHandle_t client = {};
  ASSERT_EQ(openapiClientRegister("unit", &client), OPEN_E_NONE);
  const char *texts[] = {"lag2", "quote\" back\\slash", "line\nfeed\ttab\rcr", "\x01\x1f ctl", "0/5\xc3\xa9", ""};
  for (const char *t : texts) {
    char copy[64];
    snprintf(copy, sizeof copy, "%s", t);
    const open_buffdesc in = {static_cast<uint32_t>(strlen(copy) + 1), copy};
    uint32_t ifNum = 0;
    rpcclt_openapiIfNumGet(&client, &in, &ifNum);
  }
  openapiClientTearDown(&client);
  std::string journal;
  sim.control({"journal"}, &journal);
  std::vector<std::string> seen;
  for (size_t at = 0, nl; (nl = journal.find('\n', at)) != std::string::npos; at = nl + 1) {
    cJSON *entry = cJSON_Parse(journal.substr(at, nl - at).c_str());
    ASSERT_NE(entry, nullptr) << journal.substr(at, nl - at);
    if (strcmp(cJSON_GetObjectItem(entry, "call")->valuestring, "rpcclt_openapiIfNumGet") == 0) {
      const cJSON *arg = cJSON_GetArrayItem(cJSON_GetObjectItem(entry, "in"), 0);
      seen.push_back(cJSON_GetObjectItem(arg, "text")->valuestring);
      EXPECT_EQ(cJSON_GetObjectItem(arg, "size")->valuedouble, seen.back().size() + 1.0);
    }
    cJSON_Delete(entry);
  }
  EXPECT_EQ(seen, std::vector<std::string>(std::begin(texts), std::end(texts)));
}

}  // namespace
