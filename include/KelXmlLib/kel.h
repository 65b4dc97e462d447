/// \file
/// XML documents for C++ programs: `#include <KelXmlLib/kel.h>` and link KelXmlLib. Needs no Qt headers.
///
/// - `kel::Document` loads, parses and saves; `kel::Element` reads and changes; `kel::Writer` writes large
///   files without a tree.
/// - Elements, nodes and documents are values: cheap to copy, copies refer to the same node, and a value that
///   refers to nothing is null. Each keeps its document alive.
/// - Reading from null gives the default or an empty text. Changing null, or a change that is not made,
///   throws `kel::Error`; nothing has changed then unless said otherwise. It is a `std::runtime_error` with a
///   `code()`.
/// - Texts and names are UTF-8 or wide, whichever the caller passes; invalid ones throw. Paths are UTF-8 in
///   any locale.
/// - All of it may throw `std::bad_alloc`. A document and what belongs to it are used by one thread at a
///   time; different documents by different threads.
/// - For the COM interfaces see KelXmlLib/xmldom.h: every value converts from an interface and gives one.

#pragma once

#include "KelXmlLib/kel/document.h"
#include "KelXmlLib/kel/element.h"
#include "KelXmlLib/kel/errors.h"
#include "KelXmlLib/kel/list.h"
#include "KelXmlLib/kel/node.h"
#include "KelXmlLib/kel/text.h"
#include "KelXmlLib/kel/writer.h"

/// The C++ layer of KelXmlLib/kel.h, and what owns the results of COM calls: `ComPtr`, `Bstr` and `Variant`.
namespace kel
{}
