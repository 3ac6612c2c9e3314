#include "platform/script/applescript/Heap.h"

#include "platform/script/applescript/Failure.h"

namespace caddis::applescript {

namespace {

constexpr std::size_t ObjectOverhead = 64;

} // namespace

thread_local Heap* Heap::s_current = nullptr;

Object::Object()
    : m_heap(&Heap::current())
    , m_next(m_heap->m_first)
{
    m_heap->require(ObjectOverhead);
    m_heap->m_bytes += ObjectOverhead;
    if (m_next)
        m_next->m_previous = this;
    m_heap->m_first = this;
}

Object::~Object()
{
    m_heap->m_bytes -= ObjectOverhead;
    if (m_next)
        m_next->m_previous = m_previous;
    (m_previous ? m_previous->m_next : m_heap->m_first) = m_next;
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

// Objects die one after the other, never inside one another: a list of a million nested lists must not
// exhaust the stack.
void Heap::bury(Object* object)
{
    m_dead.push_back(object);
    if (m_burying)
        return;
    m_burying = true;
    while (!m_dead.empty()) {
        Object* dead = m_dead.back();
        m_dead.pop_back();
        delete dead;
    }
    m_burying = false;
}

} // namespace caddis::applescript
