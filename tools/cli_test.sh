#!/bin/sh
# Cell names such as $A$1 are meant literally inside single quotes.
# shellcheck disable=SC2016

# End-to-end checks of the cellformula program.
# Usage: cli_test.sh PATH_TO_CELLFORMULA
# Each row runs the program once and compares the exit status, standard output
# (exactly) and standard error (against a shell pattern; "" means silent).
set -u

cli=${1:?usage: cli_test.sh PATH_TO_CELLFORMULA}
tab=$(printf '\t')
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
input=/dev/null
failed=0
total=0

# res VALUE TYPE ERROR: one result line as the program prints it.
res() { printf '%s\t%s\t%s' "$1" "$2" "$3"; }
# failure MESSAGE: the line of an input that gave no result.
failure() { printf '\terror\t%s' "$1"; }

# with_input TEXT: the checks that follow read TEXT on standard input.
with_input() { printf '%s' "$1" >"$work/in"; input=$work/in; }
no_input() { input=/dev/null; }

# shellcheck source=tools/checks.sh
. "$(dirname "$0")/checks.sh"

# --- evaluation: value, type and error of plain formulas
check 0 "$(res 1.5 number '0 ErrNone')" "" '=1.5'
check 0 "$(res 42 number '0 ErrNone')" "" '42'
check 0 "$(res -7 number '0 ErrNone')" "" '-7'
check 0 "$(res 1e+06 number '0 ErrNone')" "" '=1000*1000'
check 0 "$(res inf number '5 ErrDomain')" "" '=1/0'
check 0 "$(res abc text '0 ErrNone')" "" '="ab"+"c"'
check 0 "$(res 'a\tb' text '0 ErrNone')" "" "=\"a${tab}b\""
check 0 "$(res 0 number '3 ErrNoValue')" "" '=A1'
check 0 "$(res no text '0 ErrNone')" "" '=IF(0;"yes";"no")'
check 0 "$(res -inf number '4 ErrInfinite')" "" '=LN(0)'
check 0 "$(res '' none '6 ErrWrongType')" "" '=IF(1>2;1)'
check 0 "$(res 11101000 text '2 ErrInvalidArg')" "" '=DEC2BIN(1000)'
check 0 "$(res 3.14 text '0 ErrNone')" "" '=TEXT(3.14159;"0.00")'

# --- cells from the command line
check 0 "$(res 16 number '0 ErrNone')" "" \
    --cell A1=1 --cell B1=2.5 --cell A2=4 --cell B2=0.5 '=SUM(A1:B2)*2'
check 0 "$(res 4 number '0 ErrNone')" "" --cell 'b2=3' '=$B$2+1'
check 0 "$(res 6 number '0 ErrNone')" "" --cell '$C$3=3' '=c3*2'
check 0 "$(res x text '0 ErrNone')" "" --cell 'A1="x"' '=A1'
check 0 "$(res 'Total: 5' text '0 ErrNone')" "" --cell A1=5 '="Total: "+A1'
check 0 "$(res 0 number '6 ErrWrongType')" "" --cell 'A1="x"' '=A1*2'
check 0 "$(res 0 number '3 ErrNoValue')" "" --cell A1=5 --cell A1= '=A1'
check 0 "$(res 7 number '0 ErrNone')" "" --cell 'Flow rate=7' '=INPUT("Flow rate")'
check 0 "$(res yes text '0 ErrNone')" "" --cell A1=5 '=IF(A1>0;"yes";"no")'
check 0 "$(res 0.5x text '0 ErrNone')" "" --cell A1=.5 '=A1+"x"'
check 0 "$(res a=b text '0 ErrNone')" "" --cell 'A1="a=b"' '=A1'
check 0 "$(res '' text '0 ErrNone')" "" --cell 'A1=""' '=A1'
check 0 "$(res ' 5' text '0 ErrNone')" "" --cell 'A1=" 5"' '=A1'
check 0 "$(res 'back\\slash' text '0 ErrNone')" "" --cell 'A1="back\slash"' '=A1'
check 0 "$(res 5 number '0 ErrNone')" "" --cell 'A1= 5 ' '=A1'
check 0 "$(res -300 number '0 ErrNone')" "" --cell 'A1=-3e2' '=A1'
check 0 "$(res 3 number '0 ErrNone')" "" --cell 'x.y=3' '=x.y'
check 0 "$(res 5 number '0 ErrNone')" "" --cell 'A1,B1=5' '=A1,B1'
check 0 "$(res 0 number '3 ErrNoValue')" "" --cell 'Rate=2' '=rate'

