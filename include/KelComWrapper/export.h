/// \file
/// How the public headers mark what the libraries export.

#pragma once

/// Makes a class or a function visible outside of a library whose symbols are hidden by default. A macro,
/// because clang-format 14 does not see a class in one that begins with an attribute; in the older form of
/// attributes, because Clang 14 takes no other in front of a template's instance.
#define KEL_EXPORT __attribute__((visibility("default")))
