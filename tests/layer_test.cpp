// The C++ layer: typed values, refused changes, loops that change the tree, saved files, and error messages.
// `call_machine_test` tests the changes that succeed.

#include "KelXmlLib/kel.h"

#include "support/dom_fixture.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace
{

using Layer = DomTest;

/// The node as text, without the line breaks that Qt always writes after comments and instructions.
std::string xmlOf(const kel::Node& node)
{
    std::string xml = node.toString({-1});
    xml.erase(std::remove(xml.begin(), xml.end(), '\n'), xml.end());
    return xml;
}

template <class List>
std::string namesIn(const List& list)
{
    std::string names;
    for (const auto& item : list)
        names += item.name() + ' ';
    return names;
}

/// The message of the error that `action` throws; empty if it throws none.
template <class Action>
std::string messageOf(Action action)
{
    try {
        action();
    } catch (const kel::Error& error) {
        return error.what();
    }
    return {};
}

TEST_F(Layer, AValueOfAnotherTypeIsReadAsTheDefault)
{
    const auto document = kel::Document::parse(
        "<r i=' +1\n' big='4294967296' d='0.1' t='1' w='h\xC3\xA9\xF0\x9F\x98\x80'><n>-7</n><e/></r>");
    const kel::Element root = document.root(), none = root.child("none").child("none");
    EXPECT_EQ(1, root.attribute("i", 0));
    EXPECT_EQ(7, root.attribute("big", 7)) << "a number too large for an int must give the default";
    EXPECT_EQ(4294967296, root.attribute(L"big", 7L));
    EXPECT_EQ(7u, root.child("n").text(7u)) << "a negative number read as unsigned must give the default";
    EXPECT_EQ(-7, root.child("n").text(short{1}));
    EXPECT_EQ(0.1, root.attribute("d", 0.0));
    EXPECT_EQ(5, root.attribute("d", 5)) << "a fraction read as an int must give the default";
    EXPECT_TRUE(root.attribute("t", false));
    EXPECT_FALSE(root.attribute("i", false)) << "+1 read as a bool must give the default";
    EXPECT_EQ(L"h\u00e9\U0001f600", root.attribute("w", L""));
    EXPECT_EQ("h\xC3\xA9\xF0\x9F\x98\x80", root.attribute("w", ""));
    EXPECT_EQ("", root.child("e").text("default")) << "an empty text must not give the default";
    EXPECT_EQ("default", none.text("default"));
    EXPECT_EQ(L"", none.text<std::wstring>());
    EXPECT_EQ(800, none.attribute("width", 800));
    EXPECT_FALSE(none || none.nextSibling() || none.parent() || none.clone() || none.document() ||
                 none.get());
    EXPECT_TRUE(none.children().empty() && ++none.children().begin() == none.children().end());
    EXPECT_TRUE(none.attributes().empty() && ++none.attributes().begin() == none.attributes().end());
}

TEST_F(Layer, NumbersReadBackAsTheyWereWritten)
{
    kel::Element root = kel::Document("r").root();
    const auto expectReadBack = [&](auto number) {
        root.setAttribute("n", number);
        EXPECT_EQ(number, root.attribute("n", decltype(number){}));
    };
    const auto expectEachReadBack = [&](auto... numbers) { (expectReadBack(numbers), ...); };
    using Double = std::numeric_limits<double>;
    expectEachReadBack(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::uint64_t>::max(),
                       0.1, 0.1F, Double::denorm_min(), Double::infinity(), 1e300, true);
    root.setAttribute("n", false);
    EXPECT_EQ("false", root.attribute("n", ""));
}

TEST_F(Layer, ARefusedChangeChangesNothingAndSaysWhy)
{
    kel::Document document = kel::Document::parse("<r a='1'><a/><b><c/></b></r>"), empty;
    kel::Element root = document.root(), a = root.child("a"), b = root.child("b"), c = b.child("c"), none;
    const kel::Attribute attribute = *root.attributes().begin();
    const std::string before = xmlOf(document);
    const std::pair<std::function<void()>, const char*> refusals[] = {
        {[&] { none.setAttribute("x", 1); }, "setting an attribute: the node to change is null"},
        {[&] { none.append("x"); }, "appending a node: the node to change is null"},
        {[&] { none.setText("x"); }, "setting a text: the node to change is null"},
        {[&] { root.append(none); }, "appending a node: the node is null"},
        {[&] { root.append("1x"); }, "invalid name: '1x' is not a name"},
        {[&] { root.setAttribute("a\n", 1); }, "invalid name: 'a\\u000A' is not a name"},
        {[&] { root.append("x", "\xC3"); }, "invalid text: it is not valid UTF-8"},
        {[&] { root.setText(L"\xD800"); }, "invalid text: it contains an invalid wide character"},
        {[&] { c.append(root); }, "appending a node: the node would be inside itself"},
        {[&] { root.append(document); }, "appending a node: a document cannot be in a tree"},
        {[&] { a.append(attribute.clone()); }, "appending a node: an attribute cannot be a child"},
        {[&] { root.appendInstruction("xml", ""); },
         "appending a node: an XML declaration must come first in a document"},
        {[&] { root.remove(c); }, "removing a node: the node is not a child"},
        {[&] { root.remove(attribute); }, "removing a node: the node is not a child"},
        {[&] { root.insertBefore(a, c); }, "inserting a node: the node is not a child"},
        {[&] { root.replace(c, a); }, "replacing a node: the node is not a child"},
        {[&] { document.append("second"); }, "appending a node: the document has a root element already"},
        {[&] { empty.append(root.appendText("")); }, "appending a node: a document has no text of its own"},
        {[&] { root.appendComment("a--b"); },
         "appending a node: a comment cannot contain two hyphens in a row or end with a hyphen"},
        {[&] { root.appendCData("]]>"); }, "appending a CDATA section: a CDATA section cannot contain ]]>"},
        {[&] { root.appendInstruction("x", "?>"); }, "appending a node: an instruction cannot contain ?>"},
    };
    for (const auto& [change, message] : refusals)
        EXPECT_EQ(message, messageOf(change));
    EXPECT_EQ(before, xmlOf(document));

    kel::Element deepest = root;
    for (int depth = 1; depth < 2048; ++depth)
        deepest = deepest.append("d");
    EXPECT_EQ("appending a node: the tree would become deeper than 2048 elements",
              messageOf([&] { deepest.append("d"); }));
}

TEST_F(Layer, ALoopMayMoveOrRemoveItsCurrentNode)
{
    kel::Document document = kel::Document::parse("<r><a/>t<b><a/></b><a/><!--c--></r>");
    kel::Element root = document.root();
    EXPECT_EQ("a #text b a #comment ", namesIn(root.nodes()));
    EXPECT_EQ("a b a a ", namesIn(document.root().descendants()));
    EXPECT_EQ(3u, document.descendants("a").size());
    EXPECT_EQ("a a ", namesIn(root.children("a")));
    for (auto& element : root.children("a")) {
        if (root.children().size() < 6)
            root.append("a"); // the loop visits the new element too
        element.setAttribute("seen", true);
    }
    for (kel::Element element : root.descendants("a"))
        if (element.parent() == root)
            root.child("b").append(element);
        else
            element.parent().remove(element);
    EXPECT_EQ(5u, root.child("b").children().size()) << "b must contain only the moved elements";
    for (const kel::Node& node : root.nodes())
        root.remove(node);
    EXPECT_EQ("<r/>", xmlOf(root));
    for (const char* name : {"z", "m", "a"})
        root.setAttribute(name, 1);
    EXPECT_EQ("a m z ", namesIn(root.attributes()));
    for (const kel::Attribute& attribute : root.attributes())
        root.removeAttribute(attribute.name());
    EXPECT_TRUE(root.attributes().empty());
}

TEST_F(Layer, ALoopThatMovesNodesWithinItsListVisitsEachOnce)
{
    kel::Element list = kel::Document::parse("<l><c/><a/><d/><b/></l>").root();
    std::string visited;
    for (const kel::Element& element : list.children()) {
        visited += element.name() + ' ';
        kel::Element place = *list.children().begin();
        while (place != element && place.name() < element.name())
            place = kel::Element(place.nextSibling());
        list.insertBefore(element, place);
    }
    EXPECT_EQ("c a d b a b c d ", visited + namesIn(list.children()));
    list.child("a").append("below");
    visited.clear();
    for (const kel::Element& element : list.descendants()) {
        visited += element.name() + ' ';
        list.append(element);
    }
    EXPECT_EQ("a b c d below a b c d below ", visited + namesIn(list.children()));
    visited.clear();
    kel::Element single = kel::Document::parse("<l><a/></l>").root();
    for (const kel::Element& element : single.children())
        if ((visited += element.name()) == "a") {
            single.insertBefore("x", element);
            single.append("y");
        }
    EXPECT_EQ("ay", visited) << "a new node must be visited only if it is after the current one";
}

TEST_F(Layer, ALoadErrorNamesTheFileThePlaceAndTheReason)
{
    using Kind = kel::LoadError::Kind;
    const std::string path = pathOf("h\xC3\xA9.xml").toStdString();
    const auto loadErrorOf = [&](const std::string& from) {
        try {
            kel::Document::load(from);
        } catch (const kel::LoadError& error) {
            EXPECT_EQ(error.line() > 0, error.kind() == Kind::notWellFormed) << error.what();
            return std::pair(error.kind(), std::string(error.what()));
        }
        return std::pair(Kind{}, std::string());
    };
    const auto loadErrorOfText = [&](const std::string& text) {
        write(QString::fromStdString(path), QByteArray::fromStdString(text));
        return loadErrorOf(path);
    };
    EXPECT_EQ(std::pair(Kind::unreadable, path + ": No such file or directory"), loadErrorOf(path));
    const std::string folder = m_directory.path().toStdString();
    EXPECT_EQ(std::pair(Kind::unreadable, folder + ": Is a directory"), loadErrorOf(folder));
    EXPECT_EQ(Kind::unreadable, loadErrorOf(std::string("a\0b", 3)).first);
    EXPECT_EQ(std::pair(Kind::empty, path + ": it is empty"), loadErrorOfText(""));
    EXPECT_EQ(std::pair(Kind::notWellFormed, path + ":2:4: tag mismatch"), loadErrorOfText("<r>\n</s>"));
    EXPECT_EQ(std::pair(Kind::beyondLimit, path + ": nested deeper than 2048 levels"),
              loadErrorOfText(QByteArray("<d>").repeated(2049).toStdString()));
    EXPECT_EQ("text:1:7: tag mismatch", messageOf([] { kel::Document::parse(L"\xFEFF<a></b>"); }));
    EXPECT_THROW(kel::Document::parse("<r>\xFF</r>"), kel::LoadError);
    EXPECT_NO_THROW(kel::Document::parse("\xEF\xBB\xBF<r/>"));
    EXPECT_EQ(std::pair(Kind::unreadable, std::string("'': No such file or directory")), loadErrorOf(""));
    EXPECT_EQ("a\\u000Ab: No such file or directory", loadErrorOf("a\nb").second);
    EXPECT_EQ(std::pair(Kind{}, std::string()), loadErrorOfText("<r/>"));
}

TEST_F(Layer, ASaveWritesTheWholeFileOrKeepsTheOldOne)
{
    const std::string path = pathOf("saved.xml").toStdString();
    const auto document =
        kel::Document::parse("<?xml version='1.0' encoding='ISO-8859-1'?><r b='1' a='\u00e9'><c/></r>");
    document.save(path);
    EXPECT_EQ("<?xml version='1.0' encoding='ISO-8859-1'?>\n<r a=\"\xE9\" b=\"1\">\n    <c/>\n</r>\n",
              contentOf(QString::fromStdString(path)).toStdString());
    EXPECT_EQ(document.toString(), document.clone().toString());
    EXPECT_EQ("<p:n/>\n", kel::Document("p:n").toString());
    EXPECT_NO_THROW(kel::Document(*newDocument()).append("r")) << "a document without a tree must get one";
    document.save(path, {-1});
    EXPECT_EQ(document.toString({-1}), kel::Document::load(path).toString({-1}));
    EXPECT_EQ(path + "/x: Not a directory", messageOf([&] { document.save(path + "/x"); }));
    EXPECT_THROW(document.save(std::string("a\0b", 3)), kel::SaveError);
    EXPECT_EQ(path + ": the document has no root element", messageOf([&] { kel::Document().save(path); }));
}

TEST_F(Layer, TheElementsOfAWriterCanBeDestroyedInAnyOrder)
{
    const std::string path = pathOf("written.xml").toStdString();
    expectNoLeaks([&path] {
        auto outlives = [&path] {
            kel::Writer writer(path, false);
            auto root = std::make_unique<kel::Writer::Element>(writer.element("r"));
            root->attribute("n", 0.1).attribute(L"t", L"\xFEFF\xD800<").attribute("b", true);
            auto inner = writer.element("i");
            writer.element("whole", 5);
            writer.element("empty");
            writer.instruction("go", "on");
            root.reset(); // ends `inner` too
            EXPECT_THROW(inner.attribute("late", 1), kel::Error);
            EXPECT_THROW(writer.element("second"), kel::Error);
            return inner;
        }();
    });
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?><r n=\"0.1\" t=\"\xEF\xBB\xBF\xEF\xBF\xBD&lt;\" "
              "b=\"true\"><i>"
              "<whole>5</whole><empty/><?go on?></i></r>\n",
              contentOf(QString::fromStdString(path)).toStdString());
    try {
        kel::Writer writer(path);
        auto root = writer.element("lost");
        throw std::logic_error("before `close`");
    } catch (const std::logic_error&) {
        EXPECT_EQ("r", kel::Document::load(path).root().name()) << "the earlier file must stay";
    }
    kel::Writer writer(path);
    auto root = writer.element("r");
    writer.cdata("a]]>b");
    writer.element("cr", "p\rq\r");
    for (int count = 0; count < 10000; ++count)
        writer.element("e", count);
    writer.close();
    writer.close();
    const kel::Element read = kel::Document::load(path).root();
    EXPECT_EQ(10000u, read.children("e").size());
    EXPECT_TRUE(contentOf(QString::fromStdString(path)).contains("<cr>p&#xd;q&#xd;</cr>"));
    EXPECT_EQ("a]]>b", read.nodes().begin()->text() + std::next(read.nodes().begin())->text());
}

