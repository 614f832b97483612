// An engine over a database that speaks SQL. What the databases do not share is in their connections.
// Internal: for the engines.
//
// A Connection has a Statement (bind, step, run, and the columns of a row), transactions, snapshots, and what
// it says differently in SQL: which entries have an identifier or an origin, the order of identifiers, and
// columns that it needs beside those of every store. Parameters are written ?1, ?2. A statement that is run
// in a transaction may be done later, but before anything else is read.
#pragma once

#include <stores/engines/entry_numbers.h>
#include <stores/engines/sql_text.h>
#include <stores/engines/store_engine.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

inline constexpr std::int64_t kinds_per_entry = 32;

inline std::int64_t component_key(std::int64_t number, ComponentKind kind) {
  return number * kinds_per_entry + static_cast<std::int64_t>(kind);
}

// A head is where a component of kind 0 would be.
inline const std::string head_names = "e.number, e.identifier, h.bytes";
inline const std::string entry_with_head = " FROM entry e LEFT JOIN component h ON h.key = e.number * 32 ";

template <class Connection>
class SqlEngine : public StoreEngine {
 public:
  // Opens another connection to the same place.
  using Open = std::function<std::unique_ptr<Connection>()>;

  SqlEngine(const std::string& place, std::unique_ptr<Connection> reader, Open open_writer)
      : place_(place), reader_(std::move(reader)), open_writer_(std::move(open_writer)) {
    compresses_ = setting(*reader_, "compress") != 0;
    has_lists_ = reader_->has_element_lists();
  }

  [[nodiscard]] std::string place() const override { return place_; }
  [[nodiscard]] bool is_read_only() const override { return reader_->is_read_only(); }
  [[nodiscard]] bool compresses() const override { return compresses_; }

  [[nodiscard]] std::optional<EntryHead> find(const std::string& identifier) override {
    auto statement = connection().statement(find_sql_);
    statement.bind(1, identifier);
    if (!statement.step()) return std::nullopt;
    return head(statement);
  }

  [[nodiscard]] std::optional<std::int64_t> number_of(const std::string& identifier) override {
    auto statement = connection().statement(number_sql_);
    statement.bind(1, identifier);
    if (!statement.step()) return std::nullopt;
    return statement.integer(0);
  }

  [[nodiscard]] std::optional<First> first(std::int64_t number, const std::string& identifier,
                                           ComponentKind kind) override {
    auto statement = connection().statement(first_sql_);
    statement.bind(1, number * kinds_per_entry);
    statement.bind(2, component_key(number, kind));
    if (!statement.step()) return std::nullopt;
    First first;
    first.head.number = number;
    first.head.identifier = identifier;
    if (statement.integer(0) != number * kinds_per_entry) damaged(no_head);
    static_cast<void>(digest_of_head(statement.bytes(1), first.head));
    if (statement.step()) first.bytes = unpacked(statement.bytes(1));
    return first;
  }

  [[nodiscard]] std::optional<std::string> component(const EntryHead& head, ComponentKind kind) override {
    auto statement = connection().statement(component_sql_);
    statement.bind(1, component_key(head.number, kind));
    if (!statement.step()) return std::nullopt;
    return unpacked(statement.bytes(0));
  }

  [[nodiscard]] std::optional<Whole> find_whole(const std::string& identifier) override {
    auto statement = connection().statement(whole_sql_);
    statement.bind(1, identifier);
    if (!statement.step()) return std::nullopt;
    Whole whole;
    whole.is_packed = true;
    whole.head.number = statement.integer(0);
    whole.head.identifier = whole.bytes.identifier = identifier;
    if (statement.is_null(1) || statement.integer(1) != 0) damaged(no_head);
    static_cast<void>(digest_of_head(statement.bytes(2), whole.head));
    while (statement.step()) {
      const auto kind = static_cast<ComponentKind>(statement.integer(1));
      if (whole.head.has(kind)) whole.bytes.components[slot(kind)].emplace(statement.bytes(2));
    }
    return whole;
  }

