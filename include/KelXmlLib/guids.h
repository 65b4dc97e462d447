/// \file
/// The identifiers in the published XML type library. `libKelXmlLib` exports each identifier under its
/// published name.

#pragma once

#include "KelComWrapper/types.h"

#pragma GCC visibility push(default)
extern "C" {
/// The type library, version 1.0.
extern const GUID LIBID_MSXML;
/// The class of documents. `DllGetClassObject` creates objects of this class.
extern const GUID CLSID_DOMDocument;
/// The published class of documents that several threads may use at the same time. `DllGetClassObject` does
/// not support this class, because this library has no such documents.
extern const GUID CLSID_DOMFreeThreadedDocument;
/// \name The XML DOM
/// The objects of this library support only six of the interfaces in this group. `KelXmlLib/xmldom.h` defines
/// these six interfaces.
/// @{

/// In each name, the part after `IID_` or `DIID_` is the name of the published interface.
extern const GUID IID_IXMLDOMNode;
extern const GUID IID_IXMLDOMDocument;
extern const GUID IID_IXMLDOMNodeList;
extern const GUID IID_IXMLDOMNamedNodeMap;
extern const GUID IID_IXMLDOMCharacterData;
extern const GUID IID_IXMLDOMAttribute;
extern const GUID IID_IXMLDOMElement;
extern const GUID IID_IXMLDOMText;
extern const GUID IID_IXMLDOMComment;
extern const GUID IID_IXMLDOMProcessingInstruction;
extern const GUID IID_IXMLDOMCDATASection;
extern const GUID IID_IXMLDOMDocumentType;
extern const GUID IID_IXMLDOMNotation;
extern const GUID IID_IXMLDOMEntity;
extern const GUID IID_IXMLDOMEntityReference;
extern const GUID IID_IXMLDOMImplementation;
extern const GUID IID_IXMLDOMDocumentFragment;
extern const GUID IID_IXMLDOMParseError;
extern const GUID IID_IXTLRuntime;
extern const GUID DIID_XMLDOMDocumentEvents;
/// @}

/// \name The rest of the published type library
/// No object of this library supports the interfaces in this group. `DllGetClassObject` does not support the
/// classes in this group.
/// @{

/// In each name, the part after `IID_` or `CLSID_` is the name of the published interface or class.
extern const GUID IID_IXMLHttpRequest;
extern const GUID CLSID_XMLHTTPRequest;
extern const GUID IID_IXMLDSOControl;
extern const GUID CLSID_XMLDSOControl;
extern const GUID IID_IXMLElementCollection;
extern const GUID IID_IXMLDocument;
extern const GUID IID_IXMLDocument2;
extern const GUID IID_IXMLElement;
extern const GUID IID_IXMLElement2;
extern const GUID IID_IXMLAttribute;
extern const GUID IID_IXMLError;
extern const GUID IID_IXMLElementNotificationSink;
extern const GUID CLSID_XMLDocument;
/// @}
}
#pragma GCC visibility pop
