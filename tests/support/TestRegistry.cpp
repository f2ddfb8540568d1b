#include "support/TestRegistry.h"

namespace KivTest {

std::vector<TestClassEntry>& registeredClasses()
{
    static std::vector<TestClassEntry> classes;
    return classes;
}

TestClassRegistrar::TestClassRegistrar(const char* name, std::function<QObject*()> create)
{
    registeredClasses().push_back({name, std::move(create)});
}

} // namespace KivTest