  [[nodiscard]] std::vector<std::string> neighbours(const std::string& identifier, int count) override {
    std::vector<std::string> found;
    for (const bool before : {true, false}) {
      auto statement = connection().statement(
          "SELECT e.identifier FROM entry e WHERE " + Connection::identifier_is(before ? "<" : ">", "?1") +
          " ORDER BY " + Connection::identifier_order(before) + " LIMIT ?2");
      statement.bind(1, identifier);
      statement.bind(2, std::int64_t{count});
      while (statement.step()) found.emplace_back(statement.bytes(0));
    }
    return found;
  }

  void transaction(const std::function<void()>& work) override {
    if (!writer_) writer_ = open_writer_();
    const auto forget = [this] {
      is_writing_ = false;
      next_number_.reset();
      forget_pending();
    };
    try {
      writer_->transaction([&] {
        forget();
        is_writing_ = true;
        // Another program may have upgraded the store.
        writes_lists_ = writer_->has_element_lists();
        work();
        flush();
        if (next_number_) run("UPDATE setting SET value = ?1 WHERE name = 'next_number'", *next_number_);
      });
    } catch (...) {
      forget();
      throw;
    }
    forget();
  }

  std::int64_t insert(const StoredEntry& entry) override {
    if (!next_number_) next_number_ = checked_next_number(*writer_);
    write_entry(entry, *next_number_);
    return (*next_number_)++;
  }

  void replace(const EntryHead& old, const StoredEntry& entry) override {
    erase(old);
    write_entry(entry, old.number);
  }

  void erase(const EntryHead& old) override {
    flush();
    erase_index(old);
    run("DELETE FROM component WHERE key >= ?1 * 32 AND key < ?1 * 32 + 32", old.number);
    run("DELETE FROM entry WHERE number = ?1", old.number);
  }

  void set_imported(const std::string& file, const std::string& sha256) override {
    auto statement = writer_->statement(Connection::insert_imported);
    statement.bind(1, file);
    statement.bind(2, sha256);
    statement.run();
  }

  void forget_imported(const std::string& file) override {
    auto statement = writer_->statement("DELETE FROM imported WHERE " + Connection::imported_is("?1"));
    statement.bind(1, file);
    statement.run();
  }

  void clear_columns() override {
    writer_->statement("DELETE FROM entry_text").run();
    writer_->statement("DELETE FROM entry_element").run();
    if (writes_lists_) writer_->statement("DELETE FROM element_block").run();
  }

  void set_columns(const EntryHead& head, const EntryColumns& columns) override {
    std::string assignments;
    int parameter = 2;
    for_each_entry_column([&](const auto& column) {
      assignments += (assignments.empty() ? "" : ", ") + std::string(column.sql_name) + " = ?" +
                     std::to_string(parameter++);
    });
    std::vector<std::string> kept;
    auto statement = writer_->statement("UPDATE entry SET " + assignments + " WHERE number = ?1");
    statement.bind(1, head.number);
    bind_columns(statement, 2, columns, kept);
    statement.run();
    write_index(head.number, columns);
  }

  [[nodiscard]] std::optional<EntryHead> find_origin(const std::string& file,
                                                     const std::string& block) override {
    auto statement = connection().statement("SELECT " + head_names + entry_with_head + "WHERE " +
                                            Connection::origin_is("?1", "?2") + " LIMIT 1");
    statement.bind(1, file);
    statement.bind(2, block.empty() ? std::nullopt : std::optional(block));
    if (!statement.step()) return std::nullopt;
    return head(statement);
  }

  [[nodiscard]] EntryOrigin origin(const EntryHead& head) override {
    auto statement =
        connection().statement("SELECT origin_time, source, block, sha256 FROM entry WHERE number = ?1");
    statement.bind(1, head.number);
    if (!statement.step()) gone();
    return origin(statement, 0);
  }

  [[nodiscard]] EntryColumns columns(const EntryHead& head) override {
    auto statement =
        connection().statement("SELECT " + entry_column_names("e.") + " FROM entry e WHERE e.number = ?1");
    statement.bind(1, head.number);
    if (!statement.step()) gone();
    return columns(statement, 0);
  }

  [[nodiscard]] bool has_imported(const std::string& file, const std::string& sha256) override {
    auto statement = connection().statement("SELECT 1 FROM imported WHERE " + Connection::imported_is("?1") +
                                            " AND sha256 = ?2");
    statement.bind(1, file);
    statement.bind(2, sha256);
    return statement.step();
  }

