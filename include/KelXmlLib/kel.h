/// \file
/// XML documents for C++ programs: `#include <KelXmlLib/kel.h>` and link KelXmlLib. Needs no Qt headers.
///
/// - `kel::Document` loads, parses and saves a document. `kel::Element` reads and changes one. `kel::Writer`
///   writes large files without a tree.
/// - A `Document`, `Element`, `Attribute` or `Node` is a value that refers to a node of a tree. It is cheap
///   to copy, and the copy refers to the same node. It keeps its document alive. A value that refers to
///   nothing is null.
/// - Reading from a null value returns the default if there is one, else an empty text, an empty list or a
///   null value.
/// - A call that cannot make its change throws `kel::Error`. So does every change of a null value. The tree
///   is then unchanged, unless the comment says otherwise. `kel::Error` is a `std::runtime_error` with a
///   `code()`.
/// - The caller passes texts and names as UTF-8 or as wide strings. Invalid ones throw `kel::Error`. Paths
///   are UTF-8 in any locale.
/// - Any call may throw `std::bad_alloc`.
/// - Threads: use a document, and everything that belongs to it, from one thread at a time. Different threads
///   may use different documents at the same time.
/// - To mix this layer with the COM interfaces of KelXmlLib/xmldom.h, construct a value from an interface, or
///   call `get()` for a new interface pointer.

#pragma once

#include "KelXmlLib/kel/document.h"
#include "KelXmlLib/kel/element.h"
#include "KelXmlLib/kel/errors.h"
#include "KelXmlLib/kel/list.h"
#include "KelXmlLib/kel/node.h"
#include "KelXmlLib/kel/text.h"
#include "KelXmlLib/kel/writer.h"

/// The C++ layer of KelXmlLib/kel.h, and the owners of the results of COM calls: `ComPtr`, `Bstr` and
/// `Variant`.
namespace kel
{}
