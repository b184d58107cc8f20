#!/usr/bin/env bash
# The main job: load vorn.p into the headless host, show what it offers, draw every node's
# panel and render the example networks.
#
#   examples/demo.sh BUILD_DIR      (./dev demo runs it with the normal build)
#
# Pictures go to BUILD_DIR/demo/.
set -euo pipefail
build=${1:-build}
examples=$(cd "$(dirname "$0")" && pwd)
lwhost="$build/host/lwhost"
module="$build/module/vorn.p"
out="$build/demo"
mkdir -p "$out"
# The example networks find the module through this variable.
VORN_MODULE=$(cd "$(dirname "$module")" && pwd)/$(basename "$module")
export VORN_MODULE

echo "== Servers registered by $(basename "$module")"
"$lwhost" servers "$module"

echo
echo "== Node panels"
for server in $("$lwhost" servers "$module" | awk '$1 == "NodeHandler" { print $2 }'); do
  # A node without settings (the Channel Blender) has no panel to draw.
  if ! said=$("$lwhost" panel "$module" "$server" -o "$out/panel-$server.png" 2>&1); then
    case $said in *"has no panel"*) echo "$server: no panel" ;; *) echo "$said" >&2; exit 1 ;; esac
    continue
  fi
  echo "$said"
done
# The same panels after a user typed values in, in the units LightWave shows.
"$lwhost" panel "$module" SimpleColourCorrector -o "$out/panel-SimpleColourCorrector-edited.png" \
  --set "Hue=90" --set "Saturation=150%" --set "Colour=255 160 40" --set "Invert=on"
"$lwhost" panel "$module" MaterialBlender -o "$out/panel-MaterialBlender-edited.png" \
  --set "Diffuse Mode=Multiply" --set "Diffuse Opacity=50%"
"$lwhost" panel "$module" vornMaterialBooster -o "$out/panel-vornMaterialBooster-edited.png" \
  --set "Diffuse Boost=250%" --set "Camera Rays Only=on"

echo
echo "== Example networks"
for network in "$examples"/*.net; do
  "$lwhost" render "$network" -o "$out/$(basename "$network" .net).png"
done
# The animated one at a few frames.
for frame in 12 24 48; do
  "$lwhost" render "$examples/time-pulse.net" -o "$out/time-pulse-frame$frame.png" --frame "$frame"
done

echo
echo "== Lit scenes, on every core"
# The nodes on three spheres over a mirror floor, two lights with shadows.
"$lwhost" render "$examples/showroom.scene" -o "$out/showroom.png" --size 960x540 --threads "$(nproc)"
# Boosting on camera rays only leaves the floor's reflection unboosted.
"$lwhost" render "$examples/camera-rays-boost.scene" -o "$out/camera-rays-boost.png"

echo
echo "== A Layout session with the Growl Notifier (the event stream it heard)"
DEMO_OUT=$(cd "$out" && pwd) "$lwhost" session "$examples/notifier.session" --log -

echo
echo "== Two Layout sessions with Command Statistics: the counts carry over in $out/settings"
rm -rf "$out/settings" && mkdir -p "$out/settings"
for run in 1 2; do
  DEMO_OUT=$(cd "$out" && pwd) "$lwhost" session "$examples/command-stats.session" --settings "$out/settings"
done
cat "$out/settings/CommandStats.txt"
# Its panel, as Layout would show it with those counts in its settings folder.
mkdir -p "$out/config/lwhost" && cp "$out/settings/CommandStats.txt" "$out/config/lwhost/"
XDG_CONFIG_HOME=$(cd "$out" && pwd)/config "$lwhost" panel "$module" CommandStatistics -o "$out/panel-CommandStatistics.png"

echo
echo "== Shading scenes: one Single Light Lambert per light; a Cache before three consumers"
for scene in two-lights cached-network; do
  "$lwhost" render "$examples/$scene.scene" -o "$out/$scene.png" --threads "$(nproc)"
done

echo
echo "== Pictures written to $out"
ls "$out"
