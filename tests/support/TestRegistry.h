#pragma once

#include <QObject>

#include <functional>
#include <vector>

namespace KivTest {

/// Test classes of one executable register themselves here; the shared main
/// runs them all in registration order (or those named with `-class Name`).
struct TestClassEntry
{
    const char* name;
    std::function<QObject*()> create;
};

std::vector<TestClassEntry>& registeredClasses();

struct TestClassRegistrar
{
    TestClassRegistrar(const char* name, std::function<QObject*()> create);
};

} // namespace KivTest

/// Put after a test class's definition in its .cpp file.
#define KIV_TEST_CLASS(Class) \
    static ::KivTest::TestClassRegistrar kivTestRegistrar_##Class(#Class, [] { return new Class; });
