#!/bin/bash
# kelxml_test.sh KELXML VERSION SOURCES - tests what the command-line tool prints and writes, and that its manual page and
# completion know every command. SOURCES is the folder tools/kelxml.
set -u
kelxml=$1 version=$2 sources=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

# fail RULE reports a broken rule and the line of the check.
fail() {
    echo "line ${BASH_LINENO[-2]}, broken rule: $*"
    failures=$((failures + 1))
}

# expect CODE FRAGMENT ARGUMENT... runs kelxml with the arguments, and expects the exit code, and the fragment in the output
# or the errors.
expect() {
    local output code
    output=$("$kelxml" "${@:3}" 2>&1)
    code=$?
    [ "$code" = "$1" ] && [[ $output == *"$2"* ]] ||
        fail "'kelxml ${*:3}' must exit with $1 and print '$2', but it exits with $code and prints '$output'"
}

# holds TEXT FRAGMENT expects the fragment in the text.
holds() { [[ $1 == *"$2"* ]] || fail "the text must contain '$2', but it is '$1'"; }

fresh() { printf '<?xml version="1.0" encoding="UTF-8"?>\n<a>\n    <b k="1">text</b>\n    <b/>\n</a>\n' >doc.xml; }

fresh
: >empty.xml
{ echo '<a>'; printf '<b/>%.0s' {1..3000}; echo '</a>'; } >wide.xml
echo '<a><b></a>' >broken.xml
{ printf '<a>%.0s' {1..3000}; printf '</a>%.0s' {1..3000}; } >deep.xml

# A closed stream is an error: the next file that kelxml opens must not get the descriptor of the stream.
if "$kelxml" copy doc.xml - >&- 2>/dev/null; then fail 'copy must fail if the output is closed'; fi
if "$kelxml" tree - <&- 2>closed.txt; then fail 'tree must fail if the input is closed'; fi
grep -q 'the standard input: ' closed.txt ||
    fail "the error must name the standard input, but it is '$(cat closed.txt)'"

# Help, completion and the manual page know every command.
expect 0 "kelxml $version" --version
expect 0 'Exit code: 0 success' --help
expect 2 'no command given'
expect 2 "unknown command 'frob'" frob
commands=$("$kelxml" help | sed -n 's/^  kelxml \([a-z]*\) [A-Z].*/\1/p')
[ "$(wc -w <<<"$commands")" -eq 11 ] || fail "help must list 11 commands, but it lists" $commands
. "$sources/kelxml.bash"
for command in $commands; do
    expect 0 "kelxml $command " "$command" --help
    expect 2 "usage: kelxml $command " "$command"
    grep -q "^\.BI $command \"" "$sources/kelxml.1" || fail "the manual page must describe $command"
    COMP_WORDS=(kelxml "$command") COMP_CWORD=1
    _kelxml
    [ "${COMPREPLY[*]-}" = "$command" ] || fail "completion must know $command, but it finds '${COMPREPLY[*]-}'"
done

# kelxml refuses wrong command lines, and changes nothing.
before=$(cat doc.xml)
expect 2 'too many arguments' copy doc.xml doc.xml doc.xml
expect 2 "unknown option '-doc.xml' (put -- before" tree -doc.xml
expect 2 '-o OUT is missing' set doc.xml b k=v
expect 2 '-o needs a file' set doc.xml b k=v -o
expect 2 "is not NAME=VALUE" set doc.xml b =v -o doc.xml
for name in '1x' 'a b' 'x/><y' '<'; do
    expect 2 "'$name' is not a name" set doc.xml b "$name=v" -o doc.xml
    expect 2 "'$name' is not a name" find doc.xml "$name"
    expect 2 "'$name' is not a name" text doc.xml "$name" v -o doc.xml
done
expect 2 'not valid UTF-8' call doc.xml $'a("\xff")'
expect 2 'character 3: expected the name of a member' call doc.xml 'a..b'
expect 2 'usage: kelxml text' text doc.xml b $'a\vb' -o doc.xml
expect 2 'usage: kelxml set' set doc.xml b k=$'\xef\xbf\xbe' -o doc.xml
expect 2 'usage: kelxml call' call doc.xml $'documentElement.text = "\001"' -o doc.xml
[ "$before" = "$(cat doc.xml)" ] || fail "a wrong command line must not change doc.xml, but doc.xml contains '$(cat doc.xml)'"

