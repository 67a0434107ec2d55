#pragma once

#include <cstdint>

namespace vortan {

/// A reference that owns nothing and cannot dangle: it reads as none, as the live object, or as deleted.
/// Every object handed out by the Workspace has an identity number (`Id`) that is never used again, and its
/// memory stays with the Workspace, so a link to an object that has gone is always seen to be one.
template <class T>
class Link {
  public:
    Link() = default;
    Link(T* object) : object_(object), id_(object ? object->Id() : 0) {}  // NOLINT: meant to be implicit

    /// The live object, or none for no link and for a deleted target.
    T* Get() const { return object_ && object_->Id() == id_ ? object_ : nullptr; }
    T* operator->() const { return Get(); }
    explicit operator bool() const { return Get() != nullptr; }

    /// Whether a link was made and its target has been deleted since.
    bool IsDeleted() const { return object_ && object_->Id() != id_; }
    /// Whether no link was ever made.
    bool IsNone() const { return !object_; }

    /// By identity. A deleted link differs from none and from every live object.
    friend bool operator==(const Link& a, const Link& b) { return a.object_ == b.object_ && a.id_ == b.id_; }

  private:
    T* object_ = nullptr;
    std::uint32_t id_ = 0;
};

}  // namespace vortan
