// swagger-typescript-api, set up as the API description's first page shows
// (switch_swagger_typescript_api.ts, taken from the page): the session is the
// client's security data, which its security worker turns into the "session"
// header of every secured call (all of them). A refused call throws the response.
import { pollLinkState, switchClient } from "./switch_swagger_typescript_api";
import { Exactly, FailureCode, NO_PORT, run, typed } from "./common";

async function httpStatus(call: Promise<unknown>): Promise<number> {
  try {
    await call;
    return 200;
  } catch (e: unknown) {
    if (e instanceof Response) return e.status;
    throw e;
  }
}

run(async (baseUrl, session, readOnly) => {
  const api = switchClient(baseUrl, session).api;
  const read = (await api.getIfLinkState({ ifNum: 3 })).data;
  if (!("if" in read)) throw new Error(`read: ${read.resp.respCode}`);
  const linkState: "up" | "down" = read.if.linkState;

  const write = (await api.putIfAdminState({ ifNum: 3 }, { adminState: "enable" })).data;
  if (write.resp.respCode !== 0) throw new Error(`write: ${write.resp.respMsg}`);
  const wrote: "Success" = write.resp.respMsg;
  typed<Exactly<typeof write.resp.respCode, 0>>();

  const missing = (await api.getIfLinkState({ ifNum: NO_PORT })).data;
  if ("if" in missing) throw new Error("a port that is not there answered");
  // @ts-expect-error a failure carries no group
  missing.if;
  typed<Exactly<typeof missing.resp.respCode, FailureCode>>();

  const status = (await api.getIfStatus()).data;
  if (!("if" in status)) throw new Error(`status: ${status.resp.respCode}`);
  const ports = Array.isArray(status.if) ? status.if.map((port) => port.interface) : [status.if.interface];

  const poller = switchClient(baseUrl, readOnly);
  const poll = (await pollLinkState(poller, 3)).data;
  const polled = "if" in poll ? poll.if.linkState : `failed ${poll.resp.respCode}`;
  const refused = await httpStatus(poller.api.putIfAdminState({ ifNum: 3 }, { adminState: "disable" }));
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused };
});