  [[nodiscard]] std::vector<std::string> select(const EntryQuery& query,
                                                const SelectOptions& options) override {
    std::vector<std::string> found;
    const SqlCondition condition = query.sql(Connection::dialect);
    if (condition.recheck) {
      for (EntryColumns& columns : select_columns(query, options))
        found.push_back(std::move(columns.identifier));
      return found;
    }
    if (has_lists_ && !condition.elements.empty()) {
      const OneState one_state(*this);
      for (Listed& entry : listed(condition.elements, options)) found.push_back(std::move(entry.identifier));
      return found;
    }
    each_selected("e.identifier", condition, options, [&](typename Connection::Statement& statement) {
      found.emplace_back(statement.bytes(0));
      return true;
    });
    return found;
  }

  [[nodiscard]] std::vector<EntryColumns> select_columns(const EntryQuery& query,
                                                         const SelectOptions& options) override {
    std::vector<EntryColumns> found;
    const SqlCondition condition = query.sql(Connection::dialect);
    if (options.limit == std::size_t{0}) return found;
    if (has_lists_ && !condition.elements.empty()) {
      const OneState one_state(*this);
      for (const Listed& entry : listed(condition.elements, options)) {
        EntryHead head;
        head.number = entry.number;
        found.push_back(columns(head));
      }
      return found;
    }
    each_selected(entry_column_names("e."), condition, options,
                  [&](typename Connection::Statement& statement) {
                    EntryColumns columns = this->columns(statement, 0);
                    if (!condition.recheck || query.matches(columns)) found.push_back(std::move(columns));
                    return !options.limit || found.size() < *options.limit;
                  });
    return found;
  }

  [[nodiscard]] std::uint64_t count(const EntryQuery& query) override {
    const SqlCondition condition = query.sql(Connection::dialect);
    if (condition.recheck) {
      std::uint64_t matching = 0;
      each_selected(entry_column_names("e."), condition, {}, [&](typename Connection::Statement& statement) {
        if (query.matches(columns(statement, 0))) ++matching;
        return true;
      });
      return matching;
    }
    if (has_lists_ && !condition.elements.empty()) {
      const OneState one_state(*this);
      std::uint64_t listed = 0;
      for (const Block& block : blocks_of_all(condition.elements))
        listed += static_cast<std::uint64_t>(block.numbers.count());
      return listed;
    }
    auto statement = connection().statement("SELECT count(*) FROM entry e WHERE " + condition.where);
    bind_parameters(statement, condition);
    return statement.step() ? static_cast<std::uint64_t>(statement.integer(0)) : 0;
  }

  [[nodiscard]] std::optional<Tally> tally(const std::string& column, const EntryQuery& query) override {
    const SqlCondition condition = query.sql(Connection::dialect);
    if (condition.recheck) return std::nullopt;
    std::optional<Tally> result;
    for_each_entry_column([&](const auto& candidate) {
      using Column = std::remove_cvref_t<decltype(candidate)>;
      const std::string name = Column::is_elements ? "element" : candidate.short_name;
      if (result || column.empty() || name != column) return;
      result.emplace();
      auto statement = connection().statement(tally_sql(candidate, condition.where));
      statement.stream();
      bind_parameters(statement, condition);
      while (statement.step()) {
        std::string value;
        if constexpr (Column::is_integer) {
          value = std::to_string(statement.integer(0));
        } else if constexpr (Column::is_number) {
          value = shortest(statement.number(0));
        } else {
          value = statement.bytes(0);
        }
        result->emplace_back(std::move(value), static_cast<std::uint64_t>(statement.integer(1)));
      }
    });
    return result;
  }

  void begin_snapshot() override {
    if (snapshots_ == 0) reader_->begin_snapshot();
    ++snapshots_;
  }
  void end_snapshot() noexcept override {
    if (--snapshots_ == 0) reader_->end_snapshot();
  }

