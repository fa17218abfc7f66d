#pragma once

#include <QObject>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <tuple>
#include <vector>

/// Puts a test object into the program of its folder, which runs all of them or those named by
/// "-class NAME". The test is made when its turn comes, so its constructor may use the application.
struct TestRegistration {
    TestRegistration(const char* name, std::function<std::unique_ptr<QObject>()> make);
};

#define BTASK_TEST(Class)                                                                                    \
    static const TestRegistration registration##Class(                                                       \
        #Class, []() -> std::unique_ptr<QObject> { return std::make_unique<Class>(); })

/// A value of a table's row as it may be written: a text also as plain UTF-8.
template <typename Type>
struct TableValue {
    using Written = Type;
};
template <>
struct TableValue<QString> {
    struct Written : QString {
        Written() = default;
        Written(const QString& text) : QString(text) {}
        Written(const char* utf8) : QString(QString::fromUtf8(utf8)) {}
    };
};

inline std::vector<const char*> columnNames; ///< of the table in work

/// The columns of a test's table. Called with a name and their values it adds a row, without a name one that
/// is named as its first value.
template <typename... Types>
class Columns {
public:
    template <typename... Names>
    explicit Columns(Names... names) {
        (QTest::addColumn<Types>(names), ...);
        columnNames = {names...};
    }

    void operator()(const char* name, const typename TableValue<Types>::Written&... values) const {
        (QTest::newRow(name) << ... << static_cast<const Types&>(values));
    }
    void operator()(const typename TableValue<Types>::Written&... values) const {
        const std::tuple<const Types&...> all(values...);
        const std::unique_ptr<char[]> name(QTest::toString(std::get<0>(all)));
        (*this)(name.get(), values...);
    }
};

/// The values of the row in work, from the first column on.
template <typename... Types>
std::tuple<Types...> Fetched() {
    auto name = columnNames.cbegin();
    return {*static_cast<const Types*>(QTest::qData(*name++, qMetaTypeId<Types>()))...};
}
