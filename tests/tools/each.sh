#!/bin/sh
# vantiro-each on a grid of its own: each.sh PROGRAM CASE
set -u
each=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch" || exit 1
printf 'grid.home=%s\n' "$scratch/grid" >vantiro.properties
export VANTIRO_SETTINGS="$scratch/vantiro.properties" HOME="$scratch" TMPDIR="$scratch/tmp"
mkdir tmp

fail() {
  echo "FAILED: $*"
  for file in out err; do [ -f $file ] && sed "s/^/$file: /" $file; done
  exit 1
}
expect() { grep -Eq -e "$2" "$1" || fail "no line of $1 matches: $2"; }

# run STATUS ARGUMENT...
run() {
  wanted=$1
  shift
  "$each" "$@" >out 2>err
  status=$?
  [ "$status" -eq "$wanted" ] || fail "status $status instead of $wanted: $*"
}
prints() { [ "$(cat out)" = "$1" ] || fail "it is not: $1"; }
# await COMMAND...
await() {
  tries=0
  until "$@"; do
    tries=$((tries + 1))
    [ $tries -lt 200 ] || fail "not within 20 s: $*"
    sleep 0.1
  done
}
nothing_is_left() {
  [ -z "$(ls tmp)" ] || fail "left: $(ls tmp)"
  [ -z "$(ls grid/projects)" ] || fail "the project was not removed"
}

