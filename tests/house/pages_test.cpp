// The pages tell the truth: links lead somewhere, and what is quoted from a file is what the file has.
//
// A quoted block follows a line `<!-- quote: PATH -->`, which takes the whole file, or
// `<!-- quote: PATH#NAME -->`, which takes the lines between `// begin NAME` and `// end NAME`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path tree = PROJECT_TREE;

std::vector<std::string> lines_of(const fs::path& path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::vector<fs::path> pages() {
  std::vector<fs::path> found;
  for (const fs::path& folder : {tree, tree / "docs"})
    for (const auto& entry : fs::directory_iterator(folder))
      if (entry.path().extension() == ".md") found.push_back(entry.path());
  return found;
}

std::string place(const fs::path& page, std::size_t line) {
  return fs::relative(page, tree).string() + ":" + std::to_string(line + 1);
}

// The name by which a heading can be linked: lower case, blanks to hyphens, other signs dropped.
std::string anchor(const std::string& heading) {
  std::string result;
  for (const char sign : heading) {
    const auto byte = static_cast<unsigned char>(sign);
    if (std::isalnum(byte) != 0 || sign == '-' || sign == '_')
      result += static_cast<char>(std::tolower(byte));
    if (sign == ' ') result += '-';
  }
  return result;
}

std::set<std::string> anchors_of(const fs::path& page) {
  std::set<std::string> anchors;
  bool in_code = false;
  for (const std::string& line : lines_of(page)) {
    if (line.starts_with("```")) in_code = !in_code;
    const std::size_t level = line.find_first_not_of('#');
    if (!in_code && level != 0 && level != std::string::npos && line[level] == ' ')
      anchors.insert(anchor(line.substr(level + 1)));
  }
  return anchors;
}

bool leads_somewhere(const fs::path& page, const std::string& link) {
  if (link.starts_with("https://")) return true;
  const std::size_t hash = link.find('#');
  const fs::path target = hash == 0 ? page : page.parent_path() / link.substr(0, hash);
  if (!fs::exists(target)) return false;
  return hash == std::string::npos || anchors_of(target).contains(link.substr(hash + 1));
}

TEST(Pages, HaveLinksThatLeadSomewhere) {
  const std::regex link(R"(\]\(([^)\s]+)\))");
  int links = 0;
  for (const fs::path& page : pages()) {
    const std::vector<std::string> lines = lines_of(page);
    for (std::size_t at = 0; at < lines.size(); ++at) {
      for (std::sregex_iterator match(lines[at].begin(), lines[at].end(), link), end; match != end; ++match) {
        EXPECT_TRUE(leads_somewhere(page, (*match)[1])) << place(page, at) << ": " << (*match)[1];
        ++links;
      }
    }
  }
  EXPECT_GT(links, 20);
}

std::vector<std::string> quoted_source(const std::string& source) {
  const std::size_t hash = source.find('#');
  const std::vector<std::string> lines = lines_of(tree / source.substr(0, hash));
  if (hash == std::string::npos) return lines;
  const std::string name = source.substr(hash + 1);
  std::vector<std::string> part;
  std::size_t indent = 0;
  bool inside = false;
  for (const std::string& line : lines) {
    const std::string bare = line.substr(std::min(line.size(), line.find_first_not_of(' ')));
    if (bare == "// end " + name) break;
    if (inside) part.push_back(line.size() > indent ? line.substr(indent) : "");
    if (bare != "// begin " + name) continue;
    inside = true;
    indent = line.size() - bare.size();
  }
  return part;
}

std::vector<std::string> block_after(const std::vector<std::string>& lines, std::size_t at) {
  std::vector<std::string> block;
  while (at < lines.size() && !lines[at].starts_with("```")) ++at;
  for (++at; at < lines.size() && lines[at] != "```"; ++at) block.push_back(lines[at]);
  return block;
}

TEST(Pages, QuoteTheFilesAsTheyStand) {
  const std::regex mark("^<!-- quote: (\\S+) -->$");
  int quotes = 0;
  for (const fs::path& page : pages()) {
    const std::vector<std::string> lines = lines_of(page);
    for (std::size_t at = 0; at < lines.size(); ++at) {
      std::smatch match;
      if (!std::regex_match(lines[at], match, mark)) continue;
      const std::vector<std::string> source = quoted_source(match[1]);
      EXPECT_FALSE(source.empty()) << place(page, at) << ": there is no " << match[1];
      EXPECT_EQ(block_after(lines, at), source) << place(page, at);
      ++quotes;
    }
  }
  EXPECT_GT(quotes, 3);
}

}  // namespace
