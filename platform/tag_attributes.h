// The attributes of one tag of a type library, each taken and checked in one step.

#pragma once

#include "platform/description.h"

#include <QtCore/QUuid>
#include <QtCore/QXmlStreamReader>
#include <algorithm>
#include <initializer_list>
#include <utility>

namespace kelcom
{

inline bool isIdentifier(QStringView text)
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

/// In the end none may be left.
class TagAttributes
{
public:
    explicit TagAttributes(const QXmlStreamReader& xml) : m_attributes(xml.attributes()) {}

    /// Null when there is no such attribute.
    QString take(QLatin1String name)
    {
        const auto place =
            std::find_if(m_attributes.begin(), m_attributes.end(),
                         [name](const auto& attribute) { return attribute.qualifiedName() == name; });
        if (place == m_attributes.end())
            return {};
        const QString value = place->value().toString();
        m_attributes.erase(place);
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
    /// The number that belongs to a word.
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

} // namespace kelcom