  [[nodiscard]] std::vector<Row> rows_after(std::int64_t number, std::size_t limit) override {
    std::vector<Row> rows;
    auto statement = connection().statement(
        "SELECT " + head_names + ", e.origin_time, e.source, e.block, e.sha256, " + entry_column_names("e.") +
        entry_with_head + "WHERE e.number > ?1 ORDER BY e.number LIMIT ?2");
    statement.bind(1, number);
    statement.bind(2, static_cast<std::int64_t>(limit));
    while (statement.step()) {
      Row& row = rows.emplace_back();
      row.head.number = statement.integer(0);
      row.head.identifier = statement.bytes(1);
      try {
        row.origin = origin(statement, 3);
        row.columns = columns(statement, 7);
        if (digest_of_head(statement.bytes(2), row.head) != row_digest(row.head, row.origin)) {
          row.fault = "its row is not what was stored (the digest differs)";
        }
      } catch (const DamagedStore& error) {
        row.fault = error.reason();
      }
    }
    return rows;
  }

  [[nodiscard]] std::optional<std::uint64_t> index_sum() override {
    std::uint64_t sum = 0;
    auto texts =
        connection().statement("SELECT \"column\", hash, entry, position, folded, value FROM entry_text");
    texts.stream();
    while (texts.step()) {
      TextRow row;
      row.column = static_cast<int>(texts.integer(0));
      row.hash = texts.integer(1);
      row.position = static_cast<int>(texts.integer(3));
      row.folded = texts.bytes(4);
      if (!texts.is_null(5)) row.value = texts.bytes(5);
      sum += row_sum(texts.integer(2), row);
    }
    auto elements = connection().statement("SELECT symbol, entry, count, ratio FROM entry_element");
    elements.stream();
    while (elements.step()) {
      sum += row_sum(elements.integer(1), elements.bytes(0), elements.number(2), elements.number(3));
    }
    return sum;
  }

  [[nodiscard]] std::vector<std::string> faults() override {
    std::vector<std::string> found;
    try {
      found = connection().faults();
      const std::int64_t orphans = connection().value_of(
          "SELECT count(*) FROM component c LEFT JOIN entry e ON e.number = c.key / 32 WHERE e.number IS "
          "NULL");
      if (orphans > 0) found.push_back(std::to_string(orphans) + " components belong to no entry");
      static_cast<void>(checked_next_number(connection()));
      if (has_lists_ && list_sum() != element_sum())
        found.emplace_back("the lists of entries by element do not fit the entries; reindex makes them anew");
    } catch (const DamagedStore& error) {
      found.push_back(error.reason());
    }
    return found;
  }

 private:
  // What several statements read is one state.
  class OneState {
   public:
    explicit OneState(SqlEngine& engine) : engine_(engine), is_needed_(!engine.is_writing_) {
      if (is_needed_) engine_.begin_snapshot();
    }
    OneState(const OneState&) = delete;
    OneState& operator=(const OneState&) = delete;
    ~OneState() {
      if (is_needed_) engine_.end_snapshot();
    }

   private:
    SqlEngine& engine_;
    bool is_needed_;
  };

  // The entries of one block that have an element, or all of several.
  struct Block {
    std::int64_t number;
    NumberBlock numbers;
  };

  std::vector<Block> blocks_of(const std::string& symbol) {
    std::vector<Block> blocks;
    auto statement =
        connection().statement("SELECT block, numbers FROM element_block WHERE symbol = ?1 ORDER BY block");
    statement.bind(1, symbol);
    while (statement.step()) {
      Block& block = blocks.emplace_back();
      block.number = statement.integer(0);
      if (!block.numbers.unpack(statement.bytes(1))) damaged_list(symbol);
    }
    return blocks;
  }

  std::vector<Block> blocks_of_all(const std::vector<std::string>& symbols) {
    std::vector<Block> common = blocks_of(symbols.front());
    for (std::size_t index = 1; index < symbols.size() && !common.empty(); ++index) {
      const std::vector<Block> others = blocks_of(symbols[index]);
      auto other = others.begin();
      std::erase_if(common, [&](Block& block) {
        while (other != others.end() && other->number < block.number) ++other;
        if (other == others.end() || other->number != block.number) return true;
        block.numbers.keep_only(other->numbers);
        return false;
      });
    }
    return common;
  }

  struct Listed {
    std::string identifier;
    std::int64_t number;
  };

