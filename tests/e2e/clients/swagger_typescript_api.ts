// swagger-typescript-api: the session is the client's security data, which
// its security worker turns into the "session" header of every secured call
// (all of them). A refused call throws the response.
import { Api } from "./gen/swagger_typescript_api/Api";
import { Exactly, FailureCode, NO_PORT, run, typed } from "./common";

function client(baseUrl: string, session: string): Api<string> {
  const api = new Api<string>({ baseUrl, securityWorker: (token) => (token ? { headers: { session: token } } : {}) });
  api.setSecurityData(session);
  return api;
}

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
  const api = client(baseUrl, session).api;
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

  const poller = client(baseUrl, readOnly).api;
  const poll = (await poller.getIfLinkState({ ifNum: 3 }, { headers: { Refresh: "1" } })).data;
  const polled = "if" in poll ? poll.if.linkState : `failed ${poll.resp.respCode}`;
  const refused = await httpStatus(poller.putIfAdminState({ ifNum: 3 }, { adminState: "disable" }));
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused };
});
