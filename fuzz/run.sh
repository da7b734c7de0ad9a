#!/bin/sh
# Builds the fuzz targets and runs them one after the other. New inputs gather in build/fuzz/corpus, and an
# input that fails lands in fuzz/findings/TARGET, where the tests replay it from then on.
#   fuzz/run.sh                     each target for a minute
#   fuzz/run.sh 1200                the long run
#   fuzz/run.sh 300 container       one target
set -eu
cd "$(dirname "$0")/.."
. cmake/packages.sh
# shellcheck disable=SC2086
need_packages $BUILD_PACKAGES clang libclang-rt-14-dev

seconds="${1:-60}"
[ $# -eq 0 ] || shift
[ $# -gt 0 ] || set -- node_text container effect_library packed_file effects_header project_locator profile_text command_line plugin_table change_text journal

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzz_programs

export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:allocator_may_return_null=1
export UBSAN_OPTIONS=print_stacktrace=1
failed=""
for target in "$@"; do
    case "$target" in
    container) length=8192 ;;
    *) length=4096 ;;
    esac
    grown="build/fuzz/corpus/$target"
    mkdir -p "$grown" "fuzz/findings/$target"
    echo "== $target"
    log="build/fuzz/$target.log"
    nice -n 10 "build/fuzz/bin/fuzz_$target" -max_total_time="$seconds" -max_len=$length -timeout=25 -rss_limit_mb=3072 \
        -dict="fuzz/dictionaries/$target.dict" -artifact_prefix="fuzz/findings/$target/" -print_final_stats=1 \
        "$grown" "fuzz/corpus/$target" >"$log" 2>&1 || failed="$failed $target"
    grep -E 'cov: ' "$log" | tail -n 1
    grep -E 'stat::number_of_executed_units|SUMMARY|^fuzz: |Test unit written' "$log" || true
    rmdir "fuzz/findings/$target" 2>/dev/null || true
done
rmdir fuzz/findings 2>/dev/null || true
[ -z "$failed" ] || { echo "Findings:$failed (logs in build/fuzz)"; exit 1; }
