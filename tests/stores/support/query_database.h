// A database of SQLite in memory with nothing but the tables that conditions are about, as
// stores/entry_query.h has them.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stores/entry_query.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

class QueryDatabase {
 public:
  QueryDatabase() {
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    database_.reset(opened);
    std::string table = "CREATE TABLE entry(number INTEGER PRIMARY KEY";
    for_each_entry_column([&]<class T>(const EntryColumn<T>& column) {
      if (!EntryColumn<T>::is_list) table += std::string(", ") + column.sql_name;
    });
    run(table + ")", {});
    run("CREATE TABLE entry_element(symbol, entry, count, ratio, PRIMARY KEY(symbol, entry)) WITHOUT ROWID",
        {});
    run("CREATE TABLE entry_text(\"column\", hash, entry, folded, value)", {});
    run("CREATE INDEX entry_text_hash ON entry_text(\"column\", hash)", {});
  }

  void insert(std::int64_t number, const EntryColumns& entry) {
    run("INSERT INTO entry(number) VALUES(?1)", {number});
    for_each_entry_column([&]<class T>(const EntryColumn<T>& column) {
      const T& value = entry.*column.member;
      if constexpr (std::is_same_v<T, std::string>) {
        set(number, column.sql_name, value);
        insert_text(number, column.number, value);
      } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
        for (const std::string& text : value) insert_text(number, column.number, text);
      } else if constexpr (std::is_same_v<T, std::vector<ElementCount>>) {
        double atoms = 0.0;
        for (const ElementCount& element : value) atoms += element.count;
        for (const ElementCount& element : value) {
          run("INSERT INTO entry_element VALUES(?1, ?2, ?3, ?4)",
              {element.symbol, number, element.count, element.count / atoms});
        }
      } else if (value) {
        set(number, column.sql_name, *value);
        if constexpr (std::is_same_v<T, std::optional<std::string>>)
          insert_text(number, column.number, *value);
      }
    });
  }

  std::vector<std::int64_t> run(const std::string& sql, const std::vector<SqlValue>& parameters) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      ADD_FAILURE() << sqlite3_errmsg(database_.get()) << ": " << sql;
      return {};
    }
    int index = 0;
    for (const SqlValue& value : parameters) {
      ++index;
      if (const auto* integer = std::get_if<std::int64_t>(&value))
        sqlite3_bind_int64(statement, index, *integer);
      if (const auto* number = std::get_if<double>(&value)) sqlite3_bind_double(statement, index, *number);
      if (const auto* text = std::get_if<std::string>(&value)) {
        sqlite3_bind_blob(statement, index, text->data(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
      }
    }
    std::vector<std::int64_t> rows;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW)
      rows.push_back(sqlite3_column_int64(statement, 0));
    EXPECT_EQ(result, SQLITE_DONE) << sqlite3_errmsg(database_.get()) << ": " << sql;
    sqlite3_finalize(statement);
    return rows;
  }

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };

  template <class T>
  void set(std::int64_t number, const std::string& name, const T& value) {
    run("UPDATE entry SET " + name + " = ?1 WHERE number = ?2", {value, number});
  }
  void insert_text(std::int64_t number, int column, const std::string& text) {
    const std::string small = folded(text);
    if (small == text) {
      run("INSERT INTO entry_text VALUES(?1, ?2, ?3, ?4, NULL)",
          {std::int64_t{column}, text_hash(small), number, small});
    } else {
      run("INSERT INTO entry_text VALUES(?1, ?2, ?3, ?4, ?5)",
          {std::int64_t{column}, text_hash(small), number, small, text});
    }
  }

  std::unique_ptr<sqlite3, Close> database_;
};
