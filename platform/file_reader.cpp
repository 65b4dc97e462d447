// Parses a type library. Unknown content, or a description that contradicts itself, makes the whole file
// invalid: calls that rely on a wrong description would pass wrong arguments.

#include "platform/file_reader.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QUuid>
#include <QtCore/QXmlStreamReader>
#include <algorithm>
#include <initializer_list>
#include <utility>

namespace kelcom
{
namespace
{

constexpr char kHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<library format=\"1\" digest=\"";
constexpr int kHeadLength = sizeof kHead - 1;
constexpr int kDigestLength = 64;
constexpr char kHeadEnd[] = "\">";
constexpr int kBodyStart = kHeadLength + kDigestLength + static_cast<int>(sizeof kHeadEnd) - 1;
/// Maximum length of a tag in bytes. Limits the number of attributes in a tag, because Qt compares each
/// attribute with all other attributes of the same tag.
constexpr int kMaxTagLength = 4096;

bool isIntact(const QByteArray& contents)
{
    if (!contents.startsWith(kHead) || contents.mid(kHeadLength + kDigestLength, 2) != kHeadEnd)
        return false;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(contents.constData() + kBodyStart, contents.size() - kBodyStart);
    return contents.mid(kHeadLength, kDigestLength) == hash.result().toHex();
}

/// Measures each tag from its `<` to the next `<`, not to the next `>`, because an attribute value may
/// contain `>`.
bool hasOnlyShortTags(const QByteArray& contents)
{
    for (int start = contents.indexOf('<'); start >= 0;) {
        const int next = contents.indexOf('<', start + 1);
        if ((next < 0 ? contents.size() : next) - start > kMaxTagLength)
            return false;
        start = next;
    }
    return true;
}

bool isIdentifier(QStringView text)
{
    const auto isLetter = [](QChar c) {
        return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
               (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) || c == QLatin1Char('_');
    };
    const auto isLetterOrDigit = [&](QChar c) {
        return isLetter(c) || (c >= QLatin1Char('0') && c <= QLatin1Char('9'));
    };
    return !text.isEmpty() && text.size() <= static_cast<int>(kMaxNameLength) && isLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), isLetterOrDigit);
}

/// The attributes of one tag. Each function whose name begins with `take` removes one attribute. The `take`
/// functions that return `bool` also check the attribute's value, and return false if the value is invalid. A
/// tag is valid only if no attribute remains after all expected attributes have been taken.
class TagAttributes
{
public:
    explicit TagAttributes(const QXmlStreamReader& xml) : m_attributes(xml.attributes()) {}

    /// Returns the attribute's value, or a null string if the tag has no attribute with this name.
    QString take(QLatin1String name)
    {
        const auto it = std::find_if(m_attributes.begin(), m_attributes.end(), [name](const auto& attribute) {
            return attribute.qualifiedName() == name;
        });
        if (it == m_attributes.end())
            return {};
        const QString value = it->value().toString();
        m_attributes.erase(it);
        return value.isNull() ? QStringLiteral("") : value;
    }
    bool takeName(std::wstring& name, QLatin1String attribute = QLatin1String("name"))
    {
        const QString text = take(attribute);
        name = text.toStdWString();
        return isIdentifier(text);
    }
    bool takeUuid(GUID& guid)
    {
        const QString text = take(QLatin1String("uuid"));
        const QUuid uuid(text);
        guid = {uuid.data1, uuid.data2, uuid.data3, {}};
        std::copy(std::begin(uuid.data4), std::end(uuid.data4), std::begin(guid.Data4));
        return uuid.toString(QUuid::WithoutBraces).compare(text, Qt::CaseInsensitive) == 0;
    }
    bool takeId(MEMBERID& id)
    {
        const QString text = take(QLatin1String("id"));
        id = text.toInt();
        return QString::number(id) == text && id != MEMBERID_NIL;
    }
    /// Takes an attribute whose value must be one of the words in `choices`. Sets `value` to the meaning that
    /// `choices` assigns to this word.
    template <class Value>
    bool takeChoice(QLatin1String name, std::initializer_list<std::pair<QLatin1String, Value>> choices,
                    Value& value)
    {
        const QString text = take(name);
        for (const auto& [word, meaning] : choices)
            if (text == word) {
                value = meaning;
                return true;
            }
        return false;
    }
    bool areAllTaken() const { return m_attributes.isEmpty(); }

private:
    QXmlStreamAttributes m_attributes;
};

enum class Direction { In, Result };

class Reader
{
public:
    explicit Reader(const QByteArray& contents)
        : m_xml(contents), m_library(std::make_unique<LibraryDescription>())
    {
        // A namespace declaration makes the file invalid. With namespace processing, Qt would not list the
        // declaration among the attributes, so the reader would accept the declaration.
        m_xml.setNamespaceProcessing(false);
    }

