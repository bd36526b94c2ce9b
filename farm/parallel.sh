#!/bin/sh
# farm/parallel.sh HOSTS ROOT WORK [OPTION...]
#   Converts the scenes below ROOT on the machines of the file HOSTS with GNU parallel over ssh, and merges
#   the journals into WORK/all.jsonl. HOSTS has a line for each machine, as in "8/node1", which takes eight
#   chunks at a time; ":" is this one. ROOT and WORK are on a share; options go to qsbatch.
#   $CHUNK_MB: MiB of sources in a chunk (64).
set -e
hosts=$1 root=$(readlink -f "$2") work=$(readlink -m "$3")
shift 3
mkdir -p "$work/journals"
qsbatch plan "$root" --root "$root" --chunk-mb "${CHUNK_MB:-64}" -o "$work/chunks" "$@"
[ -n "$(ls "$work/chunks")" ] || exit 0

# A chunk with failed scenes (status 1) is done; any other end is tried again, on another machine if there is one.
# A machine that does not answer for a minute is given up.
printf '%s\n' "$work"/chunks/*.list |
    parallel -q --sshloginfile "$hosts" --workdir "$PWD" --joblog "$work/joblog" --retries 3 --delay 0.01 \
        --ssh 'ssh -o ServerAliveInterval=15 -o ServerAliveCountMax=4' \
        sh -c 'qsbatch run --chunk "$@" || [ $? -eq 1 ]' run {} \
        --root "$root" --journal-dir "$work/journals" -j 1 -q "$@" || echo 'some chunks are not done' >&2
exec qsbatch merge "$work/journals" -o "$work/all.jsonl" --root "$root"
