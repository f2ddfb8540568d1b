#pragma once

#include <atomic>

namespace KivUtility {

/// Intrusive reference count shared by every platform object that travels in
/// a `_ptr_t` (commands, modules, spatial references, datasets, layers).
///
/// An object starts with a count of zero; the first `_ptr_t` that takes it
/// raises the count to one, and the `Release` that brings the count back to
/// zero deletes the object through the virtual destructor. The count is
/// atomic, so references may be taken and dropped on any thread.
///
/// Copying an object does not copy its count: a copy is a new object that
/// nobody references yet.
class CRef
{
public:
    CRef() noexcept;
    CRef(const CRef&) noexcept;
    CRef& operator=(const CRef&) noexcept;
    virtual ~CRef();

    /// Takes one reference; returns the new count.
    long AddRef() const noexcept;
    /// Drops one reference; returns the new count. The call that drops the
    /// last reference deletes the object, so the caller must not touch it
    /// afterwards.
    long Release() const noexcept;
    /// The current count, for diagnostics and tests.
    long RefCount() const noexcept;

private:
    mutable std::atomic<long> m_refCount;
};

} // namespace KivUtility
