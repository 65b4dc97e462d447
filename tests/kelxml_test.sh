#!/bin/bash
# kelxml_test.sh KELXML VERSION SOURCES - runs the command-line tool: what it answers, what it leaves behind, and that its
# manual page and completion know every command.
set -u
kelxml=$1 version=$2 sources=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

fail() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

# expect CODE FRAGMENT ARGUMENT... - the exit code, and a part of what either stream gets
expect() {
    local output code
    output=$("$kelxml" "${@:3}" 2>&1)
    code=$?
    [ "$code" = "$1" ] && [[ $output == *"$2"* ]] ||
        fail "kelxml ${*:3} - expected $1 '$2', got $code '$output'"
}

# holds TEXT FRAGMENT
holds() { [[ $1 == *"$2"* ]] || fail "no '$2' in '$1'"; }

fresh() { printf '<?xml version="1.0" encoding="UTF-8"?>\n<a>\n    <b k="1">text</b>\n    <b/>\n</a>\n' >doc.xml; }

fresh
: >empty.xml
{ echo '<a>'; printf '<b/>%.0s' {1..3000}; echo '</a>'; } >wide.xml
echo '<a><b></a>' >broken.xml
{ printf '<a>%.0s' {1..3000}; printf '</a>%.0s' {1..3000}; } >deep.xml

# Streams that are closed are not taken for files.
if "$kelxml" copy doc.xml - >&- 2>/dev/null; then fail 'copied to a closed output'; fi
if "$kelxml" tree - <&- 2>closed.txt; then fail 'read from a closed input'; fi
grep -q 'cannot read the standard input' closed.txt || fail "$(cat closed.txt)"

# Questions about the tool itself.
expect 0 "kelxml $version" --version
expect 0 'Exit code: 0 fine' --help
expect 2 'no command given'
expect 2 "unknown command 'frob'" frob
commands=$("$kelxml" help | sed -n 's/^  kelxml \([a-z]*\) [A-Z].*/\1/p')
[ "$(wc -w <<<"$commands")" -eq 9 ] || fail "commands: $commands"
. "$sources/kelxml.bash"
for command in $commands; do
    expect 0 "kelxml $command " "$command" --help
    expect 2 "usage: kelxml $command " "$command"
    grep -q "^\.BI $command \"" "$sources/kelxml.1" || fail "no $command in the manual page"
    COMP_WORDS=(kelxml "$command") COMP_CWORD=1
    _kelxml
    [ "${COMPREPLY[*]-}" = "$command" ] || fail "completion of $command: ${COMPREPLY[*]-}"
done

# Command lines that make no sense, and change nothing.
expect 2 'too many arguments' tree doc.xml doc.xml
expect 2 "unknown option '--nope'" tree --nope doc.xml
expect 2 '-o OUT is missing' set doc.xml b k=v
expect 2 '-o needs a file' set doc.xml b k=v -o
expect 2 "is not NAME=VALUE" set doc.xml b =v -o doc.xml
for name in '1x' 'a b' 'x/><y' '<'; do
    expect 2 "'$name' is not a name" set doc.xml b "$name=v" -o doc.xml
done
expect 2 'character 3: expected the name of a member' call doc.xml 'a..b'
expect 2 'XML does not allow the character U+000B' text doc.xml b $'a\vb' -o doc.xml
expect 2 'U+FFFE' set doc.xml b k=$'\xef\xbf\xbe' -o doc.xml
expect 2 'U+0001' call doc.xml $'documentElement.text = "\001"' -o doc.xml

# Files that cannot be read, each for its own reason.
expect 1 "cannot read 'none.xml': No such file" tree none.xml
expect 1 'Is a directory' tree .
expect 1 'it is empty' tree empty.xml
expect 1 "'broken.xml': it is not well-formed XML, line 1, column 10: tag mismatch" tree broken.xml
expect 1 'the standard input: it is not well-formed XML, line 2, column 1: ' tree - <<<'<a>'
expect 1 "beyond the limits of the library (see LIMITS in 'man kelxml')" tree deep.xml
expect 1 'beyond the limits' call deep.xml nodeName
expect 1 'cannot read the standard input: it is empty' tree - <empty.xml
expect 1 "no member has that name" call doc.xml documentElement.frob

# Files that cannot be written.
expect 1 "cannot write '/dev/full': No space left" copy doc.xml /dev/full
expect 1 'No space left' write /dev/full
expect 1 'No space left' export doc.xml /dev/full
expect 1 'No space left' call doc.xml nodeName -o /dev/full
expect 1 'Is a directory' new .
expect 1 "cannot write 'none/x.xml': No such file" new none/x.xml
for arguments in 'copy doc.xml -' 'tree doc.xml' 'tree wide.xml' --help; do
    # shellcheck disable=SC2086 # words
    message=$("$kelxml" $arguments 2>&1 >/dev/full) && fail "a full device passed: $arguments"
    [[ $message == 'kelxml: cannot write '*'the standard output: No space left on device' ]] || fail "$message"