case $2 in
  bytes)
    # All bytes but NUL in one input, others end, or have quotes, in a language or are empty.
    i=1
    while [ $i -lt 256 ]; do
      printf "\\$(printf %03o $i)"
      i=$((i + 1))
    done >inputs
    printf '\0\360\237\230\200 $HOME "`\\\0\0last {}\0' >>inputs
    printf '#!/bin/sh\nprintf "%%s\\0" "$1"\nprintf "\\377\\0%%s" "$1" >&2\n' >echo0
    chmod +x echo0
    run 0 -0 -k ./echo0 <inputs
    cmp inputs out || fail "the inputs did not come back"
    tr '\0' '\n' <inputs | "$each" -k ./echo0 | tr '\0' '\n' >by_lines
    tr '\0' '\n' <inputs | cmp - by_lines || fail "the lines did not come back"
    [ "$(tr -dc '\377' <err | wc -c)" -eq 5 ] || fail "standard error is not what was written"
    printf 'no\nend' >ends
    run 0 -k -a ends echo
    prints "$(cat ends)"
    # An output that is not one of lines, and larger than any buffer.
    head -c 300000 /dev/urandom >random
    run 0 --transfer cat ::: random
    cmp random out || fail "the bytes changed"
    printf 'a\nb\0c\n' >nul
    run 255 -a nul echo
    expect err 'input 2 of nul has a NUL byte'
    nothing_is_left
    ;;
  failures)
    run 2 -j 3 sh -c 'case $1 in 7|9) printf "no %s" $1 >&2; exit $1;; esac; echo ok $1' \
      sh {} ::: 1 2 3 4 5 6 7 8 9
    [ "$(grep -c '^ok [1-68]$' out)" -eq 7 ] || fail "not seven lines"
    expect err 'job 7 \(7\): exit status 7$'
    expect err '9 of 9 jobs done, 2 failed'
    [ "$(grep -o 'no [79]' err | wc -l)" -eq 2 ] || fail "standard error did not come once"
    run 101 -j 8 sh -c 'exit 5' ::: $(seq 102)
    expect err '^and 92 more jobs failed$'
    run 1 --timeout 1 sleep ::: 0 60
    expect err 'job 2 \(60\): timed out after 1 s'
    run 1 -j 1 --halt now,fail=1 sh -c 'sleep 0.1; echo {}; [ {} != 2 ]' ::: $(seq 100)
    expect out '^2$'
    grep -q '^90$' out && fail "it did not halt"
    expect err 'stopped as --halt says; [0-9]+ of 100'
    run 1 no-such-program ::: a
    expect err 'exit status 127'
    nothing_is_left
    ;;
  files)
    mkdir d
    printf 'a b c\n' >"d/it's \$1.txt"
    printf 'd e\n' >two.txt
    printf '%s\n' "d/it's \$1.txt" two.txt >names
    run 0 -k --tag --results kept --transfer sh -c 'wc -w "$1"; echo new >new' sh {} :::: names
    prints "$(printf '%s\t3 %s\ntwo.txt\t2 two.txt' "it's \$1.txt" "it's \$1.txt")"
    expect kept/job-1/stdout "^3 it's"
    expect kept/job-2/new '^new$'
    [ "$(ls kept/job-2 | tr '\n' ' ')" = 'new stderr stdout ' ] || fail "kept: $(ls -A kept/job-2)"
    run 0 -k --workdir d sh -c 'cat "$1"' sh {/} ::: "x/it's \$1.txt"
    prints 'a b c'
    run 0 --dry-run echo {} {.} {/} {//} {/.} {#} ::: a.b/c.d.e /f .g a.b/f
    prints "'echo' 'a.b/c.d.e' 'a.b/c.d' 'c.d.e' 'a.b' 'c.d' '1'
'echo' '/f' '/f' 'f' '/' 'f' '2'
'echo' '.g' '.g' '.g' '.' '.g' '3'
'echo' 'a.b/f' 'a.b/f' 'f' 'a.b' 'f' '4'"
    run 255 --results kept true ::: a
    expect err 'new or empty directory'
    nothing_is_left
    ;;
  many)
    seq 1000 >inputs
    run 0 -k --arg-file inputs echo
    cmp inputs out || fail "not all came in order"
    # What ended is there at once, also in a file.
    "$each" -j 2 sh -c 'sleep {}; echo {}' ::: 0 60 2>err >out &
    program=$!
    await grep -q '^0$' out
    kill -KILL $program
    wait $program 2>err
    prints 0
    ;;
  refused)
    run 255
    expect err 'there is no command'
    run 255 --absent echo
    expect err 'no option --absent'
    run 255 --jobs none true
    run 255 --transfer true ::: absent
    expect err 'cannot read absent: No such file'
    run 255 ./absent ::: a
    expect err 'cannot run ./absent: No such file'
    run 255 --halt soon,fail=1 true ::: a
    expect err 'not soon,fail=1'
    run 255 echo ::: a ::: b
    run 255 cat </
    expect err 'cannot read the inputs from standard input: Is a directory'
    echo 'no.such.key=1' >wrong
    run 255 --settings wrong echo ::: a
    expect err 'unknown setting no.such.key'
    "$each" echo ::: 1 2 >/dev/full 2>err && fail "a full disk was not seen"
    expect err 'cannot write standard output: No space left'
    run 0 echo </dev/null
    run 0 --help
    expect out '^Usage: vantiro-each'
    ;;
  signals)
    for signal in HUP INT TERM; do
      rm -f out running
      # A shell has its background jobs ignore INT.
      env --default-signal=INT "$each" -j 2 -k \
        sh -c 'echo {}; [ {} != 2 ] || { touch "$1"; exec sleep 150; }' sh "$scratch/running" \
        ::: 1 2 3 2 2 2 >out 2>err &
      program=$!
      await test -e running
      await grep -q 1 out
      sleep 0.5
      kill -$signal $program
      wait $program
      status=$?
      case $signal:$status in HUP:129 | INT:130 | TERM:143) ;; *) fail "status $status after $signal" ;; esac
      expect err "stopped by SIG$signal; 4 of 6 jobs had not ended"
      prints "$(printf '1\n3')"
      nothing_is_left
    done
    ;;
  terminal)
    script -qec "'$each' -j 2 sh -c 'sleep 0.3; echo out {}' ::: 1 2 3 4" /dev/null >out
    expect out '[0-4] of 4 jobs done, 0 failed, [0-2] running'
    expect out '[1-3] of 4 jobs done.*, [0-9]+ s left'
    tr '\r' '\n' <out | grep -q 'out 3$' || fail "the output is mixed with the progress"
    expect out '4 of 4 jobs done, 0 failed, in [0-9]+ s'
    ;;
  *) fail "there is no case $2" ;;
esac
