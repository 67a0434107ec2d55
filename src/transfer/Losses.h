#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vortan {

/// Something that a transfer could not carry over.
struct Loss {
    std::string object;   ///< where, as a user finds it: "Task 7 Dig", "Resource 2 Ann", "Plan"
    std::string what;     ///< what is lost: "Deadline 9/7/2001"
    std::string why;      ///< "VORTAN has no deadlines"
    std::string instead;  ///< what was done instead: "Left out"
};

/// All losses of one transfer, in the order in which they were found.
class Losses {
  public:
    void Add(std::string object, std::string what, std::string why, std::string instead);
    const std::vector<Loss>& List() const { return list_; }
    bool Empty() const { return list_.empty(); }
    void Clear() { list_.clear(); }
    /// Takes out what turned out not to be lost.
    template <class Test>
    void RemoveIf(Test test) {
        std::erase_if(list_, test);
    }

    /// One line each: "Task 7 Dig: Deadline 9/7/2001: VORTAN has no deadlines. Left out." At most `limit` of
    /// them, then a line that tells how many more there are; 0 is no limit.
    std::string Text(std::size_t limit = 0) const;
    /// The same as a table of four columns with a head, parted by tabs, for other programs.
    std::string TableText() const;

  private:
    std::vector<Loss> list_;
};

}  // namespace vortan
