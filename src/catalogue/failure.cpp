#include "catalogue/failure.h"

namespace brizalog {

std::string Failure::DefaultMessage(FailureKind kind) {
    switch (kind) {
        case FailureKind::InvalidArgument:
            return "Invalid procedure call or argument";
        case FailureKind::Overflow:
            return "Overflow";
        case FailureKind::SubscriptOutOfRange:
            return "Subscript out of range";
        case FailureKind::TypeMismatch:
            return "Type mismatch";
        case FailureKind::FileNotFound:
            return "File not found";
        case FailureKind::PathNotFound:
            return "Path not found";
        case FailureKind::FileAccess:
            return "Path/File access error";
        case FailureKind::DivisionByZero:
            return "Division by zero";
        case FailureKind::PortFailure:
            return "Invalid port number";
    }
    return "Application-defined or object-defined error";
}

}  // namespace brizalog
