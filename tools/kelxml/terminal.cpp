// Colours, and the line that shows that work goes on.

#include "terminal.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace host
{
namespace
{

constexpr char kCleanLine[] = "\r\033[K";

std::string_view variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool showsColour(int descriptor)
{
    return isatty(descriptor) && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
}

const char* colourOf(Style style)
{
    switch (style) {
    case Style::type:
        return "\033[36m";
    case Style::name:
        return "\033[1m";
    case Style::attribute:
        return "\033[33m";
    case Style::text:
        return "\033[32m";
    case Style::error:
        return "\033[1;31m";
    }
    return "";
}

} // namespace

std::string painted(Style style, const std::string& text)
{
    static const bool isOutputColoured = showsColour(STDOUT_FILENO);
    static const bool isErrorColoured = showsColour(STDERR_FILENO);
    const bool isColoured = style == Style::error ? isErrorColoured : isOutputColoured;
    return isColoured ? colourOf(style) + text + "\033[0m" : text;
}

Progress::Progress(std::string work) : m_work(std::move(work))
{
    if (isatty(STDERR_FILENO))
        m_teller = std::thread(&Progress::tell, this);
}

Progress::~Progress()
{
    if (!m_teller.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_over.notify_one();
    m_teller.join();
}

void Progress::tell()
{
    std::unique_lock lock(m_mutex);
    int seconds = 0;
    while (!m_over.wait_for(lock, std::chrono::seconds(1), [this] { return m_isOver; }))
        std::cerr << kCleanLine << m_work << ", " << ++seconds << " s" << std::flush;
    if (seconds > 0)
        std::cerr << kCleanLine << std::flush;
}

} // namespace host
