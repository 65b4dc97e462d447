// What the benchmarks read: the MIME database, and documents made up here, the same in every run.

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <cstdint>

namespace bench
{

/// What most of a document consists of.
enum class Shape {
    Records,      ///< a mix: elements, attributes, short and long text, characters beyond ASCII
    Markup,       ///< hardly anything but tags
    Text,         ///< long paragraphs
    Attributes,   ///< elements of a dozen attributes
    DocumentType, ///< an internal subset, and one element
};

/// A well-formed document of at least `bytes`, and little more.
QByteArray generate(Shape shape, std::int64_t bytes);

/// The path of a file with such a document, written when first asked for and gone with the process; of the
/// MIME database where `bytes` is 0.
QString inputFile(std::int64_t bytes, Shape shape = Shape::Records);

/// A path to write to, gone with the process.
QString outputFile(const QString& name);

/// The whole file. \throw std::runtime_error
QByteArray readFile(const QString& path);

} // namespace bench
