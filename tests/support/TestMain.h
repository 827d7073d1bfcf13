#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace norva::test {

// Lets one test executable per feature folder hold several test classes: each .cpp registers its
// class with NORVA_TEST(ClassName), and the shared main runs them all (arguments go to each).
int registerTestClass(const char* name, std::function<std::unique_ptr<QObject>()> make);

} // namespace norva::test

#define NORVA_TEST(ClassName)                                                                                \
    static const int ClassName##_registered = ::norva::test::registerTestClass(                              \
        #ClassName, [] { return std::unique_ptr<QObject>(new ClassName); });
