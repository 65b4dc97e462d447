// Refuses changes: throws an `Error` that says why.

#pragma once

#include "trees/refusal.h"

#include <QtCore/QString>

#include <string>

namespace kel::detail
{

/// The reasons that the layer's own checks report. The reasons for each `Refusal` of `trees/` are in
/// `refuse.cpp`.
namespace reason
{
constexpr const char* kNull = "the node to change is null";
constexpr const char* kNullArgument = "the node is null";
constexpr const char* kForeign = "the object belongs to another library";
constexpr const char* kDeclarationPart = "a document type, an entity or a notation cannot be added";
constexpr const char* kDeclaration = "an XML declaration must come first in a document";
constexpr const char* kSecondRoot = "the document has a root element already";
constexpr const char* kTextInDocument = "a document has no text of its own";
constexpr const char* kComment = "a comment cannot contain two hyphens in a row or end with a hyphen";
constexpr const char* kCData = "a CDATA section cannot contain ]]>";
constexpr const char* kInstruction = "an instruction cannot contain ?>";
} // namespace reason

/// Always throws.
/// \param action the action that failed, such as "appending a node"
/// \param reason why the action failed
/// \throw Error
[[noreturn]] void refuse(const char* action, const std::string& reason);

/// \return whether an instruction of that name is an XML declaration
inline bool isDeclaration(const QString& name)
{
    return name.compare(QLatin1String("xml"), Qt::CaseInsensitive) == 0;
}

/// \param refusal the result of a change
/// \param action the change, such as "appending a node"
/// \throw Error if the change was refused
void require(kelxml::trees::Refusal refusal, const char* action);

/// \throw Error if the text cannot be in a comment
void requireComment(const QString& text, const char* action);
/// \throw Error if the text contains `end`, such as `]]>`, which would end a CDATA section too early
void requireWithout(const char* end, const QString& text, const char* action, const char* reason);

} // namespace kel::detail
