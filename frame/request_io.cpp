#include "frame/request_io.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

const RequestStreams *gStreams = nullptr;

}  // namespace

void requestStreamsUse(const RequestStreams *streams) { gStreams = streams; }

void replyText(const char *text) {
  if (!gStreams) fputs(text, stdout);
  else gStreams->write(gStreams->context, text, strlen(text));
}

void replyChar(char c) {
  if (!gStreams) fputc(c, stdout);
  else gStreams->write(gStreams->context, &c, 1);
}

int replyFormatV(const char *format, va_list args) {
  if (!gStreams) return vfprintf(stdout, format, args);
  // Most texts fit the stack buffer; a longer one is printed a second time
  // into the heap.
  char small[1024];
  va_list again;
  va_copy(again, args);
  int n = vsnprintf(small, sizeof small, format, args);
  if (n >= 0 && static_cast<size_t>(n) < sizeof small) {
    gStreams->write(gStreams->context, small, static_cast<size_t>(n));
  } else if (n >= 0) {
    char *big = static_cast<char *>(malloc(static_cast<size_t>(n) + 1));
    if (big && vsnprintf(big, static_cast<size_t>(n) + 1, format, again) == n)
      gStreams->write(gStreams->context, big, static_cast<size_t>(n));
    else n = -1;
    free(big);
  }
  va_end(again);
  return n;
}

void replyFormat(const char *format, ...) {
  va_list args;
  va_start(args, format);
  replyFormatV(format, args);
  va_end(args);
}

size_t requestBodyRead(char *buf, size_t length) {
  if (!gStreams) return fread(buf, 1, length, stdin);
  return gStreams->read(gStreams->context, buf, length);
}
