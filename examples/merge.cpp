// merge RESULT FILE... - merges several documents into one, and skips files that cannot be loaded or added.

#include <KelXmlLib/kel.h>

#include <iostream>

int main(int count, char** arguments)
try {
    if (count < 2) {
        std::cerr << "usage: merge RESULT FILE...\n";
        return 2;
    }
    int failures = 0;
    kel::Document merged("merged");
    for (int index = 2; index < count; ++index)
        try {
            const auto document = kel::Document::load(arguments[index]);
            kel::Element part = kel::Document("part").root(); // in a document of its own until it is appended
            part.setAttribute("from", arguments[index]);
            part.append(document.root());
            merged.root().append(part);
        } catch (const kel::LoadError& error) { // the message names the file
            std::cerr << error.what() << '\n';
            ++failures;
        } catch (const kel::Error& error) {
            std::cerr << arguments[index] << ": " << error.what() << '\n';
            ++failures;
        }
    merged.save(arguments[1]);
    return failures != 0 ? 1 : 0;
} catch (const kel::Error& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
