// Writes document types and their declarations.

#pragma once

#include "serialize/output.h"
#include "serialize/serialize.h"

class QDomDocumentType;
class QDomEntity;
class QDomNotation;

namespace kelxml::serialize
{

/// Writes nothing for a type without a name, such as the null type of a document that has no document type.
/// \param order the order in which the notations and the entities are written
void writeDoctype(const QDomDocumentType& type, AttributeOrder order, Output& output);

void writeNotation(const QDomNotation& notation, Output& output);
void writeEntity(const QDomEntity& entity, Output& output);

} // namespace kelxml::serialize
