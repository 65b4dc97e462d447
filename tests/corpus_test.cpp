// Every XML file of the machine's /usr/share through the library and through Qt directly: the same verdict,
// the same tree, the same bytes. The second half compares what the walk hands out with Qt's nodes one by one.

#include "support/dom_fixture.h"

#include <QtCore/QDirIterator>

namespace
{

class Corpus : public DomTest
{
protected:
    static void expectSameAttributes(IXMLDOMNode& ours, const QDomNode& theirs)
    {
        ComPtr<IXMLDOMNamedNodeMap> map;
        ours.get_attributes(map.put());
        LONG length = -1;
        map->get_length(&length);
        ASSERT_EQ(theirs.attributes().length(), length);
        for (LONG index = 0; index < length; ++index) {
            ComPtr<IXMLDOMNode> attribute;
            map->get_item(index, attribute.put());
            const Bstr name(textOf(attribute, &IXMLDOMNode::get_nodeName).c_str());
            ComPtr<IXMLDOMAttribute> typed;
            attribute->QueryInterface(IID_IXMLDOMAttribute, reinterpret_cast<void**>(typed.put()));
            VARIANT value{};
            typed->get_value(&value);
            Bstr owned;
            *owned.put() = value.bstrVal;
            const QString expected = theirs.toElement().attribute(QString::fromWCharArray(name.c_str()));
            ASSERT_EQ(expected.toStdWString(), owned.c_str());
        }
    }

    /// Walks both trees side by side; files are shallow, and so is the recursion.
    static void expectSame(IXMLDOMNode& ours, const QDomNode& theirs)
    {
        DOMNodeType type = NODE_INVALID;
        Bstr name;
        ours.get_nodeType(&type);
        ours.get_nodeName(name.put());
        ASSERT_EQ(static_cast<int>(theirs.nodeType()), static_cast<int>(type));
        ASSERT_EQ(theirs.nodeName().toStdWString(), name.c_str());
        if (theirs.isElement())
            expectSameAttributes(ours, theirs);
        ComPtr<IXMLDOMNodeList> list;
        ours.get_childNodes(list.put());
        ComPtr<IXMLDOMNode> child;
        QDomNode expected = theirs.firstChild();
        for (; list->nextNode(child.put()) == S_OK; expected = expected.nextSibling()) {
            ASSERT_FALSE(expected.isNull());
            expectSame(*child, expected);
            if (HasFatalFailure())
                return;
        }
        ASSERT_TRUE(expected.isNull());
    }
};

TEST_F(Corpus, EveryFileGetsQtsVerdictTreeAndBytes)
{
    int accepted = 0;
    int refused = 0;
    QDirIterator files(QStringLiteral("/usr/share"), {QStringLiteral("*.xml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        SCOPED_TRACE(path.toStdString());
        QDomDocument theirs;
        auto ours = newDocument();
        const bool verdict = loadBoth(path, theirs, ours);
        verdict ? ++accepted : ++refused;
        if (!verdict)
            continue;
        ASSERT_TRUE(saved(theirs) == saved(ours));
        expectSame(*ours, theirs);
        if (HasFatalFailure())
            return;
    }
    EXPECT_GE(accepted, 10) << "shared-mime-info and xkb-data bring at least these";
    RecordProperty("accepted", accepted);
    RecordProperty("refused", refused);
    std::printf("%d files accepted, %d refused, by both\n", accepted, refused);
}

} // namespace