# --- cells from a CSV sheet; a later --cell overrides the sheet
printf '1,2\n"a,b",,3\n"say ""hi"""\r\n4e1, -2 \n' >"$work/sheet.csv"
check 0 "$(res 3 number '0 ErrNone')" "" --sheet "$work/sheet.csv" '=A1+B1'
check 0 "$(res a,b text '0 ErrNone')" "" --sheet "$work/sheet.csv" '=A2'
check 0 "$(res 0 number '3 ErrNoValue')" "" --sheet "$work/sheet.csv" '=B2'
check 0 "$(res 3 number '0 ErrNone')" "" --sheet "$work/sheet.csv" '=C2'
check 0 "$(res 'say "hi"' text '0 ErrNone')" "" --sheet "$work/sheet.csv" '=A3'
check 0 "$(res 38 number '0 ErrNone')" "" --sheet "$work/sheet.csv" '=A4+B4'
check 0 "$(res 10 number '0 ErrNone')" "" --sheet "$work/sheet.csv" --cell A1=9 '=A1+A1/9'
printf '"two\nlines",x\ny\n\n3\n' >"$work/multiline.csv"
check 0 "$(res 'two\nlines' text '0 ErrNone')" "" --sheet "$work/multiline.csv" '=A1'
check 0 "$(res 'x' text '0 ErrNone')" "" --sheet "$work/multiline.csv" '=B1'
check 0 "$(res 'y' text '0 ErrNone')" "" --sheet "$work/multiline.csv" '=A2'
check 0 "$(res 0 number '3 ErrNoValue')" "" --sheet "$work/multiline.csv" '=A3'
check 0 "$(res 3 number '0 ErrNone')" "" --sheet "$work/multiline.csv" '=A4'
printf '1,2\r\n3,4\r\n' >"$work/crlf.csv"
check 0 "$(res 8 number '0 ErrNone')" "" --sheet "$work/crlf.csv" '=B2*2'
printf '0x10,inf,1e,.5,+3,"",7' >"$work/words.csv"
check 0 "$(res 0x10 text '0 ErrNone')" "" --sheet "$work/words.csv" '=A1'
check 0 "$(res inf text '0 ErrNone')" "" --sheet "$work/words.csv" '=B1'
check 0 "$(res 1e text '0 ErrNone')" "" --sheet "$work/words.csv" '=C1'
check 0 "$(res 3.5 number '0 ErrNone')" "" --sheet "$work/words.csv" '=D1+E1'
check 0 "$(res 0 number '3 ErrNoValue')" "" --sheet "$work/words.csv" '=F1'
check 0 "$(res 7 number '0 ErrNone')" "" --sheet "$work/words.csv" '=G1'
check 0 "$(res 0 number '3 ErrNoValue')" "" --cell F1=1 --sheet "$work/words.csv" '=F1'
: >"$work/empty.csv"
check 0 "$(res 0 number '3 ErrNoValue')" "" --sheet "$work/empty.csv" '=A1'
check 0 "$(res 2 number '0 ErrNone')" "" --sheet "$work/crlf.csv" --sheet "$work/words.csv" '=A2-D1*2'
printf '1\n"a"b\n' >"$work/stray.csv"
check 2 "" "*stray.csv:2: unexpected character after a closing quote*" --sheet "$work/stray.csv" '=1'
printf '1\n2\n"x\n' >"$work/late.csv"
check 2 "" "*late.csv:3: unterminated quoted field*" --sheet "$work/late.csv" '=1'
printf '"open\n' >"$work/broken.csv"
check 2 "" "*broken.csv:1: unterminated quoted field*" --sheet "$work/broken.csv" '=1'
check 2 "" "cellformula: cannot read sheet $work/missing.csv: No such file or directory" \
    --sheet "$work/missing.csv" '=1'
