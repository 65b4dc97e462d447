// Subcommands that save a document: `copy`, `set`, `unset`, `text` and `new`.

#include "commands.h"
#include "files.h"
#include "text.h"

#include <iostream>
#include <utility>

namespace tool
{
namespace
{

using Assignment = std::pair<std::string, std::string>;

Assignment readAssignment(const std::string& word)
{
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos || sign == 0)
        throw UsageError("'" + word + "' is not NAME=VALUE");
    Assignment assignment{word.substr(0, sign), word.substr(sign + 1)};
    requireName(assignment.first);
    requireText(assignment.second);
    return assignment;
}

std::vector<std::string> valuesAfterTag(const Arguments& arguments)
{
    return {arguments.values.begin() + 2, arguments.values.end()};
}

/// Loads the document, applies `change` to every element with the tag name in `arguments`, and saves the
/// document.
/// \throw Failure if no element has the tag name; in this case, the document is not saved
template <class Change>
bool changeElements(const Arguments& arguments, Change change)
{
    const std::string& path = arguments.values[0];
    const std::string& tag = arguments.values[1];
    requireName(tag);
    const kel::Document document = load(path);
    std::size_t count = 0;
    for (kel::Element& match : document.descendants(tag)) {
        change(match);
        ++count;
    }
    if (count == 0)
        throw Failure(path + ": there is no element '" + tag + "'");
    save(document, *arguments.output);
    reportStream(*arguments.output) << count << (count == 1 ? " element changed\n" : " elements changed\n");
    return true;
}

} // namespace

void requireName(const std::string& word)
{
    try {
        const kel::Document probe(word);
    } catch (const kel::Error&) {
        throw UsageError("'" + word + "' is not a name");
    }
}

void requireText(const std::string& text)
{
    try {
        kel::Document("probe").root().setText(text);
    } catch (const kel::Error& error) {
        throw UsageError(error.what());
    }
}

bool runCopy(const Arguments& arguments)
{
    save(load(arguments.values[0]), arguments.values[1]);
    return true;
}

bool runSet(const Arguments& arguments)
{
    std::vector<Assignment> assignments;
    for (const std::string& word : valuesAfterTag(arguments))
        assignments.push_back(readAssignment(word));
    return changeElements(arguments, [&](kel::Element& element) {
        for (const auto& [name, value] : assignments)
            element.setAttribute(name, value);
    });
}

bool runUnset(const Arguments& arguments)
{
    const std::vector<std::string> names = valuesAfterTag(arguments);
    for (const std::string& name : names)
        requireName(name);
    return changeElements(arguments, [&](kel::Element& element) {
        for (const std::string& name : names)
            element.removeAttribute(name);
    });
}

bool runText(const Arguments& arguments)
{
    const std::string& text = arguments.values[2];
    requireText(text);
    return changeElements(arguments, [&](kel::Element& element) { element.setText(text); });
}

bool runNew(const Arguments& arguments)
{
    kel::Document document("shelf");
    kel::Element shelf = document.root();
    shelf.setAttribute("room", "reading room");
    shelf.setAttribute("number", 7);
    shelf.setAttribute("width", 1.25);
    kel::Element book = shelf.append("book");
    book.setAttribute("lent", false);
    book.append("title", "Trees & <Leaves>");
    book.append("author", L"Zo\u00EB \U0001F333");
    save(document, arguments.values[0]);
    return true;
}

} // namespace tool
