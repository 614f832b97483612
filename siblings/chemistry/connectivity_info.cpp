#include <chemistry/connectivity_info.h>
#include <utilities/unshared.h>

#include <ostream>

ConnectivityInfo::ConnectivityInfo() : connectivity_(THandle<Connectivity>::make()) {}

ConnectivityInfo::ConnectivityInfo(const THandle<Connectivity>& connectivity) : connectivity_(connectivity) {
  if (connectivity.is_null()) THandleCommon::null_handle_error();
}

void ConnectivityInfo::write(Archive& archive) const {
  connectivity_->write(archive);
}

void ConnectivityInfo::read(Archive& archive) {
  unshared(connectivity_).read(archive);
}

void ConnectivityInfo::print(std::ostream& os) const {
  os << "atoms: " << connectivity_->atoms.size() << ", bonds: " << connectivity_->bonds.size() << std::endl;
}
