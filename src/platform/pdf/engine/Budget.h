#pragma once

#include "platform/pdf/PDFTypes.h"

#include <cstddef>
#include <cstdint>

namespace caddis::pdf {

/// What reading one page may cost, whatever its file says: streams that inflate without end, forms that draw
/// each other, strings of gigabytes. A page that has spent it ends with the text until there.
class Budget {
public:
    static constexpr std::size_t MostBytes = std::size_t { 256 } << 20; ///< decoded, all streams together
    static constexpr std::uint32_t MostOperators = 20'000'000;
    static constexpr std::size_t MostUnits = std::size_t { 32 } << 20; ///< of the page's text

    explicit Budget(PDFDeadline deadline)
        : m_deadline(deadline)
    {
    }

    std::size_t bytesLeft() const { return m_bytesLeft; }
    void takeBytes(std::size_t count) { m_bytesLeft -= count < m_bytesLeft ? count : m_bytesLeft; }

    /// One operator; false when there is nothing left for it.
    bool takeOperator()
    {
        ++m_operators;
        return (m_operators % OperatorsPerLook != 0 || !isLate()) && m_operators <= MostOperators;
    }
    bool isLate() const { return m_deadline && std::chrono::steady_clock::now() >= *m_deadline; }
    PDFDeadline deadline() const { return m_deadline; }
    bool isSpent() const { return m_bytesLeft == 0 || m_operators > MostOperators || isLate(); }

private:
    static constexpr std::uint32_t OperatorsPerLook = 64; // A look at the clock costs about 25 ns.

    PDFDeadline m_deadline;
    std::size_t m_bytesLeft = MostBytes;
    std::uint32_t m_operators = 0;
};

} // namespace caddis::pdf
