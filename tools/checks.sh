# shellcheck shell=sh disable=SC2154
# The check of the command-line test scripts, sourced by them. The script sets
# cli (the program), work (a scratch folder), input (what standard input reads),
# failed and total.

# check STATUS STDOUT STDERR_PATTERN ARG...: runs the program once and compares
# the exit status, standard output (exactly) and standard error (a shell
# pattern; "" means silent).
check() {
    want_status=$1 want_out=$2 want_err=$3
    shift 3
    total=$((total + 1))
    "$cli" "$@" <"$input" >"$work/out" 2>"$work/err"
    status=$?
    out=$(cat "$work/out")
    err=$(cat "$work/err")
    problem=""
    [ "$status" = "$want_status" ] || problem="status $status, expected $want_status"
    [ "$out" = "$want_out" ] || problem="$problem${problem:+; }stdout differs"
    # The pattern is deliberately unquoted: it is a shell pattern.
    # shellcheck disable=SC2254
    case $err in $want_err) ;; *) problem="$problem${problem:+; }stderr does not match '$want_err'" ;; esac
    if [ -n "$problem" ]; then
        failed=$((failed + 1))
        printf 'FAIL: cellformula %s\n  %s\n  stdout:   %s\n  expected: %s\n  stderr:   %s\n' \
            "$*" "$problem" "$out" "$want_out" "$err"
    fi
}
