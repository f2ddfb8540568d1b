#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// Runs work items on a few threads and hands their results back on the
/// calling thread in the order the items were pushed, so that a file can be
/// converted on every core and still be written line by line in order.
///
/// At most about twice as many items as workers are in flight: `push` waits
/// for the oldest one when that many are pending, so memory does not grow
/// with the input. With one worker no thread is started and every item is
/// worked and consumed at once on the calling thread.
///
/// `work(item, result, worker)` runs on worker `worker` (0 .. workers-1; one
/// worker never runs two items at once, so per-worker objects need no lock).
/// `consume(result)` runs on the calling thread; returning false stops the
/// pipeline: nothing more is worked or consumed.
template <class Item, class Result>
class OrderedPipeline
{
public:
    using Work = std::function<void(Item& item, Result& result, int worker)>;
    using Consume = std::function<bool(Result& result)>;

    OrderedPipeline(int workers, Work work, Consume consume)
        : m_workers(workers < 1 ? 1 : workers), m_work(std::move(work)), m_consume(std::move(consume))
    {
    }
    ~OrderedPipeline() { shutDown(); }
    OrderedPipeline(const OrderedPipeline&) = delete;
    OrderedPipeline& operator=(const OrderedPipeline&) = delete;

    /// Queues `item`; false once the pipeline stopped (a consume said no, or
    /// a work item threw).
    bool push(Item item)
    {
        if (m_stopped)
            return false;
        if (m_workers == 1) {
            Result result;
            try {
                m_work(item, result, 0);
            } catch (...) {
                m_failure = std::current_exception();
                m_stopped = true;
                return false;
            }
            if (!m_consume(result))
                m_stopped = true;
            return !m_stopped;
        }
        startThreads();
        auto slot = std::make_shared<Slot>();
        slot->item = std::move(item);
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_inFlight.push_back(slot);
            m_todo.push_back(slot);
        }
        m_workAvailable.notify_one();
        return consumeReady(size_t(2 * m_workers));
    }

    /// Waits for every pushed item and consumes the rest of the results;
    /// false when the pipeline stopped.
    bool finish()
    {
        if (m_workers > 1 && !m_stopped)
            consumeReady(0);
        shutDown();
        return !m_stopped;
    }

    bool stopped() const { return m_stopped; }
    /// The exception a work item threw (null when none did); it stopped the pipeline.
    std::exception_ptr failure() const { return m_failure; }

private:
    struct Slot
    {
        Item item;
        Result result;
        bool done = false;
        std::exception_ptr error;
    };

    void startThreads()
    {
        if (!m_threads.empty())
            return;
        for (int i = 0; i < m_workers; ++i)
            m_threads.emplace_back([this, i] { run(i); });
    }

    void run(int worker)
    {
        for (;;) {
            std::shared_ptr<Slot> slot;
            {
                std::unique_lock<std::mutex> lock(m_mutex);
                m_workAvailable.wait(lock, [this] { return m_quit || !m_todo.empty(); });
                if (m_todo.empty())
                    return;
                slot = m_todo.front();
                m_todo.pop_front();
            }
            try {
                m_work(slot->item, slot->result, worker);
            } catch (...) {
                slot->error = std::current_exception();
            }
            slot->item = Item(); // its memory goes now, not when the result is consumed
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                slot->done = true;
            }
            m_resultReady.notify_all();
        }
    }

    /// Consumes finished results in order; waits while more than `limit`
    /// items are in flight.
    bool consumeReady(size_t limit)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_inFlight.empty()) {
            std::shared_ptr<Slot> head = m_inFlight.front();
            if (!head->done) {
                if (m_inFlight.size() <= limit)
                    break;
                m_resultReady.wait(lock, [&head] { return head->done; });
            }
            m_inFlight.pop_front();
            lock.unlock();
            bool go = true;
            if (head->error) {
                m_failure = head->error;
                go = false;
            } else {
                go = m_consume(head->result);
            }
            lock.lock();
            if (!go) {
                m_stopped = true;
                m_todo.clear();
                return false;
            }
        }
        return true;
    }

    void shutDown()
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_quit = true;
            m_todo.clear();
        }
        m_workAvailable.notify_all();
        for (std::thread& t : m_threads)
            t.join();
        m_threads.clear();
        m_inFlight.clear();
    }

    const int m_workers;
    Work m_work;
    Consume m_consume;
    std::vector<std::thread> m_threads;
    std::mutex m_mutex;
    std::condition_variable m_workAvailable;
    std::condition_variable m_resultReady;
    std::deque<std::shared_ptr<Slot>> m_inFlight; ///< pushed and not yet consumed, in push order
    std::deque<std::shared_ptr<Slot>> m_todo;     ///< not yet taken by a worker
    bool m_quit = false;
    bool m_stopped = false;
    std::exception_ptr m_failure;
};