# Every command prints one line with the reason for each bad input, and then reads the remaining inputs, if any.
expect 1 'none.xml: No such file or directory' tree none.xml
expect 1 '.: Is a directory' find . b
expect 1 'empty.xml: it is empty' copy empty.xml out.xml
expect 1 'broken.xml:1:10: tag mismatch' call broken.xml nodeName
expect 1 'the standard input:2:1: ' tree - <<<'<a>'
expect 1 'deep.xml: nested deeper than 2048 levels' export deep.xml out.xml
expect 1 'the standard input: it is empty' tree - <empty.xml
[ ! -e out.xml ] || fail 'a command must write no output file if its input is bad'
checked=$("$kelxml" check doc.xml broken.xml wide.xml deep.xml none.xml) && fail 'check must fail if a file is bad'
[ "$(wc -l <<<"$checked")" = 3 ] || fail "check must print 3 lines, but it prints '$checked'"
output=$("$kelxml" check doc.xml wide.xml 2>&1) && [ -z "$output" ] || fail "check must accept good files and print nothing, but it prints '$output'"
output=$("$kelxml" find broken.xml doc.xml wide.xml b 2>/dev/null) && fail 'find must fail if a file is bad'
[ "$(wc -l <<<"$output")" = 3002 ] ||
    fail "find must print 3002 lines, and read the files after a bad one, but it prints $(wc -l <<<"$output") lines"
holds "$output" 'doc.xml: b k="1" "text"'

# Every command reports a file that it cannot write.
for arguments in 'copy doc.xml' write 'export doc.xml' 'call doc.xml nodeName -o'; do
    # shellcheck disable=SC2086 # the arguments are separate words
    expect 1 '/dev/full: No space left' $arguments /dev/full
done
expect 1 '.: Is a directory' new .
expect 1 'none/x.xml: No such file' new none/x.xml
for arguments in 'copy doc.xml -' 'tree doc.xml' 'tree wide.xml' --help; do
    # shellcheck disable=SC2086 # the arguments are separate words
    message=$("$kelxml" $arguments 2>&1 >/dev/full) && fail "'kelxml $arguments' must fail if the output device is full"
    [[ $message == 'kelxml: '*'No space left on device' ]] ||
        fail "'kelxml $arguments' must report that the device is full, but it prints '$message'"
done
# kelxml does not write a document that it could not load again, so the input is not lost.
before=$(cat doc.xml)
expect 1 'doc.xml was not written, because the changed document could not be loaded: ' call doc.xml 'documentElement.appendChild(createNode(1, "1 x", ""))' -o doc.xml
expect 1 "there is no element 'c'" set doc.xml c k=v -o doc.xml
[ "$before" = "$(cat doc.xml)" ] ||
    fail "a failed command must not change its input, but the input now contains '$(cat doc.xml)'"

# Changed files keep their permissions, and links to them stay links.
expect 0 '2 elements changed' set doc.xml b k=2 j=1 -o doc.xml
holds "$(cat doc.xml)" '<b j="1" k="2">text</b>'
expect 0 '2 elements changed' unset doc.xml b j none -o doc.xml
holds "$(cat doc.xml)" '<b k="2">text</b>'
chmod 640 doc.xml
ln -s doc.xml link.xml
fresh
expect 0 '2 elements changed' text link.xml b new -o link.xml
[ -L link.xml ] && [ "$(stat -c %a doc.xml)" = 640 ] ||
    fail "a changed file must keep its links and its mode 640: $(stat -c '%N %a' link.xml doc.xml)"
holds "$(cat doc.xml)" '<b k="1">new</b>'
ln -s made.xml dangling.xml
ln -s loop.xml loop.xml
expect 0 '' new dangling.xml
[ -L dangling.xml ] && [ -s made.xml ] ||
    fail "new must create the target of a link: $(stat -c '%N %s' dangling.xml made.xml 2>&1)"
expect 1 'loop.xml: Too many levels' new loop.xml
expect 0 '' new -- -o.xml
expect 0 'element shelf number="7"' tree ./-o.xml
[ "$(find . -name '.*' -type f)" = '' ] ||
    fail "temporary files must be removed: $(find . -name '.*' -type f)"

