# Writes a type library from its source, with a digest that lets the reader detect damage:
# cmake -DSOURCE=... -DTARGET=... -P StampTypeLib.cmake
#
# The digest is the SHA-256, in lower-case hex, of everything after the `>` of the `<library>` tag.

file(READ "${SOURCE}" text)
string(FIND "${text}" "<library " start)
string(SUBSTRING "${text}" ${start} -1 library)
string(FIND "${library}" ">" end)
math(EXPR cut "${start} + ${end}")
string(SUBSTRING "${text}" 0 ${cut} head)
math(EXPR bodyStart "${cut} + 1")
string(SUBSTRING "${text}" ${bodyStart} -1 body)
string(SHA256 digest "${body}")
file(WRITE "${TARGET}" "${head} digest=\"${digest}\">${body}")
