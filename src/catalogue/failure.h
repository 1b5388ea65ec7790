#pragma once

#include <cmath>
#include <stdexcept>
#include <string>

namespace brizalog {

// The kinds of run-time failure that the system's handlers trap. Each carries the platform's
// message; handlers trap them exactly where the system traps them, and a failure that nothing
// traps ends the process with its message, never undefined behaviour.
enum class FailureKind {
    InvalidArgument,      // a negative substring length, a bad argument to a text operation
    Overflow,             // a value outside the range of the type it is stored in
    SubscriptOutOfRange,  // an array index outside its range
    TypeMismatch,         // a text that is not a number where a number is required
    FileNotFound,         // a file to read that is not there
    PathNotFound,         // a folder that is not there
    FileAccess,           // a file that cannot be opened, read or written
    DivisionByZero,       // a division by zero
    PortFailure,          // a serial port that cannot be opened
};

class Failure : public std::runtime_error {
public:
    Failure(FailureKind kind, const std::string& message)
        : std::runtime_error(message), m_kind(kind) {}
    explicit Failure(FailureKind kind) : Failure(kind, DefaultMessage(kind)) {}

    FailureKind kind() const { return m_kind; }

    static std::string DefaultMessage(FailureKind kind);

private:
    FailureKind m_kind;
};

// Double arithmetic that leaves the range of a double is the run-time failure Overflow, as on
// the system's own platform: an infinity or an undefined value never reaches the arrays, where
// it would freeze a cell, stop a log or turn into nonsense in a conversion to a whole number.
inline double Finite(double value) {
    if (!std::isfinite(value)) {
        throw Failure(FailureKind::Overflow);
    }
    return value;
}

}  // namespace brizalog
