# Sourced by ./test and tools/check: runs named steps one after the other, counts what passed, failed and was skipped, and
# closes with one line that says so. A step's output goes to a file and is shown only when the step fails.
#
#   step NAME COMMAND...        one check: passes when the command does
#   suite NAME COMMAND...       a run of ctest or of journeys: every test case in it is counted
#   skip NAME REASON            said at the end
#   finish                      the summary; its status is the run's. The counts are left in build/steps/NAME.counts,
#                               NAME being the script's.

passed=0 failed=0 skipped=0
failures= skips=
began=$(date +%s)
steps_directory=build/steps

begin_step() {
    step_name=$1
    step_log=$steps_directory/$(echo "$1" | tr -c 'A-Za-z0-9\n' '-').log
    step_began=$(date +%s)
    mkdir -p "$steps_directory"
    printf '%-58s ' "$1"
    # Something is seen of a long step each minute, where somebody looks or a log is kept.
    (
        trap 'kill $!; exit' TERM
        while :; do
            sleep 60 >/dev/null 2>&1 &
            wait $!
            printf '.'
        done
    ) &
    step_ticker=$!
}

# end_step STATUS TEXT: closes the line, and shows the log where the step failed.
end_step() {
    kill "$step_ticker" 2>/dev/null
    wait "$step_ticker" 2>/dev/null
    printf '%-28s %5d s\n' "$2" "$(($(date +%s) - step_began))"
    [ "$1" -ne 0 ] || return 0
    failures="$failures
    $step_name (the whole of it is in $step_log)"
    sed 's/^/    | /' "$step_log" | tail -n 80
}

step() {
    begin_step "$1"
    shift
    if "$@" >"$step_log" 2>&1 </dev/null; then
        passed=$((passed + 1))
        end_step 0 ok
    else
        failed=$((failed + 1))
        end_step 1 FAILED
        return 1
    fi
}

# The counts of a log of verbose ctest: "PASSED FAILED SKIPPED". A program that ended without its own
# summary (a crash, a sanitizer's stop, a time-out) is one failure.
count_cases() {
    awk '
        / Start +[0-9]+: /                  { started++ }
        /\[==========\] .* ran\./           { finished++ }
        /\[  PASSED  \] [0-9]+ test/        { passed += number("PASSED") }
        /\[  FAILED  \] .* ms\)/            { failed++ }
        /\[  SKIPPED \] [0-9]+ test/        { skipped += number("SKIPPED") }
        /^([0-9]+: )?[0-9]+ passed, [0-9]+ failed/ { sub(/^[0-9]+: /, ""); passed += $1; failed += $3; finished++ }  # journeys
        function number(word,   rest) { rest = $0; sub(".*" word " *\\] *", "", rest); return rest + 0 }
        END { print passed + 0, failed + (started > finished ? started - finished : 0), skipped + 0 }' "$1"
}

suite() {
    begin_step "$1"
    shift
    status=0
    "$@" >"$step_log" 2>&1 </dev/null || status=1
    # shellcheck disable=SC2046
    set -- $(count_cases "$step_log")
    [ "$1" -gt 0 ] || [ "$2" -gt 0 ] || { echo "no test ran" >>"$step_log"; status=1; }
    [ "$status" -eq 0 ] || [ "$2" -gt 0 ] || set -- "$1" 1 "$3"
    passed=$((passed + $1)) failed=$((failed + $2)) skipped=$((skipped + $3))
    [ "$3" -eq 0 ] || skips="$skips
    $3 cases of: $step_name (named in $step_log)"
    end_step "$status" "$1 passed$([ "$2" -eq 0 ] || echo ", $2 FAILED")$([ "$3" -eq 0 ] || echo ", $3 skipped")"
    return "$status"
}

skip() {
    skipped=$((skipped + 1))
    skips="$skips
    $1: $2"
}

finish() {
    echo
    [ -z "$skips" ] || echo "Skipped:$skips"
    [ -z "$failures" ] || echo "Failed:$failures"
    echo "$(($(date +%s) - began)) seconds"
    echo "$passed $failed $skipped" >"$steps_directory/$(basename "$0").counts"
    echo "$passed passed, $failed failed, $skipped skipped"
    [ "$failed" -eq 0 ]
}
