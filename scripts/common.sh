# Shared by the scripts beside it: where things are, and how they speak.

set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
runtime=$root/build/runtime-i386
benchmark=$root/build/benchmark-i386

say() { printf '%s\n' "$*"; }

# die CAUSE CURE
die() {
  printf '%s: %s\n%s\n' "$(basename "$0")" "$1" "$2" >&2
  exit 1
}

has() { command -v "$1" >/dev/null 2>&1; }

# quietly LOG COMMAND...: the command's output is shown only when it fails.
quietly() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  "$@" >"$log" 2>&1 || {
    tail -n 40 "$log" >&2
    die "this command failed: $*" "Its output is in $log; the end of it stands above."
  }
}
