#include "tools/files/collection_place.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <cstdlib>

#include "tools/files/collection.h"
#include "tools/messages/tool_error.h"

namespace {

bool is_place(const std::string& text) {
  struct stat status = {};
  return text == "-" || is_url(text) || ::stat(text.c_str(), &status) == 0;
}

}  // namespace

void take_collection(const std::string& command, const std::vector<std::string*>& singles,
                     std::vector<std::string>* rest) {
  std::vector<std::string> arguments;
  for (std::string* single : singles) {
    if (!single->empty()) arguments.push_back(std::move(*single));
    single->clear();
  }
  if (rest != nullptr) {
    arguments.insert(arguments.end(), rest->begin(), rest->end());
    rest->clear();
  }
  const std::size_t most = rest == nullptr ? singles.size() : arguments.size() + 1;
  const char* const usual = std::getenv("DBENTRY_COLLECTION");
  const bool is_set = usual != nullptr && *usual != '\0';
  if (is_set && arguments.size() < most && (arguments.empty() || !is_place(arguments[0]))) {
    arguments.insert(arguments.begin(), usual);
  }
  if (arguments.empty()) {
    throw ToolError(
        ExitCode::usage,
        fmt::format("{}: which collection? Name a stored archive, a SQLite store or a URL, or set "
                    "DBENTRY_COLLECTION; see: dbentry help {}",
                    command, command));
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i < singles.size()) {
      *singles[i] = std::move(arguments[i]);
    } else {
      rest->push_back(std::move(arguments[i]));
    }
  }
}
