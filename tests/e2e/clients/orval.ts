// orval's axios functions: they call the shared axios instance, whose
// defaults carry the base URL and the session for every call. A refused
// call rejects with the response.
import axios from "axios";
import { getIfLinkState, getIfStatus, putIfAdminState } from "./gen/orval/api";
import { Exactly, FailureCode, NO_PORT, run, typed } from "./common";

function useSession(session: string): void {
  axios.defaults.headers.common["session"] = session;
}

run(async (baseUrl, session, readOnly) => {
  axios.defaults.baseURL = baseUrl;
  useSession(session);
  const read = (await getIfLinkState({ ifNum: 3 })).data;
  if (!("if" in read)) throw new Error(`read: ${read.resp.respCode}`);
  const linkState: "up" | "down" = read.if.linkState;

  const write = (await putIfAdminState({ adminState: "enable" }, { ifNum: 3 })).data;
  if (write.resp.respCode !== 0) throw new Error(`write: ${write.resp.respMsg}`);
  const wrote: "Success" = write.resp.respMsg;
  typed<Exactly<typeof write.resp.respCode, 0>>();

  const missing = (await getIfLinkState({ ifNum: NO_PORT })).data;
  if ("if" in missing) throw new Error("a port that is not there answered");
  // @ts-expect-error a failure carries no group
  missing.if;
  typed<Exactly<typeof missing.resp.respCode, FailureCode>>();

  const status = (await getIfStatus()).data;
  if (!("if" in status)) throw new Error(`status: ${status.resp.respCode}`);
  const ports = Array.isArray(status.if) ? status.if.map((port) => port.interface) : [status.if.interface];

  useSession(readOnly);
  const poll = (await getIfLinkState({ ifNum: 3 }, { headers: { Refresh: "1" } })).data;
  const polled = "if" in poll ? poll.if.linkState : `failed ${poll.resp.respCode}`;
  const refused = await putIfAdminState({ adminState: "disable" }, { ifNum: 3 }).then(
    (r) => r.status,
    (e: unknown) => {
      if (axios.isAxiosError(e) && e.response) return e.response.status;
      throw e;
    },
  );
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused };
});
