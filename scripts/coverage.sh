#!/usr/bin/env bash
# Measures what the tests cover, with clang, and prints a table of the rooms (lines and branches) and
# what is not covered. Only generated code (moc, uic, rcc) is left out: it is not in the rooms.
# What counts is the run of the tests with the address sanitizer: one build and one run for both.
#
#   scripts/coverage.sh [--check] [--reuse] [CTEST-OPTION...]
#
# --check: fail when a room misses its target. --reuse: report the last run's profiles.
# CTEST-OPTIONs choose tests, such as -R kestrel_sdk.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

# Room, folders, targets for lines and branches in percent.
rooms=(
    "SDK|libs/kestrel_sdk/Lib/|100|100"
    "probe|libs/kestrel_probe/|100|100"
    "probecheck|probecheck/|98|95"
    "module|SourceFiles/ general/|98|95"
    "workbench|workbench/|90|80"
    "simulator|simulator/|90|80"
    "wire|libs/kestrel_wire/|90|80"
    "recording|libs/kestrel_recording/ recording/|90|80"
)

check=no
reuse=no
while [ $# -gt 0 ]; do
    case "$1" in
        --check) check=yes ;;
        --reuse) reuse=yes ;;
        -h | --help) sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
        *) break ;;
    esac
    shift
done

build=build/asan
tests=passed
if [ $reuse = no ]; then
    install_missing "${build_packages[@]}" "${clang_packages[@]}"
    cmake --preset asan -DKESTREL_COVERAGE=ON >/dev/null
    cmake --build --preset asan
    rm -rf $build/profiles
    ctest --preset asan "$@" || tests=failed
fi

install_missing llvm-14
[ -d $build/profiles ] || { echo "coverage: no run to report"; exit 1; }
# a program that a test kills may leave half of a profile
llvm-profdata-14 merge --sparse --failure-mode=all $build/profiles/*.profraw -o $build/coverage.profdata
objects=()
while read -r file; do objects+=(--object "$file"); done \
    < <(find $build/bin $build/plugins -type f \( -perm -u+x -o -name '*.so' \) | sort)
llvm-cov-14 export --format=lcov --instr-profile=$build/coverage.profdata "${objects[@]}" \
    >$build/coverage.info 2>$build/coverage.warnings

# Adds up one room: per file the lines and branches that were never taken, then the sums.
room_report() {
    awk -v root="$PWD/" -v folders="$1" '
        function flush() {
            if (lines != "") printf "  %s: lines%s\n", file, lines
            if (branches != "") printf "  %s: branches of lines%s\n", file, branches
            lines = branches = ""
        }
        BEGIN { count = split(folders, folder, " ") }
        /^SF:/ {
            flush()
            file = substr($0, 4)
            while (sub(/[^\/]+\/\.\.\//, "", file)) # a compiler cache makes paths relative
                ;
            sub(root, "", file)
            inside = 0
            for (i = 1; i <= count; ++i) if (index(file, folder[i]) == 1) inside = 1
        }
        inside && /^DA:/ {
            split(substr($0, 4), field, ",")
            ++total
            if (field[2] == 0) lines = lines " " field[1]; else ++hit
        }
        inside && /^BRDA:/ {
            split(substr($0, 6), field, ",")
            ++branch_total
            if (field[4] == "-" || field[4] == 0) {
                if (last != file field[1]) branches = branches " " field[1]
                last = file field[1]
            } else {
                ++branch_hit
            }
        }
        END {
            flush()
            printf "sum %d %d %d %d\n", hit, total, branch_hit, branch_total
        }' $build/coverage.info
}

percent() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", b ? 100 * a / b : 0 }'; }
reached() { awk -v a="$1" -v b="$2" 'BEGIN { exit !(a >= b) }'; }

table=$(printf '%-10s %15s %8s %7s %17s %8s %7s' room lines % target branches % target)
missed=()
for room in "${rooms[@]}"; do
    IFS='|' read -r name folders line_target branch_target <<<"$room"
    report=$(room_report "$folders")
    read -r _ hit total branch_hit branch_total <<<"${report##*$'\n'}"
    line_percent=$(percent "$hit" "$total")
    branch_percent=$(percent "$branch_hit" "$branch_total")
    table+=$(printf '\n%-10s %15s %8s %7s %17s %8s %7s' "$name" "$hit/$total" "$line_percent" \
        "$line_target" "$branch_hit/$branch_total" "$branch_percent" "$branch_target")
    if ! reached "$line_percent" "$line_target" || ! reached "$branch_percent" "$branch_target"; then
        missed+=("$name")
    fi
    printf 'Not covered in %s:\n' "$name"
    printf '%s\n' "$report" | sed '$d'
done
printf '%s\n' "$table"
[ $tests = passed ] || { echo "coverage: some tests failed"; exit 1; }
if [ ${#missed[@]} -gt 0 ]; then
    echo "Below the target: ${missed[*]}"
    [ $check = no ] || exit 1
fi
