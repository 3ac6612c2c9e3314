#include "LineReader.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace caddis::tool {

namespace {

constexpr int LongestWait = 100; // Milliseconds.
constexpr std::size_t PieceSize = 16 * 1024;

} // namespace

std::optional<std::string> LineReader::next()
{
    std::size_t end = m_bytes.find('\n');
    while (end == m_bytes.npos) {
        const std::size_t searched = m_bytes.size();
        if (!readMore())
            break;
        end = m_bytes.find('\n', searched);
    }
    if (end == m_bytes.npos && m_bytes.empty())
        return std::nullopt;
    std::string line = m_bytes.substr(0, end);
    m_bytes.erase(0, end == m_bytes.npos ? end : end + 1);
    line.erase(line.find_last_not_of('\r') + 1);
    return line;
}

// False at the end of the input, and then what is there is its last line; or of the wait, and then nothing
// is.
bool LineReader::readMore()
{
    pollfd input { STDIN_FILENO, POLLIN, 0 };
    while (!m_stop()) {
        if (poll(&input, 1, LongestWait) <= 0)
            continue;
        const std::size_t before = m_bytes.size();
        m_bytes.resize(before + PieceSize);
        const ssize_t count = read(STDIN_FILENO, m_bytes.data() + before, PieceSize);
        m_bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count >= 0 || errno != EINTR)
            return count > 0;
    }
    m_bytes.clear();
    return false;
}

} // namespace caddis::tool
