// Holds every #include of the tree against the table of rooms in docs/architecture.md.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <support/file_contents.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// Every match of the expression's first group in the text.
std::vector<std::string> all_of(const std::string& text, const std::string& expression) {
  const std::regex regex(expression);
  std::vector<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
    found.push_back((*match)[1]);
  return found;
}

struct Room {
  std::string path;                   // "siblings/utilities"
  std::set<std::string> may_include;  // short names: "utilities"
  bool every_library = false;
  bool core_libraries = false;
  bool inner_headers = false;
  bool installed_packages = false;
  bool system_headers = false;
  bool processor_headers = false;

  [[nodiscard]] std::string top() const { return path.substr(0, path.find('/')); }
  [[nodiscard]] bool is_core() const { return top() == "siblings" || top() == "database_entry"; }
  [[nodiscard]] bool is_library() const {
    return is_core() || std::set<std::string>{"lattice", "exchange", "stores", "perception"}.contains(top());
  }
  [[nodiscard]] std::string name() const { return fs::path(path).filename(); }
  [[nodiscard]] bool holds(const std::string& file) const {
    return file == path || file.starts_with(path + "/");
  }
};

std::vector<Room> rooms_in(const std::string& page) {
  std::vector<Room> rooms;
  for (const std::string& line : lines_of(page)) {
    const std::vector<std::string> cells = all_of(line, R"(\|([^|]*)(?=\|))");
    if (cells.size() != 4 || !cells[0].starts_with(" `")) continue;
    Room room;
    room.path = all_of(cells[0], "`([^`]*)`").at(0);
    const std::vector<std::string> names = all_of(cells[2], "`([^`]*)`");
    room.may_include.insert(names.begin(), names.end());
    const auto says = [&](const char* words) { return cells[2].find(words) != std::string::npos; };
    room.every_library = says("every library");
    room.core_libraries = says("the core");
    room.inner_headers = says("inner");
    room.installed_packages = says("installed packages");
    room.system_headers = says("the C library of the system");
    room.processor_headers = says("the compiler's names for the processor's instructions");
    rooms.push_back(room);
  }
  return rooms;
}

// The tree as the checks see it: files by path from the root, and which headers are public.
struct Tree {
  std::map<std::string, std::string> files;
  std::set<std::string> public_headers;
};

Tree tree_on_disk() {
  const fs::path root = PROJECT_TREE;
  Tree tree;
  for (const char* top : {"siblings", "database_entry", "lattice", "exchange", "stores", "perception",
                          "bindings", "tools", "examples", "tests", "benchmarks", "fuzz"}) {
    if (!fs::exists(root / top)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / top)) {
      const std::string path = fs::relative(entry.path(), root);
      const std::string extension = entry.path().extension();
      if (extension == ".h" || extension == ".cpp") tree.files[path] = contents_of_file(entry.path());
      if (entry.path().filename() != "CMakeLists.txt") continue;
      for (const std::string& list :
           all_of(contents_of_file(entry.path()), R"(HEADERS\s([^)]*?)(?:SOURCES|\)))"))
        for (const std::string& header : all_of(list, R"((\S+\.h))"))
          tree.public_headers.insert(fs::path(path).replace_filename(header));
    }
  }
  return tree;
}

// A room may lie in another: the inner one holds the file.
const Room* room_of(const std::vector<Room>& rooms, const std::string& file) {
  const Room* found = nullptr;
  for (const Room& room : rooms)
    if (room.holds(file) && (found == nullptr || room.path.size() > found->path.size())) found = &room;
  return found;
}

// The file of the tree that an include line means; none when it means something outside.
std::optional<std::string> included_file(const Tree& tree, const std::string& from, const std::string& name) {
  for (const fs::path& folder :
       {fs::path(), fs::path("siblings"), fs::path("tests"), fs::path(from).parent_path()}) {
    const std::string file = (folder / name).lexically_normal();
    if (tree.files.contains(file)) return file;
  }
  return std::nullopt;
}

// What is wrong with one include, or nothing.
std::string objection(const std::vector<Room>& rooms, const Tree& tree, const std::string& from,
                      const std::string& name) {
  const Room* const room = room_of(rooms, from);
  const std::optional<std::string> file = included_file(tree, from, name);
  if (!file) {
    const bool is_standard = name.find_first_of("/.") == std::string::npos;
    const bool is_system = (room->system_headers && (name == "unistd.h" || name.starts_with("sys/"))) ||
                           (room->processor_headers && name == "emmintrin.h");
    return is_standard || is_system || room->installed_packages
               ? ""
               : "is neither of this tree nor of the standard library";
  }
  const Room* const target = room_of(rooms, *file);
  const bool is_allowed = target == room || room->may_include.contains(target->name()) ||
                          (room->every_library && target->is_library()) ||
                          (room->core_libraries && target->is_core());
  if (!is_allowed) return "is of " + target->path + ", which " + room->path + " may not include";
  if (!target->is_library() || tree.public_headers.contains(*file)) return "";
  if (tree.public_headers.contains(from)) return "is an inner header, and this one is public";
  const bool may_see_inside = target == room || (room->is_core() && target->is_core()) || room->inner_headers;
  return may_see_inside ? "" : "is an inner header";
}

