#!/usr/bin/env bash
# Installs what is missing, builds, and runs the demo host: a window when
# there is a display, otherwise its headless tour, which writes into out/.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

kv_install_missing
kv_build build -DCMAKE_BUILD_TYPE=Release
exec ./build/apps/kvhost/kvhost --out out "$@"