printf '\357\273\2772,3\n' >"$work/bom.csv"
check 0 "$(res 5 number '0 ErrNone')" "" --sheet "$work/bom.csv" '=A1+B1'
check 0 "$(res 5 number '0 ErrNone')" "" --sheet="$work/bom.csv" --cell=C1=1 '=A1*C1+B1'
with_input "$(printf 'x,1\n2')"
check 0 "$(res x1 text '0 ErrNone')
$(res 2 number '0 ErrNone')" "" --sheet - '=A1+B1' '=A2'
check 2 "" "*--sheet - reads standard input*" --sheet -
no_input

# --- several formulas, failures, and the exit status after all of them
check 1 "$(failure '1.4: syntax error, unexpected end of file')
$(res 2 number '0 ErrNone')" "<argument>:1: 1.4: syntax error, unexpected end of file" '=1+' '=2'
check 1 "$(failure 'not a formula')" "<argument>:1: not a formula" 'A1'
check 1 "$(failure 'not a formula')
$(res 1 number '0 ErrNone')" "<argument>:1: not a formula" '42 ' '=1'
check 1 "$(failure 'Invalid cell name: "A0"')" "<argument>:1: Invalid cell name: \"A0\"
<argument>:1: hint: \"A0\" is no cell name: a range joins two cell names, as in A1:B3." '=SUM(A0:B2)'
check 1 "$(failure 'cannot evaluate: argument out of range')" \
    "<argument>:1: cannot evaluate: argument out of range" '=RIGHT("abc";-1)'
check 1 "$(res 1 number '0 ErrNone')
$(failure 'cannot evaluate: invalid argument')" \
    "<argument>:2: cannot evaluate: invalid argument" '=1' '=BIN2DEC("12")'
check 0 "$(res abc text '6 ErrWrongType')" "" '=LEFT("abc";-1)'
check 0 "$(res 12 text '0 ErrNone')" "" --cell A1=123 '=LEFT(A1;2)'

# --- formulas from standard input: one output line per input line, failures
# and empty lines included; CRLF and a byte-order mark tolerated
with_input "$(printf '\357\273\277=1+1\r\n=2*3\n')"
check 0 "$(res 2 number '0 ErrNone')
$(res 6 number '0 ErrNone')" "" --cell A1=1
with_input "$(printf 'oops\n=4\n\n=(\n=5')"
check 1 "$(failure 'not a formula')
$(res 4 number '0 ErrNone')
$(failure 'not a formula')
$(failure '1.3: syntax error, unexpected end of file')
$(res 5 number '0 ErrNone')" "<stdin>:1: not a formula
<stdin>:3: not a formula
<stdin>:4: 1.3: syntax error, unexpected end of file
<stdin>:4: hint: A closing parenthesis \")\" is missing."
with_input '=1+2'
check 0 "+ add
  1
  2
$(res 3 number '0 ErrNone')" "" --tree
no_input

# --- tree outline and trace
check 0 "+ add
  1
  * multiply
    2
    3
$(res 7 number '0 ErrNone')" "" --tree '=1+2*3'
check 0 "$(res 1 number '0 ErrNone')" "*accepting rule*" --trace '=1'

# --- JSON: one object per input, valid for any bytes
check 0 '{"formula":"=1/0","value":"inf","number":null,"type":"number","error":5,"errorName":"ErrDomain","errorText":""}' "" \
    --json '=1/0'