done
# What could not be read again is not written: the input is still there.
before=$(cat doc.xml)
expect 1 "'doc.xml': read again, it is not well-formed XML, line 5, " call doc.xml 'documentElement.appendChild(createNode(1, "1 x", ""))' -o doc.xml
[ "$before" = "$(cat doc.xml)" ] || fail 'a failed command changed its input'

# What is written, and what is left as it was about it.
expect 0 '2 elements changed' set doc.xml b k=2 -o doc.xml
holds "$(cat doc.xml)" '<b k="2">text</b>'
chmod 640 doc.xml
ln -s doc.xml link.xml
expect 0 '2 elements changed' text link.xml b new -o link.xml
[ -L link.xml ] && [ "$(stat -c %a doc.xml)" = 640 ] || fail 'link or mode lost'
holds "$(cat doc.xml)" '<b k="2">new</b>'
ln doc.xml name.xml
expect 0 '2 elements changed' set doc.xml b k=3 -o name.xml
holds "$(cat doc.xml)" 'k="3"'
ln -s made.xml dangling.xml
ln -s loop.xml loop.xml
expect 0 '' new dangling.xml
[ -L dangling.xml ] && [ -s made.xml ] || fail 'a link to nothing was not followed'
expect 1 "cannot write 'loop.xml': Too many levels" new loop.xml
{ rm gone.xml; expect 0 '' new /dev/fd/3; } 3>gone.xml
[ -z "$(find . -name 'gone*')" ] || fail 'a file that is gone came back'
expect 0 '' new -- -o.xml
expect 0 'element shelf number="7"' tree ./-o.xml
[ -z "$(find . -name '.kelxml*')" ] || fail 'files left behind'

# Standard input and output, pipes; reports keep out of the document's way.
fresh
holds "$("$kelxml" set - b k=v -o - <doc.xml 2>report | "$kelxml" find - b)" 'b k="v" "text"'
holds "$(cat report)" '2 elements changed'
holds "$("$kelxml" copy <(cat doc.xml) /dev/stdout)" '</a>'
holds "$("$kelxml" export doc.xml - --plain 2>report)" '<b k="1">text</b>'
holds "$(cat report)" '5 nodes written, 0 left out'
exported=$(printf '<!DOCTYPE a [<!ENTITY e "x">]><a/>' | "$kelxml" export - - 2>report)
[ "$exported" = $'<?xml version="1.0" encoding="UTF-8"?>\n<a/>' ] || fail "exported '$exported'"
holds "$(cat report)" '1 node written, 1 left out'
echo '<r a="1" b="2" c="3" d="4" e="5" f="6" g="7" h="8"/>' >attributes.xml
[ "$(for _ in {1..10}; do "$kelxml" copy attributes.xml - 2>/dev/null; done | sort -u | wc -l)" = 1 ] ||
    fail 'ten copies are not alike'

# Calls by name: a change is lost or saved, a null is a text or an object, and a refusal is no success.
expect 0 '2' call doc.xml 'selectNodes("b").length'
expect 0 'the change is lost' call doc.xml 'documentElement.SetAttribute("k", createNode(1, "n", null).nodeName)'
expect 0 '<note/>' call doc.xml 'documentElement.appendChild(createNode(1, "note", null))' -o -
expect 0 '(empty)' call doc.xml 'documentElement.removeChild(null)'
expect 1 "'selectNodes(\"c\").nextNode': S_FALSE" call doc.xml 'selectNodes("c").nextNode'
[[ $("$kelxml" call doc.xml documentElement.hasChildNodes 2>&1) = true ]] || fail 'a question was taken for a change'

# The longest expression that a command line takes costs no more than its length.
long=$(printf 'a.%.0s' {1..60000})a
output=$(ulimit -t 20; "$kelxml" call doc.xml "$long" 2>&1)
[ $? = 1 ] || fail "a long expression: $?"
holds "$output" 'no member has that name'

# On a terminal: colours unless they are unwelcome, and signs of life. Else neither.
export TERM=xterm
on_terminal() { script -qec "$1" /dev/null </dev/null; }
escape=$'\e['
holds "$(on_terminal "$kelxml tree doc.xml")" "${escape}1mb$escape"
holds "$(on_terminal "(sleep 1.2; cat doc.xml) | $kelxml find - b")" 'reading the standard input, 1 s'
plain=$(NO_COLOR=1 on_terminal "$kelxml tree doc.xml")$("$kelxml" tree doc.xml 2>&1)
[[ $plain != *"$escape"* ]] || fail "colours where there should be none: $plain"

[ "$failures" -eq 0 ] || exit 1
