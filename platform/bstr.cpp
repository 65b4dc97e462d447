// A BSTR consists of a length in characters, then the characters, then a zero. The functions allocate memory
// with `malloc`, so that they return null when memory runs out, and throw no exception.

#include "KelComWrapper/bstr.h"

#include <cstddef>
#include <cstdlib>
#include <cwchar>
#include <limits>

namespace
{

/// The size of the header before the characters. The last bytes of the header contain the length. With this
/// size, the characters are aligned like the block from `malloc`.
constexpr std::size_t kHeaderSize = alignof(std::max_align_t);

BYTE* blockOf(BSTR text)
{
    return reinterpret_cast<BYTE*>(text) - kHeaderSize;
}

} // namespace

BSTR SysAllocString(const wchar_t* text)
{
    if (!text)
        return nullptr;
    const std::size_t length = std::wcslen(text);
    if (length > std::numeric_limits<UINT>::max())
        return nullptr;
    return SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringLen(const wchar_t* text, UINT length)
{
    static_assert(sizeof(std::size_t) > sizeof(UINT), "the computation of `size` does not overflow");
    const std::size_t size = kHeaderSize + (std::size_t{length} + 1) * sizeof(wchar_t);
    void* const block = text ? std::malloc(size) : std::calloc(size, 1);
    if (!block)
        return nullptr;
    BYTE* const start = static_cast<BYTE*>(block) + kHeaderSize;
    std::memcpy(start - sizeof length, &length, sizeof length);
    const BSTR created = reinterpret_cast<BSTR>(start);
    if (text) {
        std::memcpy(created, text, std::size_t{length} * sizeof(wchar_t));
        created[length] = L'\0';
    }
    return created;
}

void SysFreeString(BSTR text)
{
    if (text)
        std::free(blockOf(text));
}

UINT SysStringLen(BSTR text)
{
    UINT length = 0;
    if (text)
        std::memcpy(&length, blockOf(text) + kHeaderSize - sizeof length, sizeof length);
    return length;
}

INT lstrlenW(const wchar_t* text)
{
    return text ? static_cast<INT>(std::wcslen(text)) : 0;
}
