// Where a request's input comes from and where its reply goes. A CGI
// process has one request and uses the process's standard streams; a
// FastCGI responder points these at each request's own streams in turn.
// Every byte the program prints passes through here, so that the handlers
// print the same in both modes without knowing which one runs.
#ifndef FRAME_REQUEST_IO_H
#define FRAME_REQUEST_IO_H

#include <stdarg.h>
#include <stddef.h>

struct RequestStreams {
  void (*write)(void *context, const char *text, size_t length);
  // Up to `length` bytes of the body; fewer only at its end.
  size_t (*read)(void *context, char *buf, size_t length);
  void *context;
};
// Null: the process's standard output and input again.
void requestStreamsUse(const RequestStreams *streams);

void replyText(const char *text);
void replyChar(char c);
void replyFormat(const char *format, ...) __attribute__((format(printf, 1, 2)));
// The number of bytes written, as vfprintf counts them.
int replyFormatV(const char *format, va_list args) __attribute__((format(printf, 1, 0)));

// Reads the body as fread does from standard input.
size_t requestBodyRead(char *buf, size_t length);

#endif
