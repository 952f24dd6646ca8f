// In-process costs of the pieces every request pays for: building the
// route table, finding the route, scanning the query, printing the reply.
#include <benchmark/benchmark.h>
#include <stdio.h>
#include <stdlib.h>

#include "api/program.h"
#include "frame/envelope.h"
#include "frame/params.h"
#include "frame/route_table.h"

namespace {

constexpr char kIfDir[] = "/api/v2/interfaces/if";

RouteTable *builtTable() {
  RouteTable *table = routeTableCreate();
  registerRoutes(table);
  return table;
}

// The program never frees its table (it exits after one request); freeing
// here happens outside the timed part.
void freeUntimed(benchmark::State &state, RouteTable *table) {
  state.PauseTiming();
  routeTableFree(table);
  state.ResumeTiming();
}

void BM_RouteTableBuild(benchmark::State &state) {
  for (auto _ : state) freeUntimed(state, builtTable());
}
BENCHMARK(BM_RouteTableBuild);

void BM_Dispatch(benchmark::State &state) {
  RouteTable *table = builtTable();
  for (auto _ : state) {
    RouteNode *dir = routeDirGet(table, kIfDir);
    benchmark::DoNotOptimize(routeFind(dir, "link-state", "GET"));
  }
  routeTableFree(table);
}
BENCHMARK(BM_Dispatch);

void BM_BuildAndDispatch(benchmark::State &state) {
  for (auto _ : state) {
    RouteTable *table = builtTable();
    RouteNode *dir = routeDirGet(table, kIfDir);
    benchmark::DoNotOptimize(routeFind(dir, "admin-state", "PUT"));
    freeUntimed(state, table);
  }
}
BENCHMARK(BM_BuildAndDispatch);

void BM_QueryScanUint(benchmark::State &state) {
  setenv("QUERY_STRING", "ifNum=17&vlanId=100&intIfNum=3", 1);
  for (auto _ : state) benchmark::DoNotOptimize(queryScanUint("intIfNum"));
}
BENCHMARK(BM_QueryScanUint);

void BM_QueryLookup(benchmark::State &state) {
  for (auto _ : state) {
    char **list = queryParamsSplit("intfName=0%2F5&vlanId=100&macAddr=00%3A11%3A22%3A33%3A44%3A55");
    benchmark::DoNotOptimize(queryParamValue("macAddr", list));
    queryParamsFree(list);
  }
}
BENCHMARK(BM_QueryLookup);

void BM_UrlDecode(benchmark::State &state) {
  for (auto _ : state) {
    char text[] = "00%3A11%3A22%3A33%3A44%3A55+lag%201";
    benchmark::DoNotOptimize(urlDecode(text));
  }
}
BENCHMARK(BM_UrlDecode);

void BM_Envelope(benchmark::State &state) {
  for (auto _ : state) {
    char *reply = nullptr;
    responseJsonRreallocStr(0, "if", "{\"linkState\":\"up\"}", &reply);
    benchmark::DoNotOptimize(reply);
    free(reply);
  }
}
BENCHMARK(BM_Envelope);

}  // namespace

BENCHMARK_MAIN();
