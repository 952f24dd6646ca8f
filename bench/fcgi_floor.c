/* The floor of a FastCGI request: a minimal C responder that registers with
 * OpEN once per process, as the program's responder does, and per request
 * makes the OpEN calls the program makes for a link-state read or for the
 * status of all ports, then prints an envelope built with cJSON (the
 * link-state one the same as the program's; the status one of the same
 * shape, with the raw values). Nothing else: no session, no log, no route
 * table. The program's FastCGI mode is measured against it. */
#include <cjson/cJSON.h>
#include <fcgiapp.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "open_api.h"

static openapiClientHandle_t client;

static cJSON *linkState(FCGX_ParamArray params) {
  const char *q = FCGX_GetParam("QUERY_STRING", params);
  unsigned ifNum = 0;
  if (q) sscanf(q, "ifNum=%u", &ifNum);
  uint32_t state = 1;
  openapiIfLinkStateGet(&client, ifNum, &state);
  cJSON *data = cJSON_CreateObject();
  cJSON_AddStringToObject(data, "linkState", state == 0 ? "up" : "down");
  return data;
}

static cJSON *statusOfAllPorts(void) {
  cJSON *list = cJSON_CreateArray();
  uint32_t ifNum = 0;
  for (int rc = openapiIfFirstGet(&client, 0, &ifNum); rc == OPEN_E_NONE;
       rc = openapiIfNextGet(&client, 0, ifNum, &ifNum)) {
    uint32_t speed = 0, duplex = 0, header = 0, soft = 0, fec = 0, fecOper = 0, trap = 0, config = 0, oper = 0;
    char descr[256] = "";
    open_buffdesc text = {sizeof descr, descr};
    rpcclt_openapiIfSpeedModeGet(&client, ifNum, &speed);
    rpcclt_openapiIfDuplexModeGet(&client, ifNum, &duplex);
    rpcclt_openapiIfEthernetHeaderSizeGet(&client, ifNum, &header);
    rpcclt_openapiIfDescrGet(&client, ifNum, &text);
    rpcclt_openapiIfSoftShutdownStateGet(&client, ifNum, &soft);
    rpcclt_openapiIntfFECModeGet(&client, ifNum, &fec, &fecOper);
    rpcclt_openapiIfLinkTrapGet(&client, ifNum, &trap);
    rpcclt_openapiIntfExpandablePortConfigModeGet(&client, ifNum, &config);
    rpcclt_openapiIntfExpandablePortOperModeGet(&client, ifNum, &oper);
    cJSON *port = cJSON_CreateObject();
    cJSON_AddNumberToObject(port, "interface", ifNum);
    cJSON_AddStringToObject(port, "admin-state", "down");
    cJSON_AddStringToObject(port, "link-state", "down");
    cJSON_AddStringToObject(port, "auto-negotiate", "enable");
    cJSON_AddStringToObject(port, "configured-speed", "unknown");
    cJSON_AddNumberToObject(port, "operational-speed", speed);
    cJSON_AddNumberToObject(port, "speed-mode", speed);
    cJSON_AddNumberToObject(port, "configured-duplex", duplex);
    cJSON_AddNumberToObject(port, "mtu", 0);
    cJSON_AddNumberToObject(port, "max-frame-size", 0);
    cJSON_AddNumberToObject(port, "ethernet-header-size", header);
    cJSON_AddStringToObject(port, "description", descr);
    cJSON_AddNumberToObject(port, "soft-shutdown", soft);
    cJSON_AddNumberToObject(port, "fec-mode", fec);
    cJSON_AddNumberToObject(port, "link-trap", trap);
    cJSON_AddNumberToObject(port, "expandable-config-mode", config);
    cJSON_AddNumberToObject(port, "expandable-oper-mode", oper);
    cJSON_AddItemToArray(list, port);
  }
  return list;
}

static void printEnvelope(FCGX_Stream *out, cJSON *data) {
  cJSON *root = cJSON_CreateObject();
  cJSON_AddItemToObject(root, "if", data);
  cJSON *resp = cJSON_AddObjectToObject(root, "resp");
  cJSON_AddNumberToObject(resp, "respCode", 0);
  cJSON_AddStringToObject(resp, "respMsg", "Success");
  cJSON_AddStringToObject(resp, "status", "success");
  char *text = cJSON_Print(root);
  FCGX_PutS("Content-Type: application/json\r\n\r\n", out);
  FCGX_PutS(text, out);
  free(text);
  cJSON_Delete(root);
}

int main(void) {
  if (openapiClientRegister("fcgi_floor", &client) != OPEN_E_NONE) return 1;
  if (rpcclt_openapiConnectivityCheck(&client) != OPEN_E_NONE) return 1;
  char os[100] = {0};
  open_buffdesc desc = {sizeof os, os};
  open_revision_data_t api = {0};
  rpcclt_openapiNetworkOSVersionGet(&client, &desc);
  rpcclt_openapiApiVersionGet(&client, &api);
  FCGX_Request request;
  if (FCGX_Init() != 0 || FCGX_InitRequest(&request, 0, 0) != 0) return 1;
  while (FCGX_Accept_r(&request) >= 0) {
    const char *uri = FCGX_GetParam("REQUEST_URI", request.envp);
    printEnvelope(request.out, uri && strstr(uri, "/status") ? statusOfAllPorts() : linkState(request.envp));
    FCGX_Finish_r(&request);
  }
  openapiClientTearDown(&client);
  return 0;
}
