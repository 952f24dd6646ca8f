// Drives the API explorer in headless Chromium as a user would: link-state
// of port 3, then the admin state read, set to "disable" and read again.
//   node explorer.mjs URL SCREENSHOT
// Prints the response bodies the explorer showed, as one JSON object.
import { chromium } from "playwright-core";

const [url, screenshot] = process.argv.slice(2);
const browser = await chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });
const page = await browser.newPage({ viewport: { width: 1280, height: 1600 } });
page.setDefaultTimeout(20000);

// Opens the operation, fills its inputs and executes it; the response body shown.
async function run(operationId, params, body) {
  const block = page.locator(`.opblock[id$="-${operationId}"]`);
  if ((await block.locator(".opblock-body").count()) === 0) await block.locator(".opblock-summary-control").click();
  const tryOut = block.locator("button.try-out__btn:not(.cancel)");
  if (await tryOut.count()) await tryOut.click();
  const clear = block.locator("button.btn-clear");
  if (await clear.count()) await clear.click();
  for (const [name, value] of Object.entries(params))
    await block.locator(`tr[data-param-name="${name}"] input`).fill(value);
  if (body !== undefined) await block.locator("textarea.body-param__text").fill(body);
  await block.locator("button.execute").click();
  return block.locator(".live-responses-table .response-col_description .highlight-code pre").first().textContent();
}

try {
  await page.goto(url);
  const shown = {
    linkState: await run("getIfLinkState", { ifNum: "3" }),
    before: await run("getIfAdminState", { ifNum: "3" }),
    set: await run("putIfAdminState", { ifNum: "3" }, '{"adminState": "disable"}'),
    after: await run("getIfAdminState", { ifNum: "3" }),
  };
  console.log(JSON.stringify(shown));
} finally {
  await page.screenshot({ path: screenshot });
  await browser.close();
}
