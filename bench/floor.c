/* The floor of one request: a minimal C program that makes the OpEN round
 * trips of a link-state read (registration, connectivity check, the two
 * version reads, the call, tear-down) through the same client library and
 * prints the same envelope with cJSON. Nothing else: no session, no log,
 * no route table. The CGI is measured against it. */
#include <cjson/cJSON.h>
#include <stdio.h>
#include <stdlib.h>

#include "open_api.h"

static unsigned ifNumFromQuery(void) {
  const char *q = getenv("QUERY_STRING");
  unsigned n = 0;
  if (q && sscanf(q, "ifNum=%u", &n) == 1) return n;
  return 0;
}

static void printEnvelope(const char *linkState) {
  cJSON *root = cJSON_CreateObject();
  cJSON *data = cJSON_AddObjectToObject(root, "if");
  cJSON_AddStringToObject(data, "linkState", linkState);
  cJSON *resp = cJSON_AddObjectToObject(root, "resp");
  cJSON_AddNumberToObject(resp, "respCode", 0);
  cJSON_AddStringToObject(resp, "respMsg", "Success");
  cJSON_AddStringToObject(resp, "status", "success");
  char *text = cJSON_Print(root);
  fputs("Content-Type: application/json\r\n\r\n", stdout);
  fputs(text, stdout);
  free(text);
  cJSON_Delete(root);
}

int main(void) {
  openapiClientHandle_t client = {0};
  if (openapiClientRegister("floor", &client) != OPEN_E_NONE) return 1;
  if (rpcclt_openapiConnectivityCheck(&client) != OPEN_E_NONE) return 1;
  char os[100] = {0};
  open_buffdesc desc = {sizeof os, os};
  open_revision_data_t api = {0};
  rpcclt_openapiNetworkOSVersionGet(&client, &desc);
  rpcclt_openapiApiVersionGet(&client, &api);
  uint32_t state = 1;
  if (openapiIfLinkStateGet(&client, ifNumFromQuery(), &state) != OPEN_E_NONE) return 1;
  printEnvelope(state == 0 ? "up" : "down");
  openapiClientTearDown(&client);
  return 0;
}
