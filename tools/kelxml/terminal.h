// Output for terminals only: colours, and progress of long work.

#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tool
{

enum class Style { type, name, attribute, text, error };

/// The text in the colour of its style, or the text alone unless its stream (standard error for `error`, else
/// standard output) is a terminal with colours and NO_COLOR is not set.
std::string painted(Style style, const std::string& text);

/// Shows on a terminal, once a second while it exists, the current work and how long it has taken.
class Progress
{
public:
    /// \param work such as "reading file.xml"
    explicit Progress(std::string work);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Clears the line.
    ~Progress();

private:
    void show();

    const std::string m_work;
    std::mutex m_mutex;
    std::condition_variable m_over;
    bool m_isOver = false;
    std::thread m_thread;
};

} // namespace tool
