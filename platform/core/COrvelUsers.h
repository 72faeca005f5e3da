#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace Orvel
{

template <class User, class Used>
class COrvelUse;

/// The objects of type User that use one object of type Used, in the order in which they began to: the children of a
/// node, the objects of a geometry. Every operation takes constant time, however many users there are, and either side
/// may be destroyed first.
///
/// The list is a chain through the COrvelUse fields of its users, so entering and leaving allocates nothing.
template <class User, class Used>
class COrvelUsers
{
public:
    explicit COrvelUsers(Used& newOwner)
        : owner(&newOwner)
    {}
    COrvelUsers(const COrvelUsers&) = delete;
    COrvelUsers& operator=(const COrvelUsers&) = delete;
    ~COrvelUsers()
    {
        while (first)
            first->Reset();
    }

    class Iterator
    {
    public:
        using value_type = User*;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        explicit Iterator(const COrvelUse<User, Used>* newUse)
            : use(newUse)
        {}
        User* operator*() const { return use->user; }
        Iterator& operator++()
        {
            use = use->next;
            return *this;
        }
        Iterator operator++(int)
        {
            const Iterator before = *this;
            use = use->next;
            return before;
        }
        bool operator==(const Iterator&) const = default;

    private:
        const COrvelUse<User, Used>* use = nullptr;
    };

    Iterator begin() const { return Iterator(first); }
    Iterator end() const { return Iterator(); }
    std::size_t Count() const { return count; }
    User* First() const { return first ? first->user : nullptr; }

private:
    friend COrvelUse<User, Used>;

    Used* owner;
    COrvelUse<User, Used>* first = nullptr;
    COrvelUse<User, Used>* last = nullptr;
    std::size_t count = 0;
};

/// The user's end: a field that points at the used object, or at none, and leaves that object's list by itself.
template <class User, class Used>
class COrvelUse
{
public:
    explicit COrvelUse(User& newUser)
        : user(&newUser)
    {}
    COrvelUse(const COrvelUse&) = delete;
    COrvelUse& operator=(const COrvelUse&) = delete;
    ~COrvelUse() { Reset(); }

    /// The used object; null when there is none or when it was destroyed.
    Used* Get() const { return users ? users->owner : nullptr; }
    /// The user that follows in the used object's list; null for the last.
    User* Next() const { return next ? next->user : nullptr; }

    /// Enters `newUsers` at its end, leaving the list in which it stood. Entering the same list again changes nothing.
    void Set(COrvelUsers<User, Used>& newUsers)
    {
        if (users == &newUsers)
            return;
        Reset();
        users = &newUsers;
        previous = newUsers.last;
        (previous ? previous->next : newUsers.first) = this;
        newUsers.last = this;
        ++newUsers.count;
    }

    void Reset()
    {
        if (!users)
            return;
        (previous ? previous->next : users->first) = next;
        (next ? next->previous : users->last) = previous;
        --users->count;
        users = nullptr;
        previous = nullptr;
        next = nullptr;
    }

private:
    friend COrvelUsers<User, Used>;
    /// @cond Doxygen takes this for the definition of a constructor.
    friend typename COrvelUsers<User, Used>::Iterator;
    /// @endcond

    User* user;
    COrvelUsers<User, Used>* users = nullptr;
    COrvelUse* previous = nullptr;
    COrvelUse* next = nullptr;
};

} // namespace Orvel
