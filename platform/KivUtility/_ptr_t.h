#pragma once

#include <cstddef>
#include <utility>

namespace KivUtility {

/// Intrusive smart pointer over objects derived from `CRef`.
///
/// Constructing from a raw pointer takes a reference (`AddRef`), destroying
/// or resetting drops it (`Release`); copies share the object, moves hand the
/// reference over without touching the count. `T` only needs `AddRef` and
/// `Release`, so interfaces that derive virtually from `CRef` work as well.
template <class T>
class _ptr_t
{
public:
    _ptr_t() noexcept = default;
    _ptr_t(std::nullptr_t) noexcept {}
    _ptr_t(T* p) noexcept : m_p(p) { if (m_p) m_p->AddRef(); }
    _ptr_t(const _ptr_t& o) noexcept : m_p(o.m_p) { if (m_p) m_p->AddRef(); }
    _ptr_t(_ptr_t&& o) noexcept : m_p(o.m_p) { o.m_p = nullptr; }

    /// Converting copy, e.g. from `_ptr_t<Derived>` to `_ptr_t<Base>`.
    template <class U>
    _ptr_t(const _ptr_t<U>& o) noexcept : m_p(o.get()) { if (m_p) m_p->AddRef(); }

    ~_ptr_t() { if (m_p) m_p->Release(); }

    _ptr_t& operator=(const _ptr_t& o) noexcept { _ptr_t(o).swap(*this); return *this; }
    _ptr_t& operator=(_ptr_t&& o) noexcept { _ptr_t(std::move(o)).swap(*this); return *this; }
    _ptr_t& operator=(T* p) noexcept { _ptr_t(p).swap(*this); return *this; }
    _ptr_t& operator=(std::nullptr_t) noexcept { reset(); return *this; }

    void reset() noexcept { _ptr_t().swap(*this); }
    void reset(T* p) noexcept { _ptr_t(p).swap(*this); }
    void swap(_ptr_t& o) noexcept { std::swap(m_p, o.m_p); }

    T* get() const noexcept { return m_p; }
    T* operator->() const noexcept { return m_p; }
    T& operator*() const noexcept { return *m_p; }
    explicit operator bool() const noexcept { return m_p != nullptr; }

    /// Downcast with a run-time type test; null when the object is not a `U`.
    template <class U>
    _ptr_t<U> dynamicCast() const noexcept { return _ptr_t<U>(dynamic_cast<U*>(m_p)); }

private:
    T* m_p = nullptr;
};

template <class T, class U>
bool operator==(const _ptr_t<T>& a, const _ptr_t<U>& b) noexcept { return a.get() == b.get(); }
template <class T, class U>
bool operator!=(const _ptr_t<T>& a, const _ptr_t<U>& b) noexcept { return a.get() != b.get(); }
template <class T>
bool operator==(const _ptr_t<T>& a, std::nullptr_t) noexcept { return !a; }
template <class T>
bool operator!=(const _ptr_t<T>& a, std::nullptr_t) noexcept { return bool(a); }

} // namespace KivUtility
