#pragma once

#include "stores/ReadResult.h"

#include <QByteArray>

#include <filesystem>
#include <memory>

struct sqlite3_stmt;

/// A prepared statement of a Database, which it must not outlive. Default-made or failed, it yields no row.
class Statement {
public:
    Statement() = default;
    explicit Statement(ReadResult failure) : m_result(std::move(failure)) {}
    /// `file` and `step` are what its walks are called in the log of causes.
    Statement(sqlite3_stmt* statement, std::filesystem::path file, QString step)
        : m_statement(statement), m_file(std::move(file)), m_step(std::move(step)) {}

    explicit operator bool() const { return m_statement != nullptr; }

    /// Whether it can begin anew; a failure is traced as `failureTrace` + SQLite's words unless that is
    /// empty.
    bool Reset(const QString& failureTrace = {});
    bool Bind(int position, const QString& text, const QString& failureTrace = {});
    bool Bind(int position, int number, const QString& failureTrace);

    /// True while there is a row.
    bool Step();

    /// Ends the walk, which frees its lock on the file. What failed is traced when it begins, as
    /// `failureTrace` and SQLite's words unless that is empty.
    void Finish(const QString& failureTrace = {});

    /// Calls `row` for each row until it says false, and tells how that went.
    template <typename RowFunction>
    ReadResult Walk(RowFunction row) {
        while (Step() && row())
            continue;
        Finish();
        return m_result;
    }

    /// How preparing or stepping went so far.
    const ReadResult& Result() const { return m_result; }

    /// SQLite's words for what went wrong last.
    QString ErrorText() const;

    // Of the current row; the column counts from 0.
    QString Text(int column) const; ///< null for a null column; octets that are not UTF-8 become U+FFFD
    int Integer(int column) const;
    qint64 Integer64(int column) const;
    QByteArrayView Blob(int column) const; ///< valid until the next step

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const;
    };

    bool Check(int code, const QString& failureTrace);

    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
    std::filesystem::path m_file;
    QString m_step;
    ReadResult m_result;
};
