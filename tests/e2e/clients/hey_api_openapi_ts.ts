// @hey-api/openapi-ts, set up as the API description's first page shows
// (switch_heyapi.ts, taken from the page): the session is the client's API
// key (its `auth`), which the SDK sends as the "session" header of every call.
import { getIfLinkState, getIfStatus, putIfAdminState } from "./gen/heyapi/sdk.gen";
import { pollLinkState, useSwitch } from "./switch_heyapi";
import { Exactly, FailureCode, NO_PORT, present, run, typed } from "./common";

run(async (baseUrl, session, readOnly) => {
  useSwitch(baseUrl, session);
  const read = present((await getIfLinkState({ query: { ifNum: 3 } })).data, "read");
  if (!("if" in read)) throw new Error(`read: ${read.resp.respCode}`);
  const linkState: "up" | "down" = read.if.linkState;

  const write = present((await putIfAdminState({ query: { ifNum: 3 }, body: { adminState: "enable" } })).data, "write");
  if (write.resp.respCode !== 0) throw new Error(`write: ${write.resp.respMsg}`);
  const wrote: "Success" = write.resp.respMsg;
  typed<Exactly<typeof write.resp.respCode, 0>>();

  const missing = present((await getIfLinkState({ query: { ifNum: NO_PORT } })).data, "missing");
  if ("if" in missing) throw new Error("a port that is not there answered");
  // @ts-expect-error a failure carries no group
  missing.if;
  typed<Exactly<typeof missing.resp.respCode, FailureCode>>();

  const status = present((await getIfStatus()).data, "status");
  if (!("if" in status)) throw new Error(`status: ${status.resp.respCode}`);
  const ports = Array.isArray(status.if) ? status.if.map((port) => port.interface) : [status.if.interface];

  useSwitch(baseUrl, readOnly);
  const poll = present((await pollLinkState(3)).data, "poll");
  const polled = "if" in poll ? poll.if.linkState : `failed ${poll.resp.respCode}`;
  const refused = await putIfAdminState({ query: { ifNum: 3 }, body: { adminState: "disable" } });
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused: refused.response.status };
});
