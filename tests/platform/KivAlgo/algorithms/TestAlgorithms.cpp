// Algorithms for the factory's tests: one that counts through steps, one that
// throws.

#include "KivAlgo/Algorithm.h"

#include <QString>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

/// Parameters: an int, the number of 1 ms steps; handed back doubled.
class Counter : public KivAlgo::Algorithm
{
public:
    ~Counter() override { StopAndWait(); }

protected:
    bool Execute() override
    {
        const int steps = boost::any_cast<int>(Parameters());
        for (int i = 0; i < steps; ++i) {
            if (!ReportProgress(100.0 * i / steps, QStringLiteral("step %1").arg(i)))
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        Parameters() = steps * 2;
        return true;
    }
};

class Thrower : public KivAlgo::Algorithm
{
protected:
    bool Execute() override { throw std::runtime_error("broken"); }
};

class Failer : public KivAlgo::Algorithm
{
protected:
    bool Execute() override
    {
        SetError(7, QStringLiteral("no good"));
        return false;
    }
};

} // namespace

extern "C" __attribute__((visibility("default"))) KivAlgo::Algorithm* KivCreateAlgorithm(const char* name)
{
    const QString algorithm = QString::fromUtf8(name);
    if (algorithm == QLatin1String("Counter"))
        return new Counter;
    if (algorithm == QLatin1String("Thrower"))
        return new Thrower;
    if (algorithm == QLatin1String("Failer"))
        return new Failer;
    return nullptr;
}
