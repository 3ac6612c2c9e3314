#pragma once

#include "platform/script/applescript/Symbols.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// The memory of one script: every object that its values refer to, and the names that it uses.
namespace caddis::applescript {

class Heap;
class NameTable;

/// What a value refers to. Objects count their references; cycles last until their heap goes.
class Object {
public:
    Object();
    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    /// Objects are counted with their whole size. They are made, and go, with their heap current.
    static void* operator new(std::size_t size); // NOLINT(misc-new-delete-overloads): the sized one matches
    static void operator delete(void* object, std::size_t size) noexcept;

    static void retain(Object* object) noexcept
    {
        ++object->m_references; // NOLINT(clang-analyzer-core.NullDereference): there is an object
    }
    static void release(Object* object) noexcept
    {
        if (--object->m_references == 0)
            bury(object);
    }

protected:
    /// Bytes beyond the object itself that it holds from now on, or no longer.
    void charge(std::size_t bytes);
    void refund(std::size_t bytes) noexcept;

private:
    friend class Heap;
    static void bury(Object* object) noexcept;
    /// Lets go of every other object, so that cycles fall apart.
    virtual void dropReferences() { }

    Heap* m_heap;
    Object* m_previous = nullptr;
    Object* m_next;
    std::uint32_t m_references = 0;
};

/// Objects belong to the heap that is current on their thread when they are made.
class Heap {
public:
    explicit Heap(std::size_t limit);
    ~Heap();
    Heap(const Heap&) = delete;
    Heap& operator=(const Heap&) = delete;

    static Heap& current() { return *s_current; }
    std::size_t bytes() const { return m_bytes; }
    void setLimit(std::size_t limit) { m_limit = limit; }
    /// Fails with error -108 when `bytes` more would not fit; so a large value is refused before it is made.
    void require(std::size_t bytes) const;

    /// The script's own names; see Symbol.
    const NameTable& names() const { return *m_names; }
    Symbol addName(const String& key, const String& spelling);

    /// Makes a heap current while it lives.
    class Scope {
    public:
        explicit Scope(Heap& heap)
            : m_previous(s_current)
        {
            s_current = &heap;
        }
        ~Scope() { s_current = m_previous; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Heap* m_previous;
    };

private:
    friend class Object;
    void bury(Object* object);

    static thread_local Heap* s_current;

    std::size_t m_limit;
    std::size_t m_bytes = 0;
    Object* m_first = nullptr;
    std::vector<Object*> m_dead;
    bool m_burying = false;
    std::unique_ptr<NameTable> m_names;
};

} // namespace caddis::applescript
