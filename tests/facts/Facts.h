#pragma once

#include "platform/base/String.h"

#include <optional>
#include <string>
#include <utility>

/// What `caddis-facts` knows of a file: one question, one answer. Each kind of file has its source here and
/// its row in the table of main.cpp.
namespace caddis::facts {

struct Question {
    String path; ///< absolute, of the file or folder
    String key; ///< what is asked, "metaData.kMDItemTitle" for example
};

/// A text, nil, or a reason why the question is not answered.
class Answer {
public:
    Answer(std::nullopt_t) { } // NOLINT(google-explicit-constructor): answers are written as plain values
    Answer(String value) // NOLINT(google-explicit-constructor)
        : m_value(std::move(value))
    {
    }
    Answer(std::optional<String> value) // NOLINT(google-explicit-constructor)
        : m_value(std::move(value))
    {
    }
    static Answer skip(std::string reason)
    {
        Answer answer(std::nullopt);
        answer.m_reason = std::move(reason);
        return answer;
    }

    const std::optional<String>& value() const { return m_value; }
    const std::optional<std::string>& skipReason() const { return m_reason; }

private:
    std::optional<String> m_value;
    std::optional<std::string> m_reason;
};

inline Answer decimal(std::size_t number) { return String::fromLatin1(std::to_string(number)); }

inline Answer yesOrNo(bool yes) { return String(yes ? u"YES" : u"NO"); }

} // namespace caddis::facts
