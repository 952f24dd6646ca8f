// Request input: the query string of GET and DELETE, the body of POST and
// PUT, and the two ways handlers pick values out of a query string.
#ifndef FRAME_PARAMS_H
#define FRAME_PARAMS_H

#include <cjson/cJSON.h>
#include <stddef.h>
#include <stdint.h>

// The query string (at most 8192 characters) or the body; a heap text
// owned by the caller, or null.
char *requestDataGet(void);

// The "&"-separated pieces of `text`, in order, ending with a null entry.
char **queryParamsSplit(const char *text);
// Text after "=" of the first piece that contains `name` anywhere (a loose
// match); a pointer into the list, or null.
const char *queryParamValue(const char *name, char **list);
void queryParamsFree(char **list);

char *urlDecode(char *text);
// A hexadecimal digit's value, or -1.
int hexDigitValue(char c);

// Where the value of "name=" starts, the name anchored at the start of a
// query segment; null when absent.
const char *queryFieldValue(const char *query, const char *name);
// Where the value of "name=" starts, at the first place the text stands in
// the query, also inside a longer name ("intfname=" holds "name="); null
// when absent.
const char *queryLooseValue(const char *query, const char *name);
// A query value's length: up to the next "&" or the end.
size_t queryValueLength(const char *value);

// "name=" anchored at the start of a query segment, as unsigned decimal;
// 0 when absent.
uint32_t queryScanUint(const char *name);
uint32_t queryScanUintIn(const char *query, const char *name);

// Body values: keys are found without regard to case.
// A JSON number truncated toward zero into 0..4294967295; 0 otherwise.
uint32_t jsonToU32(const cJSON *item);
uint32_t bodyU32(const cJSON *body, const char *key);
// 1 when the item is a string equal to `word` exactly, else 0.
uint32_t bodyWord(const cJSON *body, const char *key, const char *word);
// The item's text when it is a string, else null.
const char *bodyText(const cJSON *body, const char *key);

// Parses the request body as JSON; null when there is none or it is not JSON.
cJSON *requestBodyParse(void);

#endif
