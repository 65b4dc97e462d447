/// \file
/// Marks what the libraries export.

#pragma once

/// Exports a class or a function from a library whose symbols are hidden by default. It is a macro because
/// clang-format 14 does not recognise a class whose macro begins with an attribute. It uses the older form of
/// attributes because Clang 14 accepts no other before a template instance.
#define KEL_EXPORT __attribute__((visibility("default")))
