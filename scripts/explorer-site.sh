#!/usr/bin/env bash
# Puts the API explorer under WWW/api-docs: the UI's static files (every one
# its page loads, so that nothing answers 404), the
# OpenAPI document route-dump prints, and a start script that fills in the
# session token, so that "Try it out" calls the API as that session.
#   explorer-site.sh BUILD WWW TOKEN [WRAPPER]
# WRAPPER is a command line that starts a built program, as an emulator does
# for a cross-built one.
set -euo pipefail
build=$1 www=$2 token=$3 wrapper=${4:-}
root=$(cd "$(dirname "$0")/.." && pwd)
ui="$root/node_modules/swagger-ui-dist"
[ -f "$ui/swagger-ui-bundle.js" ] || { echo "$ui is missing: run scripts/install-deps.sh" >&2; exit 1; }
dir="$www/api-docs"
mkdir -p "$dir"
cp "$ui"/{index.html,index.css,swagger-ui.css,swagger-ui-bundle.js,swagger-ui-standalone-preset.js,favicon-16x16.png,favicon-32x32.png} "$dir/"
# shellcheck disable=SC2086  # the wrapper's words are separate arguments
$wrapper "$build/route-dump" --openapi > "$dir/openapi.json"
cat > "$dir/swagger-initializer.js" <<JS
// The UI's own filter matches tag names only; with eight tags over 200-odd
// operations a developer looks for a route by its path or its summary.
const operationFilter = () => ({
  fn: {
    opsFilter: (taggedOps, phrase) => {
      const wanted = phrase.toLowerCase();
      const matches = (tag, op) => [tag, op.get("path"), op.getIn(["operation", "summary"]) || ""]
        .some((text) => text.toLowerCase().includes(wanted));
      return taggedOps
        .map((ops, tag) => ops.set("operations", ops.get("operations").filter((op) => matches(tag, op))))
        .filter((ops) => ops.get("operations").size > 0);
    },
  },
});
window.onload = () => {
  window.ui = SwaggerUIBundle({
    url: "openapi.json",
    dom_id: "#swagger-ui",
    deepLinking: true,
    filter: true,
    presets: [SwaggerUIBundle.presets.apis],
    plugins: [operationFilter],
    layout: "BaseLayout",
    onComplete: () => window.ui.preauthorizeApiKey("session", "$token"),
  });
};
JS