// One line for each include that the table does not allow: file:line: what.
std::vector<std::string> objections(const std::vector<Room>& rooms, const Tree& tree) {
  std::vector<std::string> found;
  for (const auto& [path, text] : tree.files) {
    if (room_of(rooms, path) == nullptr) {
      found.push_back(path + ": is in no room of the table");
      continue;
    }
    int number = 0;
    for (const std::string& line : lines_of(text)) {
      ++number;
      if (line.find("include") == std::string::npos) continue;  // expressions are slow
      for (const std::string& name : all_of(line, R"(^\s*#\s*include\s*[<"]([^>"]+)[>"])")) {
        const std::string what = objection(rooms, tree, path, name);
        if (!what.empty()) found.push_back(path + ":" + std::to_string(number) + ": <" + name + "> " + what);
      }
    }
  }
  return found;
}

const std::vector<Room>& rooms_on_the_page() {
  static const std::vector<Room> rooms =
      rooms_in(contents_of_file(fs::path(PROJECT_TREE) / "docs/architecture.md"));
  return rooms;
}

TEST(Rooms, IncludeOnlyWhatTheTableLetsThem) {
  const Tree tree = tree_on_disk();
  EXPECT_GT(tree.files.size(), 50U);
  EXPECT_THAT(objections(rooms_on_the_page(), tree), testing::IsEmpty());
}

TEST(Rooms, OfTheTableExist) {
  EXPECT_GE(rooms_on_the_page().size(), 18U);
  for (const Room& room : rooms_on_the_page())
    EXPECT_TRUE(fs::exists(fs::path(PROJECT_TREE) / room.path)) << room.path;
}

TEST(Rooms, AreTheOnlyNamesInTheTable) {
  std::set<std::string> names;
  for (const Room& room : rooms_on_the_page()) names.insert(room.name());
  for (const Room& room : rooms_on_the_page())
    EXPECT_THAT(names, testing::IsSupersetOf(room.may_include)) << room.path;
}

TEST(UmbrellaHeader, HasEveryPublicHeaderOfTheLibrary) {
  const Tree tree = tree_on_disk();
  std::set<std::string> expected;
  for (const std::string& header : tree.public_headers)
    if (header.starts_with("database_entry/") && header.find('/', 15) != std::string::npos)
      expected.insert(header);
  const std::vector<std::string> found =
      all_of(tree.files.at("database_entry/database_entry.h"), "#include <([^>]*)>");
  EXPECT_THAT(found, testing::IsSupersetOf(expected));
}

struct Breach {
  const char* file;
  const char* include;
  const char* objection;
  const char* why;
};

TEST(Rooms, AreHeldAgainstTheTable) {
  const std::vector<Room> rooms = rooms_in(
      "| `siblings/low` | base | nothing | x |\n"
      "| `database_entry/high` | top | `low` | x |\n"
      "| `stores` | beside | public headers of the core, installed packages | x |\n"
      "| `examples` | use | public headers of every library | x |\n");
  Tree tree;
  tree.files = {{"siblings/low/base.h", ""},
                {"siblings/low/inner.h", ""},
                {"database_entry/high/top.h", ""},
                {"stores/store.h", ""}};
  tree.public_headers = {"siblings/low/base.h", "database_entry/high/top.h", "stores/store.h"};
  const Breach breaches[] = {
      {"database_entry/high/top.cpp", "low/base.h", "", "the table allows it"},
      {"database_entry/high/top.cpp", "low/inner.h", "", "a source may use an inner header"},
      {"database_entry/high/top.cpp", "vector", "", "the standard library is everybody's"},
      {"database_entry/high/top.h", "low/inner.h", "is an inner header, and this one is public",
       "it would not be installed"},
      {"siblings/low/base.cpp", "database_entry/high/top.h",
       "is of database_entry/high, which siblings/low may not include", "upwards"},
      {"siblings/low/base.cpp", "fmt/core.h", "is neither of this tree nor of the standard library",
       "a foreign library"},
      {"stores/store.cpp", "low/base.h", "", "a companion sees the core"},
      {"stores/store.cpp", "low/inner.h", "is an inner header", "but only what it offers to everybody"},
      {"database_entry/high/top.cpp", "stores/store.h",
       "is of stores, which database_entry/high may not include", "the core knows no companion"},
      {"examples/use.cpp", "low/base.h", "", "a public header of any library"},
      {"examples/use.cpp", "stores/store.h", "", "a companion is a library too"},
      {"examples/use.cpp", "low/inner.h", "is an inner header", "a client sees public headers only"},
  };
  for (const Breach& breach : breaches)
    EXPECT_EQ(objection(rooms, tree, breach.file, breach.include), breach.objection) << breach.why;
}

TEST(Rooms, AreNamedWithFileAndLineWhereTheyAreBroken) {
  Tree tree;
  tree.files = {{"siblings/low/base.cpp", "#pragma once\n#include <vector>\n#include <fmt/core.h>\n"},
                {"elsewhere/a.h", ""}};
  EXPECT_THAT(
      objections(rooms_in("| `siblings/low` | base | nothing | x |\n"), tree),
      testing::ElementsAre(
          "elsewhere/a.h: is in no room of the table",
          "siblings/low/base.cpp:3: <fmt/core.h> is neither of this tree nor of the standard library"));
}

}  // namespace