  // In the order of identifiers. Where few of many entries are wanted, each is looked up; else all are walked
  // over in their order until there are enough.
  std::vector<Listed> listed(const std::vector<std::string>& symbols, const SelectOptions& options) {
    const std::vector<Block> blocks = blocks_of_all(symbols);
    std::vector<Listed> found;
    std::size_t count = 0;
    for (const Block& block : blocks) count += static_cast<std::size_t>(block.numbers.count());
    if (count == 0 || options.limit == std::size_t{0}) return found;
    const std::size_t wanted = std::min(count, options.limit.value_or(count));
    const std::size_t all = static_cast<std::size_t>(blocks.back().number + 1) * NumberBlock::size;
    // To look one up takes as long as to walk over so many.
    constexpr std::size_t walked = 8;
    if (all / count * wanted > walked * count) {
      look_up(blocks, options, found);
    } else {
      walk(blocks, options, found);
    }
    return found;
  }

  void look_up(const std::vector<Block>& blocks, const SelectOptions& options, std::vector<Listed>& found) {
    for (const Block& block : blocks) {
      block.numbers.for_each([&](int place) {
        const std::int64_t number = block.number * NumberBlock::size + place;
        auto statement = connection().statement(
            "SELECT e.identifier FROM entry e INDEXED BY entry_name WHERE e.number = ?1");
        statement.bind(1, number);
        if (!statement.step()) damaged("a list of elements names an entry that is not there");
        if (!options.after || statement.bytes(0) > *options.after)
          found.push_back({std::string(statement.bytes(0)), number});
      });
    }
    const auto is_before = [](const Listed& one, const Listed& other) {
      return one.identifier < other.identifier;
    };
    std::sort(found.begin(), found.end(), is_before);
    if (options.limit && found.size() > *options.limit) found.resize(*options.limit);
  }

  void walk(const std::vector<Block>& blocks, const SelectOptions& options, std::vector<Listed>& found) {
    std::vector<const NumberBlock*> by_number(static_cast<std::size_t>(blocks.back().number) + 1, nullptr);
    for (const Block& block : blocks) by_number[static_cast<std::size_t>(block.number)] = &block.numbers;
    auto statement =
        connection().statement(std::string("SELECT e.identifier, e.number FROM entry e") +
                               (options.after ? " WHERE " + Connection::identifier_is(">", "?1") : "") +
                               " ORDER BY " + Connection::identifier_order(false));
    if (options.after) statement.bind(1, *options.after);
    while ((!options.limit || found.size() < *options.limit) && statement.step()) {
      const std::int64_t number = statement.integer(1);
      const auto block = static_cast<std::size_t>(number / NumberBlock::size);
      if (block >= by_number.size() || by_number[block] == nullptr) continue;
      if (!by_number[block]->has(static_cast<int>(number % NumberBlock::size))) continue;
      found.push_back({std::string(statement.bytes(0)), number});
    }
  }

  // Lets `change(numbers)` change one block of the list of an element.
  template <class Change>
  void change_list(const std::string& symbol, std::int64_t block, const Change& change) {
    NumberBlock numbers;
    {
      auto old = writer_->statement("SELECT numbers FROM element_block WHERE symbol = ?1 AND block = ?2");
      old.bind(1, symbol);
      old.bind(2, block);
      if (old.step() && !numbers.unpack(old.bytes(0))) damaged_list(symbol);
    }
    change(numbers);
    const std::string bytes = numbers.packed();
    auto statement = writer_->statement(
        bytes.empty() ? "DELETE FROM element_block WHERE symbol = ?1 AND block = ?2"
                      : "REPLACE INTO element_block (symbol, block, numbers) VALUES (?1, ?2, ?3)");
    statement.bind(1, symbol);
    statement.bind(2, block);
    if (!bytes.empty()) statement.bind(3, bytes);
    statement.run();
  }

  static int place_of(std::int64_t number) { return static_cast<int>(number % NumberBlock::size); }

  // Of those that are pending, which are in order.
  void write_lists() {
    for (auto first = elements_.begin(); first != elements_.end();) {
      const std::int64_t block = first->entry / NumberBlock::size;
      const auto last = std::find_if(first, elements_.end(), [&](const PendingElement& element) {
        return element.symbol != first->symbol || element.entry / NumberBlock::size != block;
      });
      change_list(first->symbol, block, [&](NumberBlock& numbers) {
        for (auto element = first; element != last; ++element) numbers.insert(place_of(element->entry));
      });
      first = last;
    }
  }

