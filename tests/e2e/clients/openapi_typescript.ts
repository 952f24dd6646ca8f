// openapi-typescript's types with openapi-fetch, set up as the API
// description's first page shows (switch_openapi_fetch.ts, taken from the
// page): the session is a header of the client, sent with every call.
import { pollLinkState, switchClient } from "./switch_openapi_fetch";
import { Exactly, FailureCode, NO_PORT, present, run, typed } from "./common";

const LINK_STATE = "/api/v2/interfaces/if/link-state";
const ADMIN_STATE = "/api/v2/interfaces/if/admin-state";

run(async (baseUrl, session, readOnly) => {
  const api = switchClient(baseUrl, session);
  const read = present((await api.GET(LINK_STATE, { params: { query: { ifNum: 3 } } })).data, "read");
  if (!("if" in read)) throw new Error(`read: ${read.resp.respCode}`);
  const linkState: "up" | "down" = read.if.linkState;

  const write = present((await api.PUT(ADMIN_STATE, { params: { query: { ifNum: 3 } }, body: { adminState: "enable" } })).data,
                        "write");
  if (write.resp.respCode !== 0) throw new Error(`write: ${write.resp.respMsg}`);
  const wrote: "Success" = write.resp.respMsg;
  typed<Exactly<typeof write.resp.respCode, 0>>();

  const missing = present((await api.GET(LINK_STATE, { params: { query: { ifNum: NO_PORT } } })).data, "missing");
  if ("if" in missing) throw new Error("a port that is not there answered");
  // @ts-expect-error a failure carries no group
  missing.if;
  typed<Exactly<typeof missing.resp.respCode, FailureCode>>();

  const status = present((await api.GET("/api/v2/interfaces/if/status")).data, "status");
  if (!("if" in status)) throw new Error(`status: ${status.resp.respCode}`);
  const ports = Array.isArray(status.if) ? status.if.map((port) => port.interface) : [status.if.interface];

  const poller = switchClient(baseUrl, readOnly);
  const poll = present((await pollLinkState(poller, 3)).data, "poll");
  const polled = "if" in poll ? poll.if.linkState : `failed ${poll.resp.respCode}`;
  const refused = await poller.PUT(ADMIN_STATE, { params: { query: { ifNum: 3 } }, body: { adminState: "disable" } });
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused: refused.response.status };
});
