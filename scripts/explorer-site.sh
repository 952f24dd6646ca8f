#!/usr/bin/env bash
# Puts the API explorer under WWW/api-docs: the UI's static files, the
# OpenAPI document route-dump prints, and a start script that fills in the
# session token, so that "Try it out" calls the API as that session.
#   explorer-site.sh BUILD WWW TOKEN
set -euo pipefail
build=$1 www=$2 token=$3
root=$(cd "$(dirname "$0")/.." && pwd)
ui="$root/node_modules/swagger-ui-dist"
[ -f "$ui/swagger-ui-bundle.js" ] || { echo "$ui is missing: run scripts/install-deps.sh" >&2; exit 1; }
dir="$www/api-docs"
mkdir -p "$dir"
cp "$ui"/{index.html,index.css,swagger-ui.css,swagger-ui-bundle.js,favicon-16x16.png,favicon-32x32.png} "$dir/"
"$build/route-dump" --openapi > "$dir/openapi.json"
cat > "$dir/swagger-initializer.js" <<JS
window.onload = () => {
  window.ui = SwaggerUIBundle({
    url: "openapi.json",
    dom_id: "#swagger-ui",
    deepLinking: true,
    presets: [SwaggerUIBundle.presets.apis],
    layout: "BaseLayout",
    onComplete: () => window.ui.preauthorizeApiKey("session", "$token"),
  });
};
JS