# kelxml reads documents from standard streams and pipes, and writes documents to them. Reports never go to the stream that
# receives the document.
fresh
holds "$("$kelxml" set - b k=v -o - <doc.xml 2>report | "$kelxml" find - b)" 'b k="v" "text"'
holds "$(cat report)" '2 elements changed'
holds "$("$kelxml" copy <(cat doc.xml) /dev/stdout)" '</a>'

# `export` copies every kind of node that the filer can write, and counts the nodes.
printf '<!DOCTYPE a><a k="1" j="&lt;"><!-- c --><![CDATA[<d>]]><?i x?><b/>t&amp;</a>' >kinds.xml
exported=$("$kelxml" export kinds.xml - --plain 2>report)
[ "$exported" = $'<?xml version="1.0" encoding="UTF-8"?><a j="&lt;" k="1"><!-- c --><![CDATA[<d>]]><?i x?><b/>t&amp;</a>' ] ||
    fail "export must write every kind of node, but it writes '$exported'"
holds "$(cat report)" '6 nodes written, 0 left out'
diff "$sources/../../tests/kelxml_write.xml" <("$kelxml" write - --plain) ||
    fail "'kelxml write' must write kelxml_write.xml; the difference is above"

# With -o, `call` saves changes; without -o, `call` warns that changes are lost. `call` accepts null for texts and objects,
# and reports refusals.
expect 0 '2' call doc.xml 'selectNodes("b").length'
expect 0 'the change is lost' call doc.xml 'documentElement.SetAttribute("k", createNode(1, "n", null).nodeName)'
expect 0 '<note/>' call doc.xml 'documentElement.appendChild(createNode(1, "note", null))' -o -
expect 0 '(empty)' call doc.xml 'documentElement.removeChild(null)'
expect 1 "'selectNodes(\"c\").nextNode': S_FALSE" call doc.xml 'selectNodes("c").nextNode'
expect 1 'no member has that name' call doc.xml documentElement.frob
expect 1 "'documentElement.LastChild': this member accepts calls but does nothing" call doc.xml documentElement.LastChild
expect 1 'does nothing' call doc.xml 'documentElement.nodeValue = "v"'
output=$("$kelxml" call doc.xml documentElement.hasChildNodes 2>&1)
[ "$output" = true ] || fail "a call that only reads must print its result without a warning, but it prints '$output'"

# The time for an expression grows only linearly with its length, so even the longest expression that fits in a command line
# is fast.
long=$(printf 'a.%.0s' {1..60000})a
output=$(ulimit -t 20; "$kelxml" call doc.xml "$long" 2>&1)
code=$?
[ "$code" = 1 ] || fail "a long expression must exit with 1, but it exits with $code"
holds "$output" 'no member has that name'

# Control characters in documents and file names are escaped, so they cannot control the terminal or reorder its text.
printf '<a>\xc2\x9b31m\xe2\x80\xae</a>' >control.xml # UTF-8 bytes in any locale, unlike \u
holds "$("$kelxml" tree control.xml)" '"\u009B31m\u202E"'
expect 1 'no\u001Bne.xml: No such' tree $'no\ene.xml'
expect 1 'no\xFF\x7Fne.xml: No such' tree $'no\xff\x7fne.xml'

# On a terminal, kelxml shows its progress, and uses colours unless NO_COLOR is set. Elsewhere, it does neither.
export TERM=xterm
on_terminal() { script -qec "$1" /dev/null </dev/null; }
escape=$'\e['
holds "$(on_terminal "$kelxml tree doc.xml")" "${escape}1mb$escape"
holds "$(on_terminal "$kelxml call control.xml documentElement.text")" '\u009B31m'
holds "$(on_terminal "$kelxml call control.xml documentElement.text -o - >call.xml")" '\u009B31m'
holds "$(on_terminal "(sleep 1.2; cat doc.xml) | $kelxml find - b")" 'reading, 1 s'
plain=$(NO_COLOR=1 on_terminal "$kelxml tree doc.xml")$("$kelxml" tree doc.xml 2>&1)
[[ $plain != *"$escape"* ]] || fail "without a terminal or with NO_COLOR, the output must have no colours, but it is '$plain'"

[ "$failures" -eq 0 ] || exit 1
