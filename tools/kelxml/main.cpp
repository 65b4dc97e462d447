// kelxml: the library's command-line tool. Parses the command line, runs a subcommand, and reports errors.

#include "commands.h"
#include "files.h"
#include "terminal.h"
#include "text.h"

#include <cerrno>
#include <clocale>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <system_error>

namespace
{

using namespace tool;

enum ExitCode { kSuccess = 0, kFailure = 1, kUsageError = 2 };

enum class Output { none, optional, required };

struct Command
{
    const char* name;
    const char* synopsis;
    const char* purpose;
    /// The text that `kelxml help NAME` prints in addition to `synopsis` and `purpose`.
    const char* details;
    std::size_t minArguments;
    std::size_t maxArguments;
    Output output;
    bool takesPlain;
    Run* run;
};

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

constexpr Command kCommands[] = {
    {"check", "FILE...", "report the files that cannot be loaded",
     "Prints one message for each bad file: the file, the reason and, for an error in the XML, the\n"
     "line and the column, as in \"shelf.xml:3:14: tag mismatch\". Prints nothing for good files.\n",
     1, kAnyNumber, Output::none, false, &runCheck},
    {"copy", "IN OUT", "load a document and save it",
     "Indents by four spaces per level, and sorts attributes by name.\n", 2, 2, Output::none, false,
     &runCopy},
    {"tree", "FILE...", "print the outline of documents",
     "Prints one line for each node: its kind, name, attributes and content. Indents by two\n"
     "spaces per level.\n",
     1, kAnyNumber, Output::none, false, &runTree},
    {"find", "FILE... TAG", "print the elements with a given tag name",
     "Prints one line for each element: its name, attributes and text. With several files, each\n"
     "line begins with the file's name. Exits with 1 if no element has the tag name.\n",
     2, kAnyNumber, Output::none, false, &runFind},
    {"set", "FILE TAG NAME=VALUE... -o OUT", "set attributes of every element with a given tag name",
     "Prints the number of changed elements. If no element has the tag name, writes nothing and\n"
     "exits with 1.\n",
     3, kAnyNumber, Output::required, false, &runSet},
    {"unset", "FILE TAG NAME... -o OUT", "remove attributes of every element with a given tag name",
     "Prints the number of changed elements. If no element has the tag name, writes nothing and\n"
     "exits with 1.\n",
     3, kAnyNumber, Output::required, false, &runUnset},
    {"text", "FILE TAG VALUE -o OUT", "set the text of every element with a given tag name",
     "The text replaces all content of each element. Prints the number of changed elements. If\n"
     "no element has the tag name, writes nothing and exits with 1.\n",
     3, 3, Output::required, false, &runText},
    {"new", "OUT", "create a small document",
     "Writes an example with elements, attributes and texts: a shelf with a book.\n", 1, 1, Output::none,
     false, &runNew},
    {"write", "OUT [--plain]", "write a small catalogue without building a tree",
     "The catalogue contains every kind of content that the writer supports.\n"
     "  --plain  no indentation\n",
     1, 1, Output::none, true, &runWrite},
    {"export", "FILE OUT [--plain]", "copy a document node by node",
     "Does not copy document types or entity references. The copy is UTF-8 and begins with a\n"
     "new XML declaration. Prints how many nodes were written and how many entity references were\n"
     "left out.\n"
     "  --plain  no indentation\n",
     2, 2, Output::none, true, &runExport},
    {"call", "FILE EXPRESSION [-o OUT]", "call methods, and read and set properties, by name",
     "EXPRESSION is a path: names of members (methods and properties) with dots between them. The\n"
     "first name is a member of the document. Arguments follow a name, in parentheses: strings in\n"
     "double quotes (escapes \\\" \\\\ \\n \\t \\r), numbers, true, false, null, or other paths.\n"
     "PATH = VALUE assigns a property.\n"
     "  documentElement.childNodes.item(0).nodeName\n"
     "  documentElement.setAttribute(\"k\", 5)\n"
     "  documentElement.appendChild(createNode(1, \"note\", null))\n"
     "  documentElement.text = \"x\"\n"
     "Prints the result: a text, a number, true or false. For an object, prints its node name, or\n"
     "(object) if the object has no node name. Without a result, prints (empty). Exits with 1 if a\n"
     "member returns S_FALSE or is a no-op (accepts calls but does nothing). -o saves the changed\n"
     "document. Without -o, changes are lost.\n",
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
    "The file name \"-\" means the standard input or output. Words after \"--\" are never options.\n"
    "Exit code: 0 success, 1 nothing found or failure, 2 wrong command line.\n";

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

/// \return no value if the user asks for help
std::optional<Arguments> readArguments(const Command& command, const std::vector<std::string_view>& words)
{
    Arguments arguments;
    bool areOptionsOver = false;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string_view word = words[index];
        if (areOptionsOver || word.size() < 2 || word[0] != '-')
            arguments.values.emplace_back(word);
        else if (word == "--")
            areOptionsOver = true;
        else if (isHelp(word))
            return std::nullopt;
        else if (word == "--plain" && command.takesPlain)
            arguments.isPlain = true;
        else if (word == "-o" && command.output != Output::none) {
            if (++index == words.size())
                throw UsageError("-o needs a file");
            arguments.output = words[index];
        } else
            throw UsageError("unknown option '" + std::string(word) +
                             "' (put -- before a file name that starts with a dash)");
    }
    const std::size_t count = arguments.values.size();
    if (count < command.minArguments || count > command.maxArguments)
        throw UsageError(count < command.minArguments ? "too few arguments" : "too many arguments");
    if (command.output == Output::required && !arguments.output)
        throw UsageError("-o OUT is missing");
    return arguments;
}

bool runCommand(const Command& command, const std::vector<std::string_view>& words)
{
    const std::optional<Arguments> arguments = readArguments(command, words);
    if (arguments)
        return command.run(*arguments);
    printHelp(command);
    return true;
}

void runHelp(const std::vector<std::string_view>& words)
{
    if (words.empty()) {
        printUsage(std::cout);
        return;
    }
    const Command* const command = commandNamed(words[0]);
    if (!command || words.size() > 1)
        throw UsageError("there is no help on this topic");
    printHelp(*command);
}

/// \return false if the subcommand found nothing, or if a file could not be loaded
bool run(std::vector<std::string_view> words)
{
    if (words.empty())
        throw UsageError("no command given");
    const std::string_view name = words.front();
    words.erase(words.begin());
    if (name == "help" || isHelp(name)) {
        runHelp(words);
        return true;
    }
    if (name == "--version" && words.empty()) {
        std::cout << "kelxml " << KEL_VERSION << '\n';
        return true;
    }
    const Command* const command = commandNamed(name);
    if (!command)
        throw UsageError("unknown command '" + std::string(name) + "'");
    try {
        return runCommand(*command, words);
    } catch (const UsageError& error) {
        throw UsageError(error.what() + std::string("; usage: kelxml ") + command->name + ' ' +
                         command->synopsis);
    }
}

/// Opens /dev/null in place of each standard stream that is closed. Otherwise the next file that is opened
/// would get the descriptor of the closed stream, and output to this stream would go into the file. The
/// streams are opened in the wrong direction, so that reading and writing fail as on a closed stream.
void occupyClosedStreams()
{
    for (int stream = 0; stream <= 2; ++stream)
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY); // gets the lowest free descriptor: `stream`
}

/// As long as a `ThrowOnOutputError` exists, `std::cout` throws an exception at its first error. At that
/// moment, `errno` still contains the reason for the error.
struct ThrowOnOutputError
{
    ThrowOnOutputError() { std::cout.exceptions(std::ios::badbit); }
    ThrowOnOutputError(const ThrowOnOutputError&) = delete;
    ThrowOnOutputError& operator=(const ThrowOnOutputError&) = delete;
    ~ThrowOnOutputError() { std::cout.exceptions(std::ios::goodbit); }
};

bool runAndFlush(const std::vector<std::string_view>& words)
{
    const ThrowOnOutputError throwOnOutputError;
    try {
        const bool result = run(words);
        std::cout.flush();
        return result;
    } catch (const std::ios_base::failure&) {
        throw Failure("the standard output: " + std::generic_category().message(errno));
    }
}

} // namespace

int main(int count, char** words)
{
    occupyClosedStreams();
    std::setlocale(LC_CTYPE, ""); // sets the encoding of file names and of the system's messages
    std::ios::sync_with_stdio(false);
    try {
        return runAndFlush({words + (count > 0 ? 1 : 0), words + count}) ? kSuccess : kFailure;
    } catch (const UsageError& error) {
        printError(UsageError(error.what() + std::string(" (see 'kelxml help')")));
        return kUsageError;
    } catch (const std::bad_alloc&) {
        printError(Failure("out of memory"));
    } catch (const std::exception& error) {
        printError(error);
    }
    return kFailure;
}