  // The same for the same entries of the same elements.
  std::uint64_t list_sum() {
    std::uint64_t sum = 0;
    auto statement = connection().statement("SELECT symbol, block, numbers FROM element_block");
    while (statement.step()) {
      NumberBlock numbers;
      const std::string symbol(statement.bytes(0));
      if (!numbers.unpack(statement.bytes(2))) damaged_list(symbol);
      const std::int64_t first = statement.integer(1) * NumberBlock::size;
      numbers.for_each([&](int place) { sum += row_sum(first + place, symbol, 0.0, 0.0); });
    }
    return sum;
  }
  std::uint64_t element_sum() {
    std::uint64_t sum = 0;
    auto statement = connection().statement("SELECT symbol, entry FROM entry_element");
    while (statement.step()) sum += row_sum(statement.integer(1), statement.bytes(0), 0.0, 0.0);
    return sum;
  }

  [[noreturn]] void damaged_list(const std::string& symbol) const {
    damaged("the list of entries with " + symbol + " is damaged; reindex makes it anew");
  }

  Connection& connection() { return is_writing_ ? *writer_ : *reader_; }

  std::int64_t setting(Connection& connection, const std::string& name) const {
    // The names are ours.
    auto statement = connection.statement("SELECT value FROM setting WHERE name = '" + name + "'");
    if (!statement.step()) damaged("its setting " + name + " is missing");
    return statement.integer(0);
  }

  std::int64_t checked_next_number(Connection& connection) const {
    const std::int64_t number = setting(connection, "next_number");
    if (number <= connection.value_of("SELECT max(number) FROM entry")) {
      damaged("the number for the next entry is that of an entry");
    }
    return number;
  }

  [[noreturn]] void damaged(const std::string& reason) const { throw DamagedStore({place_, "", ""}, reason); }
  [[noreturn]] void gone() const {
    throw EntryStoreError({place_, "", ""}, "the entry was removed while it was read");
  }

  // From a row that begins with head_names.
  EntryHead head(const typename Connection::Statement& statement) const {
    EntryHead head;
    head.number = statement.integer(0);
    head.identifier = statement.bytes(1);
    static_cast<void>(digest_of_head(statement.bytes(2), head));
    return head;
  }

  std::uint64_t digest_of_head(std::string_view packed, EntryHead& head) const {
    const auto digest = unpack_head(packed, head);
    if (!digest) damaged(packed.empty() ? no_head : "its head is damaged");
    return *digest;
  }

  static EntryOrigin origin(const typename Connection::Statement& statement, int first) {
    return {std::string(statement.bytes(first + 1)), std::string(statement.bytes(first + 2)),
            std::string(statement.bytes(first + 3)), statement.integer(first)};
  }

  EntryColumns columns(const typename Connection::Statement& statement, int first) const {
    EntryColumns columns;
    for_each_entry_column([&](const auto& column) {
      using Column = std::remove_cvref_t<decltype(column)>;
      auto& member = columns.*column.member;
      const int index = first + column.number - 1;
      if (statement.is_null(index)) return;
      if constexpr (Column::is_list) {
        if (!unpack_list(statement.bytes(index), member)) {
          damaged(std::string("its row is damaged: the column ") + column.sql_name + " is no list");
        }
      } else if constexpr (Column::is_text) {
        member = std::string(statement.bytes(index));
      } else if constexpr (Column::is_integer) {
        member = statement.integer(index);
      } else {
        member = statement.number(index);
      }
    });
    return columns;
  }

  // Lists are packed into `kept`, which must outlive the statement.
  static void bind_columns(typename Connection::Statement& statement, int first, const EntryColumns& columns,
                           std::vector<std::string>& kept) {
    kept.reserve(static_cast<std::size_t>(entry_column_count()));
    for_each_entry_column([&](const auto& column) {
      using Column = std::remove_cvref_t<decltype(column)>;
      const auto& member = columns.*column.member;
      const int index = first + column.number - 1;
      if constexpr (Column::is_list) {
        if (member.empty()) {
          statement.bind(index, std::optional<std::string>());
        } else {
          statement.bind(index, kept.emplace_back(packed_list(member)));
        }
      } else {
        statement.bind(index, member);
      }
    });
  }

  void run(const std::string& sql, std::int64_t parameter) {
    auto statement = writer_->statement(sql);
    statement.bind(1, parameter);
    statement.run();
  }

