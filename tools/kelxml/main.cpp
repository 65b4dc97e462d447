// kelxml: a command-line host of the library. Reads the command line, picks the subcommand, tells what went
// wrong.

#include "commands.h"
#include "terminal.h"
#include "text.h"

#include <QtCore/QHashFunctions>

#include <cerrno>
#include <clocale>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <system_error>

namespace
{

using namespace host;

enum ExitCode { kFine = 0, kFailed = 1, kWrongUsage = 2 };

enum class Output { none, optional, required };

struct Command
{
    const char* name;
    const char* synopsis;
    const char* purpose;
    /// What `kelxml help NAME` adds.
    const char* details;
    std::size_t fewest;
    std::size_t most;
    Output output;
    bool takesPlain;
    void (*run)(const Library&, const Arguments&);
};

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

constexpr Command kCommands[] = {
    {"copy", "IN OUT", "load a document and save it",
     "Saved documents are indented by four spaces a level. The order of attributes is Qt's,\nwhatever it was "
     "in the file, and the same from run to run.\nPrints the bytes read and written.\n",
     2, 2, Output::none, false, &runCopy},
    {"tree", "FILE", "outline of a document",
     "One node a line, indented by two spaces a level: its type, its name, its attributes\nby name, its "
     "content.\n",
     1, 1, Output::none, false, &runTree},
    {"find", "FILE TAG", "the elements with a tag name",
     "One match a line: name, attributes, text. Prints nothing when there is none.\n", 2, 2, Output::none,
     false, &runFind},
    {"set", "FILE TAG NAME=VALUE... -o OUT", "set attributes of every element with a tag name",
     "Values with characters that XML does not allow are refused.\nPrints how many elements were changed.\n",
     3, kAnyNumber, Output::required, false, &runSet},
    {"text", "FILE TAG VALUE -o OUT", "set the text of every element with a tag name",
     "An element's first child gives way to the text, which becomes the last child.\nA text with characters "
     "that XML does not allow is refused.\nPrints how many elements were changed.\n",
     3, 3, Output::required, false, &runText},
    {"new", "OUT", "a small document made from nothing", "A shelf with a book: elements, attributes, text.\n",
     1, 1, Output::none, false, &runNew},
    {"write", "OUT [--plain]", "a small catalogue written in one go",
     "Shows every kind of content that can be written this way.\n  --plain  no indentation\n", 1, 1,
     Output::none, true, &runWrite},
    {"export", "FILE OUT [--plain]", "copy a document node by node",
     "Document types, processing instructions, entity references and empty content are left\nout: they "
     "cannot be written this way. The declaration is written anew, and names UTF-8.\nPrints how many nodes "
     "were written and left out.\n  --plain  no indentation\n",
     2, 2, Output::none, true, &runExport},
    {"call", "FILE EXPRESSION [-o OUT]", "call members by name, as scripts do",
     "EXPRESSION is a dotted path of members from the document, with arguments in parentheses:\nstrings in "
     "double quotes (escapes \\\" \\\\ \\n \\t \\r), numbers, true, false, null, or paths of\ntheir own, "
     "which start at the document as well. PATH = VALUE assigns a property.\n"
     "  documentElement.childNodes.item(0).nodeName\n"
     "  documentElement.setAttribute(\"k\", 5)\n"
     "  documentElement.appendChild(createNode(1, \"note\", null))\n"
     "  documentElement.text = \"x\"\n"
     "Prints the result: a text, a number, true or false, an object's node name or (object),\n(empty) for "
     "none. A member that answers S_FALSE ends the work.\nWith -o the document is saved afterwards, without "
     "it changes are lost.\n",
     2, 2, Output::optional, false, &runCall},
};

const Command* commandNamed(std::string_view name)
{
    for (const Command& command : kCommands)
        if (name == command.name)
            return &command;
    return nullptr;
}

constexpr char kFilesAndCodes[] =
    "A file called \"-\" is the standard input or the standard output. Behind \"--\" nothing is an option.\n"
    "Exit code: 0 fine, 1 the work could not be done, 2 the command line makes no sense.\n";

void printUsage(std::ostream& stream)
{
    stream << "kelxml: reads, changes and writes XML documents\n\n";
    for (const Command& command : kCommands)
        stream << "  kelxml " << command.name << ' ' << command.synopsis << "\n      " << command.purpose
               << '\n';
    stream << "  kelxml help [COMMAND], kelxml COMMAND --help\n  kelxml --version\n\n" << kFilesAndCodes;
}

void printHelp(const Command& command)
{
    std::cout << "kelxml " << command.name << ' ' << command.synopsis << "\n  " << command.purpose << "\n\n"
              << command.details << kFilesAndCodes;
}

bool isHelp(std::string_view word)
{
    return word == "--help" || word == "-h";
}

std::wstring wideWord(std::string_view word)
{
    std::optional<std::wstring> text = toWide(word);
    if (!text)
        throw UsageError("an argument is not valid UTF-8");
    return *std::move(text);
}

/// \return nothing when the user asks for help instead
std::optional<Arguments> readArguments(const Command& command, const std::vector<std::string_view>& words)
{
    Arguments arguments;
    bool areOptionsOver = false;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string_view word = words[index];
        if (areOptionsOver || word.size() < 2 || word[0] != '-')
            arguments.values.push_back(wideWord(word));
        else if (word == "--")
            areOptionsOver = true;
        else if (isHelp(word))
            return std::nullopt;
        else if (word == "--plain" && command.takesPlain)
            arguments.isPlain = true;
        else if (word == "-o" && command.output != Output::none) {
            if (++index == words.size())
                throw UsageError("-o needs a file");
            arguments.output = wideWord(words[index]);
        } else
            throw UsageError("unknown option '" + std::string(word) + "'");
    }
    const std::size_t count = arguments.values.size();
    if (count < command.fewest || count > command.most)
        throw UsageError(count < command.fewest ? "too few arguments" : "too many arguments");
    if (command.output == Output::required && !arguments.output)
        throw UsageError("-o OUT is missing");
    return arguments;
}

