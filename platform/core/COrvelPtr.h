#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace Orvel
{

/// Shared owner of a COrvelReferenced object: holds one of its references, never copies it.
template <class T>
class COrvelPtr
{
public:
    COrvelPtr() = default;
    COrvelPtr(std::nullptr_t) {}
    /// Takes part in owning `held`; null allowed.
    COrvelPtr(T* held)
        : object(held)
    {
        Acquire();
    }
    COrvelPtr(const COrvelPtr& other)
        : object(other.object)
    {
        Acquire();
    }
    COrvelPtr(COrvelPtr&& other) noexcept
        : object(std::exchange(other.object, nullptr))
    {}
    template <class Derived>
    requires std::is_convertible_v<Derived*, T*> COrvelPtr(const COrvelPtr<Derived>& other)
        : object(other.Get())
    {
        Acquire();
    }
    ~COrvelPtr() { Release(); }

    /// The new object is held before the old one is released: the old one may own the new one's last other holder.
    COrvelPtr& operator=(COrvelPtr other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }

    T* Get() const { return object; }
    T* operator->() const { return object; }
    T& operator*() const { return *object; }
    explicit operator bool() const { return object != nullptr; }

    template <class Other>
    bool operator==(const COrvelPtr<Other>& other) const
    {
        return object == other.Get();
    }
    bool operator==(const T* other) const { return object == other; }
    bool operator==(std::nullptr_t) const { return object == nullptr; }
    template <class Other>
    bool operator<(const COrvelPtr<Other>& other) const
    {
        return std::less<const void*>()(object, other.Get());
    }

private:
    void Acquire()
    {
        if (object)
            object->IncrementReferenceCount();
    }
    void Release()
    {
        if (object)
            object->DecrementReferenceCount();
    }

    T* object = nullptr;
};

} // namespace Orvel
