#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "model/Journaled.h"

namespace vortan {

/// Bytes that only this run of the program reads: numbers and links as they lie in memory, texts and rows
/// behind their length.
class BytesWriter {
  public:
    explicit BytesWriter(std::string& out) : out_(out) {}

    template <class T>
    void Put(const T& value) {
        if constexpr (std::is_same_v<T, std::string>) {
            Put(value.size());
            out_ += value;
        } else {
            static_assert(std::is_trivially_copyable_v<T>);
            out_.append(reinterpret_cast<const char*>(&value), sizeof value);
        }
    }
    template <class T>
    void operator()(const char*, const T& field) {
        Put(field);
    }
    template <class T>
    void operator()(const char*, const Journaled<T>& field) {
        Put(field.IsArray() ? field.Count() : 0);
        for (int i = 0; i < field.Count(); ++i) Put(field.At(i));
    }
    void operator()(const char* name, const JournaledInclude& field) {
        (*this)(name, static_cast<const Journaled<bool>&>(field));
    }

  private:
    std::string& out_;
};

/// Takes them back, in the order in which they were put.
class BytesReader {
  public:
    explicit BytesReader(const std::string& in) : in_(in) {}

    template <class T>
    T Take() {
        if constexpr (std::is_same_v<T, std::string>) {
            const auto size = Take<std::size_t>();
            at_ += size;
            return in_.substr(at_ - size, size);
        } else {
            alignas(T) unsigned char bytes[sizeof(T)];
            std::memcpy(bytes, in_.data() + at_, sizeof(T));
            at_ += sizeof(T);
            return *std::launder(reinterpret_cast<T*>(bytes));
        }
    }
    template <class T>
    void operator()(const char*, T& field) {
        field = Take<T>();
    }
    template <class T>
    void operator()(const char*, Journaled<T>& field) {
        const int count = Take<int>();
        if (count == 0) return field.SetSingle(Take<T>());
        std::vector<T> values;
        for (int i = 0; i < count; ++i) values.push_back(Take<T>());
        field.SetArray(values);
    }
    void operator()(const char* name, JournaledInclude& field) {
        (*this)(name, static_cast<Journaled<bool>&>(field));
    }

  private:
    const std::string& in_;
    std::size_t at_ = 0;
};

}  // namespace vortan
