#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/VObject.h"

namespace vortan {

/// Makes and reuses objects of one class. An object returned by Take is in its reset state; memory is
/// released only with the pool, which is what lets a Link tell a deleted target.
template <class T>
class ObjectPool {
  public:
    ~ObjectPool() {
        for (std::size_t i = 0; i < made_; ++i) At(i)->~T();
    }

    T* Take(Workspace& workspace, std::uint32_t id) {
        T* object;
        if (free_.empty()) {
            if (made_ == blocks_.size() * kBlock) blocks_.push_back(std::make_unique<Block>());
            object = new (blocks_.back()->Place(made_ % kBlock)) T(workspace);
            ++made_;
        } else {
            object = free_.back();
            free_.pop_back();
        }
        object->id_ = id;
        return object;
    }

    /// The object must have been reset. Links to it read as deleted from here on. What a Reset leaves,
    /// whether there are unsaved changes, must not pass to the object's next life.
    void GiveBack(T* object) {
        if constexpr (requires { object->SetDirty(false); }) object->SetDirty(false);
        object->id_ = 0;
        if (object->holds_ == 0) free_.push_back(object);
    }
    /// An object that was given back while the history held it, and that it holds no more.
    void Release(T* object) { free_.push_back(object); }
    /// Such an object is in use again as the same one as before, or with 0 not any more.
    void Revive(T* object, std::uint32_t id) { object->id_ = id; }

    /// Resets and takes back every object in use.
    void GiveBackAll() {
        for (std::size_t i = 0; i < made_; ++i) {
            if (T* object = At(i); object->id_ != 0) {
                object->Reset();
                GiveBack(object);
            }
        }
    }

  private:
    static constexpr std::size_t kBlock = 64;
    struct Block {
        alignas(T) unsigned char bytes[kBlock * sizeof(T)];
        void* Place(std::size_t i) { return bytes + i * sizeof(T); }
    };

    T* At(std::size_t i) { return static_cast<T*>(blocks_[i / kBlock]->Place(i % kBlock)); }

    std::vector<std::unique_ptr<Block>> blocks_;
    std::size_t made_ = 0;
    std::vector<T*> free_;
};

}  // namespace vortan
