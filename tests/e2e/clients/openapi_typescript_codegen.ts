// openapi-typescript-codegen, set up as the API description's first page
// shows (switch_codegen.ts, taken from the page): the session is one of the
// client's headers, sent with every call; "Refresh" is an argument of each
// read. A refused call throws an ApiError with the status.
import { ApiError, InterfacesService } from "./gen/openapi_typescript_codegen";
import { pollLinkState, useSwitch } from "./switch_codegen";
import { Exactly, FailureCode, NO_PORT, run, typed } from "./common";

run(async (baseUrl, session, readOnly) => {
  useSwitch(baseUrl, session);
  const read = await InterfacesService.getIfLinkState(3);
  if (!("if" in read)) throw new Error(`read: ${read.resp.respCode}`);
  const linkState: "up" | "down" = read.if.linkState;

  const write = await InterfacesService.putIfAdminState(3, { adminState: "enable" });
  if (write.resp.respCode !== 0) throw new Error(`write: ${write.resp.respMsg}`);
  const wrote: "Success" = write.resp.respMsg;
  typed<Exactly<typeof write.resp.respCode, 0>>();

  const missing = await InterfacesService.getIfLinkState(NO_PORT);
  if ("if" in missing) throw new Error("a port that is not there answered");
  // @ts-expect-error a failure carries no group
  missing.if;
  typed<Exactly<typeof missing.resp.respCode, FailureCode>>();

  const status = await InterfacesService.getIfStatus();
  if (!("if" in status)) throw new Error(`status: ${status.resp.respCode}`);
  const ports = Array.isArray(status.if) ? status.if.map((port) => port.interface) : [status.if.interface];

  useSwitch(baseUrl, readOnly);
  const poll = await pollLinkState(3);
  const polled = "if" in poll ? poll.if.linkState : `failed ${poll.resp.respCode}`;
  const refused = await InterfacesService.putIfAdminState(3, { adminState: "disable" }).then(
    () => 200,
    (e: unknown) => {
      if (e instanceof ApiError) return e.status;
      throw e;
    },
  );
  return { linkState, wrote, missing: missing.resp.respCode, ports, polled, refused };
});
