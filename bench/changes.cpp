// Changing a tree, and building one from nothing.

#include "host.h"
#include "rows.h"

#include <memory>
#include <type_traits>

namespace bench
{

namespace
{

Pair setText(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    const auto qts = std::make_shared<QtTree>(size.value);
    const auto name = std::make_shared<Text>(QStringLiteral("id"));
    return {{[=] {
                std::size_t index = 0;
                for (const auto& element : ours->elements)
                    element->setAttribute(name->bstr.get(), variantOf(textAt(index++).bstr));
                return index;
            }},
            {[=] {
                std::size_t index = 0;
                for (QDomElement& element : qts->elements)
                    element.setAttribute(name->ready, QString::fromStdWString(textAt(index++).wide));
                return index;
            }},
            size.value};
}

/// The type that Qt's setAttribute has for a number.
template <class Number>
using QtNumber = std::conditional_t<std::is_floating_point_v<Number>, Number,
                                    std::conditional_t<std::is_signed_v<Number>, qlonglong, qulonglong>>;

template <class Number>
Row setNumber(const char* type, VARENUM tag, Number VARIANT::*member)
{
    const auto numberAt = [](std::size_t index) { return static_cast<Number>(index % 30'000); };
    const auto make = [=](const Size& size) -> Pair {
        const auto ours = std::make_shared<LibraryTree>(size.value);
        const auto qts = std::make_shared<QtTree>(size.value);
        const auto name = std::make_shared<Text>(QStringLiteral("id"));
        return {{[=] {
                    std::size_t index = 0;
                    VARIANT value{};
                    value.vt = tag;
                    for (const auto& element : ours->elements) {
                        value.*member = numberAt(index++);
                        element->setAttribute(name->bstr.get(), value);
                    }
                    return index;
                }},
                {[=] {
                    std::size_t index = 0;
                    for (QDomElement& element : qts->elements)
                        element.setAttribute(name->ready, QtNumber<Number>{numberAt(index++)});
                    return index;
                }},
                size.value};
    };
    return {"setAttribute, " + std::string(type), treeSizes(), make, 1.8};
}

Pair putText(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    const auto qts = std::make_shared<QtTree>(size.value);
    return {{[=] {
                std::size_t index = 0;
                for (const auto& element : ours->elements)
                    element->put_text(textAt(index++).bstr.get());
                return index;
            }},
            {[=] {
                std::size_t index = 0;
                for (QDomElement& element : qts->elements) {
                    const QString text = QString::fromStdWString(textAt(index++).wide);
                    element.removeChild(element.firstChild());
                    element.appendChild(qts->document.createTextNode(text));
                }
                return index;
            }},
            size.value};
}

std::uint64_t removeAll(LibraryTree& tree)
{
    std::uint64_t count = 0;
    for (const auto& element : tree.elements)
        count += tree.root->removeChild(element.get(), nullptr) == S_OK;
    return count;
}

std::uint64_t removeAll(QtTree& tree)
{
    std::uint64_t count = 0;
    for (const QDomElement& element : tree.elements)
        count += !tree.root.removeChild(element).isNull();
    return count;
}

std::uint64_t appendAll(LibraryTree& tree)
{
    std::uint64_t count = 0;
    for (const auto& element : tree.elements)
        count += tree.root->appendChild(element.get(), nullptr) == S_OK;
    return count;
}

std::uint64_t appendAll(QtTree& tree)
{
    std::uint64_t count = 0;
    for (const QDomElement& element : tree.elements)
        count += !tree.root.appendChild(element).isNull();
    return count;
}

Pair appendChild(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    const auto qts = std::make_shared<QtTree>(size.value);
    return {{[=] { return appendAll(*ours); }, [=] { removeAll(*ours); }},
            {[=] { return appendAll(*qts); }, [=] { removeAll(*qts); }},
            size.value};
}

Pair removeChild(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    const auto qts = std::make_shared<QtTree>(size.value);
    return {{[=] { return removeAll(*ours); }, [=] { appendAll(*ours); }},
            {[=] { return removeAll(*qts); }, [=] { appendAll(*qts); }},
            size.value};
}

Pair getParentNode(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    const auto qts = std::make_shared<QtTree>(size.value);
    return {{[=] {
                std::uint64_t count = 0;
                ComPtr<IXMLDOMNode> parent;
                for (const auto& element : ours->elements)
                    count += element->get_parentNode(parent.put()) == S_OK;
                return count;
            }},
            {[=] {
                std::uint64_t count = 0;
                for (const QDomElement& element : qts->elements)
                    count += !element.parentNode().isNull();
                return count;
            }},
            size.value};
}

/// A built record: an element with an attribute, and in it an element with a text.
constexpr std::size_t kNodesPerRecord = 4;

struct BuildNames
{
    Text root{QStringLiteral("root")};
    Text record{QStringLiteral("record")};
    Text id{QStringLiteral("id")};
    Text name{QStringLiteral("name")};
};

std::uint64_t build(IXMLDOMDocument& document, const BuildNames& names, std::size_t records)
{
    const auto root = newElement(document, names.root.bstr);
    document.appendChild(root.get(), nullptr);
    for (std::size_t index = 0; index < records; ++index) {
        const auto record = newElement(document, names.record.bstr);
        record->setAttribute(names.id.bstr.get(), variantOf(textAt(index).bstr));
        const auto name = newElement(document, names.name.bstr);
        name->put_text(textAt(index + 1).bstr.get());
        record->appendChild(name.get(), nullptr);
        root->appendChild(record.get(), nullptr);
    }
    return records;
}

std::uint64_t build(QDomDocument& document, const BuildNames& names, std::size_t records)
{
    QDomElement root = document.createElement(names.root.ready);
    document.appendChild(root);
    for (std::size_t index = 0; index < records; ++index) {
        QDomElement record = document.createElement(names.record.ready);
        record.setAttribute(names.id.ready, QString::fromStdWString(textAt(index).wide));
        QDomElement name = document.createElement(names.name.ready);
        name.appendChild(document.createTextNode(QString::fromStdWString(textAt(index + 1).wide)));
        record.appendChild(name);
        root.appendChild(record);
    }
    return records;
}

Pair buildFromNothing(const Size& size)
{
    const auto records = static_cast<std::size_t>(size.value) / kNodesPerRecord;
    const auto names = std::make_shared<BuildNames>();
    const auto ours = std::make_shared<ComPtr<IXMLDOMDocument>>();
    const auto qts = std::make_shared<QDomDocument>();
    return {{[=] { return build(**ours, *names, records); },
             [=] {
                 ours->reset();
                 *ours = newDocument();
             }},
            {[=] { return build(*qts, *names, records); }, [=] { *qts = QDomDocument(); }},
            size.value};
}

} // namespace

std::vector<Row> changeRows()
{
    return {{"setAttribute, BSTR", treeSizes(), setText, 1.8},
            setNumber("I2", VT_I2, &VARIANT::iVal),
            setNumber("I4", VT_I4, &VARIANT::lVal),
            setNumber("I8", VT_I8, &VARIANT::llVal),
            setNumber("UI2", VT_UI2, &VARIANT::uiVal),
            setNumber("UI4", VT_UI4, &VARIANT::ulVal),
            setNumber("UI8", VT_UI8, &VARIANT::ullVal),
            setNumber("R4", VT_R4, &VARIANT::fltVal),
            setNumber("R8", VT_R8, &VARIANT::dblVal),
            {"put_text", treeSizes(), putText, 1.8},
            {"appendChild", treeSizes(), appendChild},
            {"removeChild", treeSizes(), removeChild},
            {"get_parentNode", treeSizes(), getParentNode},
            {"building from nothing", treeSizes(), buildFromNothing, 1.8}};
}

} // namespace bench
