#include "switch/cli_files.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "frame/envelope.h"
#include "frame/log.h"

const char kCliWorkDir[] = "/mnt/application/quill/tmp";

namespace {

const char *gWorkDir = kCliWorkDir;

open_buffdesc describe(char *text) { return {static_cast<uint32_t>(strlen(text) + 1), text}; }

// The "end"/"configure" pair stands once before the two lines and twice
// after them; the platform's script reader expects exactly this layout.
bool writeScript(const char *path, const char *first, const char *second) {
  FILE *f = fopen(path, "w+");
  if (!f) {
    perror("Error opening file");
    return false;
  }
  fprintf(f, "end\nconfigure\n%s\n%s\nend\nconfigure\nend\nconfigure\n", first, second);
  return fclose(f) == 0;
}

}  // namespace

void cliUseWorkDir(const char *dir) { gWorkDir = dir ? dir : kCliWorkDir; }

void cliWorkFile(char *path, const char *format, ...) {
  int n = snprintf(path, kCliFileNameBuf, "%s/", gWorkDir);
  if (n < 0 || static_cast<size_t>(n) >= kCliFileNameBuf) return;
  va_list args;
  va_start(args, format);
  vsnprintf(path + n, kCliFileNameBuf - static_cast<size_t>(n), format, args);
  va_end(args);
}

void strCopyBounded(char *dst, const char *src, size_t size) {
  if (!dst || !src || size == 0) return;
  snprintf(dst, size, "%s", src);
}

uint32_t cliShowExecuteToFile(openapiClientHandle_t *handle, const char *command, const char *fileName) {
  if (!command || !fileName) {
    LOG_AT(3, "cliShowExecuteToFile", 172, "cliShowExecuteToFile: Invalid argument\r\n");
    return CODE_INVALID_ARGUMENT;
  }
  char cmd[kCliCommandBuf], file[kCliFileNameBuf];
  strCopyBounded(cmd, command, sizeof cmd);
  strCopyBounded(file, fileName, sizeof file);
  open_buffdesc cmdDesc = describe(cmd), fileDesc = describe(file);
  unlink(file);
  int result = rpcclt_openapiCliShowExecuteToFile(handle, &cmdDesc, &fileDesc);
  if (result != OPEN_E_NONE) {
    LOG_AT(3, "cliShowExecuteToFile", 187, "Execute show cmd faile, result:%d\r\n", result);
    return CODE_GENERAL_FAILED;
  }
  return CODE_SUCCESS;
}

uint32_t cliShowToText(openapiClientHandle_t *handle, const char *command, const char *fileName, size_t limit,
                       char **text) {
  uint32_t code = cliShowExecuteToFile(handle, command, fileName);
  FILE *f = code == CODE_SUCCESS ? fopen(fileName, "r") : nullptr;
  char *buf = f ? static_cast<char *>(calloc(limit, 1)) : nullptr;
  if (buf) fread(buf, 1, limit - 1, f);
  if (f) fclose(f);
  unlink(fileName);
  if (!buf) return CODE_GENERAL_FAILED;
  *text = buf;
  return CODE_SUCCESS;
}

uint32_t txtCfgApply(openapiClientHandle_t *handle, const char *inputName, const char *outputName) {
  if (!inputName || !outputName) {
    LOG_AT(3, "txtCfgApply", 200, "txtCfgApply: Invalid argument\r\n");
    return CODE_INVALID_ARGUMENT;
  }
  LOG_AT(7, "txtCfgApply", 204, "inputName=%s, outputName=%s\n", inputName, outputName);
  char in[kCliFileNameBuf], out[kCliFileNameBuf];
  strCopyBounded(in, inputName, sizeof in);
  strCopyBounded(out, outputName, sizeof out);
  open_buffdesc inDesc = describe(in), outDesc = describe(out);
  // Compressed in place: the same descriptor is source and destination.
  int result = rpcclt_openapiTxtCfgCompress(handle, &inDesc, &inDesc);
  if (result != OPEN_E_NONE) {
    LOG_AT(3, "txtCfgApply", 211, "Bad return code trying to compress the configuration file. (result = %d)\n",
           result);
    return CODE_GENERAL_FAILED;
  }
  result = rpcclt_openapiTxtCfgApply(handle, &inDesc, &outDesc);
  if (result != OPEN_E_NONE) {
    LOG_AT(3, "txtCfgApply", 216, "Bad return code trying to apply the configuration. (result = %d)\n", result);
    return CODE_GENERAL_FAILED;
  }
  return CODE_SUCCESS;
}

uint32_t cliModeCommandApply(openapiClientHandle_t *handle, const char *first, const char *second) {
  char script[kCliFileNameBuf], output[kCliFileNameBuf];
  cliWorkFile(script, "quill_cmd_in_file.txt");
  cliWorkFile(output, "quill_cmd_out_file.txt");
  unlink(script);
  unlink(output);
  if (!writeScript(script, first, second)) return CODE_GENERAL_FAILED;
  uint32_t code = txtCfgApply(handle, script, output);
  if (code != CODE_SUCCESS) {
    // Both files stay for inspection; the next apply deletes them first.
    LOG_AT(3, "cliModeCommandApply", 441, "openapiTxtCfgApply failed for interface dot1p queue map");
    return code;
  }
  unlink(script);
  unlink(output);
  return CODE_SUCCESS;
}

uint32_t cliConfigScriptApply(openapiClientHandle_t *handle, const char *first, const char *second, char *buffer,
                              size_t) {
  if (!first || !second || !buffer) return CODE_GENERAL_FAILED;
  return cliModeCommandApply(handle, first, second) == CODE_SUCCESS ? CODE_SUCCESS : CODE_GENERAL_FAILED;
}
