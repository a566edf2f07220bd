# Shared by the scripts beside it, which have handed themselves to bash: where things are, and how
# the scripts speak.

set -euo pipefail
# With CDPATH, `cd` prints where it went. Java reads the names of files in the locale's encoding.
unset CDPATH
export LC_ALL=C.UTF-8

root=$(cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.." && pwd -P)
build=$root/build
runtime=$build/runtime-i386
python=$build/python-i386
slurm=$build/slurm
logs=$build/logs

say() { printf '%s\n' "$*"; }

# die CAUSE CURE
die() {
  printf '%s: %s\n%s\n' "$(basename -- "$0")" "$1" "$2" >&2
  exit 1
}

has() { command -v "$1" >/dev/null 2>&1; }

# quietly LOG COMMAND...: the command's output is shown only when it fails.
quietly() {
  local log=$1
  shift
  printf '%s\n' "$*" >"$log" || die "$log cannot be written" "The line above says why."
  "$@" >>"$log" 2>&1 || {
    tail -n 40 "$log" >&2
    die "this command failed: $*" "Its output is in $log; the end of it stands above."
  }
}

# Sets `preset` to the first of the caller's arguments when that is one, and to x86 otherwise;
# `options` are the other arguments.
read_preset() {
  preset=x86
  options=("$@")
  case ${1:-} in
    '' | -* | [0-9]*) return ;;
    x86 | native | sanitize | threads | fuzz) preset=$1 ;;
    *) die "there is no kind of build called '$1'" "There are x86, native, sanitize and threads." ;;
  esac
  options=("${@:2}")
}

# Whether `preset` has this machine's own word size.
is_native() { [ "$preset" = native ] || [ "$preset" = threads ]; }

# One script at a time sets up and builds in a clone; a second one waits for what the first brings.
# The lock ends with the process that took it and with those that it started.
take_lock() {
  [ "${VANTIRO_LOCKED:-}" != "$root" ] || return 0
  exec 9>"$build/lock"
  flock --nonblock 9 || {
    say "$(basename -- "$0"): another run is building in this clone; waiting until it is done"
    flock 9
  }
  export VANTIRO_LOCKED=$root
}

case ${1:-} in
  -h | --help)
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
    exit
    ;;
esac

case $root in
  *[:\;=$'\n']*)
    die "no library can be built and run in $root" \
      "Java splits its class path at ':', VantiroDLL.conf its lines at '=' and CMake its lists at
';': move the clone to a folder without these characters."
    ;;
esac
mkdir -p "$logs" && foreign=$(find "$build" -maxdepth 1 ! -type l ! -writable -print -quit) &&
  [ -z "$foreign" ] ||
  die "${foreign:-$build} cannot be written" \
    "Copy the tree to a folder of your own and run this there: cp -r $root ANOTHER_FOLDER"
