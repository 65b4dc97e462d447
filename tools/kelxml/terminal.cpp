// Colours and progress.

#include "terminal.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace tool
{
namespace
{

constexpr char kClearLine[] = "\r\033[K";

std::string_view environmentVariable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool showsColour(int descriptor)
{
    return isatty(descriptor) && environmentVariable("NO_COLOR").empty() &&
           environmentVariable("TERM") != "dumb";
}

/// The escape sequences that set the colours, in the order of `Style`.
constexpr const char* kColours[] = {"\033[36m", "\033[1m", "\033[33m", "\033[32m", "\033[1;31m"};

} // namespace

std::string painted(Style style, const std::string& text)
{
    static const bool isOutputColoured = showsColour(STDOUT_FILENO);
    static const bool isErrorColoured = showsColour(STDERR_FILENO);
    const bool isColoured = style == Style::error ? isErrorColoured : isOutputColoured;
    return isColoured ? kColours[static_cast<int>(style)] + text + "\033[0m" : text;
}

Progress::Progress(std::string work) : m_work(std::move(work))
{
    if (isatty(STDERR_FILENO))
        m_thread = std::thread(&Progress::show, this);
}

Progress::~Progress()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_over.notify_one();
    m_thread.join();
}

void Progress::show()
{
    std::unique_lock lock(m_mutex);
    int seconds = 0;
    while (!m_over.wait_for(lock, std::chrono::seconds(1), [this] { return m_isOver; }))
        std::cerr << kClearLine << m_work << ", " << ++seconds << " s" << std::flush;
    if (seconds > 0)
        std::cerr << kClearLine << std::flush;
}

} // namespace tool
