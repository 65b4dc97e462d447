// Documents grow record by record, each record from its number alone.

#include "inputs.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <stdexcept>

namespace bench
{

namespace
{

constexpr char kMimeDatabase[] = "/usr/share/mime/packages/freedesktop.org.xml";

struct Form
{
    const char* head;
    /// `%1` is the record's number, `%2` a text.
    const char* record;
    const char* foot;
};

Form formOf(Shape shape)
{
    switch (shape) {
    case Shape::Records:
        return {"<?xml version='1.0' encoding='UTF-8'?>\n<catalogue>\n",
                "  <record id=\"r%1\" kind=\"spare\" weight=\"%1.5\">\n"
                "    <name>Part %1</name>\n"
                "    <name xml:lang=\"de\">Gerät für %1 Stück</name>\n"
                "    <!-- checked -->\n"
                "    <note>%2</note>\n"
                "    <place><shelf>A%1 &amp; B</shelf><box/></place>\n"
                "    <source><![CDATA[if (a < b) use(%1);]]></source>\n"
                "  </record>\n",
                "</catalogue>\n"};
    case Shape::Markup:
        return {"<r>", "<a><b/><c><d/></c></a><e><f>%1</f></e>", "</r>"};
    case Shape::Text:
        return {"<book>\n", "<p>%2 %2 %2 %2 %2 %2 %2 %2</p>\n", "</book>\n"};
    case Shape::Attributes:
        return {
            "<table>\n",
            "<row a='%1' b='x%1' c='left' d='12.5' e='true' f='red' g='%1' h='none' i='a&amp;b' j='0' k='' "
            "l='last'/>\n",
            "</table>\n"};
    case Shape::DocumentType:
        return {"<!DOCTYPE r [\n",
                "<!ELEMENT e%1 (a, (b | c)*, d?)>\n"
                "<!ATTLIST e%1 id ID #REQUIRED kind (spare | whole) 'spare'>\n"
                "<!-- an element of the %1th kind -->\n",
                "]>\n<r/>\n"};
    }
    throw std::logic_error("no such shape");
}

/// Twenty to a hundred and forty characters, some of them beyond ASCII.
QString sentence(std::int64_t number)
{
    static const QString kWords =
        QString::fromUtf8("of steel, nickel and brass – to be kept dry; größer als ein Daumen, 三十年 old, "
                          "with threads at either end, greased, boxed by the dozen");
    return kWords.left(20 + static_cast<int>(number * 37 % 120));
}

QByteArray recordOf(const Form& form, std::int64_t number)
{
    QString record = QString::fromUtf8(form.record);
    return record.replace(QStringLiteral("%1"), QString::number(number))
        .replace(QStringLiteral("%2"), sentence(number))
        .toUtf8();
}

QString scratchPath(const QString& name)
{
    static const QTemporaryDir directory;
    if (!directory.isValid())
        throw std::runtime_error("no temporary directory");
    return directory.filePath(name);
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

} // namespace

QByteArray generate(Shape shape, std::int64_t bytes)
{
    const Form form = formOf(shape);
    QByteArray document(form.head);
    document.reserve(static_cast<int>(bytes) + 4096);
    for (std::int64_t number = 1; document.size() < bytes; ++number)
        document += recordOf(form, number);
    return document + form.foot;
}

QString inputFile(std::int64_t bytes, Shape shape)
{
    if (bytes == 0)
        return QString::fromUtf8(kMimeDatabase);
    const QString path =
        scratchPath(QStringLiteral("input-%1-%2.xml").arg(static_cast<int>(shape)).arg(bytes));
    if (!QFile::exists(path))
        writeFile(path, generate(shape, bytes));
    return path;
}

QString outputFile(const QString& name)
{
    return scratchPath(name);
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    return file.readAll();
}

} // namespace bench
