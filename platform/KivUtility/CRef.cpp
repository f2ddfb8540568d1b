#include "KivUtility/CRef.h"

namespace KivUtility {

CRef::CRef() noexcept : m_refCount(0) {}

CRef::CRef(const CRef&) noexcept : m_refCount(0) {}

CRef& CRef::operator=(const CRef&) noexcept
{
    // The count belongs to the object, not to its value.
    return *this;
}

CRef::~CRef() = default;

long CRef::AddRef() const noexcept
{
    return m_refCount.fetch_add(1, std::memory_order_relaxed) + 1;
}

long CRef::Release() const noexcept
{
    const long left = m_refCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0)
        delete this;
    return left;
}

long CRef::RefCount() const noexcept
{
    return m_refCount.load(std::memory_order_acquire);
}

} // namespace KivUtility
