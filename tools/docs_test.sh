#!/bin/sh
# Runs every example of the documentation and compares its output.
# Usage: docs_test.sh PATH_TO_CELLFORMULA FILE.md...
# An example is a line "$ cellformula ARGS" inside a ``` block, followed by
# the exact standard output, up to the next "$ " line or the end of the block.
set -u

cli=${1:?usage: docs_test.sh PATH_TO_CELLFORMULA FILE.md...}
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
total=0

# run_example FILE LINE COMMAND: runs the command with the program in place of
# "cellformula" and compares with $work/expected.
run_example() {
    total=$((total + 1))
    # The documentation is ours, so its shell quoting is trusted.
    eval "\"\$cli\"${3#cellformula}" >"$work/actual" 2>/dev/null
    if ! cmp -s "$work/expected" "$work/actual"; then
        failed=$((failed + 1))
        echo "FAIL: $1:$2: $3"
        diff "$work/expected" "$work/actual" | sed 's/^/  /'
    fi
}

for doc in "$@"; do
    in_block=0 command="" line_number=0 command_line=0
    while IFS= read -r line || [ -n "$line" ]; do
        line_number=$((line_number + 1))
        case $line in
        '```'*)
            if [ -n "$command" ]; then run_example "$doc" "$command_line" "$command"; fi
            command=""
            in_block=$((1 - in_block))
            ;;
        '$ cellformula'*)
            if [ "$in_block" = 1 ]; then
                if [ -n "$command" ]; then run_example "$doc" "$command_line" "$command"; fi
                command=${line#\$ } command_line=$line_number
                : >"$work/expected"
            fi
            ;;
        *)
            if [ -n "$command" ]; then printf '%s\n' "$line" >>"$work/expected"; fi
            ;;
        esac
    done <"$doc"
done

echo "docs_test: $((total - failed)) of $total examples match"
[ "$total" -gt 0 ] && [ "$failed" -eq 0 ]
