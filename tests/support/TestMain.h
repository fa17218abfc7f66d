#pragma once

#include <QObject>
#include <QtTest/QTest>

#include <functional>
#include <memory>

/// Puts a test object into the program of its folder, which runs all of them or those named by
/// "-class NAME". The test is made when its turn comes, so its constructor may use the application.
struct TestRegistration {
    TestRegistration(const char* name, std::function<std::unique_ptr<QObject>()> make);
};

#define BTASK_TEST(Class)                                                                                    \
    static const TestRegistration registration##Class(                                                       \
        #Class, []() -> std::unique_ptr<QObject> { return std::make_unique<Class>(); })
