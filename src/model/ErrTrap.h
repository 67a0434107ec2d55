#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

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

/// Raises the refusal `description` for a procedure too busy to keep a Section of its own.
[[noreturn]] void RefuseIn(const char* section, const std::string& description);

/// Runs steps of which a later one must not be left out because an earlier one failed.
class Steps {
  public:
    void Do(const std::function<void()>& step);
    /// Passes on what failed, as one fault that tells of all of them and has the call chain of the first.
    void End();

  private:
    int number_ = 0;  ///< of the first fault; 0 as long as there is none
    std::string description_;
    std::vector<const char*> chain_;
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

    /// Whether a box about a fault waits for its answer. No other work may begin then: what failed may have
    /// left the model half done.
    bool BoxOpen() const { return openBoxes_ > 0; }
    /// Called when the last such box has been answered.
    std::function<void()> BoxAnswered;

    /// Appends an entry to ErrTrap.log: with an action, under a header of its own and with particulars of the
    /// program; without, `message` alone. A log that cannot be written loses the entry.
    void WriteErrorLog(const std::string& message, const std::string& section,
                       std::optional<BoxAnswer> action);

  private:
    std::string LogEntry(const std::string& message, const std::string& section, BoxAnswer action);

    BoxAnswer Ask(const std::string& message);

    Platform& platform_;
    int openBoxes_ = 0;
};

}  // namespace vortan
