// Output that only terminals get: colours, and the progress of long work.

#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tool
{

enum class Style { type, name, attribute, text, error };

/// Returns the text in the colour of its style. Returns the text alone if NO_COLOR is set, or if the stream
/// is not a terminal with colours. The stream is the standard error for `error`, and the standard output for
/// other styles.
std::string painted(Style style, const std::string& text);

/// While it exists, shows the current work and the elapsed time on a terminal, updated once a second.
class Progress
{
public:
    /// \param work for example "reading file.xml"
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
