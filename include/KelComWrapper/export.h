/// \file
/// The macro that marks the exported classes and functions of the libraries.

#pragma once

/// Exports a class or a function from a library whose symbols are hidden by default. This is a macro and not
/// a plain attribute, because clang-format 14 does not recognise a class that is declared with an attribute.
/// The macro expands to `__attribute__`, because Clang 14 does not accept `[[...]]` before an explicit
/// template instantiation.
#define KEL_EXPORT __attribute__((visibility("default")))
