#include <database_entry/references/cross_reference_info.h>
#include <utilities/archiving/field_list.h>

#include <algorithm>
#include <ostream>
#include <utility>

namespace {

// Lets each cross-reference append its identifiers.
class GetRefcodes {
 public:
  explicit GetRefcodes(std::vector<DatabaseEntryIdentifier>& identifiers) : identifiers_(identifiers) {}

  void operator()(const DatabaseCrossReference& reference) const { reference.identifiers(identifiers_); }

 private:
  std::vector<DatabaseEntryIdentifier>& identifiers_;
};

}  // namespace

template <>
struct archiving::CountedField<CrossReferenceInfo::CrossReferences> {
  static constexpr const char* count_name = "count";
  static std::size_t count(const CrossReferenceInfo::CrossReferences& references) {
    return references.size();
  }
  static void write(archiving::WriteCursor& cursor, const CrossReferenceInfo::CrossReferences& references) {
    for (const DatabaseCrossReference& reference : references) {
      archiving::write_from(cursor, std::tie(reference));
    }
  }
  static void read(archiving::ReadCursor& cursor, CrossReferenceInfo::CrossReferences& references,
                   std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
      DatabaseCrossReference reference;
      archiving::read_from(cursor, std::tie(reference));
      // A set is written in order, so the end is where the next one belongs; elsewhere it is found as well.
      references.insert(references.end(), std::move(reference));
    }
  }
};

Archive& write(Archive& archive, const CrossReferenceInfo::CrossReferences& references) {
  write_fields(archive, references);
  return archive;
}

Archive& read(Archive& archive, CrossReferenceInfo::CrossReferences& references) {
  references.clear();
  read_fields(archive, references);
  return archive;
}

void CrossReferenceInfo::insert(const DatabaseCrossReference& reference) {
  references_.insert(reference);
}

unsigned int CrossReferenceInfo::erase(const DatabaseCrossReference& reference) {
  return static_cast<unsigned int>(references_.erase(reference));
}

void CrossReferenceInfo::clear() {
  references_.clear();
}

void CrossReferenceInfo::cross_related_identifiers(std::vector<DatabaseEntryIdentifier>& out) const {
  std::for_each(begin(), end(), GetRefcodes(out));
}

void CrossReferenceInfo::write(Archive& archive) const {
  ::write(archive, references_);
}

void CrossReferenceInfo::read(Archive& archive) {
  ::read(archive, references_);
}

void CrossReferenceInfo::print(std::ostream& os) const {
  os << "Cross References: ";
  for (const DatabaseCrossReference& reference : references_) {
    reference.print(os);
    os << " ";
  }
}
