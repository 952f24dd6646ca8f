// What a page does with the clients generated from the API document, used
// as generated: a read and a write through each, with the session token
// passed the way each client offers it.
//   node calls.js BASE_URL SESSION
import createFetchClient from "openapi-fetch";
import type { paths } from "./schema";
import { client } from "./heyapi/client.gen";
import { getIfLinkState, putIfAdminState } from "./heyapi/sdk.gen";

async function main(): Promise<void> {
  const [baseUrl, session] = process.argv.slice(2);
  client.setConfig({ baseUrl });
  const heyRead = await getIfLinkState({ query: { ifNum: 3 }, headers: { session } });
  const heyWrite = await putIfAdminState({ query: { ifNum: 3 }, headers: { session }, body: { adminState: "disable" } });

  const typed = createFetchClient<paths>({ baseUrl });
  const params = { query: { ifNum: 3 }, header: { session } };
  const fetchRead = await typed.GET("/api/v2/interfaces/if/admin-state", { params });
  const fetchWrite = await typed.PUT("/api/v2/interfaces/if/admin-state", { params, body: { adminState: "enable" } });
  const after = await typed.GET("/api/v2/interfaces/if/admin-state", { params });
  console.log(JSON.stringify({ heyRead: heyRead.data, heyWrite: heyWrite.data, fetchRead: fetchRead.data,
                               fetchWrite: fetchWrite.data, after: after.data }));
}

main().catch((e: unknown) => {
  console.error(e);
  process.exit(1);
});
