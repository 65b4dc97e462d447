// settings FILE - reads a program's settings with defaults, changes some, adds a file to the list of the
// three most recent files, and writes the settings back. To build this program with the installed library:
//
//   c++ -std=c++17 settings.cpp $(pkg-config --cflags --libs KelXmlLib)

#include <KelXmlLib/kel.h>

#include <exception>
#include <filesystem>
#include <iostream>

int main(int count, char** arguments)
try {
    const std::filesystem::path path = count > 1 ? arguments[1] : "settings.xml";
    kel::Document settings = exists(path) ? kel::Document::load(path) : kel::Document("settings");
    kel::Element root = settings.root();

    kel::Element editor = root.childOrNew("editor");
    const int tab = editor.attribute("tab", 8);
    const double zoom = editor.attribute("zoom", 1.0);
    std::cout << "tab " << tab << ", zoom " << zoom << ", theme " << root.child("theme").text("light")
              << '\n';
    editor.setAttribute("zoom", zoom + 0.25);
    editor.setAttribute("wrap", true);
    root.childOrNew("theme").setText("dark");

    kel::Element recent = root.childOrNew("recent");
    while (recent.children("file").size() >= 3)
        recent.remove(recent.child("file"));
    recent.append("file", "/home/anna/notes.txt");
    settings.save(path);
} catch (const std::exception& error) { // includes the errors of std::filesystem
    std::cerr << error.what() << '\n';
    return 1;
}
