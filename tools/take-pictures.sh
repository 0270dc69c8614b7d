#!/usr/bin/env bash
# Takes the handbook's pictures anew: docs/bilder/*.png, light at scale 1 and dark, and docs/bilder/doppelt/ at scale 2.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset release >/dev/null
cmake --build --preset release --target velorn-pictures
mkdir -p docs/bilder/doppelt
export QT_QPA_PLATFORM=offscreen
timeout 120 build/release/velorn-pictures docs/bilder
timeout 120 build/release/velorn-pictures docs/bilder dunkel
QT_SCALE_FACTOR=2 timeout 120 build/release/velorn-pictures docs/bilder/doppelt
echo "docs/bilder"