void runCommand(const Command& command, const std::vector<std::string_view>& words)
{
    const std::optional<Arguments> arguments = readArguments(command, words);
    if (!arguments) {
        printHelp(command);
        return;
    }
    const Library library;
    command.run(library, *arguments);
}

void runHelp(const std::vector<std::string_view>& words)
{
    if (words.empty()) {
        printUsage(std::cout);
        return;
    }
    const Command* const command = commandNamed(words[0]);
    if (!command || words.size() > 1)
        throw UsageError("there is no help on that");
    printHelp(*command);
}

void run(std::vector<std::string_view> words)
{
    if (words.empty())
        throw UsageError("no command given");
    const std::string_view name = words.front();
    words.erase(words.begin());
    if (name == "help" || isHelp(name))
        return runHelp(words);
    if (name == "--version" && words.empty()) {
        std::cout << "kelxml " << KEL_VERSION << '\n';
        return;
    }
    const Command* const command = commandNamed(name);
    if (!command)
        throw UsageError("unknown command '" + std::string(name) + "'");
    try {
        runCommand(*command, words);
    } catch (const UsageError& error) {
        throw UsageError(error.what() + std::string("; usage: kelxml ") + command->name + ' ' +
                         command->synopsis);
    }
}

/// A standard stream that the caller closed stays unusable: else the next file to be opened would take its
/// place, and be written over, or written into itself.
void occupyClosedStreams()
{
    for (int stream = 0; stream <= 2; ++stream)
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY); // takes the lowest number that is free
}

/// While it lives, the standard output throws at its first failure, whose reason is still known then.
struct OutputThrows
{
    OutputThrows() { std::cout.exceptions(std::ios::badbit); }
    OutputThrows(const OutputThrows&) = delete;
    OutputThrows& operator=(const OutputThrows&) = delete;
    ~OutputThrows() { std::cout.exceptions(std::ios::goodbit); }
};

void runAndFlush(const std::vector<std::string_view>& words)
{
    const OutputThrows throwing;
    try {
        run(words);
        std::cout.flush();
    } catch (const std::ios_base::failure&) {
        throw Failure("cannot write to the standard output: " + std::generic_category().message(errno));
    }
}

} // namespace

int main(int count, char** words)
{
    occupyClosedStreams();
    // File names reach the system in the character encoding of the locale; numbers stay as they are.
    std::setlocale(LC_CTYPE, "");
    // Attributes stand in the order of a hash table, which is the same in every run when its seed is.
    qSetGlobalQHashSeed(0);
    std::ios::sync_with_stdio(false);
    const std::string sayer = painted(Style::error, "kelxml:") + ' ';
    try {
        runAndFlush({words + (count > 0 ? 1 : 0), words + count});
        return kFine;
    } catch (const UsageError& error) {
        std::cerr << sayer << error.what() << " (see 'kelxml help')\n";
        return kWrongUsage;
    } catch (const std::bad_alloc&) {
        std::cerr << sayer << "out of memory\n";
    } catch (const std::exception& error) {
        std::cerr << sayer << error.what() << '\n';
    }
    return kFailed;
}
