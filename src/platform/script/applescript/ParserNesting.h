#pragma once

#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"

namespace caddis::applescript {

class Parser::Nesting {
public:
    explicit Nesting(Parser& parser)
        : m_parser(parser)
    {
        constexpr unsigned Deepest = 200;
        if (++m_parser.m_depth > Deepest) {
            --m_parser.m_depth; // The destructor does not run.
            Failure failure;
            failure.number = static_cast<int>(ScriptErrorNumber::StackOverflow);
            failure.message = String(u"The script is nested too deeply.");
            failure.range = m_parser.peek().range;
            throw Failure(failure);
        }
    }
    ~Nesting() { --m_parser.m_depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    Parser& m_parser;
};

} // namespace caddis::applescript
