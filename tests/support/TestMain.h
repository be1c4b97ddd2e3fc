#pragma once

#include <functional>
#include <memory>

#include <QObject>

namespace VkTests {

/// Enters a test class into the program, which runs the classes named on its command line, or all.
struct TestRegistration {
    TestRegistration(const char *aName, std::function<std::unique_ptr<QObject>()> aMake);
};

}  // namespace VkTests

#define VK_TEST_CLASS(Class)                                         \
    static const VkTests::TestRegistration the##Class##Registration( \
        #Class, [] { return std::make_unique<Class>(); })
