/// \file
/// XML documents for C++ programs. A program writes `#include <KelXmlLib/kel.h>` and links KelXmlLib. The
/// program needs no Qt headers.
///
/// - `kel::Document` loads, parses and saves a document. `kel::Element` reads and changes an element.
///   `kel::Writer` writes large files without building a tree.
/// - A `Document`, `Element`, `Attribute` or `Node` is a value that refers to a node of a tree. Such a value
///   is cheap to copy, and the copy refers to the same node. The value keeps the node's document alive. A
///   value that refers to no node is null.
/// - Reading from a null value returns the default that the caller passed. Without a default, reading returns
///   an empty text, an empty list or another null value.
/// - A function that cannot make its change throws `kel::Error`. For example, a function throws if the value
///   that it should change is null. After a `kel::Error`, the tree is unchanged, unless the comment on the
///   function says otherwise. `kel::Error` is a `std::runtime_error` that also has a `code()`.
/// - The caller passes texts and names as UTF-8 or as wide strings. A function that would write an invalid
///   text or name throws `kel::Error`. A read with an invalid name finds nothing. Paths are UTF-8 in any
///   locale.
/// - Any function may throw `std::bad_alloc`.
/// - Threads: use a document, and all values that refer to its nodes, from one thread at a time. Different
///   threads may use different documents at the same time. Documents between which a node was ever moved
///   count as one.
/// - To mix this layer with the COM interfaces of KelXmlLib/xmldom.h, construct a value from a COM object, or
///   call `get()` on a value to create a COM object.

#pragma once

#include "KelXmlLib/kel/document.h"
#include "KelXmlLib/kel/element.h"
#include "KelXmlLib/kel/errors.h"
#include "KelXmlLib/kel/list.h"
#include "KelXmlLib/kel/node.h"
#include "KelXmlLib/kel/text.h"
#include "KelXmlLib/kel/writer.h"

/// Contains the C++ layer that KelXmlLib/kel.h declares. Also contains `ComPtr`, `Bstr` and `Variant`, which
/// own the results of COM calls.
namespace kel
{}
