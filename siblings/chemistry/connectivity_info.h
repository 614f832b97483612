// The connectivity of an entry, as it is archived and shown.
//
// Bytes: those of the connectivity.
#pragma once

#include <chemistry/connectivity.h>
#include <chemistry/export.h>
#include <utilities/fields.h>

#include <iosfwd>
#include <tuple>

class CHEMISTRY_EXPORT ConnectivityInfo {
 public:
  // An empty connectivity.
  ConnectivityInfo();
  // Shares the connectivity. Throws NullHandleError when there is none.
  explicit ConnectivityInfo(const THandle<Connectivity>& connectivity);

  // Never null.
  [[nodiscard]] THandle<Connectivity> connectivity() const { return connectivity_; }

  void write(Archive& archive) const;
  // Others who share the connectivity keep it as it was: a new one is filled. Fails as Connectivity::read
  // does.
  void read(Archive& archive);
  // "atoms: 6, bonds: 6" and a line end.
  void print(std::ostream& os) const;

  // The connectivities by value.
  friend bool operator==(const ConnectivityInfo& left, const ConnectivityInfo& right) {
    return *left.connectivity_ == *right.connectivity_;
  }

  // Archived as its connectivity is.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"connectivity", &ConnectivityInfo::connectivity_}};
  }

 private:
  THandle<Connectivity> connectivity_;
};