TEST_F(Layer, AWriterRefusesWhatNoParserCouldRead)
{
    kel::Writer writer("/dev/full"), closed("/dev/null");
    EXPECT_EQ("closing a file: the file has no root element", messageOf([&] { closed.close(); }));
    EXPECT_EQ("writing a text: no element is open", messageOf([&] { closed.text("x"); }));
    auto root = writer.element("r");
    root.attribute("a", 1);
    const std::pair<std::function<void()>, const char*> refusals[] = {
        {[&] { root.attribute("a", 2); }, "writing an attribute: the element already has this attribute"},
        {[&] { root.attribute("1", 2); }, "invalid name: '1' is not a name"},
        {[&] { writer.element("i"), root.attribute("b", 1); }, // the start tag of `i` is still open
         "writing an attribute: the element has content or is closed"},
        {[&] { writer.element("<"); }, "invalid name: '<' is not a name"},
        {[&] { writer.text("\xFF"); }, "invalid text: it is not valid UTF-8"},
        {[&] { writer.cdata(std::wstring(1, L'\0')); }, "invalid text: it contains a null character"},
        {[&] { writer.text("x\x01y"); }, "invalid text: XML does not allow the character U+0001"},
        {[&] { writer.comment(L"\xFFFE"); }, "invalid text: XML does not allow the character U+FFFE"},
        {[&] { writer.comment("-"); },
         "writing a comment: a comment cannot contain two hyphens in a row or end with a hyphen"},
        {[&] { writer.instruction("x", "?>"); }, "writing an instruction: an instruction cannot contain ?>"},
        {[&] { closed.element("r", ""), closed.element("r"); },
         "writing an element: the document has a root element already"},
        {[&] { closed.close(), closed.element("r"); }, "writing an element: the file is closed"},
        {[&] { writer.close(); }, "/dev/full: No space left on device"},
        {[&] { writer.close(); }, "/dev/full: No space left on device"},
        {[&] { kel::Writer::Element(std::move(root)), root.attribute("b", 1); },
         "writing an attribute: the element has content or is closed"},
        {[] { kel::Writer("/dev/null/x"); }, "/dev/null/x: Not a directory"},
        {[] { kel::Writer(""); }, "'': No such file or directory"},
    };
    for (const auto& [write, message] : refusals)
        EXPECT_EQ(message, messageOf(write));
}

} // namespace