  void write_entry(const StoredEntry& entry, std::int64_t number) {
    std::vector<std::string> kept;
    {
      auto row = writer_->statement(insert_sql_);
      row.bind(1, number);
      row.bind(2, entry.origin.stored_at);
      bind_columns(row, 3, entry.columns, kept);
      row.run();
    }
    write_component(number * kinds_per_entry, packed_head(entry.head, entry.origin));
    for_each_component([&](auto component) {
      const auto& bytes = entry.bytes.components[slot(component.kind)];
      if (!bytes) return;
      write_component(component_key(number, component.kind), packed(*bytes, compresses_));
    });
    write_index(number, entry.columns);
  }

  void write_component(std::int64_t key, const std::string& bytes) {
    auto statement = writer_->statement("INSERT INTO component (key, bytes) VALUES (?1, ?2)");
    statement.bind(1, key);
    statement.bind(2, bytes);
    statement.run();
  }

  // Rows of the index go to all places of it; in order they are written the faster.
  struct PendingText {
    std::int64_t entry;
    TextRow row;
  };
  struct PendingElement {
    std::string symbol;
    std::int64_t entry;
    double count;
    double ratio;
  };

  void write_index(std::int64_t number, const EntryColumns& columns) {
    for_each_text_row(columns, [&](TextRow& row) { texts_.push_back({number, std::move(row)}); });
    for (const ElementCount& element : columns.elements) {
      elements_.push_back({element.symbol, number, element.count, element_ratio(columns, element)});
    }
    constexpr std::size_t most_pending = 100'000;
    if (texts_.size() >= most_pending) flush();
  }

  void forget_pending() {
    texts_.clear();
    elements_.clear();
  }

  void flush() {
    const auto place = [](const PendingText& text) {
      return std::tuple(text.row.column, text.row.hash, text.entry, text.row.position);
    };
    std::sort(texts_.begin(), texts_.end(),
              [&](const auto& one, const auto& other) { return place(one) < place(other); });
    std::sort(elements_.begin(), elements_.end(), [](const auto& one, const auto& other) {
      return std::tie(one.symbol, one.entry) < std::tie(other.symbol, other.entry);
    });
    for (const PendingText& text : texts_) {
      auto statement = writer_->statement(
          "INSERT INTO entry_text (\"column\", hash, entry, position, folded, value) VALUES (?1, ?2, ?3, ?4, "
          "?5, ?6)");
      statement.bind(1, std::int64_t{text.row.column});
      statement.bind(2, text.row.hash);
      statement.bind(3, text.entry);
      statement.bind(4, std::int64_t{text.row.position});
      statement.bind(5, text.row.folded);
      statement.bind(6, text.row.value);
      statement.run();
    }
    for (const PendingElement& element : elements_) {
      auto statement = writer_->statement(
          "INSERT INTO entry_element (symbol, entry, count, ratio) VALUES (?1, ?2, ?3, ?4)");
      statement.bind(1, element.symbol);
      statement.bind(2, element.entry);
      statement.bind(3, element.count);
      statement.bind(4, element.ratio);
      statement.run();
    }
    if (writes_lists_) write_lists();
    forget_pending();
  }

  // The rows that the columns of an entry made; there is no index of them by entry.
  void erase_index(const EntryHead& old) {
    const EntryColumns known = columns(old);
    for_each_text_row(known, [&](const TextRow& row) {
      auto statement = writer_->statement(
          "DELETE FROM entry_text WHERE \"column\" = ?1 AND hash = ?2 AND entry = ?3 AND position = ?4");
      statement.bind(1, std::int64_t{row.column});
      statement.bind(2, row.hash);
      statement.bind(3, old.number);
      statement.bind(4, std::int64_t{row.position});
      statement.run();
    });
    for (const ElementCount& element : known.elements) {
      auto statement = writer_->statement("DELETE FROM entry_element WHERE symbol = ?1 AND entry = ?2");
      statement.bind(1, element.symbol);
      statement.bind(2, old.number);
      statement.run();
      if (!writes_lists_) continue;
      change_list(element.symbol, old.number / NumberBlock::size,
                  [&](NumberBlock& numbers) { numbers.erase(place_of(old.number)); });
    }
  }

