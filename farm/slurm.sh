#!/bin/sh
# farm/slurm.sh ROOT WORK [OPTION...]
#   Converts the scenes below ROOT in an array of Slurm jobs, one for each chunk, and merges their journals
#   into WORK/all.jsonl in a job that depends on it. ROOT and WORK are on a share; options go to qsbatch.
#   $CHUNK_MB: MiB of sources in a chunk (1024). $SBATCH_OPTIONS: more options for both jobs.
set -e
if [ "$1" = --task ]; then # in a job of the array
    root=$2 work=$3
    shift 3
    chunk=$(printf '%s\n' "$work"/chunks/*.list | sed -n "${SLURM_ARRAY_TASK_ID}p")
    exec qsbatch run --chunk "$chunk" --root "$root" --journal-dir "$work/journals" \
        -j "${SLURM_CPUS_PER_TASK:-1}" "$@"
fi
if [ "$1" = --merge ]; then # in the last job
    exec qsbatch merge "$3/journals" -o "$3/all.jsonl" --root "$2"
fi

root=$(readlink -f "$1") work=$(readlink -m "$2")
shift 2
mkdir -p "$work/journals" "$work/logs"
qsbatch plan "$root" --root "$root" --chunk-mb "${CHUNK_MB:-1024}" -o "$work/chunks" "$@"
count=$(find "$work/chunks" -name '*.list' | wc -l)
[ "$count" -gt 0 ] || exit 0
array=$(sbatch --parsable --requeue --open-mode=append --array="1-$count" $SBATCH_OPTIONS \
    --output="$work/logs/chunk-%a" "$0" --task "$root" "$work" "$@")
merge=$(sbatch --parsable --requeue --open-mode=append --dependency="afterany:$array" $SBATCH_OPTIONS \
    --output="$work/logs/merge" "$0" --merge "$root" "$work")
echo "$count chunks in job $array, merged by job $merge"
