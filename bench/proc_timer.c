/* Whole-process timing, interleaved: reads a plan (JSON) of commands, runs
 * them round after round, each round in a rotated order so that no command
 * always follows the same neighbour, and prints one JSON line per run:
 * {"case": name, "round": r, "us": wall microseconds, "rss_kb": peak RSS}.
 *
 * Plan: {"rounds": N, "cases": [{"name": "...", "argv": ["..."],
 *        "env": ["K=V", ...], "stdin": "path or empty"}]} */
#include <cjson/cJSON.h>
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

enum { kMaxCases = 32, kMaxWords = 64 };

typedef struct {
  const char *name;
  char *argv[kMaxWords];
  char *env[kMaxWords];
  const char *stdinPath;
} Case;

static double nowUs(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t.tv_sec * 1e6 + t.tv_nsec / 1e3;
}

static char *readAll(const char *path) {
  FILE *f = fopen(path, "rb");
  if (!f) return NULL;
  fseek(f, 0, SEEK_END);
  long n = ftell(f);
  fseek(f, 0, SEEK_SET);
  char *text = calloc(1, (size_t)n + 1);
  if (text && fread(text, 1, (size_t)n, f) != (size_t)n) {
    free(text);
    text = NULL;
  }
  fclose(f);
  return text;
}

static void copyWords(const cJSON *array, char **words) {
  int i = 0;
  const cJSON *w;
  cJSON_ArrayForEach(w, array) {
    if (i < kMaxWords - 1 && cJSON_IsString(w)) words[i++] = w->valuestring;
  }
  words[i] = NULL;
}

static int loadCases(const cJSON *plan, Case *cases) {
  int n = 0;
  const cJSON *c;
  cJSON_ArrayForEach(c, cJSON_GetObjectItem(plan, "cases")) {
    if (n == kMaxCases) break;
    Case *k = &cases[n++];
    k->name = cJSON_GetStringValue(cJSON_GetObjectItem(c, "name"));
    copyWords(cJSON_GetObjectItem(c, "argv"), k->argv);
    copyWords(cJSON_GetObjectItem(c, "env"), k->env);
    k->stdinPath = cJSON_GetStringValue(cJSON_GetObjectItem(c, "stdin"));
    if (!k->name || !k->argv[0]) return -1;
  }
  return n;
}

/* One run: stdout and stderr to /dev/null, stdin from the case's file. */
static int runOnce(const Case *k, double *us, long *rssKb) {
  posix_spawn_file_actions_t fa;
  posix_spawn_file_actions_init(&fa);
  const char *in = (k->stdinPath && *k->stdinPath) ? k->stdinPath : "/dev/null";
  posix_spawn_file_actions_addopen(&fa, 0, in, O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&fa, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&fa, 2, "/dev/null", O_WRONLY, 0);
  double start = nowUs();
  pid_t pid;
  int rc = posix_spawn(&pid, k->argv[0], &fa, NULL, k->argv, k->env);
  posix_spawn_file_actions_destroy(&fa);
  if (rc != 0) return -1;
  int status = 0;
  struct rusage ru;
  if (wait4(pid, &status, 0, &ru) != pid) return -1;
  *us = nowUs() - start;
  *rssKb = ru.ru_maxrss;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

int main(int argc, char **argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: proc_timer PLAN.json\n");
    return 2;
  }
  char *text = readAll(argv[1]);
  cJSON *plan = text ? cJSON_Parse(text) : NULL;
  static Case cases[kMaxCases];
  int n = plan ? loadCases(plan, cases) : -1;
  if (n <= 0) {
    fprintf(stderr, "proc_timer: bad plan %s\n", argv[1]);
    return 2;
  }
  int rounds = cJSON_GetNumberValue(cJSON_GetObjectItem(plan, "rounds"));
  for (int r = 0; r < rounds; ++r) {
    for (int i = 0; i < n; ++i) {
      const Case *k = &cases[(r + i) % n];
      double us = 0;
      long rss = 0;
      int exitCode = runOnce(k, &us, &rss);
      printf("{\"case\":\"%s\",\"round\":%d,\"us\":%.1f,\"rss_kb\":%ld,\"exit\":%d}\n", k->name, r, us, rss,
             exitCode);
    }
  }
  cJSON_Delete(plan);
  free(text);
  return 0;
}
