// merge RESULT FILE... - puts several documents into one, and continues after a bad one.

#include <KelXmlLib/kel.h>

#include <iostream>

int main(int count, char** words)
try {
    if (count < 2) {
        std::cerr << "usage: merge RESULT FILE...\n";
        return 2;
    }
    int bad = 0;
    kel::Document merged("merged");
    for (int index = 2; index < count; ++index)
        try {
            const auto document = kel::Document::load(words[index]);
            kel::Element part = kel::Document("part").root(); // moves only when it is complete
            part.setAttribute("from", words[index]);
            part.append(document.root());
            merged.root().append(part);
        } catch (const kel::LoadError& error) { // which names the file
            std::cerr << error.what() << '\n';
            ++bad;
        } catch (const kel::Error& error) {
            std::cerr << words[index] << ": " << error.what() << '\n';
            ++bad;
        }
    merged.save(words[1]);
    return bad != 0 ? 1 : 0;
} catch (const kel::Error& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
