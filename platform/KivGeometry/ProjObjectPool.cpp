#include "ProjObjectPool.h"

#include <unordered_map>

namespace KivGeometry {

namespace {

// Entries no object holds any more are dropped once the cache grows past this.
constexpr size_t kTrimThreshold = 128;

struct Registry
{
    std::mutex mutex;
    std::unordered_map<std::string, std::shared_ptr<ProjObjectPool::Entry>> entries;
};

Registry& registry()
{
    // Never destroyed: PROJ objects must not outlive PROJ's own statics at exit.
    static Registry* r = new Registry;
    return *r;
}

} // namespace

ProjObjectPool::Entry::Entry(std::string key, Factory factory) : m_key(std::move(key)), m_factory(std::move(factory)) {}

ProjObjectPool::Entry::~Entry()
{
    for (Instance& i : m_idle) {
        proj_destroy(i.object);
        proj_context_destroy(i.context);
    }
}

ProjObjectPool::Entry::Instance ProjObjectPool::Entry::build() const
{
    Instance i;
    i.context = proj_context_create();
    if (!i.context)
        return i;
    // Failures are reported through return values; PROJ must not print them.
    proj_log_level(i.context, PJ_LOG_NONE);
    proj_context_set_enable_network(i.context, 0);
    try {
        i.object = m_factory ? m_factory(i.context) : nullptr;
    } catch (...) {
        i.object = nullptr;
    }
    if (!i.object) {
        proj_context_destroy(i.context);
        i.context = nullptr;
    }
    return i;
}

void ProjObjectPool::Entry::initialise()
{
    std::call_once(m_initOnce, [this] {
        Instance i = build();
        m_valid = i.object != nullptr;
        if (m_valid) {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_idle.push_back(i);
        }
    });
}

bool ProjObjectPool::Entry::isValid()
{
    initialise();
    return m_valid;
}

ProjObjectPool::Lease::Lease(std::shared_ptr<Entry> entry) : m_entry(std::move(entry))
{
    if (!m_entry || !m_entry->isValid())
        return;
    {
        std::lock_guard<std::mutex> lock(m_entry->m_mutex);
        if (!m_entry->m_idle.empty()) {
            m_instance = m_entry->m_idle.back();
            m_entry->m_idle.pop_back();
            return;
        }
    }
    // Every instance is busy in another call: build one more, outside the lock.
    m_instance = m_entry->build();
}

ProjObjectPool::Lease::~Lease()
{
    giveBack();
}

ProjObjectPool::Lease::Lease(Lease&& other) noexcept : m_entry(std::move(other.m_entry)), m_instance(other.m_instance)
{
    other.m_instance = Entry::Instance();
}

ProjObjectPool::Lease& ProjObjectPool::Lease::operator=(Lease&& other) noexcept
{
    if (this != &other) {
        giveBack();
        m_entry = std::move(other.m_entry);
        m_instance = other.m_instance;
        other.m_instance = Entry::Instance();
    }
    return *this;
}

void ProjObjectPool::Lease::giveBack()
{
    if (m_instance.object && m_entry) {
        // A failed call may leave an error number behind; the next user starts clean.
        proj_errno_reset(m_instance.object);
        try {
            std::lock_guard<std::mutex> lock(m_entry->m_mutex);
            m_entry->m_idle.push_back(m_instance);
        } catch (...) {
            proj_destroy(m_instance.object);
            proj_context_destroy(m_instance.context);
        }
    }
    m_instance = Entry::Instance();
    m_entry.reset();
}

std::shared_ptr<ProjObjectPool::Entry> ProjObjectPool::entry(const std::string& key, const Factory& factory)
{
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    auto it = r.entries.find(key);
    if (it != r.entries.end())
        return it->second;
    if (r.entries.size() >= kTrimThreshold) {
        for (auto i = r.entries.begin(); i != r.entries.end();) {
            if (i->second.use_count() == 1)
                i = r.entries.erase(i);
            else
                ++i;
        }
    }
    auto e = std::make_shared<Entry>(key, factory);
    r.entries.emplace(key, e);
    return e;
}

std::shared_ptr<ProjObjectPool::Entry> ProjObjectPool::definition(const std::string& projString)
{
    return entry(projString, [projString](PJ_CONTEXT* ctx) { return proj_create(ctx, projString.c_str()); });
}

} // namespace KivGeometry