  // Values of lists have rows of their own; the others are in the row of the entry.
  template <class Column>
  static std::string tally_sql(const Column& column, const std::string& where) {
    const std::string entries =
        where == "1=1" ? "" : " AND r.entry IN (SELECT e.number FROM entry e WHERE " + where + ")";
    if constexpr (Column::is_elements) {
      return "SELECT r.symbol, count(*) FROM entry_element r WHERE 1=1" + entries + " GROUP BY 1 ORDER BY 1";
    } else if constexpr (Column::is_list) {
      return "SELECT coalesce(r.value, r.folded), count(DISTINCT r.entry) FROM entry_text r WHERE "
             "r.\"column\" "
             "= " +
             std::to_string(column.number) + entries + " GROUP BY 1 ORDER BY 1";
    } else {
      const std::string value = std::string("e.") + column.sql_name;
      return "SELECT " + value + ", count(*) FROM entry e WHERE (" + where + ") AND " + value +
             " IS NOT NULL GROUP BY 1 ORDER BY 1";
    }
  }

  static std::string shortest(double number) {
    std::array<char, 32> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
  }

  static void bind_parameters(typename Connection::Statement& statement, const SqlCondition& condition) {
    int index = 0;
    for (const SqlValue& value : condition.parameters) statement.bind(++index, value);
  }

  // Calls `visit` with each row found, in the order of identifiers, until it gives false.
  template <class Visit>
  void each_selected(const std::string& names, const SqlCondition& condition, const SelectOptions& options,
                     const Visit& visit) {
    std::string sql = "SELECT " + names + " FROM entry e WHERE (" + condition.where + ")";
    int parameter = static_cast<int>(condition.parameters.size());
    if (options.after) sql += " AND " + Connection::identifier_is(">", "?" + std::to_string(++parameter));
    sql += " ORDER BY " + Connection::identifier_order(false);
    // Where entries are judged afterwards, nobody knows how many rows it takes.
    const bool is_limited = options.limit && !condition.recheck;
    if (is_limited) sql += " LIMIT ?" + std::to_string(++parameter);
    auto statement = connection().statement(sql);
    statement.stream();
    bind_parameters(statement, condition);
    if (is_limited) {
      constexpr std::size_t most = 0x7FFFFFFFFFFFFFFF;
      statement.bind(parameter--, static_cast<std::int64_t>(std::min(*options.limit, most)));
    }
    if (options.after) statement.bind(parameter, *options.after);
    while (statement.step()) {
      if (!visit(statement)) break;
    }
  }

  static std::string insert_sql() {
    std::string places;
    for (int index = 1; index <= 2 + entry_column_count(); ++index)
      places += (index > 1 ? ", ?" : "?") + std::to_string(index);
    return "INSERT INTO entry (number, origin_time, " + entry_column_names("") + Connection::more_names +
           ") VALUES (" + places + Connection::more_values + ")";
  }

  static constexpr const char* no_head = "its head is missing";
  const std::string find_sql_ =
      "SELECT " + head_names + entry_with_head + "WHERE " + Connection::identifier_is("=", "?1");
  const std::string whole_sql_ =
      "SELECT e.number, c.key & 31, c.bytes FROM entry e LEFT JOIN component c ON c.key >= e.number * 32 "
      "AND c.key < e.number * 32 + 32 WHERE " +
      Connection::identifier_is("=", "?1") + " ORDER BY c.key";
  const std::string number_sql_ =
      "SELECT e.number FROM entry e WHERE " + Connection::identifier_is("=", "?1");
  // The rows between the two are walked over, which takes less than to look for the second.
  const std::string first_sql_ =
      "SELECT key, bytes FROM component WHERE key >= ?1 AND key <= ?2 AND (+key = ?1 OR +key = ?2) ORDER BY "
      "key";
  const std::string component_sql_ = "SELECT bytes FROM component WHERE key = ?1";
  const std::string insert_sql_ = insert_sql();

  std::string place_;
  std::unique_ptr<Connection> reader_;
  Open open_writer_;
  std::unique_ptr<Connection> writer_;
  bool is_writing_ = false;
  bool compresses_ = true;
  bool has_lists_ = false;  // of entries by element, to read
  bool writes_lists_ = false;
  int snapshots_ = 0;
  std::optional<std::int64_t> next_number_;  // in a transaction
  std::vector<PendingText> texts_;
  std::vector<PendingElement> elements_;
};
