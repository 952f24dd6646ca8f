#include "frame/envelope.h"

#include <stdio.h>
#include <stdlib.h>

#include "frame/log.h"
#include "frame/request_io.h"

void HeapTextFree::operator()(char *p) const { free(p); }

namespace {

struct ErrorMessage {
  int32_t code;
  const char *message;
};

// Searched from the top; 10027 stands among the 1000x codes and 11000 has
// an empty message.
const ErrorMessage ErrorMessageTable[] = {
    {0, "Success"},
    {999, "unknown fail"},
    {10000, "General Failed"},
    {10001, "system error"},
    {10002, "Invalid Pointer"},
    {10027, "Disable PTP Mode"},
    {10003, "Invalid argument"},
    {10004, "Not implemented"},
    {10005, "Out of memory"},
    {10006, "Buffer error"},
    {10007, "Permission denied"},
    {10008, "Timed out"},
    {10009, "Object not init"},
    {10010, "Object init failed"},
    {10011, "Object exist"},
    {10012, "Object not exist"},
    {10015, "Device or resource empty"},
    {10016, "Device or resource open failed"},
    {10017, "Device or resource read failed"},
    {10018, "Device or resource write failed"},
    {10019, "Device or resource delete failed"},
    {10020, "Network is unreachable"},
    {10021, "Illegal request"},
    {10022, "Invalid weibo user"},
    {10023, "Request api not found"},
    {10024, "HTTP method is not suported for this request"},
    {10025, "Upload file error"},
    {10026, "upgrade file error"},
    {12001, "User name or password is incorrect"},
    {12002, "Change default password"},
    {12003, "User lockout when login fail more than 5 time, please try again in 5 minutes"},
    {13103, "Add Interface IP error"},
    {13101, "Create Vlan error"},
    {14101, "This Template is being used by a Network Profile. Please delete the associated Network Profile first"},
    {14102, "Profile type was duplicated"},
    {14103, "The AVB profile template should be only configured on one vlan"},
    {14104, "Unable to set 802.1AS Status with Enable,PTP TC is enable. Disable PTP TC to enable 802.1AS Status"},
    {14105, "Unable to set PTP TC with Enable,802.1AS Status is enable. Disable 802.1AS Status to enable PTP TC"},
    {14106, "The Shure profile template should be only configured on one vlan"},
    {14107, "The profile name is already in use. Please enter a different name."},
    {14108, "The current device does not support this profile"},
    {14109, "The SMPTE profile template should be only configured on one vlan"},
    {15001, "Setting LAG Name is failed. Please check if it is a duplicate name"},
    {16001, "The maximum of 100 Time Ranges is already configured"},
    {17001, "The configuration is invalid"},
    {18001, "IP Address/Netmask entered conflicts with the configured IP Address/Netmask of a router interface"},
    {20001, "Invalid physical mode for this port."},
    {11000, ""},
    {17002, "Unsupported Feature"},
    {17003, "PTP Boundary Clock API is not supported on this model"},
    {26001, "Kernel upgrade required, please upload ONIE file"},
    {-200, "Maximum user accounts reached"},
    {-201, "Invalid user name, does not meet policy"},
    {-202, "Invalid password, does not meet policy"},
    {-203, "Invalid user type"},
    {-204, "Invalid user, user does not exist"},
    {-205, "User account already exist"},
    {-206, "Should not modify user type of admin account"},
    {-207, "Request failed, not a privileged user"},
    {-208, "Can not create/delete admin account"},
    {-300, "Failed to set configuration on the device"},
    {-301, "Failed to get configuration from the device"},
    {-302, "Invalid REST API request"},
    {-7, "Failed to allocate memory"},
};

// OpEN result + 29 indexes this table.
const uint32_t kOpenResultCodes[30] = {
    CODE_NOT_FOUND,      CODE_UNSUPPORTED,    CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED,
    CODE_OBJECT_EXIST,   CODE_GENERAL_FAILED, CODE_INVALID_ARGUMENT, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED,
    CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED,
    CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED,
    CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED,
    CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_GENERAL_FAILED, CODE_SUCCESS,
};

void writeReply(const char *text, LineEnd end) {
  replyText(text);
  if (end == LineEnd::Newline) replyChar('\n');
}

// The envelope around `data` (may be null), printed formatted in one pass:
// the data tree is referred to where it stands, neither copied nor printed
// and parsed back. Null on failure, said in the log.
char *printEnvelope(int32_t code, const char *dataKey, const cJSON *data) {
  JsonPtr root(cJSON_CreateObject());
  if (!root) {
    LOG_AT(3, "responseJsonRreallocStr", 1123, "[MEM] Failed to create root object\n");
    return nullptr;
  }
  // Only read: the reference leaves the tree to its owner.
  cJSON *shared = const_cast<cJSON *>(data);
  if (code == 0 && dataKey && data && !cJSON_AddItemReferenceToObject(root.get(), dataKey, shared)) {
    LOG_AT(3, "responseJsonRreallocStr", 1141, "[MEM] Failed to parse data JSON\n");
    return nullptr;
  }
  cJSON *resp = cJSON_AddObjectToObject(root.get(), "resp");
  if (!resp) {
    LOG_AT(3, "responseJsonRreallocStr", 1129, "[MEM] Failed to create resp object\n");
    return nullptr;
  }
  cJSON_AddNumberToObject(resp, "respCode", code);
  cJSON_AddStringToObject(resp, "respMsg", errorMessageGet(code));
  cJSON_AddStringToObject(resp, "status", code == 0 ? "success" : "fail");
  char *text = cJSON_Print(root.get());
  if (!text) LOG_AT(3, "responseJsonRreallocStr", 1159, "[MEM] Failed to print JSON\n");
  return text;
}

}  // namespace

const char *errorMessageGet(int32_t code) {
  for (const ErrorMessage &row : ErrorMessageTable)
    if (row.code == code) return row.message;
  return "Error code unknown";
}

uint32_t openResultToCode(int result) {
  if (result < -29 || result > 0) return CODE_GENERAL_FAILED;
  return kOpenResultCodes[result + 29];
}

uint32_t responseJsonRreallocStr(int32_t code, const char *dataKey, const char *dataText, char **reply) {
  JsonPtr data;
  if (code == 0 && dataKey && dataText) {
    data.reset(cJSON_Parse(dataText));
    if (!data) {
      LOG_AT(3, "responseJsonRreallocStr", 1141, "[MEM] Failed to parse data JSON\n");
      return CODE_GENERAL_FAILED;
    }
  }
  char *text = printEnvelope(code, dataKey, data.get());
  if (!text) return CODE_GENERAL_FAILED;
  free(*reply);
  *reply = text;
  return CODE_SUCCESS;
}

void replyEnvelope(uint32_t code, const char *group, const cJSON *data, LineEnd end) {
  HeapText reply(printEnvelope(static_cast<int32_t>(code), group, data));
  if (reply) writeReply(reply.get(), end);
}

void replyInvalidArgument(void) { replyEnvelope(CODE_INVALID_ARGUMENT, nullptr, nullptr, LineEnd::Newline); }
