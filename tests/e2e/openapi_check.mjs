// Checks an OpenAPI document with a real validator, its examples against
// their own schemas, then each recorded reply against the 200 schema of
// its operation.
//   node openapi_check.mjs DOCUMENT REPLIES
// REPLIES is a JSON list of {"operationId", "reply"}. Prints one line per
// example or reply that its schema does not describe; exits 1 when there is any.
import { readFileSync } from "node:fs";
import SwaggerParser from "@apidevtools/swagger-parser";
import Ajv2020 from "ajv/dist/2020.js";

const [documentPath, repliesPath] = process.argv.slice(2);
const document = JSON.parse(readFileSync(documentPath, "utf8"));
await SwaggerParser.validate(structuredClone(document));
const resolved = await SwaggerParser.dereference(structuredClone(document));

const ajv = new Ajv2020({ allErrors: true });
ajv.addKeyword("x-unknown-text-value");
ajv.addKeyword("x-unit");
// The names generated clients give an enumeration's values: one each, all
// different, every one an identifier.
ajv.addKeyword({
  keyword: "x-enum-varnames",
  schemaType: "array",
  compile(names, schema) {
    const ok = Array.isArray(schema.enum) && names.length === schema.enum.length && new Set(names).size === names.length &&
      names.every((n) => /^[A-Za-z_$][A-Za-z0-9_$]*$/.test(n));
    if (!ok) throw new Error(`x-enum-varnames ${JSON.stringify(names)} do not name ${JSON.stringify(schema.enum)}`);
    return () => true;
  },
});
let failed = 0;
// The examples "Try it out" sends must be what the document itself allows.
function checkExample(where, schema, example) {
  const validate = ajv.compile(schema);
  if (!validate(example)) {
    console.log(`${where}: example ${JSON.stringify(example)}: ${ajv.errorsText(validate.errors)}`);
    failed++;
  }
}
const schemas = new Map();
for (const item of Object.values(resolved.paths))
  for (const op of Object.values(item)) {
    schemas.set(op.operationId, ajv.compile(op.responses["200"].content["application/json"].schema));
    // The session header has no example: its value is the caller's token.
    for (const p of op.parameters.filter((p) => p.in !== "header")) checkExample(`${op.operationId} ${p.name}`, p.schema, p.example);
    const body = op.requestBody?.content["application/json"];
    if (body) checkExample(`${op.operationId} body`, body.schema, body.example);
  }

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
