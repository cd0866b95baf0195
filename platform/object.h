// What every object has: a reference count and a kind.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <atomic>
#include <limits>
#include <new>
#include <string>
#include <utility>

namespace sok {

enum class Kind : CFTypeID { kString = 1, kNumber, kBoolean, kNull, kData, kDate, kArray, kDictionary, kUrl, kBundle };

class Object {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  void Retain() const { references_.fetch_add(1, std::memory_order_relaxed); }
  void Release() const {
    // Who holds the last reference is alone with the object: nobody is left to count against.
    if (references_.load(std::memory_order_acquire) == 1 || references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      delete this;
    }
  }
  // Makes an object outlive every reference: constants, which callers may release as often as they like.
  void KeepForever() const { references_.store(std::numeric_limits<long>::max() / 2, std::memory_order_relaxed); }
  Kind kind() const { return kind_; }

  // The text that %@ prints.
  virtual std::u16string Description() const;

 protected:
  explicit Object(Kind kind) : kind_(kind) {}
  virtual ~Object() = default;

 private:
  mutable std::atomic<long> references_ = 1;
  const Kind kind_;
};

// Owns one reference.
template <typename T>
class Ref {
 public:
  Ref() = default;
  Ref(const Ref& other) : object_(other.object_) {
    if (object_ != nullptr) object_->Retain();
  }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <typename U>
  Ref(Ref<U>&& other) noexcept : object_(other.Detach()) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_ != nullptr) object_->Release();
  }
  // Takes over the caller's reference.
  static Ref Adopt(T* object) {
    Ref ref;
    ref.object_ = object;
    return ref;
  }

  explicit operator bool() const { return object_ != nullptr; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  T* get() const { return object_; }
  T* Detach() { return std::exchange(object_, nullptr); }

 private:
  T* object_ = nullptr;
};

template <typename T, typename... Arguments>
Ref<T> Make(Arguments&&... arguments) {
  return Ref<T>::Adopt(new T(std::forward<Arguments>(arguments)...));
}

// Makes an object last to the very end of the process.
template <typename T>
const T* Constant(Ref<T> object) {
  object->KeepForever();
  return object.Detach();
}

// The object as a T, or null when it is null or of another kind.
template <typename T>
const T* As(const Object* object) {
  return object != nullptr && object->kind() == T::kKind ? static_cast<const T*>(object) : nullptr;
}

// The boundary to C: nothing is thrown across it, and what runs out of memory answers like a failure.
template <typename Result, typename Function>
Result OrElse(Result fallback, Function&& function) noexcept {
  try {
    return function();
  } catch (const std::exception&) {
    return fallback;
  }
}

}  // namespace sok