    std::unique_ptr<const LibraryDescription> read()
    {
        addBuiltInTypes();
        return readLibrary() && isAtEnd() && areAllTypesDescribed() && complete(*m_library)
                   ? std::move(m_library)
                   : nullptr;
    }

private:
    void addBuiltInTypes();
    ValueType& typeNamed(const std::wstring& name);
    bool declareType(const std::wstring& name, const GUID* iid, VARTYPE tag, ValueType** declared = nullptr);
    bool areAllTypesDescribed() const;

    bool nextChild();
    bool hasNoChildren() { return !nextChild() && !m_isBroken; }
    bool isAtEnd();

    bool readLibrary();
    bool readIdentity();
    bool readExternal();
    bool readEnumeration();
    bool readInterface();
    bool readMember(InterfaceDescription& interface);
    bool readParameter(Function& function);
    bool takeBase(TagAttributes& attributes, InterfaceDescription& interface) const;

    QXmlStreamReader m_xml;
    std::unique_ptr<LibraryDescription> m_library;
    /// The number of functions of all interfaces. An inherited function counts once for each interface that
    /// has it.
    std::size_t m_functionCount = 0;
    bool m_isBroken = false;
};

void Reader::addBuiltInTypes()
{
    const auto add = [this](const wchar_t* name, VARTYPE tag, VARTYPE published, const GUID& iid) {
        ValueType& type = typeNamed(name);
        type.tag = tag;
        type.description.vt = published;
        type.iid = iid;
    };
    add(L"BSTR", VT_BSTR, VT_BSTR, {});
    add(L"VARIANT", VT_VARIANT, VT_VARIANT, {});
    add(L"VARIANT_BOOL", VT_BOOL, VT_BOOL, {});
    add(L"int", VT_I4, VT_INT, {});
    add(L"IUnknown", VT_UNKNOWN, VT_UNKNOWN, IID_IUnknown);
    add(L"IDispatch", VT_DISPATCH, VT_DISPATCH, IID_IDispatch);
}

/// Finds a type by name. If no type has this name yet, adds a type with this name. The file must declare each
/// added type later.
ValueType& Reader::typeNamed(const std::wstring& name)
{
    for (ValueType& type : m_library->types)
        if (type.name == name)
            return type;
    ValueType& type = m_library->types.emplace_back();
    type.name = name;
    return type;
}

bool Reader::declareType(const std::wstring& name, const GUID* iid, VARTYPE tag, ValueType** declared)
{
    const auto hasSameIid = [iid](const ValueType& type) { return type.isInterface() && type.iid == *iid; };
    if (iid && std::any_of(m_library->types.begin(), m_library->types.end(), hasSameIid))
        return false;
    ValueType& type = typeNamed(name);
    if (type.isDescribed())
        return false;
    type.tag = tag;
    type.description.vt = VT_USERDEFINED;
    if (iid)
        type.iid = *iid;
    if (declared)
        *declared = &type;
    return true;
}

bool Reader::areAllTypesDescribed() const
{
    return std::all_of(m_library->types.begin(), m_library->types.end(),
                       [](const ValueType& type) { return type.isDescribed(); });
}

/// Moves to the start of the next child element and returns true. Returns false at the end of the parent.
/// Also returns false, and sets `m_isBroken`, at any content other than elements, comments and white space.
bool Reader::nextChild()
{
    while (!m_isBroken) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::StartElement:
            return true;
        case QXmlStreamReader::EndElement:
            return false;
        case QXmlStreamReader::Comment:
            break;
        case QXmlStreamReader::Characters:
            m_isBroken = !m_xml.isWhitespace() || m_xml.isCDATA();
            break;
        default:
            m_isBroken = true;
        }
    }
    return false;
}

bool Reader::isAtEnd()
{
    while (m_xml.readNext() == QXmlStreamReader::Comment || (m_xml.isCharacters() && m_xml.isWhitespace()))
        continue;
    return m_xml.isEndDocument() && !m_xml.hasError();
}

bool Reader::readLibrary()
{
    // The function `isIntact` has already checked the text of the XML declaration and of the `<library>` tag.
    if (m_xml.readNext() != QXmlStreamReader::StartDocument ||
        m_xml.readNext() != QXmlStreamReader::StartElement)
        return false;
    if (!nextChild() || m_xml.qualifiedName() != QLatin1String("identity") || !readIdentity())
        return false;
    while (nextChild()) {
        const QStringRef name = m_xml.qualifiedName();
        const bool isRead = name == QLatin1String("external")    ? readExternal()
                            : name == QLatin1String("enum")      ? readEnumeration()
                            : name == QLatin1String("interface") ? readInterface()
                                                                 : false;
        if (!isRead || m_library->types.size() > kMaxTypes)
            return false;
    }
    return !m_isBroken;
}

