#include "api/green/green_history.h"

#include "frame/envelope.h"
#include "frame/params.h"
#include "switch/open_client.h"

namespace {

constexpr char kGroup[] = "greenPwrSavHistory";

int nextEntryFromSwitch(open_pwr_sav_sample_t *sample) {
  return rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextEntryGet(&gOpenClient, sample);
}

void replySample(uint32_t code, const open_pwr_sav_sample_t &sample) {
  JsonPtr data(code == CODE_SUCCESS ? historySampleJson(sample) : nullptr);
  replyRead(code, kGroup, data.get());
}

uint16_t scanSampleNumber(const char *name) { return static_cast<uint16_t>(queryScanUint(name) & 0xFFFF); }

}  // namespace

uint32_t historyEntryAfter(uint16_t sampleNo, open_pwr_sav_sample_t *sample, NextEntryFn next) {
  if (sampleNo != 0 && sample->sampleNo != sampleNo) {
    bool found = false;
    for (uint32_t calls = 0; !found && sample->next != 0 && calls < kHistoryWalkLimit; ++calls) {
      int rc = next(sample);
      if (rc != OPEN_E_NONE) return openResultToCode(rc);
      found = sample->sampleNo == sampleNo;
    }
    if (!found) return CODE_NOT_FOUND;
  }
  if (sample->next == 0) return CODE_NOT_FOUND;
  return openResultToCode(next(sample));
}

cJSON *historySampleJson(const open_pwr_sav_sample_t &sample) {
  cJSON *o = cJSON_CreateObject();
  if (!o) return nullptr;
  using namespace history_doc;
  cJSON_AddNumberToObject(o, kSampleNo.name, sample.sampleNo);
  cJSON_AddNumberToObject(o, kSampleTime.name, sample.sampleTime);
  cJSON_AddNumberToObject(o, kPercentLpiTime.name, sample.percentLpiTime);
  cJSON_AddNumberToObject(o, kPercentLpiTimeTotal.name, sample.percentLpiTimeTotal);
  return o;
}

uint32_t greenHistoryFirstEntry(void) {
  open_pwr_sav_sample_t sample = {};
  int rc = rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet(&gOpenClient, queryScanUint(fields::kIntIfNum.name), &sample);
  replySample(openResultToCode(rc), sample);
  return 0;
}

uint32_t greenHistoryNextEntry(void) {
  uint32_t intIfNum = queryScanUint(fields::kIntIfNum.name);
  uint16_t sampleNo = scanSampleNumber(history_doc::kAfterSample.name);
  open_pwr_sav_sample_t sample = {};
  uint32_t code =
      openResultToCode(rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet(&gOpenClient, intIfNum, &sample));
  if (code == CODE_SUCCESS) code = historyEntryAfter(sampleNo, &sample, nextEntryFromSwitch);
  replySample(code, sample);
  return 0;
}

uint32_t greenHistoryNextSample(void) {
  uint32_t intIfNum = queryScanUint(fields::kIntIfNum.name);
  uint16_t curSample = scanSampleNumber(history_doc::kCurSample.name);
  open_pwr_sav_sample_t sample = {};
  int rc = rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextSampleGet(&gOpenClient, intIfNum, curSample, &sample);
  replySample(openResultToCode(rc), sample);
  return 0;
}
