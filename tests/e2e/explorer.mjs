// Drives the API explorer in headless Chromium as a user would: link-state
// of port 3, then the admin state read, set to "disable" and read again;
// then the filter narrowed to one route name.
//   node explorer.mjs URL SCREENSHOT
// Prints one JSON object: the response bodies the explorer showed, every
// request that failed and every console error while it loaded, and the
// paths the filter left.
import { chromium } from "playwright-core";

const [url, screenshot] = process.argv.slice(2);
const browser = await chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });
const page = await browser.newPage({ viewport: { width: 1280, height: 1600 } });
page.setDefaultTimeout(20000);
const problems = [];
page.on("requestfailed", (r) => problems.push(`${r.url()}: ${r.failure().errorText}`));
page.on("response", (r) => r.status() >= 400 && problems.push(`${r.url()}: ${r.status()}`));
page.on("console", (m) => m.type() === "error" && problems.push(`console: ${m.text()}`));
page.on("pageerror", (e) => problems.push(`page: ${e.message}`));

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

// The paths of the operations the page shows.
const shownPaths = () => page.locator(".opblock .opblock-summary-path").allTextContents();

try {
  await page.goto(url);
  await page.locator(".opblock").first().waitFor();
  const loadProblems = [...problems];
  const shown = {
    linkState: await run("getIfLinkState", { ifNum: "3" }),
    before: await run("getIfAdminState", { ifNum: "3" }),
    set: await run("putIfAdminState", { ifNum: "3" }, '{"adminState": "disable"}'),
    after: await run("getIfAdminState", { ifNum: "3" }),
  };
  await page.screenshot({ path: screenshot });
  const all = (await shownPaths()).length;
  await page.locator(".operation-filter-input").fill("link-state");
  await page.waitForFunction((n) => document.querySelectorAll(".opblock").length < n, all);
  console.log(JSON.stringify({ shown, loadProblems, all, filtered: await shownPaths() }));
} catch (e) {
  await page.screenshot({ path: screenshot });
  throw e;
} finally {
  await browser.close();
}
