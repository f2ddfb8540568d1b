#pragma once

#include <proj.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace KivGeometry {

/// Process-wide cache of PROJ objects keyed by a text (a pipeline, or the
/// identity of a pair of systems).
///
/// Building a PROJ object can take tens of milliseconds (database look-ups,
/// choice of the best operation); using one takes microseconds. PROJ objects
/// and their contexts must not be used by two threads at once, so every entry
/// keeps a small stock of identical instances, each with its own context: a
/// `Lease` takes one for the duration of a call and gives it back, and a new
/// instance is built only when all are in use at the same moment. Entries
/// live as long as the cache or an object that holds them.
class ProjObjectPool
{
public:
    /// Builds one instance in the given context; null when it cannot be built.
    using Factory = std::function<PJ*(PJ_CONTEXT*)>;

    class Entry
    {
    public:
        Entry(std::string key, Factory factory);
        ~Entry();
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

        const std::string& key() const { return m_key; }
        /// False when the factory could not build the first instance.
        bool isValid();

    private:
        friend class ProjObjectPool;
        struct Instance
        {
            PJ_CONTEXT* context = nullptr;
            PJ* object = nullptr;
        };
        Instance build() const;
        void initialise();

        std::string m_key;
        Factory m_factory;
        std::once_flag m_initOnce;
        bool m_valid = false;
        std::mutex m_mutex;
        std::vector<Instance> m_idle;
    };

    /// Exclusive use of one instance of an entry until destroyed.
    class Lease
    {
    public:
        Lease() = default;
        explicit Lease(std::shared_ptr<Entry> entry);
        ~Lease();
        Lease(Lease&& other) noexcept;
        Lease& operator=(Lease&& other) noexcept;
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;

        PJ* get() const { return m_instance.object; }
        PJ_CONTEXT* context() const { return m_instance.context; }
        explicit operator bool() const { return m_instance.object != nullptr; }

    private:
        void giveBack();
        std::shared_ptr<Entry> m_entry;
        Entry::Instance m_instance;
    };

    /// The entry for `key`, created with `factory` on first request (the
    /// factory of a later request for the same key is not used). Never null.
    static std::shared_ptr<Entry> entry(const std::string& key, const Factory& factory);
    /// Shortcut: the entry of a PROJ string or pipeline definition.
    static std::shared_ptr<Entry> definition(const std::string& projString);

private:
    ProjObjectPool() = default;
};

} // namespace KivGeometry