bool Reader::readIdentity()
{
    TagAttributes attributes(m_xml);
    TLIBATTR& library = m_library->attributes;
    if (!attributes.takeName(m_library->name) || !attributes.takeUuid(library.guid))
        return false;
    const QString version = attributes.take(QLatin1String("version"));
    library.wMajorVerNum = version.section(QLatin1Char('.'), 0, 0).toUShort();
    library.wMinorVerNum = version.section(QLatin1Char('.'), 1).toUShort();
    return version == QStringLiteral("%1.%2").arg(library.wMajorVerNum).arg(library.wMinorVerNum) &&
           attributes.areAllTaken() && hasNoChildren();
}

bool Reader::readExternal()
{
    TagAttributes attributes(m_xml);
    std::wstring name;
    GUID iid{};
    return attributes.takeName(name) && attributes.takeUuid(iid) && attributes.areAllTaken() &&
           declareType(name, &iid, VT_DISPATCH) && hasNoChildren();
}

bool Reader::readEnumeration()
{
    TagAttributes attributes(m_xml);
    std::wstring name;
    return attributes.takeName(name) && attributes.areAllTaken() && declareType(name, nullptr, VT_I4) &&
           hasNoChildren();
}

bool Reader::readInterface()
{
    TagAttributes attributes(m_xml);
    std::wstring name;
    GUID iid{};
    InterfaceDescription interface;
    if (!attributes.takeName(name) || !attributes.takeUuid(iid) || !takeBase(attributes, interface) ||
        !attributes.areAllTaken() || !declareType(name, &iid, VT_DISPATCH, &interface.type))
        return false;
    while (nextChild())
        if (m_xml.qualifiedName() != QLatin1String("member") || !readMember(interface))
            return false;
    m_functionCount += interface.functions.size();
    m_library->interfaces.push_back(std::move(interface));
    return !m_isBroken && m_functionCount <= kMaxFunctionsInAll;
}

/// Reads the attribute `base`, and copies the functions of the base interface to `interface`.
/// \return false if `base` is neither `IDispatch` nor the name of an earlier interface
bool Reader::takeBase(TagAttributes& attributes, InterfaceDescription& interface) const
{
    const std::wstring base = attributes.take(QLatin1String("base")).toStdWString();
    if (base == L"IDispatch")
        return true;
    for (const InterfaceDescription& earlier : m_library->interfaces)
        if (earlier.type->name == base) {
            interface.functions = earlier.functions;
            return true;
        }
    return false;
}

bool Reader::readMember(InterfaceDescription& interface)
{
    TagAttributes attributes(m_xml);
    Function& function = m_library->functions.emplace_back();
    if (!attributes.takeName(function.name) || !attributes.takeId(function.id) ||
        !attributes.takeChoice(QLatin1String("kind"),
                               {{QLatin1String("method"), INVOKE_FUNC},
                                {QLatin1String("propget"), INVOKE_PROPERTYGET},
                                {QLatin1String("propput"), INVOKE_PROPERTYPUT},
                                {QLatin1String("propputref"), INVOKE_PROPERTYPUTREF}},
                               function.kind) ||
        !attributes.areAllTaken())
        return false;
    while (nextChild())
        if (m_xml.qualifiedName() != QLatin1String("param") || !readParameter(function))
            return false;
    const auto fits = [&function](const Function* other) { return areCompatible(function, *other); };
    if (m_isBroken || !isConsistent(function) || interface.functions.size() >= kMaxFunctions ||
        !std::all_of(interface.functions.begin(), interface.functions.end(), fits))
        return false;
    interface.functions.push_back(&function);
    return true;
}

bool Reader::readParameter(Function& function)
{
    TagAttributes attributes(m_xml);
    Parameter parameter;
    std::wstring type;
    Direction direction{};
    if (!attributes.takeName(parameter.name) || !attributes.takeName(type, QLatin1String("type")) ||
        !attributes.takeChoice(
            QLatin1String("dir"),
            {{QLatin1String("in"), Direction::In}, {QLatin1String("retval"), Direction::Result}}, direction))
        return false;
    const QString optional = attributes.take(QLatin1String("optional"));
    parameter.isOptional = optional == QLatin1String("true");
    parameter.type = &typeNamed(type);
    const auto hasSameName = [&parameter](const Parameter& other) {
        return isSameName(other.name, parameter.name);
    };
    if ((!optional.isNull() && (!parameter.isOptional || direction == Direction::Result)) ||
        !attributes.areAllTaken() || function.result || m_library->types.size() > kMaxTypes ||
        std::any_of(function.arguments.begin(), function.arguments.end(), hasSameName))
        return false;
    if (direction == Direction::Result)
        function.result = std::move(parameter);
    else if (function.arguments.size() < kMaxArguments)
        function.arguments.push_back(std::move(parameter));
    else
        return false;
    return hasNoChildren();
}

} // namespace

std::unique_ptr<const LibraryDescription> readTypeLibrary(const QByteArray& contents)
{
    return isIntact(contents) && hasOnlyShortTags(contents) ? Reader(contents).read() : nullptr;
}

} // namespace kelcom
