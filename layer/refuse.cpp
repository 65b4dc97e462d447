// Checks texts, and composes the reason for each `Refusal`.

#include "layer/refuse.h"

#include "KelComWrapper/error.h"
#include "limits/limits.h"

namespace kel::detail
{

namespace
{

std::string reasonOf(kelxml::trees::Refusal refusal)
{
    using kelxml::trees::Refusal;
    switch (refusal) {
    case Refusal::NoNode:
        return reason::kNullArgument;
    case Refusal::Ring:
        return "the node would be inside itself";
    case Refusal::TooDeep:
        return "the tree would become deeper than " + std::to_string(kelxml::limits::kMaxElementDepth) +
               " elements";
    case Refusal::Attribute:
        return "an attribute cannot be a child";
    case Refusal::WholeDocument:
        return "a document cannot be in a tree";
    case Refusal::NotAChild:
        return "the node is not a child";
    case Refusal::None:
        break;
    }
    return {};
}

} // namespace

void refuse(const char* action, const std::string& reason)
{
    throw Error(E_INVALIDARG, action, reason);
}

void require(kelxml::trees::Refusal refusal, const char* action)
{
    if (refusal != kelxml::trees::Refusal::None)
        refuse(action, reasonOf(refusal));
}

void requireComment(const QString& text, const char* action)
{
    requireWithout("--", text, action, reason::kComment);
    if (text.endsWith(u'-'))
        refuse(action, reason::kComment);
}

void requireWithout(const char* end, const QString& text, const char* action, const char* reason)
{
    if (text.contains(QLatin1String(end)))
        refuse(action, reason);
}

} // namespace kel::detail
