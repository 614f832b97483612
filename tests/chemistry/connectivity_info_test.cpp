#include <chemistry/connectivity_info.h>
#include <gtest/gtest.h>
#include <utilities/null_handle_error.h>

#include "support/bytes.h"

namespace {

THandle<Connectivity> one_atom() {
  const THandle<Connectivity> connectivity(new Connectivity);
  connectivity->atoms.push_back(THandle<ConnectivityAtom>(new ConnectivityAtom{"C", "C1", 0, 4}));
  return connectivity;
}

std::string stored_one_atom() {
  return bytes(int32(1), text("C"), text("C1"), int32(0), int32(4), int32(0));
}

TEST(ConnectivityInfo, IsEmptyByDefault) {
  EXPECT_EQ(ConnectivityInfo(), ConnectivityInfo(THandle<Connectivity>(new Connectivity)));
  EXPECT_EQ(written([](Archive& archive) { ConnectivityInfo().write(archive); }), bytes(int32(0), int32(0)));
}

TEST(ConnectivityInfo, SharesItsConnectivity) {
  const THandle<Connectivity> connectivity = one_atom();
  EXPECT_EQ(ConnectivityInfo(connectivity).connectivity(), connectivity);
}

TEST(ConnectivityInfo, NeedsAConnectivity) {
  EXPECT_THROW(ConnectivityInfo info{THandle<Connectivity>()}, NullHandleError);
}

TEST(ConnectivityInfo, HasTheBytesOfItsConnectivity) {
  EXPECT_EQ(written([](Archive& archive) { ConnectivityInfo(one_atom()).write(archive); }),
            stored_one_atom());
}

TEST(ConnectivityInfo, FillsANewConnectivityWhenItIsRead) {
  const THandle<Connectivity> shared(new Connectivity);
  ConnectivityInfo info(shared);
  read_from(stored_one_atom(), [&](Archive& archive) { info.read(archive); });
  EXPECT_EQ(info, ConnectivityInfo(one_atom()));
  EXPECT_TRUE(shared->atoms.empty());
}

TEST(ConnectivityInfo, DiffersWhereItsConnectivityDoes) {
  EXPECT_NE(ConnectivityInfo(), ConnectivityInfo(one_atom()));
}

TEST(ConnectivityInfo, PrintsOneLine) {
  EXPECT_EQ(printed(ConnectivityInfo(one_atom())), "atoms: 1, bonds: 0\n");
}

}  // namespace
