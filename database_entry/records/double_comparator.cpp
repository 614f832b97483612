#include <database_entry/records/double_comparator.h>

bool less_than(double a, double b, double tolerance) {
  return a < b - tolerance;
}
