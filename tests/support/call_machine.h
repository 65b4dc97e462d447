// Random calls over the six classes and two documents, each held against the model. The choices come from a
// seeded generator or from a fuzzer's bytes.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelXmlLib/xmldom.h"
#include "support/model_tree.h"

#include <functional>
#include <string>
#include <vector>

/// Makes calls until it finds a difference or is told to stop.
class CallMachine
{
public:
    /// \param choose answers a number below its argument
    explicit CallMachine(std::function<unsigned(unsigned)> choose);
    ~CallMachine();

    /// Makes one call. \return an empty string, or what differs from the promise
    std::string step();

private:
    struct Held
    {
        kel::ComPtr<IXMLDOMNode> object;
        model::NodePtr node;     ///< null when the object holds none
        model::NodePtr document; ///< kept alive by the object
        model::NodePtr keeper;   ///< an attribute's element, kept alive by the object
        DOMNodeType kind;        ///< the class: element, attribute, document, or 0 for the generic node

        /// The node, or one without anything.
        const model::Node& orNone() const { return node ? *node : kNone; }
        inline static const model::Node kNone;
    };
    struct HeldList
    {
        kel::ComPtr<IXMLDOMNodeList> object;
        Held source;
        bool byTagName;
        std::wstring tag;
        unsigned cursor = 0;
    };
    struct HeldMap
    {
        kel::ComPtr<IXMLDOMNamedNodeMap> object;
        Held source;
    };

    static Held newDocument();
    template <class Thing>
    Thing& oneOf(std::vector<Thing>& things)
    {
        return things[m_choose(static_cast<unsigned>(things.size()))];
    }
    Held pick();
    IXMLDOMDocument& pickDocument(Held** held);
    void keep(kel::ComPtr<IXMLDOMNode> object, model::NodePtr node, const model::NodePtr& document,
              DOMNodeType kind);
    /// Expects both or neither of object and node. \return whether there are both
    bool keepAsIs(kel::ComPtr<IXMLDOMNode> object, const model::NodePtr& node,
                  const model::NodePtr& document);
    void compare(const Held& held);
    void expect(bool holds, const char* what);

    void load();
    void create();
    void append();
    void remove();
    void walkUpOrDown();
    void makeList(bool byTagName);
    void listChildren() { makeList(false); }
    void listByName() { makeList(true); }
    void useList();
    void makeMap();
    void useMap();
    void changeContent();
    void clone();
    void save();
    void release();

    std::function<unsigned(unsigned)> m_choose;
    std::vector<Held> m_documents;
    std::vector<Held> m_nodes;
    std::vector<HeldList> m_lists;
    std::vector<HeldMap> m_maps;
    std::string m_difference;
};
