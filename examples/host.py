#!/usr/bin/env python3
"""Creates and changes a document. Calls members only by name, through IDispatch.

The script needs only ctypes. It calls IDispatch through each object's vtable, as a program in any other language
would. The script loads a document, sets the same attributes as the C++ example in the README, sets a text, and
prints the result.
"""

import argparse
import ctypes
import os
import sys

VT_I4, VT_BSTR, VT_DISPATCH, VT_BOOL = 3, 8, 9, 11
METHOD_OR_GET, PUT = 1 | 2, 4
PROPERTY_PUT = -3  # DISPID_PROPERTYPUT: marks the argument that contains the new value of a property


class Guid(ctypes.Structure):
    _fields_ = [("bytes", ctypes.c_uint8 * 16)]


class Variant(ctypes.Structure):
    class Value(ctypes.Union):
        _fields_ = [("i4", ctypes.c_int32), ("boolean", ctypes.c_int16), ("pointer", ctypes.c_void_p)]

    _anonymous_ = ["value"]
    _fields_ = [("vt", ctypes.c_uint16), ("reserved", ctypes.c_uint16 * 3), ("value", Value),
                ("padding", ctypes.c_void_p)]


class Parameters(ctypes.Structure):
    _fields_ = [("arguments", ctypes.POINTER(Variant)), ("named", ctypes.POINTER(ctypes.c_int32)),
                ("count", ctypes.c_uint32), ("named_count", ctypes.c_uint32)]


def slot(number, *types):
    return number, ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, *types)


# Vtable slots, with the types of their arguments. The first argument, the object itself, is left out.
RELEASE = slot(2)
GET_IDS_OF_NAMES = slot(5, ctypes.POINTER(Guid), ctypes.POINTER(ctypes.c_wchar_p), ctypes.c_uint32, ctypes.c_uint32,
                        ctypes.POINTER(ctypes.c_int32))
INVOKE = slot(6, ctypes.c_int32, ctypes.POINTER(Guid), ctypes.c_uint32, ctypes.c_uint16, ctypes.POINTER(Parameters),
              ctypes.POINTER(Variant), ctypes.c_void_p, ctypes.c_void_p)


class Failure(Exception):
    """Says that a call failed, or that a call did nothing."""


def check(result, what):
    """Returns whether the call returned S_OK. Raises Failure for an error code."""
    if result < 0:
        raise Failure(f"{what}: 0x{result & 0xFFFFFFFF:08X}")
    return result == 0


class Library:
    """Loads the COM library and the XML library, calls DllMain of the XML library, and registers the type library."""

    def __init__(self, directory=None):
        def load(name):
            return ctypes.CDLL(os.path.join(directory, name) if directory else name)

        self.com = load("libKelComWrapper.so.1")
        self.com.SysAllocString.restype = ctypes.c_void_p
        self.com.SysAllocString.argtypes = [ctypes.c_wchar_p]
        self.com.SysFreeString.argtypes = [ctypes.c_void_p]
        self.xml = load("libKelXmlLib.so.1")
        self.xml.DllMain(None, 1, None)
        # The mangled name of KelTypelib::RegisterTypeLib(const GUID&, const wchar_t*).
        register = self.com._ZN10KelTypelib15RegisterTypeLibERK4GUIDPKw
        register.argtypes = [ctypes.c_void_p, ctypes.c_wchar_p]
        path = os.path.join(self._directory(), "KelXmlLib-1", "xmldom.tlb")
        check(register(ctypes.byref(self._identifier("LIBID_MSXML")), path), "registering " + path)

    @staticmethod
    def _directory():
        """Finds the directory from which the XML library was loaded."""
        with open("/proc/self/maps", encoding="utf-8") as maps:
            return next(os.path.dirname(line.split(maxsplit=5)[5]) for line in maps if "/libKelXmlLib.so.1" in line)

    def _identifier(self, name):
        library = self.com if name == "IID_IDispatch" else self.xml
        return Guid.in_dll(library, name)

    def new_document(self):
        pointer = ctypes.c_void_p()
        check(self.xml.DllGetClassObject(ctypes.byref(self._identifier("CLSID_DOMDocument")),
                                         ctypes.byref(self._identifier("IID_IDispatch")), ctypes.byref(pointer)),
              "creating a document")
        return Object(self, pointer.value)


