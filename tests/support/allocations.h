// Counting live allocations, and making them fail.

#pragma once

#include <cstddef>

namespace allocations
{

/// What is live in the process: a number that is the same again when everything made since has been freed.
std::size_t live();

/// Fails the `nth` allocation of this thread, counted from 1, while it lives. Neither a sanitizer's allocator
/// nor valgrind's can be made to; `kCanFail` tells.
class FailAt
{
public:
    explicit FailAt(std::size_t nth);
    ~FailAt();
    FailAt(const FailAt&) = delete;
    FailAt& operator=(const FailAt&) = delete;

    /// Whether that allocation was reached.
    bool failed() const;
};

/// Lets this thread have only so many bytes more than it has, while it lives.
class Budget
{
public:
    explicit Budget(std::size_t bytes);
    ~Budget();
    Budget(const Budget&) = delete;
    Budget& operator=(const Budget&) = delete;
};

extern const bool kCanFail;

} // namespace allocations
