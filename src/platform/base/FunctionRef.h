#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace caddis {

template <typename Signature> class FunctionRef;

/// A borrowed callable: two pointers, nothing owned, nothing allocated.
///
/// It refers to the callable it was made from and must not outlive it. Meant for parameters: a temporary
/// lambda in the argument list lives until the call returns.
template <typename Result, typename... Arguments> class FunctionRef<Result(Arguments...)> {
public:
    // NOLINTBEGIN(google-explicit-constructor): any callable is an argument
    template <typename Callable>
    requires(!std::is_same_v<std::remove_cvref_t<Callable>,
                 FunctionRef> && std::is_invocable_r_v<Result, Callable&, Arguments...>)
        // NOLINTNEXTLINE(google-explicit-constructor): any callable is an argument
        FunctionRef(Callable&& callable)
    noexcept
        : m_callable(const_cast<void*>(static_cast<const void*>(std::addressof(callable))))
        , m_invoke([](void* stored, Arguments... arguments) -> Result {
            return (*static_cast<std::add_pointer_t<Callable>>(stored))(
                std::forward<Arguments>(arguments)...);
        })
    {
    }
    // NOLINTEND(google-explicit-constructor)

    Result operator()(Arguments... arguments) const
    {
        return m_invoke(m_callable, std::forward<Arguments>(arguments)...);
    }

private:
    void* m_callable;
    Result (*m_invoke)(void*, Arguments...);
};

} // namespace caddis