check 1 '{"formula":"=1+","value":null,"number":null,"type":"error","error":null,"errorName":null,"errorText":"1.4: syntax error, unexpected end of file","syntaxError":{"begin":{"line":1,"column":4,"offset":3,"offset16":3,"offsetCp":3},"end":{"line":1,"column":4,"offset":3,"offset16":3,"offsetCp":3},"unexpected":"end of file","expected":[],"incomplete":true,"hint":""}}' \
    "<argument>:1: 1.4: syntax error, unexpected end of file" --json '=1+'
check 0 '{"formula":"=1+2","value":"3","number":3,"type":"number","error":0,"errorName":"ErrNone","errorText":"","tree":"+ add\n  1\n  2\n"}' "" \
    --json --tree '=1+2'
check 0 "{\"formula\":\"=\\\"a\\\\\\tb\\\"\",\"value\":\"a\\\\\\tb\",\"number\":null,\"type\":\"text\",\"error\":0,\"errorName\":\"ErrNone\",\"errorText\":\"\"}" "" \
    --json "=\"a\\${tab}b\""
with_input "$(printf '="\001\177\303\251\377\355\240\200\300\257"')"
check 0 "$(printf '{"formula":"=\\"\\u0001\\u007f\303\251\357\277\275\357\277\275\357\277\275\357\277\275\357\277\275\357\277\275\\"","value":"\\u0001\\u007f\303\251\357\277\275\357\277\275\357\277\275\357\277\275\357\277\275\357\277\275","number":null,"type":"text","error":0,"errorName":"ErrNone","errorText":""}')" "" --json
no_input

# Binary garbage on standard input: one object per line, every one valid UTF-8
# without raw control bytes (and valid JSON where python3 can tell).
total=$((total + 1))
head -c 65536 /dev/urandom >"$work/garbage"
lines=$(tr -cd '\n' <"$work/garbage" | wc -c)
"$cli" --json <"$work/garbage" >"$work/garbage.json" 2>/dev/null
if [ "$(wc -l <"$work/garbage.json")" -ne "$((lines + 1))" ] && [ "$(wc -l <"$work/garbage.json")" -ne "$lines" ]; then
    failed=$((failed + 1))
    echo "FAIL: binary garbage: $(wc -l <"$work/garbage.json") JSON lines for $lines input lines"
elif ! iconv -f UTF-8 -t UTF-8 "$work/garbage.json" >/dev/null 2>&1 || LC_ALL=C grep -q "$(printf '[\001-\010\013-\037\177]')" "$work/garbage.json"; then
    failed=$((failed + 1))
    echo "FAIL: binary garbage: the JSON output is not clean UTF-8"
elif command -v python3 >/dev/null 2>&1 && ! python3 -c 'import json,sys
for line in open(sys.argv[1], encoding="utf-8"): json.loads(line)' "$work/garbage.json"; then
    failed=$((failed + 1))
    echo "FAIL: binary garbage: the output is not JSON"
fi

