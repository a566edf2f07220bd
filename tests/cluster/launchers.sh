#!/usr/bin/env bash
# The wrappers of docs/cluster.md: launchers.sh SOURCES EXAMPLES CASE
set -u
sources=$1 examples=$2
scratch=$(mktemp -d)
cd "$scratch" || exit 1
mkdir bin temp
export PATH=$scratch/bin:$sources/build/slurm/bin:$PATH:/usr/sbin TMPDIR=$scratch/temp
export VANTIRO_SETTINGS=$scratch/settings TS_SOCKET=$scratch/tsp VANTIRO_CLUSTER=$scratch/slurm
daemon=true

clean_up() {
  $daemon
  rm -rf "$scratch"
}
trap clean_up EXIT

fail() {
  echo "FAILED: $*"
  cat out err
  exit 1
}

# wrapper NAME: the one that the page shows.
wrapper() {
  awk -v name="$1" '/^```/ { if (show) exit; first = 1; next }
    first && $0 == "#!/bin/bash" { line = $0; first = 0; next }
    line != "" { show = $2 == name; if (show) print line; line = "" }
    show' "$sources/docs/cluster.md" >"bin/$1"
  chmod +x "bin/$1"
}

case $3 in
  ssh)
    type ssh sshd >/dev/null 2>&1 || exit 77
    wrapper on-host
    ssh-keygen -qt ed25519 -N '' -f host && ssh-keygen -qt ed25519 -N '' -f user
    port=$((20000 + RANDOM % 12000))
    printf '%s\n' "Port $port" 'ListenAddress 127.0.0.1' "HostKey $scratch/host" "UsePAM no" \
      "AuthorizedKeysFile $scratch/user.pub" "PidFile $scratch/pid" 'StrictModes no' \
      'PermitRootLogin yes' >sshd_config
    printf '#!/bin/sh\nexec %s -p %s -i %s -o UserKnownHostsFile=%s -o StrictHostKeyChecking=no "$@"\n' \
      "$(type -P ssh)" $port "$scratch/user" "$scratch/known" >bin/ssh
    chmod +x bin/ssh
    [ "$(id -u)" -ne 0 ] || mkdir -p /run/sshd
    "$(type -P sshd)" -f sshd_config || exit 1
    stop_daemon() { kill "$(cat pid)"; }
    launcher=(on-host 127.0.0.1)
    daemon=stop_daemon
    ;;
  batch)
    wrapper by-batch
    "$sources/scripts/cluster" start || exit 1
    stop_daemon() { "$sources/scripts/cluster" stop; }
    daemon=stop_daemon
    export SLURM_CONF=$(readlink "$VANTIRO_CLUSTER")/slurm.conf
    launcher=(by-batch --chdir=/ --ntasks=1 '--job-name="$VANTIRO_NAME"' --)
    echo 'job.cancel = scancel --quiet --name="$VANTIRO_NAME"' >settings
    ;;
  queue)
    type tsp >/dev/null 2>&1 || exit 77
    tsp -S 4
    daemon='tsp -K'
    launcher=(tsp -nf)
    ;;
esac
printf '%s\n' "grid.home=$scratch/grid" "temp.dir=$scratch/temp" grid.processors=20 \
  "job.launcher=${launcher[*]}" >>settings

# Words, variables, input line by line up to its end, status.
secret=$'a secret\n"it\'s" $HOME'
export secret
{ echo one && until grep -q one out 2>/dev/null; do sleep 0.1; done && echo two; } |
  timeout 60 "${launcher[@]}" sh -c 'while read -r line; do echo "$line" >>'"$scratch"'/out; done
    printf "%s\n" "$secret" "$@" >>'"$scratch"'/out; exit 9' sh 'a  b' '' '$c' >err 2>&1
status=$?
[ $status -eq 9 ] || fail "status $status"
[ "$(cat out)" = $'one\ntwo\n'"$secret"$'\na  b\n\n$c' ] || fail "it is not what was given"

# In the grid, with nothing told on command lines, and nothing left when the program is killed.
seq 3 | "$examples/../vantiro-each" -j 3 sh -c "touch $scratch/begun-{}; exec sleep 654.$$" >out 2>err &
program=$!
limit=$((SECONDS + 60))
until [ "$(ls begun-* 2>/dev/null | wc -l)" -eq 3 ] || [ $SECONDS -gt $limit ]; do sleep 0.1; done
[ -e begun-3 ] || fail "the jobs do not run"
! grep -lF 'a secret' /proc/[0-9]*/cmdline 2>/dev/null || fail "a variable is on a command line"
kill -KILL $program
# Whatever grep's status, which also tells of processes that have ended meanwhile.
are_left() {
  grep -lzxF "654.$$" /proc/[0-9]*/cmdline >out 2>/dev/null
  [ -s out ]
}
limit=$((SECONDS + 20))
while are_left && [ $SECONDS -lt $limit ]; do sleep 0.1; done
! are_left || fail "jobs are left"
