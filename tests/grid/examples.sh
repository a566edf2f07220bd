#!/bin/sh
# The examples as a user runs them: examples.sh FOLDER CASE
set -u
examples=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch" || exit 1

# The local grid of the test, apart from the user's own.
[ -z "${VANTIRO_SETTINGS:-}" ] || cp "$VANTIRO_SETTINGS" vantiro.properties
printf 'grid.home=%s\n' "$scratch/grid" >>vantiro.properties
export VANTIRO_SETTINGS="$scratch/vantiro.properties"
export HOME="$scratch"

fail() {
  echo "FAILED: $*"
  for file in out err; do [ -f $file ] && sed "s/^/$file: /" $file; done
  exit 1
}

# expect FILE PATTERN: a line of the file matches.
expect() { grep -Eq -e "$2" "$1" || fail "no line of $1 matches: $2"; }

# lines FILE PATTERN COUNT
lines() { [ "$(grep -Ec -e "$2" "$1")" -eq "$3" ] || fail "not $3 lines of $1 match: $2"; }

# run STATUS COMMAND...
run() {
  wanted=$1
  shift
  "$@" >out 2>err
  status=$?
  [ "$status" -eq "$wanted" ] || fail "status $status instead of $wanted: $*"
}

case $2 in
  pi)
    run 0 "$examples/pi" 1000
    lines out '^job +[0-9]+ done' 16
    expect out '16 of 16; pi is about 3\.[01234]'
    expect out 'samples +16000, from 16 jobs'
    grep -q "$(printf '\r')" out && fail "a bar is drawn into a file"
    run 2 "$examples/pi" many
    expect err '^usage: pi'
    ;;
  pi_on_a_terminal)
    run 0 script -qec "'$examples/pi' 20000" /dev/null
    expect out '\[=+\] 16 of 16 jobs done   pi is about 3\.1'
    expect out 'samples +320000, from 16 jobs'
    ;;
  project)
    run 0 "$examples/project" results
    expect out '^12 of 12 jobs finished'
    expect out '^archives: job-1\.zip, .*job-12\.zip$'
    expect out '^11301 primes below 120000'
    [ -f results/job-12/primes.txt ] || fail "the results are not unpacked"
    [ -z "$(ls grid/projects)" ] || fail "the project was not removed"
    ;;
  peach_each)
    seq 3 >inputs
    run 0 "$examples/peach_each" 'read n; echo $((n * n))' <inputs
    expect out '^3:9$'
    ;;
  *) fail "there is no case $2" ;;
esac
