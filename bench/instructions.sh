#!/usr/bin/env bash
# Instructions per shading sample at each node's evaluate entry, counted by callgrind: exact and
# repeatable, unlike nanoseconds on a shared machine. Each vorn node is set against the same
# node written in plain C where there is one.
#
#   bench/instructions.sh BUILD_DIR [SAMPLES]
set -euo pipefail
build=${1:?usage: bench/instructions.sh BUILD_DIR [SAMPLES]}
samples=${2:-2000}
driver=$build/bench/sample_instructions
vorn=$build/module/vorn.p
plain=$build/bench/plain.p
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

# count NAME SETUP MODULE SERVER OUTPUT ENTRY: instructions per sample inside ENTRY and its callees.
count() {
  local name=$1 setup=$2 module=$3 server=$4 output=$5 entry=$6
  valgrind --tool=callgrind --collect-atstart=no "--toggle-collect=$entry" \
    --callgrind-out-file="$out/$name.%p" --log-file="$out/$name.log" \
    "$driver" "$setup" "$module" "$server" "$output" "$samples" >"$out/$name.value" \
    || { cat "$out/$name.log" >&2; return 1; }
  # The last dump holds only the counted samples (the counters were zeroed after a warm-up).
  local file
  file=$(ls "$out/$name".*.* 2>/dev/null | sort -V | tail -1)
  awk -v n="$samples" '/^totals:/ {printf "%.1f", $2 / n; found = 1} END {if (!found) exit 1}' "$file"
}

# compare LABEL NAME OUTPUT VORN_SETUP VORN_SERVER VORN_CLASS PLAIN_SETUP PLAIN_SERVER PLAIN_ENTRY:
# counts the vorn node and its plain-C twin, checks that both gave the same first value (else
# the comparison is void) and prints a row of the table.
compare() {
  local label=$1 name=$2 output=$3
  local vorn_count plain_count
  vorn_count=$(count "$name" "$4" "$vorn" "$5" "$output" "hostkit::NodeAdaptor<vorn::$6, *>::Evaluate*")
  plain_count=$(count "plain-$name" "$7" "$plain" "$8" "$output" "$9")
  cmp -s "$out/$name.value" "$out/plain-$name.value" ||
    { echo "instructions.sh: $name disagrees: $(cat "$out/$name.value") vs $(cat "$out/plain-$name.value")" >&2; exit 1; }
  printf '%-36s %10s %10s %8s\n' "$label" "$vorn_count" "$plain_count" \
    "$(awk -v a="$vorn_count" -v b="$plain_count" 'BEGIN {printf "%.3fx", a / b}')"
}

printf '%-36s %10s %10s %8s\n' "instructions per sample" "vorn" "plain C" "ratio"
compare "Time Info: Time" time Time none vornTimeInfo TimeInfo none plainTimeInfo PlainTimeInfo_Evaluate
compare "Simple Colour Corrector: Colour" corrector Colour corrector SimpleColourCorrector SimpleCCNode \
  colour plainColourCorrector PlainCorrector_Evaluate
compare "Material Blender: Material" blender Material blender MaterialBlender MaterialMixer \
  materials plainMaterialBlender PlainBlender_Evaluate
compare "Material Booster: Material" booster Material booster vornMaterialBooster MaterialBooster \
  curves plainMaterialBooster PlainBooster_Evaluate
compare "Channel Blender: Vector" channel Vector vector vornChannelBlender ChannelBlender \
  vector plainChannelBlender PlainChannelBlender_Evaluate

# The sphere preview's pixel loop: instructions per shaded sample spent outside the plug-in's
# own code (the renderer, the node editor, the host's input and output functions it calls).
preview=$(dirname "$0")/../examples/normal-hue.net
VORN_MODULE=$(realpath "$vorn") valgrind --tool=callgrind --callgrind-out-file="$out/preview.out" --log-file="$out/preview.log" \
  "$build/host/lwhost" render "$preview" -o "$out/preview.png" >/dev/null || { cat "$out/preview.log" >&2; exit 1; }
callgrind_annotate --inclusive=yes --tree=calling --threshold=100 "$out/preview.out" >"$out/preview.txt" 2>/dev/null
# inclusive PATTERN: the inclusive count of the first function matching PATTERN ("*" marks a
# function's own line in the call tree, ">" its callees).
inclusive() { grep -E "^ *[0-9,]+ .*\*  .*$1" "$out/preview.txt" | head -1 | awk '{gsub(",", "", $1); print $1}'; }
loop=$(inclusive 'NetworkRenderer::shadePixels')
plugin=$(inclusive 'NodeAdaptor<vorn::SimpleCCNode, .*>::Evaluate')
inputs=$(inclusive 'InEvaluate')
outputs=$(inclusive 'SetNodeValue\(')
spots=$(grep -E '>   .*NodeAdaptor<vorn::SimpleCCNode, .*>::Evaluate' "$out/preview.txt" | head -1 | sed -E 's/.*\(([0-9,]+)x\).*/\1/; s/,//g')
echo
awk -v l="$loop" -v p="$plugin" -v i="$inputs" -v o="$outputs" -v n="$spots" 'BEGIN {
  printf "%-36s %10.1f   (%d samples)\n", "preview pixel loop, outside plug-in", (l - (p - i - o)) / n, n }'

