// Output that only terminals get: colours, and the progress of long work.

#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tool
{

enum class Style { type, name, attribute, text, error };

/// Returns the text in the colour of the style. Text in the style `error` must go to the standard error, and
/// text in any other style must go to the standard output. If that stream is not a terminal with colours, or
/// if the environment variable NO_COLOR is set and not empty, returns the text unchanged.
std::string painted(Style style, const std::string& text);

/// Shows the current work and the elapsed time as long as the `Progress` object exists. Updates the display
/// once a second. Shows nothing if the standard error is not a terminal.
class Progress
{
public:
    /// \param work names the current work, for example "reading file.xml"
    explicit Progress(std::string work);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Clears the line that shows the current work.
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
