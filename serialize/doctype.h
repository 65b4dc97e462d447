// Writes document types and their declarations.

#pragma once

#include "serialize/output.h"
#include "serialize/serialize.h"

class QDomDocumentType;
class QDomEntity;
class QDomNotation;

namespace kelxml::serialize
{

/// Writes the declaration of a document type. Writes nothing if `type` has no name. For a document that has
/// no document type, Qt returns a `QDomDocumentType` without a name.
/// \param order the order of the notations, and the order of the entities, which follow the notations
void writeDoctype(const QDomDocumentType& type, AttributeOrder order, Output& output);

void writeNotation(const QDomNotation& notation, Output& output);
void writeEntity(const QDomEntity& entity, Output& output);

} // namespace kelxml::serialize
