#!/bin/bash
# examples_test.sh PYTHON HOST_PY LIBRARIES PROGRAMS - the example in Python, host.py, writes a document only to the file
# that -o names. Of the examples in C++, `settings` saves its settings for the next run, `report` adds up readings,
# and `merge` skips bad files and continues.
set -euE
trap 'echo "line $LINENO fails: $BASH_COMMAND"' ERR
refuse() { if "$@"; then echo "line ${BASH_LINENO[0]} must fail, but it succeeds: $*"; exit 1; fi; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$1" "$2" "$3" >/dev/null
[ -z "$(ls)" ] # without -o, host.py writes no file
"$1" "$2" "$3" -o shelf.xml
refuse "$1" "$2" /none 2>errors.txt
[ "$(wc -l <errors.txt)" = 1 ]
grep -q /none errors.txt

for zoom in 1 1.25 1.5 1.75; do
    "$4/settings" settings.xml >printed.txt
    grep -q "^tab 8, zoom $zoom, theme" printed.txt
done
grep -q 'theme dark' printed.txt
refuse "$4/settings" "$(printf '%.0sx' {1..300})" 2>errors.txt
[ "$(wc -l <errors.txt)" = 1 ] # one line says that the system refuses this name
[ "$(grep -c '<file>' settings.xml)" = 3 ]
grep -q '<editor wrap="true" zoom="2"/>' settings.xml

cat >readings.xml <<'END'
<readings>
    <reading station="Nord" rain="0.5"><remark>h&#xE9;</remark><remark>ok</remark></reading>
    <reading station="Nord" rain="1.25"/>
    <reading rain="none"/>
</readings>
END
"$4/report" readings.xml report.xml
diff report.xml - <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<report>
    <station name="Nord" readings="2">
        <rain>1.75</rain>
        <letters>5</letters>
    </station>
    <station name="unknown" readings="1">
        <rain>0</rain>
        <letters>0</letters>
    </station>
</report>
END
refuse "$4/report" readings.xml /dev/full 2>errors.txt
diff errors.txt - <<<"/dev/full: No space left on device"

echo '<open>' >bad.xml
printf '%.0s<d>' {1..2048} >deep.xml
printf '%.0s</d>' {1..2048} >>deep.xml
refuse "$4/merge" merged.xml shelf.xml bad.xml deep.xml none.xml readings.xml 2>errors.txt
diff errors.txt - <<'END'
bad.xml:2:1: unexpected end of file
deep.xml: appending a node: the tree would become deeper than 2048 elements
none.xml: No such file or directory
END
[ "$(grep -o '<part from="[^"]*"/*>' merged.xml | tr '\n' ' ')" = \
    '<part from="shelf.xml"> <part from="readings.xml"> ' ]
