/// \file
/// Marks what the libraries export.

#pragma once

/// Exports a class or a function from a library whose symbols are hidden by default. It is a macro, because
/// clang-format 14 does not recognise a class that is declared with an attribute. It expands to
/// `__attribute__`, because Clang 14 does not accept `[[...]]` before an explicit template instantiation.
#define KEL_EXPORT __attribute__((visibility("default")))
