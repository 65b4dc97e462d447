#!/bin/bash
# examples_test.sh PYTHON HOST_PY LIBRARIES PROGRAMS - the host in Python leaves a document only where it is told to; the
# ones in C++ keep settings, add up, and go on after bad files.
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$1" "$2" "$3" >/dev/null
[ -z "$(ls)" ] # nothing is written that nobody asked for
"$1" "$2" "$3" -o shelf.xml
if "$1" "$2" /none 2>errors.txt; then exit 1; fi
[ "$(wc -l <errors.txt)" = 1 ] && grep -q /none errors.txt

for zoom in 1 1.25 1.5 1.75; do
    "$4/settings" settings.xml >printed.txt
    grep -q "^tab 8, zoom $zoom, theme" printed.txt
done
grep -q 'theme dark' printed.txt
if "$4/settings" "$(printf '%.0sx' {1..300})" 2>errors.txt; then exit 1; fi
[ "$(wc -l <errors.txt)" = 1 ] # as the system refuses such a name
[ "$(grep -c '<file>' settings.xml)" = 3 ] && grep -q '<editor wrap="true" zoom="2"/>' settings.xml

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
if "$4/report" readings.xml /dev/full 2>errors.txt; then exit 1; fi
diff errors.txt - <<<"/dev/full: No space left on device"

echo '<open>' >bad.xml
printf '%.0s<d>' {1..2048} >deep.xml
printf '%.0s</d>' {1..2048} >>deep.xml
if "$4/merge" merged.xml shelf.xml bad.xml deep.xml none.xml readings.xml 2>errors.txt; then exit 1; fi
diff errors.txt - <<'END'
bad.xml:2:1: unexpected end of file
deep.xml: appending a node: the tree would become deeper than 2048 elements
none.xml: No such file or directory
END
[ "$(grep -o '<part from="[^"]*"/*>' merged.xml | tr '\n' ' ')" = \
    '<part from="shelf.xml"> <part from="readings.xml"> ' ]
