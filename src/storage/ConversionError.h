// The one error type of the text and number conversions: a value that does not convert
// (type mismatch) or does not fit (overflow). Callers that resume with the next step after
// any error catch this type.
#pragma once

#include <stdexcept>
#include <string>

namespace zorvik {

class ConversionError : public std::runtime_error {
public:
    enum class Kind { TypeMismatch, Overflow };

    ConversionError(Kind kind, const std::string& what) : std::runtime_error(what), m_kind(kind) {}
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

} // namespace zorvik
