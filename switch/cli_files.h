// The switch's command line, reached through OpEN: a "show" command run
// into a text file, and configuration lines applied from a small script.
#ifndef SWITCH_CLI_FILES_H
#define SWITCH_CLI_FILES_H

#include <stddef.h>
#include <stdint.h>

#include "open_api.h"

inline constexpr size_t kCliFileNameBuf = 96;

// The folder of the exchange's files; tests point it elsewhere (null: back
// to the switch's own folder).
extern const char kCliWorkDir[];
void cliUseWorkDir(const char *dir);
// "<work folder>/<name>" into `path` (kCliFileNameBuf bytes), cut to fit.
void cliWorkFile(char *path, const char *format, ...) __attribute__((format(printf, 2, 3)));
inline constexpr size_t kCliCommandBuf = 255;
inline constexpr size_t kShowTextBuf = 8192;

void strCopyBounded(char *dst, const char *src, size_t size);

uint32_t cliShowExecuteToFile(openapiClientHandle_t *handle, const char *command, const char *fileName);
uint32_t txtCfgApply(openapiClientHandle_t *handle, const char *inputName, const char *outputName);
uint32_t cliModeCommandApply(openapiClientHandle_t *handle, const char *first, const char *second);
uint32_t cliConfigScriptApply(openapiClientHandle_t *handle, const char *first, const char *second, char *buffer,
                              size_t size);

// Runs `command` into `fileName`, reads at most limit-1 bytes of it into a
// new zeroed heap text of `limit` bytes, and deletes the file whatever
// happened. 0 with *text set, or 10000.
uint32_t cliShowToText(openapiClientHandle_t *handle, const char *command, const char *fileName, size_t limit,
                       char **text);

#endif
