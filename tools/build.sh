#!/usr/bin/env bash
# build.sh PRESET [TARGET...]    configures the preset if it is not yet, and builds it; a line per step tells how far it is
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
cd "$root"
# Objects are shared between clones of any folder.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=1 NINJA_STATUS="$preset: step %f of %t, %e s: "
if [ ! -f "build/$preset/build.ninja" ]; then
  echo "$preset: configuring"
  mkdir -p build
  cmake --preset "$preset" >"build/$preset.configure" 2>&1 || { cat "build/$preset.configure"; exit 1; }
fi
ninja -C "build/$preset" "$@" | sed -u -e '/^ninja: \(Entering\|no work\)/d' -e '/Re-checking globbed/d' -e '/Re-running CMake/d' -e '/^-- /d'
