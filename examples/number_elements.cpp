// number_elements IN TAG OUT - loads a document, numbers the elements that have a tag name by an attribute,
// in document order, and saves it. Built with the library installed:
//
//   c++ -std=c++17 number_elements.cpp $(pkg-config --cflags --libs KelXmlLib)

#include "KelXmlLib/convenience.h"

#include <cstdint>
#include <filesystem>
#include <iostream>

namespace
{

std::wstring wide(const char* word)
{
    return std::filesystem::path(word).wstring(); // from UTF-8
}

void number(const std::wstring& in, const std::wstring& tag, const std::wstring& out)
{
    const auto document = kel::newDocument();
    kel::check(document->load(kel::Variant(in).get(), nullptr), "loading the document");
    std::int32_t count = 0;
    for (const auto& node : kel::elementsNamed(*document, tag.c_str())) {
        const auto element = kel::asElement(*node);
        kel::check(element->setAttribute(kel::Bstr(L"number").get(), kel::Variant(++count).get()));
    }
    kel::check(document->save(kel::Variant(out).get()), "saving the document");
    std::cout << count << " numbered\n";
}

} // namespace

int main(int count, char** words)
{
    if (count != 4) {
        std::cerr << "usage: number_elements IN TAG OUT\n";
        return 2;
    }
    try {
        number(wide(words[1]), wide(words[2]), wide(words[3]));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "number_elements: " << error.what() << '\n';
        return 1;
    }
}
