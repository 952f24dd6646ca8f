// orval's fetch client, set up as the API description's first page shows
// (orval.config.mjs and switch_fetch.ts, taken from the page): every call
// goes through switchFetch, which adds the base URL and the session. A
// refused call is returned with its status.
import { getIfLinkState, getIfStatus, putIfAdminState } from "./gen/orval/api";
import { useSwitch } from "./switch_fetch";
import { Exactly, FailureCode, NO_PORT, run, typed } from "./common";

run(async (baseUrl, session, readOnly) => {
  useSwitch(baseUrl, session);
  const readResponse = await getIfLinkState({ ifNum: 3 });
  if (readResponse.status !== 200) throw new Error(`read: HTTP ${readResponse.status}`);
  const read = readResponse.data;
  if (!("if" in read)) throw new Error(`read: ${read.resp.respCode}`);
  const linkState: "up" | "down" = read.if.linkState;

  const writeResponse = await putIfAdminState({ adminState: "enable" }, { ifNum: 3 });
  if (writeResponse.status !== 200) throw new Error(`write: HTTP ${writeResponse.status}`);
  const write = writeResponse.data;
  if (write.resp.respCode !== 0) throw new Error(`write: ${write.resp.respMsg}`);
  const wrote: "Success" = write.resp.respMsg;
  typed<Exactly<typeof write.resp.respCode, 0>>();

  const missingResponse = await getIfLinkState({ ifNum: NO_PORT });
  if (missingResponse.status !== 200) throw new Error(`missing: HTTP ${missingResponse.status}`);
  const missing = missingResponse.data;
  if ("if" in missing) throw new Error("a port that is not there answered");
  // @ts-expect-error a failure carries no group
  missing.if;
  typed<Exactly<typeof missing.resp.respCode, FailureCode>>();

  const statusResponse = await getIfStatus();
  if (statusResponse.status !== 200) throw new Error(`status: HTTP ${statusResponse.status}`);
  const status = statusResponse.data;
  if (!("if" in status)) throw new Error(`status: ${status.resp.respCode}`);
  const ports = Array.isArray(status.if) ? status.if.map((port) => port.interface) : [status.if.interface];

  useSwitch(baseUrl, readOnly);
  const poll = await getIfLinkState({ ifNum: 3 }, { headers: { Refresh: "1" } });
  const polled = poll.status !== 200 ? `HTTP ${poll.status}` : "if" in poll.data ? poll.data.if.linkState : "failed";
  const refused = (await putIfAdminState({ adminState: "disable" }, { ifNum: 3 })).status;
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused };
});
