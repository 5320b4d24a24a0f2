#!/bin/sh
# Cell names such as $A$1 are meant literally inside single quotes.
# shellcheck disable=SC2016

# End-to-end checks of cellformula recalc and cellformula edit.
# Usage: sheet_cli_test.sh PATH_TO_CELLFORMULA
# Each row writes a sheet, runs the program once on it and compares the exit
# status, standard output (exactly) and standard error (a shell pattern).
set -u

cli=${1:?usage: sheet_cli_test.sh PATH_TO_CELLFORMULA}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
total=0

# sheet LINE...: the sheet the checks that follow read, one argument per line.
sheet() { printf '%s\n' "$@" >"$work/sheet.csv"; }
# lines LINE...: the expected output, one argument per line.
lines() { printf '%s\n' "$@"; }

# The checks read the sheet on standard input too.
input=$work/sheet.csv
# shellcheck source=tools/checks.sh
. "$(dirname "$0")/checks.sh"

# --- recalc: values in dependency order, error codes, syntax errors and cycles
sheet 'Price,Qty,Total' '2.5,4,=C3+A2*B2' '-1,3,=SQRT(B2)' '=C2*2,"a,b",=A5' '=A5+1,=B6,=1+' '=C5,=B5'
# C4 reads a cycle and A6 a broken formula: they are evaluated, and find no value there.
check 1 "$(lines 'Price,Qty,Total' '2.5,4,12' '-1,3,2' '24,"a,b",#ErrNoValue' '#CYCLE,#CYCLE,#SYNTAX' \
    '#ErrNoValue,#CYCLE')" \
    '*cycle: B5 B6*cycle: A5*C5: 1.4: syntax error*' recalc "$work/sheet.csv"
sheet 'x,=SQRT(-1),=Z99,=1+2'
check 0 "$(lines 'x,#ErrDomain,#ErrNoValue,3')" "" recalc -
sheet '2,=A1+1,=C1,=LN(0)'
check 1 "$(lines '{"cell":"B1","formula":"=A1+1","value":"3","type":"number","error":0,"errorName":"ErrNone","cycle":false}' \
    '{"cell":"C1","formula":"=C1","value":null,"type":"cycle","error":null,"errorName":null,"cycle":true}' \
    '{"cell":"D1","formula":"=LN(0)","value":null,"type":"number","error":4,"errorName":"ErrInfinite","cycle":false}')" \
    '*cycle: C1' recalc --json -
check 2 "" '*recalc expects one FILE.csv*' recalc
sheet "$(printf '%16385s' '' | tr ' ' ',')"
check 2 "" '*more than 16384 columns*' recalc -

# --- edit: cells move, references follow, "$" or not; texts stay
sheet 'A,B' '1,=A2*2' '2,=SUM(A2:A3)+$A$3' '3,=B2+"A3"'
check 0 "$(lines 'A,B' '1,=A2*2' '' '2,=SUM(A2:A4)+$A$4' '3,"=B2+""A3"""')" "" edit insert-rows 3 1 "$work/sheet.csv"
check 0 "$(lines 'A,B' '1,=A2*2' '3,"=B2+""A3"""')" "" edit delete-rows 3 1 -
check 0 "$(lines 'A,B' '3,"=#REF+""A3"""')" "" edit delete-rows 2 2 -
check 0 "$(lines ',A,B' ',1,=B2*2' ',2,=SUM(B2:B3)+$B$3' ',3,"=C2+""A3"""')" "" edit insert-columns a 1 -
check 0 "$(lines 'B' '=#REF*2' '=SUM(#REF)+#REF' '"=A2+""A3"""')" "" edit delete-columns A 1 -
check 2 "" '*the count 0 must be 1 or more*' edit delete-rows 3 0 -
check 2 "" '*the count -2 must be 1 or more*' edit insert-columns B -2 -
check 2 "" '*row must be 1 or more*' edit insert-rows 0 1 -
check 2 "" '*column must be letters*' edit insert-columns 2 1 -

echo "sheet_cli_test: $((total - failed)) of $total checks passed"
[ "$failed" -eq 0 ]
