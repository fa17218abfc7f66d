#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace devservice {

/// What SQLite refused, in its words.
class SqliteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A writing connection, made with its file. Everything throws SqliteError.
class Connection {
public:
    explicit Connection(const std::filesystem::path& file, int busyMilliseconds = 200);

    void Execute(const std::string& sql);
    sqlite3* Handle() const { return m_handle.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

/// A prepared statement; values are bound in their order, Run resets it for the next row.
class Statement {
public:
    Statement(const Connection& connection, const std::string& sql);

    Statement& Bind(const std::string& text);
    Statement& Bind(int64_t number);
    Statement& Bind(int number) { return Bind(static_cast<int64_t>(number)); }
    Statement& BindBlob(const std::string& octets);
    Statement& BindNull();
    void Run();  ///< for a statement without rows
    bool Step(); ///< true while there is a row

    std::string Text(int column) const; ///< the octets of a text or blob; empty when null
    int64_t Integer(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    void Check(int result) const;

    sqlite3* m_connection;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    int m_next = 1;
};

/// Begins at once with the right to write; rolls back unless committed.
class Transaction {
public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit();

private:
    Connection& m_connection;
    bool m_open = true;
};

} // namespace devservice
