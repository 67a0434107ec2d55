#pragma once

#include <cstdint>

namespace vortan {

class Workspace;

/// Description of a project, task or resource that a link named before, or without, its own record; files
/// keep it as any other text.
constexpr const char* kStub = "<stub>";

/// What all pooled model objects have in common: the Workspace that made them and an identity number.
class VObject {
  public:
    explicit VObject(Workspace& workspace) : workspace_(&workspace) {}
    VObject(const VObject&) = delete;
    VObject& operator=(const VObject&) = delete;

    /// The Workspace to which the object belongs for as long as it exists.
    Workspace& Owner() const { return *workspace_; }
    /// Unique among all objects that the Workspace ever handed out; 0 while the object is unused.
    std::uint32_t Id() const { return id_; }

  private:
    template <class T>
    friend class ObjectPool;
    friend class History;

    Workspace* workspace_;
    std::uint32_t id_ = 0;
    std::uint32_t holds_ = 0;  ///< entries of the history that may want the object back
};

}  // namespace vortan
