#pragma once

#include <stdexcept>
#include <string>

namespace vortan {

/// A model refusal or an internal assertion, and the one exception type of the core. Numbers: 10000 is an
/// assertion or a refusal with a sentence of its own; 20000 marks a fault already shown to the user that
/// is unwinding to the command which started the work.
class Fault : public std::runtime_error {
  public:
    static constexpr int kRefusal = 10000;
    static constexpr int kUnwinding = 20000;
    static constexpr int kUnexpected = 5;  ///< any other exception caught by a command's guard

    Fault(int number, const std::string& description) : std::runtime_error(description), number_(number) {}

    int Number() const { return number_; }
    std::string Description() const { return what(); }

  private:
    int number_;
};

/// Raises the refusal `description` (number 10000).
[[noreturn]] inline void Refuse(const std::string& description) {
    throw Fault(Fault::kRefusal, description);
}
[[noreturn]] inline void AssertionFailed() {
    Refuse("Assertion failed");
}

}  // namespace vortan
