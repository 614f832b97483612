#include <database_entry/foundations/enum_range.h>
#include <database_entry/foundations/enum_text_table.h>
#include <database_entry/references/database_cross_reference.h>
#include <database_entry/references/regex_grep.h>
#include <utilities/archiving/field_list.h>

#include <algorithm>
#include <iterator>
#include <ostream>

namespace {

constexpr EnumTextMapping<DatabaseCrossReference::CrossReferenceType>::Initialiser type_texts[] = {
    {DatabaseCrossReference::unknown, "unknown"},
    {DatabaseCrossReference::racemate, "RACEMATE"},
    {DatabaseCrossReference::stereomer, "STEREOMER"},
    {DatabaseCrossReference::isomer, "ISOMER"},
    {DatabaseCrossReference::reinterpretation_of, "REINTERPRETATION_OF"},
    {DatabaseCrossReference::reinterpretation_see, "REINTERPRETATION_SEE"},
    {DatabaseCrossReference::coordinates_see, "COORDINATES_SEE"},
};

constexpr DatabaseCrossReference::CrossReferenceType forms_of_one_compound[] = {
    DatabaseCrossReference::stereomer, DatabaseCrossReference::racemate, DatabaseCrossReference::isomer};

// Both expressions are built when the library is loaded (below) and destroyed when it is unloaded. They live
// in functions so that a static object of another file, which may be made earlier, can use them as well.
const Regex& refcode_expression() {
  static const Regex expression(
      "\\[          # initial literal [\n"
      "([A-Za-z]{6} # 6 alphabetic characters and opening of capturing brackets\n"
      "(\\d\\d)?)   # optional two decimal digits and closing of capturing brackets\n"
      "\\]          # terminal literal ]\n",
      Regex::extended_syntax);
  return expression;
}

const Regex& letter_and_seven_digits_expression() {
  static const Regex expression(
      "\\[          # initial literal [\n"
      "([A-Za-z]    # alphabetic character and opening of capturing brackets\n"
      "[0-9]{7})    # seven decimal digits and closing of capturing brackets\n"
      "\\]          # terminal literal ]\n",
      Regex::extended_syntax);
  return expression;
}

[[maybe_unused]] const Regex& refcode_expression_at_load = refcode_expression();
[[maybe_unused]] const Regex& letter_and_seven_digits_expression_at_load =
    letter_and_seven_digits_expression();

// The identifier is capture group 1 of either expression.
class CollateDatabaseEntryIdentifiers {
 public:
  explicit CollateDatabaseEntryIdentifiers(std::vector<DatabaseEntryIdentifier>& identifiers)
      : identifiers_(&identifiers) {}

  void operator()(const RegexResults& results) const { identifiers_->emplace_back(results.match(1).str()); }

 private:
  std::vector<DatabaseEntryIdentifier>* identifiers_;
};

std::string in_brackets(const DatabaseEntryIdentifier& identifier) {
  return "[" + identifier.text() + "]";
}

}  // namespace

DatabaseCrossReference::DatabaseCrossReference(CrossReferenceType type)
    : DatabaseCrossReference(type, std::string()) {}

DatabaseCrossReference::DatabaseCrossReference(CrossReferenceType type, const std::string& text)
    : type_(type), text_(text) {
  validate_cross_reference(type_);
}

DatabaseCrossReference::DatabaseCrossReference(CrossReferenceType type, const std::string& text,
                                               const DatabaseEntryIdentifier& identifier)
    : DatabaseCrossReference(type, text) {
  text_ += " " + in_brackets(identifier);
}

DatabaseCrossReference::DatabaseCrossReference(CrossReferenceType type, const std::string& text,
                                               const std::vector<DatabaseEntryIdentifier>& identifiers)
    : DatabaseCrossReference(type, text) {
  const char* separator = " ";
  if (identifiers.empty()) text_ += separator;
  for (const DatabaseEntryIdentifier& identifier : identifiers) {
    text_ += separator + in_brackets(identifier);
    separator = ", ";
  }
}

void DatabaseCrossReference::identifiers(std::vector<DatabaseEntryIdentifier>& out) const {
  const CollateDatabaseEntryIdentifiers collector(out);
  regex_grep(refcode_expression(), text_, collector, 0);
  regex_grep(letter_and_seven_digits_expression(), text_, collector, 0);
}

void DatabaseCrossReference::write(Archive& archive) const {
  write_fields(archive, *this);
}

void DatabaseCrossReference::read(Archive& archive) {
  read_fields(archive, *this);
}

void DatabaseCrossReference::print(std::ostream& os) const {
  os << "type: " << static_cast<std::int32_t>(type_) << "text: " << text_;
}

void DatabaseCrossReference::validate_cross_reference(CrossReferenceType type) {
  require_enum_range(type, racemate, coordinates_see, "Invalid DatabaseCrossReference type");
}

THandle<EnumTextMapping<DatabaseCrossReference::CrossReferenceType>>
DatabaseCrossReference::cross_reference_type_text() {
  return new_text_mapping<CrossReferenceType>(type_texts);
}

bool DatabaseCrossReference::scope(CrossReferenceType type) {
  return std::find(std::begin(forms_of_one_compound), std::end(forms_of_one_compound), type) !=
         std::end(forms_of_one_compound);
}
