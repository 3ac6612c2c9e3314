#pragma once

namespace caddis::tool {

/// While it lives, what is launched gets no hold on this process's output: a helper that stays behind must
/// not keep open the pipe that somebody reads to its end.
class Quiet {
public:
    /// Does nothing unless `wanted`.
    explicit Quiet(bool wanted);
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    int m_saved[2] = { -1, -1 };
};

} // namespace caddis::tool
