#pragma once

#include "platform/files/MappedFile.h"

namespace caddis::image {

/// Gives back the pages of a mapped file behind the place up to which it has been read, now and then.
class ReadPages {
public:
    /// `read`: what has just been read; the codec will hardly want it again.
    void add(std::string_view read)
    {
        if (read.data() != m_read.data() + m_read.size())
            m_read = read;
        else
            m_read = { m_read.data(), m_read.size() + read.size() };
        if (m_read.size() < BytesAtOnce)
            return;
        MappedFile::discard(m_read);
        m_read.remove_prefix(m_read.size());
    }

private:
    static constexpr std::size_t BytesAtOnce = 1 << 20;

    std::string_view m_read;
};

} // namespace caddis::image
