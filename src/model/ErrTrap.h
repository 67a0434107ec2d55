#pragma once

#include <functional>
#include <optional>
#include <string>

#include "model/Platform.h"

namespace vortan {

/// Names a procedure for the call chain in the error log: an object of it stands at the top of the procedure,
/// and adds the name when a fault leaves the procedure. The name is the module, a colon and the procedure,
/// as in "Vfile:ExpectToken", and must live as long as the program, as literals do.
///
/// What a fault recorded that was caught on the way is dropped when the next Section begins or ends normally.
class Section {
  public:
    explicit Section(const char* name);
    ~Section();
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;

  private:
    const char* name_;
    int uncaught_;  ///< exceptions under way when the object was made
};

/// The one end of all faults: asks the user, once for each fault, and writes ErrTrap.log. Does not own the
/// Platform.
class ErrTrap {
  public:
    explicit ErrTrap(Platform& platform) : platform_(platform) {}

    /// Runs `command`, which is all that a menu item, button, timer tick or batch command does; `section` is
    /// its name for the log, on the terms of Section. A fault ends the command, and the user chooses: Retry
    /// runs the whole command again, Ignore leaves it at that, Abort (or a box closed otherwise) writes the
    /// call chain to the log too. A fault marked Fault::kUnwinding has been shown and ends the command
    /// without a word. Returns whether the command ran to its end. May be called within a command.
    bool RunCommand(const char* section, const std::function<void()>& command);

    /// Appends an entry to ErrTrap.log: with an action, under a header of its own and with particulars of the
    /// program; without, `message` alone. A log that cannot be written loses the entry.
    void WriteErrorLog(const std::string& message, const std::string& section,
                       std::optional<BoxAnswer> action);

  private:
    std::string LogEntry(const std::string& message, const std::string& section, BoxAnswer action);

    Platform& platform_;
};

}  // namespace vortan
