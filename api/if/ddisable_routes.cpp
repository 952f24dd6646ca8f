#include "api/if/ddisable_routes.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "api/if/ddisable_parse.h"
#include "frame/envelope.h"
#include "frame/params.h"
#include "switch/cli_files.h"
#include "switch/if_walk.h"
#include "switch/open_client.h"

namespace {

constexpr char kShowRecovery[] = "show errdisable recovery";
constexpr size_t kRecoveryBuffer = 0x20000;
constexpr size_t kConfigLineBuf = 256;
constexpr size_t kApplyResultBuf = 8192;

uint32_t showRecoveryToFile(HeapText *text) {
  char file[kCliFileNameBuf];
  cliWorkFile(file, "if_show_%d", static_cast<int>(getpid()));
  char *buf = nullptr;
  uint32_t code = cliShowToText(&gOpenClient, kShowRecovery, file, kShowTextBuf, &buf);
  text->reset(buf);
  return code;
}

// A running number keeps two reads of one process apart.
uint32_t showRecoveryToBuffer(HeapText *text) {
  static unsigned sequence = 0;
  char file[kCliFileNameBuf];
  cliWorkFile(file, "ifCliFb_show_%d_%u", static_cast<int>(getpid()), sequence++);
  char *buf = nullptr;
  uint32_t code = cliShowToText(&gOpenClient, kShowRecovery, file, kRecoveryBuffer, &buf);
  text->reset(buf);
  return code;
}

uint32_t applyRecoveryConfig(const char *line) {
  char result[kApplyResultBuf] = {};
  return cliConfigScriptApply(&gOpenClient, "configure", line, result, sizeof result);
}

using namespace recovery_doc;

void answerNumber(const doc::Field &field, uint32_t value) {
  JsonPtr data(cJSON_CreateObject());
  if (data) cJSON_AddNumberToObject(data.get(), field.name, value);
  replyRead(CODE_SUCCESS, "if", data.get());
}

void answerText(const doc::Field &field, const char *value) {
  JsonPtr data(cJSON_CreateObject());
  if (data) cJSON_AddStringToObject(data.get(), field.name, value);
  replyRead(CODE_SUCCESS, "if", data.get());
}

void replyFailure(uint32_t code) { replyRead(code, "if", nullptr); }

}  // namespace

// The CLI judges the range; an interval it refuses fails the apply.
uint32_t recoveryIntervalSetHandler(void) {
  JsonPtr body(requestBodyParse());
  const cJSON *interval = body ? cJSON_GetObjectItem(body.get(), kIntervalField.name) : nullptr;
  if (!cJSON_IsNumber(interval)) {
    replyInvalidArgument();
    return 0;
  }
  char line[kConfigLineBuf];
  snprintf(line, sizeof line, "errdisable recovery interval %u", jsonToU32(interval));
  replySetResult(applyRecoveryConfig(line));
  return 0;
}

uint32_t recoveryIntervalGetHandler(void) {
  HeapText show;
  if (showRecoveryToFile(&show) != CODE_SUCCESS) {
    replyFailure(CODE_UNSUPPORTED);
    return 0;
  }
  answerNumber(kIntervalField, parseRecoveryInterval(show.get()));
  return 0;
}

uint32_t recoveryCauseGetHandler(void) {
  char cause[kCauseNameBuf];
  recoveryCauseFromQuery(getenv("QUERY_STRING"), cause, sizeof cause);
  const char *cliName = recoveryCauseCliName(cause);
  HeapText show;
  if (!cliName || showRecoveryToFile(&show) != CODE_SUCCESS) {
    replyFailure(CODE_UNSUPPORTED);
    return 0;
  }
  CauseMode mode = parseCauseMode(show.get(), cliName);
  if (mode == CauseMode::Missing) replyFailure(CODE_GENERAL_FAILED);
  else answerText(kModeField, kModeField.texts->text(mode == CauseMode::Enabled));
  return 0;
}

uint32_t recoveryCauseSetHandler(void) {
  JsonPtr body(requestBodyParse());
  if (!body) {
    replyInvalidArgument();
    return 0;
  }
  const char *cliName = recoveryCauseCliName(bodyText(body.get(), kCauseField.name));
  const char *mode = bodyText(body.get(), kModeField.name);
  if (!cliName || !mode) {
    replyInvalidArgument();
    return 0;
  }
  char line[kConfigLineBuf];
  bool on = strcmp(mode, kModeField.texts->text(1)) == 0;
  snprintf(line, sizeof line, "%serrdisable recovery cause %s", on ? "" : "no ", cliName);
  replySetResult(applyRecoveryConfig(line));
  return 0;
}

uint32_t nextPhysicalIfHandler(void) {
  uint32_t next = 0;
  uint32_t code = swapiIfFirstOrNextGet(&gOpenClient, queryScanUint(fields::kPrevIfNum.name), &next);
  if (code != CODE_SUCCESS) replyFailure(code);
  else answerNumber(fields::kNextIfNum, next);
  return 0;
}

uint32_t recoveryFeatureListHandler(void) {
  HeapText show;
  uint32_t code = showRecoveryToBuffer(&show);
  if (code != CODE_SUCCESS) {
    replyFailure(code);
    return 0;
  }
  char features[kFeatureListBuf];
  if (!parseFeatureList(show.get(), features, sizeof features)) replyFailure(CODE_GENERAL_FAILED);
  else answerText(kFeatureListField, features);
  return 0;
}

uint32_t recoveryTimeLeftHandler(void) {
  HeapText show;
  uint32_t code = showRecoveryToBuffer(&show);
  if (code != CODE_SUCCESS) {
    replyFailure(code);
    return 0;
  }
  answerNumber(kTimeLeftField, parseRecoveryTimeLeft(show.get()));
  return 0;
}
