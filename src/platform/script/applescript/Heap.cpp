#include "platform/script/applescript/Heap.h"

#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/NameTable.h"

#include <new>

namespace caddis::applescript {

namespace {

constexpr std::size_t AllocationOverhead = 16;
constexpr std::size_t NameOverhead = 160; // Two strings, their entries in the table.

} // namespace

thread_local Heap* Heap::s_current = nullptr;

Object::Object()
    : m_heap(&Heap::current())
    , m_next(m_heap->m_first)
{
    if (m_next)
        m_next->m_previous = this;
    m_heap->m_first = this;
}

Object::~Object()
{
    if (m_next)
        m_next->m_previous = m_previous;
    (m_previous ? m_previous->m_next : m_heap->m_first) = m_next;
}

void* Object::operator new(std::size_t size) // NOLINT(misc-new-delete-overloads): the sized one matches
{
    Heap& heap = Heap::current();
    heap.require(size + AllocationOverhead);
    void* object = ::operator new(size);
    heap.m_bytes += size + AllocationOverhead;
    return object;
}

void Object::operator delete(void* object, std::size_t size) noexcept
{
    Heap::current().m_bytes -= size + AllocationOverhead;
    ::operator delete(object);
}

void Object::charge(std::size_t bytes)
{
    m_heap->require(bytes);
    m_heap->m_bytes += bytes;
}

void Object::refund(std::size_t bytes) noexcept { m_heap->m_bytes -= bytes; }

void Object::bury(Object* object) noexcept { object->m_heap->bury(object); }

Heap::Heap(std::size_t limit)
    : m_limit(limit)
    , m_names(makeNamesOfScript())
{
}

// Objects in a cycle are only kept by one another: once each has let go of the rest, all can go.
Heap::~Heap()
{
    const Scope scope(*this);
    std::vector<Object*> objects;
    for (Object* object = m_first; object; object = object->m_next) {
        Object::retain(object);
        objects.push_back(object);
    }
    for (Object* object : objects)
        object->dropReferences();
    for (Object* object : objects)
        Object::release(object);
}

void Heap::require(std::size_t bytes) const
{
    if (bytes > m_limit || m_bytes > m_limit - bytes)
        fail(ScriptErrorNumber::OutOfMemory, String(u"Out of memory."));
}

Symbol Heap::addName(const String& key, const String& spelling)
{
    const std::size_t bytes = NameOverhead + (key.length() + spelling.length()) * sizeof(char16_t);
    require(bytes);
    m_bytes += bytes;
    return m_names->add(key, spelling);
}

// Objects die one after the other, never inside one another: a list of a million nested lists must not
// exhaust the stack.
void Heap::bury(Object* object)
{
    m_dead.push_back(object);
    if (m_burying)
        return;
    m_burying = true;
    const Scope scope(*this);
    while (!m_dead.empty()) {
        Object* dead = m_dead.back();
        m_dead.pop_back();
        delete dead;
    }
    m_burying = false;
}

} // namespace caddis::applescript
