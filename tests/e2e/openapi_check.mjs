// Checks an OpenAPI document with a real validator, then each recorded
// reply against the 200 schema of its operation.
//   node openapi_check.mjs DOCUMENT REPLIES
// REPLIES is a JSON list of {"operationId", "reply"}. Prints one line per
// reply that its schema does not describe; exits 1 when there is any.
import { readFileSync } from "node:fs";
import SwaggerParser from "@apidevtools/swagger-parser";
import Ajv2020 from "ajv/dist/2020.js";

const [documentPath, repliesPath] = process.argv.slice(2);
const document = JSON.parse(readFileSync(documentPath, "utf8"));
await SwaggerParser.validate(structuredClone(document));
const resolved = await SwaggerParser.dereference(structuredClone(document));

const ajv = new Ajv2020({ allErrors: true });
ajv.addKeyword("x-unknown-text-value");
const schemas = new Map();
for (const item of Object.values(resolved.paths))
  for (const op of Object.values(item))
    schemas.set(op.operationId, ajv.compile(op.responses["200"].content["application/json"].schema));

let failed = 0;
const replies = JSON.parse(readFileSync(repliesPath, "utf8"));
for (const { operationId, reply } of replies) {
  const validate = schemas.get(operationId);
  if (!validate) {
    console.log(`${operationId}: no such operation`);
    failed++;
  } else if (!validate(reply)) {
    console.log(`${operationId}: ${ajv.errorsText(validate.errors)}\n  ${JSON.stringify(reply)}`);
    failed++;
  }
}
console.log(`${replies.length - failed} of ${replies.length} replies match their schemas`);
process.exit(failed ? 1 : 0);
