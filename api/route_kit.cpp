#include "api/route_kit.h"

namespace kit {

namespace {

const char *lookupValue(Request &r, const char *name) { return queryParamValue(name, r.query); }

void describeText(Slot &s, const char *text, size_t longest) {
  size_t n = strnlen(text, longest < kSlotText ? longest : kSlotText - 1);
  memcpy(s.buf, text, n);
  s.buf[n] = '\0';
  s.desc = {static_cast<uint32_t>(n + 1), s.buf};
}

}  // namespace

void splitQuery(Request &r) {
  char *data = requestDataGet();
  r.query = queryParamsSplit(data);
  free(data);
}

void loadArg(const Arg &a, Slot &s, Request &r) {
  switch (a.kind) {
    case Kind::Scan:
      s.num = queryScanUint(a.field->name);
      break;
    case Kind::Lookup: {
      const char *v = lookupValue(r, a.field->name);
      s.num = v ? static_cast<uint32_t>(strtoul(v, nullptr, 10)) : 0;
      break;
    }
    case Kind::LookupText: {
      // Points into the query list, which lives as long as the request.
      const char *v = lookupValue(r, a.field->name);
      if (!v) v = "";
      s.desc = {static_cast<uint32_t>(strlen(v) + 1), const_cast<char *>(v)};
      break;
    }
    case Kind::Body:
      s.num = bodyU32(r.body, a.field->name);
      break;
    case Kind::BodyWord: {
      const char *key = !a.fallback || cJSON_GetObjectItem(r.body, a.field->name) ? a.field->name : a.fallback->name;
      s.num = bodyWord(r.body, key, a.word.s);
      break;
    }
    case Kind::BodyMapped:
      s.num = a.value->value(bodyText(r.body, a.field->name));
      break;
    case Kind::BodyText: {
      const char *t = bodyText(r.body, a.field->name);
      describeText(s, t ? t : "", a.longest);
      break;
    }
    case Kind::BodyBuffer: {
      const char *t = bodyText(r.body, a.field->name);
      memset(s.buf, 0, a.size);
      if (t) memcpy(s.buf, t, strnlen(t, a.size - 1));
      s.desc = {a.size, s.buf};
      break;
    }
    case Kind::QueryBuffer:
      memset(s.buf, 0, a.size);
      a.reader->read(getenv("QUERY_STRING"), s.buf, a.size);
      s.desc = {a.size, s.buf};
      break;
    case Kind::Out:
      s.num = a.preset;
      break;
    case Kind::OutText:
      memset(s.buf, 0, a.size);
      s.desc = {a.size, s.buf};
      break;
  }
}

void renderArg(cJSON *data, const Arg &a, const Slot &s) {
  if (a.kind == Kind::OutText) {
    cJSON_AddStringToObject(data, a.field->name, s.buf);
  } else if (a.kind == Kind::Out) {
    if (a.text) cJSON_AddStringToObject(data, a.field->name, a.text->text(s.num));
    else cJSON_AddNumberToObject(data, a.field->name, s.num);
  }
}

}  // namespace kit