class Object:
    """Owns one reference to a COM object, and calls the members of the object by name.

    Examples: `node.call("cloneNode", True)`, `node.call("nodeName")`, `node.put("text", "Tides")`.
    """

    def __init__(self, library, pointer):
        self._library = library
        self._pointer = pointer

    def __del__(self):
        self._call_slot(RELEASE)

    def _call_slot(self, slot, *arguments):
        number, function = slot
        table = ctypes.cast(self._pointer, ctypes.POINTER(ctypes.POINTER(ctypes.c_void_p)))[0]
        return function(table[number])(self._pointer, *arguments)

    def call(self, name, *arguments):
        """Calls a method or reads a property. Returns the result of the method, or the value of the property."""
        result = Variant()
        self._invoke(name, METHOD_OR_GET, arguments, result)
        return self._from_variant(result)

    def do(self, name, *arguments):
        """Calls a method that returns no result. Raises Failure if the method did nothing."""
        if not self._invoke(name, METHOD_OR_GET, arguments):
            raise Failure(name + ": did nothing (S_FALSE)")

    def put(self, name, value):
        """Sets a property."""
        self._invoke(name, PUT, [value])

    def _invoke(self, name, flags, arguments, result=None):
        """Calls a member. Returns whether the member returned S_OK rather than S_FALSE."""
        identifier = ctypes.c_int32()
        check(self._call_slot(GET_IDS_OF_NAMES, Guid(), ctypes.c_wchar_p(name), 1, 0, identifier), name)
        values = (Variant * len(arguments))(*map(self._to_variant, reversed(arguments)))
        names = (ctypes.c_int32 * 1)(PROPERTY_PUT)
        parameters = Parameters(values, names, len(arguments), 1 if flags == PUT else 0)
        try:
            return check(self._call_slot(INVOKE, identifier, Guid(), 0, flags, parameters, result, None, None), name)
        finally:
            for value in values:
                self._free_text(value)

    def _to_variant(self, value):
        variant = Variant()
        if isinstance(value, bool):
            variant.vt, variant.boolean = VT_BOOL, -1 if value else 0
        elif isinstance(value, int):
            variant.vt, variant.i4 = VT_I4, value
        elif isinstance(value, str):
            variant.vt, variant.pointer = VT_BSTR, self._library.com.SysAllocString(value)
        else:
            variant.vt, variant.pointer = VT_DISPATCH, value._pointer
        return variant

    def _from_variant(self, variant):
        if variant.vt == VT_BSTR:
            text = ctypes.wstring_at(variant.pointer) if variant.pointer else ""
            self._free_text(variant)
            return text
        if variant.vt == VT_DISPATCH:
            return Object(self._library, variant.pointer) if variant.pointer else None
        return {VT_I4: variant.i4, VT_BOOL: variant.boolean != 0}.get(variant.vt)

    def _free_text(self, variant):
        if variant.vt == VT_BSTR:
            self._library.com.SysFreeString(variant.pointer)


def main():
    parser = argparse.ArgumentParser(description="Creates a document through IDispatch, and prints its content.")
    parser.add_argument("directory", nargs="?", help="directory of the libraries, if the system cannot find them")
    parser.add_argument("-o", metavar="FILE", dest="output", help="save the document as FILE")
    options = parser.parse_args()

    document = Library(options.directory).new_document()
    if not document.call("loadXML", "<shelf><book>Trees</book><book/></shelf>"):
        raise Failure("loadXML: not well-formed")
    books = document.call("selectNodes", "book")
    for index in range(books.call("length")):
        books.call("item", index).do("setAttribute", "copies", 3)
    books.call("item", 1).put("text", "Tides")
    for index in range(books.call("length")):
        book = books.call("item", index)
        copies = book.call("attributes").call("getNamedItem", "copies").call("value")
        print(f"{book.call('text')}: {copies} copies")
    if options.output:
        document.do("save", options.output)


if __name__ == "__main__":
    try:
        main()
    except (Failure, OSError) as error:
        sys.exit(f"host.py: {error}")
