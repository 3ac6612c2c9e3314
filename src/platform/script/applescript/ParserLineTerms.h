#pragma once

#include "platform/script/applescript/Parser.h"

namespace caddis::applescript {

class Parser::LineTerms {
public:
    explicit LineTerms(Parser& parser);
    ~LineTerms();
    LineTerms(const LineTerms&) = delete;
    LineTerms& operator=(const LineTerms&) = delete;

private:
    Parser& m_parser;
    bool m_isUsed = false;
};

} // namespace caddis::applescript
