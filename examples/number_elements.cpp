// number_elements IN TAG OUT - loads a document, numbers the elements that have a tag name by an attribute,
// in document order, and saves it. Built with the library installed:
//
//   c++ -std=c++17 number_elements.cpp $(pkg-config --cflags --libs KelXmlLib)

#include "KelXmlLib/files.h"

#include <cstdint>
#include <iostream>

namespace
{

void number(const std::filesystem::path& in, const std::filesystem::path& tag,
            const std::filesystem::path& out)
{
    const auto document = kel::load(in);
    std::int32_t count = 0;
    const std::u32string name = tag.u32string(); // a word of the command line is UTF-8, as a path is
    for (const auto& element : kel::elementsNamed(*document, std::wstring(name.begin(), name.end()).c_str()))
        kel::setAttribute(*element, L"number", ++count);
    kel::save(*document, out);
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
        number(words[1], words[2], words[3]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "number_elements: " << error.what() << '\n';
        return 1;
    }
}
