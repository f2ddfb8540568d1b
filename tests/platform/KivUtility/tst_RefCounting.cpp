#include "KivUtility/CRef.h"
#include "KivUtility/_ptr_t.h"
#include "support/TestRegistry.h"

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using KivUtility::_ptr_t;

namespace {

std::atomic<int> g_alive{0};

struct Tracked : public virtual KivUtility::CRef
{
    Tracked() { ++g_alive; }
    Tracked(const Tracked& o) : KivUtility::CRef(o) { ++g_alive; }
    ~Tracked() override { --g_alive; }
};

struct Derived : public Tracked
{
};

// Interfaces derive from CRef virtually; the pointer must work through them.
struct Interface : public virtual KivUtility::CRef
{
    virtual int value() const = 0;
};
struct Implementation : public Interface, public Tracked
{
    int value() const override { return 7; }
};

} // namespace

class TestRefCounting : public QObject
{
    Q_OBJECT
private slots:
    void init() { g_alive = 0; }
    void cleanup() { QCOMPARE(g_alive.load(), 0); }

    void ownershipAndCounts();
    void convertsAndCastsThroughVirtualBases();
    void countsAreAtomic();
};

void TestRefCounting::ownershipAndCounts()
{
    // A raw pointer takes a reference; the last release deletes.
    auto* raw = new Tracked;
    QCOMPARE(raw->RefCount(), 0L);
    {
        _ptr_t<Tracked> p(raw);
        QCOMPARE(raw->RefCount(), 1L);
    }
    QCOMPARE(g_alive.load(), 0);

    // Copies share, moves hand over.
    _ptr_t<Tracked> a(new Tracked);
    _ptr_t<Tracked> b = a;
    QVERIFY(a == b && a->RefCount() == 2);
    _ptr_t<Tracked> c = std::move(a);
    QVERIFY(!a && c->RefCount() == 2);
    b = std::move(c);
    QCOMPARE(b->RefCount(), 1L);

    // Assignment drops the old object; self-assignment keeps it.
    _ptr_t<Tracked> d(new Tracked);
    QCOMPARE(g_alive.load(), 2);
    d = b;
    QCOMPARE(g_alive.load(), 1);
    d = d;
    QCOMPARE(d->RefCount(), 2L);
    d.reset();
    b = nullptr;
    QCOMPARE(g_alive.load(), 0);
    d.reset(new Tracked);
    QCOMPARE(d->RefCount(), 1L);

    // Copying an object does not copy its count.
    _ptr_t<Tracked> e(new Tracked(*d));
    QVERIFY(d->RefCount() == 1 && e->RefCount() == 1);
    Tracked onStack(*d);
    QCOMPARE(onStack.RefCount(), 0L);
}

void TestRefCounting::convertsAndCastsThroughVirtualBases()
{
    _ptr_t<Interface> i(new Implementation);
    QCOMPARE(i->value(), 7);
    _ptr_t<Tracked> t = i.dynamicCast<Tracked>();
    QVERIFY(t);
    QCOMPARE(i->RefCount(), 2L);
    QVERIFY(!t.dynamicCast<Derived>());
    _ptr_t<Tracked> base = _ptr_t<Derived>(new Derived);
    QCOMPARE(base->RefCount(), 1L);
}

void TestRefCounting::countsAreAtomic()
{
    _ptr_t<Tracked> shared(new Tracked);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([shared] {
            for (int i = 0; i < 20000; ++i) {
                _ptr_t<Tracked> copy = shared;
                _ptr_t<Tracked> other = copy;
            }
        });
    }
    for (auto& th : threads)
        th.join();
    QCOMPARE(shared->RefCount(), 1L);
}

KIV_TEST_CLASS(TestRefCounting)
#include "tst_RefCounting.moc"
