// Both libraries are used as their manuals show. They keep text as UTF-8 and hand out pointers to it, so
// their walks read every name and value in place; ours makes a wide copy of each.

#include "context.h"

#include "clock.h"
#include "inputs.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <functional>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <memory>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench
{

namespace
{

// --- pugixml

std::uint64_t walk(const pugi::xml_node& node)
{
    std::uint64_t amount = 1 + std::strlen(node.name()) + std::strlen(node.value());
    for (const pugi::xml_attribute& attribute : node.attributes())
        amount += 1 + std::strlen(attribute.name()) + std::strlen(attribute.value());
    for (const pugi::xml_node& child : node.children())
        amount += walk(child);
    return amount;
}

struct Pugi
{
    static constexpr char kName[] = "pugixml";

    void parse(const char* path)
    {
        if (!document.load_file(path, pugi::parse_default | pugi::parse_comments | pugi::parse_pi))
            throw std::runtime_error("pugixml cannot parse");
    }
    std::uint64_t walkAll() const { return walk(document); }
    void save(const char* path) const { document.save_file(path, "    "); }

    pugi::xml_document document;
};

// --- libxml2

std::size_t lengthOf(const xmlChar* text)
{
    return text ? std::strlen(reinterpret_cast<const char*>(text)) : 0;
}

std::uint64_t walk(const xmlNode* node)
{
    std::uint64_t amount = 0;
    for (; node; node = node->next) {
        amount += 1 + lengthOf(node->name);
        if (node->type != XML_ELEMENT_NODE) {
            // A document type has no content member.
            amount += node->type == XML_DTD_NODE ? 0 : lengthOf(node->content);
            continue;
        }
        for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next)
            amount += 1 + lengthOf(attribute->name) +
                      lengthOf(attribute->children ? attribute->children->content : nullptr);
        amount += walk(node->children);
    }
    return amount;
}

struct LibXml
{
    static constexpr char kName[] = "libxml2";

    struct Free
    {
        void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
    };

    void parse(const char* path)
    {
        document.reset(xmlReadFile(path, nullptr, XML_PARSE_NOBLANKS | XML_PARSE_NOENT | XML_PARSE_HUGE));
        if (!document)
            throw std::runtime_error("libxml2 cannot parse");
    }
    std::uint64_t walkAll() const { return walk(document->children); }
    void save(const char* path) const { xmlSaveFormatFileEnc(path, document.get(), "UTF-8", 1); }

    std::unique_ptr<xmlDoc, Free> document;
};

using Work = std::function<void()>;

void registerWork(const std::string& name, int turns, const std::function<Work()>& make)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [make](benchmark::State& state) {
                                     const Work work = make();
                                     work();
                                     std::vector<double> times;
                                     while (state.KeepRunning()) {
                                         times.push_back(secondsOf(work));
                                         state.SetIterationTime(times.back());
                                     }
                                     state.counters["other_s"] = median(times);
                                 })
        ->Iterations(turns)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

template <class Library>
void registerLibrary(const std::string& sizeName, std::int64_t size, int turns)
{
    const auto pathOf = [size] { return inputFile(size).toStdString(); };
    const auto parsed = [=] {
        auto library = std::make_shared<Library>();
        library->parse(pathOf().c_str());
        return library;
    };
    const auto nameOf = [&](const char* work) {
        return std::string("context ") + Library::kName + " " + work + "/" + sizeName;
    };
    registerWork(nameOf("load"), turns, [=]() -> Work {
        return [path = pathOf(), library = std::make_shared<Library>()] { library->parse(path.c_str()); };
    });
    registerWork(nameOf("walk"), turns, [=]() -> Work {
        return [library = parsed()] { benchmark::DoNotOptimize(library->walkAll()); };
    });
    registerWork(nameOf("save"), turns, [=]() -> Work {
        return [library = parsed(), path = outputFile(QStringLiteral("context.xml")).toStdString()] {
            library->save(path.c_str());
        };
    });
}

} // namespace

void registerContext()
{
    struct Input
    {
        const char* name;
        std::int64_t size;
        int turns;
    };
    for (const Input& input : {Input{"mime", 0, 15}, Input{"10 MB", 10'000'000, 5}}) {
        registerLibrary<Pugi>(input.name, input.size, input.turns);
        registerLibrary<LibXml>(input.name, input.size, input.turns);
    }
}

} // namespace bench
