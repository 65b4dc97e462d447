// What only a terminal gets: colours, and progress of work that takes long.

#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tool
{

enum class Style { type, name, attribute, text, error };

/// The text in the colour of its style when its stream (standard error for `error`, else standard output) is
/// a terminal that shows colours and NO_COLOR is not set; else the text alone.
std::string painted(Style style, const std::string& text);

/// Shows on a terminal, once a second while it lives, what is being done and for how long.
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
