#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "entries/plain_archive.h"
#include "entries/synthetic_entries.h"

StoredEntries stored_entries(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error(path + " cannot be opened");
  StoredEntries entries;
  entries.bytes.assign(std::istreambuf_iterator<char>(file), {});
  std::string_view rest = entries.bytes;
  while (!rest.empty()) {
    plain::take_entry(rest);
    entries.ends.push_back(entries.bytes.size() - rest.size());
  }
  return entries;
}

std::string description(const StoredEntries& entries) {
  plain::Counts sum;
  for (std::size_t index = 0; index < entries.size(); ++index) {
    const plain::Counts counts = plain::counts(plain::read_entry(entries.entry(index)));
    sum.items += counts.items;
    sum.texts += counts.texts;
  }
  std::ostringstream text;
  text << entries.size() << " entries, on average " << entries.bytes.size() / entries.size() << " bytes, "
       << sum.items / entries.size() << " scalars and texts, " << sum.texts / entries.size()
       << " of them texts";
  return text.str();
}