# A 10 MB line on standard input that fails at its first tokens.
total=$((total + 1))
{ printf '=)'; head -c 10000000 /dev/zero | tr '\0' '1'; printf '\n=7\n'; } >"$work/long"
if [ "$("$cli" <"$work/long" 2>/dev/null)" != "$(failure "1.2: syntax error, unexpected ')'")
$(res 7 number '0 ErrNone')" ]; then
    failed=$((failed + 1))
    echo "FAIL: a 10 MB line on standard input"
fi

# A sum of a million terms, and an outline 20,000 levels deep: evaluated and
# printed without recursion. (An outline's indentation grows with the square
# of its depth, so the million-level one is not printed.)
total=$((total + 1))
awk 'BEGIN { printf "=1"; for (i = 1; i < 1000000; i++) printf "+1"; print "" }' >"$work/sum"
if [ "$("$cli" <"$work/sum" 2>/dev/null)" != "$(res 1e+06 number '0 ErrNone')" ]; then
    failed=$((failed + 1))
    echo "FAIL: a sum of a million terms on standard input"
fi
total=$((total + 1))
awk 'BEGIN { printf "="; for (i = 0; i < 20000; i++) printf "SQRT("; printf "1"; for (i = 0; i < 20000; i++) printf ")"; print "" }' >"$work/deep"
if [ "$("$cli" --tree <"$work/deep" 2>/dev/null | wc -l)" -ne 20002 ]; then
    failed=$((failed + 1))
    echo "FAIL: the outline of 20,000 nested SQRT"
fi

# --- bad arguments and help
check 2 "" "cellformula: unknown option --bogus (see cellformula --help)" --bogus '=1'
check 2 "" "cellformula: unknown option --bogus (see cellformula --help)" --bogus=1 '=1'
check 2 "" "*--tree takes no value*" --tree=yes '=1'
check 0 "cellformula 2.0.0" "" --version
check 2 "" "*--cell needs an argument*" --cell
check 2 "" "*--cell expects NAME=VALUE*" --cell A1 '=1'
check 2 "" "*must be a number, a text in double quotes, or empty*" --cell A1=abc '=1'
check 2 "" "*must be a number*" --cell A1=0x10 '=1'
check 2 "" "*--cell expects NAME=VALUE*" --cell '=5' '=1'
check 2 "" "*must be a number*" --cell 'A1="open' '=1'
check 2 "" "*must be a number*" --cell 'A1=.' '=1'
check 2 "" "*must be a number*" --cell 'A1=1e' '=1'
check 2 "" "*--sheet needs an argument*" '=1' --sheet
check 0 "$(res 1 number '0 ErrNone')" "" -- '=1'
check 1 "$(failure 'not a formula')" "<argument>:1: not a formula" -- --tree

# --- rewriting references
check 0 '=B2+$B$2+D$3' "" rewrite offset 1 1 '=A1+$B$2+C$3'
check 0 '=#REF' "" rewrite offset -1 0 '=A1'
check 0 '=SUM(A2:B3)' "" rewrite offset 1 0 '=SUM(A1:B2)'
check 0 'A1+B2' "" rewrite offset 1 1 'A1+B2'
check 0 '=A2+A4+$A$3' "" rewrite insert-row 3 '=A2+A3+$A$3'
check 0 '=A2+#REF+A3' "" rewrite delete-row 3 '=A2+A3+A4'
check 0 '=A1+C1+D1' "" rewrite insert-column B '=A1+B1+C1'
check 0 '=A1+#REF+B1' "" rewrite delete-column 1 '=A1+B1+C1'
check 0 '=A1+#REF+B1' "" rewrite delete-column b '=A1+B1+C1'
check 0 '=A2
=B2' "" rewrite offset 1 0 '=A1' '=B1'
check 0 '=A1+D1' "" rewrite insert-column c '=A1+C1'
check 0 '=A1+D1' "" rewrite insert-column 2 '=A1+C1'
check 0 '=AA1+$Z1' "" rewrite offset +0 +1 '=Z1+$Z1'
check 0 '=#REF+A1' "" rewrite offset 0 -2 '=B5+C1'
check 0 '=DEC2BIN(A2)' "" rewrite offset 1 0 '=DEC2BIN(A1)'
with_input "$(printf '=C3\r\n\n=A1+C1\n')"
check 0 '=D3

=A1+D1' "" rewrite insert-column C
no_input
check 2 "" "*unknown rewrite operation*" rewrite shift 1 '=A1'
check 2 "" "*row numbers start at 1*" rewrite insert-row 0 '=A1'
check 2 "" "*COLS must be a whole number*" rewrite offset 1 '=A1'
check 2 "" "*column must be letters*" rewrite delete-column B2 '=A1'
check 2 "" "*needs an operation*" rewrite
check 2 "" "*needs a row number*" rewrite insert-row
check 2 "" "*row number must be a whole number*" rewrite delete-row 1.5 '=A1'
check 2 "" "*ROWS is out of range*" rewrite offset 9999999999 0 '=A1'
check 2 "" "*column must be letters*" rewrite insert-column ABCDEFG '=A1'

# --- cell names and coordinates
check 0 "$(printf '1\t11\tB')" "" cell B12
check 0 "$(printf '2\t2\tC')" "" cell '$c$3'
check 0 "$(printf '701\t0\tZZ')" "" cell ZZ1
check 0 'AB10' "" cell 27 9
check 0 'AB10' "" cell AB 9
check 0 "$(printf '0\t0\tA')" "" cell a1
check 0 "$(printf '0\t0\tA')" "" cell 'A$1'
check 0 'A1' "" cell 0 0
check 0 'AAA1' "" cell 702 0
check 0 'ZZZZZZ1' "" cell ZZZZZZ 0
check 0 'A2147483647' "" cell 0 2147483646
check 1 "" "not a cell name: A0" cell A0
check 1 "" "not a cell name: A1B" cell A1B
check 1 "" "not a cell name: " cell ''
check 2 "" "*row index is out of range*" cell 0 2147483647
check 2 "" "*row index must be a whole number*" cell 1 x
check 2 "" "*cell needs*" cell
check 2 "" "*row index must not be negative*" cell 1 -1
check 2 "" "*cell needs*" cell A1 2 3

# --- editor support: tokens, references, and the syntax error as data
check 0 "$(printf '0 1 operator =\t1 4 function SUM\t4 5 parenthesis (\t5 9 name $A$1\t9 10 separator :\t10 12 name B2\t12 13 parenthesis )\t13 14 operator *\t14 19 text "a\\tb"')" "" \
    tokens "=SUM(\$A\$1:B2)*\"a${tab}b\""
check 0 "$(printf '0 1 operator =\t1 2 invalid "\t2 5 name abc\n0 1 operator =\t2 3 number 1\t3 4 invalid ,')" "" \
    tokens '="abc' '= 1,'
check 0 '[{"kind":"function","detail":"function","text":"SUM","begin":1,"end":4,"begin16":1,"end16":4,"beginCp":1,"endCp":4},{"kind":"invalid","detail":"character","text":"\u0001","begin":4,"end":5,"begin16":4,"end16":5,"beginCp":4,"endCp":5}]' "" \
    tokens --json " SUM$(printf '\001')"
check 0 "$(printf '5 10 A1:B2 0,0 1,1\t11 15 $D$4 $3,$3\t17 19 c3 2,2\n')" "" refs '=SUM(A1:B2;$D$4)+c3+"E5"+rate'
check 0 '[{"text":"$D$4","begin":1,"end":5,"begin16":1,"end16":5,"beginCp":1,"endCp":5,"cell":{"column":3,"row":3,"columnAbsolute":true,"rowAbsolute":true,"begin":1,"end":5,"begin16":1,"end16":5,"beginCp":1,"endCp":5}},{"text":"A1:B2","begin":10,"end":15,"begin16":10,"end16":15,"beginCp":10,"endCp":15,"from":{"column":0,"row":0,"columnAbsolute":false,"rowAbsolute":false,"begin":10,"end":12,"begin16":10,"end16":12,"beginCp":10,"endCp":12},"to":{"column":1,"row":1,"columnAbsolute":false,"rowAbsolute":false,"begin":13,"end":15,"begin16":13,"end16":15,"beginCp":13,"endCp":15}}]' "" \
    refs --json '=$D$4+MIN(A1:B2)'
with_input "$(printf '=A1\n\n=x')"
check 0 "$(printf '1 3 A1 0,0\n\n')" "" refs
check 0 "$(printf '[{"kind":"operator","detail":"start","text":"=","begin":0,"end":1,"begin16":0,"end16":1,"beginCp":0,"endCp":1},{"kind":"name","detail":"cell","text":"A1","begin":1,"end":3,"begin16":1,"end16":3,"beginCp":1,"endCp":3}]\n[]\n[{"kind":"operator","detail":"start","text":"=","begin":0,"end":1,"begin16":0,"end16":1,"beginCp":0,"endCp":1},{"kind":"name","detail":"variable","text":"x","begin":1,"end":2,"begin16":1,"end16":2,"beginCp":1,"endCp":2}]')" "" tokens --json
no_input
check 2 "" "*unknown option --tree for refs*" refs --tree '=A1'
check 1 '{"formula":"=MAX(1,2)","value":null,"number":null,"type":"error","error":null,"errorName":null,"errorText":"1.7: syntax error, unexpected invalid token, expecting '"')' or ';'"'","syntaxError":{"begin":{"line":1,"column":7,"offset":6,"offset16":6,"offsetCp":6},"end":{"line":1,"column":8,"offset":7,"offset16":7,"offsetCp":7},"unexpected":"invalid token","expected":["'"')'"'","'"';'"'"],"incomplete":false,"hint":"Arguments are separated by \";\", not \",\", and numbers are written with a point: 1.5."}}' \
    "*" --json '=MAX(1,2)'
check 1 '{"formula":"=SUM(A1:x)","value":null,"number":null,"type":"error","error":null,"errorName":null,"errorText":"Invalid cell name: \"x\"","syntaxError":{"begin":{"line":1,"column":9,"offset":8,"offset16":8,"offsetCp":8},"end":{"line":1,"column":10,"offset":9,"offset16":9,"offsetCp":9},"invalidCellName":"x","incomplete":false,"hint":"\"x\" is no cell name: a range joins two cell names, as in A1:B3."}}' \
    "*" --json '=SUM(A1:x)'
check 1 '{"formula":"A1","value":null,"number":null,"type":"error","error":null,"errorName":null,"errorText":"not a formula"}' "*" --json 'A1'

# --- the formula bar: cursor help, numbers in full, hints on standard error
check 0 "$(printf '9 11 name SU\tIF 1\tSUM\n2 4 name ab\t- -\t')" "" cursor 11 '=IF(A1>0;SU' '="ab'
check 0 '{"token":{"kind":"function","detail":"function","text":"SIN","begin":1,"end":4,"begin16":1,"end16":4,"beginCp":1,"endCp":4},"function":null,"argument":null,"inText":false,"completions":["SIN"]}' "" \
    cursor 3 '=SIN(1)' --json
check 0 "$(printf '4 5 number 1\tLN 0\t')" "" cursor 99 '=ln(1'
check 2 "" "*OFFSET must be a whole number*" cursor x '=1'
check 0 "$(res 1234567.89 number '0 ErrNone')
$(res 0.30000000000000004 number '0 ErrNone')
$(res inf number '5 ErrDomain')" "" --digits '=1234567.89' '=0.1+0.2' '=1/0'
check 0 '{"formula":"=1234567.89","value":"1.23457e+06","number":1234567.89,"type":"number","error":0,"errorName":"ErrNone","errorText":""}
{"formula":"=-0","value":"-0","number":-0,"type":"number","error":0,"errorName":"ErrNone","errorText":""}' "" \
    --json '=1234567.89' '=-0'
check 1 "$(failure "1.5: syntax error, unexpected '('")" "<argument>:1: 1.5: syntax error, unexpected '('
<argument>:1: hint: Function names are written all in capitals or all in small letters: SUM or sum." '=Sum(1)'

# --- help
total=$((total + 1))
if ! "$cli" --help | grep -q '^Usage:'; then
    failed=$((failed + 1))
    echo "FAIL: cellformula --help does not print the usage on standard output"
fi

echo "cli_test: $((total - failed)) of $total checks passed"
[ "$failed" -eq 0 ]
