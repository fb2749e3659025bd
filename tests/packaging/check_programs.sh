# shellcheck shell=bash
# Sourced by the tests of this folder.
# check_programs PREFIX WORK_FOLDER
# Runs the programs that are installed below PREFIX: they are what their papers say, and the workbench
# finds and loads the installed plug-in, which shows live rows of the simulated controller.

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# wait_for SECONDS COMMAND...: until the command succeeds.
wait_for() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        [ $SECONDS -lt $deadline ] || return 1
        sleep 0.1
    done
}

# The long options that a text names, one a line.
options_in() { grep -oE -- '--[a-z][a-z-]*' | sort -u; }

check_papers() {
    local prefix=$1 program=$2 page
    page=$(zcat "$prefix/share/man/man1/$program.1.gz" | sed 's/\\-/-/g')
    # --help-all is Qt's own and says nothing more than --help.
    diff <(LC_ALL=C "$prefix/bin/$program" --help | grep -v -- --help-all | options_in) \
        <(sed -n '/^\.SH OPTIONS/,/^\.SH EXIT/p' <<<"$page" | options_in) ||
        fail "the man page of $program has other options than the program"
    LC_ALL=C "$prefix/bin/$program" --version | grep -q "^$program [0-9]" ||
        fail "$program does not tell its version"
}

check_live_rows() {
    local prefix=$1 work=$2 plugin=$3 file pid simulator
    LC_ALL=C "$prefix/bin/kestrel-workbench" --simulate --measure --open-docks --print-rows \
        --settings "$work/settings.ini" >"$work/rows" 2>"$work/errors" &
    pid=$!
    wait_for 60 grep -qE $'^tableWidget6dmt\t0\tM1.*\t-?[0-9]+\\.[0-9][0-9]\t' "$work/rows" ||
        { cat "$work/errors"; kill $pid; fail "no live rows"; }
    for file in "$plugin" "${plugin%/*}/libProbeCheckModule.so"; do
        grep -qF "$file" /proc/$pid/maps || { kill $pid; fail "$file is not what is loaded"; }
    done
    simulator=$(pgrep -P $pid -f kestrel-simulator) || { kill $pid; fail "no simulator runs"; }
    [ "$(readlink -f "/proc/$simulator/exe")" = "$(readlink -f "$prefix/bin/kestrel-simulator")" ] ||
        { kill $pid; fail "another simulator runs"; }
    kill -TERM $pid
    wait $pid || fail "kestrel-workbench ended with exit code $?"
    wait_for 60 test ! -e "/proc/$simulator" || fail "the simulator is left over"
}

check_programs() {
    local prefix work plugin
    prefix=$(readlink -f "$1")
    work=$2
    plugin=$(find "$prefix/lib" -name libMeasurementToolModule.so)
    [ -n "$plugin" ] || fail "the plug-in is not installed"
    [ -e "${plugin%/*}/libProbeCheckModule.so" ] || fail "the second plug-in is not installed"
    check_papers "$prefix" kestrel-workbench
    check_papers "$prefix" kestrel-simulator
    check_papers "$prefix" kestrel-recording
    LC_ALL=C "$prefix/bin/kestrel-workbench" --language de --help |
        grep -q 'Mit einem Controller verbinden' || fail "no German texts are found"
    LANGUAGE='' LC_ALL=de_DE.UTF-8 "$prefix/bin/kestrel-workbench" --help |
        grep -q 'Mit einem Controller verbinden' || fail "the system's language does not count"
    LANGUAGE='' LC_ALL=de_DE.UTF-8 "$prefix/bin/kestrel-workbench" --language en --help |
        grep -q 'Connect to a controller' || fail "--language does not count"
    check_live_rows "$prefix" "$work" "$plugin"
}
