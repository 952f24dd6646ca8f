// openapi-typescript's types with openapi-fetch: the session is a header of
// the client, which openapi-fetch sends with every call.
import createClient from "openapi-fetch";
import type { paths } from "./gen/openapi_fetch/schema";
import { Exactly, FailureCode, NO_PORT, present, run, typed } from "./common";

const LINK_STATE = "/api/v2/interfaces/if/link-state";
const ADMIN_STATE = "/api/v2/interfaces/if/admin-state";

run(async (baseUrl, session, readOnly) => {
  const api = createClient<paths>({ baseUrl, headers: { session } });
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

  const poller = createClient<paths>({ baseUrl, headers: { session: readOnly } });
  const poll = present((await poller.GET(LINK_STATE, { params: { query: { ifNum: 3 }, header: { Refresh: "1" } } })).data,
                       "poll");
  const polled = "if" in poll ? poll.if.linkState : `failed ${poll.resp.respCode}`;
  const refused = await poller.PUT(ADMIN_STATE, { params: { query: { ifNum: 3 } }, body: { adminState: "disable" } });
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused: refused.response.status };
});
