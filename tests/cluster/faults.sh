#!/usr/bin/env bash
# The local grid on a Slurm that something happens to: faults.sh SOURCES EXAMPLES CASE
set -u
sources=$1 examples=$2
scratch=$(mktemp -d)
export VANTIRO_CLUSTER=$scratch/slurm VANTIRO_SETTINGS=$scratch/settings HOME=$scratch

clean_up() {
  "$sources/scripts/cluster" stop >/dev/null
  rm -rf "$scratch"
}
trap clean_up EXIT
cd "$scratch" || exit 1

fail() {
  echo "FAILED: $*"
  for file in out err; do [ -f $file ] && sed "s/^/$file: /" $file; done
  exit 1
}

expect() { grep -Eq -e "$2" "$1" || fail "no line of $1 matches: $2"; }

# await SECONDS COMMAND...: until it succeeds.
await() {
  local limit=$((SECONDS + $1))
  until "${@:2}"; do
    [ $SECONDS -lt $limit ] || fail "not within $1 s: ${*:2}"
    sleep 0.1
  done
}

# each STATUS COMMAND LINES: runs the command for that many inputs.
each() {
  seq "$3" | "$examples/../vantiro-each" -j 100 sh -c "$2" >out 2>err
  local status=$?
  [ $status -eq "$1" ] || fail "status $status instead of $1: $2"
}

queue_is_empty() { [ -z "$(squeue --noheader)" ]; }
# The jobs touch a file, as the engine says "running" before anything runs.
running() { [ "$(find "$scratch" -maxdepth 1 -name 'running-*' | wc -l)" -ge "$1" ]; }
node_of_job() { cat running-*; }

# processes_on NODE...
processes_on() {
  grep -lzFx "$(printf 'SLURMD_NODENAME=%s\n' "$@")" /proc/[0-9]*/environ 2>/dev/null | cut -d / -f 3
}
nodes_are_empty() { [ -z "$(processes_on $(cat "$VANTIRO_CLUSTER/nodes"))" ]; }
keepers_of_steps() {
  pgrep -x slurmstepd | while read -r step; do
    ! grep -qzx "SLURM_CONF=$SLURM_CONF" "/proc/$step/environ" 2>/dev/null || echo "$step"
  done
}

# The second of three jobs waits to be hit, while the others end.
hit() {
  each 1 "[ {} != 2 ] || { echo \$SLURMD_NODENAME >$scratch/running-2; exec sleep 150; }; echo ok {}" 3 &
  local run=$!
  await 30 running 1
  eval "$1"
  wait $run || exit 1
  [ "$(grep -c '^ok [13]$' out)" -eq 2 ] || fail "the other jobs did not end well"
  expect err '^vantiro-each: job 2 .*(before the job did|it was ended from outside)'
  expect err "$2"
}

cp "$sources/java/slurm.properties" settings
echo "grid.home=$scratch/grid" >>settings
"$sources/scripts/cluster" start || exit 1
export PATH=$sources/build/slurm/bin:$PATH SLURM_CONF=$(readlink "$VANTIRO_CLUSTER")/slurm.conf

case $3 in
  spread)
    each 1 '[ {} != 17 ] || { echo "no {}" >&2; exit 3; }; echo {} on $SLURMD_NODENAME' 50
    [ "$(grep -Ec '^[0-9]+ on node' out)" -eq 49 ] || fail "not 49 lines"
    [ "$(cut -d ' ' -f 3 out | sort -u | wc -l)" -eq 3 ] || fail "not on three nodes"
    expect err '^vantiro-each: job 17 .*: exit status 3$'
    expect err '^no 17$'
    queue_is_empty || fail "the queue is not empty"
    ;;
  queue_and_nodes_after_the_end)
    for signal in TERM KILL; do
      seq 12 | "$examples/../vantiro-each" -j 100 sh -c "touch $scratch/running-{}; sleep 150" &
      program=$!
      await 30 running 6
      kill -$signal $program
      wait $program 2>/dev/null
      await 20 queue_is_empty
      await 20 nodes_are_empty
      rm running-*
    done
    ;;
  controller_down)
    kill -KILL "$(cat "$VANTIRO_CLUSTER/slurmctld.pid")"
    each 2 'echo {}' 2
    expect err '^vantiro-each: job 2 .*the launcher ended with status 1 before the job did$'
    expect err '^srun: error: .*[Uu]nable to contact slurm controller'
    PATH=$PATH:/usr/sbin slurmctld -c -f "$SLURM_CONF"
    await 30 sinfo --states idle >/dev/null
    each 0 'echo {}' 2
    ;;
  wrong_partition)
    sed -i 's/srun/srun --partition=absent/' settings
    each 2 'echo {}' 2
    expect err '^srun: error: invalid partition specified: absent'
    ;;
  cancelled_from_outside) hit 'scancel --user="$(id -un)"' 'CANCELLED' ;;
  killed_step) hit 'kill -KILL $(keepers_of_steps)' '^srun: error' ;;
  lost_node)
    # All at once: nobody on the node is left to say anything.
    hit 'kill -KILL "$(cat "$VANTIRO_CLUSTER/slurmd-$(node_of_job).pid")" $(keepers_of_steps) \
      $(processes_on "$(node_of_job)")' 'Node failure on node'
    ;;
  time_limit)
    sed -i 's/srun/srun --time=1/' settings
    hit true 'DUE TO TIME LIMIT'
    ;;
  *) fail "there is no case $3" ;;
esac
