#!/usr/bin/env bash
# The main job: load vorn.p into the headless host and show what it offers.
set -euo pipefail
build=${1:-build}
lwhost="$build/host/lwhost"
module="$build/module/vorn.p"

echo "== Servers registered by $(basename "$module")"
"$lwhost" servers "$module"
